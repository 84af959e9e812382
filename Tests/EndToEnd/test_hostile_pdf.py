"""Archives whose main resource is a PDF file that is hostile or damaged: the tool answers, in bounds, and nothing is
lost of what readers might make of the file."""

import pathlib
import tempfile

import mutated_pdfs
from hostile_pdfs import CASES, TRUNCATED
from stored_pdfs import hand_on, is_sanitized
from tool import ToolTestCase, tool_path

ENDED = "finish with error"
TOO_MUCH_MEMORY = r"PDF needed more than \d+ MiB of memory\n"
CRASH = r"looking at a stored PDF was ended by signal 11 \(Segmentation fault\)\n"

# Files of which it is known how they end, and what the log says then.
EXPECTED = {
    "a cross-reference stream of gigabytes": ("as it is", TOO_MUCH_MEMORY),
    "an object stream of gigabytes": ("as it is", TOO_MUCH_MEMORY),
    "rows of gigabytes": ("stamped", ENDED),
    "a cross-reference stream with rows of gigabytes": ("as it is", TOO_MUCH_MEMORY),
    "contents of gigabytes": ("stamped", ENDED),
    "a page tree that is deep": ("as it is", CRASH),
    "a password": ("as it is", ENDED),
    "a length that is too large": ("stamped", ENDED),
    "outlines in a circle": ("stamped", ENDED),
    "document information that is text": ("stamped", ENDED),
    "JPEG 2000 garbage": ("stamped", ENDED),
    "a head and garbage": ("refused", ENDED),
}


class HostileTestCase(ToolTestCase):
    def judge(self, cases):
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        for name, make in cases.items():
            kind, remark = EXPECTED.get(name, (None, ENDED))
            # Programs that are built with a sanitizer have no limit of memory, and would take all that there is.
            if is_sanitized() and remark == TOO_MUCH_MEMORY:
                continue
            with self.subTest(name), tempfile.TemporaryDirectory(dir=self.folder) as folder:
                outcome = hand_on(tool_path(), make(), folder, self.environment())
                self.assertEqual(outcome.faults, [], outcome.log)
                self.assertIn(outcome.kind, (kind,) if kind else ("stamped", "as it is", "refused"), outcome.log)
                self.assertRegex(outcome.log, remark)
                self.assert_nothing_left(seconds=0)


class HostilePDFTests(HostileTestCase):
    def test_every_file_gives_an_answer(self):
        self.judge(CASES)


class TruncatedPDFTests(HostileTestCase):
    def test_every_part_gives_an_answer(self):
        self.judge(TRUNCATED)


class MutatedPDFTests(ToolTestCase):
    def test_damage_at_random(self):
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        keep = pathlib.Path(self.folder / "broken")
        total = mutated_pdfs.survey(tool_path(), 60, 1, 2, self.environment(), keep)
        self.assertEqual(total.faults, {}, f"{total}\n" + "\n".join(log.read_text() for log in keep.glob("*.log")))
        self.assertGreater(min(total.kinds[kind] for kind in ("stamped", "as it is", "refused")), 0, total)
        self.assert_nothing_left(seconds=0)
