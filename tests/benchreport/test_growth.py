import unittest

from report import growth


def samples(size, times):
    """One sample of either variant for each number; the module takes twice the time."""
    return {f"fit/{size}/{number}/{variant}": [{"cpu_time": ms * factor}]
            for number, ms in times.items() for variant, factor in (("plain", 1), ("garage", 2))}


class TestGrowth(unittest.TestCase):
    def test_points_of_a_line_yield_the_line(self):
        line = growth.line(samples("laps", {100: 12, 200: 14, 1000: 30}), "laps", "plain")
        self.assertAlmostEqual(line.slope, 0.02)
        self.assertAlmostEqual(line.at_zero, 10)
        self.assertAlmostEqual(line.r_squared, 1)
        self.assertAlmostEqual(line.at(500), 20)

    def test_the_shortest_time_of_the_repetitions_counts(self):
        repeated = samples("laps", {1: 5, 2: 6})
        repeated["fit/laps/2/plain"] += [{"cpu_time": 5.5}, {"cpu_time": 7}]
        self.assertEqual(growth.line(repeated, "laps", "plain").points, [(1, 5), (2, 5.5)])

    def test_a_constant_time_has_no_slope(self):
        line = growth.line(samples("laps", {1: 5, 2: 5, 3: 5}), "laps", "garage")
        self.assertEqual((line.slope, line.at_zero, line.r_squared), (0, 10, 1))

    def test_nothing_is_fitted_to_a_quick_run(self):
        self.assertEqual(growth.fit({"reload/laps/plain": [{"cpu_time": 1}]}), {})

    def test_further_years_cost_their_records_and_their_older_laps(self):
        lines = {size: {"garage": growth.Line([], 100, slope, 1)}
                 for size, slope in (("records", 0.01), ("older-laps", 0.0001))}
        rows = growth.year_rows(lines, 90)
        self.assertEqual(rows[0], "| 1 | 20,000 | 3,000,000 | 300 | 1.8 |")
        self.assertEqual(rows[1], "| 2 | 40,000 | 6,000,000 | 800 | 3.6 |")
