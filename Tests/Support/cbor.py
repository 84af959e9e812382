"""The binary form of the messages between tool and engine: CBOR with every map and list in an envelope.

    data = cbor.encode({"id": 1, "method": "Browser.getVersion"})
    message, rest = cbor.take(data + b"the next")       # None as long as a message is incomplete
"""

import struct

ENVELOPE = b"\xd8\x18\x5a"      # tag 24, and a byte string whose length has 32 bits
_HEAD = len(ENVELOPE) + 4
_BASE64 = 22                    # the tag of bytes that stand for text in base64
_UNSIGNED, _NEGATIVE, _BYTES, _TEXT, _ARRAY, _MAP, _TAG, _OTHER = range(8)
_ENDLESS, _STOP = 31, 0xff
_FALSE, _TRUE, _NULL, _DOUBLE = 0xf4, 0xf5, 0xf6, 0xfb


def _start(kind, number):
    if number < 24:
        return bytes([kind << 5 | number])
    size = next(size for size in range(4) if number < 1 << (8 << size))
    return bytes([kind << 5 | 24 + size]) + number.to_bytes(1 << size, "big")


def encode(value):
    """Bytes are written as they are, behind their tag."""
    if value is None or isinstance(value, bool):
        return bytes([_NULL if value is None else _TRUE if value else _FALSE])
    if isinstance(value, int) and -1 << 31 <= value < 1 << 31:
        return _start(_UNSIGNED, value) if value >= 0 else _start(_NEGATIVE, -1 - value)
    if isinstance(value, (int, float)):
        return bytes([_DOUBLE]) + struct.pack(">d", value)
    if isinstance(value, bytes):
        return _start(_TAG, _BASE64) + _start(_BYTES, len(value)) + value
    if isinstance(value, str):
        data = value.encode("utf-8", "replace")
        return _start(_TEXT, len(data)) + data
    kind = _MAP if isinstance(value, dict) else _ARRAY
    parts = [item for pair in value.items() for item in pair] if kind == _MAP else value
    inner = bytes([kind << 5 | _ENDLESS]) + b"".join(map(encode, parts)) + bytes([_STOP])
    return ENVELOPE + struct.pack(">I", len(inner)) + inner


def take(data):
    """The first message, and what follows it; None when it is not whole. ValueError for what is none."""
    if not ENVELOPE.startswith(data[:len(ENVELOPE)]):
        raise ValueError("no message begins like this")
    if len(data) < _HEAD or len(data) < _HEAD + int.from_bytes(data[3:_HEAD], "big"):
        return None
    value, end = _decode(data, 0)
    return value, data[end:]


def _decode(data, at):
    kind, more = data[at] >> 5, data[at] & 31
    if kind == _OTHER and more == 27:
        number = struct.unpack_from(">d", data, at + 1)[0]
        return (int(number) if number.is_integer() else number), at + 9
    if kind == _OTHER:
        return {_FALSE: False, _TRUE: True, _NULL: None}[data[at]], at + 1
    if kind in (_ARRAY, _MAP):
        return _decode_many(data, at + 1, kind)
    number, at = _number(data, at, more)
    if kind == _TAG and number == 24:
        return _decode(data, _number(data, at, data[at] & 31)[1])
    if kind == _TAG:
        return _data(data, at)
    if kind == _UNSIGNED:
        return number, at
    if kind == _NEGATIVE:
        return -1 - number, at
    # The engine writes text outside of ASCII in UTF-16.
    return data[at:at + number].decode("utf-16-le" if kind == _BYTES else "utf-8", "surrogatepass"), at + number


def _data(data, at):
    length, at = _number(data, at, data[at] & 31)
    return bytes(data[at:at + length]), at + length


def _number(data, at, more):
    if more < 24:
        return more, at + 1
    size = 1 << more - 24
    return int.from_bytes(data[at + 1:at + 1 + size], "big"), at + 1 + size


def _decode_many(data, at, kind):
    items = []
    while data[at] != _STOP:
        item, at = _decode(data, at)
        items.append(item)
    return (items if kind == _ARRAY else dict(zip(items[::2], items[1::2]))), at + 1
