"""Converts a hostile page and judges what comes of it: answer, time, memory, processes, calls, text."""

import os
import pathlib
import plistlib
import select
import shutil
import socket
import subprocess
import tempfile
import time
from dataclasses import dataclass, field

import processes
from entry import SECRET_TEXT
from keyedarchive import read_error
from pdf import PDF
from tool import SETTINGS_DOMAIN, TOOL_DOMAIN, read_result

SECONDS = 60        # that a conversion may take
MEGABYTES = 1024    # that all its processes together may hold
DEADLINE = 10       # seconds that one is given that would never end
DEADLINE_PASSED = ("NSURLErrorDomain", -1001)
MEMORY_EXCEEDED = (("NSPOSIXErrorDomain", 12), ("NSCocoaErrorDomain", 512))     # while it loads, and later


@dataclass
class Verdict:
    outcome: str = ""
    seconds: float = 0
    megabytes: float = 0
    problems: list = field(default_factory=list)


class Neighbour:
    """A service of this machine on which no page may call, by either protocol."""

    def __init__(self):
        self.stream = socket.create_server(("127.0.0.1", 0))
        self.port = self.stream.getsockname()[1]
        self.datagrams = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.datagrams.bind(("127.0.0.1", self.port))

    def was_called(self):
        return bool(select.select([self.stream, self.datagrams], [], [], 0)[0])

    def close(self):
        self.stream.close()
        self.datagrams.close()


def judge(page, tool):
    """Runs the tool on the page, in a folder of its own. The caller has adopted orphans, and has no other child."""
    folder = pathlib.Path(tempfile.mkdtemp(prefix="web2pdf-hostile-"))
    neighbour = Neighbour()
    try:
        folder.chmod(0o755)
        secret = folder / "secret.html"
        secret.write_text(f"<p>{SECRET_TEXT}</p>", encoding="utf-8")
        (folder / "page.webarchive").write_bytes(page.bytes(neighbour.port, str(secret)))
        verdict, answer = _convert(page, tool, folder)
        if answer is not None:
            _judge_answer(page, folder, answer, verdict)
        if neighbour.was_called():
            verdict.problems.append("called on this machine")
        return verdict
    finally:
        neighbour.close()
        shutil.rmtree(folder)


def _convert(page, tool, folder):
    for name in ("config/preferences", "tmp", "out"):
        (folder / name).mkdir(parents=True)
    (folder / "tmp").chmod(0o1777)
    settings = plistlib.dumps({"WebToolExtraLoadingTime": page.linger})
    (folder / "config" / "preferences" / f"{SETTINGS_DOMAIN}.plist").write_bytes(settings)
    environment = {"PATH": "/usr/bin:/bin", "LANG": "C.UTF-8", "PAPERSIZE": "letter", "TMPDIR": str(folder / "tmp"),
                   "XDG_CONFIG_HOME": str(folder / "config"), "XDG_CONFIG_DIRS": str(folder / "none")}
    if page.memory_limit:
        environment["WEB2PDF_MEMORY_LIMIT"] = str(page.memory_limit)
    if page.never_ends:
        environment["WEB2PDF_DEADLINE"] = str(DEADLINE)
    verdict = Verdict()
    begun = time.monotonic()
    with open(folder / "answer", "wb") as answer:
        child = subprocess.Popen([tool, page.mode, folder / "page.webarchive", folder / "out" / "page.pdf", "1"],
                                 stdin=subprocess.DEVNULL, stdout=answer, stderr=subprocess.DEVNULL, env=environment)
    limit = DEADLINE + 2 if page.never_ends else SECONDS
    while child.poll() is None and time.monotonic() - begun < limit:
        verdict.megabytes = max(verdict.megabytes, _megabytes(child.pid))
        time.sleep(0.05)
    verdict.seconds = time.monotonic() - begun
    ended = child.poll() is not None
    if not ended:
        child.kill()
        child.wait()
        verdict.outcome = "endless"
        verdict.problems.append(f"no answer within {limit} s")
    # The engine of a tool that was killed, or that had no time left, ends a moment later.
    if processes.wait_until_none(0 if ended and not page.never_ends else 1):
        verdict.problems.append("processes outlived the tool")
    processes.reap()
    if ended and child.returncode != 0:
        verdict.problems.append(f"exit status {child.returncode}")
    if verdict.megabytes > MEGABYTES:
        verdict.problems.append(f"{verdict.megabytes:.0f} MB of memory")
    if list((folder / "tmp").iterdir()):
        verdict.problems.append("temporary files left")
    return verdict, (folder / "answer").read_bytes() if ended else None


def _megabytes(root):
    """The memory of a process and its descendants, shared pages divided among those that share them."""
    total = 0
    for process in [root, *processes.descendants(root)]:
        try:
            with open(f"/proc/{process}/smaps_rollup", encoding="ascii") as file:
                total += next((int(line.split()[1]) for line in file if line.startswith("Pss:")), 0)
        except OSError:     # it has ended
            continue
    return total / 1024


def _judge_answer(page, folder, answer, verdict):
    try:
        result = read_result(answer)
        succeeded = result["succeeded"]
        if succeeded:
            verdict.outcome = "converted"
        else:
            error = read_error(result["errorData"])
            verdict.outcome = f"{error.domain} {error.code}"
    except Exception as fault:
        verdict.problems.append(f"the answer cannot be read: {fault!r}")
        return
    output = folder / "out" / "page.pdf"
    if succeeded and page.never_ends:
        verdict.problems.append("ended after all: it is to be judged like any other")
    elif succeeded:
        _judge_text(page, output, verdict)
    elif not _is_expected(page, error):
        verdict.problems.append(f"failed: {result['errorString']}")
    kept = ["page.pdf"] if succeeded else []
    if sorted(os.listdir(folder / "out")) != kept:
        verdict.problems.append(f"files: {os.listdir(folder / 'out')}")


def _is_expected(page, error):
    reason = (error.domain, error.code)
    if reason == DEADLINE_PASSED:
        return bool(page.never_ends)
    if reason in MEMORY_EXCEEDED and page.memory_limit:
        return True
    return bool(page.may_fail) and error.domain != TOOL_DOMAIN     # a fault of the program's own


def _judge_text(page, output, verdict):
    try:
        PDF(str(output)).assert_valid()
        text = PDF(str(output)).text()
    except Exception as fault:
        verdict.problems.append(f"no good PDF: {fault!r:.200}")
        return
    verdict.problems += [f"{word} is missing" for word in page.says if word not in text]
    verdict.problems += [f"{word} is shown" for word in (*page.silent, SECRET_TEXT) if word in text]
