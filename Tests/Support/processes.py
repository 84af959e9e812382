"""Finds what a program under test left running.

The test process makes itself the reaper of orphans, so everything that a child started stays its
descendant, however often it forked, changed its user or rewrote its environment.
"""

import ctypes
import os
import time

_PR_SET_CHILD_SUBREAPER = 36


def adopt_orphans():
    if ctypes.CDLL(None, use_errno=True).prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0) != 0:
        raise OSError(ctypes.get_errno(), "cannot become a reaper of orphans")


def snapshot():
    """Every process: its number mapped to its parent's, its state and its name."""
    found = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            try:
                with open(f"/proc/{entry}/stat", encoding="utf-8", errors="replace") as file:
                    text = file.read()
            except (FileNotFoundError, ProcessLookupError):
                continue
            name = text[text.index("(") + 1:text.rindex(")")]
            state, parent = text[text.rindex(")") + 2:].split()[:2]
            found[int(entry)] = (int(parent), state, name)
    return found


def descendants(root=None, besides=()):
    """The living descendants of a process (zombies are dead), as {number: name}."""
    everyone = snapshot()
    kept, layer = {}, {root or os.getpid()}
    while layer:
        layer = {pid for pid, (parent, _, _) in everyone.items() if parent in layer and pid not in besides}
        kept.update({pid: everyone[pid][2] for pid in layer if everyone[pid][1] not in "ZX"})
    return kept


def reap():
    """Collects the orphans that have ended. Call it only when no child of one's own is still awaited."""
    try:
        while os.waitpid(-1, os.WNOHANG)[0]:
            pass
    except ChildProcessError:
        pass


def wait_until_none(seconds, besides=()):
    """Waits for every descendant to end; returns those that did not."""
    return wait_for(lambda: not descendants(besides=besides), seconds) or descendants(besides=besides)


def wait_for(condition, seconds):
    """Polls until the condition holds; returns {} when it does, None when the time is over."""
    deadline = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > deadline:
            return None
        time.sleep(0.02)
    return {}


def carrying(variable, value):
    """Processes anywhere whose environment still holds the variable with the value."""
    wanted = f"{variable}={value}".encode()
    found = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit() and int(entry) != os.getpid():
            try:
                with open(f"/proc/{entry}/environ", "rb") as file:
                    holds = wanted in file.read().split(b"\0")
                if holds:
                    with open(f"/proc/{entry}/comm", encoding="utf-8") as file:
                        found[int(entry)] = file.read().strip()
            except OSError:
                continue
    return found
