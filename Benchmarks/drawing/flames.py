"""Draws stacks of a profile: each frame as wide as its share of the samples, upon the frame that called it."""

import collections
import zlib

from drawing.svg import box, picture, text

WIDTH, HEIGHT = 1200, 16    # of the picture; of a frame
LEAST = 0.005    # narrower frames, of the whole width, are left out


def flames(stacks, title):
    total = sum(stacks.values())
    shapes, deepest = [], 0
    layer = [(0.0, stacks)]
    while layer:
        layer, drawn = _next(layer, total)
        shapes.append(drawn)
        deepest += bool(drawn)
    height = (deepest + 2) * HEIGHT + 8
    placed = [text(4, 14, f"{title}: {total} samples", size=12)]
    for depth, drawn in enumerate(shapes):
        y = height - (depth + 1) * HEIGHT - 2
        for name, left, width, count in drawn:
            placed.append(box(left, y, width, HEIGHT - 1, _colour(name), f"{name}: {count / total:.1%}"))
            if width > 40:
                placed.append(text(left + 3, y + 11, name[:int(width / 6)], size=10))
    return picture(WIDTH, height, placed)


def _next(layer, total):
    """The frames that stand on those of a layer, and what is to be drawn of them."""
    above, drawn = [], []
    for left, stacks in layer:
        inner = collections.defaultdict(collections.Counter)
        for stack, count in stacks.items():
            if stack:
                inner[stack[0]][stack[1:]] += count
        for name in sorted(inner):
            count = sum(inner[name].values())
            if count >= total * LEAST:
                drawn.append((name, left, count / total * WIDTH, count))
                above.append((left, inner[name]))
            left += count / total * WIDTH
    return above, drawn


def _colour(name):
    shade = zlib.crc32(name.encode()) % 60
    return f"hsl({20 + shade // 2},{65 + shade // 3}%,{68 + shade // 6}%)"
