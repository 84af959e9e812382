"""Pictures and fonts that are broken, or larger than they look."""

import base64
import struct
import zlib

from entry import BOMB, SITE, Page, page
from images import gif, png
from webarchive import Archive, Resource


def png_bomb(width, height):
    """Black, of which nearly nothing is stored."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    packer = zlib.compressobj(9)
    row = bytes(1 + (width + 7) // 8)
    rows = b"".join(packer.compress(row) for _ in range(height)) + packer.flush()
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 1, 0, 0, 0, 0)) + chunk(b"IDAT", rows) + chunk(b"IEND", b"")


def gif_frames(count):
    one = gif(2, 2, (255, 0, 0))
    head, body = one[:13 + 3 * 2 ** ((one[10] & 7) + 1)], one[13 + 3 * 2 ** ((one[10] & 7) + 1):-1]
    return head[:6] + struct.pack("<HH", 65535, 65535) + head[10:] + body * count + b";"


def picture(name, harm, data, mime, **more):
    return page(name, harm, "<img src=p>" + "<div style='background:url(p);width:50px;height:50px'></div>",
                resources=[Resource(SITE + "p", data, mime)], **more)


def drawing(name, harm, body, **more):
    text = f"<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='100' height='100'>{body}</svg>"
    return picture(name, harm, text.encode(), "image/svg+xml", **more)


def font(name, harm, data, **more):
    return page(name, harm, "<p class=f>set in it</p>", head="<style>@font-face{font-family:f;src:url(f)}.f{font-family:f}</style>",
                resources=[Resource(SITE + "f", data, "font/ttf")], **more)


def tables(kind, names, size):
    """A font whose tables say that they are somewhere."""
    head = kind + struct.pack(">HHHH", len(names), 16, 0, 0)
    return head + b"".join(name + struct.pack(">III", 0, 0xFFFFFFF0, size) for name in names) + bytes(1000)


USES = "<defs><g id='u0'><rect width='1' height='1'/></g>" + "".join(f"<g id='u{n}'>" + f"<use xlink:href='#u{n - 1}'/>" * 10 + "</g>" for n in range(1, 12)) + "</defs><use xlink:href='#u11'/>"
PARTS = "the engine makes all the parts while the page loads"
LAUGHTER = "<!DOCTYPE svg [<!ENTITY l0 'x'>" + "".join(f"<!ENTITY l{n} '{f'&l{n - 1};' * 10}'>" for n in range(1, 10)) + "]>"
NAMES = [b"cmap", b"glyf", b"head", b"hhea", b"hmtx", b"loca", b"maxp", b"name", b"post"]

PAGES = [
    picture("png-bomb", "A picture of 900 million pixels in a few bytes", png_bomb(30_000, 30_000), "image/png", quick=True),
    picture("png-wide", "A picture of a billion pixels' width", b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR" + struct.pack(">II", 2 ** 30, 2 ** 30) + b"\1\0\0\0\0" * 4, "image/png"),
    picture("png-cut", "A picture that ends early", png(50, 50, (255, 0, 0))[:60], "image/png"),
    picture("gif-frames", "A picture that moves, of 65535 pixels", gif_frames(5000), "image/gif"),
    picture("gif-lie", "A picture of another kind", b"GIF89a" + b"\xff" * 1000, "image/jpeg"),
    picture("jpeg-broken", "A picture without content", b"\xff\xd8\xff\xc0\0\x11\x08\xff\xff\xff\xff\3\1\x22\0\2\x11\1\3\x11\1\xff\xda", "image/jpeg"),
    picture("webp-broken", "A picture that says it is large", b"RIFF\xff\xff\xff\xffWEBPVP8L\xff\xff\xff\xff\x2f\xff\xff\xff\xff", "image/webp"),
    picture("bmp-large", "A picture of two billion rows", b"BM" + struct.pack("<IIIIiiHHIIIIII", 54, 0, 54, 40, 2 ** 31 - 1, 2 ** 31 - 1, 1, 1, 1, 0, 0, 0, 0, 0), "image/bmp"),
    picture("ico-circle", "An icon whose pictures are itself", struct.pack("<HHH", 0, 1, 1000) + struct.pack("<BBBBHHII", 0, 0, 0, 0, 1, 32, 2 ** 31, 6) * 1000, "image/x-icon"),
    picture("avif-broken", "A picture in boxes that do not end", b"\0\0\0\x18ftypavif" + b"\0\0\0\1meta" + b"\xff" * 5000, "image/avif"),
    picture("random", "A picture of nonsense", bytes(n * 7919 % 256 for n in range(100_000)), "image/png"),
    drawing("svg-uses", "A drawing of a hundred billion parts", USES, never_ends=PARTS, memory_limit=BOMB),
    drawing("svg-circle", "A drawing that uses itself", "<g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g>"),
    drawing("svg-patterns", "Patterns in patterns", "".join(f"<pattern id='p{n}' width='.1' height='.1'><rect width='9' height='9' fill='url(#p{n + 1})'/></pattern>" for n in range(50)) + "<rect width='99' height='99' fill='url(#p0)'/>"),
    drawing("svg-masks", "Masks in masks", "".join(f"<mask id='m{n}'><rect width='99' height='99' fill='#fff' mask='url(#m{n + 1})'/></mask>" for n in range(200)) + "<rect width='99' height='99' mask='url(#m0)'/>"),
    drawing("svg-path", "A path of a million points", "<path d='M0 0" + "l1 1-1 0" * 300_000 + "' stroke='red' stroke-dasharray='.001'/>"),
    drawing("svg-size", "A drawing of absurd size", "<rect width='1e38' height='1e38' x='-1e37'/><text font-size='1e30'>x</text>"),
    drawing("svg-script", "A drawing with scripts and pages", "<script>for (;;);</script><foreignObject width='99' height='99'><iframe xmlns='http://www.w3.org/1999/xhtml' src='file:///etc/passwd'/></foreignObject>"),
    page("svg-inline", "The hundred billion parts in the page", f"<svg width=100 height=100>{USES.replace('xlink:', '')}</svg>", never_ends=PARTS, memory_limit=BOMB),
    page("data-pictures", "Ten thousand pictures with their data", f"<img src='data:image/png;base64,{base64.b64encode(png(2, 2, (0, 0, 0))).decode()}'>" * 10_000),
    page("srcset", "A picture with fifty thousand addresses", "<img srcset='" + ",".join(f"p{n}.png {n}w" for n in range(1, 50_000)) + "'>"),
    page("video", "Video and sound that are none", "<video src=v autoplay poster=v></video><audio src=v autoplay></audio>" * 50, resources=[Resource(SITE + "v", b"\0\0\0\x20ftypisom" + b"\xff" * 9999, "video/mp4")]),
    font("font-random", "A font of nonsense", bytes(n * 7919 % 256 for n in range(100_000)), quick=True),
    font("font-tables", "A font whose tables lie beyond its end", tables(b"\0\1\0\0", NAMES, 0xFFFFFFFF)),
    font("font-otto", "The same of the other kind", tables(b"OTTO", [*NAMES, b"CFF "], 0x7FFFFFFF)),
    font("font-collection", "A collection of a billion fonts", b"ttcf\0\1\0\0" + b"\x3f\xff\xff\xff" * 1000),
    font("font-woff", "A packed font that says it is large", b"wOFF\0\1\0\0" + struct.pack(">IHHIHHIIIII", 100, 9, 0, 0x7FFFFFFF, 1, 0, 0, 0, 0, 0, 0) + zlib.compress(bytes(10_000_000))),
    font("font-woff2", "The same packed more tightly", b"wOF2\0\1\0\0" + b"\xff" * 5000),
    font("font-empty", "A font of nothing", b""),
    font("font-large", "A font of thirty million zeros", bytes(30_000_000)),
    Page("laughter", "A page of a billion letters", Archive(Resource(SITE + "page.xml", f"<?xml version='1.0'?>{LAUGHTER.replace('DOCTYPE svg', 'DOCTYPE html')}"
         "<html xmlns='http://www.w3.org/1999/xhtml'><body><p>StillHere</p><p>&l9;</p></body></html>", "application/xhtml+xml")), says=(), quick=True),
]
