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
# What a tick of the system's clock adds: a look at standard error, and one for the journal.
MOST = 1.2 * LINES


def calls(program, count, target, trace, environment):
    """The system calls of a run that logs so many lines."""
    with open(target, "ab") as errors:
        subprocess.run(["strace", "-f", "-o", trace, program, str(count)], stderr=errors, env=environment, timeout=120,
                       check=True)
    return len(trace.read_text(encoding="utf-8", errors="replace").splitlines())


def main(program):
    faults = []
    with tempfile.TemporaryDirectory(prefix="system-calls-") as folder:
        folder = pathlib.Path(folder)
        for target in (folder / "log", "/dev/null"):
            for flag in ("YES", "NO"):
                if flag == "NO" and os.path.exists("/run/systemd/journal/socket"):
                    continue    # each entry is a call, too
                environment = {**os.environ, "QRVIsInXcode": flag}
                few = calls(program, 1, target, folder / "trace", environment)
                many = calls(program, LINES + 1, target, folder / "trace", environment)
                if not LINES <= many - few <= MOST:
                    faults.append(f"{target}, QRVIsInXcode={flag}: {many - few} calls for {LINES} lines")
        lines = (folder / "log").read_text(encoding="utf-8").splitlines()
        if any("[Area] line " not in line for line in lines) or len(lines) < LINES:
            faults.append(f"{len(lines)} lines in the file, such as {lines[:1]}")
    print("\n".join(faults) or "as it should be")
    return 1 if faults else 0


sys.exit(main(sys.argv[1]))
