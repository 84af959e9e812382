"""The commands that the README shows do what it says: all of them are run, here or where ELSEWHERE says."""

import pathlib
import re
import subprocess
import unittest

from pdf import PDF
from tool import ToolTestCase, tool_path

ROOT = pathlib.Path(__file__).resolve().parents[2]
# What is run by other tests, and by which.
ELSEWHERE = {
    "script/run": "script/clean-root",
    "script/test": "this very run",
    "script/packages": "script/packages --check, which installs what it made",
    "apt-get install": "script/packages --check",
    "cmake": "debian/rules, by way of script/packages",
    "journalctl": "EndToEnd.test_log, which reads the same fields from the journal's socket",
}


def blocks():
    """The indented blocks of code, each as its lines."""
    text = (ROOT / "README.md").read_text(encoding="utf-8")
    for block in re.findall(r"(?:(?<=\n\n)|(?<=\n\n\n))((?:    .*\n)+)", text):
        yield [line[4:] for line in block.splitlines()]


def is_elsewhere(line):
    return any(line.startswith(command) for command in ELSEWHERE)


def is_command(block):
    return not block[0].startswith("<") and block != ["web2pdf MODE ARCHIVE PDF UID"]


class ReadmeTests(ToolTestCase):
    def setUp(self):
        super().setUp()
        self.place = self.folder / "place"
        self.place.mkdir()
        self.set_preferences({"WebToolExtraLoadingTime": 0})

    def run_block(self, block):
        programs = pathlib.Path(tool_path()).parent
        environment = self.environment(PATH=f"{programs}:/usr/bin:/bin")
        done = subprocess.run(["bash", "-e", "-o", "pipefail", "-c", "\n".join(block)], cwd=self.place, env=environment,
                              capture_output=True, text=True, timeout=120, check=False)
        self.assertEqual(done.returncode, 0, "\n".join([*block, done.stdout, done.stderr]))
        return done.stdout

    def test_every_command_is_run(self):
        commands = [block for block in blocks() if is_command(block)]
        here = [block for block in commands if not any(map(is_elsewhere, block))]
        self.assertEqual([line for block in commands if block not in here for line in block if not is_elsewhere(line)], [])
        output = "\n".join(map(self.run_block, here))
        self.assert_nothing_left()

        self.assertIn("There is a PDF.", output)
        self.assertIn("1 archive: 1 converted", output)
        self.assertIn("text/html", output)
        for name in ("page.pdf", "tall.pdf", "pdfs/page.pdf"):
            with self.subTest(name):
                self.assertIn("A page of mine.", PDF(str(self.place / name)).text())

    def test_everything_elsewhere_is_shown(self):
        lines = [line for block in blocks() for line in block]
        for command in ELSEWHERE:
            self.assertTrue(any(line.startswith(command) for line in lines), command)

    def test_answer_is_the_one_shown(self):
        shown = next(block for block in blocks() if block[0].startswith("<key>succeeded"))
        self.run_block(["printf '<p>x' > page.html", "webarchive create page.html page.webarchive"])
        answer = self.run_block(["web2pdf print page.webarchive page.pdf 1 2>/dev/null"])
        lines = [line.strip() for line in answer.splitlines()]
        at = lines.index(shown[0])
        self.assertEqual(lines[at:at + len(shown)], shown)

    def test_documents_that_it_names_exist(self):
        text = (ROOT / "README.md").read_text(encoding="utf-8")
        for path in re.findall(r"\]\(([^)#]+)[^)]*\)", text):
            with self.subTest(path):
                self.assertTrue((ROOT / path).exists())


if __name__ == "__main__":
    unittest.main()
