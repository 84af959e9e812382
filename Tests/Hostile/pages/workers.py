"""Scripts beside the page, and pages that replace what scripts are made of."""

from entry import BOMB, MARKER, SITE, acting, page
from webarchive import Resource

SECURE = "https://site.example/"


def script(name, text, site=SITE):
    return Resource(site + name, text, "text/javascript")


def blob(text):
    return f"URL.createObjectURL(new Blob([{text!r}], {{type: 'text/javascript'}}))"


def poisoned(name, harm, text, **more):
    return page(name, harm, "<h1>Head</h1><a href=x>x</a><img src=x>", head=f"<script>{text}</script>", **more)


PAGES = [
    acting("worker-loop", "A worker that never ends", f"new Worker({blob('for (;;);')})", quick=True),
    acting("workers", "Two hundred workers", f"for (let i = 0; i < 200; i++) new Worker({blob('setInterval(() => 0, 1)')})", linger=1),
    acting("workers-nested", "Workers that start workers", "new Worker('w.js')", linger=1,
           resources=[script("w.js", "if (!self.n) { for (let i = 0; i < 2; i++) try { new Worker(location.href + '?' + Math.random()) } catch {} }")]),
    acting("workers-again", "Workers that come and go", f"setInterval(() => {{ const w = new Worker({blob('postMessage(1)')}); w.onmessage = () => w.terminate() }}, 5)", linger=1),
    acting("worker-memory", "A worker that takes all memory", f"new Worker({blob('const a = []; for (let i = 0; i < 40; i++) a.push(new Uint8Array(1e7).fill(1))')})", linger=1),
    acting("worker-shared", "A shared worker that never ends", f"new SharedWorker({blob('for (;;);')}); new SharedWorker('missing.js')", linger=1),
    acting("worker-shared-many", "A hundred shared workers", "for (let i = 0; i < 100; i++) new SharedWorker('s.js', 'n' + i)", resources=[script("s.js", "onconnect = () => { for (;;); }")], linger=1),
    acting("worker-xhr", "A worker that waits for an answer", f"new Worker({blob('for (;;) { const x = new XMLHttpRequest(); x.open(1, 2, false); try { x.send() } catch (e) {} }')})", linger=1),
    acting("worker-import", "A worker that imports itself", "new Worker('w.js', {type: 'module'})", resources=[script("w.js", "import './w.js?' ; import('./w.js' + Math.random())")], linger=1),
    acting("worker-messages", "Messages without end", f"const w = new Worker({blob('for (;;) postMessage(new Array(1000))')}); w.onmessage = () => 0", linger=1, memory_limit=BOMB, may_fail="messages keep the page from answering"),
    acting("service", "A service worker that answers for the archive", "navigator.serviceWorker.register('sw.js').then(() => navigator.serviceWorker.ready).then(() => location.replace('next.html'))",
           resources=[script("sw.js", "onfetch = e => e.respondWith(new Response('gone', {headers: {'Content-Type': 'text/html'}}))", SECURE)], url=SECURE, linger=1, silent=("gone",), quick=True),
    acting("service-loop", "A service worker that never ends", "navigator.serviceWorker.register('sw.js')", resources=[script("sw.js", "for (;;);", SECURE)], url=SECURE, linger=1),
    acting("service-install", "A service worker that is never ready", "navigator.serviceWorker.register('sw.js'); navigator.serviceWorker.ready.then(() => 0)",
           resources=[script("sw.js", "oninstall = e => e.waitUntil(new Promise(() => 0))", SECURE)], url=SECURE, linger=1),
    acting("worklets", "Scripts of painting and sound", f"CSS.paintWorklet?.addModule({blob('for (;;);')}); new OfflineAudioContext(1, 1e6, 44100).audioWorklet?.addModule({blob('for (;;);')}).catch(() => 0)", url=SECURE, linger=1),
    acting("audio", "Sound without end", "const a = new AudioContext(), o = a.createOscillator(); o.connect(a.destination); o.start(); new OfflineAudioContext(2, 44100 * 600, 44100).startRendering()"),
    acting("locks", "Locks that are never given back", "navigator.locks?.request('x', () => new Promise(() => 0)); navigator.locks?.request('x', () => 0)", url=SECURE),
    acting("channels", "Messages to oneself", "const a = new BroadcastChannel('x'), b = new BroadcastChannel('x'); a.onmessage = b.onmessage = e => e.target.postMessage(1); a.postMessage(1)", linger=1),
    acting("ports", "Messages through ports", "const c = new MessageChannel(); c.port1.onmessage = c.port2.onmessage = e => e.target.postMessage(1); c.port1.postMessage(1)", linger=1),
    acting("wasm", "Machine code of nonsense", "WebAssembly.compile(new Uint8Array([0, 97, 115, 109, 1, 0, 0, 0, 255, 255])).catch(() => 0); try { new WebAssembly.Memory({initial: 65536}) } catch {}"),
    poisoned("prototype-object", "Every object has what it should not",
             "for (const n of ['value', 'get', 'set', 'then', 'toJSON', 'length', 'width', 'height', 'type', '0', 'error', 'id', 'writable', 'enumerable']) Object.prototype[n] = n === 'get' || n === 'set' ? undefined : 'x'", quick=True),
    poisoned("prototype-throw", "Every object throws", "for (const n of ['value', 'then', 'toJSON', 'length', 'width', 'documentHeight']) Object.defineProperty(Object.prototype, n, {get() { throw 1 }, set() {}})"),
    poisoned("prototype-array", "Arrays do not work", "for (const n of Object.getOwnPropertyNames(Array.prototype)) if (n !== 'constructor') try { Array.prototype[n] = () => { throw 1 } } catch {} Array.prototype[Symbol.iterator] = function* () { for (;;) yield 1 }"),
    poisoned("prototype-all", "Nothing works", "for (const c of [String, Number, Map, Set, WeakMap, Promise, JSON, Math, Date, RegExp, Reflect, Symbol, Function, Error]) for (const o of [c, c.prototype]) if (o)"
             " for (const n of Object.getOwnPropertyNames(o)) try { o[n] = () => { throw 1 } } catch {}"),
    poisoned("prototype-nodes", "Elements do not work", "for (const c of [Node, Element, HTMLElement, Document, HTMLDocument, EventTarget, Window, CSSStyleDeclaration, DOMRect, Range, HTMLImageElement])"
             " for (const n of Object.getOwnPropertyNames(c.prototype)) if (n !== 'constructor') try { Object.defineProperty(c.prototype, n, {get() { throw 1 }, configurable: true}) } catch {}", quick=True),
    poisoned("globals", "Global names mean something else", "for (const n of ['setTimeout', 'requestAnimationFrame', 'getComputedStyle', 'innerWidth', 'innerHeight', 'devicePixelRatio', 'scrollTo', 'Promise', 'Symbol', 'Array', 'Object', 'navigation', 'performance', 'document', 'top', 'parent'])"
             " try { Object.defineProperty(window, n, {get() { for (let i = 0; i < 1e5; i++); return null }, configurable: true}) } catch {}"),
    poisoned("proxy", "A prototype that is a trap", "Object.setPrototypeOf(Window.prototype.__proto__ ?? {}, new Proxy({}, {get() { throw 1 }}))"),
    poisoned("errors", "Errors whose text is endless", "Error.prepareStackTrace = () => { throw 1 }; Object.defineProperty(Error.prototype, 'message', {get() { return 'x'.repeat(1e7) }}); onerror = () => undefined.x; setTimeout(() => undefined.x)"),
    poisoned("to-string", "Values that are not what they say", "Object.prototype.toString = String.prototype.toString = Function.prototype.toString = () => ({}); Number.prototype.valueOf = () => NaN; Object.prototype[Symbol.toPrimitive] = () => { throw 1 }"),
    page("clobbered", "Elements with the names of everything", "".join(f"<img name={n} id={n}><form name={n} id={n}><input name={n}></form>" for n in
         ("documentElement", "body", "head", "title", "fonts", "images", "forms", "location", "defaultView", "querySelectorAll", "createElement", "getElementsByTagName", "scrollingElement", "children", "attributes", "nodeName", "parentNode", "style", "domain"))),
    acting("no-root", "A document without a root", "document.documentElement.remove()", says=()),
    acting("no-body", "A page without a body", "document.body.remove()", says=()),
    acting("other-root", "A root of another kind", f"document.replaceChild(document.createElementNS('urn:x', 'y'), document.documentElement); document.documentElement.textContent = '{MARKER}'"),
    acting("frozen", "Elements that cannot be changed", "Object.freeze(document.documentElement); Object.freeze(document.body); Object.preventExtensions(window)"),
    acting("elements-react", "Elements that undo every change", "new MutationObserver(r => r.forEach(m => m.addedNodes.forEach(n => n.remove()))).observe(document.documentElement, {childList: true, subtree: true})"),
    acting("custom", "Elements that act when they are touched", "customElements.define('x-y', class extends HTMLElement { attributeChangedCallback() { this.remove() } connectedCallback() { this.parentNode.append(this.cloneNode()) } static observedAttributes = ['style'] }); try { document.body.append(document.createElement('x-y')) } catch {}"),
]
