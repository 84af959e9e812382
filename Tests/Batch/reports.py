"""Makes reports of made-up results, and uses them in the real engine by mouse and keyboard."""

import json
import os
import pathlib
import subprocess
import tempfile
import unittest

import hostile_pdfs
from browser import Browser

HEADINGS = ["Archive", "Outcome", "Missing", "Pages", "Size", "Time", "Attempts"]
KEYS = {"Enter": ("Enter", 13, "\r"), " ": ("Space", 32, " "), "Tab": ("Tab", 9, "")}

# Of every element that shows text of its own: how well it can be told from what is behind it.
CONTRASTS = """(() => {
    const canvas = new OffscreenCanvas(1, 1).getContext('2d', { willReadFrequently: true });
    const channels = (colour) => {
        canvas.clearRect(0, 0, 1, 1);
        canvas.fillStyle = colour;
        canvas.fillRect(0, 0, 1, 1);
        return [...canvas.getImageData(0, 0, 1, 1).data];
    };
    const light = (colour) => {
        const [r, g, b] = channels(colour).map((value) => value / 255)
            .map((value) => (value <= 0.04045 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4));
        return 0.2126 * r + 0.7152 * g + 0.0722 * b;
    };
    const behind = (element) => {
        for (; element; element = element.parentElement) {
            const colour = getComputedStyle(element).backgroundColor;
            if (channels(colour)[3] === 255) return colour;
        }
        return 'Canvas';
    };
    const ratio = (a, b) => {
        const [low, high] = [light(a), light(b)].sort((x, y) => x - y);
        return (high + 0.05) / (low + 0.05);
    };
    const result = [];
    for (const element of document.body.querySelectorAll('*')) {
        const style = getComputedStyle(element);
        const shows = [...element.childNodes].some((node) => node.nodeType === 3 && node.data.trim());
        if (element.closest('script, .unseen') || !element.checkVisibility()) continue;
        const name = `${element.tagName}.${element.className} ${element.textContent.trim().slice(0, 20)}`;
        if (shows) result.push([name, ratio(style.color, behind(element)), 4.5]);
        if (element.matches('input[type=search], fieldset span'))
            result.push([`border of ${name}`, ratio(style.borderTopColor, behind(element.parentElement)), 3]);
    }
    return result;
})()"""


def converted(archive, pdf, **more):
    return {"archive": archive, "outcome": "converted", "pdf": pdf, "pdf_size": 1000, "pages": 1, "milliseconds": 100,
            "attempts": 1, "missing_count": 0, "missing": [], "finished": "2026-11-23T10:05:00Z"} | more


def failed(archive, error="It is broken.", **more):
    return {"archive": archive, "outcome": "failed", "pdf": archive + ".pdf", "error_domain": "Some.Domain",
            "error_code": 7, "error": error, "milliseconds": 20, "attempts": 3, "missing_count": 0, "missing": [],
            "finished": "2026-11-23T10:06:00Z"} | more


class ReportTestCase(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.browser = cls.enterClassContext(Browser())

    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory(prefix="web2pdf-test-")))
        self.report = self.folder / "report.html"

    def pdf(self, name, data=None):
        """Makes a PDF below the output folder, whose name may be bytes."""
        path = os.path.join(os.fsencode(self.folder / "out"), os.fsencode(name))
        os.makedirs(os.path.dirname(path), exist_ok=True)
        pathlib.Path(os.fsdecode(path)).write_bytes(hostile_pdfs.plain() if data is None else data)

    def make(self, *records, status=0):
        (self.folder / "out").mkdir(exist_ok=True)
        (self.folder / "out" / "web2pdf-batch.jsonl").write_text("".join(json.dumps(record) + "\n" for record in records))
        done = subprocess.run([os.environ["WEB2PDF_BATCH"], "-o", self.folder / "out", "--report", self.report],
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=300)
        self.assertEqual((done.returncode, done.stdout), (status, b""), done.stderr)
        return done.stderr.decode()

    def show(self, *records):
        """The report of these results in the engine; it must ask for nothing, and complain of nothing."""
        self.make(*records)
        self.page = self.browser.open(self.report)
        self.assert_quiet()

    def assert_quiet(self):
        asked = [request["request"]["url"] for request in self.page.told("Network.requestWillBeSent")]
        self.assertEqual([address for address in asked if not address.startswith("data:image/jpeg")],
                         [self.report.as_uri()])
        self.assertEqual(self.page.complaints(), [])

    def some(self):
        self.show(
            converted("b.webarchive", "b.pdf", pages=10, pdf_size=2_000_000, milliseconds=3000),
            converted("news/a10.webarchive", "a10.pdf", pages=9, missing_count=3, attempts=2, missing=[
                {"kind": "image", "address": "https://site.example/Lost.png"},
                {"kind": "script", "address": "javascript:alert(1)"}]),
            converted("news/a9.webarchive", "a9.pdf", pages=None),
            failed("c.webarchive"))

    def evaluate(self, expression):
        return self.page.evaluate(expression)

    def names(self):
        """Of the archives that are shown, in their order."""
        names = self.evaluate("[...document.querySelectorAll('tbody tr')].filter(row => !row.closest('[hidden]'))"
                              ".map(row => row.cells[1].querySelector('b').textContent).join('\\n')")
        return names.split("\n") if names else []

    def column(self, index):
        """What its cells are sorted by, in the order of the rows."""
        return self.evaluate(f"[...document.querySelectorAll('tbody tr')].map(({{ cells: {{ {index}: cell }} }}) =>"
                             "cell.dataset.value ?? cell.querySelector('bdi, strong').textContent"
                             ".replace('.webarchive', ''))")

    def sorting(self):
        return self.evaluate("[...document.querySelectorAll('[aria-sort]')].map(th => [th.textContent, th.ariaSort])")

    def found(self):
        return self.evaluate("document.querySelector('[role=status]').textContent")

    def focused(self):
        return self.evaluate("document.activeElement.textContent.trim() || document.activeElement.id")

    def click(self, finder):
        """Clicks what an expression finds."""
        x, y = self.evaluate(f"(() => {{ const element = {finder}; element.scrollIntoView({{ block: 'center' }});"
                             "const box = element.getBoundingClientRect();"
                             "return [box.x + box.width / 2, box.y + box.height / 2]; })()")
        for kind in ("mousePressed", "mouseReleased"):
            self.page.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)

    def press(self, key):
        code, number, text = KEYS[key]
        self.page.call("Input.dispatchKeyEvent", type="keyDown", key=key, code=code, windowsVirtualKeyCode=number,
                       text=text)
        self.page.call("Input.dispatchKeyEvent", type="keyUp", key=key, code=code, windowsVirtualKeyCode=number)

    def search(self, text):
        self.evaluate("document.querySelector('input').select()")
        self.page.call("Input.insertText", text=text)

    def look(self, scheme="light", width=1280, media=""):
        self.page.call("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1, mobile=False)
        self.page.call("Emulation.setEmulatedMedia", media=media,
                       features=[{"name": "prefers-color-scheme", "value": scheme}])


def heading(name):
    return f"[...document.querySelectorAll('thead button')].find(button => button.textContent === '{name}')"


def choice(name):
    return f"[...document.querySelectorAll('fieldset label')].find(label => label.textContent.startsWith('{name}'))"
