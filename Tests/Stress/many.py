"""Runs the tool many times, several at once, and judges each run by the rules of all tests.

    summary = run_many("Mutated archives", range(10_000), convert_mutated, jobs=4)
    print(summary.row())

A job is a function of a ToolTestCase and a case; it runs the tool and returns a word for how that ended, such as
"converted". Whatever it asserts in vain, and whatever ToolTestCase asserts of every run (exit status, answer, log,
processes and files left behind), is a broken rule.
"""

import collections
import dataclasses
import multiprocessing
import os
import resource
import sys
import time
import unittest

from tool import ToolTestCase


class _Job(ToolTestCase):
    """The test case around one run."""

    def runTest(self):    # the name that unittest looks for
        self.ending = self.job(self.case)


@dataclasses.dataclass
class Outcome:
    case: object
    ending: str     # "broken" when a rule was
    trouble: str
    seconds: float
    peak: int       # of the largest process, MiB


def _run(job, case):
    begin = time.monotonic()
    test = _Job()
    test.job, test.case, test.ending = lambda value: job(test, value), case, "broken"
    result = unittest.TestResult()
    test.run(result)
    trouble = "\n".join(text for _, text in result.failures + result.errors)
    # The largest of all children of this process so far: it is a process of its own for each case.
    peak = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss // 1024
    return Outcome(case, "broken" if trouble else test.ending, trouble, time.monotonic() - begin, peak)


@dataclasses.dataclass
class Summary:
    name: str
    outcomes: list
    seconds: float

    @property
    def broken(self):
        return [outcome for outcome in self.outcomes if outcome.ending == "broken"]

    @property
    def peak(self):
        return max((outcome.peak for outcome in self.outcomes), default=0)

    def row(self):
        endings = collections.Counter(outcome.ending for outcome in self.outcomes)
        told = ", ".join(f"{count} {ending}" for ending, count in endings.most_common())
        longest = max((outcome.seconds for outcome in self.outcomes), default=0)
        return (f"| {self.name} | {len(self.outcomes)} | {told} | {self.peak} MiB | {longest:.1f} s | "
                f"{self.seconds:.0f} s |")


HEAD = ("| what | runs | how they ended | largest process | longest run | all |\n"
        "|---|---|---|---|---|---|")
_job = None     # inherited by the processes of the pool


def _run_in_pool(case):
    return _run(_job, case)


def run_many(name, cases, job, jobs, show=None):
    """Runs the job for every case, each in a process of its own."""
    global _job
    _job = job
    cases = list(cases)
    begin = time.monotonic()
    outcomes = []
    with multiprocessing.get_context("fork").Pool(jobs, maxtasksperchild=1) as pool:
        for outcome in pool.imap_unordered(_run_in_pool, cases):
            outcomes.append(outcome)
            if outcome.trouble:
                print(f"{name}, {outcome.case}: {outcome.trouble}", file=sys.stderr, flush=True)
            if show and len(outcomes) % show == 0:
                print(f"{name}: {len(outcomes)} of {len(cases)}, {time.monotonic() - begin:.0f} s", file=sys.stderr,
                      flush=True)
    return Summary(name, outcomes, time.monotonic() - begin)


def processors():
    return len(os.sched_getaffinity(0))
