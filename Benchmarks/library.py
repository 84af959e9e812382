"""Measures operations of the library beside their peers. See script/benchmark."""

import argparse
import dataclasses
import json
import os
import pathlib
import plistlib
import subprocess
import sys
import tempfile
import time

SECONDS, REPETITIONS = 0.2, 5
# The library trusts what it knows of a file when its last change was more than two seconds ago.
SETTLED = 4


@dataclasses.dataclass(frozen=True)
class Row:
    """One operation: the names of its benchmark and of the peer's, and what it may cost: in nanoseconds, or times as
    much as the peer's."""
    title: str
    ours: str
    most: float
    peer: str | None = None

    def cost(self, figures):
        """In the unit of what it may cost."""
        return figures[self.ours] / figures[self.peer] if self.peer else figures[self.ours]

    def target(self):
        return f"{self.most:g} times" if self.peer else f"{self.most:,.0f} ns"


ROWS = (
    Row("log line whose area is off", "areaOff", 30),
    Row("log line, to a file; spdlog", "line/file", 2, "lineOfSpdlog/file"),
    Row("log line, to /dev/null; spdlog", "line/null", 2, "lineOfSpdlog/null"),
    Row("log line, to a file and the journal", "line/journal_file", 3_000),
    Row("log line, to /dev/null and the journal", "line/journal_null", 3_000),
    Row("log line, to a file without a journal; with it left out", "line/missing_journal_file", 1.2, "line/file"),
    Row("log line, to /dev/null without a journal; with it left out", "line/missing_journal_null", 1.2, "line/null"),
    Row("log line without a shared logger, to a file and the journal", "lineWithoutSharedLogger/file", 6_000),
    Row("log line without a shared logger, to /dev/null and the journal", "lineWithoutSharedLogger/null", 6_000),
    Row("format of two texts and an integer; fmt", "texts", 1.5, "textsOfFmt"),
    Row("format of three doubles; fmt", "numbers", 1.5, "numbersOfFmt"),
    Row("full description of an error with 5 below it", "fullDescription/5", 12_000),
    Row("full description of an error with 1,000 below it", "fullDescription/1000/repeats:1", 5_000_000),
    Row("setting of a domain without a file", "setting/missing", 1_500),
    Row("setting of a domain with a file", "setting/settled", 1_500),
)


def least(report):
    """The names of the benchmarks in the program's report, mapped to the processor time of their best repetition, in
    nanoseconds. Those that failed are left out."""
    found = {}
    for run in report["benchmarks"]:
        if run["run_type"] == "iteration" and not run.get("error_occurred"):
            found[run["run_name"]] = min(run["cpu_time"], found.get(run["run_name"], run["cpu_time"]))
    return found


def failures(report):
    """What kept rows from being measured."""
    told = {run["run_name"]: run["error_message"] for run in report["benchmarks"] if run.get("error_occurred")}
    known = told.keys() | least(report).keys()
    wanted = {name for row in ROWS for name in (row.ours, row.peer) if name}
    return [f"{name}: {told.get(name, 'there is no such benchmark')}" for name in sorted(wanted)
            if name in told or name not in known]


def table(figures):
    lines = [["operation", "ours, ns", "peer's, ns", "ratio", "target", "met"], ["---"] + ["---:"] * 4 + ["---"]]
    for row in ROWS:
        peer = figures[row.peer] if row.peer else None
        lines.append([row.title, _nanoseconds(figures[row.ours]), _nanoseconds(peer) if peer else "–",
                      f"{row.cost(figures):.2f}" if peer else "–", row.target(),
                      "yes" if row.cost(figures) <= row.most else "no"])
    widths = [max(map(len, column)) for column in zip(*lines)]
    return "\n".join("| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |" for line in lines)


def _nanoseconds(value):
    return f"{value:,.1f}" if value < 100 else f"{value:,.0f}"


def measure(program, once):
    """The program's report. It sees settings of its own only, and all that it writes is gone afterwards."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        preferences = folder / "user" / "preferences"
        preferences.mkdir(parents=True)
        (preferences / "org.example.settled.plist").write_bytes(plistlib.dumps({"Key": "set"}))
        if not once:
            time.sleep(SETTLED)
        seconds, repetitions = (0, 1) if once else (SECONDS, REPETITIONS)
        # In turns, so that what slows the machine slows all of them.
        subprocess.run([program, f"--benchmark_min_time={seconds}", f"--benchmark_repetitions={repetitions}",
                        "--benchmark_enable_random_interleaving=true", f"--benchmark_out={folder / 'report.json'}"],
                       env=os.environ | {"TMPDIR": name, "XDG_CONFIG_HOME": str(folder / "user"),
                                         "XDG_CONFIG_DIRS": str(folder / "shared")},
                       stdout=subprocess.DEVNULL, check=True)
        return json.loads((folder / "report.json").read_text(encoding="utf-8"))


def main():
    parser = argparse.ArgumentParser(prog="script/benchmark library", description=__doc__.splitlines()[0])
    parser.add_argument("--program", required=True, type=pathlib.Path, help=argparse.SUPPRESS)
    parser.add_argument("--once", action="store_true", help="only see that every row can be measured")
    options = parser.parse_args()
    report = measure(options.program.resolve(), options.once)
    if failed := failures(report):
        sys.exit("\n".join(failed))
    if not options.once:
        print(table(least(report)))
    return 0


if __name__ == "__main__":
    sys.exit(main())
