"""Runs the program web2pdf-batch, with the finished tool or a stand-in, and judges what it leaves.

    class SomeTests(BatchTestCase):
        def test_something(self):
            self.archive("a/b", fake_tool.CONVERTS)
            self.run_batch("in")
            self.assert_converted("a/b.pdf")

Archives are made in the folder "in", PDFs go to "out"; both are below the working folder. Every run is checked for
its exit status, for text that is harmless to a terminal, for results of the documented form, and for processes and
temporary files, of which none may be left.
"""

import base64
import hashlib
import json
import os
import pathlib
import shutil
import signal
import subprocess

import fake_tool
import processes
from tool import NOBODY, ToolTestCase

PROGRAM = os.environ["WEB2PDF_BATCH"]
SUCCESS, FAILURE, BAD_USAGE, INTERRUPTED = 0, 1, 2, 130
BATCH_DOMAIN = "org.quillvane.quillvane.web2pdf-batch"
ENDED, TIMED_OUT, NO_PDF, MISSING, FILE, NOT_STARTED = range(1, 7)
# Controls, and characters that turn a line around.
HARMFUL = "[\x00-\x1f\x7f-\x9f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069]"
FIELDS = ["archive", "sha256", "mode", "wishes", "outcome", "pdf", "pdf_sha256", "pdf_size", "pages",
          "milliseconds", "attempts", "missing_count", "missing", "finished"]
ERROR_FIELDS = ["error_domain", "error_code", "error"]
BYTES_FIELDS = ["archive_bytes", "pdf_bytes", "text", "text_bytes"]


class Run:
    def __init__(self, status, output, errors):
        self.status = status
        self.output = output
        self.errors = errors

    @property
    def lines(self):
        return self.output.split("\n")[:-1]

    @property
    def summary(self):
        """The counts of the last line: "3 archives: 2 converted, 1 failed; 1 s, 5.0 a second"."""
        total, _, rest = self.lines[-1].partition(": ")
        counts = {"total": int(total.split()[0])}
        for part in rest.partition(";")[0].split(", "):
            number, _, what = part.partition(" ")
            if number.isdigit():
                counts[what] = int(number)
        return counts


def sha256(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


class BatchTestCase(ToolTestCase):
    real = False        # whether the finished tool converts

    def setUp(self):
        super().setUp()
        self.addCleanup(self._end_what_is_left)
        self.sources = self.folder / "in"
        self.sources.mkdir()
        self.output = self.folder / "out"
        self.calls = self.folder / "calls"
        self.fake = self.script("fake-web2pdf", fake_tool.SCRIPT)
        if self.real:
            self.set_preferences({"WebToolExtraLoadingTime": 0})

    @staticmethod
    def _end_what_is_left():
        """So that one failure is not that of all tests behind it."""
        for number in processes.descendants():
            os.kill(number, signal.SIGKILL)
        processes.wait_until_none(5)

    def environment(self, **more):
        return super().environment(**{"CALLS": self.calls, **more})

    # What there is to convert

    def archive(self, name, contents=fake_tool.CONVERTS, folder="in"):
        """A file with what the stand-in does, different from all others; or an archive."""
        path = os.path.join(os.fsencode(self.folder), os.fsencode(folder), os.fsencode(name) + b".webarchive")
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            if isinstance(contents, str):
                file.write(contents.encode() + b"\n# " + os.fsencode(name).replace(b"\n", b" ") + b"\n")
            else:
                file.write(contents.bytes())
        return pathlib.Path(os.fsdecode(path))

    def archives(self, *names, **options):
        for name in names:
            self.archive(name, **options)

    # Running

    def command(self, *arguments, output="out", tool=None):
        chosen = [] if output is None else ["-o", output]
        used = tool or (os.environ["WEB2PDF_TOOL"] if self.real else self.fake)
        return [PROGRAM, *chosen, "--tool", used, *map(os.fspath, map(self._argument, arguments))]

    @staticmethod
    def _argument(value):
        return str(value) if isinstance(value, int) else value

    def start_batch(self, *arguments, output="out", tool=None, environment=None, **options):
        """Starts the program; the caller waits for it."""
        settings = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options}
        child = subprocess.Popen(self.command(*arguments, output=output, tool=tool), cwd=self.folder,
                                 env=environment or self.environment(), start_new_session=True, **settings)
        self.addCleanup(self._end, child)
        return child

    @staticmethod
    def _end(child):
        if child.poll() is None:
            child.kill()
            child.wait()
        for stream in (child.stdin, child.stdout, child.stderr):
            if stream:
                stream.close()

    def run_batch(self, *arguments, status=SUCCESS, given=None, timeout=90, **options):
        """Runs the program to its end, with this text or these bytes to read."""
        if given is not None:
            options["stdin"] = subprocess.PIPE
        child = self.start_batch(*arguments, **options)
        return self.end_of(child, status, given, timeout)

    def end_of(self, child, status=SUCCESS, given=None, timeout=90, fresh_files=False):
        """Waits for its end, and judges what every run has to keep to."""
        try:
            output, errors = child.communicate(given if given is None or isinstance(given, bytes) else given.encode(),
                                               timeout=timeout)
        except subprocess.TimeoutExpired:
            child.kill()
            child.communicate()
            self.fail(f"no end within {timeout} s")
        output, errors = (output or b"").decode(), (errors or b"").decode()
        self.assertEqual(child.returncode, status, errors + output)
        self.assert_harmless(output)
        self.assertRegex(errors, "^(web2pdf-batch: [^\n]+\n)?$")
        self.assert_harmless(errors)
        if status == SUCCESS:
            self.assertEqual(errors, "")
        self.assert_nothing_left(fresh_files)
        self.assert_results_keep_their_form()
        return Run(child.returncode, output, errors)

    def assert_harmless(self, text):
        for line in text.split("\n"):
            self.assertNotRegex(line, HARMFUL)

    def assert_nothing_left(self, fresh_files=False):   # pylint: disable=arguments-differ
        self._takes_fresh_files = fresh_files
        super().assert_nothing_left()

    def strays(self):
        if self._takes_fresh_files:
            return []
        return [path for path in self.output.rglob("*") if path.name.startswith((".web2pdf-batch-", ".new-"))]

    def assert_refused(self, text, *arguments, **options):
        """Wrong usage, which is told, and nothing is done."""
        before = sorted(self.output.rglob("*"))
        run = self.run_batch(*arguments, status=BAD_USAGE, **options)
        self.assertEqual(run.output, "")
        self.assertIn(text, run.errors)
        self.assertEqual(self.called(), 0)
        self.assertEqual(sorted(self.output.rglob("*")), before)
        return run

    def called(self):
        """How often the stand-in has been called since this was asked last."""
        if not self.calls.exists():
            return 0
        count = len(self.calls.read_text(encoding="ascii").splitlines())
        self.calls.unlink()
        return count

    def as_nobody(self):
        if os.getuid() != 0:
            return {}
        copy = self.folder / "web2pdf-batch"
        shutil.copy(PROGRAM, copy)
        self.output.chmod(0o777)
        self.calls.touch()
        self.calls.chmod(0o666)
        return {"executable": str(copy), "user": NOBODY, "group": NOBODY, "extra_groups": []}

    # What became of it

    def lines_of(self, name="web2pdf-batch.jsonl"):
        return [json.loads(line) for line in (self.output / name).read_text(encoding="ascii").splitlines()]

    def records(self):
        """The last record of each PDF, by its path; lines that are none are passed by."""
        found = {}
        for path in sorted(filter(pathlib.Path.is_file, self.output.glob("web2pdf-batch*.jsonl"))):
            for line in path.read_text(encoding="ascii", errors="replace").splitlines():
                try:
                    record = json.loads(line)
                except (ValueError, RecursionError):
                    continue
                if isinstance(record, dict) and "outcome" in record:
                    found[self.path_in(record, "pdf")] = record
        return found

    @staticmethod
    def path_in(record, name):
        if name + "_bytes" in record:
            return os.fsdecode(base64.b64decode(record[name + "_bytes"], validate=True))
        return record[name]

    def assert_results_keep_their_form(self):
        for pdf, record in self.records().items():
            self.assertIn(record["outcome"], ("converted", "failed"))
            fields = [name for name in record if name not in BYTES_FIELDS]
            if record["outcome"] == "failed":
                self.assertEqual([name for name in fields if name in ERROR_FIELDS], ERROR_FIELDS)
                fields = [name for name in fields if name not in ERROR_FIELDS]
                self.assertEqual((record["pdf_sha256"], record["pdf_size"], record["pages"]), ("", 0, None))
            self.assertEqual(fields, FIELDS, pdf)
            self.assertRegex(record["finished"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$")

    def pdfs(self):
        """The paths of all files that are no results, below the output folder."""
        return sorted(str(path.relative_to(self.output)) for path in self.output.rglob("*")
                      if not path.is_dir() and not path.name.startswith(("web2pdf-batch", "manifest")))

    def assert_converted(self, *names):
        """These PDFs, and no others, are there, as the results tell."""
        converted = {pdf: record for pdf, record in self.records().items() if record["outcome"] == "converted"}
        self.assertEqual(sorted(converted), sorted(names))
        for pdf, record in converted.items():
            path = self.output / pdf
            self.assertEqual((record["pdf_sha256"], record["pdf_size"]), (sha256(path), path.stat().st_size), pdf)
        self.assertEqual(self.pdfs(), sorted(names))

    def assert_failed(self, pdf, code, domain=BATCH_DOMAIN, attempts=1):
        record = self.records()[pdf]
        self.assertEqual((record["outcome"], record.get("error_domain"), record.get("error_code"), record["attempts"]),
                         ("failed", domain, code, attempts), record)
        return record

    def wait_for(self, condition, seconds=30):
        self.assertIsNotNone(processes.wait_for(condition, seconds), "it did not come to that")
