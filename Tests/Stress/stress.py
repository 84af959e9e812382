"""What the tool bears: each row of the table is one kind of trouble, many times.

    python3 Tests/Stress/stress.py --tool build/release/bin/web2pdf [--short | --count N] [--jobs N] [ROW...]

Prints the table, and what broke a rule before it; exits with 1 when anything did. --short takes a few of each, for
every change; without it the whole takes hours.
"""

import argparse
import dataclasses
import os
import pathlib
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / "Support"), str(ROOT / "Stress"), str(ROOT / "Hostile")]

import pages
from hostile import FAMILIES, pages as pages_of
from many import HEAD, processors, run_many
from mutations import mutated_archive

HOSTILE_PAGES = [page for family in FAMILIES for page in pages_of(family)]
QUICK_PAGES, ALL_PAGES = sum(page.quick for page in HOSTILE_PAGES), len(HOSTILE_PAGES)
LIMIT = 60      # seconds for a page that does not load for ever
MOST_MEMORY = 1024      # MiB of any one process


def convert_mutated(test, seed):
    _, data = mutated_archive(seed)
    run = test.convert(data, mode="screen" if seed % 2 else "print", expect_success=False, timeout=LIMIT,
                       environment=test.environment(WEB2PDF_DEADLINE=LIMIT - 5))
    if not run.result["succeeded"]:
        ending = f"{run.error.domain} {run.error.code}"
        if ending == "NSURLErrorDomain -1001":    # the contract has no limit for loading, and for nothing else
            test.assertNotIn("done loading", run.log.text)
            return "never loaded"
        return ending
    test.assert_success(run)
    return "converted"


def mutated_archives(count, jobs):
    summary = run_many("Mutated archives", range(count), convert_mutated, jobs, show=500)
    converted = sum(outcome.ending == "converted" for outcome in summary.outcomes)
    return summary, converted * 3 >= count


def convert_at_once(test, number):
    run = test.convert(pages.paragraphs(200 + number % 7), mode="print" if number % 2 else "screen", timeout=LIMIT)
    test.assertIn("Paragraph0199", run.pdf.text())
    return "converted"


def sixteen_at_once(count, _jobs):
    return run_many("Sixteen at once", range(count), convert_at_once, jobs=16), True


def repeat(test, count):
    """Converts in one process again and again, which must not grow."""
    test.set_preferences({"WebToolExtraLoadingTime": 0})
    program = pathlib.Path(os.environ["WEB2PDF_TOOL"]).with_name("Repeat")
    output = test.folder / "out"
    run = subprocess.run([program, str(count), "screen", test.archive_file(pages.with_images()), output / "page.pdf",
                          output / "result.plist"], env=test.environment(), stdout=subprocess.PIPE,
                         stderr=subprocess.DEVNULL, check=True)
    samples = [tuple(map(int, line.split())) for line in run.stdout.split(b"\n") if line]
    test.assertEqual(len(samples), 20)
    warm, last = samples[2], samples[-1]
    test.assertLess(last[1], warm[1] * 1.05, "resident memory grew")
    test.assertEqual(last[2:], warm[2:], "descriptors or processes were left")
    test.assert_nothing_left()
    return f"converted {last[0]} times: {warm[1]} to {last[1]} KiB, {last[2]} descriptors, {last[3]} processes"


def in_a_row(count, _jobs):
    return run_many("In one process, in a row", [count], repeat, jobs=1), True


@dataclasses.dataclass
class Program:
    """Summary of a program that judges by itself: its last line tells what came of it."""
    name: str
    count: int
    told: str
    seconds: float
    broken: bool
    peak: int = 0

    def row(self):
        return f"| {self.name} | {self.count} | {self.told} | - | - | {self.seconds:.0f} s |"


def run_program(name, count, command, folder=".", **environment):
    begin = time.monotonic()
    support = {"PYTHONPATH": str(ROOT / "Support"), "PYTHONDONTWRITEBYTECODE": "1"}
    run = subprocess.run([sys.executable, *map(str, command)], env={**os.environ, **support, **environment},
                         cwd=ROOT / folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if run.returncode != 0:
        print(run.stdout, file=sys.stderr)
    last = run.stdout.strip().splitlines()[-1:]
    return Program(name, count, last[0] if last else "", time.monotonic() - begin, run.returncode != 0), True


def tool():
    return os.environ["WEB2PDF_TOOL"]


def mutated_pdfs(count, jobs):
    command = ["Support/mutated_pdfs.py", "--count", count, "--seed", 1, "--tool", tool(), "--jobs", jobs]
    return run_program("Mutated stored PDFs", count, command)


def hostile_pages(count, jobs):
    more = ["--all"] if count > QUICK_PAGES else []
    return run_program("Hostile pages", count, ["Hostile/hostile.py", "--tool", tool(), "--jobs", jobs, *more])


def kills(count, _jobs):
    return run_program("Kills of the tool", count, ["-m", "unittest", "-q", "test_kills"], "EndToEnd",
                       WEB2PDF_KILLS=str(count))


def engine_kills(count, _jobs):
    return run_program("Kills of the engine's processes", count, ["-m", "unittest", "-q", "test_engine_kills"],
                       "EndToEnd", WEB2PDF_KILLS=str(count))


def tests_of(name, *modules):
    """Rows that are ordinary tests and take no number."""
    return lambda count, _jobs: run_program(name, count, ["-m", "unittest", "-q", *modules], "EndToEnd")


# Each row: its numbers of runs in the long and in the short form, and what makes it.
ROWS = {
    "archives": (10_000, 100, mutated_archives),
    "pdfs": (1_000, 60, mutated_pdfs),
    "pages": (ALL_PAGES, QUICK_PAGES, hostile_pages),
    "kills": (300, 10, kills),
    "engine-kills": (60, 12, engine_kills),
    "engine-faults": (1, 1, tests_of("Faults of the engine", "test_engine_faults")),
    "files": (1, 1, tests_of("Disks, limits, pipes, devices", "test_output", "test_bad_input")),
    "traces": (1, 1, tests_of("Traces: sockets, files, packets", "test_confinement", "test_network")),
    "limits": (1, 1, tests_of("Memory bombs and deadlines", "test_memory", "test_deadline")),
    "at-once": (320, 32, sixteen_at_once),
    "in-a-row": (2_000, 40, in_a_row),
}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("rows", nargs="*", metavar="ROW", help=f"of {', '.join(ROWS)}; all unless given")
    parser.add_argument("--tool", required=True, type=pathlib.Path)
    parser.add_argument("--short", action="store_true")
    parser.add_argument("--count", type=int, help="how many of each, whatever the table says")
    parser.add_argument("--jobs", type=int, default=processors())
    options = parser.parse_args()
    os.environ["WEB2PDF_TOOL"] = str(options.tool.resolve())

    table, failed = [], []
    for name in options.rows or ROWS:
        long, short, make = ROWS[name]
        summary, holds = make(options.count or (short if options.short else long), options.jobs)
        table.append(summary.row())
        if not holds or summary.broken or summary.peak > MOST_MEMORY:
            failed.append(name)
    print("\n".join([HEAD, *table]))
    if failed:
        print(f"Rules were broken: {', '.join(failed)}", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
