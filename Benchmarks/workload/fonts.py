"""Writes small TrueType fonts: the letters from a to z, each an angular shape of its own."""

import random
import struct

UNITS = 1000    # in an em
WIDTH = 600
FIRST, LAST = ord("a"), ord("z")


def font(seed):
    """A complete font, whose name and shapes the seed decides."""
    chance = random.Random(seed)
    glyphs = [b""] + [_glyph(chance) for _ in range(FIRST, LAST + 1)]
    places = [sum(map(len, glyphs[:number])) for number in range(len(glyphs) + 1)]
    count = len(glyphs)
    tables = {
        b"OS/2": _os2(),
        b"cmap": _cmap(),
        b"glyf": b"".join(glyphs),
        b"head": struct.pack(">IIIIHHQQhhhhHHhhh", 0x10000, 0x10000, 0, 0x5F0F3CF5, 3, UNITS, 0, 0, 0, 0, WIDTH, 800,
                             0, 8, 2, 1, 0),
        b"hhea": struct.pack(">IhhhHhhhhh12xH", 0x10000, 800, -200, 0, WIDTH, 0, 0, WIDTH, 1, 0, count),
        b"hmtx": struct.pack(">Hh", WIDTH, 0) * count,
        b"loca": struct.pack(f">{len(places)}I", *places),
        b"maxp": struct.pack(">IHHHHHHHHHHHHHH", 0x10000, count, 8, 1, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0),
        b"name": _names(f"Benchmark {seed}"),
        b"post": struct.pack(">IIhhIIIII", 0x30000, 0, -100, 50, 1, 0, 0, 0, 0),
    }
    return _file(tables)


def _glyph(chance):
    """One contour of eight corners around the middle; a multiple of four bytes, as every table is."""
    corners = [(300 + dx * chance.randrange(100, 280), 350 + dy * chance.randrange(100, 340))
               for dx, dy in ((-1, -1), (-1, 0), (-1, 1), (0, 1), (1, 1), (1, 0), (1, -1), (0, -1))]
    steps = [(x - before_x, y - before_y) for (x, y), (before_x, before_y) in zip(corners, [(0, 0), *corners])]
    xs, ys = zip(*corners)
    data = struct.pack(">hhhhhHH8B", 1, min(xs), min(ys), max(xs), max(ys), len(corners) - 1, 0, *[1] * len(corners))
    data += struct.pack(">8h8h", *(x for x, _ in steps), *(y for _, y in steps))
    return data + bytes(-len(data) % 4)


def _cmap():
    """The letters follow each other, and the table's last range is that of no letter, which the format asks for."""
    ranges = struct.pack(">HHHHHHHHHhhHH", 4, 4, 1, 0, LAST, 0xFFFF, 0, FIRST, 0xFFFF, 1 - FIRST, 1, 0, 0)
    table = struct.pack(">HHH", 4, 6 + len(ranges), 0) + ranges
    return struct.pack(">HHHHI", 0, 1, 3, 1, 12) + table


def _names(family):
    texts = {1: family, 2: "Regular", 3: family, 4: family, 6: family.replace(" ", "")}
    records, strings = b"", b""
    for number, text in texts.items():
        data = text.encode("utf-16-be")
        records += struct.pack(">HHHHHH", 3, 1, 0x409, number, len(data), len(strings))
        strings += data
    return struct.pack(">HHH", 0, len(texts), 6 + len(records)) + records + strings


def _os2():
    return (struct.pack(">HhHHH", 3, WIDTH, 400, 5, 0) + struct.pack(">11h", *[100] * 10, 0) + bytes(10) + bytes(16)
            + b"NONE" + struct.pack(">HHHhhhHH", 0x40, FIRST, LAST, 800, -200, 0, 800, 200) + struct.pack(">II", 1, 0)
            + struct.pack(">hhHHH", 500, 700, 0, 32, 1))


def _file(tables):
    count = len(tables)
    power = 1 << (count.bit_length() - 1)
    head = struct.pack(">IHHHH", 0x10000, count, power * 16, power.bit_length() - 1, count * 16 - power * 16)
    directory, body = b"", b""
    for tag, data in sorted(tables.items()):
        padded = data + bytes(-len(data) % 4)
        checksum = sum(struct.unpack(f">{len(padded) // 4}I", padded)) & 0xFFFFFFFF
        directory += tag + struct.pack(">III", checksum, len(head) + count * 16 + len(body), len(data))
        body += padded
    return head + directory + body
