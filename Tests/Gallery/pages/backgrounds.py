"""The canvas: backgrounds of html and body spread over the whole document."""

from entry import blocks, page, paragraphs

TILE = ("url(&quot;data:image/svg+xml,%3Csvg xmlns='http://www.w3.org/2000/svg' width='50' height='50'%3E%3Crect "
        "width='25' height='25' fill='%23acf'/%3E%3Crect x='25' y='25' width='25' height='25' fill='%23fca'/%3E%3C/svg%3E&quot;)"
        ).replace("&quot;", '"')
RASTERED = "the engine draws what a filter changes as a picture, so that its words are lost"
SHORT, LONG = paragraphs(4), paragraphs(25)


def backdrop(name, trouble, where, value, body=LONG, **more):
    style = more.pop("style", "")
    return page(name, trouble, body, style=f"{where}{{background:{value}}}{style}", **more)


PAGES = [
    backdrop("body-colour", "The body's colour fills the page beyond its margins", "body", "#ffe0c0", blocks(6),
             style="body{margin:30px 50px}", pixels=[(5, 5, (255, 224, 192)), (605, 785, (255, 224, 192))]),
    backdrop("both-colours", "The root's colour outside, the body's inside", "body", "#ffe0c0", blocks(6),
             style="html{background:#224}body{margin:30px 50px}", pixels=[(5, 5, (34, 34, 68)), (55, 640, (34, 34, 68))]),
    backdrop("gradient-body-tall", "A gradient on a tall body", "body", "linear-gradient(45deg,#f88,#88f)"),
    backdrop("gradient-body-short", "A gradient on a short body repeats", "body", "linear-gradient(#f88,#88f)", SHORT),
    backdrop("gradient-root-tall", "A gradient on a tall root", "html", "linear-gradient(#f88,#88f)"),
    backdrop("gradient-root-short", "A gradient on a short root with padding", "html",
             "radial-gradient(circle at 30% 40%,#f88,#88f)", SHORT, style="html{padding:20px}"),
    backdrop("gradient-root-margins", "A gradient on a root with margins", "html", "linear-gradient(#f88,#88f)",
             style="html{margin:20px 60px}"),
    backdrop("gradient-root-margins-short", "The same on a short page", "html", "linear-gradient(90deg,#f88,#88f)", SHORT,
             style="html{margin:20px 60px}"),
    backdrop("tile-body-tall", "A repeated image placed from the right", "body", f"{TILE} right 10px top 7px"),
    backdrop("tiles-body-short", "Two images, one at the bottom", "body", f"{TILE} 50% 100% no-repeat,{TILE} repeat-y,#eef", SHORT),
    backdrop("tile-centre", "One image in the middle, sized in per cent", "body", f"{TILE} center/30% no-repeat #efe"),
    backdrop("cover-fixed", "A fixed image that covers the view", "body", f"{TILE} center/cover no-repeat fixed #efe", SHORT),
    backdrop("percent-root", "Positions and sizes in per cent of the root", "html",
             f"{TILE} 25% 75%/20% 10% no-repeat,linear-gradient(90deg,red,blue) 0 100%/100% 20px no-repeat,#efe", SHORT),
    backdrop("body-behind", "The body's image on a body narrower than the page", "body", f"{TILE}", SHORT,
             style="body{width:300px;margin:50px auto;border:5px solid #c33}"),
    page("fixed-in-sections", "Sections with windows on a fixed picture",
         "".join(f"<section>window{n}</section><p>between{n}</p>" for n in range(4)),
         style="section{height:300px;background:linear-gradient(#f88,#88f) fixed}",
         pictures_differ="on a page that does not scroll each element has a fixed picture of its own"),
    page("clipped-root", "A clip path on the root", SHORT, style="html{clip-path:inset(40px);background:#eef}",
         words=["p1w2", "p2w3"], pictures_differ="a clip path on a root lower than the view is taken from the view's box"),
    page("dark-scheme", "A page that asks for a dark canvas", SHORT, head='<meta name="color-scheme" content="dark">'),
    page("no-background", "A page without any background is white", SHORT, pixels=[(600, 780, (255, 255, 255))]),
    page("bordered-root", "A border on a tall root", LONG, style="html{border:15px solid #c33;background:linear-gradient(#fee,#eef)}"),
    page("bordered-root-short", "A border on a short root", SHORT,
         style="html{border:15px solid #c33;background:linear-gradient(#fee,#eef)}"),
    page("negative-margins", "Negative margins on the root", LONG,
         style="html{margin:-10px -20px;background:linear-gradient(#fee,#eef)}"),
    page("filtered-root", "A filter on the root", LONG, style="html{filter:invert(1);background:#eef}", words=[],
         sheet_pixels=[(1, 40, 40, (17, 17, 0)), (2, 306, 700, (17, 17, 0))], allowance_reason=RASTERED, shifts_words=RASTERED),
    page("faded-root", "A root that lets the canvas shine through", LONG, style="html{opacity:.5;background:#eef}"),
    page("blended", "Blending with what is behind", "<div id=m>mixed</div>" + SHORT,
         style="body{background:#fc8}#m{mix-blend-mode:multiply;background:#8cf;height:80px}",
         pictures_differ="when the engine prints, it blends with nothing that is as far back as the canvas"),
    page("blended-inside", "Blending with what is behind, above the canvas", "<main><div id=m>mixed</div></main>" + SHORT,
         style="main{background:#fc8;padding:30px}#m{mix-blend-mode:multiply;background:#8cf;height:80px}",
         pixels=[(300, 110, (136, 163, 136))]),
    page("shadows-and-clips", "Shadows, masks, clip paths and filters", "<div id=a>shadow</div><div id=b>clip</div><div id=c>blur</div>",
         style="div{margin:30px;width:200px;height:90px;background:#8cf}#a{box-shadow:0 5px 20px #0008}"
               "#b{clip-path:ellipse(50% 40%)}#c{filter:blur(3px);background:#f84}", words=["shadow", "clip"]),
]
