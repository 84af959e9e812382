"""Where the time of a conversion goes: samples of all of its processes, by the system's profiler (perf).

    samples = profile(page, "screen", tool)
    samples.stacks    # stacks, outermost first, mapped to how often they were seen; the first is the process
    samples.shares()
"""

import collections
import dataclasses
import math
import pathlib
import re
import shutil
import subprocess

from programs import convert, job

PERF = "perf"
MOST_OFTEN = 997    # samples a second; no multiple of anything that wakes up regularly
ENOUGH = 3000    # samples: the profiler takes its time to make out their stacks
# The stacks are made out from tables in the programs, since optimised ones keep no pointers to their frames.
STACKS = "dwarf,32768"    # bytes of each stack, nearly always all of it
FRAME = re.compile(r"^\s+[0-9a-f]+ (?P<symbol>.*) \((?P<file>[^()]*)\)$")
CUT = re.compile(r"\+0x[0-9a-f]+$|(?<=[\w>~])\(.*")    # of a symbol: the place in it, and what it takes
MOST_FILES = 3
LIMIT = 600    # s


@dataclasses.dataclass
class Samples:
    frequency: int
    stacks: collections.Counter = dataclasses.field(default_factory=collections.Counter)
    files: collections.Counter = dataclasses.field(default_factory=collections.Counter)    # processes with files

    def shares(self):
        """Each process with its share of all samples, and the files in which it was most; the largest first."""
        total = self.stacks.total()
        processes = collections.Counter()
        for (process, _), count in self.files.items():
            processes[process] += count
        return [{"process": process, "share": round(count / total, 4), "seconds": round(count / self.frequency, 3),
                 "files": [[file, round(times / total, 4)] for (owner, file), times in self.files.most_common()
                           if owner == process][:MOST_FILES]}
                for process, count in processes.most_common()]


def is_possible():
    return shutil.which(PERF) is not None


def profile(page, mode, tool):
    roles = {}
    with job(page, mode) as one_job:
        first, _ = convert("web2pdf", one_job, tool, LIMIT)
        frequency = min(MOST_OFTEN, math.ceil(ENOUGH / first.cpu))
        record = one_job.folder / "samples"
        _, trouble = convert("web2pdf", one_job, tool, LIMIT,
                             prefix=[PERF, "record", "--quiet", "--call-graph", STACKS, "-F", str(frequency), "-o",
                                     str(record), "--"],
                             watch=lambda processes: _note_roles(processes, tool, roles))
        if trouble:
            raise RuntimeError(f"no profile: {trouble}")
        script = subprocess.run([PERF, "script", "--no-inline", "-i", str(record), "-F", "comm,pid,ip,sym,dso"],
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, errors="replace",
                                check=True)
    return samples_of(script.stdout, roles, frequency)


def _note_roles(processes, tool, roles):
    """What each process is, by its command line, which may still change."""
    for process in processes:
        folder = pathlib.Path(f"/proc/{process}")
        try:
            words = (folder / "cmdline").read_bytes().decode(errors="replace").replace("\0", " ").split()
            parent = int((folder / "stat").read_text(encoding="utf-8", errors="replace").rpartition(")")[2].split()[1])
        except OSError:
            continue
        roles[process] = role(words, parent, str(tool), roles) or roles.get(process)


def role(words, parent, tool, roles):
    """None for a process that has ended, or is the profiler's."""
    if not words or words[0] == PERF:
        return None
    if words[0] == tool:
        return "tool's child" if roles.get(parent) == "tool" else "tool"
    kind = next((word.partition("=")[2] for word in words if word.startswith("--type=")), "browser")
    service = next((word.rpartition(".")[2] for word in words if word.startswith("--utility-sub-type=")), kind)
    return f"engine: {service}"


def samples_of(script, roles, frequency):
    """Reads what the profiler printed. Frames of a file without symbols count as one."""
    samples = Samples(frequency)
    for sample in script.split("\n\n"):
        head, *lines = sample.strip("\n").split("\n")
        process = head.rsplit(None, 1)[-1] if head.strip() else ""
        if not process.isdigit() or not roles.get(int(process)):
            continue
        found = list(filter(None, map(FRAME.match, lines)))
        frames = [roles[int(process)]]
        for match in reversed(found):
            frame = _name(match["symbol"], match["file"])
            if frame != frames[-1]:
                frames.append(frame)
        samples.stacks[tuple(frames)] += 1
        samples.files[frames[0], _short(found[0]["file"]) if found else "unknown"] += 1
    return samples


def _name(symbol, file):
    return f"[{_short(file)}]" if symbol == "[unknown]" else CUT.sub("", symbol)


def _short(file):
    """The name of a file; the kernel's is in brackets, like that of no file at all."""
    name = pathlib.PurePath(file).name.strip("[]")
    return "kernel" if name.startswith("kernel") else name
