"""Pages that take all the memory that they can get."""

import unittest

import images
from pages import SITE, acting, page
from tool import ToolTestCase
from webarchive import Resource

LIMIT = 300    # MiB
ERROR = f"The page needs more memory than the web engine may use ({LIMIT} MiB)."

HOARD = "const all = []; for (;;) all.push(new Uint8Array(1 << 20).fill(1));"
CANVASES = """
const all = [];
setInterval(() => {
    const canvas = document.createElement("canvas");
    canvas.width = canvas.height = 2048;
    const context = canvas.getContext("2d");
    context.fillRect(0, 0, 2048, 2048);
    context.getImageData(0, 0, 1, 1);
    all.push(canvas);
}, 0)
"""


class BombTests(ToolTestCase):
    def assert_bounded(self, archive, mode="screen"):
        self.set_preferences({"WebToolExtraLoadingTime": 6})
        run = self.convert(archive, mode=mode, expect_success=False, quick=False,
                           environment=self.environment(WEB2PDF_MEMORY_LIMIT=LIMIT))
        self.assert_failure(run, "NSPOSIXErrorDomain", 12, {"NSLocalizedDescription": ERROR}, ERROR)

    def test_script_that_fills_arrays_while_it_loads(self):
        self.assert_bounded(acting(HOARD))

    def test_script_that_fills_arrays_afterwards(self):
        self.assert_bounded(acting(f"setTimeout(() => {{ {HOARD} }}, 500)"), mode="print")

    def test_text_that_doubles(self):
        self.assert_bounded(acting("const all = []; let text = 'x'.repeat(1 << 20);"
                                   "for (let i = 0; ; ++i) all.push((text + i).split('').join(' '))"))

    def test_canvases(self):
        self.assert_bounded(acting(CANVASES))

    def test_huge_images(self):
        addresses = [f"{SITE}{number}.png" for number in range(8)]
        body = "".join(f"<img src={address} width=3000 height=3000>" for address in addresses)
        archive = page(body)
        data = images.png(6000, 6000, (1, 2, 3))
        for address in addresses:
            archive.add(Resource(address, data, "image/png"))
        # They are decoded when they are drawn, and then what fails is the print.
        run = self.convert(archive, expect_success=False, environment=self.environment(WEB2PDF_MEMORY_LIMIT=LIMIT))
        self.assert_failure(run, "NSCocoaErrorDomain", 512)
        self.assertIn(ERROR, run.log.text)

    def test_elements(self):
        self.assert_bounded(acting("for (;;) document.body.append(...Array.from({length: 1000}, (_, i) => {"
                                   "const e = document.createElement('p'); e.textContent = 'text ' + i; return e; }))"))

    def test_nested_workers(self):
        worker = SITE + "worker.js"
        script = f"new Worker({worker!r}); const all = []; setInterval(() => all.push(new Uint8Array(1 << 22).fill(1)), 20)"
        archive = acting(f"new Worker({worker!r})")
        archive.add(Resource(worker, script.encode(), "text/javascript"))
        self.assert_bounded(archive)


class ToolTests(ToolTestCase):
    def test_tool_stays_small(self):
        self.set_preferences({"WebToolExtraLoadingTime": 6})
        child = self.start("screen", self.archive_file(acting(HOARD)), self.folder / "out" / "page.pdf", "uid",
                           environment=self.environment(WEB2PDF_MEMORY_LIMIT=LIMIT))
        largest = 0
        while child.poll() is None:
            with open(f"/proc/{child.pid}/status", encoding="utf-8") as file:
                lines = [line.split() for line in file if line.startswith("VmHWM:")]
            largest = max([largest, *(int(line[1]) for line in lines)])
        self.assertGreater(largest, 0)
        self.assertLess(largest, 100 << 10, "KiB")
        child.communicate()
        self.assert_nothing_left()

    def test_limit_that_is_none_does_not_count(self):
        run = self.convert(page("<p>Text</p>"), environment=self.environment(WEB2PDF_MEMORY_LIMIT="300M"))
        self.assertIn("WEB2PDF_MEMORY_LIMIT is no positive number and does not count: 300M", run.log.notes)

    def test_ordinary_page_has_room(self):
        run = self.convert(page("<p>Text</p>"), environment=self.environment(WEB2PDF_MEMORY_LIMIT=LIMIT))
        self.assertIn("Text", run.pdf.text())


if __name__ == "__main__":
    unittest.main()
