"""Writes SVG: shapes are strings, and a picture is what holds them.

    picture(100, 50, [line([(0, 0), (100, 50)], "#c00"), text(10, 20, "A <b>")])
"""

from xml.sax.saxutils import escape, quoteattr


def _element(name, content=None, **attributes):
    told = "".join(f" {key.replace('_', '-')}={quoteattr(f'{value:g}' if isinstance(value, float) else str(value))}"
                   for key, value in attributes.items())
    return f"<{name}{told}/>" if content is None else f"<{name}{told}>{content}</{name}>"


def text(x, y, words, anchor="start", size=11, colour="#222"):
    return _element("text", escape(words), x=float(x), y=float(y), text_anchor=anchor, font_size=size, fill=colour)


def line(points, colour, width=1):
    places = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
    return _element("polyline", points=places, fill="none", stroke=colour, stroke_width=width)


def circle(x, y, radius, colour):
    return _element("circle", cx=float(x), cy=float(y), r=radius, fill=colour)


def box(x, y, width, height, colour, title=None):
    """With a title, which shows when one points at it."""
    content = None if title is None else _element("title", escape(title))
    return _element("rect", content, x=float(x), y=float(y), width=float(width), height=float(height), fill=colour)


def picture(width, height, shapes):
    inside = "\n".join([box(0, 0, width, height, "#fff"), *shapes])
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" viewBox="0 0 {width} {height}" '
            f'font-family="sans-serif">\n{inside}\n</svg>\n')
