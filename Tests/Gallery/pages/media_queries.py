"""Conditions on the view, which must be answered for the view in both modes: not for the sheet of a print, and not for
the document, whatever its shape. A word is seen where its condition holds."""

from entry import SITE, blocks, page, paragraphs
from images import png
from webarchive import Archive, HTML, Resource

# The view is 612 x 792 in screen mode, and 720 x 960 in a print.
QUERIES = {
    "view": "(width:612px) and (height:792px),(width:720px) and (height:960px)",
    "device": "(device-width:612px) and (device-height:792px),(device-width:720px) and (device-height:960px)",
    "portrait": "(orientation:portrait)",
    "ratio": "(aspect-ratio:17/22),(aspect-ratio:3/4)",
    "deviceratio": "(device-aspect-ratio:17/22),(device-aspect-ratio:3/4)",
    "ranged": "(600px<=width<=767px) and (700px<=height<=1000px)",
}
WRONG = "(min-width:768px),(max-width:611px),(min-height:1000px),(max-height:791px),(orientation:landscape)"
WORDS = [*QUERIES, "unconditional"]


def rules(prefix=""):
    hidden = ",".join(f"{prefix}.{name}" for name in (*QUERIES, "wrong"))
    shown = "".join(f"@media {query}{{{prefix}.{name}{{display:block}}}}" for name, query in QUERIES.items())
    return f"{hidden}{{display:none}}{shown}@media {WRONG}{{{prefix}.wrong{{display:block}}}}"


def markers(tag="p"):
    return "".join(f"<{tag} class={name}>{name}</{tag}>" for name in (*QUERIES, "wrong")) + f"<{tag}>unconditional</{tag}>"


def shaped(name, trouble, below="", style="", **expected):
    return page(name, trouble, markers() + below, style=rules() + style, words=WORDS, absent=["wrong"], **expected)


def foreign(name, trouble, html, mime="application/xhtml+xml", **expected):
    return page(name, trouble, archive=Archive(Resource(SITE + "page", html, mime)), words=WORDS, absent=["wrong"],
                **expected)


def sheet(name, text):
    return Resource(SITE + name, text, "text/css")


def escaped(text):
    return text.replace("&", "&amp;").replace("<", "&lt;")


LINKED = "".join(f"<link rel=stylesheet href={name}.css media='{query}'>" for name, query in QUERIES.items())
IMPORTS = "".join(f"@import '{name}.css' {query};" for name, query in QUERIES.items())
SHOWN = [sheet(f"{name}.css", f".{name}{{display:block!important}}") for name in QUERIES]
ASKED = "".join(f"if (matchMedia('{query}').matches) show('{name}');" for name, query in QUERIES.items())
DRAWN = "".join(f'<text class="{name}" x="20" y="{40 * number + 40}" font-size="30">{name}</text>'
                for number, name in enumerate((*QUERIES, "wrong")))
VERTICAL = {"shifts_words": "the engine breaks vertical pages from side to side", "allowance": 0.2,
            "allowance_reason": "glyphs on their side have other soft edges"}

PAGES = [
    shaped("short", "A page within the view"),
    shaped("tall", "A page of many views", blocks(30)),
    shaped("wide", "A page wider than the view", "<div style='width:1600px;background:#cdf'>across</div>"),
    shaped("wide-and-tall", "A page wider than the view and of many views",
           f"<div style='width:1600px'>{blocks(30)}</div>"),
    shaped("very-wide", "A page that is printed at less than a tenth", "<div style='width:9000px'>across</div>"),
    shaped("right-to-left", "A page from the right", paragraphs(5), "html{direction:rtl}"),
    shaped("right-to-left-wide", "A page from the right, wider than the view and of many views",
           f"<div style='width:1600px'>{blocks(30)}</div>", "html{direction:rtl}"),
    shaped("vertical", "Vertical text", style="html{writing-mode:vertical-rl}", **VERTICAL),
    shaped("vertical-wide", "Vertical text, wider than the view", paragraphs(30), "html{writing-mode:vertical-rl}",
           **VERTICAL),
    shaped("vertical-from-left", "Vertical text from the left, wider than the view", paragraphs(30),
           "html{writing-mode:vertical-lr}", **VERTICAL),
    page("quirky", "No document type", html=f"<style>{rules()}</style>{markers()}{blocks(12)}", words=WORDS, absent=["wrong"]),
    foreign("not-html", "A root that is not html",
            '<?xml version="1.0"?><div xmlns="http://www.w3.org/1999/xhtml"><style>style{display:none}'
            f"{escaped(rules())}</style>"
            + "".join(f'<p class="{name}">{name}</p>' for name in (*QUERIES, "wrong"))
            + "<p>unconditional</p><div style='height:3000px'></div></div>".replace("'", '"')),
    foreign("drawing", "A drawing as the page",
            f'<svg xmlns="http://www.w3.org/2000/svg" width="900" height="1500"><style>{escaped(rules())}</style>{DRAWN}'
            '<text x="20" y="400" font-size="30">unconditional</text></svg>', "image/svg+xml"),
    page("linked", "Linked sheets with a condition", markers() + blocks(20), head=LINKED,
         style="".join(f".{name}{{display:none}}" for name in (*QUERIES, "wrong")), resources=SHOWN, words=WORDS,
         absent=["wrong"]),
    page("imported", "Imported sheets with a condition", markers() + blocks(20), head="<link rel=stylesheet href=main.css>",
         style="".join(f".{name}{{display:none}}" for name in (*QUERIES, "wrong")),
         resources=[sheet("main.css", IMPORTS), *SHOWN], words=WORDS, absent=["wrong"]),
    page("asked", "Scripts that ask for conditions", markers() + blocks(20)
         + f"<script>function show(name) {{document.querySelector('.' + name).style.display = 'block'}}{ASKED}</script>",
         style="".join(f".{name}{{display:none}}" for name in (*QUERIES, "wrong")), words=WORDS, absent=["wrong"]),
    page("listened", "Scripts that are told when a condition holds", "<p>unconditional</p><p class=narrow>narrow</p>"
         "<p class=wide>wide</p><script>const query = matchMedia('(min-width:768px)');"
         "const fit = () => {for (const [name, shown] of [['narrow', !query.matches], ['wide', query.matches]])"
         "document.querySelector('.' + name).style.display = shown ? 'block' : 'none'};"
         "query.addEventListener('change', fit); fit()</script>" + blocks(20), words=["unconditional", "narrow"],
         absent=["wide"]),
    page("shadow", "Conditions in a shadow tree", "<div id=host></div><template>" + markers() + f"<style>{rules()}</style>"
         "</template><script>host.attachShadow({mode: 'closed'})"
         ".append(document.querySelector('template').content)</script>" + blocks(20), words=WORDS, absent=["wrong"]),
    page("framed", "A frame's conditions are its own", "<iframe src=inner.html width=500 height=300></iframe>"
         + blocks(20), words=["inside", "unconditional"], absent=["wrong"],
         frames=[Archive(Resource(SITE + "inner.html", "<!DOCTYPE html><style>body *{display:none}"
                                  "@media (width:500px) and (height:300px){.right{display:block}}"
                                  "@media (width>500px) or (height>300px){.wrong{display:block}}</style>"
                                  "<p class=right>inside unconditional</p><p class=wrong>wrong</p>", HTML))]),
    page("pictures", "Pictures chosen by the view",
         "<picture><source media='(min-width:768px),(min-height:1000px)' srcset=wrong.png>"
         "<img src=right.png width=200 height=100></picture>" + blocks(20), style="body{margin:0}img{display:block}",
         resources=[Resource(SITE + "right.png", png(4, 2, (30, 160, 60)), "image/png"),
                    Resource(SITE + "wrong.png", png(4, 2, (220, 30, 40)), "image/png")],
         pixels=[(100, 50, (30, 160, 60))], sheet_pixels=[(1, 100, 60, (30, 160, 60))]),
    page("containers", "Containers as wide as the view", "<div class=c><p class=right>right</p><p class=wrong>wrong</p></div>"
         + blocks(20), words=["right"], absent=["wrong"],
         style="body{margin:0}.c{container-type:inline-size}.c p{display:none}"
               "@container (width:612px) or (width:720px){.right{display:block!important}}"
               "@container (min-width:768px){.wrong{display:block!important}}"),
    page("root-container", "A root that is a container", "<p class=right>right</p><p class=wrong>wrong</p>" + blocks(20),
         words=["right"], absent=["wrong"],
         style="html{container-type:inline-size}body{margin:0}.right,.wrong{display:none}"
               "@container (width:612px) or (width:720px){.right{display:block!important}}"
               "@container (min-width:768px){.wrong{display:block!important}}"),
    page("columns", "Columns below a breakpoint of 768 px", "<div class=r><div class=a>first</div><div class=b>second</div></div>"
         + paragraphs(30), style="body{margin:0}.r{display:flex;flex-direction:column}"
                                 ".r div{background:#cdf;height:80px}@media (min-width:768px){.r{flex-direction:row}}"
                                 "@media (min-width:768px){.r div{width:50%}}"),
]
