#!/usr/bin/python3
"""Converts hostile pages and prints a row for each.

    hostile.py --tool build/dev/bin/web2pdf              # the quick ones
    hostile.py --tool build/dev/bin/web2pdf --all --jobs 2
    hostile.py --tool build/dev/bin/web2pdf navigation styles/huge-grid

Fails when a page does not end as it must.
"""

import argparse
import importlib
import multiprocessing
import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE.parent / "Support"), str(HERE / "pages")]

import processes
from judge import judge

FAMILIES = sorted(file.stem for file in (HERE / "pages").glob("*.py"))


def pages(family):
    return importlib.import_module(family).PAGES


def _judge_named(work):
    family, name, tool = work
    processes.adopt_orphans()
    page = next(page for page in pages(family) if page.name == name)
    return family, name, judge(page, tool)


def main():
    parser = argparse.ArgumentParser(description="Converts hostile pages and prints a row for each.")
    parser.add_argument("--tool", required=True, help="the program")
    parser.add_argument("--jobs", type=int, default=1, help="how many pages at once")
    parser.add_argument("--all", action="store_true", help="all pages, not the quick ones alone")
    parser.add_argument("only", nargs="*", help="families, or pages as family/name")
    options = parser.parse_args()
    chosen = [(family, page.name, options.tool) for family in FAMILIES for page in pages(family)
              if (family in options.only or f"{family}/{page.name}" in options.only if options.only
                  else options.all or page.quick)]
    failed = 0
    # A process for each page: what is left of it is then its own.
    with multiprocessing.Pool(options.jobs, maxtasksperchild=1) as pool:
        for family, name, verdict in pool.imap_unordered(_judge_named, chosen, chunksize=1):
            failed += bool(verdict.problems)
            print(f"{'FAILED' if verdict.problems else 'ok':7}{verdict.seconds:6.1f} s{verdict.megabytes:6.0f} MB  "
                  f"{family}/{name:34} {verdict.outcome}  {'; '.join(verdict.problems)}", flush=True)
    print(f"{len(chosen)} pages, {failed} failed")
    return 1 if failed or not chosen else 0


if __name__ == "__main__":
    sys.exit(main())
