"""Where the time of a conversion goes: samples of all of its processes, by the system's profiler (perf).

    stacks = profile(page, "screen", tool)    # stacks, outermost first, mapped to samples; the first is the process
    shares(stacks)
"""

import collections
import pathlib
import re
import shutil
import subprocess

from programs import convert, job

PERF = "perf"
FREQUENCY = 997    # Hz; no multiple of anything that wakes up regularly
FRAME = re.compile(r"^\s+[0-9a-f]+ (?P<symbol>.*) \((?P<file>[^()]*)\)$")
CUT = re.compile(r"(\+0x[0-9a-f]+$|\(.*)")    # of a symbol: the place in it, and what it takes


def is_possible():
    return shutil.which(PERF) is not None


def profile(page, mode, tool):
    roles = {}
    with job(page, mode) as one_job:
        samples = one_job.folder / "samples"
        _, trouble = convert("web2pdf", one_job, tool, 600, watch=lambda processes: _note_roles(processes, tool, roles),
                             prefix=[PERF, "record", "--quiet", "-g", "-F", str(FREQUENCY), "-o", str(samples), "--"])
        if trouble:
            raise RuntimeError(f"no profile: {trouble}")
        script = subprocess.run([PERF, "script", "-i", str(samples), "-F", "comm,pid,ip,sym,dso"], text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, errors="replace", check=True)
    return stacks_of(script.stdout, roles)


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


def stacks_of(script, roles):
    """Reads what the profiler printed. Frames of a file without symbols count as one."""
    stacks = collections.Counter()
    for sample in script.split("\n\n"):
        head, *lines = sample.strip("\n").split("\n")
        process = head.rsplit(None, 1)[-1] if head.strip() else ""
        if not process.isdigit() or not roles.get(int(process)):
            continue
        frames = [roles[int(process)]]
        for match in filter(None, map(FRAME.match, reversed(lines))):
            frame = _name(match["symbol"], match["file"])
            if frame != frames[-1]:
                frames.append(frame)
        stacks[tuple(frames)] += 1
    return stacks


def _name(symbol, file):
    if symbol == "[unknown]":
        return f"[{pathlib.PurePath(file).name.strip('[]')}]"
    return CUT.sub("", symbol) or symbol


def shares(stacks):
    """Each process with its share of all samples, and the places in which it was most: rows, the largest first."""
    total = sum(stacks.values())
    roles, places = collections.Counter(), collections.defaultdict(collections.Counter)
    for stack, count in stacks.items():
        roles[stack[0]] += count
        places[stack[0]][stack[-1]] += count
    return [{"process": name, "share": round(count / total, 4), "seconds": round(count / FREQUENCY, 3),
             "places": [[place, round(most / total, 4)] for place, most in places[name].most_common(3)]}
            for name, count in roles.most_common()]
