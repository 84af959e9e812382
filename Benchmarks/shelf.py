"""Measures how many archives web2pdf-batch converts in a second, beside GNU parallel that calls the tool. See
script/benchmark."""

import argparse
import os
import pathlib
import plistlib
import subprocess
import sys
import tempfile
import time

sys.path[:0] = [str(pathlib.Path(__file__).resolve().parent.parent / "Tests" / "Support")]

from workload.generators import document, words  # noqa: E402
from workload.page import Page  # noqa: E402

SETTINGS = "org.quillvane.Quillvane"


def write_shelf(folder, count):
    """So many small pages, no two of them alike."""
    folder.mkdir()
    for number in range(count):
        text = "".join(f"<p>{words(60, number + part)}</p>" for part in range(4))
        Page(document(f"<h1>Page {number}</h1>{text}")).write_archive(folder / f"page-{number:05}.webarchive")


def archives_for(jobs, quiet, seconds):
    """As many as take about so long: the machine is busy from some number of jobs on."""
    rate = min(jobs / (quiet + 0.7), 2 * os.cpu_count())
    return max(2 * jobs, round(rate * seconds))


def run_batch(programs, shelf, output, jobs):
    command = [programs / "web2pdf-batch", "-q", "-j", str(jobs), "-o", output, shelf]
    return subprocess.run(command, check=False).returncode


def run_parallel(programs, shelf, output, jobs):
    output.mkdir()
    command = f"{programs}/web2pdf print {{}} {output}/{{/.}}.pdf 1 >/dev/null 2>&1"
    archives = "\n".join(map(str, sorted(shelf.iterdir())))
    return subprocess.run(["parallel", "-j", str(jobs), command], input=archives, text=True, check=False).returncode


def rate(run, programs, shelf, count, jobs):
    """Archives in a second."""
    with tempfile.TemporaryDirectory(prefix="web2pdf-shelf-") as folder:
        output = pathlib.Path(folder) / "out"
        start = time.monotonic()
        status = run(programs, shelf, output, jobs)
        seconds = time.monotonic() - start
        made = len(list(output.glob("*.pdf")))
        if status != 0 or made != count:
            sys.exit(f"{run.__name__} with {jobs} jobs: status {status}, {made} of {count} PDFs")
    return count / seconds


def measure(programs, folder, quiet, jobs, seconds):
    settings = folder / f"settings-{quiet}" / "preferences"
    settings.mkdir(parents=True, exist_ok=True)
    (settings / f"{SETTINGS}.plist").write_bytes(plistlib.dumps({"WebToolExtraLoadingTime": quiet}))
    os.environ["XDG_CONFIG_HOME"] = str(settings.parent)
    count = archives_for(jobs, quiet, seconds)
    shelf = folder / f"shelf-{count}"
    if not shelf.exists():
        write_shelf(shelf, count)
    ours = rate(run_batch, programs, shelf, count, jobs)
    theirs = rate(run_parallel, programs, shelf, count, jobs)
    print(f"| {quiet} s | {jobs} | {count} | {ours:.2f} | {theirs:.2f} | {ours / theirs:.2f} |", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--programs", type=pathlib.Path, required=True, help="the folder of web2pdf and web2pdf-batch")
    parser.add_argument("--jobs", type=int, nargs="+", default=[1, 2, 4, 8, 16, 32, 64])
    parser.add_argument("--quiet", type=int, nargs="+", default=[0, 2], help="seconds of WebToolExtraLoadingTime")
    parser.add_argument("--seconds", type=int, default=30, help="about how long each run takes")
    options = parser.parse_args()
    print("| quiet period | jobs | archives | web2pdf-batch, a second | parallel, a second | ratio |")
    print("|---|---|---|---|---|---|")
    with tempfile.TemporaryDirectory(prefix="web2pdf-shelf-") as folder:
        for quiet in options.quiet:
            for jobs in options.jobs:
                measure(options.programs.absolute(), pathlib.Path(folder), quiet, jobs, options.seconds)


if __name__ == "__main__":
    main()
