#!/usr/bin/env python3
"""Property lists by Python's own library, to compare with.

plists.py make FOLDER COUNT   writes COUNT lists as N.binary, N.xml and N.text
plists.py check FOLDER        reads every N.binary and N.xml and compares with N.text; prints the differences
plists.py archive FILE        prints the root object of a keyed archive
"""
import datetime
import pathlib
import plistlib
import random
import struct
import sys

REFERENCE = datetime.datetime(2001, 1, 1)


def bits(value):
    return struct.pack(">d", value).hex()


def canonical(value):
    if value is True or value is False:
        return "true" if value else "false"
    if isinstance(value, str):
        return "s" + value.encode("utf-16-be").hex()
    if isinstance(value, bytes):
        return "d" + value.hex()
    if isinstance(value, datetime.datetime):
        return "t" + bits((value - REFERENCE).total_seconds())
    if isinstance(value, plistlib.UID):
        return "u%d" % value.data
    if isinstance(value, int):
        return "i%d" % value
    if isinstance(value, float):
        return "r" + bits(value)
    if isinstance(value, list):
        return "[" + "".join(canonical(v) + "," for v in value) + "]"
    return "{" + "".join(canonical(k) + "=" + canonical(v) + "," for k, v in value.items()) + "}"


def text(rng):
    alphabet = "aZ 09<>&\"'\n\t\u00e9\u4e2d\U0001f600\u0301]]>"
    return "".join(rng.choice(alphabet) for _ in range(rng.choice([0, 1, 5, 14, 15, 16, 300])))


def scalar(rng):
    kind = rng.randrange(7)
    if kind == 0:
        return text(rng)
    if kind == 1:
        edge = rng.choice([0, 1, 0x7F, 0x80, 0xFF, 0x100, 0xFFFF, 0x10000, 2**31, 2**32, 2**63 - 1, 2**63, 2**64 - 1])
        return edge if rng.random() < 0.7 or edge > 2**63 else -edge
    if kind == 2:
        return rng.choice([0.0, 0.1, 1e300, 5e-324, -1.5, rng.random(), float("inf"), float("-inf")])
    if kind == 3:
        return bool(rng.randrange(2))
    if kind == 4:
        return rng.randbytes(rng.choice([0, 1, 2, 3, 14, 15, 57, 400]))
    if kind == 5:
        return REFERENCE + datetime.timedelta(seconds=rng.randrange(-10**9, 10**9))
    return rng.choice(["shared", 7])


def value(rng, depth):
    if depth == 0 or rng.random() < 0.3:
        return scalar(rng)
    size = rng.choice([0, 1, 3, 16])
    if rng.random() < 0.5:
        return [value(rng, depth - 1) for _ in range(size)]
    return {text(rng) + str(i): value(rng, depth - 1) for i in range(size)}


def make(folder, count):
    for n in range(count):
        root = value(random.Random(n), 4)
        (folder / f"{n}.binary").write_bytes(plistlib.dumps(root, fmt=plistlib.FMT_BINARY, sort_keys=False))
        (folder / f"{n}.xml").write_bytes(plistlib.dumps(root, fmt=plistlib.FMT_XML, sort_keys=False))
        (folder / f"{n}.text").write_text(canonical(root))


def check(folder):
    checked = 0
    for file in sorted(folder.iterdir()):
        if file.suffix == ".text":
            continue
        data = file.read_bytes()
        root = plistlib.loads(data)
        if canonical(root) != file.with_suffix(".text").read_text():
            print(file.name, "reads differently")
        # Numbers and carriage returns may be written in more than one way.
        comparable = b"<real>" not in data and b"&#13;" not in data
        if file.suffix == ".xml" and comparable and plistlib.dumps(root, sort_keys=False) != data:
            print(file.name, "is written differently")
        checked += 1
    print("checked", checked)


def resolved(archive, reference):
    """The canonical text of an object of a keyed archive."""
    objects = archive["$objects"]
    form = objects[reference.data]
    if not isinstance(form, dict):
        return canonical(form)

    def parts(key):
        return [resolved(archive, part) for part in form[key]]

    kind = objects[form["$class"].data]
    assert kind["$classname"] == kind["$classes"][0] and kind["$classes"][-1] == "NSObject"
    name = kind["$classname"]
    if name == "NSNull":
        return "null"
    if name == "NSDate":
        return "t" + bits(form["NS.time"])
    if name == "NSURL":
        assert objects[form["NS.base"].data] == "$null"
        return "l" + resolved(archive, form["NS.relative"])[1:]
    if name == "NSArray":
        return "[" + "".join(p + "," for p in parts("NS.objects")) + "]"
    if name == "NSDictionary":
        return "{" + "".join(k + "=" + v + "," for k, v in zip(parts("NS.keys"), parts("NS.objects"))) + "}"
    assert name == "NSError"
    return "e%d" % form["NSCode"] + resolved(archive, form["NSDomain"]) + resolved(archive, form["NSUserInfo"])


def show_archive(file):
    archive = plistlib.loads(file.read_bytes(), fmt=plistlib.FMT_BINARY)
    assert list(archive) == ["$version", "$archiver", "$top", "$objects"]
    assert archive["$version"] == 100000 and archive["$archiver"] == "NSKeyedArchiver"
    assert archive["$objects"][0] == "$null"
    print(resolved(archive, archive["$top"]["root"]), end="")


if __name__ == "__main__":
    if sys.argv[1] == "make":
        make(pathlib.Path(sys.argv[2]), int(sys.argv[3]))
    elif sys.argv[1] == "archive":
        show_archive(pathlib.Path(sys.argv[2]))
    else:
        check(pathlib.Path(sys.argv[2]))
