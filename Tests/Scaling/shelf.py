"""A shelf of archives for tests of schedulers, and a tool that only pretends: what is tested is who calls it, and when."""

import contextlib
import json
import os
import pathlib
import shutil
import signal
import subprocess

import processes
from folders import FolderTestCase
from webarchive import Archive, Resource

SCRIPTS = pathlib.Path(__file__).resolve().parent.parent.parent / "Documentation" / "scaling"

# It takes a while, fails for what is called spoiled, and takes all the memory that it gets for what is called greedy.
TOOL = """#!/bin/sh
sleep {seconds}
case $2 in *greedy*) exec /usr/bin/python3 -c 'import time; all = bytearray(1 << 30); time.sleep(60)' ;; esac
answer() {{
    printf '%s\\n' '<?xml version="1.0" encoding="UTF-8"?>' '<plist version="1.0"><dict>' "$@" '</dict></plist>'
}}
case $2 in
    *spoiled*) answer '<key>succeeded</key><false/>' '<key>errorString</key><string>Spoiled.</string>' ;;
    *)
        printf '%%PDF-1.7\\n%%%%EOF\\n' >"$3"
        answer '<key>succeeded</key><true/>' "<key>path</key><string>$3</string>"
        ;;
esac
"""


class ShelfTestCase(FolderTestCase):
    """Each test has a folder with a shelf and a place for PDFs, and programs beside each other in a folder of its own."""

    def setUp(self):
        super().setUp()
        # A shell would stumble over these names, if they got to one without being quoted.
        self.shelf = self.folder / "it's a shelf"
        self.pdfs = self.folder / "the $(PDFs)"
        self.programs = self.folder / "programs"
        self.programs.mkdir()
        self.pdfs.mkdir()
        self.pdfs.chmod(0o777)
        # The tool is looked for beside the program, so that is copied and not linked.
        shutil.copy(os.environ["WEB2PDF_BATCH"], self.programs / "web2pdf-batch")
        self.path = f"{self.programs}:/usr/local/bin:/usr/bin:/bin"

    def tool_takes(self, seconds):
        tool = self.programs / "web2pdf"
        tool.write_text(TOOL.format(seconds=seconds), encoding="utf-8")
        tool.chmod(0o755)

    def fill(self, count, *others):
        """The shelf with so many good archives, and with others of these names."""
        for name in [f"page-{number}" for number in range(count)] + list(others):
            path = self.shelf / "some folder" / f"{name}.webarchive"
            path.parent.mkdir(parents=True, exist_ok=True)
            Archive(Resource("http://site.example/", name)).write(path)

    # What there is

    def written(self):
        return {path.stem for path in self.pdfs.rglob("*.pdf")}

    def assert_report_names(self, count):
        """So many archives, of whatever shards."""
        report = (self.pdfs / "report.html").read_text(encoding="utf-8")
        self.assertEqual(len({name for name in self.written() if f"{name}.pdf" in report}), count)

    def attempts(self):
        """How often each archive was tried, by what the shards have written down."""
        counts = {}
        for results in self.pdfs.glob("web2pdf-batch*.jsonl"):
            for line in results.read_text(encoding="utf-8").splitlines():
                if name := pathlib.PurePath(json.loads(line).get("pdf", "")).stem:
                    counts[name] = counts.get(name, 0) + 1
        return counts

    def wait_for(self, condition, seconds=60):
        self.assertIsNotNone(processes.wait_for(condition, seconds), "waited in vain")

    def batches(self):
        """The programs of this test that run at the moment."""
        return [number for number, name in processes.descendants().items() if name == "web2pdf-batch"]


def kill(*numbers):
    """Processes, of which some may end with the others."""
    for number in numbers:
        with contextlib.suppress(ProcessLookupError):
            os.kill(number, signal.SIGKILL)


def run(*command, **options):
    return subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          timeout=120, check=False, **options)
