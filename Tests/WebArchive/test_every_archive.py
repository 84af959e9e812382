"""The archives that the tool's tests have: every command takes what the tool takes, and refuses what it refuses."""

import importlib
import json
import os
import pathlib
import subprocess
import sys

from engine import DIES_AT_ONCE
from keyedarchive import read_error
from program import FAILURE, SUCCESS, ProgramTestCase
from tool import read_result, tool_path
from webarchive import malformed

TESTS = pathlib.Path(__file__).resolve().parent.parent
CORRUPT_FILE = ("NSCocoaErrorDomain", 259)


class EveryArchiveTestCase(ProgramTestCase):
    def archives_of(self, folder):
        """The archives of the pages in a folder of tests, by name."""
        sys.path[:0] = [str(TESTS / folder), str(TESTS / folder / "pages")]
        for module in sorted((TESTS / folder / "pages").glob("*.py")):
            for page in importlib.import_module(module.stem).PAGES:
                yield page.name, page.archive() if callable(page.archive) else page.archive

    def assert_taken(self, archive):
        """Every command takes it, and what is left out of it is told."""
        path, out = self.file(archive), self.folder / "out"
        verdict = json.loads(self.run_program("check", "--json", path).text)
        listed = json.loads(self.run_program("list", "--json", path).text)
        self.assertEqual(verdict["resources"], len(listed))
        missing = [problem for problem in verdict["problems"] if problem["lost"] != "field"]
        self.assertEqual(missing == [], len(listed) == self.count(archive), verdict["problems"])
        self.assertEqual(self.run_program("cat", path).output, archive.main.data)
        self.run_program("extract", "--force", path, out)
        self.assertTrue((out / "index.html").is_file())

    def count(self, archive):
        return 1 + len(archive.subresources) + sum(map(self.count, archive.frames))


class GalleryArchiveTests(EveryArchiveTestCase):
    def test_every_page_is_taken(self):
        for name, archive in self.archives_of("Gallery"):
            with self.subTest(name):
                self.assert_taken(archive)


class HostilePageTests(EveryArchiveTestCase):
    def test_every_page_is_taken(self):
        for name, archive in self.archives_of("Hostile"):
            with self.subTest(name):
                self.assert_taken(archive)


class VerdictTests(EveryArchiveTestCase):
    def assert_agrees(self, data):
        """The tool is given an engine that dies: it looks at the archive before it waits for that."""
        path = self.file(data)
        engine = self.folder / "engine"
        engine.write_text(DIES_AT_ONCE, encoding="utf-8")
        engine.chmod(0o755)
        environment = {**os.environ, "WEB2PDF_ENGINE": str(engine), "HOME": str(self.folder),
                       "XDG_CONFIG_HOME": str(self.folder)}
        answer = subprocess.run([tool_path(), "screen", path, self.folder / "page.pdf", "uid"], env=environment,
                                capture_output=True, timeout=60, check=True).stdout
        error = read_error(read_result(answer)["errorData"])
        is_archive = (error.domain, error.code) != CORRUPT_FILE
        verdict = self.run_program("check", "--json", path, status=SUCCESS if is_archive else FAILURE).text
        self.assertEqual(json.loads(verdict)["isArchive"], is_archive)
        return is_archive

    def test_malformed_archives(self):
        for name, data in malformed().items():
            with self.subTest(name):
                self.assertFalse(self.assert_agrees(data))

    def test_mutated_archives(self):
        sys.path.insert(0, str(TESTS / "Stress"))
        mutated_archive = importlib.import_module("mutations").mutated_archive
        verdicts = set()
        for seed in range(24):
            with self.subTest(seed):
                verdicts.add(self.assert_agrees(mutated_archive(seed)[1]))
        self.assertEqual(verdicts, {False, True})
