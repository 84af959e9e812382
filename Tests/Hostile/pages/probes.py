"""Pages that try to reach the network, this machine or its files. What they reach, they show."""

from entry import PORT, SECRET, SITE, Page, acting, document, html, page
from webarchive import HTML, Archive, Resource

REACHED = {"silent": ("REACHED",), "linger": 1}
SHOW = "const show = x => document.body.append('REACHED' + x);"
LOCAL = f"127.0.0.1:{PORT}"
SECRETS = [f"'file://{SECRET}'", f"'file://localhost{SECRET}'", f"'view-source:file://{SECRET}'", "'chrome://version/'", "'chrome://settings'",
           "'devtools://devtools/bundled/inspector.html'", "'about:version'", f"'filesystem:file://{SECRET}'"]


def probe(name, harm, script, body="", **more):
    return acting(name, harm, SHOW + script, body, **{**REACHED, **more})


def local_frames():
    return "".join(f"<iframe src={address}></iframe><object data={address}></object><embed src={address}>" for address in SECRETS)


PAGES = [
    probe("fetch-file", "Files, by fetch", f"for (const a of [{','.join(SECRETS)}]) fetch(a).then(r => r.text()).then(show, () => 0)", quick=True),
    probe("xhr-file", "Files, by the older way", f"for (const a of [{','.join(SECRETS)}]) {{ const x = new XMLHttpRequest(); x.onload = () => show(x.responseText); try {{ x.open('GET', a); x.send() }} catch {{}} }}"),
    page("frame-file", "Files, in frames", local_frames(), quick=True),
    page("frame-file-local", "The same from a page that was a file", local_frames(), url="file:///tmp/page.html", quick=True),
    page("style-file", "Files, in styles and pictures", f"<link rel=stylesheet href='file://{SECRET}'><img src='file://{SECRET}'><script src='file://{SECRET}'></script>"
         f"<video src='file://{SECRET}'></video><div style=\"background:url('file://{SECRET}')\">x</div>"),
    Page("xml-entity", "Files, as an entity of an XML page", Archive(Resource(SITE + "page.xml",
         f"<?xml version='1.0'?><!DOCTYPE html [<!ENTITY e SYSTEM 'file://{SECRET}'>]><html xmlns='http://www.w3.org/1999/xhtml'><body><p>StillHere &e;</p></body></html>",
         "application/xhtml+xml")), says=(), quick=True),
    Page("stored-file", "A file that the archive says it holds", Archive(Resource(f"file://{SECRET}", document("stored"), HTML)), quick=True),
    page("base-file", "A base in the file system", f"<iframe src='{SECRET.lstrip('/')}'></iframe>", head="<base href='file:///'>"),
    probe("fetch-local", "A service of this machine", f"fetch('http://{LOCAL}/', {{mode: 'no-cors'}}).then(() => show(1), () => 0)", quick=True),
    probe("socket", "A socket", f"for (const s of ['ws', 'wss']) {{ const w = new WebSocket(`${{s}}://{LOCAL}/`); w.onopen = () => show(1) }}", quick=True),
    probe("sockets", "A thousand sockets", f"for (let i = 0; i < 1000; i++) new WebSocket('ws://{LOCAL}/' + i)"),
    probe("transport", "WebTransport", f"new WebTransport('https://{LOCAL}/').ready.then(() => show(1), () => 0)"),
    probe("events", "Events from a server", f"new EventSource('http://{LOCAL}/').onopen = () => show(1); new EventSource('x')"),
    probe("beacon", "Beacons", f"for (let i = 0; i < 50; i++) navigator.sendBeacon('http://{LOCAL}/', 'x'); fetch('http://{LOCAL}/', {{method: 'POST', keepalive: true}}).catch(() => 0)"),
    probe("ping", "Pings of links", "document.querySelector('a').click()", f"<a href='#x' ping='http://{LOCAL}/'>x</a>"),
    probe("rtc", "A call to another machine", f"const p = new RTCPeerConnection({{iceServers: [{{urls: 'stun:{LOCAL}'}}]}}); p.createDataChannel('x');"
          "p.onicecandidate = e => e.candidate?.candidate && show(e.candidate.candidate); p.createOffer().then(o => p.setLocalDescription(o))", quick=True),
    page("prefetch", "Hints to fetch early", "".join(f"<link rel={rel} href='http://{LOCAL}/'>" for rel in ("prefetch", "preconnect", "dns-prefetch", "prerender", "preload", "modulepreload", "manifest", "icon")), linger=1),
    page("speculation", "Rules to fetch early", f"<script type=speculationrules>{{\"prefetch\":[{{\"urls\":[\"http://{LOCAL}/\",\"next.html\"]}}],\"prerender\":[{{\"urls\":[\"next.html\"],\"eagerness\":\"immediate\"}}]}}</script>",
         resources=[html("next.html", "REACHED")], linger=1, silent=("REACHED",)),
    page("import-map", "A map to elsewhere", f"<script type=importmap>{{\"imports\":{{\"a\":\"http://{LOCAL}/\",\"b\":\"file://{SECRET}\"}}}}</script><script type=module>import 'a'; import 'b'</script>"),
    page("policy-report", "Reports of violations", "<img src=x>", head=f"<meta http-equiv=Content-Security-Policy content=\"img-src 'none'; report-uri http://{LOCAL}/\">"),
    page("upgrade", "A page that asks for https alone", "<img src='http://other.example/x'>", head="<meta http-equiv=Content-Security-Policy content=upgrade-insecure-requests>"),
    page("cookies", "Cookies of files and hosts", f"<script>document.cookie = 'a=b; domain=127.0.0.1'; fetch('http://{LOCAL}/', {{credentials: 'include'}}).catch(() => 0)</script>", linger=1),
    probe("addresses", "Addresses of this machine in other words", "for (const h of ['localhost', '[::1]', '0.0.0.0', '2130706433', '127.1', '[::ffff:127.0.0.1]'])"
          f"fetch(`http://${{h}}:{PORT}/`, {{mode: 'no-cors'}}).then(() => show(h), () => 0)"),
    probe("tools", "The engine's own tools", "for (const p of [9222, 9229]) fetch(`http://127.0.0.1:${p}/json`).then(() => show(p), () => 0); show === console; console.log('%o', {get x() { return 1 }})"),
    probe("storage", "Storage of every kind", "localStorage.x = 'x'.repeat(4e6); indexedDB.open('x'); caches.open('x').then(c => c.put('/x', new Response('x'.repeat(1e7)))).catch(() => 0);"
          "navigator.storage?.getDirectory().then(d => d.getFileHandle('x', {create: true})).catch(() => 0)", url="https://site.example/"),
    probe("devices", "Devices", "for (const d of ['usb', 'hid', 'serial', 'bluetooth']) navigator[d]?.[d === 'serial' ? 'requestPort' : 'requestDevice']({filters: []}).then(() => show(d), () => 0);"
          "navigator.clipboard?.readText().then(show, () => 0)", url="https://site.example/"),
    probe("gpu", "Pictures by the graphics processor", "const c = document.createElement('canvas').getContext('webgl'); navigator.gpu?.requestAdapter()"),
    page("pdf-frame", "A PDF and plug-ins in frames", "<embed src=x.pdf type=application/pdf><object data=x.swf type=application/x-shockwave-flash></object><applet code=X></applet>",
         resources=[Resource(SITE + "x.pdf", b"%PDF-1.4 broken", "application/pdf")]),
]
