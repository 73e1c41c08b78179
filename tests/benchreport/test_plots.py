import unittest
import xml.etree.ElementTree as xml

from report.plots import HEIGHT, WIDTH, Series, plot, ticks

SVG = "{http://www.w3.org/2000/svg}"


class TestPlots(unittest.TestCase):
    def test_ticks_are_round_and_reach_the_highest_value(self):
        self.assertEqual(ticks(9.9, 5), [0, 2, 4, 6, 8, 10])
        self.assertEqual(ticks(3000000, 8), [0, 500000, 1000000, 1500000, 2000000, 2500000, 3000000])
        self.assertEqual(ticks(0.3, 5), [0, 0.1, 0.2, 0.3])

    def test_a_series_of_zeros_can_be_drawn(self):
        self.assertEqual(ticks(0, 5)[-1], 1)
        xml.fromstring(plot("t", "x", "y", [Series("none", [(0, 0)])]))

    def test_the_highest_point_is_inside_the_picture(self):
        drawing = xml.fromstring(plot("t", "x", "y", [Series("a", [(1, 7), (40, 93)], has_line=False,
                                                             has_dots=True)]))
        for circle in drawing.iter(f"{SVG}circle"):
            self.assertTrue(0 < float(circle.get("cx")) < WIDTH)
            self.assertTrue(0 < float(circle.get("cy")) < HEIGHT)

    def test_texts_are_escaped(self):
        drawing = xml.fromstring(plot("a < b & c", "x", "y", [Series("<s>", [(1, 1)])]))
        texts = [text.text for text in drawing.iter(f"{SVG}text")]
        self.assertIn("a < b & c", texts)
        self.assertIn("<s>", texts)

    def test_a_series_without_a_name_is_not_in_the_legend(self):
        points = [(0, 0), (1, 1)]
        named, unnamed = (len(list(xml.fromstring(plot("t", "x", "y", [Series(name, points)])).iter(f"{SVG}polyline")))
                          for name in ("name", ""))
        self.assertEqual((named, unnamed), (2, 1))

    def test_series_have_different_colors_unless_they_share_one(self):
        points = [(0, 0), (1, 1)]
        drawing = plot("t", "x", "y", [Series("", points), Series("", points), Series("", points, color=0)])
        colors = [line.get("class") for line in xml.fromstring(drawing).iter(f"{SVG}polyline")]
        self.assertEqual(colors, ["line c0", "line c1", "line c0"])
