"""Boxes that scroll inside the view. Where such a box is the page, all that it holds is shown; on sheets, where nothing
scrolls, others show it, too."""

from entry import SITE, blocks, page, paragraphs
from webarchive import Archive, HTML, Resource

FULL = "html,body{height:100%;margin:0;overflow:hidden}"
TEXT = paragraphs(40)
GROWN = {"view_differs": "what stands below the box, or ends with it, goes to its new end"}
HEADER = "<header>header</header>"
FOOTER = "<footer>footer</footer>"
BARS = "header,footer{background:#36c;color:#fff;height:40px;flex:none}"
CODE = "\n".join(f"first{n} " + "very_long_code_" * 8 + f" last{n}" for n in range(6))
ROWS = "".join("<tr>" + "".join(f"<td>cell{row}x{column}wide" for column in range(20)) for row in range(4))


def application(name, trouble, body, style, **expected):
    return page(name, trouble, body, style=FULL + BARS + style, **expected)


def framed(html):
    return Archive(Resource(SITE + "inner.html", "<!DOCTYPE html><style>body{margin:0;font:16px/24px 'DejaVu Sans'}</style>"
                            + html, HTML))


PAGES = [
    application("column", "Header, a box that scrolls, footer", f"<div id=app>{HEADER}<main>{TEXT}</main>{FOOTER}</div>",
                "#app{height:100vh;display:flex;flex-direction:column}main{flex:1;overflow:auto;min-height:0}", **GROWN),
    application("percent", "Heights in per cent all the way down", f"<div id=app><main>{TEXT}</main></div>",
                "#app,main{height:100%}main{overflow-y:scroll}", size=(612, 2576)),
    application("menu", "A box that scrolls beside a menu",
                f"<div id=app><nav>menu<p>entry</p></nav><main>{TEXT}</main></div>",
                "#app{height:100vh;display:flex}nav{width:150px;background:#cdf}main{flex:1;overflow:auto;padding:10px}"),
    application("menu-that-scrolls", "A menu that scrolls beside a box that scrolls",
                f"<div id=app><nav>{blocks(12)}</nav><main>{TEXT}</main></div>",
                "#app{height:100vh;display:flex}nav{width:300px;background:#cdf;overflow:auto}main{flex:1;overflow:auto}"),
    application("grid", "Rows of a grid", f"<div id=app>{HEADER}<main>{TEXT}</main>{FOOTER}</div>",
                "#app{height:100vh;display:grid;grid-template-rows:auto minmax(0,1fr) auto}main{overflow:auto}", **GROWN),
    application("absolute", "A box at all edges of the view", f"{HEADER}<main>{TEXT}</main>",
                "main{position:absolute;inset:40px 0 0 0;overflow:auto;background:#eef}"),
    application("from-below", "A box at the view's bottom", f"{HEADER}<main>{TEXT}</main>",
                "main{position:absolute;bottom:0;left:20px;width:500px;height:750px;overflow:auto;background:#eef}"),
    application("fixed", "A fixed box", f"<main>{TEXT}</main>", "main{position:fixed;inset:0;overflow-y:scroll;background:#eef}"),
    application("fixed-around", "A box that scrolls in a fixed one",
                f"<div id=app>{HEADER}<main>{TEXT}</main></div>",
                "#app{position:fixed;inset:0;display:flex;flex-direction:column}main{flex:1 1 0;overflow:auto}"),
    page("body", "The body scrolls, the root does not", TEXT,
         style="html{height:100%;overflow:hidden}body{height:100%;overflow:auto;margin:0;background:#fee}"),
    application("nested", "A box that scrolls in a box that scrolls", f"<div id=app><main>{TEXT}</main>{FOOTER}</div>",
                "#app{height:100vh;overflow:auto}main{height:90vh;overflow:auto}", **GROWN),
    application("clipped", "Boxes around it that clip", f"<div id=app><div class=i><main>{TEXT}</main></div></div>",
                "#app{height:100vh;overflow:hidden}.i{height:95vh;max-height:95vh;overflow:hidden;border-radius:20px;background:#eef}"
                "main{height:100%;overflow:auto}", **GROWN),
    application("margins", "Margins stay inside a box that no longer scrolls",
                f"<main><h1>title</h1>{TEXT}</main>", "main{height:100vh;overflow:auto;background:#eef}h1{margin:50px 0}"),
    application("cut-off", "A box whose scroll bar was lost when the page was saved", f"<div id=app>{HEADER}<main>{TEXT}</main></div>",
                "#app{height:100vh;display:flex;flex-direction:column}main{flex:1;overflow:hidden}"),
    application("shadow", "A box that scrolls in a shadow tree",
                "<x-app></x-app><template><style>:host{display:block;height:100vh}main{height:100%;overflow:auto}</style>"
                "<main><slot></slot></main></template><script>const app = document.querySelector('x-app');"
                "const text = document.querySelector('template').content.cloneNode(true);"
                f"app.attachShadow({{mode: 'open'}}).append(text);app.innerHTML = '{TEXT}'</script>",
                "x-app{display:block}", words=["p0w0", "p39w13"]),
    application("frame", "A frame as large as the view", "<iframe src=inner.html></iframe>",
                "iframe{width:100%;height:100vh;border:0;display:block}", words=["block0", "block19"],
                frames=[framed(blocks(20, 96))]),
    application("slides", "Slides of a view each, with snapping",
                "<main>" + "".join(f"<section>slide{n}</section>" for n in range(4)) + "</main>",
                "main{height:100vh;overflow-y:scroll;scroll-snap-type:y mandatory}section{height:100vh;background:#eef;"
                "scroll-snap-align:start}", size=(612, 3168)),
    application("scrolled", "A box that a script has scrolled to its end",
                f"<main>{TEXT}</main><script>document.querySelector('main').scrollTop = 100000</script>",
                "main{height:100vh;overflow:auto}"),
    application("sticky", "A heading that sticks to the box's top", f"<main><h2>sticking</h2>{TEXT}</main>",
                "main{height:100vh;overflow:auto}h2{position:sticky;top:0;background:#ffd;margin:0}"),
    application("observed", "Contents that appear when the box is scrolled to them",
                f"<main>{blocks(20)}<p id=late>waiting</p></main><script>new IntersectionObserver(([entry]) => {{"
                "if (entry.isIntersecting) late.textContent = 'arrived'}).observe(late)</script>",
                "main{height:100vh;overflow:auto}", words=["block0", "block19", "arrived"], absent=["waiting"]),
    application("zoomed", "A box that scrolls, zoomed", f"<main>{TEXT}</main>",
                "main{zoom:1.25;height:80vh;overflow:auto;background:#eef}",
                allowance=0.2, allowance_reason="glyphs of fractional sizes stand between pixels"),
    page("small", "A small box that scrolls, on the screen", f"<div class=s><p>shown</p>{blocks(9)}</div>" + paragraphs(4),
         style=".s{height:150px;overflow:auto;border:2px solid #36c}", modes=("screen",), words=["shown", "p3w13"],
         absent=["block5"]),
    page("small-on-sheets", "Small boxes that scroll, on sheets",
         f"<div class=s>{blocks(9)}</div><p>between</p><div class=c><div class=s>{blocks(15, 40)}</div></div>" + paragraphs(4),
         style=".s{height:150px;overflow:auto;border:2px solid #36c}.c{height:200px;overflow:hidden}", modes=("print",),
         shifts_words="the boxes grow", words=["block8", "between", "block14", "p3w13"]),
    page("code", "Lines of code that are cut at the side", f"<pre>{CODE}</pre><div class=w><pre class=n>{CODE.replace('st', 'sd')}</pre></div>"
         + paragraphs(4), style="pre{overflow:auto;background:#eee}.w{overflow-x:auto}.n{overflow:visible;width:max-content}",
         modes=("print",), words=[f"{word}{n}" for n in range(6) for word in ("first", "last", "firsd", "lasd")]),
    page("code-in-a-card", "Code in a box of its own height", f"<div class=c><pre>{CODE}</pre></div>" + paragraphs(4),
         style=".c{height:170px;overflow:hidden;border:2px solid #36c}pre{max-height:160px;overflow:auto;margin:0}", modes=("print",),
         words=[f"{word}{n}" for n in range(6) for word in ("first", "last")] + ["p3w13"], shifts_words="the lines are wrapped"),
    page("table", "A wide table that is cut at the side", f"<div class=w><table border>{ROWS}</table></div>" + paragraphs(4),
         style=".w{overflow-x:auto}", modes=("print",), words=["cell0x0wide", "cell0x19wide", "cell3x19wide"],
         shifts_words="the table is shown smaller"),
    page("text-field", "A field of text that scrolls",
         "<textarea>" + "\n".join(f"line{n}" for n in range(40)) + "</textarea>" + paragraphs(4), modes=("print",),
         words=["line0", "line39", "p3w13"], shifts_words="the field grows"),
    page("carousel", "Pictures to leaf through stay as they are",
         "<div class=c>" + "".join(f"<div class=i>picture{n}</div>" for n in range(9)) + "</div>" + paragraphs(4),
         style=".c{display:flex;overflow-x:auto;scroll-snap-type:x mandatory}.i{flex:none;width:300px;height:100px;background:#cdf}",
         words=["picture0", "p3w13"], absent=["picture8"]),
    page("covering", "A box in front of the text would cover it", f"<div class=f>{blocks(9)}</div>" + TEXT,
         style=".f{position:absolute;right:10px;top:10px;width:200px;height:150px;overflow:auto;background:#fff}",
         absent=["block8"], words=["block0", "p39w13"]),
]
