"""Web archives that something has happened to: seeded, so that each can be made again.

    data = mutated_archive(4711)

A seed chooses one of our own archives, its form (binary or XML), and what happens to it: to the bytes of the file,
to the structure of the property list, to the labels of a resource, or to what a resource holds.
"""

import copy
import functools
import plistlib
import random

import pages
from images import png
from webarchive import Resource, dump

SITE = pages.SITE

_MARKUP = """
<h1>Heading</h1><p id="a" class="b">Text with <b>bold</b>, <i>italic</i> and <a href="#t">a link</a>.</p>
<table border="1"><thead><tr><th>Head</th></tr></thead><tbody><tr><td rowspan="2">Cell</td><td>Cell</td></tr>
<tr><td colspan="1">Cell</td></tr></tbody></table><ul><li>One<li>Two</ul><form action="next.html" method="post">
<input name="n" value="v"><select><option selected>Choice</select><textarea rows="3">Area</textarea></form>
<details open><summary>More</summary>Detail</details><svg width="90" height="40" viewBox="0 0 90 40">
<defs><linearGradient id="g"><stop offset="0" stop-color="red"/><stop offset="1"/></linearGradient></defs>
<rect width="90" height="40" fill="url(#g)"/><use href="#g"/></svg><canvas id="c" width="50" height="50"></canvas>
<iframe srcdoc="<p>Inner</p>" width="200" height="50"></iframe><div style="overflow:scroll;height:50px"><p>S<p>S</div>
"""
_STYLE = """
@media (min-width:100px){.b{color:red;position:relative;top:2px}}@page{margin:1in;size:a4}
#a::before{content:"\\201C" counter(n) attr(id)}body{display:grid;grid-template-columns:repeat(2,1fr);counter-reset:n}
td{transform:rotate(2deg) scale(1.1);filter:blur(1px);mask:linear-gradient(#000,#0000);width:calc(100% - 2em)}
@font-face{font-family:f;src:url(f.woff2)}h1{font:bold 2em/1.5 f,serif;column-count:3;break-after:page}
@keyframes k{from{opacity:0}to{opacity:1}}p{animation:k 1s infinite;transition:all 1s}
"""
_SCRIPT = """
var c = document.getElementById('c'); if (c) c.getContext('2d').fillRect(0, 0, 20, 20);
document.addEventListener('DOMContentLoaded', function () {
  for (var i = 0; i < 10; i++) { var p = document.createElement('p'); p.textContent = 'Made ' + i;
    document.body.appendChild(p); }
  setTimeout(function () { document.title = 'Changed'; }, 0);
});
"""


def _rich():
    archive = pages.page(_MARKUP, head=f"<style>{_STYLE}</style><script>{_SCRIPT}</script>")
    return archive.add(Resource(SITE + "f.woff2", b"wOF2" + bytes(200), "font/woff2"),
                       Resource(SITE + "next.html", pages.document("<p>Next</p>")))


def _linked():
    """The same with all in resources of their own."""
    archive = pages.page(_MARKUP + '<img src="a.png"><object data="a.svg"></object><video src="a.mp4"></video>',
                         head='<link rel="stylesheet" href="a.css"><script src="a.js"></script>')
    return archive.add(Resource(SITE + "a.css", _STYLE, "text/css"), Resource(SITE + "a.js", _SCRIPT, "text/javascript"),
                       Resource(SITE + "a.png", png(30, 20, pages.RED), "image/png"),
                       Resource(SITE + "a.svg", "<svg xmlns='http://www.w3.org/2000/svg'><text y='9'>T</text></svg>",
                                "image/svg+xml"))


@functools.cache
def seeds():
    """The property lists that everything begins with."""
    archives = [_rich(), _linked(), pages.with_images(), pages.three_levels_of_frames(),
                pages.blank_frame_with_content(), pages.boxes(), pages.paragraphs(60), pages.media_styles(),
                pages.acting("location.hash = 'x'"), pages.destination(pages.acting("location = 'next.html'")),
                pages.frameset(),
                pages.main_resource(SITE + "a.png", png(40, 40, pages.BLUE), "image/png", None),
                pages.main_resource(SITE + "a.svg", _linked().subresources[3].data, "image/svg+xml"),
                pages.main_resource(SITE + "a.txt", "Plain text\n" * 40, "text/plain"),
                pages.main_resource("file:///tmp/a.html", pages.document(_MARKUP), "text/html")]
    archives += [pages.in_character_set(name, label=name) for name in ("shift_jis", "windows-1251")]
    return [archive.plist() for archive in archives]


# What happens to bytes

def _place(chance, data):
    return chance.randrange(len(data) + 1)


def _span(chance, data, longest=200):
    begin = _place(chance, data)
    return begin, min(len(data), begin + chance.randrange(1, longest))


def _flip(chance, data):
    for _ in range(chance.choice((1, 1, 2, 5, 20))):
        if data:
            data[chance.randrange(len(data))] ^= 1 << chance.randrange(8)
    return data


def _overwrite(chance, data):
    begin, end = _span(chance, data, 16)
    data[begin:end] = bytes([chance.choice((0, 0x7F, 0x80, 0xFF, chance.randrange(256)))]) * (end - begin)
    return data


def _drop(chance, data):
    begin, end = _span(chance, data)
    del data[begin:end]
    return data


def _repeat(chance, data):
    begin, end = _span(chance, data)
    at = _place(chance, data)
    data[at:at] = data[begin:end] * chance.choice((1, 2, 30))
    return data


def _truncate(chance, data):
    return data[:_place(chance, data)]


def _noise(chance, data):
    at = _place(chance, data)
    data[at:at] = chance.randbytes(chance.randrange(1, 40))
    return data


_ON_BYTES = (_flip, _flip, _overwrite, _overwrite, _drop, _repeat, _truncate, _noise)


def _bytes(chance, data):
    data = bytearray(data)
    for _ in range(chance.choice((1, 1, 2, 4))):
        data = chance.choice(_ON_BYTES)(chance, data)
    return bytes(data)


def _trailer(chance, data):
    """The numbers at the end of a binary property list decide how everything before is read."""
    data = bytearray(data)
    at = len(data) - chance.randrange(1, 33)
    data[at] = chance.choice((0, 1, 2, 4, 8, 9, 0x7F, 0x80, 0xFF))
    return bytes(data)


# What happens to text

_PIECES = (
    "<", ">", "</", "&#0;", "&#x110000;", "<!--", "-->", "<![CDATA[", "<script>", "</script>", "<style>", "</style>",
    "<template>", "<plaintext>", "<svg>", "<math>", "<select>", "<table>", "<tr>", "<td>", "<frameset>", "<iframe>",
    "<base href='//other.example/'>", "<meta http-equiv=refresh content='0;url=next.html'>", "<object>", "<body>",
    "<iframe src='page.html'></iframe>", "<style>*{all:unset}</style>", "<style>*{display:none}</style>", "\0", "\ufeff",
    "<div style='height:1e9px'>", "<div style='width:1e7px;height:1px'>", "<div style='zoom:1e9'>", "<font size=99999>",
    "<div style='transform:scale(1e30)'>", "<div style='columns:9999'>", "<div style='margin:-99999px'>",
    "<html style='writing-mode:vertical-rl'>", "<body style='position:fixed'>", "<p style='font-size:1e6px'>X",
    "99999999999999999999", "-1", "NaN", "1e308", "url(", "{", "}", "(", ")", "/*", "*/", ";", "'", '"', "!important",
    "@import 'a.css';", "@media print{", "@page{size:1px}", "@page{margin:-9999px}", "calc(1px/0)", "var(--x)",
    "throw 1;", "document.write('<p>Written')", "document.open();", "location.reload();", "location='next.html';",
    "history.back();", "document.documentElement.remove();", "document.body.innerHTML='';", "window.stop();",
    "Object.prototype.then=function(){};", "Array.prototype.map=null;", "alert(1);", "window.open('next.html');")


def _text(chance, data):
    try:
        text = data.decode("utf-8")
    except UnicodeDecodeError:
        return _bytes(chance, data)
    for _ in range(chance.choice((1, 2, 3, 8))):
        at = _place(chance, text)
        kind = chance.randrange(4)
        begin, end = _span(chance, text)
        if kind == 0:
            text = text[:at] + chance.choice(_PIECES) + text[at:]
        elif kind == 1:
            text = text[:begin] + chance.choice(_PIECES) + text[end:]
        elif kind == 2:
            text = text[:begin] + text[end:]
        else:
            text = text[:at] + text[begin:end] * chance.choice((1, 3, 50)) + text[at:]
    return text.encode("utf-8", "surrogatepass")


# What happens to the structure

_VALUES = (
    0, -1, 2**63 - 1, -(2**63), 1.5, float("inf"), True, "", "x", "\0", "text/html", "http://site.example/page.html",
    "http://[", "data:text/html,x", "file:///etc/passwd", "about:blank", "about:srcdoc", "javascript:1", "chrome://gpu",
    "blob:http://site.example/1", "x" * 100_000, "http://site.example/" + "a/" * 40_000, b"", b"\0" * 1000, [], {},
    [[[[[]]]]], {"WebMainResource": {}}, plistlib.UID(7))
_TYPES = ("text/html", "TEXT/HTML; charset=x", "text/plain", "application/xhtml+xml", "text/xml", "image/svg+xml",
          "image/png", "video/mp4", "application/pdf", "text/css", "text/javascript", "application/octet-stream",
          "application/json", "multipart/x-mixed-replace", "x/y", "", "\r\n: x", "text/html\r\nSet-Cookie: a=b")
_ENCODINGS = ("utf-8", "UTF-16", "utf-7", "utf-32", "iso-2022-jp", "windows-1252", "x-user-defined", "replacement", "",
              "none", "\r\n", "x" * 5000)


def _holders(value, found):
    """Every place in a property list: the container and the key or index."""
    items = value.items() if isinstance(value, dict) else enumerate(value) if isinstance(value, list) else ()
    for key, inner in items:
        found.append((value, key))
        _holders(inner, found)
    return found


def _structure(chance, root):
    for _ in range(chance.choice((1, 1, 2, 3))):
        places = _holders(root, [])
        if not places:
            break
        holder, key = chance.choice(places)
        kind = chance.randrange(5)
        if kind == 0:
            del holder[key]
        elif kind == 1 and isinstance(holder, list):
            holder.extend([holder[key]] * chance.choice((1, 5, 300)))
        elif kind == 2:
            other, place = chance.choice(places)
            if place in other if isinstance(other, dict) else place < len(other):
                holder[key] = copy.deepcopy(other[place])
        elif kind == 3 and isinstance(holder, dict):
            holder[chance.choice(("x", "WebSubresources", "WebSubframeArchives", "WebResourceFrameName"))] = \
                copy.deepcopy(chance.choice(_VALUES))
        else:
            holder[key] = copy.deepcopy(chance.choice(_VALUES))
    return root


def _resources(root):
    """All resources of an archive and of its frames' archives."""
    found = [root["WebMainResource"], *root.get("WebSubresources", ())]
    for frame in root.get("WebSubframeArchives", ()):
        found += _resources(frame)
    return found


def _labels(chance, root):
    for _ in range(chance.choice((1, 2))):
        resource = chance.choice(_resources(root))
        key, values = chance.choice((("WebResourceMIMEType", _TYPES), ("WebResourceTextEncodingName", _ENCODINGS),
                                     ("WebResourceURL", [value for value in _VALUES if isinstance(value, str)])))
        resource[key] = chance.choice(values)
    return root


def _contents(chance, root):
    for _ in range(chance.choice((1, 1, 3))):
        resource = chance.choice(_resources(root))
        resource["WebResourceData"] = chance.choice((_text, _text, _text, _bytes))(chance, resource["WebResourceData"])
    return root


def mutated_archive(seed):
    """The file that this seed stands for, and what happened to it."""
    chance = random.Random(seed)
    root = copy.deepcopy(chance.choice(seeds()))
    is_xml = chance.random() < 0.3
    kind = chance.choices(("bytes", "trailer", "structure", "labels", "contents"), (20, 5, 20, 15, 40))[0]
    if kind in ("bytes", "trailer"):
        damage = _bytes if kind == "bytes" or is_xml else _trailer
        return kind, damage(chance, dump(root, is_xml))
    root = {"structure": _structure, "labels": _labels, "contents": _contents}[kind](chance, root)
    return kind, _dumped(root, is_xml)


def _dumped(root, is_xml):
    """XML has no place for some of what a binary property list can hold."""
    try:
        return dump(root, is_xml)
    except (ValueError, TypeError, OverflowError):
        return dump(root)
