"""Vertical text, and roots that are not html."""

from entry import SITE, blocks, page, paragraphs
from webarchive import Archive, Resource

VERTICAL = "the engine breaks vertical pages from side to side"
TURNED = {"allowance": 0.2, "allowance_reason": "glyphs on their side have other soft edges"}
XHTML = ('<?xml version="1.0"?><html xmlns="http://www.w3.org/1999/xhtml"><head><title>t</title><style>body{margin:20px;'
         "font:16px/24px 'DejaVu Sans'}</style></head><body>" + paragraphs(25) + "</body></html>")
DRAWING = ('<svg xmlns="http://www.w3.org/2000/svg" width="800" height="1200"><rect width="800" height="1200" fill="#cfc"/>'
           '<circle cx="400" cy="600" r="300" fill="#c33"/><text x="40" y="1180" font-size="30">bottom</text></svg>')
FORM = ('<?xml version="1.0"?><form xmlns="http://www.w3.org/1999/xhtml"><input name="scrollWidth"/><input name="style"/>'
        "<p>formed</p></form>")


def other(name, trouble, text, mime, words, **expected):
    return page(name, trouble, archive=Archive(Resource(SITE + "page", text, mime)), words=words, **expected)


PAGES = [
    page("vertical-rl", "Vertical text, from the right", paragraphs(12), style="html{writing-mode:vertical-rl}",
         shifts_words=VERTICAL, **TURNED),
    page("vertical-rl-short", "Vertical text within the view", paragraphs(3), style="html{writing-mode:vertical-rl}body{background:#eef}",
         shifts_words=VERTICAL),
    page("vertical-lr", "Vertical text, from the left", paragraphs(12),
         style="html{writing-mode:vertical-lr;background:linear-gradient(90deg,#fcc,#ccf)}", shifts_words=VERTICAL),
    page("vertical-rl-wide", "Vertical text, wider than the view", paragraphs(30), style="html{writing-mode:vertical-rl}",
         shifts_words=VERTICAL, **TURNED),
    page("vertical-body", "Only the body is vertical", paragraphs(12),
         style="body{writing-mode:vertical-rl;margin:30px 10px 20px 50px}", shifts_words=VERTICAL, **TURNED),
    page("vertical-part", "A vertical block on a horizontal page", "<div class=v>standing words</div>" + paragraphs(4),
         style=".v{writing-mode:vertical-rl;height:200px;background:#ffd}"),
    page("vertical-units", "Viewport units on a vertical page", "<div class=h>units</div>" + paragraphs(3),
         style="html{writing-mode:vertical-rl}body{margin:0}.h{height:100vh;width:50vw;background:#cdf}", shifts_words=VERTICAL),
    other("xhtml", "A page in XML", XHTML, "application/xhtml+xml", ["p0w0", "p24w13"]),
    other("drawing", "A drawing as the page", DRAWING, "image/svg+xml", ["bottom"], size=(800, 1200),
          pixels=[(400, 600, (204, 51, 51)), (5, 1195, (204, 255, 204))]),
    other("form-root", "A root with names that hide its own", FORM, "application/xhtml+xml", ["formed"]),
    page("no-root", "A page that removed its root", "<p>gone</p><script>document.documentElement.remove()</script>",
         words=[], absent=["gone"], modes=("screen",), pictures_differ="nothing is there"),
    page("shorter-than-view", "A page of one line", "<p>short", size=(612, 792), sheets=1),
    page("bands", "Many bands of colour", blocks(30, 40)),
]
