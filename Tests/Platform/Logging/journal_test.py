#!/usr/bin/env python3
"""Entries of the unified log as a real journal keeps them.

Usage: journal_test.py LogLine

Starts a journal daemon with a /run of its own, in its own mount and process namespaces, which take the daemon
and its files with them. Exits with 77 where there is no daemon or no namespaces are to be had.
"""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import time

DAEMON = "/lib/systemd/systemd-journald"
SOCKET = pathlib.Path("/run/systemd/journal/socket")
JOURNAL = "/run/log/journal"
CANNOT_RUN = 77
PATIENCE = 60

LINES = [
    ("QRVLogger.Some", "[Some] plain text = 100% \u00e4 \U0001f600"),
    ("QRVLogger", "two lines\nPRIORITY=0"),
    ("QRVLogger.Long", "x" * 100_000),
]


def outside(log_line):
    namespaces = ["unshare", "--mount", "--pid", "--fork", "--kill-child=KILL", "--mount-proc"]
    if os.geteuid() != 0:
        namespaces[1:1] = ["--user", "--map-root-user"]
    if not os.path.exists(DAEMON) or not shutil.which("journalctl"):
        print("no journal daemon on this machine")
        return CANNOT_RUN
    if subprocess.run(namespaces + ["true"]).returncode != 0:
        print("no namespaces on this machine")
        return CANNOT_RUN
    inner = [sys.executable, __file__, log_line, "inside"]
    return subprocess.run(namespaces + inner, timeout=2 * PATIENCE).returncode


def entries():
    command = ["journalctl", "-D", JOURNAL, "-o", "json", "--all", "SUBSYSTEM=org.example.test"]
    result = subprocess.run(command, capture_output=True, text=True)
    return [json.loads(line) for line in result.stdout.splitlines()]


def wait_for(condition):
    deadline = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > deadline:
            return False
        time.sleep(0.05)
    return True


def text(value):
    """Values that are not plain text come as a list of bytes."""
    return bytes(value).decode() if isinstance(value, list) else value


def inside(log_line):
    subprocess.run(["mount", "-t", "tmpfs", "tmpfs", "/run"], check=True)
    SOCKET.parent.mkdir(parents=True)
    pathlib.Path(JOURNAL).mkdir(parents=True)
    daemon = subprocess.Popen([DAEMON], stdin=subprocess.DEVNULL)
    try:
        if not wait_for(SOCKET.exists):
            print("the daemon did not start")
            return 1
        for category, message in LINES:
            subprocess.run([log_line, "org.example.test", category, message], check=True)
        wait_for(lambda: len(entries()) >= len(LINES))
        found = entries()
    finally:
        daemon.terminate()
        daemon.wait(PATIENCE)

    expected = [
        {
            "MESSAGE": message,
            "CATEGORY": category,
            "SUBSYSTEM": "org.example.test",
            "PRIORITY": "3",
            "SYSLOG_IDENTIFIER": os.path.basename(log_line),
        }
        for category, message in LINES
    ]
    shown = [{key: text(entry[key]) for key in expected[0]} for entry in found]
    if shown != expected:
        print("expected", expected, "\nbut found", shown)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(inside(sys.argv[1]) if sys.argv[2:] == ["inside"] else outside(sys.argv[1]))
