"""Lengths and conditions that depend on the view: they must be those of the screen, not of the sheet."""

from entry import SITE, blocks, page, paragraphs
from images import png
from webarchive import Archive, HTML, Resource

FULL = "height:100vh;background:linear-gradient(#d33,#33d);color:#fff"
BELOW = blocks(6)


def sheet(name, text, site=SITE):
    return Resource(site + name, text, "text/css")


def shadow(mode):
    return (f"<div id=host></div>{BELOW}<script>const root = host.attachShadow({{mode: '{mode}'}});"
            f"root.innerHTML = '<style>p{{margin:0;{FULL}}}</style><p>shadow</p>';</script>")


PAGES = [
    page("hero", "100vh becomes the document's height", f"<div class=h>hero</div>{BELOW}",
         style=f"body{{margin:0}}.h{{{FULL}}}", size=(612, 1392), pixels=[(300, 4, (221, 51, 51))]),
    page("vh-in-calc", "calc() with viewport units",
         "<main>main</main><footer>footer</footer>",
         style="body{margin:0}main{min-height:calc(100vh - 100px);background:#fde}footer{height:100px;background:#cdf}",
         size=(612, 792), pixels=[(300, 700, (204, 221, 255)), (300, 680, (255, 221, 238))]),
    page("every-unit", "Small, large and dynamic units, least and greatest",
         "".join(f"<div style='height:{unit};width:50vw;background:{colour}'>u{number}</div>" for number, (unit, colour)
                 in enumerate([("10vh", "#fcc"), ("10svh", "#cfc"), ("10lvh", "#ccf"), ("10dvh", "#ffc"),
                               ("10vmin", "#cff"), ("10vmax", "#fcf"), ("10vb", "#cba"), ("10vi", "#abc"),
                               ("10svmin", "#bca"), ("10dvmax", "#acb")])),
         style="body{margin:0}"),
    page("type-in-vw", "Text sized by the view", "<h1>enormous</h1><p>" + paragraphs(6),
         style="h1{font-size:12vw;line-height:1;margin:0}p{font-size:clamp(10px,3vw,40px);line-height:1.5}"),
    page("custom-property", "A viewport unit behind a custom property", f"<div class=h>property</div>{BELOW}",
         style=f":root{{--full:100vh}}body{{margin:0}}.h{{{FULL};height:var(--full)}}", size=(612, 1392)),
    page("registered-property", "A registered property computes the unit where it is set",
         f"<div class=h>registered</div>{BELOW}",
         style="@property --edge{syntax:'<length>';inherits:true;initial-value:0px}"
               f":root{{--edge:50vh}}body{{margin:0}}.h{{{FULL};height:calc(var(--edge)*2)}}", size=(612, 1392)),
    page("inline-style", "A viewport unit in a style attribute", f"<div style='{FULL}'>attribute</div>{BELOW}",
         style="body{margin:0}", size=(612, 1392)),
    page("linked-sheet", "Viewport units in a linked sheet that imports another",
         f"<div class=h>linked</div><div class=i>imported</div>{BELOW}", style="body{margin:0}",
         head="<link rel=stylesheet href=main.css>",
         resources=[sheet("main.css", f"@import 'deep/more.css';.h{{{FULL}}}"),
                    sheet("deep/more.css", ".i{height:50vh;background:#fc3}")], size=(612, 1788)),
    page("foreign-sheet", "Viewport units in a sheet of another origin", f"<div class=h>foreign</div>{BELOW}",
         style="body{margin:0}", head="<link rel=stylesheet href=http://other.example/main.css>",
         resources=[sheet("main.css", f".h{{{FULL}}}", "http://other.example/")], size=(612, 1392)),
    page("constructed-sheet", "Viewport units in a constructed sheet",
         f"<div class=h>constructed</div>{BELOW}<script>const made = new CSSStyleSheet();"
         f"made.replaceSync('.h{{{FULL}}}');document.adoptedStyleSheets = [made];</script>",
         style="body{margin:0}", size=(612, 1392)),
    page("open-shadow", "Viewport units in an open shadow tree", shadow("open"), style="body{margin:0}",
         words=["shadow", "block5"], size=(612, 1392)),
    page("closed-shadow", "Viewport units in a closed shadow tree", shadow("closed"), style="body{margin:0}",
         words=["shadow", "block5"], size=(612, 1392)),
    page("svg-in-vw", "Viewport units inside a drawing",
         "<svg width=100% height=60vh><rect width=50vw height=30vh fill=#c33 /><circle cx=75vw cy=30vh r=20vmin fill=#36c />"
         f"<text x=5vw y=50vh font-size=5vw>drawing</text></svg>{BELOW}", style="body{margin:0}"),
    page("container-units", "Units of a container beside units of the view",
         "<div class=c><div class=i>inside</div></div>" + BELOW,
         style="body{margin:0}.c{container-type:size;width:50vw;height:40vh;background:#eee}"
               ".i{width:50cqw;height:50cqh;background:#9c9}@container (min-width:300px){.i{background:#c99}}"),
    page("media-width", "The sheet's width decides instead of the view's", f"<p>wide</p>{BELOW}",
         style="body{margin:0}@media(max-width:611px){p{display:none}}@media(min-width:613px){p{display:none}}"
               "@media(max-height:791px){p{display:none}}@media(min-height:793px){p{display:none}}"
               "@media(orientation:landscape){p{display:none}}", modes=("screen",)),
    page("media-height-tall", "The document's height decides instead of the view's", f"<p>first</p>{blocks(20)}",
         style="body{margin:0;background:#efe}@media(min-height:1000px){body{background:#f00}}"
               "@media(max-aspect-ratio:1/2){body{background:#f00}}"),
    page("media-type", "Print styles on a page that is shown on the screen",
         "<p class=s>forscreen</p><p class=p>forprint</p>" + paragraphs(4),
         style=".p{display:none}@media print{.p{display:block}.s{display:none}body{background:red}}",
         absent=["forprint"]),
    page("media-link", "A linked sheet for another width, and one for print",
         f"<p class=n>narrow</p><p class=p>paper</p><p>always</p>{BELOW}",
         head="<link rel=stylesheet href=narrow.css media='(max-width:500px)'><link rel=stylesheet href=print.css media=print>",
         resources=[sheet("narrow.css", "p{display:none}"), sheet("print.css", "p{display:none}")]),
    page("media-import", "An import for another width, and one for print", f"<p>imported</p>{BELOW}",
         head="<link rel=stylesheet href=main.css>",
         resources=[sheet("main.css", "@import 'a.css' print;@import 'a.css' (max-width:500px);@import 'b.css' screen;"),
                    sheet("a.css", "p{display:none}"), sheet("b.css", "p{background:#cfc}")]),
    page("media-picture", "A picture chosen by the view's width",
         "<picture><source media='(min-width:600px)' srcset=wide.png><img src=narrow.png width=200 height=100></picture>"
         "<p>below</p>", style="body{margin:0}img{display:block}",
         resources=[Resource(SITE + "wide.png", png(4, 2, (30, 160, 60)), "image/png"),
                    Resource(SITE + "narrow.png", png(4, 2, (220, 30, 40)), "image/png")],
         pixels=[(100, 50, (30, 160, 60))], sheet_pixels=[(1, 100, 60, (30, 160, 60))]),
    page("frame-units", "Viewport units inside a frame are the frame's",
         "<iframe src=inner.html width=400 height=300></iframe>" + paragraphs(10),
         style="iframe{border:0}", words=["inframe", "p9w13"],
         frames=[Archive(Resource(SITE + "inner.html", "<!DOCTYPE html><style>body{margin:0}div{height:50vh;width:50vw;"
                                  "background:#6a6}</style><div>inframe</div>", HTML))],
         pixels=[(200, 150, (102, 170, 102)), (300, 150, (255, 255, 255))]),
    page("snapping", "Sections of a view each, with scroll snapping",
         "".join(f"<section style='background:hsl({n * 60},60%,70%)'>section{n}</section>" for n in range(4)),
         style="html{scroll-snap-type:y mandatory}body{margin:0}section{height:100vh;scroll-snap-align:start}",
         size=(612, 3168)),
    page("scripted-sizes", "Scripts that sized things by the view must not run again",
         "<div id=a>asked</div><p id=b></p>" + BELOW +
         "<script>function fit(){a.style.height = innerHeight + 'px'; b.textContent = 'h' + innerHeight} fit();"
         "addEventListener('beforeprint', () => b.textContent = 'printing');"
         "matchMedia('print').addListener(() => b.textContent = 'printing');</script>",
         style="body{margin:0}#a{background:#ffd}", words=["asked", "block5"], absent=["printing"]),
]
