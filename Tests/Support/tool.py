"""Runs the tool as a child process and judges what it leaves: answer, log, processes, files.

    class SomeTests(ToolTestCase):
        def test_something(self):
            run = self.convert(html_archive("<p>Text</p>"))
            self.assertIn("Text", run.pdf.text())

Every run has folders of its own (home, settings, temporary files) and is checked for exit status 0, log
lines of the documented form, no process and no temporary file left. A tool that is built with sanitizers
writes their reports into a folder of the test, which must be empty at its end.
"""

import functools
import os
import plistlib
import re
import shutil
import signal
import subprocess
import uuid

import confinement
import engine
import processes
from folders import FolderTestCase
from keyedarchive import read_error
from pdf import PDF

TOOL_DOMAIN = "org.quillvane.quillvane.web2pdf"
SETTINGS_DOMAIN = "org.quillvane.Quillvane"
NOBODY = 65534
LINE = re.compile(r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \[org\.quillvane\.web2pdf\] (.*)$")
# What the platform itself has to say: of the engine's start, of settings that cannot be read.
NOTE = re.compile(r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} web2pdf\[\d+:\d+\] (.*)$")
CONTINUATION = re.compile(r"^(    .*|[)}].*)$")
AREA = "[LogWeb2PDF] "
SANITIZERS = ("ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS")


def tool_path():
    return os.environ["WEB2PDF_TOOL"]


class Log:
    """The lines of the standard error stream."""

    def __init__(self, text):
        self.text = text
        self.entries = []
        self.notes = []
        self.strangers = []
        for line in text.splitlines():
            start = LINE.match(line)
            if start:
                self.entries.append(start.group(1))
            elif self.entries and CONTINUATION.match(line):
                self.entries[-1] += "\n" + line
            elif note := NOTE.match(line):
                self.notes.append(note.group(1))
            else:
                self.strangers.append(line)

    @property
    def messages(self):
        """The tool's own lines, without their area."""
        return [entry[len(AREA):] for entry in self.entries if entry.startswith(AREA)]

    @property
    def unnamed(self):
        """The lines without an area, each as it was before a long one was cut into pieces."""
        return "".join(entry[1:] for entry in self.entries if entry.startswith(" "))


class Run:
    """One finished run."""

    def __init__(self, folder, output, answer, log, status):
        self.folder = folder
        self.output = output
        self.answer = answer
        self.log = log
        self.status = status

    @property
    def result(self):
        return read_result(self.answer)

    @functools.cached_property
    def pdf(self):
        """The file as it is when it is asked for first."""
        return PDF(self.output)

    @property
    def error(self):
        return read_error(self.result["errorData"])


def read_result(data):
    """The result dictionary, which must be an XML property list and nothing but one."""
    if not data.startswith(b"<?xml version=\"1.0\" encoding=\"UTF-8\"?>"):
        raise AssertionError(f"the answer is no XML property list: {data[:200]!r}")
    return plistlib.loads(data, fmt=plistlib.FMT_XML)


class ToolTestCase(FolderTestCase):
    longMessage = True
    maxDiff = None
    helpers = ()    # processes of the tests' own, which may run on

    def setUp(self):
        super().setUp()
        self.marker = str(uuid.uuid4())
        for name, mode in (("home", 0o755), ("tmp", 0o1777), ("config", 0o755), ("out", 0o755),
                           ("reports", 0o1777)):
            (self.folder / name).mkdir()
            (self.folder / name).chmod(mode)
        self.addCleanup(self.assert_no_reports)

    # What a run is given

    def environment(self, **more):
        settled = {
            "PATH": "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin",
            "LANG": "C.UTF-8",
            "TZ": "UTC",
            "HOME": str(self.folder / "home"),
            "TMPDIR": str(self.folder / "tmp"),
            "XDG_CONFIG_HOME": str(self.folder / "config"),
            "XDG_CONFIG_DIRS": str(self.folder / "config-of-the-machine"),
            "PAPERSIZE": "letter",
            "WEB2PDF_TEST_RUN": self.marker,
        }
        inherited = {name: os.environ[name] for name in ("LLVM_PROFILE_FILE", "WEB2PDF_ENGINE") if name in os.environ}
        everything = {**inherited, **self._sanitizer_options(), **settled, **more}
        return {name: str(value) for name, value in everything.items() if value is not None}

    def _sanitizer_options(self):
        """Reports go to files: a process may have no standard error any more, or be killed in the end."""
        own = f"log_path={self.folder / 'reports' / 'report'}"
        return {name: ":".join(filter(None, (os.environ.get(name), own))) for name in SANITIZERS}

    def set_preferences(self, values, domain=SETTINGS_DOMAIN, root="config", binary=False):
        folder = self.folder / root / "preferences"
        folder.mkdir(parents=True, exist_ok=True)
        form = plistlib.FMT_BINARY if binary else plistlib.FMT_XML
        (folder / f"{domain}.plist").write_bytes(plistlib.dumps(values, fmt=form))

    def archive_file(self, archive, name="page.webarchive", xml=False):
        path = self.folder / name
        path.write_bytes(archive if isinstance(archive, bytes) else archive.bytes(xml))
        return str(path)

    # Running

    def start(self, *arguments, environment=None, **options):
        """Starts the tool; the caller waits for it."""
        child = subprocess.Popen([tool_path(), *map(str, arguments)], stdin=subprocess.DEVNULL,
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                 env=environment or self.environment(), cwd=self.folder,
                                 start_new_session=True, **options)
        self.addCleanup(self._stop, child)
        return child

    def start_and_show(self, archive, seconds, **options):
        """Starts the tool in screen mode; when this returns, the page has loaded and is shown for these seconds."""
        self.set_preferences({"WebToolExtraLoadingTime": seconds})
        child = self.start("screen", self.archive_file(archive), self.folder / "out" / "page.pdf", "uid", **options)
        log = b""
        while b"Extra wait in loop" not in log:
            line = child.stderr.readline()
            self.assertTrue(line, f"the tool ended before the page was shown; log:\n{log.decode()}")
            log += line
        return child

    @staticmethod
    def _stop(child):
        if child.poll() is None:
            child.kill()
            child.wait()
        child.stdout.close()
        child.stderr.close()

    def run_tool(self, *arguments, output=None, environment=None, timeout=90, seconds_to_end=0, **options):
        """Runs the tool to its end and asserts what holds for every run.

        The engine may end seconds_to_end later: only a tool that is cut off does not wait for it.
        """
        child = self.start(*arguments, environment=environment, **options)
        try:
            answer, errors = child.communicate(timeout=timeout)
        except subprocess.TimeoutExpired:
            child.kill()
            answer, errors = child.communicate()
            self.fail(f"no answer within {timeout} s; log:\n{errors.decode(errors='replace')}")
        log = Log(errors.decode())
        self.assertEqual(child.returncode, 0, f"exit status; log:\n{log.text}")
        self.assertEqual(log.strangers, [], "lines on standard error that are no log lines")
        self.assert_nothing_left(seconds_to_end)
        return Run(self.folder, output, answer, log, child.returncode)

    def convert(self, archive, mode="screen", name="page.pdf", expect_success=True, quick=True,
                xml=False, environment=None, uid="record-1", **options):
        """Converts an archive (an Archive, or the bytes of the file) into out/<name>."""
        if quick:
            self.set_preferences({"WebToolExtraLoadingTime": 0})
        output = str(self.folder / "out" / name)
        run = self.run_tool(mode, self.archive_file(archive, xml=xml), output, uid, output=output,
                            environment=environment, **options)
        if expect_success:
            self.assert_success(run)
        return run

    # What is expected

    def assert_success(self, run):
        self.assert_answers_success(run)
        run.pdf.assert_valid()

    def assert_answers_success(self, run):
        """For files that are not the tool's own and stay as they are, whatever they are."""
        result = run.result
        told = ""
        if "errorData" in result:
            error = read_error(result["errorData"])
            told = f"{error.domain} {error.code} {error.user_info}\n"
        self.assertEqual(result, {"succeeded": True, "path": run.output}, told + run.log.text)
        self.assertTrue(os.path.isfile(run.output))

    def assert_failure(self, run, domain, code, user_info=None, text=None):
        """The failed result, exact; user_info and text are compared when they are given."""
        result = run.result
        self.assertEqual(sorted(result), ["errorData", "errorString", "succeeded"], run.log.text)
        self.assertIs(result["succeeded"], False)
        error = run.error
        self.assertEqual((error.domain, error.code), (domain, code), run.log.text)
        if user_info is not None:
            self.assertEqual(error.user_info, user_info)
        if text is not None:
            self.assertEqual(result["errorString"], text)
        return error

    def assert_nothing_left(self, seconds=5):
        left = processes.wait_until_none(seconds, besides=self.helpers)
        self.assertEqual(left, {}, "processes outlived the tool")
        self.assertEqual(processes.carrying("WEB2PDF_TEST_RUN", self.marker), {}, "processes outlived the tool")
        processes.reap()
        for name in ("tmp", "home"):
            self.assertEqual(sorted(os.listdir(self.folder / name)), [], f"files left in {name}")
        self.assertEqual(self.strays(), [], "files left beside the output")

    def strays(self):
        """What is among the output and is none."""
        return [entry for entry in os.listdir(self.folder / "out")
                if entry.startswith(".") or not entry.endswith((".pdf", ".plist"))]

    def assert_no_reports(self):
        reports = [path.read_text(encoding="utf-8", errors="replace")
                   for path in sorted((self.folder / "reports").iterdir())]
        if reports:
            self.fail("reports of a sanitizer:\n" + "\n".join(reports))

    def as_nobody(self):
        """Options that run the tool without the right to everything, also where the tests run as root.

        The tool is copied, since the folder in which it was built may be closed to others.
        """
        if os.getuid() != 0:
            return {}
        copy = self.folder / "web2pdf"
        shutil.copy(tool_path(), copy)
        copy.chmod(0o755)
        return {"executable": str(copy), "user": NOBODY, "group": NOBODY, "extra_groups": []}

    def script(self, name, text):
        """An executable script that anybody may run."""
        path = self.folder / name
        path.write_text(text, encoding="utf-8")
        path.chmod(0o755)
        return str(path)

    def writing_engine(self, text):
        """Options for a script in the engine's place that writes files, which only a kernel without rules lets it."""
        # What an engine is, is told by its name.
        return {"environment": self.environment(WEB2PDF_ENGINE=self.script(os.path.basename(engine.CHOSEN), text)),
                "preexec_fn": confinement.refuse_landlock}


def stop_by(signal_number, child):
    """Sends a signal to the tool alone and waits for its end."""
    os.kill(child.pid, signal_number)
    child.communicate(timeout=30)
    return child.returncode


KILL, TERMINATE, INTERRUPT = signal.SIGKILL, signal.SIGTERM, signal.SIGINT
