"""Pages that are too large for anybody."""

from entry import BOMB, LONG_LINE, Page, acting, document, html, page
from webarchive import html_archive

LARGE = "the page takes more memory than the engine gives it"


def large(name, harm, body, **more):
    """Made when it is needed."""
    return Page(name, harm, lambda: html_archive(document(body())), **more)


def nested_frames(depth):
    text = "end"
    for _ in range(depth):
        text = "<iframe srcdoc='" + text.replace("&", "&amp;").replace("'", "&#39;") + "'></iframe>"
    return text


PAGES = [
    large("elements", "Two hundred thousand elements", lambda: "<i>x</i> " * 200_000, memory_limit=BOMB),
    large("deep", "Elements a hundred thousand deep", lambda: "<div>" * 100_000 + "x", may_fail=LARGE),
    large("deep-inline", "Inline elements ten thousand deep", lambda: "<b><i>" * 5_000 + "x", quick=True),
    large("deep-tables", "Tables five hundred deep", lambda: "<table><tr><td>" * 500 + "x"),
    large("deep-flex", "Flexible boxes a thousand deep", lambda: "<div style=display:flex>" * 1000 + "x"),
    large("deep-grid", "Grids two hundred deep", lambda: "<div style=display:grid>" * 200 + "x"),
    large("columns", "Columns thirty deep", lambda: "<div style=columns:2>" * 30 + "x",
          never_ends="the engine lays columns out twice at each depth, while the page loads", memory_limit=BOMB),
    large("table", "A table of a hundred thousand cells", lambda: "<table>" + ("<tr>" + "<td>x" * 100) * 1000),
    page("spans", "Cells that span more than there is", "<table>" + "<tr><td colspan=1000 rowspan=65534>x" * 50),
    large("line", "One word of a million letters", lambda: "x" * 1_000_000, may_fail=LONG_LINE),
    large("words", "A million words", lambda: "word " * 1_000_000, may_fail=LONG_LINE),
    large("attribute", "An attribute of ten million characters", lambda: f"<p title='{'x' * 10_000_000}'>x"),
    large("attributes", "An element with a hundred thousand attributes", lambda: "<p " + " ".join(f"a{n}=x" for n in range(100_000)) + ">x"),
    large("comment", "A comment of twenty million characters", lambda: f"<!--{'x' * 20_000_000}-->"),
    large("ids", "A hundred thousand places to lead to", lambda: "".join(f"<a id=p{n} href=#p{n}>x</a> " for n in range(20_000))),
    large("headings", "Ten thousand headings", lambda: "".join(f"<h{n % 6 + 1}>h{n}</h{n % 6 + 1}>" for n in range(10_000))),
    large("headings-print", "The same on sheets", lambda: "".join(f"<h{n % 6 + 1}>h{n}</h{n % 6 + 1}>" for n in range(2_000)), mode="print"),
    page("height", "A page of 33 million pixels", "<div style='height:33000000px'></div>"),
    page("height-print", "The same on sheets", "<div style='height:200000px'></div>", mode="print"),
    page("width-vertical-print", "Vertical text of that width, on sheets", "<div style='width:33000000px;height:9px'></div>", head="<style>html{writing-mode:vertical-rl}</style>",
         mode="print", may_fail="a print is at most 12 million px long"),
    page("width", "A page of 33 million pixels' width", "<div style='width:33000000px;height:9px'></div>"),
    page("width-print", "The same on sheets", "<div style='width:33000000px;height:9px'></div>", mode="print"),
    page("square", "A page of a hundred thousand pixels either way", "<div style='width:100000px;height:100000px;background:linear-gradient(red,blue)'></div>", quick=True),
    page("far", "Boxes that lie far away", "".join(f"<p style='position:absolute;left:{x}px;top:{y}px'>x" for x in (-9e8, 9e8) for y in (-9e8, 9e8))),
    acting("canvas", "A canvas of 32767 pixels", "const c = document.createElement('canvas'); c.width = c.height = 32767; document.body.append(c); c.getContext('2d')?.fillRect(0, 0, 9e9, 9e9)"),
    acting("canvases", "A hundred canvases", "for (let i = 0; i < 100; i++) { const c = document.createElement('canvas'); c.width = c.height = 1000; c.getContext('2d').fillRect(0, 0, 9, 9); document.body.append(c) }", memory_limit=BOMB),
    acting("arrays", "Memory without end", "try { const a = []; for (;;) a.push(new Uint8Array(1e8).fill(1)) } catch {}", memory_limit=BOMB),
    acting("strings", "Texts without end", "const a = []; for (let i = 0; i < 1e3; i++) a.push(('x' + i).repeat(1e6).split(''))", memory_limit=BOMB),
    acting("stack", "A function that calls itself", "const f = () => f(); try { f() } catch {}"),
    acting("nodes", "Elements without end", "(function f() { document.body.append(...Array.from({length: 1000}, () => document.createElement('p'))); setTimeout(f) })()", linger=1),
    acting("title", "A title of ten million characters", "document.title = 'x'.repeat(1e7)"),
    acting("titles", "A title that changes all the time", "setInterval(() => document.title = Math.random(), 0)", linger=1),
    large("frames", "A thousand frames", lambda: "<iframe srcdoc=x></iframe>" * 1000, memory_limit=BOMB),
    large("frames-blank", "Two thousand blank frames", lambda: "<iframe></iframe>" * 2000, memory_limit=BOMB),
    large("frames-deep", "Frames eight deep", lambda: nested_frames(8)),
    page("frames-of-itself", "A frame with the page itself", "<iframe src=page.html></iframe>" * 3, quick=True),
    page("frames-of-itself-changed", "The same with ever other addresses", "<script>document.write(`<iframe src='page.html?${Math.random()}'></iframe>`.repeat(3))</script>"),
    page("frames-of-each-other", "Two pages that hold each other", "<iframe src=a.html></iframe>" * 2,
         resources=[html("a.html", "<iframe src=b.html></iframe>" * 2), html("b.html", "<iframe src=a.html></iframe>" * 2)]),
    page("frames-srcdoc", "A frame that copies itself into frames",
         "<script>const s = '<script>(' + (f => { const i = document.createElement('iframe'); i.srcdoc = f; document.documentElement.append(i) }) + ')(document.documentElement.outerHTML)<\\/script>';"
         "const i = document.createElement('iframe'); i.srcdoc = s; document.body.append(i)</script>", never_ends="each frame makes another", memory_limit=BOMB),
    acting("shadow", "Shadow trees a thousand deep", "let e = document.body; for (let i = 0; i < 1000; i++) { const d = document.createElement('div'); e.append(d); e = d.attachShadow({mode: 'open'}) } e.innerHTML = 'x'",
           body="<slot></slot>", says=()),
    acting("slow-growth", "A page that grows whenever it is looked at", "new IntersectionObserver(e => { const p = document.createElement('p'); p.style.height = '500px';"
           "document.body.append(p); new IntersectionObserver(arguments.callee ?? (() => 0)) }).observe(document.body); onscroll = () => document.body.append('x')"),
    large("links-frames", "Many links in many frames", lambda: ("<iframe srcdoc='" + "<a href=http://a.example/>x</a> " * 100 + "'></iframe>") * 100),
]
