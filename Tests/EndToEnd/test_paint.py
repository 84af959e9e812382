"""Pages whose paint costs the engine far more when it prints than on the screen."""

import unittest

from engine import CHOSEN, between
from pages import page
from tool import ToolTestCase

SHADED = "<p style='text-shadow:1px 1px 2px red'>Shaded</p>"

# Never answers the first prints: as many as there are engines that are to be too slow.
_SLOW = r"""
COUNT, FOLDER = %(count)d, %(folder)r


def take_note(call):
    if call.get("method") != "Page.printToPDF":
        return True
    tried = len(os.listdir(FOLDER))
    open(os.path.join(FOLDER, str(tried)), "w").close()
    return tried >= COUNT
"""


class PaintTests(ToolTestCase):
    def convert_slowly(self, body, count):
        tries = self.folder / "tries"
        tries.mkdir()
        tries.chmod(0o777)
        text = between(_SLOW % {"count": count, "folder": str(tries)}, CHOSEN)
        return self.convert(page(body), **self.writing_engine(text))

    def test_page_that_prints_too_slowly_is_printed_without_what_costs(self):
        run = self.convert_slowly(SHADED, 1)
        self.assertIn("Shaded", run.pdf.text())
        self.assertIn("printing takes too long: the page is printed without blurs, filters and masks", run.log.text)
        self.assertNotIn("without shadows", run.log.text)

    def test_page_that_still_prints_too_slowly_is_printed_without_shadows(self):
        run = self.convert_slowly(SHADED, 2)
        self.assertIn("Shaded", run.pdf.text())
        self.assertIn("printing takes too long: the page is printed without shadows", run.log.text)

    def test_underlined_texts_with_shadows_take_no_time(self):
        body = "<style>u{text-shadow:2px 2px 4px red}</style>" + "".join(f"<p><u>Shaded{n}</u></p>" for n in range(200))
        for mode in ("screen", "print"):
            with self.subTest(mode):
                run = self.convert(page(body), mode=mode)
                self.assertIn("Shaded199", run.pdf.text())
                self.assertNotIn("too long", run.log.text)


if __name__ == "__main__":
    unittest.main()
