#!/usr/bin/env python3
"""A line to a file or a device is one system call, also while no journal is there.

Usage: system_calls_test.py ManyLines
"""
import os
import pathlib
import subprocess
import sys
import tempfile

LINES = 2000
# In each tick of the system's clock standard error is looked at, and a journal is looked for. However slowly a traced
# program on a busy machine gets on, some lines follow another one within a tick.
AT_LEAST_BARE = 20
MOST_BETWEEN = 5


def calls_between_lines(program, target, trace, environment):
    """For each line but the first: how many system calls there were since the line before."""
    with open(target, "ab") as errors:
        subprocess.run(["strace", "-f", "-o", trace, program, str(LINES)], stderr=errors, env=environment, timeout=120,
                       check=True)
    calls = trace.read_text(encoding="utf-8", errors="replace").splitlines()
    places = [place for place, call in enumerate(calls) if " write(2, " in call]
    return [later - earlier - 1 for earlier, later in zip(places, places[1:])]


def main(program):
    faults = []
    with tempfile.TemporaryDirectory(prefix="system-calls-") as folder:
        folder = pathlib.Path(folder)
        for target in (folder / "log", "/dev/null"):
            for flag in ("YES", "NO"):
                if flag == "NO" and os.path.exists("/run/systemd/journal/socket"):
                    continue    # each entry is a call, too
                environment = {**os.environ, "QRVIsInXcode": flag}
                between = calls_between_lines(program, target, folder / "trace", environment)
                bare = between.count(0)
                if len(between) != LINES - 1 or bare < AT_LEAST_BARE or max(between) > MOST_BETWEEN:
                    faults.append(f"{target}, QRVIsInXcode={flag}: {len(between)} gaps, {bare} of them bare, "
                                  f"at most {max(between, default=0)} calls in one")
        lines = (folder / "log").read_text(encoding="utf-8").splitlines()
        if any("[Area] line " not in line for line in lines) or len(lines) < LINES:
            faults.append(f"{len(lines)} lines in the file, such as {lines[:1]}")
    print("\n".join(faults) or "as it should be")
    return 1 if faults else 0


sys.exit(main(sys.argv[1]))
