"""Archives whose main resource is no page."""

from entry import SITE, page
from images import png, svg
from webarchive import Archive, Resource

GREEN = (20, 160, 70)


def kind(name, trouble, resource, words, **expected):
    return page(name, trouble, archive=Archive(resource), words=words, **expected)


PAGES = [
    kind("text", "Plain text", Resource(SITE + "a.txt", "plain text\n" + "\n".join(f"line{n}" for n in range(80)), "text/plain"),
         ["plain", "line0", "line79"]),
    kind("style-sheet", "A style sheet", Resource(SITE + "a.css", "p { color: red }", "text/css"), ["color:", "red"]),
    kind("table", "Values separated by commas", Resource(SITE + "a.csv", "name,size\nfirst,1\n", "text/csv"), ["name,size", "first,1"]),
    kind("json", "JSON", Resource(SITE + "a.json", '{"key": "value"}', "application/json"), ['"value"}']),
    kind("script", "A script is shown and not run", Resource(SITE + "a.js", "document.write('ran')", "text/javascript"),
         ["document.write('ran')"]),
    kind("drawing", "A drawing", Resource(SITE + "a.svg", svg(300, 200, GREEN, "drawn"), "image/svg+xml"), ["drawn"],
         pixels=[(100, 100, GREEN)]),
    kind("picture", "A picture", Resource(SITE + "a.png", png(300, 200, GREEN), "image/png"), []),
    kind("picture-tall", "A picture larger than the view", Resource(SITE + "a.png", png(900, 2000, GREEN), "image/png"), []),
]
