"""The arithmetic: what is said of many measurements. Functions of numbers alone.

Figures of a program are lists in the order of the runs, see comparison.py.
"""

import math
import statistics

QUANTITIES = ("wall", "cpu", "memory")
TARGET = 1.1    # the most that a cost may grow with, as an exponent
WORSE = 1.1    # a ratio that has grown by more than this counts as a loss
SHARE_OF_BASE = 0.1    # what exceeds the base by less cannot be told from noise
SLICE = 0.2    # s; the tool looks so often whether a page has loaded: times cannot be told apart by less


def median(values):
    return statistics.median(values)


def ratio(ours, other, quantity):
    """How many times the other's cost ours is: the median of the turns' ratios. None where one has no figures."""
    turns = list(zip(ours.get(quantity, ()), other.get(quantity, ())))
    return median([one / two for one, two in turns]) if turns else None


def slope(points, base, least=0.0):
    """The exponent with which a cost grows: the slope of a straight line through the logarithms of sizes and costs, by
    least squares. Points are pairs of a size and a cost.

    The base, which every conversion costs, is taken off, and only the upper half of the points counts (three of five),
    since what little small pages add would hide how large ones grow. Points that exceed the base by less than a tenth
    of it, or by less than `least`, are left out; where that leaves a single one, the point before it is taken, as if it
    exceeded the base by just that: costs grow at least so fast. None where no point exceeds the base.
    """
    upper = sorted(points)[len(points) // 2:]
    least = max(least, base * SHARE_OF_BASE)
    fitted = [(size, cost - base) for size, cost in upper if cost - base > least]
    if len(fitted) == 1:
        fitted += [(size, least) for size, cost in upper if cost - base <= least][-1:]
    if len(fitted) < 2:
        return None
    return statistics.linear_regression(*zip(*((math.log(size), math.log(cost)) for size, cost in fitted))).slope


def points_of(curve, program, quantity):
    """The points at which the program succeeded: pairs of a size and a cost."""
    return [(size, median(figures[program][quantity])) for size, figures in curve["points"]
            if figures.get(program, {}).get(quantity)]


def slope_of(curve, program, quantity):
    """The exponent of a curve as results.json has it."""
    base = curve["base"].get(program, {}).get(quantity)
    least = SLICE if quantity == "wall" else 0.0
    return slope(points_of(curve, program, quantity), median(base), least) if base else None


def losses(measured, committed):
    """What got worse: sentences. Both are rows of figures; only those that both have are compared."""
    found = []
    for name in committed.keys() & measured.keys():
        for quantity in QUANTITIES:
            before, now = (ratio(row["web2pdf"], row["engine"], quantity) for row in (committed[name], measured[name]))
            if before and not now:
                failed = [f"{program}: {own['failed']}" for program, own in measured[name].items() if "failed" in own]
                found.append(f"{name}: no figures for {quantity}; {', '.join(failed)}")
            elif before and now > before * WORSE:
                found.append(f"{name}: {quantity} is {now:.2f} times the engine's, was {before:.2f}")
    return sorted(found)
