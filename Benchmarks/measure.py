"""Runs a command and measures all of its processes, wherever they put themselves: in a control group of its own.

    run = measure(command, environment, timeout=60)
    run.wall, run.cpu                       # seconds
    measure(..., memory=True).memory        # MiB

A count of children that were waited for would miss processes that are killed together with the first one of a process
namespace: nobody waits for those. The kernel's account of a control group (version 2) counts them.
"""

import contextlib
import dataclasses
import os
import pathlib
import select
import subprocess
import time

SAMPLE = 0.01    # s between two looks
SHARE_OF_LOOKING = 0.25    # at most, of the time: looking at a process holds it up
TIME_TO_END = 10    # s; for processes that outlive the command


class CannotMeasure(Exception):
    """The machine lets nobody make a control group here."""


@dataclasses.dataclass
class Run:
    wall: float
    cpu: float
    memory: float    # 0 where it was not sampled
    status: int    # of the command; None when it was ended because of the time limit


class Group:
    """A control group, which is removed with all of its processes at the end."""

    def __init__(self):
        self.folder = parent_group() / f"benchmark-{os.getpid()}"
        try:
            self.folder.mkdir()
            self._entrance = os.open(self.folder / "cgroup.procs", os.O_WRONLY | os.O_CLOEXEC)
        except OSError as error:
            raise CannotMeasure(f"measuring needs root, or a control group of one's own: {error}") from error

    def enter(self):
        """In the child. The descriptor keeps the right to enter when the child is somebody else."""
        os.write(self._entrance, b"0")

    def processes(self):
        return [int(line) for line in (self.folder / "cgroup.procs").read_text(encoding="ascii").split()]

    def cpu(self):
        usage = (self.folder / "cpu.stat").read_text(encoding="ascii").split()
        return int(usage[usage.index("usage_usec") + 1]) / 1e6

    def end(self, seconds):
        """Waits until all have ended, or sees to it that they do."""
        deadline = time.monotonic() + seconds
        while self._is_populated() and time.monotonic() < deadline:
            time.sleep(0.005)
        (self.folder / "cgroup.kill").write_text("1", encoding="ascii")
        while self._is_populated():
            time.sleep(0.005)

    def remove(self):
        os.close(self._entrance)
        self.folder.rmdir()

    def _is_populated(self):
        return "populated 1" in (self.folder / "cgroup.events").read_text(encoding="ascii")


def parent_group():
    mounts = [line.split() for line in pathlib.Path("/proc/self/mountinfo").read_text(encoding="utf-8").splitlines()]
    roots = [fields[4] for fields in mounts if fields[fields.index("-") + 1] == "cgroup2"]
    own = [line[3:] for line in pathlib.Path("/proc/self/cgroup").read_text(encoding="utf-8").splitlines()
           if line.startswith("0::")]
    if not roots or not own:
        raise CannotMeasure("measuring needs control groups of version 2")
    return pathlib.Path(roots[0]) / own[0].lstrip("/")


def share_of_memory(process):
    """The memory in MiB that a process holds, of what it shares only its share (PSS); 0 when it has ended."""
    try:
        rollup = pathlib.Path(f"/proc/{process}/smaps_rollup").read_bytes()
        return int(rollup[rollup.index(b"\nPss:") + 5:].split(None, 1)[0]) / 1024
    except (OSError, ValueError):
        return 0


@contextlib.contextmanager
def group():
    made = Group()
    try:
        yield made
    finally:
        made.end(seconds=0)
        made.remove()


def measure(command, environment, timeout, memory=False, output=subprocess.DEVNULL, watch=None, **options):
    """Runs the command. With memory, all of its processes are looked at every 10 ms, less often where that takes long.
    It slows them down: times are measured without. watch, too, is called at every look, with their numbers."""
    with group() as own, contextlib.ExitStack() as stack:
        peak, pause = 0, SAMPLE
        begin = time.monotonic()
        child = subprocess.Popen(command, env=environment, preexec_fn=own.enter, stdin=subprocess.DEVNULL,
                                 stdout=output, stderr=subprocess.DEVNULL, **options)
        handle = os.pidfd_open(child.pid)
        stack.callback(os.close, handle)
        end = select.poll()
        end.register(handle, select.POLLIN)
        while True:
            left = timeout - (time.monotonic() - begin)
            if left <= 0 or end.poll(1000 * (pause if memory or watch else left)):
                break
            look = time.monotonic()
            if memory:
                peak = max(peak, sum(map(share_of_memory, own.processes())))
            if watch:
                watch(own.processes())
            pause = max(SAMPLE, (time.monotonic() - look) * (1 / SHARE_OF_LOOKING - 1))
        wall = time.monotonic() - begin
        own.end(seconds=TIME_TO_END if left > 0 else 0)
        status = child.wait()
        return Run(wall, own.cpu(), peak, status if left > 0 else None)
