"""Judges PDF files through the tools of poppler, mupdf and qpdf: pages, boxes, text, attributes, outline,
structure and sampled pixels."""

import json
import re
import subprocess
from dataclasses import dataclass


# What mupdf says of itself and not of a file: how it was built, and that it takes no glyph for more than eight
# characters, which joined emoji are.
OF_ITSELF = ("warning: ICC support is not available",
             "warning: ignoring one to many mapping in cmap Adobe-Identity-UCS")


def _run(*command):
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, timeout=60)
    if done.returncode != 0:
        raise AssertionError(f"{command[0]} refused the file: {done.stderr.decode(errors='replace')}")
    return done.stdout


def _run_in_silence(*command):
    """Also what a program only warns of counts as a refusal."""
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, timeout=60)
    complaints = [line for line in done.stderr.decode(errors="replace").splitlines() if line not in OF_ITSELF]
    if done.returncode != 0 or complaints:
        raise AssertionError(f"{command[0]} complains: {complaints}")
    return done.stdout


@dataclass
class Word:
    text: str
    page: int
    left: float
    top: float
    right: float
    bottom: float


@dataclass
class Entry:
    """An entry of the outline; level 1 is the outermost, top is counted in points from the page's top."""
    level: int
    title: str
    page: int
    left: float
    top: float


@dataclass
class Link:
    """Leads to an address, or to a destination of the document by name; placed from the page's top left."""
    page: int
    left: float
    top: float
    right: float
    bottom: float
    address: str | None
    name: str | None
    place: list | None = None  # of a destination that has no name, as the file writes it

    def covers(self, word):
        return (self.page == word.page and self.left - 1 <= word.left and word.right <= self.right + 1
                and self.top - 1 <= (word.top + word.bottom) / 2 <= self.bottom + 1)


@dataclass
class Font:
    name: str
    kind: str
    embedded: bool
    subset: bool
    has_text: bool  # says what its glyphs mean


@dataclass
class Picture:
    """A rendered page: rows of RGB bytes."""
    width: int
    height: int
    rgb: bytes

    def pixel(self, x, y):
        at = (int(y) * self.width + int(x)) * 3
        return tuple(self.rgb[at:at + 3])


class PDF:
    def __init__(self, path):
        self.path = str(path)
        self._answers = {}
        self._info = _run("pdfinfo", "-enc", "UTF-8", "-f", "1", "-l", "1000000", "-box", self.path).decode()

    def _told(self, *command):
        """What a program says of the file; it is asked once."""
        if command not in self._answers:
            self._answers[command] = _run(*command)
        return self._answers[command]

    @property
    def page_count(self):
        return int(self.attribute("Pages"))

    def attribute(self, name):
        """A line of the document's information; None when the file has none of that name."""
        found = re.search(rf"^{re.escape(name)}:[ ]*(.*)$", self._info, re.MULTILINE)
        return found.group(1) if found else None

    def information(self):
        """The entries of the document's information dictionary, read from the file itself."""
        return {name: text for name in ("Title", "Subject", "Keywords", "Author", "Creator", "Producer")
                if (text := self.attribute(name)) is not None}

    def box(self, name="MediaBox", page=1):
        """A page's box: left, bottom, right, top in points."""
        found = re.search(rf"^Page +{page} +{name}:(.*)$", self._info, re.MULTILINE)
        if not found:
            raise AssertionError(f"page {page} has no {name}")
        return tuple(float(number) for number in found.group(1).split())

    def size(self, page=1):
        left, bottom, right, top = self.box("MediaBox", page)
        return (right - left, top - bottom)

    def text(self, page=None, as_drawn=False):
        """What poppler reads: line by line as they are seen, or as_drawn, in the file's own order."""
        span = [] if page is None else ["-f", str(page), "-l", str(page)]
        order = ["-raw"] if as_drawn else []
        return self._told("pdftotext", "-enc", "UTF-8", *order, *span, self.path, "-").decode()

    def glyph_text(self):
        """What mupdf reads, which takes each glyph for what its font says of it, in the order of drawing."""
        return self._told("mutool", "draw", "-q", "-F", "txt", self.path).decode("utf-8", "surrogatepass")

    def words(self):
        """Every word with its place, in points from the page's top left."""
        html = self._told("pdftotext", "-enc", "UTF-8", "-bbox", self.path, "-").decode()
        page, words = 0, []
        for line in html.splitlines():
            if "<page " in line:
                page += 1
            found = re.search(r'<word xMin="([^"]+)" yMin="([^"]+)" xMax="([^"]+)" yMax="([^"]+)">(.*)</word>',
                              line)
            if found:
                words.append(Word(found.group(5), page, *(float(found.group(n)) for n in range(1, 5))))
        return words

    def outline(self):
        entries = []
        for line in _run("mutool", "show", self.path, "outline").decode().splitlines():
            found = re.fullmatch(r'[-+|](\t+)"(.*)"\t#page=(\d+)&zoom=[^,]*,([^,]+),(.+)', line)
            if not found:
                raise AssertionError(f"not an outline entry that leads to a place: {line}")
            tabs, title, page, left, top = found.groups()
            entries.append(Entry(len(tabs), title, int(page), float(left), float(top)))
        return entries

    def structure(self):
        """The structure tree as indented lines: element kinds, and texts in quotes."""
        return _run_in_silence("pdfinfo", "-struct-text", self.path).decode()

    def catalog(self, name):
        """An entry of the catalog, as the file writes it; "null" when there is none."""
        return _run("mutool", "show", self.path, f"trailer/Root/{name}").decode().strip()

    def assert_valid(self):
        """Nothing that any of three programs would have to repair or complain of."""
        _run_in_silence("qpdf", "--check", self.path)
        for command in (("mutool", "draw", "-q", "-F", "txt", self.path), ("pdftotext", "-enc", "UTF-8", self.path, "-")):
            self._answers[command] = _run_in_silence(*command)

    def links(self):
        """The addresses of the page's outward links, in order."""
        lines = _run("pdfinfo", "-url", self.path).decode().splitlines()[1:]
        return [line.split(maxsplit=2)[2] for line in lines]

    def _objects(self):
        """The objects by reference, and the pages' references in order."""
        contents = json.loads(_run("qpdf", "--json=2", "--json-key=qpdf", "--json-key=pages", self.path))
        objects = {key[len("obj:"):]: value.get("value") for key, value in contents["qpdf"][1].items()}
        return objects, [page["object"] for page in contents["pages"]]

    def link_areas(self):
        """Every link, inward and outward, with its place."""
        objects, pages = self._objects()
        found = []
        for number, reference in enumerate(pages, 1):
            height = self.size(number)[1]
            for annotation in objects[reference].get("/Annots", []):
                annotation = objects[annotation] if isinstance(annotation, str) else annotation
                left, bottom, right, top = annotation["/Rect"]
                address, goal = annotation.get("/A", {}).get("/URI"), annotation.get("/Dest")
                name, place = (goal, None) if isinstance(goal, str) else (None, goal)
                found.append(Link(number, left, height - top, right, height - bottom,
                                  address and address.removeprefix("u:"), name and name.removeprefix("/"), place))
        return found

    def link_places(self):
        """Every inward link, with the page and the points from its top that it leads to."""
        objects, pages = self._objects()
        named = self.destinations()
        found = []
        for link in self.link_areas():
            if link.name is not None:
                found.append((link, named[link.name]))
            elif link.place is not None:
                number = pages.index(link.place[0]) + 1
                found.append((link, (number, self.size(number)[1] - link.place[3])))
        return found

    def fonts(self):
        lines = _run("pdffonts", self.path).decode().splitlines()[2:]
        return [Font(line[:36].strip(), line[37:54].strip(), *(line[at:at + 3] == "yes" for at in (72, 76, 80)))
                for line in lines]

    def destinations(self):
        """The named destinations: page, and points from its top."""
        lines = _run("pdfinfo", "-dests", self.path).decode().splitlines()[1:]
        found = (re.match(r' *(\d+) \[ XYZ +\S+ +(\S+) .*\] "(.*)"', line) for line in lines)
        return {place.group(3): (int(place.group(1)), self.size(int(place.group(1)))[1] - float(place.group(2)))
                for place in found}

    def uncompressed(self):
        """The whole file as text that can be searched."""
        return _run("qpdf", "--qdf", "--object-streams=disable", self.path, "-").decode("latin-1")

    def picture(self, page=1, dpi=72):
        """The page as pixels; at 72 dpi one pixel is one point."""
        return read_ppm(self._told("pdftoppm", "-r", str(dpi), "-f", str(page), "-l", str(page), self.path))

    def ppm(self, page, scale_to):
        """A page as the bytes of a PPM file of the size given."""
        return _run("pdftoppm", "-scale-to-x", str(scale_to[0]), "-scale-to-y", str(scale_to[1]),
                    "-f", str(page), "-l", str(page), self.path)

    def second_ppm(self, page, scale_to):
        """The same, drawn by mupdf."""
        return _run("mutool", "draw", "-q", "-w", str(scale_to[0]), "-h", str(scale_to[1]), "-f", "-F", "ppm", "-o", "-",
                    self.path, str(page))

    def second_picture(self, page=1, dpi=72):
        """The same, drawn by mupdf."""
        return read_ppm(self._told("mutool", "draw", "-q", "-r", str(dpi), "-F", "ppm", "-o", "-", self.path, str(page)))


def read_ppm(data):
    """A binary PPM with one byte per sample."""
    found = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", data)
    if not found:
        raise AssertionError("not a picture of the expected form")
    return Picture(int(found.group(1)), int(found.group(2)), data[found.end():])


def near(colour, expected, tolerance=12):
    """True when every channel of a sampled colour lies close to the expected one."""
    return all(abs(one - other) <= tolerance for one, other in zip(colour, expected))
