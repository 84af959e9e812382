"""Has the tool hand on stored PDF files that may be hostile, and judges how it bore them.

    outcome = hand_on(tool, pdf, folder, environment)
    outcome.faults      # the rules that were broken; empty when all is well

What must hold whatever the file is: an exit status of 0 and an answer of the documented form in bounded time and
memory; on success a file, which is the stored one byte for byte when the log says that it stays as it is; on
failure the error of a print that failed, and no file.
"""

import os
import pathlib
import plistlib
import subprocess
import threading
import time
from dataclasses import dataclass, field

from keyedarchive import read_error
from tool import SANITIZERS
from webarchive import Archive, Resource

# Of the largest process; what the tool and a child may take together is the sum of their limits.
MOST_MEMORY = 1_000_000_000
MOST_PROCESSOR_TIME = 45
PATIENCE = 400
AS_IT_IS = "the PDF stays as it is"


def is_sanitized():
    """Whether the tool is built with sanitizers, as the variables tell that are set for them: then its memory has no
    limit."""
    return any(name in os.environ for name in SANITIZERS)


@dataclass
class Outcome:
    kind: str = ""              # "stamped", "as it is", "refused", or "" when there was no answer
    faults: list = field(default_factory=list)
    memory: int = 0             # bytes, of the largest process
    processor_time: float = 0   # seconds, of the tool and its children
    time: float = 0             # seconds
    log: str = ""


def hand_on(tool, pdf, folder, environment):
    """Runs the tool on an archive of this file; the folder is new, and stays behind with all files."""
    folder = pathlib.Path(folder)
    archive, output = folder / "page.webarchive", folder / "page.pdf"
    archive.write_bytes(Archive(Resource("http://site.example/file.pdf", pdf, "application/pdf", None)).bytes())
    outcome, start = Outcome(), time.monotonic()
    with open(folder / "answer", "wb") as answer, open(folder / "log", "wb") as log:
        child = subprocess.Popen([tool, "print", archive, output, "uid"], stdin=subprocess.DEVNULL, stdout=answer,
                                 stderr=log, env=environment, cwd=folder, start_new_session=True)
        watch = threading.Timer(PATIENCE, child.kill)
        watch.start()
        _, status, usage = os.wait4(child.pid, 0)
        watch.cancel()
        child.returncode = os.waitstatus_to_exitcode(status)
    outcome.time = time.monotonic() - start
    outcome.memory = usage.ru_maxrss * 1024
    outcome.processor_time = usage.ru_utime + usage.ru_stime
    outcome.log = (folder / "log").read_text(encoding="utf-8", errors="replace")
    outcome.faults = list(_faults(outcome, child.returncode, (folder / "answer").read_bytes(), output, pdf))
    return outcome


def _faults(outcome, status, answer, output, pdf):
    if outcome.memory > MOST_MEMORY and not is_sanitized():
        yield "memory"
    if outcome.processor_time > MOST_PROCESSOR_TIME:
        yield "processor time"
    if status != 0:
        yield f"exit status {status}"
    try:
        result = plistlib.loads(answer, fmt=plistlib.FMT_XML)
    except Exception:  # pylint: disable=broad-except
        yield "no answer"
        return
    if result == {"succeeded": True, "path": str(output)}:
        outcome.kind = "as it is" if AS_IT_IS in outcome.log else "stamped"
        written = output.read_bytes() if output.is_file() else b""
        if outcome.kind == "as it is" and written != pdf:
            yield "handed on changed"
        if outcome.kind == "stamped" and creator(output) != "Quillvane":
            yield "stamped without attributes"
    elif sorted(result) == ["errorData", "errorString", "succeeded"] and result["succeeded"] is False:
        outcome.kind = "refused"
        error = read_error(result["errorData"])
        if (error.domain, error.code) != ("NSCocoaErrorDomain", 512):
            yield f"error {error.domain} {error.code}"
        if output.exists():
            yield "refused, and a file all the same"
    else:
        yield "an answer of another form"


def creator(path):
    """As another reader reads it; nothing where it cannot read the file."""
    told = subprocess.run(["pdfinfo", path], stdin=subprocess.DEVNULL, capture_output=True, timeout=60, check=False)
    for line in told.stdout.decode(errors="replace").splitlines():
        if line.startswith("Creator:"):
            return line.partition(":")[2].strip()
    return None
