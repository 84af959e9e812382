"""Small pictures made by rule, each of one colour: PNG, GIF, BMP, ICO, WebP, JPEG and SVG; and PNG of noise."""

import random
import struct
import zlib


def png(width, height, colour=None, pixels=None):
    """A PNG of one (r, g, b) colour, or of the colour that pixels(x, y) gives."""
    if pixels is None:
        rows = (b"\0" + bytes(colour) * width) * height
    else:
        rows = b"".join(b"\0" + b"".join(bytes(pixels(x, y)) for x in range(width)) for y in range(height))
    return _png(width, height, zlib.compress(rows))


def noise(width, height, seed):
    """A PNG of random pixels, which no compression makes smaller: three bytes a pixel."""
    pixels = random.Random(seed).randbytes(width * height * 3)
    rows = b"".join(b"\0" + pixels[at:at + width * 3] for at in range(0, len(pixels), width * 3))
    return _png(width, height, zlib.compress(rows, 1))


def _png(width, height, compressed):
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + _chunk(b"IHDR", header) + _chunk(b"IDAT", compressed) + _chunk(b"IEND", b"")


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


def bmp(width, height, colour):
    """A BMP of one colour."""
    row = bytes(reversed(colour)) * width
    rows = (row + bytes(-len(row) % 4)) * height
    return (struct.pack("<2sIII", b"BM", 54 + len(rows), 0, 54)
            + struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(rows), 2835, 2835, 0, 0) + rows)


def ico(width, height, colour):
    """An icon file with one picture of one colour."""
    data = png(width, height, colour)
    return struct.pack("<HHHBBBBHHII", 0, 1, 1, width, height, 0, 0, 1, 24, len(data), 22) + data


def webp(width, height, colour):
    """A lossless WebP of one colour. Each of its codes has one symbol, so that the pixels take no bits."""
    red, green, blue = colour
    fields = [(0x2F, 8), (width - 1, 14), (height - 1, 14), (0, 1), (0, 3), (0, 3)]
    for symbol in (green, red, blue, 255):
        fields += [(1, 1), (0, 1), (1, 1), (symbol, 8)]
    fields += [(1, 1), (0, 1), (0, 1), (0, 1)]
    bits = "".join(format(value, f"0{count}b")[::-1] for value, count in fields)
    data = bytes(int(bits[at:at + 8][::-1], 2) for at in range(0, len(bits), 8))
    chunk = b"VP8L" + struct.pack("<I", len(data)) + data + bytes(len(data) % 2)
    return b"RIFF" + struct.pack("<I", len(chunk) + 4) + b"WEBP" + chunk


def jpeg(width, height, grey):
    """A JPEG of one shade of grey (0 to 255), its sides multiples of 8. Each block is its average alone."""
    def segment(marker, data):
        return bytes([0xFF, marker]) + struct.pack(">H", len(data) + 2) + data

    def table(number, symbols):
        # Codes 0, 10, 110, ...: one of each length.
        lengths = bytes(1 if length < len(symbols) else 0 for length in range(16))
        return segment(0xC4, bytes([number]) + lengths + bytes(symbols))

    level = (grey - 128) * 8  # the transform's scale
    size = abs(level).bit_length()
    sign = level if level >= 0 else level + (1 << size) - 1
    first = "10" + format(sign, f"0{size}b") + "0" if size else "00"
    bits = first + "00" * (width // 8 * (height // 8) - 1)
    bits += "1" * (-len(bits) % 8)
    scan = bytes(int(bits[at:at + 8], 2) for at in range(0, len(bits), 8)).replace(b"\xff", b"\xff\0")
    return (b"\xff\xd8" + segment(0xDB, b"\0" + b"\1" * 64)
            + segment(0xC0, b"\x08" + struct.pack(">HH", height, width) + b"\1\1\x11\0")
            + table(0x00, [0, size or 1]) + table(0x10, [0])
            + segment(0xDA, b"\1\1\0\0\x3f\0") + scan + b"\xff\xd9")
