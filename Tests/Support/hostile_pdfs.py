"""PDF files that are made to harm whoever reads them: by their size once they are unpacked, by their depth, by
circles, and by numbers and structures that make no sense.

    for name, make in CASES.items():
        pdf = make()
"""

import functools
import zlib

CATALOG = b"<</Type/Catalog/Pages 2 0 R>>"
PAGES = b"<</Type/Pages/Kids[3 0 R]/Count 1>>"
PAGE = b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 400]>>"
DEEP = 100_000
GIB = 1 << 30


# Building blocks

def stream(data, entries=b"", length=None):
    told = len(data) if length is None else length
    return b"<</Length %d%s>>\nstream\n%s\nendstream" % (told, entries, data)


def pdf(objects, trailer=b"", size=None):
    """A file with a cross-reference table. Objects are numbered from 1, or a dictionary by their numbers."""
    if not isinstance(objects, dict):
        objects = dict(enumerate(objects, 1))
    pieces, at, table = [b"%PDF-1.5\n"], 9, []
    for number, text in objects.items():
        piece = b"%d 0 obj\n%s\nendobj\n" % (number, text)
        table.append(b"%d 1\n%010d 00000 n \n" % (number, at))
        pieces.append(piece)
        at += len(piece)
    told = max(objects) + 1 if size is None else size
    return b"".join(pieces) + b"xref\n0 1\n0000000000 65535 f \n%strailer\n<</Size %d/Root 1 0 R%s>>\nstartxref\n%d\n%%%%EOF\n" % (
        b"".join(table), told, trailer, at)


def page_with(contents, more=()):
    """A page with these contents, whose object is the fourth; more objects follow it."""
    return pdf([CATALOG, PAGES, PAGE[:-2] + b"/Contents 4 0 R>>", contents, *more])


def cross_reference_stream(objects, table=None, entries=b""):
    """A file with a cross-reference stream; `table` replaces the stream's data, which `entries` then describe."""
    pieces, at, rows = [b"%PDF-1.5\n"], 9, [b"\0\0\0\0\0\0"]
    for number, text in enumerate(objects, 1):
        piece = b"%d 0 obj\n%s\nendobj\n" % (number, text)
        rows.append(b"\1" + at.to_bytes(4) + b"\0")
        pieces.append(piece)
        at += len(piece)
    number = len(objects) + 1
    rows.append(b"\1" + at.to_bytes(4) + b"\0")
    data = b"".join(rows) if table is None else table
    return b"".join(pieces) + b"%d 0 obj\n%s\nendobj\nstartxref\n%d\n%%%%EOF\n" % (
        number, stream(data, b"/Type/XRef/Size %d/W[1 4 1]/Root 1 0 R%s" % (number + 1, entries)), at)


THRICE = b"/Filter[/FlateDecode/FlateDecode/FlateDecode]"


@functools.cache
def bomb(size=4 * GIB, times=3):
    """Zero bytes, compressed several times. What follows a full flush does not depend on what was before, so that
    one piece stands for all."""
    piece = 1 << 20
    packer = zlib.compressobj(9)
    first = packer.compress(bytes(piece)) + packer.flush(zlib.Z_FULL_FLUSH)
    again = packer.compress(bytes(piece)) + packer.flush(zlib.Z_FULL_FLUSH)
    assert size % piece == 0
    checksum = (size % 65521) << 16 | 1
    data = first + again * (size // piece - 1) + b"\3\0" + checksum.to_bytes(4)
    for _ in range(times - 1):
        data = zlib.compress(data, 9)
    return data


def lzw_bomb():
    """Codes of nine to twelve bits, each for a text that is longer by one than the one before, again and again."""
    bits = [format(256, "09b"), format(0, "09b")]
    bits += [format(code, "09b" if code < 511 else "010b" if code < 1023 else "011b" if code < 2047 else "012b")
             for code in range(258, 4094)]
    text = ("".join(bits) + format(256, "012b")) * 200 + format(257, "09b")
    text += "0" * (-len(text) % 8)
    return int(text, 2).to_bytes(len(text) // 8)


def chain(first, last, count, start=2):
    """Objects of which each refers to the next."""
    return [first % (number + 1) for number in range(start, start + count)] + [last]


# The files

def deep_pages():
    return pdf([CATALOG, *chain(b"<</Type/Pages/Count 1/Kids[%d 0 R]>>", b"<</Type/Page/MediaBox[0 0 300 400]>>", DEEP)])


def cyclic_pages():
    return pdf([CATALOG, b"<</Type/Pages/Kids[3 0 R]/Count 1>>", b"<</Type/Pages/Parent 2 0 R/Kids[2 0 R]/Count 1>>"])


def page_of_itself():
    return pdf([CATALOG, b"<</Type/Pages/Kids[2 0 R 2 0 R]/Count 2>>"])


def with_outlines(outlines):
    return pdf([CATALOG[:-2] + b"/Outlines 4 0 R>>", PAGES, PAGE, *outlines])


def cyclic_outlines():
    return with_outlines([b"<</First 5 0 R/Last 5 0 R/Count 1>>",
                          b"<</Title(a)/Parent 5 0 R/First 4 0 R/Next 5 0 R/Prev 5 0 R/Dest[3 0 R/Fit]>>"])


def deep_outlines():
    return with_outlines(chain(b"<</Title(a)/First %d 0 R/Count 1>>", b"<</Title(z)>>", DEEP, start=4))


def nested(opening, closing):
    return pdf([CATALOG[:-2] + b"/Deep " + opening * DEEP + closing * DEEP + b">>", PAGES, PAGE])


def deep_contents():
    return page_with(stream(b"[" * DEEP + b"]" * DEEP + b"q " * DEEP))


def with_lengths(length):
    return page_with(stream(b"0 0 10 10 re f", length=length))


def length_of_itself():
    return page_with(b"<</Length 4 0 R>>\nstream\n0 0 10 10 re f\nendstream")


def previous_table(at_itself):
    whole = pdf([CATALOG, PAGES, PAGE], b"/Prev 0000000000")
    at = whole.rindex(b"xref\n0 1") if at_itself else 999_999_999
    return whole.replace(b"/Prev 0000000000", b"/Prev %010d" % at)


def table_chain():
    """Cross-reference tables, each of which names the one before."""
    whole = pdf([CATALOG, PAGES, PAGE])
    for _ in range(2000):
        at = int(whole[whole.rindex(b"startxref") + 10:].split()[0])
        whole += b"xref\n0 0\ntrailer\n<</Size 4/Root 1 0 R/Prev %d>>\nstartxref\n%d\n%%%%EOF\n" % (at, len(whole))
    return whole


def huge_numbers():
    return pdf({1: CATALOG, 2: PAGES, 3: PAGE, 2147483648: b"(large)", 99999999999: b"(larger)"})


def many_entries():
    return pdf([CATALOG, PAGES, PAGE]).replace(b"xref\n0 1\n", b"xref\n0 2147483647\n")


def long_names():
    name = b"/" + b"n" * (3 << 20)
    return pdf([CATALOG[:-2] + name + name[:-1] + b">>", PAGES, PAGE, b"<<%s(x)/Title%s>>" % (name, name)], b"/Info 4 0 R")


def encrypted():
    key = b"k" * 32
    return pdf([CATALOG, PAGES, PAGE], b"/ID[(0123456789abcdef)(0123456789abcdef)]/Encrypt<</Filter/Standard/V 1/R 2/P -4/O("
               + key + b")/U(" + key + b")>>")


def oddly_encrypted():
    return pdf([CATALOG, PAGES, PAGE], b"/ID[1 2]/Encrypt<</Filter/Standard/V 5/R 6/Length -1/P 1e99/O()/U 7/OE[]/UE null>>")


def many_objects():
    return pdf([CATALOG, PAGES, PAGE, *(b"null" for _ in range(1_000_000))])


def with_information(information, *more):
    return pdf([CATALOG, PAGES, PAGE, information, *more], b"/Info 4 0 R")


def odd_information():
    return with_information(b"<</Title[1[2[3]]]/Author<</A 4 0 R>>/Subject 5 0 R/Creator 1e999/Producer null/CreationDate(D:)"
                            b"/ModDate/Now/Keywords 99 0 R/(no name)(x)>>", b"6 0 R", b"5 0 R")


def looping_information():
    return with_information(b"5 0 R", b"6 0 R", b"4 0 R")


def object_stream(data, entries, count=1):
    """A file that keeps its catalog in an object stream."""
    rows = [b"\0\0\0\0\0\0", b"\2\0\0\0\4\0"]
    pieces, at = [b"%PDF-1.5\n"], 9
    for number, text in ((2, PAGES), (3, PAGE), (4, stream(data, b"/Type/ObjStm/N %d/First 4%s" % (count, entries)))):
        rows.append(b"\1" + at.to_bytes(4) + b"\0")
        pieces.append(b"%d 0 obj\n%s\nendobj\n" % (number, text))
        at += len(pieces[-1])
    rows.append(b"\1" + at.to_bytes(4) + b"\0")
    return b"".join(pieces) + b"5 0 obj\n%s\nendobj\nstartxref\n%d\n%%%%EOF\n" % (
        stream(b"".join(rows), b"/Type/XRef/Size 6/W[1 4 1]/Root 1 0 R"), at)


def mixed():
    """A sound file with most of what the format has, as a beginning for damage."""
    text = b"BT /F1 24 Tf 40 40 Td (Text of the page) Tj ET\n"
    rows = zlib.compress(b"".join(b"\2" + bytes([row] * 30) for row in range(10)))
    return cross_reference_stream([
        CATALOG[:-2] + b"/Outlines 6 0 R/Names<</Dests<</Names[(a)[3 0 R/XYZ 0 100 null]]>>>>/Lang(en)>>",
        PAGES,
        PAGE[:-2] + b"/Contents[4 0 R 5 0 R]/Resources<</Font<</F1 8 0 R>>/XObject<</X 9 0 R>>>>/Rotate 90"
        b"/Annots[<</Type/Annot/Subtype/Link/Rect[10 10 90 90]/A<</S/URI/URI(http://a.example/)>>>>]>>",
        stream(zlib.compress(text), b"/Filter/FlateDecode"),
        stream(text.hex().encode() + b">", b"/Filter/ASCIIHexDecode"),
        b"<</Type/Outlines/First 7 0 R/Last 7 0 R/Count 1>>",
        b"<</Title(Entry)/Parent 6 0 R/Dest[3 0 R/Fit]>>",
        b"<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>",
        stream(rows, b"/Type/XObject/Subtype/Image/Width 10/Height 10/ColorSpace/DeviceRGB/BitsPerComponent 8"
               b"/Filter/FlateDecode/DecodeParms<</Predictor 15/Colors 3/Columns 10>>"),
        b"<</Title(Mixed)/Author<feff00e4>/CreationDate(D:20240131235959+01'00')/Trapped/False>>",
    ], entries=b"/Info 10 0 R")


def plain():
    """A sound file with a cross-reference table."""
    return page_with(stream(b"BT /F1 24 Tf 40 40 Td (Text) Tj ET"), [b"<</Title(Plain)/Producer(Nobody)>>"])


def truncated(make, part):
    whole = make()
    return whole[:len(whole) * part // 20]


def image(filters, data):
    return page_with(b"<</Length 0>>\nstream\n\nendstream", [
        stream(data, b"/Type/XObject/Subtype/Image/Width 9/Height 9/ColorSpace/DeviceGray/BitsPerComponent 8/Filter" + filters)])


GARBAGE = bytes(range(256)) * 20

CASES = {
    "a cross-reference stream of gigabytes": lambda: cross_reference_stream([CATALOG, PAGES, PAGE], bomb(), THRICE),
    "contents of gigabytes": lambda: page_with(stream(bomb(), THRICE)),
    "an object stream of gigabytes": lambda: object_stream(bomb(), THRICE),
    "an object stream of a billion objects": lambda: object_stream(b"1 0 " + CATALOG, b"", 1_000_000_000),
    "gigabytes compressed once": lambda: page_with(stream(bomb(times=1), b"/Filter/FlateDecode")),
    "a hundred contents of a gigabyte": lambda: page_with(stream(bomb(GIB), THRICE), [stream(bomb(GIB), THRICE)] * 100),
    "rows of gigabytes": lambda: page_with(stream(
        zlib.compress(bytes(1000)), b"/Filter[/FlateDecode/FlateDecode]/DecodeParms[<</Predictor 15/Columns 2147483647"
        b"/Colors 4/BitsPerComponent 16>> null]")),
    "a cross-reference stream with rows of gigabytes": lambda: cross_reference_stream(
        [CATALOG, PAGES, PAGE], zlib.compress(bytes(1000)),
        b"/Filter/FlateDecode/DecodeParms<</Predictor 12/Columns 1073741823>>"),
    "rows of no length": lambda: page_with(stream(
        zlib.compress(bytes(1000)), b"/Filter[/FlateDecode]/DecodeParms[<</Predictor 15/Columns 0>>]")),
    "a page tree that is deep": deep_pages,
    "a page tree in a circle": cyclic_pages,
    "a page tree of itself": page_of_itself,
    "outlines in a circle": cyclic_outlines,
    "outlines that are deep": deep_outlines,
    "arrays that are deep": lambda: nested(b"[", b"]"),
    "dictionaries that are deep": lambda: nested(b"<</A", b">>"),
    "contents that are deep": deep_contents,
    "a length that is too large": lambda: with_lengths(2147483647),
    "a length beyond all numbers": lambda: with_lengths(10 ** 30),
    "a length that is too small": lambda: with_lengths(1),
    "a length below nothing": lambda: with_lengths(-1),
    "a length that is the stream": length_of_itself,
    "a cross-reference table before itself": lambda: previous_table(True),
    "a cross-reference table before the file": lambda: previous_table(False),
    "thousands of cross-reference tables": table_chain,
    "object numbers beyond all tables": huge_numbers,
    "a size beyond all tables": lambda: pdf([CATALOG, PAGES, PAGE], size=2147483647),
    "a table of billions of entries": many_entries,
    "names of megabytes": long_names,
    "a password": encrypted,
    "a password that makes no sense": oddly_encrypted,
    "a million objects": many_objects,
    "document information of odd kinds": odd_information,
    "document information in a circle": looping_information,
    "document information that is text": lambda: with_information(b"(text)"),
    "a catalog that is a number": lambda: pdf([b"7", PAGES, PAGE]),
    "pages that are a number": lambda: pdf([CATALOG, b"7"]),
    "an LZW stream of gigabytes": lambda: page_with(stream(zlib.compress(lzw_bomb()), b"/Filter[/FlateDecode/LZWDecode]")),
    "a run-length stream of a gigabyte": lambda: page_with(
        stream(zlib.compress(b"\x81\0" * (8 << 20)), b"/Filter[/FlateDecode/RunLengthDecode]")),
    "JBIG2 garbage": lambda: image(b"/JBIG2Decode", GARBAGE),
    "JPEG 2000 garbage": lambda: image(b"/JPXDecode", GARBAGE),
    "JPEG garbage": lambda: image(b"/DCTDecode", b"\xff\xd8\xff\xe0" + GARBAGE),
    "fax garbage": lambda: image(b"/CCITTFaxDecode", GARBAGE),
    "an unknown filter a thousand times": lambda: image(b"[" + b"/Unknown" * 1000 + b"]", GARBAGE),
    "Flate garbage": lambda: page_with(stream(GARBAGE, b"/Filter/FlateDecode")),
    "nothing but a head": lambda: b"%PDF-1.7\n",
    "a head and garbage": lambda: b"%PDF-1.7\n" + GARBAGE * 100,
    "openings without end": lambda: b"%PDF-1.7\n1 0 obj\n" + b"<<" * DEEP,
    "objects without end": lambda: b"%PDF-1.7\n" + b"1 0 obj " * DEEP,
}

TRUNCATED = {f"{part} twentieths of a {make.__name__} file": functools.partial(truncated, make, part)
             for make in (plain, mixed) for part in range(1, 20)}
