"""Pages that defend themselves, by accident or on purpose."""

from entry import blocks, page, paragraphs

CLOBBERING = ("<img name=documentElement><img name=body><img name=head><form name=scrollingElement></form><img name=fonts>"
              "<img name=querySelectorAll><img name=createElementNS><img name=adoptedStyleSheets>")

PAGES = [
    page("policy", "A policy that forbids every style", "<p>guarded</p>" + paragraphs(20),
         head="<meta http-equiv='Content-Security-Policy' content=\"default-src 'none'\">"),
    page("policy-inline", "A policy that allows styles but no scripts", paragraphs(20),
         head="<meta http-equiv='Content-Security-Policy' content=\"default-src 'none'; style-src 'unsafe-inline'\">"),
    page("clobbered", "Names of elements that hide the document's own", CLOBBERING + paragraphs(20)),
    page("important-inline", "Important style attributes on html and body",
         "<body style='direction:rtl!important;background:#eef!important'>" + paragraphs(20),
         root="style='width:400px!important;margin:50px!important;overflow:hidden!important'"),
    page("important-layer", "An important layer of the author's", paragraphs(20), style="@layer q{html{width:300px!important}}"),
    page("transitions", "Everything moves gradually", paragraphs(20), style="*{transition:all 5s}"),
    page("animated-root", "An animation on the root", paragraphs(20),
         style="@keyframes k{from{width:300px;margin:50px}to{width:310px;margin:60px}}html{animation:k 1000s infinite;background:#eef}"),
    page("animated-part", "A finished animation keeps its end", "<div id=a>arrived</div>" + paragraphs(5),
         style="@keyframes k{to{transform:translateX(200px);background:#c33}}#a{width:100px;animation:k 1ms forwards;background:#33c}"),
    page("patched", "Built-in functions replaced by the page",
         paragraphs(20) + "<script>Element.prototype.getBoundingClientRect = () => ({left: 0, top: 0});"
         "window.getComputedStyle = () => null; Element.prototype.prepend = () => {}; window.scrollTo = () => { throw 1 };"
         "</script>"),
    page("huge-style", "A background of five million bytes", paragraphs(4),
         style="body{background:url('data:image/png;base64," + "A" * 5_000_000 + "'),linear-gradient(#fdd,#ddf)}"),
    page("deep-nesting", "Elements nested three thousand deep", "<div>" * 3000 + "deep" + "</div>" * 3000 + paragraphs(3)),
    page("many-elements", "More elements side by side than a structure tree can be made of in good time",
         "".join(f"<i>x{n % 10}</i> " for n in range(20_000)), words=["x0", "x9"]),
    page("infinite-size", "A box of impossible size", "<div>boundless</div>", style="body{margin:0}div{width:50%;height:1e9px;max-height:20000px;background:#cde}"),
    page("observer-loop", "A script that reacts to every change of size",
         "<div id=a>observed</div>" + blocks(10) + "<script>new ResizeObserver(() => {a.style.height = innerHeight / 4 + 'px'})"
         ".observe(document.body)</script>", style="body{margin:0}#a{background:#ffd}"),
]
