"""Pages that want to be elsewhere, or take the reader there."""

from entry import MARKER, SITE, acting, html, page

BLOB = "URL.createObjectURL(new Blob(['gone'], {type: 'text/html'}))"
LARGE = "'/' + 'x'.repeat(3e6)"
ADDRESSES = {"file": "'file:///etc/passwd'", "data": "'data:text/html,gone'", "blob": BLOB, "chrome": "'chrome://version'",
             "about": "'about:blank'", "javascript": "'javascript:void 0'", "view-source": "'view-source:http://site.example/'",
             "filesystem": "'filesystem:http://site.example/temporary/x'", "unknown": "'gopher2:x'", "mailto": "'mailto:a@b.example'",
             "large": LARGE, "http": "'next.html'"}
QUICK = {"again-itself", "form-file-now", "form-data-later", "form-blob-load", "form-about-frame", "form-chrome-top",
         "link-about", "link-blob", "link-large", "location-about", "location-blob", "location-large"}
NEXT = html("next.html", "<p>gone</p>")
STAYS = {"silent": ("gone",), "resources": [NEXT]}


def form(address, target=""):
    return (f"const f = document.createElement('form'); f.action = {address}; f.target = '{target}';"
            "document.body.append(f); f.submit()")


def link(address, target=""):
    return f"const l = document.createElement('a'); l.href = {address}; l.target = '{target}'; document.body.append(l); l.click()"


def framed(name, harm, script, **more):
    """A script in a frame, when that has loaded."""
    inner = html("inner.html", f"<p>inner</p><script>onload = () => {{ {script} }}</script>")
    resources = [inner, *more.pop("resources", [])]
    return page(name, harm, '<iframe name=inner src="inner.html"></iframe><iframe name=other></iframe>', resources=resources, **more)


def forms():
    for scheme, address in ADDRESSES.items():
        for when in ("now", "ready", "load", "later"):
            yield acting(f"form-{scheme}-{when}", f"A form to {scheme}:", form(address), when=when, **STAYS)
        yield framed(f"form-{scheme}-frame", f"A form to {scheme}: in a frame", form(address), **STAYS)
        yield framed(f"form-{scheme}-top", f"A form to {scheme}: for the whole window", form(address, "_top"), **STAYS)
        yield framed(f"form-{scheme}-named", f"A form to {scheme}: for another frame", form(address, "other"), **STAYS)
        yield acting(f"form-{scheme}-blank", f"A form to {scheme}: for a new window", form(address, "_blank"), **STAYS)


def links():
    for scheme, address in ADDRESSES.items():
        yield acting(f"link-{scheme}", f"A link to {scheme}:", link(address), **STAYS)
        yield acting(f"link-{scheme}-now", f"A link to {scheme}: in the middle of the page", link(address), when="now", **STAYS)
        yield framed(f"link-{scheme}-frame", f"A link to {scheme}: in a frame", link(address), says=(MARKER, "inner"), **STAYS)
        yield framed(f"link-{scheme}-top", f"A link to {scheme}: for the whole window", link(address, "_top"), **STAYS)
        yield acting(f"link-{scheme}-blank", f"A link to {scheme}: for a new window", link(address, "_blank"), **STAYS)


def locations():
    for scheme, address in ADDRESSES.items():
        if scheme == "http":
            continue
        yield acting(f"location-{scheme}", f"A script goes to {scheme}:", f"location = {address}", **STAYS)
        yield framed(f"location-{scheme}-top", f"A frame sends the window to {scheme}:", f"top.location = {address}", **STAYS)
        yield acting(f"open-{scheme}", f"A script opens {scheme}: in its own window", f"open({address}, '_self')", **STAYS)


def again(count=20, **attributes):
    return "".join("<iframe " + " ".join(f'{name}="{value}"' for name, value in attributes.items()) + "></iframe>" for _ in range(count))


def endless():
    ways = {"reload": "location.reload()", "itself": "location.href = location.href", "history": "history.go(0)",
            "replace": "location.replace(location.href)", "api": "navigation.reload()",
            "api-itself": "navigation.navigate(location.href)",
            "question": "location.search = Math.random()"}
    for name, script in ways.items():
        yield acting(f"again-{name}", "A page that loads itself again and again", script, linger=1)
        yield acting(f"again-{name}-now", "The same while it is parsed", script, when="now", linger=1)
        inner = html("inner.html", f"<p>inner</p><script>{script}</script>")
        yield page(f"again-{name}-frames", "Twenty frames that do", again(src="inner.html"), resources=[inner], quick=name == "reload")
        later = html("inner.html", f"<p>inner</p><script>setTimeout(() => {{ {script} }}, 20)</script>")
        yield page(f"again-{name}-frames-later", "The same a little later", again(src="inner.html"), resources=[later], linger=1)
    refresh = "<p>inner</p><meta http-equiv=refresh content=0>"
    yield page("again-refresh", "A page that refreshes itself", head="<meta http-equiv=refresh content=0>", linger=1)
    yield page("again-refresh-frames", "Twenty frames that do", again(src="inner.html"), resources=[html("inner.html", refresh)])
    yield page("again-refresh-srcdoc", "The same in frames that have their text with them", again(srcdoc=refresh), quick=True)
    yield page("again-reload-srcdoc", "Such frames reload themselves", again(srcdoc="<p>inner<script>location.reload()</script>"))
    yield page("again-reload-data", "Frames of data: reload themselves", again(src="data:text/html,<p>inner<script>location.reload()</script>"))
    yield page("again-refresh-data", "Frames of data: refresh themselves", again(5, src="data:text/html,<p>inner<meta http-equiv=refresh content=0>"),
               quick=True)
    swing = "<p>inner<script>location.href = 'blob'.length && " + BLOB.replace("gone", "inner") + "</script>"
    yield page("again-blob", "Frames that go to ever new blobs", again(srcdoc=swing))
    growing = ("const next = () => URL.createObjectURL(new Blob([document.documentElement.outerHTML], {type: 'text/html'}));"
               "location.replace(next())")
    yield page("again-blob-growing", "Frames that go to copies of themselves", again(srcdoc=f"<p>inner<script>{growing}</script>"))
    yield acting("again-ping-pong", "Two pages that lead to each other", "location = 'next.html'", silent=("gone",),
                 resources=[html("next.html", f"<p>{MARKER}</p><script>onload = () => location = 'page.html'</script>")])
    yield page("again-ping-pong-frames", "Frames that swing between two pages", again(src="ping.html"), resources=[
        html("ping.html", "<script>location = 'pong.html'</script>"), html("pong.html", "<script>location = 'ping.html'</script>")])
    for source in ("'about:blank'", "'inner.html?' + Math.random()", "'data:text/html,' + Math.random()", BLOB, "'javascript:1'"):
        name = source.strip("'").split(":")[0].split(".")[0].lower()
        yield page(f"again-parent-{name}", "A page that sends its frame elsewhere all the time", "<iframe id=f></iframe>"
                   f"<script>setInterval(() => f.src = {source}, 1)</script>", resources=[html("inner.html", "inner")], linger=1)
        yield page(f"again-new-frames-{name}", "A page that makes new frames all the time", "<div id=d></div><script>setInterval(() => {"
                   f"const f = document.createElement('iframe'); f.src = {source}; d.replaceChildren(f) }}, 1)</script>",
                   resources=[html("inner.html", "inner")], linger=1, quick=name == "inner")
    yield acting("again-fragments", "A page that changes its fragment all the time", "setInterval(() => location.replace('#' + Math.random()), 0)", linger=1)
    yield acting("again-fragments-loop", "A page that changes its fragment ten thousand times", "for (let i = 0; i < 1e4; i++) location.hash = i")
    yield acting("again-states", "A page that fills the history", "for (let i = 0; i < 1e4; i++) history.pushState(i, '', '?' + i)")
    yield acting("again-back", "A page that goes back all the time", "history.pushState(1, '', '?1'); setInterval(() => history.back(), 1)", linger=1)
    yield framed("again-back-frames", "A frame that goes back and forth", "if (location.hash) history.back(); else location = 'next.html'",
                 resources=[html("next.html", "<p>inner<script>onload = () => history.back()</script>")])


def others():
    yield acting("open-write", "A page that writes itself anew", f"document.open(); document.write('<p>{MARKER}'); document.close()")
    yield acting("open-only", "A page that opens its document and never closes it", f"document.open(); document.write('<p>{MARKER}')")
    yield acting("open-loop", "A page that opens its document all the time",
                 f"setInterval(() => {{ document.open(); document.write('<p>{MARKER}'); document.close() }}, 5)", linger=1)
    yield acting("stop", "A page that stops its own load", "stop()", when="now")
    yield page("base-large", "A base address of three million characters", "<a id=l href=x>link</a><script>l.click()</script>",
               head=f"<base href='http://site.example/{'y' * 3_000_000}/'>")
    yield page("frame-large", "A frame with an address of three million characters",
               f"<iframe id=f></iframe><script>f.src = {LARGE}</script>")
    yield page("image-large", "A picture with such an address", f"<img id=i><script>i.src = {LARGE}</script>")
    yield page("style-large", "A background with such an address", "<script>document.body.style.background = 'url(' + 'x'.repeat(3e6) + ')'</script>")
    yield page("link-count", "Ten thousand links with long addresses", "<script>document.body.innerHTML += "
               "Array.from({length: 1e4}, (_, i) => `<a href='http://a.example/${i}${'x'.repeat(2000)}'>x</a>`).join(' ')</script>")
    yield page("push-large", "A history entry with such an address", f"<script>try {{ history.pushState(0, '', {LARGE}) }} catch {{}}</script>", quick=True)
    yield page("main-large", "An archive whose own address has three million characters", url=SITE + "z" * 3_000_000,
               may_fail="writing the address to the log takes too long")
    yield page("main-large-file", "The same of a file", url="file:///" + "z" * 3_000_000, may_fail="writing the address to the log takes too long")
    yield acting("before-unload", "A page that does not want to be left", "onbeforeunload = e => { e.preventDefault(); return 'Stay?' }; location.reload()")
    yield acting("unload-loop", "A page that cannot be left", "onpagehide = onunload = () => { for (;;); }; location = 'next.html'", resources=[NEXT],
                 never_ends="its script never returns while the next page loads")
    yield acting("download", "A page that saves files", "for (let i = 0; i < 20; i++) { const a = document.createElement('a'); a.download = 'x';"
                 f" a.href = {BLOB}; a.click() }}")
    yield acting("close", "A page that closes itself", "close(); open('', '_self').close(); top.close()")
    yield acting("windows", "A page that opens windows", f"for (let i = 0; i < 50; i++) {{ open('about:blank'); open({BLOB}) }}")
    yield acting("intercept", "A page that takes over every navigation", "navigation.onnavigate = e => e.intercept({handler: () => new Promise(() => 0)});"
                 "location = 'next.html'", resources=[NEXT], quick=True)
    yield acting("stops-listeners", "A page that stops other listeners", "addEventListener('navigate', e => e.stopImmediatePropagation(), true);"
                 "Object.defineProperty(Event.prototype, 'preventDefault', {value() {}});" + link("'about:blank'"), silent=("gone",), quick=True)


PAGES = [*forms(), *links(), *locations(), *endless(), *others()]
for _page in PAGES:
    _page.quick |= _page.name in QUICK
