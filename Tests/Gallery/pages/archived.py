"""Everything that the archive holds is shown."""

from entry import SITE, document, page, paragraphs
from images import gif, png, svg
from webarchive import Archive, HTML, Resource, labelled

RED, GREEN, BLUE, GOLD = (220, 30, 40), (20, 160, 70), (30, 60, 200), (250, 200, 60)
PLAIN = "body{margin:0}img,picture,svg,object,iframe{display:block;border:0}"


def picture(name, colour, site=SITE, size=(100, 100)):
    return Resource(site + name, png(*size, colour), "image/png")


def shows(name, trouble, body, colour, resources, **more):
    """A page whose upper left 100 by 100 pixels must have a colour."""
    style = PLAIN + more.pop("style", "")
    return page(name, trouble, body + "<p>caption</p>", style=style, resources=resources,
                pixels=[(50, 50, colour)], sheet_pixels=[(1, 60, 60, colour)], words=["caption"], **more)


def frame(url, text, name=None, body="", frames=()):
    html = document(f"<p>{text}</p>{body}", "", PLAIN + "body{background:#eef}")
    return Archive(Resource(SITE + url, html, HTML, frame_name=name), frames=frames)


PAGES = [
    shows("png", "A stored picture", "<img src=a.png>", GREEN, [picture("a.png", GREEN)]),
    shows("gif", "A stored GIF", "<img src=a.gif width=100 height=100>", BLUE,
          [Resource(SITE + "a.gif", gif(10, 10, BLUE), "image/gif")]),
    shows("svg-image", "A stored drawing", "<img src=a.svg>", GOLD, [Resource(SITE + "a.svg", svg(100, 100, GOLD), "image/svg+xml")]),
    shows("srcset", "A picture with several densities", "<img src=b.png srcset='a.png 1x, b.png 2x' width=100 height=100>", GREEN,
          [picture("a.png", GREEN), picture("b.png", RED)]),
    shows("srcset-widths", "A picture with several widths",
          "<img srcset='s.png 300w, m.png 700w, l.png 3000w' sizes=100vw width=100 height=100>", GREEN,
          [picture("s.png", RED), picture("m.png", GREEN), picture("l.png", RED)], modes=("screen",)),
    shows("duplicates", "The same address twice: the last counts", "<img src=a.png>", GREEN,
          [picture("a.png", RED), picture("a.png", GREEN)]),
    shows("fragment", "A reference with a fragment", "<img src='a.png#part'>", GREEN, [picture("a.png", GREEN)]),
    shows("data-url", "A picture in its own address", "<img src='data:image/svg+xml,%3Csvg xmlns=%22http://www.w3.org/2000/svg%22 "
          "width=%22100%22 height=%22100%22%3E%3Crect width=%22100%22 height=%22100%22 fill=%22rgb(20,160,70)%22/%3E%3C/svg%3E'>",
          GREEN, []),
    shows("https-as-http", "An https page whose picture was stored as http", "<img src=a.png>", GREEN,
          [picture("a.png", GREEN, "http://secure.example/")], url="https://secure.example/page.html"),
    shows("non-ascii", "An address with letters of other scripts", "<img src='bilder/größe ж.png'>", GREEN,
          [picture("bilder/gr%C3%B6%C3%9Fe%20%D0%B6.png", GREEN)]),
    shows("background", "A background picture", "<div style='width:100px;height:100px;background:url(a.png)'></div>", GREEN,
          [picture("a.png", GREEN)]),
    shows("imported-background", "A background of an imported sheet, relative to it",
          "<div class=b></div>", GREEN,
          [Resource(SITE + "css/one.css", "@import 'deep/two.css';", "text/css"),
           Resource(SITE + "css/deep/two.css", ".b{width:100px;height:100px;background:url(../../a.png)}", "text/css"),
           picture("a.png", GREEN)], head="<link rel=stylesheet href=css/one.css>"),
    page("lazy-image", "An image far below that loads when it is scrolled to",
         "<div style='height:100px;background:rgb(20,160,70)'></div><div style='height:9000px'></div>"
         "<img loading=lazy src=a.png width=100 height=100><p>caption</p>", style=PLAIN, resources=[picture("a.png", RED)],
         size=(612, 9256), pixels=[(50, 50, GREEN), (50, 9150, RED)], sheet_pixels=[(1, 60, 60, GREEN)]),
    page("lazy-below", "The lazy image itself is there", "<div style='height:3000px'></div><img loading=lazy src=a.png width=100 height=100>"
         "<p>caption", style=PLAIN, resources=[picture("a.png", GREEN)], pixels=[(50, 3050, GREEN)]),
    page("lazy-frame", "A frame that loads when it is scrolled to",
         "<div style='height:3000px'></div><iframe loading=lazy src=inner.html width=300 height=200></iframe>", style=PLAIN,
         words=["lazyframe"], frames=[frame("inner.html", "lazyframe")]),
    page("observed", "Content that appears when it is scrolled to", "<div style='height:3000px'></div><img id=i width=100 height=100 alt=''>"
         "<p id=t></p><script>new IntersectionObserver((seen, all) => { if (seen.some(one => one.isIntersecting)) {"
         "i.src = 'a.png'; t.textContent = 'revealed'; all.disconnect() } }).observe(i)</script>", style=PLAIN,
         words=["revealed"], resources=[picture("a.png", GREEN)], pixels=[(50, 3050, GREEN)]),
    page("fetched", "Text that a script fetches from the archive", "<p id=t></p><script>fetch('data.json').then(r => r.json())"
         ".then(data => t.textContent = data.text)</script>", words=["fetchedtext"],
         resources=[Resource(SITE + "data.json", '{"text": "fetchedtext"}', "application/json")]),
    page("module", "A module that imports another", "<p id=t></p><script type=module src=main.js></script>", words=["frommodule"],
         resources=[Resource(SITE + "main.js", "import {text} from './part.js'; t.textContent = text", "text/javascript"),
                    Resource(SITE + "part.js", "export const text = 'frommodule'", "text/javascript")]),
    page("drawn", "A canvas that a script draws", "<canvas id=c width=100 height=100></canvas><p>caption<script>"
         "const pen = c.getContext('2d'); pen.fillStyle = 'rgb(20,160,70)'; pen.fillRect(0, 0, 100, 100)</script>",
         style=PLAIN + "canvas{display:block}", pixels=[(50, 50, GREEN)]),
    page("drawn-by-webgl", "A canvas that a script draws through WebGL", "<canvas id=c width=100 height=100></canvas><p>caption<script>"
         "const gl = c.getContext('webgl', {preserveDrawingBuffer: true}); gl.clearColor(20 / 255, 160 / 255, 70 / 255, 1);"
         "gl.clear(gl.COLOR_BUFFER_BIT)</script>",
         style=PLAIN + "canvas{display:block}", pixels=[(50, 50, GREEN)]),
    page("external-use", "A drawing that uses a part of another file", "<svg width=100 height=100><use href='parts.svg#box'/></svg><p>caption",
         style=PLAIN, pixels=[(50, 50, GREEN)],
         resources=[Resource(SITE + "parts.svg", '<svg xmlns="http://www.w3.org/2000/svg"><rect id="box" width="100" height="100" '
                             'fill="rgb(20,160,70)"/></svg>', "image/svg+xml")]),
    page("frames-deep", "Frames within frames", "<p>level1</p><iframe src=two.html width=500 height=400></iframe>", words=["level1", "level2", "level3"],
         frames=[frame("two.html", "level2", body="<iframe src=three.html width=300 height=200></iframe>",
                       frames=[frame("three.html", "level3")])]),
    page("frames-by-name", "Two frames of one address, told apart by their names",
         "<iframe name=second src=same.html width=300 height=100></iframe><iframe name=first src=same.html width=300 height=100></iframe>",
         words=["namedfirst", "namedsecond"], frames=[frame("same.html", "namedfirst", "first"), frame("same.html", "namedsecond", "second")]),
    page("frame-blank", "A frame without an address, with stored content", "<iframe width=300 height=100></iframe><p>around",
         words=["around", "storedtext"],
         frames=[Archive(Resource("about:blank", document("<p>storedtext</p>"), HTML, frame_name="<!--frame1-->"))]),
    page("frame-srcdoc", "A frame that holds its page in an attribute",
         "<iframe srcdoc=\"<img src='a.png' width=100 height=100 style='display:block'><p>indoc\" width=300 height=200></iframe>", style=PLAIN,
         words=["indoc"], resources=[picture("a.png", GREEN)], pixels=[(50, 50, GREEN)]),
    page("frame-missing", "A frame that the archive does not hold stays blank", "<iframe src=gone.html width=300 height=100></iframe><p>around"),
    page("image-missing", "A picture that the archive does not hold", "<img src=gone.png width=100 height=100 alt=instead><p>around",
         words=["around"]),
    page("label-beats-meta", "The label of the encoding beats the page's own",
         archive=Archive(labelled(SITE + "page.html", "<!DOCTYPE html><meta charset=windows-1252><p>Grüße Ωmega".encode(), "UTF-8")),
         words=["Grüße", "Ωmega"]),
    page("mark-beats-label", "A byte order mark beats the label",
         archive=Archive(labelled(SITE + "page.html", b"\xef\xbb\xbf" + "<!DOCTYPE html><p>Grüße Ωmega".encode(), "windows-1252")),
         words=["Grüße", "Ωmega"]),
    page("file-address", "A page stored from a disk", "<img src=a.png width=100 height=100><p>caption", style=PLAIN,
         url="file:///home/reader/page.html", resources=[Resource("file:///home/reader/a.png", png(4, 4, GREEN), "image/png")],
         pixels=[(50, 50, GREEN)]),
    page("strange-address", "A page of an unknown scheme", "<img src=a.png width=100 height=100><p>caption", style=PLAIN,
         url="x-notes://shelf/page", resources=[Resource("x-notes://shelf/a.png", png(4, 4, GREEN), "image/png")],
         pixels=[(50, 50, GREEN)]),
    page("fields", "Forms with what was typed", "<input value=typed size=8><textarea rows=2>area</textarea><select><option>one<option selected>two"
         "</select><button>press</button><progress value=.5></progress><input type=checkbox checked><input type=range>" + paragraphs(2),
         words=["typed", "area", "two", "press"]),
    page("details", "An opened and a closed disclosure", "<details open><summary>open</summary>inside</details><details><summary>closed</summary>"
         "hidden</details>", absent=["hidden"]),
]
