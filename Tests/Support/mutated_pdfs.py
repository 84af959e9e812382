#!/usr/bin/python3
"""Damages sound PDF files at random, has the tool hand them on, and sums up how it bore them.

    mutated_pdfs.py --count 1000 --seed 1 --tool build/release/bin/web2pdf --jobs 2

prints one line: the number of files, how many were stamped, handed on as they are and refused, the rules broken by
kind, the memory of the largest process, and the longest processor time and time of a run. The exit status is 1 when a
rule was broken; then --keep FOLDER holds each such file with the tool's log. The same seed gives the same files.
"""

import argparse
import collections
import concurrent.futures
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile

import hostile_pdfs
from images import png
from stored_pdfs import hand_on
from webarchive import Resource, html_archive

TOKEN = re.compile(rb"[^\s()<>\[\]{}/%]+|[()<>\[\]{}/%]|\s+")
NUMBER = re.compile(rb"(?<![\w.])-?\d+(?:\.\d+)?(?![\w.])")
EDGES = [b"-1", b"0", b"1", b"2", b"0.5", b"-0.0", b"255", b"65536", b"2147483647", b"2147483648", b"-2147483648",
         b"4294967296", b"9223372036854775807", b"9223372036854775808", b"99999999999999999999999", b"1e999", b"null"]


# Each changes a few places of a file.

def flip_bytes(data, choose):
    changed = bytearray(data)
    for _ in range(choose.choice((1, 1, 2, 20))):
        changed[choose.randrange(len(changed))] ^= choose.randint(1, 255)
    return bytes(changed)


def swap_tokens(data, choose):
    # Within a piece: a whole file of compressed bytes has too many tokens to take apart.
    start = choose.randrange(len(data))
    end = start + 4000
    tokens = TOKEN.findall(data[start:end])
    for _ in range(choose.choice((1, 1, 3))):
        first, second = choose.randrange(len(tokens)), choose.randrange(len(tokens))
        tokens[first], tokens[second] = tokens[second], tokens[first]
    return data[:start] + b"".join(tokens) + data[end:]


def truncate(data, choose):
    return data[:choose.randrange(1, len(data))]


def duplicate_piece(data, choose):
    start, place = choose.randrange(len(data)), choose.randrange(len(data))
    piece = data[start:start + choose.choice((1, 10, 100, 1000))]
    return data[:place] + piece * choose.choice((1, 1, 2, 50)) + data[place:]


def remove_piece(data, choose):
    start = choose.randrange(len(data))
    return data[:start] + data[start + choose.choice((1, 10, 100, 1000)):] or data


def replace_numbers(data, choose):
    # Those of compressed bytes are no numbers.
    places = [match.span() for match in NUMBER.finditer(data)]
    for start, end in sorted(choose.sample(places, min(len(places), choose.choice((1, 1, 3)))), reverse=True):
        data = data[:start] + choose.choice(EDGES) + data[end:]
    return data


WAYS = (flip_bytes, swap_tokens, truncate, duplicate_piece, remove_piece, replace_numbers, replace_numbers)


def mutated(data, choose):
    for _ in range(choose.choice((1, 1, 1, 2))):
        data = choose.choice(WAYS)(data, choose)
    return data


# What is damaged

def printed(tool, folder, environment):
    """The prints of a page that has something of most kinds, in both modes."""
    body = ("<!DOCTYPE html><title>Seed</title><h1>Heading</h1><p>Text with <a href='http://a.example/'>a link</a>, "
            "<a href='#end'>another</a> and <i>slanted</i> letters.</p><img src='a.png' width=99><table border=1><tr><td>a"
            "<td>b</table><ul><li>One<li>Two</ul><p style='background:linear-gradient(red,#0000);height:90px'>"
            "<h2 id=end style='margin-top:900px'>End</h2>")
    archive = html_archive(body, "http://site.example/").add(
        Resource("http://site.example/a.png", png(9, 9, (20, 160, 70)), "image/png"))
    (folder / "seed.webarchive").write_bytes(archive.bytes())
    for mode in ("screen", "print"):
        output = folder / f"{mode}.pdf"
        subprocess.run([tool, mode, folder / "seed.webarchive", output, "uid"], env=environment, timeout=120, check=True,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        yield output.read_bytes()


def rewritten(data, folder, *options):
    """The same document as another program would write it."""
    (folder / "in.pdf").write_bytes(data)
    subprocess.run(["qpdf", *options, folder / "in.pdf", folder / "out.pdf"], timeout=60, check=True)
    return (folder / "out.pdf").read_bytes()


def seeds(tool, folder, environment):
    screen, sheets = printed(tool, folder, environment)
    plain = ("--qdf", "--object-streams=disable")
    return [hostile_pdfs.plain(), hostile_pdfs.mixed(), hostile_pdfs.cyclic_outlines(), screen, sheets,
            rewritten(screen, folder, *plain), rewritten(sheets, folder, "--linearize"),
            rewritten(hostile_pdfs.mixed(), folder, *plain)]


# The survey

class Survey:
    """What came of all runs together."""

    def __init__(self, seed):
        self.seed = seed
        self.count = 0
        self.kinds = collections.Counter()
        self.faults = collections.Counter()
        self.memory = self.processor_time = self.time = 0

    def add(self, outcome):
        self.count += 1
        self.kinds[outcome.kind] += 1
        self.faults.update(outcome.faults)
        self.memory = max(self.memory, outcome.memory)
        self.processor_time = max(self.processor_time, outcome.processor_time)
        self.time = max(self.time, outcome.time)

    def __str__(self):
        faults = ", ".join(f"{kind}: {count}" for kind, count in sorted(self.faults.items())) or "none"
        return (f"mutated PDFs: {self.count} files of seed {self.seed}; {self.kinds['stamped']} stamped, "
                f"{self.kinds['as it is']} handed on as they are, {self.kinds['refused']} refused; broken rules: {faults}; "
                f"at most {self.memory / 1e6:.0f} MB in a process, {self.processor_time:.1f} s of processor time, "
                f"{self.time:.1f} s")


def survey(tool, count, seed, jobs, environment, keep=None):
    total = Survey(seed)
    with tempfile.TemporaryDirectory(prefix="web2pdf-mutated-") as name:
        folder = pathlib.Path(name)
        originals = seeds(tool, folder, environment)

        def run(number):
            choose = random.Random(f"{seed} {number}")
            pdf = mutated(choose.choice(originals), choose)
            with tempfile.TemporaryDirectory(dir=folder) as place:
                outcome = hand_on(tool, pdf, place, environment)
            if outcome.faults and keep:
                keep.mkdir(parents=True, exist_ok=True)
                (keep / f"{seed}-{number}.pdf").write_bytes(pdf)
                (keep / f"{seed}-{number}.log").write_text(f"{outcome.faults}\n{outcome.log}", encoding="utf-8")
            return outcome

        with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
            for outcome in pool.map(run, range(count)):
                total.add(outcome)
    return total


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=1000)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--tool", required=True, type=os.path.abspath)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--keep", type=pathlib.Path)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="web2pdf-home-") as home:
        settings = pathlib.Path(home) / "preferences" / "org.quillvane.Quillvane.plist"
        settings.parent.mkdir()
        settings.write_text('<?xml version="1.0"?><plist version="1.0"><dict><key>WebToolExtraLoadingTime</key>'
                            "<integer>0</integer></dict></plist>", encoding="utf-8")
        environment = {**os.environ, "HOME": home, "XDG_CONFIG_HOME": home}
        total = survey(options.tool, options.count, options.seed, options.jobs, environment, options.keep)
    print(total)
    sys.exit(1 if total.faults else 0)


if __name__ == "__main__":
    main()
