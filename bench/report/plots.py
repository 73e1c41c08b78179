"""Plots as SVG texts, readable on a light and on a dark page."""
import dataclasses
import html
import math

WIDTH, HEIGHT = 640, 340
LEFT, RIGHT, TOP, BOTTOM = 70, 40, 62, 52
LETTER_WIDTH = 7.2  # of the legend, on average
STYLE = """
text { font: 13px sans-serif; fill: #454c54 }
.title { font-size: 15px; font-weight: bold }
.grid { stroke: #8a929a; stroke-opacity: .35 }
.axis { stroke: #8a929a }
.line { fill: none; stroke-width: 2 }
.c0 { stroke: #0969da; fill: #0969da } .c1 { stroke: #bc4c00; fill: #bc4c00 }
.c2 { stroke: #1a7f37; fill: #1a7f37 } .c3 { stroke: #8250df; fill: #8250df }
.line.c0, .line.c1, .line.c2, .line.c3 { fill: none }
@media (prefers-color-scheme: dark) {
text { fill: #b3bcc6 }
.c0 { stroke: #58a6ff; fill: #58a6ff } .c1 { stroke: #f0883e; fill: #f0883e }
.c2 { stroke: #3fb950; fill: #3fb950 } .c3 { stroke: #bc8cff; fill: #bc8cff }
}
"""


@dataclasses.dataclass
class Series:
    """`points` are pairs (x, y) in the order of x. A series without a name is not in the legend."""
    name: str
    points: list
    has_line: bool = True
    has_dots: bool = False
    color: int | None = None  # 0 to 3; none: that of its place among the series


def plot(title, x_title, y_title, series):
    """The SVG text. Both axes start at 0."""
    x_ticks = ticks(max(x for one in series for x, _ in one.points), 8)
    y_ticks = ticks(max(y for one in series for _, y in one.points), 5)

    def place(point):
        return (LEFT + point[0] / x_ticks[-1] * (WIDTH - LEFT - RIGHT),
                HEIGHT - BOTTOM - point[1] / y_ticks[-1] * (HEIGHT - TOP - BOTTOM))

    series = [dataclasses.replace(one, color=number if one.color is None else one.color)
              for number, one in enumerate(series)]
    parts = [*axes(x_ticks, y_ticks, place), *titles(title, x_title, y_title), *legend(series)]
    for one in series:
        places = [place(point) for point in one.points]
        parts += marks(one, places, places)
    return "\n".join([f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" width="{WIDTH}" '
                      f'height="{HEIGHT}" role="img">', f"<style>{STYLE}</style>", *parts, "</svg>", ""])


def ticks(highest, most):
    """From 0 to the first tick that is not below `highest`, in steps of 1, 2 or 5 times a power of ten."""
    highest = highest or 1
    rough = highest / most
    power = 10 ** math.floor(math.log10(rough))
    step = next(factor * power for factor in (1, 2, 5, 10) if factor * power >= rough * 0.999999)
    return [round(number * step, 9) for number in range(math.ceil(highest / step - 1e-9) + 1)]


def label(value, values):
    """With as many decimals as the step between the values needs."""
    decimals = max(0, -math.floor(math.log10(values[1])))
    return f"{value:,.{decimals}f}"


def text(x, y, content, anchor="middle", more=""):
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}"{more}>{html.escape(content)}</text>'


def axes(x_ticks, y_ticks, place):
    bottom, right = HEIGHT - BOTTOM, WIDTH - RIGHT
    for value in y_ticks:
        _, y = place((0, value))
        kind = "grid" if value else "axis"
        yield f'<line class="{kind}" x1="{LEFT}" y1="{y:.1f}" x2="{right}" y2="{y:.1f}"/>'
        yield text(LEFT - 8, y + 4, label(value, y_ticks), "end")
    for value in x_ticks:
        x, _ = place((value, 0))
        yield f'<line class="axis" x1="{x:.1f}" y1="{bottom}" x2="{x:.1f}" y2="{bottom + 5}"/>'
        yield text(x, bottom + 19, label(value, x_ticks))


def titles(title, x_title, y_title):
    middle = (HEIGHT + TOP - BOTTOM) / 2
    return [text(LEFT, 20, title, "start", ' class="title"'),
            text((WIDTH + LEFT - RIGHT) / 2, HEIGHT - 10, x_title),
            text(16, middle, y_title, more=f' transform="rotate(-90 16 {middle:.1f})"')]


def legend(series):
    x = LEFT
    for one in filter(lambda one: one.name, series):
        yield from marks(one, [(x, 41), (x + 22, 41)], [(x + 11, 41)])
        yield text(x + 30, 45, one.name, "start")
        x += 50 + LETTER_WIDTH * len(one.name)


def marks(one, corners, dots):
    """The line through the corners and the dots of one series, where it has them."""
    if one.has_line:
        path = " ".join(f"{x:.1f},{y:.1f}" for x, y in corners)
        yield f'<polyline class="line c{one.color}" points="{path}"/>'
    if one.has_dots:
        yield from (f'<circle class="c{one.color}" cx="{x:.1f}" cy="{y:.1f}" r="3.5"/>' for x, y in dots)
