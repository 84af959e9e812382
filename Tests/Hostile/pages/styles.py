"""Style sheets that are more work than they look."""

from entry import BOMB, LONG_LINE, page


def styled(name, harm, style, body="<div><p>x</p></div>", **more):
    return page(name, harm, body, head=f"<style>{style}</style>", **more)


MANY = "".join(f"<p class=c{n}>x" for n in range(3000))

PAGES = [
    styled("counters", "A counter beyond all numbers", "p{counter-increment:a 2147483647}p::before{content:counter(a,hebrew) counter(a,lower-roman) counters(a,'.')}", "<p>x" * 50),
    styled("counters-symbolic", "A counter that says its number in strokes", "@counter-style s{system:symbolic;symbols:'x'}p{counter-reset:a 100000}p::before{content:counter(a,s)}"),
    styled("counters-additive", "A counter that adds up its number", "@counter-style s{system:additive;additive-symbols:1 'x'}p{counter-reset:a 2000000000}p::before{content:counter(a,s)}"),
    styled("has", "Selectors that look at everything", "".join(f":has(:has(.c{n})) ~ :has(+ * .d{n}) *:not(:has(p)){{color:red}}" for n in range(300)), MANY),
    styled("selectors", "Selectors of a thousand parts", " ".join(["div"] * 1000) + " p{color:red}" + ":is(" * 100 + "p" + ")" * 100 + "{color:red}", "<div>" * 400 + "x"),
    styled("not", "Selectors nested beyond sense", ":not(" * 5000 + "p" + ")" * 5000 + "{color:red}"),
    styled("nesting", "Rules nested beyond sense", "p{" + "& &, & &{" * 30 + "color:red" + "}" * 31, "<p>x" * 50, never_ends="the engine writes all the selectors while the page loads"),
    styled("variables", "Variables that double thirty times", ":root{--a0:x x;" + "".join(f"--a{n}:var(--a{n - 1}) var(--a{n - 1});" for n in range(1, 40)) + "}p::after{content:var(--a39)}", quick=True),
    styled("variables-circle", "Variables that need each other", ":root{--a:var(--b);--b:var(--c,var(--a));--c:calc(1px + var(--b))}p{width:var(--a)}"),
    styled("calc", "A sum of a hundred thousand parts", "p{width:calc(1px" + " + 1px" * 100_000 + ")}"),
    styled("calc-deep", "A sum nested beyond sense", "p{width:" + "calc(1px + " * 10_000 + "1px" + ")" * 10_000 + "}"),
    styled("filters", "Filters on filters", "div{filter:blur(100px) drop-shadow(0 0 100px red) blur(100px)}", "<div>" * 30 + "x" + "</div>" * 30, linger=0, memory_limit=BOMB),
    styled("filters-url", "Filters that feed themselves", "p{filter:url(#f)}", "<svg><filter id=f>" + "".join(f"<feGaussianBlur stdDeviation=500 in=r{n} result=r{n + 1} /><feMerge><feMergeNode in=r{n} /><feMergeNode in=r{n} /></feMerge>" for n in range(50)) + "</filter></svg><p>x", says=()),
    styled("turbulence", "Noise without end", "p{filter:url(#f)}", "<svg><filter id=f x=0 y=0 width=100 height=100><feTurbulence numOctaves=100000 baseFrequency=10 /></filter></svg><p>x", says=()),
    styled("shadows", "Ten thousand shadows", "p{text-shadow:" + ",".join(f"{n}px {n}px 50px red" for n in range(500)) + "}", "<p>xxxxxxxxxxx" * 20),
    styled("box-shadows", "A thousand shadows of boxes", "p{box-shadow:" + ",".join(f"0 0 {n}px {n}px red" for n in range(1000)) + "}"),
    styled("gradients", "A thousand backgrounds", "p{background:" + ",".join("repeating-conic-gradient(red,blue .001deg)" for _ in range(1000)) + "}"),
    styled("gradient-steps", "A gradient of ten thousand colours", "p{background:linear-gradient(" + ",".join(f"hsl({n},50%,50%)" for n in range(10_000)) + ")}"),
    styled("grid", "A grid of ten million tracks", "div{display:grid;grid-template:repeat(10000000,1px)/repeat(10000000,1px)}p{grid-area:9999999/9999999}", quick=True),
    styled("grid-auto", "Tracks that fill without end", "div{display:grid;grid-template-columns:repeat(auto-fill,minmax(.001px,1fr));width:1e7px}"),
    styled("grid-sub", "Grids within grids", "div{display:grid;grid:subgrid/subgrid;grid-column:1/1000}", "<div>" * 60 + "x"),
    styled("page-rules", "Rules for pages that are none", "@page{size:1e9in 0;margin:-100in}@page :first{size:NaN}@page a:left{margin:1e99px}p{page:a;break-after:page}", "<p>x" * 20),
    styled("page-rules-print", "The same on sheets", "@page{size:1e9in 0!important;margin:5000in}@page :first{size:1px}p{page:a;break-after:page}", "<p>x" * 20, mode="print"),
    styled("page-open", "A rule that never closes", "@page{size:a4;@media print{html{display:none}"),
    styled("breaks", "A break after everything", "*{break-after:page!important;break-inside:avoid!important}", "<p>x" * 300, mode="print"),
    styled("hidden-in-print", "A page that hides from printers", "@media print{*{display:none!important}}"),
    styled("animations", "Animations without end", "@keyframes a{to{transform:rotate(9999turn) scale(1000)}}*{animation:a 1ms infinite}", MANY[:5000], says=()),
    styled("transitions", "Everything changes slowly", "*{transition:all 1e6s}html:hover,body{opacity:.9}"),
    styled("transforms", "Boxes turned out of space", "div{perspective:1px;transform:rotate3d(1,1,1,89.999deg) translateZ(1e9px) scale(1e9)}", "<div>" * 20 + "x"),
    styled("clips", "Clips on clips", "div{clip-path:polygon(" + ",".join(f"{n}px {n * 7 % 100}px" for n in range(2000)) + ");mask:linear-gradient(red,blue)}", "<div>" * 20 + "x" + "</div>" * 20),
    styled("blend", "Blends on blends", "div{mix-blend-mode:difference;backdrop-filter:blur(50px);isolation:isolate;opacity:.9}", "<div>" * 50 + "x" + "</div>" * 50),
    styled("columns", "A million columns", "div{columns:1000000;column-gap:0;height:1px}"),
    styled("float", "Ten thousand floats", "p{float:left;width:1px;height:1px;margin:0}", "<p>x" * 3000),
    styled("sticky", "Everything sticks", "*{position:sticky;top:0;bottom:0}", MANY[:5000]),
    styled("fixed", "Everything is fixed", "p{position:fixed;inset:0}", "<p>x" * 500, mode="print"),
    styled("containers", "Containers that depend on themselves", "div{container-type:size;height:10px}@container (width>1px){div{width:calc(100cqw + 100cqh)}}", "<div>" * 100 + "x"),
    styled("anchors", "Boxes that hang on each other", "p{position:absolute;anchor-name:--a;position-anchor:--a;left:anchor(right);top:anchor(bottom)}", "<p>x" * 200),
    styled("fonts-size", "Letters of absurd sizes", "p{font-size:1e9px}", "<p>x"),
    styled("zoom", "A zoom beyond sight", "html{zoom:1000}", says=()),
    styled("content", "Much that is made up", "p::before{content:'" + "x" * 1_000_000 + "'}", may_fail=LONG_LINE),
    styled("sheet-large", "A sheet of a hundred thousand rules", "".join(f".c{n}{{color:red}}" for n in range(100_000)), MANY),
    styled("nul", "Characters that are none", "p\0{color:red}\1\2@\3{}<!-- --> @import url(\0); }}}}{{{{"),
    styled("imports", "Imports of what is not there", "".join(f"@import url(x{n}.css);" for n in range(1000))),
    styled("font-faces", "Fonts that are not there", "".join(f"@font-face{{font-family:f{n};src:url(x{n}.woff2)}}.c{n}{{font-family:f{n}}}" for n in range(500)), MANY[:8000]),
]
