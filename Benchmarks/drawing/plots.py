"""Draws the figures: how costs grow, and what rows cost beside the engine alone."""

import math

from drawing.svg import box, circle, line, picture, text
from figures import QUANTITIES, points_of, ratio, slope_of
from workload.suite import CURVES, ROWS

COLOURS = {"web2pdf": "#1f6fb2", "engine": "#d9822b"}
QUANTITY_COLOURS = {"wall": "#1f6fb2", "cpu": "#58a55c", "memory": "#9a6fb0"}
QUANTITY_NAMES = {"wall": "time", "cpu": "processor time", "memory": "memory"}
COLUMNS, PANEL, INNER = 3, (280, 210), (44, 34, 225, 135)    # of a panel: its size; the plot's place and size in it


def curves_plot(curves, quantity):
    """A panel for each curve, both axes logarithmic."""
    shapes = []
    named = [name for name in CURVES if name in curves]
    for number, name in enumerate(named):
        left, top = number % COLUMNS * PANEL[0], 24 + number // COLUMNS * PANEL[1]
        shapes += _panel(left, top, CURVES[name].title, curves[name], quantity)
    for number, (program, colour) in enumerate(COLOURS.items()):
        shapes += [box(10 + number * 110, 8, 12, 12, colour), text(27 + number * 110, 18, program)]
    shapes.append(text(250, 18, f"{QUANTITY_NAMES[quantity]} in {'MiB' if quantity == 'memory' else 's'}"))
    height = 24 + math.ceil(len(named) / COLUMNS) * PANEL[1]
    return picture(COLUMNS * PANEL[0], height, shapes)


def _panel(left, top, title, curve, quantity):
    lines = {program: points_of(curve, program, quantity) for program in COLOURS}
    everything = [point for points in lines.values() for point in points]
    if not everything:
        return []
    x_axis = _Axis([x for x, _ in everything], left + INNER[0], INNER[2])
    y_axis = _Axis([y for _, y in everything], top + INNER[1] + INNER[3], -INNER[3])
    grown = slope_of(curve, "web2pdf", quantity)
    told = "" if grown is None else f": exponent {grown:.2f}"
    shapes = [text(left + INNER[0], top + 20, title + told, size=12)]
    for value, place in x_axis.ticks():
        shapes += [line([(place, y_axis.start), (place, y_axis.start - INNER[3])], "#ddd"),
                   text(place, y_axis.start + 14, _short(value), "middle", 9)]
    for value, place in y_axis.ticks():
        shapes += [line([(x_axis.start, place), (x_axis.start + INNER[2], place)], "#ddd"),
                   text(x_axis.start - 5, place + 3, _short(value), "end", 9)]
    for program, points in lines.items():
        places = [(x_axis.place(x), y_axis.place(y)) for x, y in points]
        shapes += [line(places, COLOURS[program], 2), *(circle(x, y, 3, COLOURS[program]) for x, y in places)]
    return shapes


class _Axis:
    """Whole decades, so that a line that grows as much as the work has the same direction everywhere."""

    def __init__(self, values, start, length):
        self.start, self._length = start, length
        self._first = math.floor(math.log10(min(values)))
        self._last = max(math.ceil(math.log10(max(values))), self._first + 1)

    def place(self, value):
        return self.start + (math.log10(value) - self._first) / (self._last - self._first) * self._length

    def ticks(self):
        return [(10.0 ** exponent, self.place(10.0 ** exponent)) for exponent in range(self._first, self._last + 1)]


def _short(value):
    if value >= 1e6:
        return f"{value / 1e6:g}M"
    return f"{value / 1000:g}k" if value >= 1000 else f"{value:g}"


def rows_plot(rows):
    """Bars: ours divided by the engine's."""
    label, scale, height = 240, 160, 46
    shapes, top = [], 34
    for name in (name for name in ROWS if name in rows):
        shapes.append(text(label - 10, top + 22, ROWS[name].title, "end"))
        for number, quantity in enumerate(QUANTITIES):
            value = ratio(rows[name]["web2pdf"], rows[name]["engine"], quantity)
            if value is not None:
                y = top + number * 12
                shapes += [box(label, y, min(value, 3) * scale, 10, QUANTITY_COLOURS[quantity]),
                           text(label + min(value, 3) * scale + 5, y + 9, f"{value:.2f}", size=9)]
        top += height
    for number, quantity in enumerate(QUANTITIES):
        shapes += [box(label + number * 120, 8, 12, 12, QUANTITY_COLOURS[quantity]),
                   text(label + 17 + number * 120, 18, QUANTITY_NAMES[quantity])]
    shapes.append(line([(label + scale, 28), (label + scale, top)], "#c00"))
    return picture(label + 3 * scale + 60, top + 6, shapes)
