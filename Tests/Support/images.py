"""Small pictures made by rule: PNG, GIF and SVG, as a rule of one colour."""

import struct
import zlib


def png(width, height, colour=None, pixels=None):
    """A PNG of one (r, g, b) colour, or of the colour that pixels(x, y) gives."""
    if pixels is None:
        rows = (b"\0" + bytes(colour) * width) * height
    else:
        rows = b"".join(b"\0" + b"".join(bytes(pixels(x, y)) for x in range(width)) for y in range(height))
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + _chunk(b"IHDR", header)
            + _chunk(b"IDAT", zlib.compress(rows)) + _chunk(b"IEND", b""))


def _chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def gif(width, height, colour):
    """A GIF of one colour. Every pixel is written as a literal after a clear code, so no table grows."""
    codes = []
    for _ in range(width * height):
        codes += [4, 0]
    codes.append(5)
    bits = "".join(format(code, "03b")[::-1] for code in codes)
    packed = bytes(int(bits[at:at + 8][::-1], 2) for at in range(0, len(bits), 8))
    blocks = b"".join(bytes([len(packed[at:at + 255])]) + packed[at:at + 255]
                      for at in range(0, len(packed), 255))
    palette = bytes(colour) + bytes(9)
    return (b"GIF89a" + struct.pack("<HHBBB", width, height, 0x91, 0, 0) + palette
            + b"\x2c" + struct.pack("<HHHHB", 0, 0, width, height, 0) + b"\x02" + blocks + b"\0\x3b")


def svg(width, height, colour, text=""):
    """An SVG of one colour, as text, with an optional line of text in black."""
    label = f'<text x="4" y="20" font-size="14">{text}</text>' if text else ""
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}">'
            f'<rect width="{width}" height="{height}" fill="rgb{tuple(colour)}"/>{label}</svg>')
