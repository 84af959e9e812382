"""The gallery as tests: each page in both modes, one class of tests for each module in pages/.

With WEB2PDF_GALLERY naming a folder, each test leaves its verdict and its pictures there, for sheet.py.
"""

import functools
import importlib
import json
import os
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent / "pages"))

from judge import Sight, judge
from pdfjs import PDFJS
from tool import ToolTestCase
from witness import witness

GROUPS = sorted(file.stem for file in (pathlib.Path(__file__).parent / "pages").glob("*.py"))


class GalleryTestCase(ToolTestCase):
    third_reader = None

    def look_at(self, group, page, mode):
        notes = self.folder / "witness"
        notes.mkdir()
        notes.chmod(0o777)
        target = os.environ.get("WEB2PDF_GALLERY")
        # A print is not compared with the picture of the page, which the contact sheet alone shows beside it.
        text = witness(notes, takes_picture=bool(target) or mode == "screen")
        run = self.convert(page.archive, mode=mode, **self.writing_engine(text))
        third = self.third_reader and functools.partial(self.third_reader.picture, run.output)
        verdict = judge(page, mode, run.pdf, Sight(notes), illustrated=bool(target), third_reader=third)
        if target:
            self.keep(target, group, page, verdict)
        self.assertEqual(verdict.problems, [], page.trouble)

    @staticmethod
    def keep(target, group, page, verdict):
        folder = pathlib.Path(target) / group
        folder.mkdir(parents=True, exist_ok=True)
        name = f"{page.name}-{verdict.mode}"
        pictures = {}
        for kind, picture in verdict.pictures.items():
            sheets = picture if isinstance(picture, list) else [picture] if picture else []
            pictures[kind] = [f"{name}-{kind}{number}.png" for number in range(len(sheets))]
            for file, sheet in zip(pictures[kind], sheets):
                sheet.save(folder / file)
        reasons = {"screen": page.allowance_reason or page.pictures_differ, "print": page.shifts_words}
        record = {"group": group, "name": page.name, "trouble": page.trouble, "pictures": pictures,
                  "reason": reasons[verdict.mode] or page.readers_reason,
                  **verdict.record()}
        (folder / f"{name}.json").write_text(json.dumps(record), encoding="utf-8")


class ThreeReadersTestCase(GalleryTestCase):
    """Has pdf.js draw each page, too, which takes long for a large one."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.third_reader = PDFJS()
        cls.helpers = (cls.third_reader.process,)
        cls.addClassCleanup(cls.third_reader.close)


def _tests_of(group):
    def test(page, mode):
        return lambda self: self.look_at(group, page, mode)
    return {f"test_{re.sub(r'[^a-z0-9]', '_', page.name)}_{mode}": test(page, mode)
            for page in importlib.import_module(group).PAGES for mode in page.modes}


for _group in GROUPS:
    _case = ThreeReadersTestCase if _group == "readers" else GalleryTestCase
    globals()[_group] = type(_group, (_case,), _tests_of(_group))
