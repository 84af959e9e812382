"""Tests of the benchmark: its arithmetic, its pictures and tables, what it measures, and the pages that it makes."""

import contextlib
import io
import json
import os
import pathlib
import subprocess
import sys
import unittest
import unittest.mock
import xml.etree.ElementTree

import benchmark
import comparison
import figures
import library
import measure
import profiling
import report
from drawing import flames, plots, svg
from measure import Run
from tool import ToolTestCase
from workload.page import Page
from workload.suite import CURVES, ROWS

SIZES = (10, 100, 1_000, 10_000, 100_000)


def curve(cost, base=1.0):
    return [(size, base + cost(size)) for size in SIZES]


class SlopeTests(unittest.TestCase):
    def test_cost_that_grows_as_much_as_the_work(self):
        self.assertAlmostEqual(figures.slope(curve(lambda size: size / 1_000), 1.0), 1.0)

    def test_square_is_found_behind_a_start_that_costs_more(self):
        self.assertAlmostEqual(figures.slope(curve(lambda size: (size / 10_000) ** 2, 5.0), 5.0), 2.0)

    def test_square_of_which_one_point_shows_is_found(self):
        self.assertGreater(figures.slope(curve(lambda size: (size / 10_000) ** 2, 20.0), 20.0), 1.5)

    def test_square_is_found_behind_a_share_that_is_in_proportion(self):
        grown = figures.slope(curve(lambda size: size / 10_000 + (size / 10_000) ** 2), 1.0)
        self.assertGreater(grown, figures.TARGET)

    def test_what_cannot_be_told_from_the_base_does_not_count(self):
        """A start that now and then takes 0.2 s less would look like a steep rise."""
        points = curve(lambda size: size / 100_000, 0.3)
        self.assertGreater(figures.slope(points, 0.3 + 0.0999, 0.0), figures.TARGET)
        self.assertLess(figures.slope(points, 0.3 + 0.0999, 0.2), figures.TARGET)

    def test_cost_that_does_not_grow_has_none(self):
        self.assertIsNone(figures.slope(curve(lambda size: size % 7 / 100), 1.0))

    def test_order_of_the_points_does_not_matter(self):
        points = curve(lambda size: size / 100)
        self.assertAlmostEqual(figures.slope(points[::-1], 1.0), figures.slope(points, 1.0))


def row(wall, engine_wall=(1.0, 1.0, 1.0), **more):
    steady = {"cpu": [2.0], "memory": [300.0]}
    return {"web2pdf": {"wall": list(wall), **steady, **more}, "engine": {"wall": list(engine_wall), **steady}}


class ComparisonTests(unittest.TestCase):
    def test_ratio_is_that_of_the_turns(self):
        """A machine that becomes slower in the middle changes both programs' figures, and no ratio."""
        slower = row([0.9, 0.9, 9.0, 9.0, 9.0], [1.0, 1.0, 10.0, 10.0, 10.0])
        self.assertAlmostEqual(figures.ratio(slower["web2pdf"], slower["engine"], "wall"), 0.9)

    def test_one_run_that_was_held_up_does_not_count(self):
        held_up = row([0.9, 0.9, 30.0])
        self.assertAlmostEqual(figures.ratio(held_up["web2pdf"], held_up["engine"], "wall"), 0.9)

    def test_loss_of_more_than_a_tenth_is_found(self):
        committed = {"a": row([1.0] * 3), "b": row([1.0] * 3)}
        found = figures.losses({"a": row([1.12] * 3), "b": row([1.08] * 3)}, committed)
        self.assertEqual(found, ["a: wall is 1.12 times the engine's, was 1.00"])

    def test_loss_of_every_quantity_is_found(self):
        found = figures.losses({"a": row([1.0], cpu=[3.0], memory=[400.0])}, {"a": row([1.0])})
        self.assertEqual([loss.split()[1] for loss in found], ["cpu", "memory"])

    def test_row_that_fails_is_a_loss(self):
        failed = {**row([1.0]), "web2pdf": {"failed": "no PDF"}}
        found = figures.losses({"a": failed}, {"a": row([1.0])})
        self.assertEqual(found[-1], "a: no figures for wall; web2pdf: no PDF")

    def test_gain_and_row_that_was_not_measured_are_none(self):
        self.assertEqual(figures.losses({"a": row([0.5])}, {"a": row([1.0]), "b": row([1.0])}), [])


class TurnTests(unittest.TestCase):
    def compare(self, runs, wall=1.0, trouble=None, **more):
        """The figures of programs that take that long or have that trouble, and the calls: a program, and whether its
        memory was looked at."""
        calls = []

        def convert(program, _job, _tool, _timeout, memory):
            calls.append((program, memory))
            return Run(wall, 0.5, 100.0 if memory else 0, 0), trouble

        with unittest.mock.patch.object(comparison, "convert", convert), \
                unittest.mock.patch.object(comparison, "is_installed", lambda program: program != "wkhtmltopdf"), \
                contextlib.redirect_stderr(io.StringIO()):
            return comparison.compare(Page(""), "screen", "web2pdf", runs, **more), calls

    def test_programs_take_turns_and_memory_has_runs_of_its_own(self):
        found, calls = self.compare(5, programs=("web2pdf", "engine"))
        self.assertEqual(calls, [("web2pdf", False), ("engine", False)] * 5 + [("web2pdf", True), ("engine", True)] * 3)
        self.assertEqual(found["engine"], {"wall": [1.0] * 5, "cpu": [0.5] * 5, "memory": [100.0] * 3})

    def test_slow_program_runs_once_for_each(self):
        found, calls = self.compare(5, wall=61.0, programs=("engine",))
        self.assertEqual(calls, [("engine", False), ("engine", True)])
        self.assertEqual(found["engine"], {"wall": [61.0], "cpu": [0.5], "memory": [100.0]})

    def test_program_that_fails_is_not_tried_again(self):
        found, calls = self.compare(5, trouble="no PDF", programs=("weasyprint",))
        self.assertEqual((found, len(calls)), ({"weasyprint": {"failed": "no PDF"}}, 1))

    def test_program_that_is_missing_or_beyond_it_is_not_tried(self):
        found, calls = self.compare(1, programs=("wkhtmltopdf", "weasyprint"), beyond={"weasyprint": "shows no frames"})
        self.assertEqual((found, calls), ({"weasyprint": {"failed": "shows no frames"}}, []))


class CheckTests(unittest.TestCase):
    def check(self, *measured):
        """With one committed row and what each measurement of it finds: the exit status and what was printed."""
        committed = {"rows": {"small": row([1.0]), "tall": row([1.0])}}
        output = io.StringIO()
        with unittest.mock.patch.object(benchmark, "compare", side_effect=measured) as compare, \
                unittest.mock.patch.object(benchmark, "read", return_value=committed), \
                contextlib.redirect_stdout(output), contextlib.redirect_stderr(io.StringIO()):
            status = benchmark.check(["small"], "web2pdf", 3)
        self.assertEqual(compare.call_count, len(measured))
        return status, output.getvalue().strip()

    def test_row_that_is_worse_twice_fails(self):
        self.assertEqual(self.check(row([1.3]), row([1.2])), (1, "small: wall is 1.20 times the engine's, was 1.00"))

    def test_row_that_is_worse_once_passes(self):
        self.assertEqual(self.check(row([1.3]), row([1.0])), (0, "Nothing got worse."))

    def test_row_that_is_as_good_is_measured_once(self):
        self.assertEqual(self.check(row([1.0])), (0, "Nothing got worse."))


def library_report(times, error=None):
    """The library's program's, with one repetition of each row for each of the times, all of which have that error."""
    names = [name for row in library.ROWS for name in (row.ours, row.peer) if name]
    return {"benchmarks": [{"run_name": name, "run_type": kind, "cpu_time": time,
                            **({"error_occurred": True, "error_message": error} if error else {})}
                           for name in dict.fromkeys(names)
                           for kind, time in [*(("iteration", time) for time in times), ("aggregate", 1.0)]]}


class LibraryTests(unittest.TestCase):
    def cells(self, figures):
        """The table's cells by the title of the row, which are ours, the peer's, the ratio, the target, and whether it
        is met."""
        found = {}
        for line in library.table(figures).splitlines()[2:]:
            title, *rest = (cell.strip() for cell in line.strip("|").split("|"))
            found[title] = rest
        return found

    def row(self, ours, peer=None):
        """The cells of a row that may cost twice as much as its peer, or 1,500 ns, and costs that much."""
        made = library.Row("row", "ours", 2, "peer") if peer else library.Row("row", "ours", 1_500)
        with unittest.mock.patch.object(library, "ROWS", [made]):
            return self.cells({"ours": ours, "peer": peer})["row"]

    def test_best_repetition_counts(self):
        self.assertEqual(set(library.least(library_report([30.0, 20.0, 40.0])).values()), {20.0})

    def test_every_row_is_in_the_table(self):
        self.assertEqual(list(self.cells(library.least(library_report([7.0])))), [row.title for row in library.ROWS])

    def test_cost_is_compared_with_the_target(self):
        self.assertEqual(self.row(1_500), ["1,500", "–", "–", "1,500 ns", "yes"])
        self.assertEqual(self.row(1_501), ["1,501", "–", "–", "1,500 ns", "no"])

    def test_ratio_to_the_peer_is_compared_with_the_target(self):
        self.assertEqual(self.row(100, 50), ["100", "50.0", "2.00", "2 times", "yes"])
        self.assertEqual(self.row(101, 50), ["101", "50.0", "2.02", "2 times", "no"])

    def test_row_that_failed_is_told(self):
        self.assertEqual(library.failures(library_report([7.0])), [])
        self.assertIn("texts: no text", library.failures(library_report([7.0], "no text")))

    def test_row_that_is_missing_is_told(self):
        self.assertIn("texts: there is no such benchmark", library.failures({"benchmarks": []}))


def example():
    """The last point of each curve, and one row, have figures of the tool alone."""
    failed = {"web2pdf": {"wall": [2.0], "cpu": [1.0], "memory": [90.0]}, "engine": {"failed": "no <PDF>"}}
    point = lambda size: [size, row([1 + size / 100])]
    curves = {name: {"base": row([1.0]), "points": [*map(point, one.sizes[:-1]), [one.sizes[-1], failed]]}
              for name, one in CURVES.items()}
    profile = [{"process": "tool", "share": 1.0, "seconds": 2.0, "files": [["web2pdf", 0.5]]}]
    rows = {name: failed if name == "unseen" else row([1.0, 2.0]) for name in ROWS}
    return {"machine": {"kernel": "6"}, "profiles": {"small": profile}, "rows": rows, "curves": curves}


class PictureTests(unittest.TestCase):
    def texts(self, picture):
        root = xml.etree.ElementTree.fromstring(picture)
        return ["".join(element.itertext()) for element in root.iter("{http://www.w3.org/2000/svg}text")]

    def test_text_is_escaped(self):
        self.assertEqual(self.texts(svg.picture(9, 9, [svg.text(1, 2, '<&"> é')])), ['<&"> é'])

    def test_curves_have_a_panel_each(self):
        told = self.texts(plots.curves_plot(example()["curves"], "wall"))
        for name in CURVES:
            self.assertTrue(any(text.startswith(CURVES[name].title) for text in told), name)

    def test_rows_have_bars_with_their_ratios(self):
        told = self.texts(plots.rows_plot(example()["rows"]))
        self.assertEqual(told.count("1.50"), len(ROWS) - 1)
        self.assertIn(ROWS["unseen"].title, told)


# As the profiler prints it: innermost frame first.
SCRIPT = """web2pdf       10
\t55d0 qrv::(anonymous namespace)::wait(double)+0x10 (/usr/bin/web2pdf)
\t55d1 main (/usr/bin/web2pdf)

web2pdf       10
\tffff do_fault ([kernel.kallsyms])
\t55d1 main (/usr/bin/web2pdf)

Chrome_Main Thread    12
\t77d2 [unknown] (/usr/lib/chromium/chromium-headless-shell)
\t77d1 [unknown] (/usr/lib/chromium/chromium-headless-shell)
\t77d0 start (/usr/lib/libc.so.6)

perf       9
\t77d0 write (/usr/lib/libc.so.6)

"""


class ProfileTests(unittest.TestCase):
    samples = profiling.samples_of(SCRIPT, {10: "tool", 12: "engine: renderer", 9: None}, 100)

    def test_stacks_begin_with_their_process_and_hold_no_profiler(self):
        self.assertEqual(self.samples.stacks, {
            ("tool", "main", "qrv::(anonymous namespace)::wait"): 1, ("tool", "main", "do_fault"): 1,
            ("engine: renderer", "start", "[chromium-headless-shell]"): 1})

    def test_shares_are_those_of_all_samples(self):
        tool, renderer = self.samples.shares()
        self.assertEqual((tool["process"], tool["share"], tool["seconds"]), ("tool", 0.6667, 0.02))
        self.assertEqual(tool["files"], [["web2pdf", 0.3333], ["kernel", 0.3333]])
        self.assertEqual(renderer["files"], [["chromium-headless-shell", 0.3333]])

    def test_processes_are_known_by_their_command_lines(self):
        roles = {10: "tool"}
        told = {("/a/web2pdf", "screen"): "tool", ("/engine", "about:blank"): "engine: browser",
                ("/engine", "--type=renderer"): "engine: renderer", ("perf", "record"): None, (): None,
                ("/engine", "--type=utility", "--utility-sub-type=a.mojom.Service"): "engine: Service"}
        for words, role in told.items():
            self.assertEqual(profiling.role(list(words), 1, "/a/web2pdf", roles), role)
        self.assertEqual(profiling.role(["/a/web2pdf"], 10, "/a/web2pdf", roles), "tool's child")

    def test_frames_are_as_wide_as_their_share(self):
        root = xml.etree.ElementTree.fromstring(flames.flames(self.samples.stacks, "A <page>"))
        found = {}
        for frame in root.iter("{http://www.w3.org/2000/svg}rect"):
            for title in frame:
                found[title.text] = (float(frame.get("x")), float(frame.get("width")))
        self.assertEqual(found["tool: 66.7%"], (400.0, 800.0))
        self.assertEqual(found["qrv::(anonymous namespace)::wait: 33.3%"], (800.0, 400.0))
        self.assertEqual(found["start: 33.3%"], (0.0, 400.0))


class ReportTests(unittest.TestCase):
    def test_tables_are_replaced_and_prose_is_kept(self):
        document = "Before\n\n<!-- figures: wall -->\nold\n<!-- end of figures -->\n\nAfter\n"
        filled = report.filled(document, example())
        self.assertTrue(filled.startswith("Before\n\n<!-- figures: wall -->\n\n| page |"), filled)
        self.assertTrue(filled.endswith("<!-- end of figures -->\n\nAfter\n"), filled)
        self.assertNotIn("old", filled)
        self.assertIn("1.50 (1.00–2.00)", filled)
        self.assertEqual(report.filled(filled, example()), filled)

    def test_document_and_pictures_are_those_of_the_figures(self):
        results = json.loads(benchmark.RESULTS.read_text(encoding="utf-8"))
        document = benchmark.DOCUMENT.read_text(encoding="utf-8")
        self.assertEqual(document, report.filled(document, results))
        for name, picture in benchmark.pictures(results).items():
            self.assertEqual((benchmark.PLOTS / name).read_text(encoding="utf-8"), picture, name)
            self.assertIn(f"(performance/{name})", document)
        self.assertEqual({file.name for file in benchmark.PLOTS.glob("flames-*.svg")},
                         {f"flames-{name}.svg" for name in results["profiles"]})


# Uses half a second of a processor in a child for which nobody waits.
BURN = """
import os, time
def burn():
    while time.process_time() < 0.5:
        pass
"""
ORPHAN = BURN + """
if os.fork() == 0:
    os.setsid()
    if os.fork() == 0:
        burn()
    os._exit(0)
"""
KILLED_WITH_ITS_NAMESPACE = BURN + """
read_end, write_end = os.pipe()
if os.fork() == 0:
    burn()
    os.write(write_end, b".")
    time.sleep(600)
os.read(read_end, 1)
"""
HOLD = "import time; held = bytearray(b'x') * (200 << 20); time.sleep(2)"


def can_make_groups():
    try:
        return os.access(measure.parent_group(), os.W_OK)
    except measure.CannotMeasure:
        return False


@unittest.skipUnless(can_make_groups(), "nobody may make a control group here")
class MeasureTests(unittest.TestCase):
    def measure(self, script, prefix=(), timeout=60, **more):
        command = [*prefix, sys.executable, "-c", script]
        run = measure.measure(command, {"PATH": os.environ["PATH"]}, timeout, **more)
        self.assertEqual(list(measure.parent_group().glob(f"benchmark-{os.getpid()}")), [])
        return run

    def test_processor_time_of_orphans_counts(self):
        run = self.measure(ORPHAN)
        self.assertEqual(run.status, 0)
        self.assertGreater(run.cpu, 0.5)

    def test_processor_time_of_what_is_killed_with_its_namespace_counts(self):
        rights = [] if os.getuid() == 0 else ["--user"]
        run = self.measure(KILLED_WITH_ITS_NAMESPACE, ["unshare", "--pid", "--fork", *rights])
        self.assertEqual(run.status, 0)
        self.assertGreater(run.cpu, 0.5)

    def test_memory_is_that_of_the_largest_moment(self):
        self.assertGreater(self.measure(HOLD, memory=True).memory, 200)

    def test_what_takes_too_long_is_ended_with_all_of_its_processes(self):
        # The children keep the pipe open as long as one of them lives.
        read_end, write_end = os.pipe()
        script = "import os, time\nos.fork()\nos.setsid() if os.getpgrp() != os.getpid() else 0\ntime.sleep(600)"
        run = self.measure(script, timeout=1, pass_fds=[write_end])
        os.close(write_end)
        self.assertIsNone(run.status)
        self.assertEqual(os.read(read_end, 1), b"")
        os.close(read_end)


class PageTests(ToolTestCase):
    def test_pages_are_the_same_each_time_and_larger_with_their_size(self):
        for name, one in CURVES.items():
            with self.subTest(name):
                first, larger = one.make(one.sizes[0]), one.make(one.sizes[1])
                self.assertEqual(first, one.make(one.sizes[0]))
                self.assertGreater(len(larger.html) + len(larger.resources), len(first.html) + len(first.resources))

    def test_pictures_have_the_size_that_is_told(self):
        page = CURVES["bytes"].make(2)
        for name, (data, _) in page.resources.items():
            self.assertAlmostEqual(len(data) / 1e6, 1, delta=0.1, msg=name)

    def test_tool_converts_them_with_all_that_they_hold(self):
        page = Page("")
        for name in ("frames", "links", "bytes", "fonts"):
            more = CURVES[name].make(3)
            page.html += more.html
            page.resources |= more.resources
            page.frames |= more.frames
        archive = pathlib.Path(page.write_archive(self.folder / "page.webarchive")).read_bytes()
        run = self.convert(archive)
        self.assertIn("Frame 1", run.pdf.text())
        pictures = subprocess.run(["pdfimages", "-list", run.output], stdout=subprocess.PIPE, text=True, check=True)
        self.assertEqual(len(pictures.stdout.splitlines()) - 2, 3, pictures.stdout)
        fonts = subprocess.run(["pdffonts", run.output], stdout=subprocess.PIPE, text=True, check=True)
        for number in range(3):
            self.assertIn(f"+Benchmark{number} ", fonts.stdout)

    def test_tool_and_engine_alone_are_measured(self):
        page, tool = CURVES["links"].make(10), os.environ["WEB2PDF_TOOL"]
        if not can_make_groups():
            self.assertRaises(measure.CannotMeasure, comparison.compare, page, "screen", tool, 1)
            return
        with contextlib.redirect_stderr(io.StringIO()):
            found = comparison.compare(page, "screen", tool, 1, benchmark.BOTH)
        for program in benchmark.BOTH:
            self.assertEqual({quantity: len(values) for quantity, values in found[program].items()},
                             {"wall": 1, "cpu": 1, "memory": 1}, found)
            self.assertGreater(found[program]["memory"][0], 20)
            self.assertGreater(found[program]["cpu"][0], 0)

    def test_files_are_those_of_the_archive(self):
        page = CURVES["bytes"].make(1)
        address = page.write_files(self.folder / "files")
        self.assertEqual(address, (self.folder / "files" / "page.html").as_uri())
        self.assertEqual((self.folder / "files" / "page.html").read_text(encoding="utf-8"), page.html)
        self.assertEqual((self.folder / "files" / "0.png").read_bytes(), page.resources["0.png"][0])


if __name__ == "__main__":
    unittest.main()
