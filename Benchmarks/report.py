"""Puts the figures into the document: each table stands between two markers, and is made anew.

    <!-- figures: wall -->
    ...
    <!-- end of figures -->
"""

import re

from figures import QUANTITIES, TARGET, median, ratio, slope_of
from programs import NAMES
from workload.suite import CURVES, ROWS

HEADS = ("time", "the engine's", "processor time", "the engine's", "memory", "the engine's")    # of QUANTITIES
PLACE = re.compile(r"(<!-- figures: (\S+) -->\n).*?(<!-- end of figures -->)", re.DOTALL)


def filled(document, results):
    """The document with all of its tables made anew."""
    makers = {"machine": machine_table, "slopes": slopes_table, "points": points_table, "profiles": profiles_table}

    def table(match):
        name = match.group(2)
        made = makers[name](results) if name in makers else rows_table(results, name)
        return f"{match.group(1)}\n{made}\n\n{match.group(3)}"

    return PLACE.sub(table, document)


def _table(head, rows):
    lines = [head, ["---"] * len(head), *rows]
    return "\n".join("| " + " | ".join(cells) + " |" for cells in lines)


def _number(value):
    return f"{value:.2f}" if value < 10 else f"{value:.1f}" if value < 100 else f"{value:.0f}"


def _spread(figures, quantity):
    """The median, and from the least to the most."""
    if "failed" in figures:
        return figures["failed"]
    values = figures.get(quantity)
    if not values:
        return "–"
    spread = f" ({_number(min(values))}–{_number(max(values))})" if len(values) > 1 else ""
    return _number(median(values)) + spread


def rows_table(results, quantity):
    rows = results["rows"]
    body = []
    for name in (name for name in ROWS if name in rows):
        share = ratio(rows[name]["web2pdf"], rows[name]["engine"], quantity)
        ours, engine, *others = (_spread(rows[name].get(program, {}), quantity) for program in NAMES)
        body.append([ROWS[name].title, ours, engine, f"**{share:.2f}**" if share else "–", *others])
    ours, engine, *others = NAMES.values()
    return _table(["page", ours, engine, "ratio", *others], body)


def _exponent(value):
    return "none to be seen" if value is None else f"**{value:.2f}**" if value > TARGET else f"{value:.2f}"


def slopes_table(results):
    body = []
    for name in (name for name in CURVES if name in results["curves"]):
        curve = results["curves"][name]
        sizes = [size for size, _ in curve["points"]]
        body.append([CURVES[name].title, f"{sizes[0]:,} to {sizes[-1]:,}",
                     *(_exponent(slope_of(curve, program, quantity)) for quantity in QUANTITIES
                       for program in ("web2pdf", "engine"))])
    return _table(["curve", "sizes", *HEADS], body)


def points_table(results):
    body = []
    for name in (name for name in CURVES if name in results["curves"]):
        curve = results["curves"][name]
        for size, figures in [("none", curve["base"]), *curve["points"]]:
            told = size if size == "none" else f"{size:,}"
            body.append([CURVES[name].title, told, *(_spread(figures.get(program, {}), quantity)
                                                     for quantity in QUANTITIES
                                                     for program in ("web2pdf", "engine"))])
    return _table(["curve", "size", *HEADS], body)


def machine_table(results):
    return _table(["what", "which"], [[name, told] for name, told in results["machine"].items()])


def profiles_table(results):
    body = []
    for name in (name for name in ROWS if name in results["profiles"]):
        title = f"[{ROWS[name].title}](performance/flames-{name}.svg)"
        for process in results["profiles"][name]:
            files = ", ".join(f"{file} {share:.0%}" for file, share in process["files"])
            body.append([title, process["process"], f"{process['share']:.0%}", f"{process['seconds']:.2f}", files])
            title = ""
    return _table(["page", "process", "share", "seconds", "mostly in"], body)
