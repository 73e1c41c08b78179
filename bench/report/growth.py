"""Lines fitted to reloads of files in which one size differs from the season's, and what they say of later years."""
import dataclasses
import shutil
import statistics

from report.measuring import announce, measure
from report.paths import DATA, ROOT
from report.plots import Series, plot
from report.samples import shortest

IMAGES = ROOT / "docs" / "images"
REPETITIONS = 3
# What is varied, by its name in the benchmarks: in a title, and as a unit.
SIZES = {"karts": ("Karts", "kart"), "operations": ("Operations", "operation"),
         "records": ("Records of the journal", "record"), "laps": ("Laps of the season", "lap"),
         "older-laps": ("Laps of earlier years", "older lap")}
VARIANTS = {"plain": "SQLite alone", "garage": "module"}
SEASON = {"karts": 60, "operations": 12, "records": 20000, "laps": 3000000}
YEARS = [1, 2, 3, 5, 10]


@dataclasses.dataclass
class Line:
    """The least squares fit of milliseconds to a size."""
    points: list
    at_zero: float
    slope: float
    r_squared: float

    def at(self, size):
        return self.at_zero + self.slope * size


def measure_growth():
    samples = {}
    for size in SIZES:
        announce(f"fit/{size}")
        samples.update(measure(f"^fit/{size}/", REPETITIONS))
        for folder in DATA.glob(f"fit-{size}-*"):
            shutil.rmtree(folder)
    return samples


def line(samples, size, variant):
    numbers = sorted({int(name.split("/")[2]) for name in samples if name.startswith(f"fit/{size}/")})
    points = [(number, shortest(samples, f"fit/{size}/{number}/{variant}")) for number in numbers]
    sizes, times = zip(*points)
    slope, at_zero = statistics.linear_regression(sizes, times)
    # A time that never changes leaves nothing to explain.
    r_squared = statistics.correlation(sizes, times) ** 2 if len(set(times)) > 1 else 1.0
    return Line(points, at_zero, slope, r_squared)


def fit(samples):
    """The lines by size and variant; none if nothing was measured."""
    if not any(name.startswith("fit/") for name in samples):
        return {}
    return {size: {variant: line(samples, size, variant) for variant in VARIANTS} for size in SIZES}


def microseconds(ms):
    return f"{ms * 1000:,.{0 if abs(ms) >= 0.1 else 3}f}"


def fitted_rows(lines):
    rows = []
    for size, by_variant in lines.items():
        numbers = [number for number, _ in by_variant["garage"].points]
        cells = [f"{microseconds(one.slope)} | {one.at_zero:,.0f} | {one.r_squared:.3f}" for one in by_variant.values()]
        rows.append(f"| {SIZES[size][1]} | {numbers[0]:,} to {numbers[-1]:,} | {' | '.join(cells)} |")
    return rows


def year_rows(lines, bytes_per_record):
    """A track of the season's size after some years, none of whose records and laps were ever deleted."""
    if not lines:
        return []
    season = lines["records"]["garage"].at(SEASON["records"])
    rows = []
    for years in YEARS:
        records, laps = SEASON["records"] * years, SEASON["laps"] * years
        ms = (season + lines["records"]["garage"].slope * (records - SEASON["records"])
              + lines["older-laps"]["garage"].slope * (laps - SEASON["laps"]))
        rows.append(f"| {years} | {records:,} | {laps:,} | {ms:,.0f} | {records * bytes_per_record / 1e6:.1f} |")
    return rows


def image_of(size):
    return IMAGES / f"growth-{size}.svg"


def draw(lines):
    for size, by_variant in lines.items():
        title, unit = SIZES[size]
        series = []
        for color, (variant, one) in enumerate(by_variant.items()):
            ends = [0, one.points[-1][0]]
            series += [Series(VARIANTS[variant], one.points, has_line=False, has_dots=True, color=color),
                       Series("", [(end, one.at(end)) for end in ends], color=color)]
        image_of(size).write_text(plot(f"Reload by {title[0].lower()}{title[1:]}", f"{unit}s",
                                       "milliseconds of computing", series))


def images(lines):
    """Links to the drawn plots."""
    return "\n".join(f"![Reload by {SIZES[size][0].lower()}](images/{image_of(size).name})" for size in lines)
