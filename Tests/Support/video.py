"""A small film made by rule: one H.264 picture of one colour, without compression, in an MP4 file."""

import struct


class _Bits:
    """A row of bits, as an H.264 bit stream has them."""

    def __init__(self):
        self.bits = ""

    def fixed(self, value, count):
        self.bits += format(value, f"0{count}b")
        return self

    def coded(self, *values):
        """Unsigned numbers in Exp-Golomb codes."""
        for value in values:
            code = format(value + 1, "b")
            self.bits += "0" * (len(code) - 1) + code
        return self

    def aligned(self):
        self.bits += "0" * (-len(self.bits) % 8)
        return self

    def bytes(self):
        return bytes(int(self.bits[at:at + 8], 2) for at in range(0, len(self.bits), 8))


def _unit(header, bits):
    """A unit of the stream with its end mark; no three zero bytes may follow each other in it."""
    body, zeros = bytearray(), 0
    for byte in bits.fixed(1, 1).aligned().bytes():
        if zeros >= 2 and byte <= 3:
            body.append(3)
            zeros = 0
        body.append(byte)
        zeros = zeros + 1 if byte == 0 else 0
    return bytes([header]) + bytes(body)


def _box(kind, *contents):
    body = b"".join(contents)
    return struct.pack(">I4s", len(body) + 8, kind) + body


def _full(kind, *contents, flags=0):
    return _box(kind, struct.pack(">I", flags), *contents)


MATRIX = struct.pack(">9I", 0x10000, 0, 0, 0, 0x10000, 0, 0, 0, 0x40000000)


def mp4(columns, rows, luma, blue, red):
    """A film of columns × rows blocks of 16 pixels, of one colour, which lasts a second."""
    settings = (_Bits().fixed(66, 8).fixed(0xC0, 8).fixed(30, 8)   # profile, its marks, level
                .coded(0, 0, 2, 0).fixed(0, 1)                     # numbering; no other pictures are referred to
                .coded(columns - 1, rows - 1).fixed(0b1100, 4))    # whole pictures, nothing cut off, no more
    pictures = _Bits().coded(0, 0).fixed(0, 2).coded(0, 0, 0).fixed(0, 3).coded(0, 0, 0).fixed(0b100, 3)
    picture = _Bits().coded(0, 7, 0).fixed(0, 4).coded(0).fixed(0, 2).coded(0, 1)
    block = "".join(format(value, "08b") for value in [luma] * 256 + [blue] * 64 + [red] * 64)
    for _ in range(columns * rows):
        picture.coded(25).aligned().bits += block
    sequence, parameters, sample = _unit(0x67, settings), _unit(0x68, pictures), _unit(0x65, picture)
    sample = struct.pack(">I", len(sample)) + sample
    width, height = columns * 16, rows * 16

    configuration = _box(b"avcC", b"\x01" + sequence[1:4] + b"\xff\xe1", struct.pack(">H", len(sequence)), sequence,
                         b"\x01", struct.pack(">H", len(parameters)), parameters)
    entry = _box(b"avc1", bytes(6), struct.pack(">H", 1), bytes(16), struct.pack(">HHII", width, height, 0x480000, 0x480000),
                 bytes(4), struct.pack(">H", 1), bytes(32), struct.pack(">Hh", 24, -1), configuration)
    kind = _box(b"ftyp", b"isom", struct.pack(">I", 512), b"isomavc1")

    def movie(offset):
        table = _box(b"stbl", _full(b"stsd", struct.pack(">I", 1), entry),
                     _full(b"stts", struct.pack(">III", 1, 1, 1000)), _full(b"stsc", struct.pack(">IIII", 1, 1, 1, 1)),
                     _full(b"stsz", struct.pack(">III", 0, 1, len(sample))), _full(b"stco", struct.pack(">II", 1, offset)))
        media = _box(b"minf", _full(b"vmhd", bytes(8), flags=1),
                     _box(b"dinf", _full(b"dref", struct.pack(">I", 1), _full(b"url ", flags=1))), table)
        track = _box(b"trak",
                     _full(b"tkhd", struct.pack(">IIIII", 0, 0, 1, 0, 1000), bytes(16), MATRIX,
                           struct.pack(">II", width << 16, height << 16), flags=3),
                     _box(b"mdia", _full(b"mdhd", struct.pack(">IIIIHH", 0, 0, 1000, 1000, 0x55C4, 0)),
                          _full(b"hdlr", bytes(4), b"vide", bytes(13)), media))
        head = _full(b"mvhd", struct.pack(">IIIIIH", 0, 0, 1000, 1000, 0x10000, 0x100), bytes(10), MATRIX, bytes(24),
                     struct.pack(">I", 2))
        return _box(b"moov", head, track)

    offset = len(kind) + len(movie(0)) + 8
    return kind + movie(offset) + _box(b"mdat", sample)


def wave(seconds=1, rate=8000):
    """Silence, as a WAVE file."""
    samples = bytes([128]) * (seconds * rate)
    return (struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", 36 + len(samples), b"WAVE", b"fmt ", 16, 1, 1, rate, rate, 1, 8,
                        b"data", len(samples)) + samples)
