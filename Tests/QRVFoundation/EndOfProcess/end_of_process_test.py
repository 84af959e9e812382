#!/usr/bin/env python3
"""The library works until the very end of a process, with threads still running.

Usage: end_of_process_test.py EndOfProcess
"""
import concurrent.futures
import os
import pathlib
import plistlib
import subprocess
import sys
import tempfile

RUNS = 200


def main(program):
    with tempfile.TemporaryDirectory(prefix="end-of-process-") as folder:
        preferences = pathlib.Path(folder) / "preferences"
        preferences.mkdir()
        (preferences / "org.example.end.plist").write_bytes(plistlib.dumps({"Number": 42}))
        environment = {**os.environ, "XDG_CONFIG_HOME": folder}

        def run(_):
            done = subprocess.run([program], env=environment, capture_output=True, timeout=60, check=False)
            wanted = (0, b"done\n", True)
            found = (done.returncode, done.stdout, b"the destructor logs" in done.stderr)
            return [] if found == wanted else [(found, done.stderr[-2000:].decode(errors="replace"))]

        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            faults = sum(pool.map(run, range(RUNS)), [])
    for found, log in faults[:3]:
        print(found, log, sep="\n")
    print(f"{len(faults)} of {RUNS} runs failed")
    return 1 if faults else 0


sys.exit(main(sys.argv[1]))
