"""Measures rows: the programs run in turn, so that a machine that becomes slower does so for all."""

import sys

from figures import QUANTITIES
from programs import NAMES, convert, is_installed, job

LIMITS = {"web2pdf": 600, "engine": 600}
LIMIT_OF_OTHERS = 120
SLOW = 60    # s; a program that takes longer runs once for time and once for memory
RUNS_FOR_MEMORY = 3


def compare(page, mode, tool, runs, programs=tuple(NAMES), beyond=None):
    """Figures of each installed program: lists of seconds ("wall", "cpu") and MiB ("memory") in the order of the runs,
    or what it "failed" with. beyond says so beforehand, of programs that need not be tried."""
    figures = {program: {quantity: [] for quantity in QUANTITIES} for program in programs if is_installed(program)}
    figures |= {program: {"failed": told} for program, told in (beyond or {}).items() if program in figures}
    with job(page, mode) as one_job:
        del page    # what is forked is this process, and large ones take longer
        for turn in range(runs + min(runs, RUNS_FOR_MEMORY)):
            for program, own in figures.items():
                memory = turn >= runs
                if _has_enough(own, own.get("memory" if memory else "wall")):
                    continue
                run, trouble = convert(program, one_job, tool, LIMITS.get(program, LIMIT_OF_OTHERS), memory=memory)
                _tell(program, run, trouble)
                if trouble:
                    own.clear()
                    own["failed"] = trouble
                elif memory:
                    own["memory"].append(round(run.memory, 1))
                else:
                    own["wall"].append(round(run.wall, 3))
                    own["cpu"].append(round(run.cpu, 3))
    return figures


def _has_enough(own, measured):
    """One that failed would fail again; a slow one is measured once."""
    return "failed" in own or (measured and own["wall"][0] > SLOW)


def _tell(program, run, trouble):
    memory = f", {run.memory:.0f} MiB" if run.memory else ""
    print(f"  {program}: {trouble or f'{run.wall:.2f} s, {run.cpu:.2f} s of processors{memory}'}", file=sys.stderr,
          flush=True)
