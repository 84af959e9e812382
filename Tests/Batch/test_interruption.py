"""Runs that are ended before their time: nothing is left of what was under way, and what was finished stays."""

import os
import signal

import pages
import processes
from batch import INTERRUPTED, BatchTestCase

SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)
# Seconds for which the tool waits for each page: for longer than the test does.
QUIET = 60


class SignalTests(BatchTestCase):
    """With the stand-in."""

    def start_and_wait(self, *arguments, **options):
        self.archives("a", "b")
        for name in ("c", "d", "e"):
            self.archive(name, 'write; [ -e go ] || /bin/sleep 1000; succeed')
        child = self.start_batch("in", "-j", 2, *arguments, **options)
        self.wait_for(lambda: self.calls.exists() and len(self.calls.read_text().splitlines()) == 4)
        self.wait_for(lambda: len(self.lines_of()) == 2)
        return child

    def assert_the_rest_is_done(self):
        (self.folder / "go").touch()
        self.called()
        run = self.run_batch("in")
        self.assertEqual(run.summary, {"total": 5, "converted": 3, "converted before": 2})
        self.assertEqual(self.called(), 3)
        self.assert_converted("a.pdf", "b.pdf", "c.pdf", "d.pdf", "e.pdf")

    def test_signals_end_the_run_and_keep_what_is_finished(self):
        for number in SIGNALS:
            with self.subTest(number.name):
                self.output = self.folder / number.name
                (self.folder / "go").unlink(missing_ok=True)
                self.calls.unlink(missing_ok=True)
                child = self.start_and_wait(output=number.name)
                child.send_signal(number)
                run = self.end_of(child, INTERRUPTED, timeout=20)
                self.assertEqual(run.summary, {"total": 5, "converted": 2, "left": 3})
                self.assert_converted("a.pdf", "b.pdf")

    def test_rest_is_done_by_the_next_run(self):
        child = self.start_and_wait()
        child.terminate()
        self.end_of(child, INTERRUPTED, timeout=20)
        self.assert_the_rest_is_done()

    def test_many_signals_are_like_one(self):
        child = self.start_and_wait()
        for number in SIGNALS * 5:
            child.send_signal(number)
        self.end_of(child, INTERRUPTED, timeout=20)
        self.assert_the_rest_is_done()

    def test_manifest_is_written_of_what_is_finished(self):
        child = self.start_and_wait("--manifest")
        child.terminate()
        self.end_of(child, INTERRUPTED, timeout=20)
        self.assertEqual(len((self.output / "manifest-sha256.txt").read_text().splitlines()), 2)

    def test_signals_that_are_ignored_stay_so(self):
        for number in SIGNALS:
            with self.subTest(number.name):
                (self.folder / "go").unlink(missing_ok=True)
                self.calls.unlink(missing_ok=True)
                self.output = self.folder / number.name
                for name in ("a", "b"):
                    self.archive(name)
                child = self.start_waiting(number)
                child.send_signal(number)
                (self.folder / "go").touch()
                self.end_of(child)

    def start_waiting(self, number):
        self.archive("c", "while [ ! -e go ]; do /bin/sleep 0.05; done; convert")
        child = self.start_batch("in", output=number.name, preexec_fn=lambda: signal.signal(number, signal.SIG_IGN))
        self.wait_for(lambda: self.calls.exists() and len(self.calls.read_text().splitlines()) == 3)
        return child

    def test_nohup(self):
        self.archive("a", "while [ ! -e go ]; do /bin/sleep 0.05; done; convert")
        child = self.start_batch("in", preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        self.wait_for(self.calls.exists)
        os.killpg(child.pid, signal.SIGHUP)
        (self.folder / "go").touch()
        self.end_of(child)
        self.assert_converted("a.pdf")

    def test_signal_to_the_whole_group_is_like_one_to_the_program(self):
        child = self.start_and_wait()
        os.killpg(child.pid, signal.SIGINT)
        self.end_of(child, INTERRUPTED, timeout=20)
        self.assert_the_rest_is_done()

    def test_killed(self):
        child = self.start_and_wait()
        child.kill()
        self.wait_for(lambda: child.poll() is not None)
        # The stand-in has children that nobody ends for it, unlike the tool.
        self.end_of_killed(child)
        self.assert_the_rest_is_done()
        self.assertEqual(self.strays(), [])

    def end_of_killed(self, child):
        child.communicate(timeout=20)
        self._end_what_is_left()
        processes.reap()


class RealConversionTests(BatchTestCase):
    real = True

    def setUp(self):
        super().setUp()
        for number in range(6):
            self.archive(str(number), pages.page(f"<p>Text{number}</p>"))
        self.all = [f"{number}.pdf" for number in range(6)]

    def start_and_wait(self):
        """When this returns, two are finished and others shown by engines."""
        self.run_batch("in/0.webarchive", "in/1.webarchive")
        self.set_preferences({"WebToolExtraLoadingTime": QUIET})
        child = self.start_batch("in", "-j", 3)
        self.wait_for(lambda: len(processes.descendants(child.pid)) > 9, 20)
        return child

    def finish(self):
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        run = self.run_batch("in")
        self.assertEqual(run.summary, {"total": 6, "converted": 4, "converted before": 2})
        self.assert_converted(*self.all)

    def test_signals_end_engines_and_keep_what_is_finished(self):
        for number in SIGNALS:
            with self.subTest(number.name):
                child = self.start_and_wait()
                child.send_signal(number)
                run = self.end_of(child, INTERRUPTED, timeout=20)
                self.assertEqual(run.summary, {"total": 6, "converted": 0, "converted before": 2, "left": 4})
                self.assert_converted("0.pdf", "1.pdf")
        self.finish()

    def test_killed_program_leaves_no_process(self):
        child = self.start_and_wait()
        child.kill()
        child.communicate(timeout=20)
        self.assert_nothing_left(fresh_files=True)
        self.finish()
