"""Paint that readers of PDF files draw differently: gradients, masks, opacity, blending, text that is more than text."""

from entry import page

ACROSS = "linear-gradient(90deg,#d00,#00d)"
CLIPPED = f"{{background:{ACROSS};background-clip:text;color:transparent}}"
COARSE = "MuPDF and pdf.js draw the hard stops of gradients that repeat or go round less sharply"

DEFINITIONS = """<defs>
<linearGradient id=plain><stop offset=0 stop-color='#d00'/><stop offset=1 stop-color='#00d'/></linearGradient>
<linearGradient id=fading x2=0 y2=1><stop offset=0 stop-color='#d00' stop-opacity='.9'/><stop offset=1 stop-color='#00d'
stop-opacity='.1'/></linearGradient>
<radialGradient id=round><stop offset=0 stop-color='#fd0'/><stop offset=1 stop-color='#080' stop-opacity='.2'/>
</radialGradient>
<pattern id=tiles width=20 height=20 patternUnits=userSpaceOnUse><rect width=10 height=10 fill='#08c'/><circle cx=15 cy=15
r=5 fill='#c80'/></pattern>
<linearGradient id=dark><stop offset=0 stop-color='#fff'/><stop offset=1 stop-color='#000'/></linearGradient>
<mask id=veil><rect width=560 height=240 fill='url(#dark)'/></mask>
<clipPath id=disc><circle cx=100 cy=100 r=80 /></clipPath>
</defs>"""


def drawing(name, trouble, shapes, **more):
    return page(name, trouble, f"<svg width=560 height=240 viewBox='0 0 560 240'>{DEFINITIONS}{shapes}</svg>", **more)


def swatches(name, trouble, property, values, style="", **more):
    """A box for each value of a property of style sheets."""
    boxes = "".join(f'<div style="{property}:{value}"></div>' for value in values)
    return page(name, trouble, boxes, style="div{display:inline-block;width:160px;height:110px;margin:4px}" + style, **more)


PAGES = [
    page("clipped-heading", "A heading whose letters show a gradient", "<h1>Gradient heading words</h1><p>after</p>",
         style=f"h1{CLIPPED}"),
    page("clipped-link", "A link over several lines whose letters show a gradient",
         "<p>before <a href='http://a.example/'>a link that is long enough to be broken over several lines of this paragraph, "
         "so that it has more than one box</a> after</p>", style=f"a{CLIPPED}"),
    page("clipped-mixed", "Letters that show a gradient beside coloured ones", "<h1>Some <b>solid</b> <i>slanted</i> words</h1>",
         style=f"h1{CLIPPED}h1{{background:{ACROSS} 0 0/50% no-repeat,#fc8;background-clip:text}}b{{color:#080}}"),
    page("clipped-half", "Half transparent letters above their gradient", "<h1>Half transparent words</h1>",
         style=f"h1{CLIPPED}h1{{color:#0006}}"),
    page("clipped-decorated", "Underlined letters that show a gradient, with a shadow", "<h1>Underlined</h1><h2>Shadow</h2>",
         style=f"h1,h2{CLIPPED}h1{{text-decoration:underline}}h2{{text-shadow:2px 2px 0 #0003}}"),
    page("clipped-faded", "Letters that show a gradient, faded and turned", "<main><h1>Faded 2026</h1></main>",
         style=f"main{{background:#eef;padding:20px;transform:rotate(3deg)}}h1{CLIPPED}h1{{opacity:.5}}"),
    page("clipped-emoji", "Emoji in a text that shows a gradient", "<h1>😀 smile</h1><p>😀 faded</p>",
         style=f"h1{CLIPPED}p{{font-size:40px;line-height:60px;opacity:.4}}"),
    page("stroked", "Letters with an outline, filled and hollow", "<h1>Stroked</h1><h2>Hollow</h2><h3>Under</h3>",
         style="h1,h2,h3{font-size:50px;line-height:60px;-webkit-text-stroke:2px red}h1{color:#fc8}"
               "h2{-webkit-text-fill-color:transparent}h3{-webkit-text-stroke:3px #0008;paint-order:stroke}"),
    drawing("opacity-of-fills", "Drawings filled with translucent gradients and patterns",
            "<rect width=180 height=100 fill='url(#plain)' fill-opacity=.5 /><rect x=190 width=180 height=100 fill='url(#fading)'/>"
            "<rect x=190 y=110 width=180 height=100 fill='url(#fading)' fill-opacity=.5 /><circle cx=60 cy=160 r=50 "
            "fill='url(#round)'/><circle cx=150 cy=160 r=40 fill='url(#round)' fill-opacity=.4 /><rect x=380 width=80 height=100 "
            "fill='url(#tiles)' fill-opacity=.5 /><rect x=470 width=80 height=100 fill='url(#tiles)' opacity=.5 /><rect x=380 y=110 "
            "width=160 height=80 fill='url(#plain)' opacity=.5 />", pixels=[(25, 70, (238, 131, 133))]),
    drawing("opacity-of-strokes", "Lines drawn with translucent gradients",
            "<g fill=none stroke-width=20 stroke-opacity=.5><path d='M20 20L200 200L300 30' stroke='url(#plain)'/>"
            "<path d='M320 20q200 200 200 30' stroke='url(#fading)'/></g>"),
    drawing("opacity-of-texts", "Letters of a drawing, filled with translucent gradients",
            "<g font-size=50><text x=10 y=60 fill='url(#plain)'>Gradient</text><text x=10 y=130 fill='url(#plain)' "
            "fill-opacity=.4>Faint</text><text x=10 y=200 fill='url(#fading)'>Fading</text></g>"),
    drawing("turned-drawing", "The same, turned and scaled", "<g transform='rotate(20) translate(80 10) scale(1.5)'><rect width=100 "
            "height=60 fill='url(#plain)' fill-opacity=.5 /><rect x=110 width=100 height=60 fill='url(#fading)' "
            "fill-opacity=.5 /></g>"),
    drawing("masked-drawing", "A drawing behind a mask, and one within a clip path",
            "<g mask='url(#veil)'><rect width=400 height=200 fill='#080'/><text x=20 y=60 font-size=40>masked</text></g>"
            "<g transform='translate(400 0) scale(.7)' clip-path='url(#disc)'><rect width=200 height=200 fill='url(#plain)' "
            "fill-opacity=.5 /></g>"),
    page("masked-boxes", "Boxes behind masks", "<div id=a>fades</div><div id=b>inside</div><div id=c>two</div>",
         style="div{width:260px;height:90px;margin:10px;background:#08c}#a{mask-image:linear-gradient(90deg,#000,transparent)}"
               "#b{mask:radial-gradient(circle,#000 50%,transparent 51%)}#c{mask:linear-gradient(#000,#000) 0 0/60% 60% no-repeat,"
               "radial-gradient(circle,#000 30px,transparent 31px)}"),
    page("composed-masks", "Masks that are taken from each other", "<div id=a></div><div id=b></div>",
         style="div{width:260px;height:90px;margin:10px;background:#08c}#a{mask:linear-gradient(#000 0 0) content-box exclude,"
               "linear-gradient(#000 0 0);padding:15px;box-sizing:border-box}#b{mask:radial-gradient(circle,#000 30px,transparent "
               "31px),linear-gradient(#000,#0006);mask-composite:subtract}",
         pictures_differ="when the engine prints, masks are not taken from each other"),
    page("blend-modes", "Blending with what is behind", "<main>" + "".join(
        f"<div style='mix-blend-mode:{mode}'>{mode}</div>"
        for mode in "multiply screen overlay darken difference color-dodge hue luminosity".split()) + "</main>",
         style="main{background:#fc8;padding:20px}div{height:50px;width:200px;margin:5px;background:#8cf}"),
    swatches("blended-backgrounds", "Backgrounds that blend with each other", "background-blend-mode", ["multiply", "screen", "hue"],
             f"div{{background:{ACROSS},linear-gradient(#fff,#000)}}"),
    page("opacity-groups", "Groups within groups, each of them faded", "<main><div>one<div>two</div></div><p>three</p></main>",
         style=f"main{{opacity:.5}}div{{background:#8cf;height:90px;opacity:.7;margin:10px}}div div{{background:#f84;width:50%}}"
               f"p{{background:{ACROSS};opacity:.4}}"),
    swatches("filtered-boxes", "Filters of every kind", "filter",
             ["blur(3px)", "opacity(.5)", "drop-shadow(4px 4px 2px #0008)", "grayscale(1)", "hue-rotate(90deg)", "brightness(.5)"],
             f"div{{background:{ACROSS}}}"),
    swatches("gradients", "Gradients along a line and around a point", "background",
             ["linear-gradient(45deg,red,gold,lime)", "radial-gradient(circle at 30% 40%,gold,navy)", "linear-gradient(red,blue)"]),
    swatches("translucent-gradients", "Gradients to translucent colours", "background",
             ["linear-gradient(#f008,#00f8)", "linear-gradient(90deg,#f00,#f000)", "radial-gradient(#0f0,#0f00 70%)",
              "radial-gradient(closest-side at 80% 50%,red 20%,#0000 80%),linear-gradient(#eee,#999)"]),
    swatches("faded-gradients", "Boxes that are faded, with a gradient each", "background",
             ["linear-gradient(45deg,red,gold,lime)", "radial-gradient(circle at 30% 40%,gold,navy)", "linear-gradient(#f008,#00f8)",
              "conic-gradient(red,gold,lime,blue,red)", "radial-gradient(#0f0,#0f00 70%)"], "div{opacity:.4}"),
    swatches("coarse-gradients", "Gradients that repeat or go round", "background",
             ["repeating-linear-gradient(30deg,#08c 0 10px,#fc8 10px 20px)", "repeating-radial-gradient(circle,#fff 0 8px,#888 8px 16px)",
              "conic-gradient(red,gold,lime,blue,red)", "repeating-conic-gradient(#000 0 10%,#fff 10% 20%)"],
             readers_differ={"MuPDF": 1, "pdf.js": 0.5}, readers_reason=COARSE),
    swatches("shadows", "Shadows without, within, sharp", "box-shadow",
             ["0 5px 20px #0008", "inset 0 0 15px #004", "8px 8px 0 red"], "div{background:#8cf;margin:25px}"),
    page("shadow-of-letters", "Letters with a soft shadow", "<h1>Soft shadow</h1>", style="h1{text-shadow:1px 1px 3px #800}"),
    swatches("clip-paths", "Boxes cut to shape", "clip-path",
             ["ellipse(50% 40%)", "polygon(0 0,100% 20%,80% 100%,10% 80%)", "inset(10px round 20px)", "path('M0 0L150 0L75 100z')"],
             f"div{{background:{ACROSS}}}"),
    page("rounded-and-faded", "A faded box that cuts its contents to its round corners", "<div><p>rounded words</p></div>",
         style=f"div{{width:300px;border-radius:40px;overflow:hidden;opacity:.6;background:{ACROSS}}}p{{background:#fff8;margin:0 0 50px}}"),
    page("faded-tiles", "A repeated image, faded", "<div>word</div>",
         style="div{width:300px;height:100px;opacity:.5;background:url(\"data:image/svg+xml,%3Csvg xmlns='http://www.w3.org/2000/svg' "
               "width='20' height='20'%3E%3Crect width='10' height='10' fill='%23f00'/%3E%3C/svg%3E\")}"),
    page("borders", "A border of a gradient, and one of translucent colours", "<div>framed</div><p>colours</p>",
         style="div,p{width:200px;height:60px;border:20px solid;border-color:#f008 #0f08 #00f8 #0008}"
               "div{border-image:linear-gradient(red,blue) 1}"),
    page("glass", "A box that blurs what is behind it", "<main><div>glass</div></main>",
         style=f"main{{background:{ACROSS};padding:20px}}div{{background:#fff8;backdrop-filter:blur(4px);height:60px}}"),
]
