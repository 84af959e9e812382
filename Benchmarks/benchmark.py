"""Measures the tool beside other programs, and how its costs grow. See script/benchmark."""

import argparse
import contextlib
import datetime
import json
import os
import pathlib
import platform
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "Tests" / "Support"))

import profiling
from comparison import compare
from drawing.flames import flames
from drawing.plots import curves_plot, rows_plot
from figures import QUANTITIES, losses, ratio
from measure import CannotMeasure
from programs import ENGINE, is_installed
from report import filled, points_table, profiles_table, rows_table, slopes_table
from workload import generators
from workload.suite import CURVES, ROWS

RESULTS = ROOT / "Benchmarks" / "results.json"
DOCUMENT = ROOT / "Documentation" / "performance.md"
PLOTS = ROOT / "Documentation" / "performance"
ROW_RUNS, CURVE_RUNS = 5, 3
BOTH = ("web2pdf", "engine")
NOTHING = {"machine": {}, "rows": {}, "curves": {}, "profiles": {}}
ALWAYS_PROFILED, WORST_PROFILED = ("small", "pictures"), 3


def machine():
    processor = next((line.partition(": ")[2].strip() for line in open("/proc/cpuinfo", encoding="utf-8")
                      if line.startswith("model name")), platform.machine())
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    told = {"measured on": datetime.date.today().isoformat(),
            "machine": f"{len(os.sched_getaffinity(0))} processors ({processor}), {memory:.0f} GiB",
            "kernel": platform.release().partition("-")[0],
            "the engine": _version([ENGINE, "--version"])}
    return told | {program: _version([program, "--version"]) for program in ("wkhtmltopdf", "weasyprint")
                   if is_installed(program)}


def _version(command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                          check=True).stdout.strip()


def measure_rows(names, tool, runs, **more):
    rows = {}
    for name in names:
        row = ROWS[name]
        print(f"{row.title}:", file=sys.stderr)
        rows[name] = compare(row.make(), row.mode, tool, runs, beyond=row.beyond, **more)
    return rows


def measure_curve(name, tool, runs):
    """The base is the small page, in the curve's mode and at its time."""
    curve = CURVES[name]
    print(f"{curve.title}:", file=sys.stderr)
    points = []
    base = compare(generators.small(), curve.mode, tool, runs, BOTH)
    for size in curve.sizes:
        print(f" {size}", file=sys.stderr)
        points.append([size, compare(curve.make(size), curve.mode, tool, runs, BOTH)])
    return {"base": base, "points": points}


def measure_profiles(names, tool):
    """The shares of processes in each row, and their flame graphs."""
    found, graphs = {}, {}
    for name in names:
        print(f"Profile of {ROWS[name].title}", file=sys.stderr)
        samples = profiling.profile(ROWS[name].make(), ROWS[name].mode, tool)
        found[name] = samples.shares()
        graphs[f"flames-{name}.svg"] = flames(samples.stacks, ROWS[name].title)
    return found, graphs


def worth_a_profile(rows):
    """A small and a large conversion, and those that compare worst with the engine alone."""
    if not profiling.is_possible():
        print("No profiles: perf is not installed.", file=sys.stderr)
        return []
    ratios = {name: ratio(row["web2pdf"], row["engine"], "wall") or 0 for name, row in rows.items()}
    worst = sorted(ratios, key=ratios.get, reverse=True)[:WORST_PROFILED]
    return list(dict.fromkeys([*ALWAYS_PROFILED, *worst]))


def read():
    with contextlib.suppress(FileNotFoundError):
        return json.loads(RESULTS.read_text(encoding="utf-8"))
    return NOTHING


def pictures(results):
    """Files in the folder of the plots, mapped to what they hold."""
    return {"rows.svg": rows_plot(results["rows"]),
            **{f"curves-{quantity}.svg": curves_plot(results["curves"], quantity)
               for quantity in ("wall", "memory")}}


def write(results, graphs):
    RESULTS.write_text(json.dumps(results, indent=1) + "\n", encoding="utf-8")
    DOCUMENT.write_text(filled(DOCUMENT.read_text(encoding="utf-8"), results), encoding="utf-8")
    PLOTS.mkdir(exist_ok=True)
    for name, picture in {**pictures(results), **graphs}.items():
        (PLOTS / name).write_text(picture, encoding="utf-8")
    for file in PLOTS.glob("flames-*.svg"):
        if file.stem.removeprefix("flames-") not in results["profiles"]:
            file.unlink()


def check(names, tool, runs):
    """A row that looks worse is measured a second time, and counts only when it is worse again."""
    committed = {name: row for name, row in read()["rows"].items() if name in names}
    found = losses(measure_rows(committed, tool, runs, programs=BOTH), committed)
    suspects = {name: committed[name] for name in committed if any(loss.startswith(f"{name}:") for loss in found)}
    if suspects:
        print("Once more, since they look worse:", file=sys.stderr)
        found = losses(measure_rows(suspects, tool, runs, programs=BOTH), suspects)
    print("\n".join(found or ["Nothing got worse."]))
    return 1 if found else 0


def chosen(names, known, parser):
    """The names in a list with commas; "none" chooses none of them."""
    wanted = [] if names == "none" else names.split(",")
    if unknown := set(wanted) - known.keys():
        parser.error(f"no such name: {', '.join(unknown)}; there are {', '.join(known)}")
    return wanted


def main():
    parser = argparse.ArgumentParser(prog="script/benchmark", description=__doc__.splitlines()[0])
    parser.add_argument("--tool", required=True, type=pathlib.Path, help=argparse.SUPPRESS)
    parser.add_argument("--rows", metavar="NAMES", help=f"of {','.join(ROWS)}, or none")
    parser.add_argument("--curves", metavar="NAMES", help=f"of {','.join(CURVES)}, or none")
    parser.add_argument("--profiles", metavar="NAMES", help="of rows, or none; needs perf")
    parser.add_argument("--runs", type=int, help=f"of each program on each page; {ROW_RUNS} for rows and {CURVE_RUNS} "
                                                 "for curves unless given")
    parser.add_argument("--check", action="store_true", help="compare rows with the committed figures, and fail when a "
                                                             "ratio to the engine got worse by more than 10 %%")
    parser.add_argument("--print", action="store_true", help="print the tables, and write no file")
    options = parser.parse_args()
    tool = options.tool.resolve()
    selects = any(names is not None for names in (options.rows, options.curves, options.profiles))
    rows = chosen(options.rows or ("none" if selects else ",".join(ROWS)), ROWS, parser)
    curves = chosen(options.curves or ("none" if selects else ",".join(CURVES)), CURVES, parser)
    profiles = chosen(options.profiles or "none", ROWS, parser)
    try:
        if options.check:
            return check(rows or list(ROWS), tool, options.runs or ROW_RUNS)
        results = {"machine": machine(), "rows": measure_rows(rows, tool, options.runs or ROW_RUNS),
                   "curves": {name: measure_curve(name, tool, options.runs or CURVE_RUNS) for name in curves}}
        results["profiles"], graphs = measure_profiles(profiles if selects else worth_a_profile(results["rows"]), tool)
    except CannotMeasure as error:
        sys.exit(f"benchmark: {error}")
    tables = [f"{quantity}\n{rows_table(results, quantity)}" for quantity in QUANTITIES if rows]
    tables += [slopes_table(results), points_table(results)] if curves else []
    print("\n\n".join(tables + ([profiles_table(results)] if results["profiles"] else [])))
    if not options.print:
        before = read() if selects else NOTHING
        write({"machine": results["machine"],
               **{part: before[part] | results[part] for part in ("rows", "curves", "profiles")}}, graphs)
    return 0


if __name__ == "__main__":
    sys.exit(main())
