"""Tools that do not keep to what they should: what they leave is never taken for a PDF, and the rest goes on."""

import re
import resource
import signal
import time

import fake_tool
from batch import ENDED, FAILURE, NO_PDF, NOT_STARTED, TIMED_OUT, BatchTestCase

COCOA, URLS, POSIX, TOOL = ("NSCocoaErrorDomain", "NSURLErrorDomain", "NSPOSIXErrorDomain",
                            "org.quillvane.quillvane.web2pdf")
# What the tool does: the error's code, and how often it is tried.
FAULTS = {
    "killed": (fake_tool.DIES, ENDED, 3),
    "ended": (fake_tool.EXITS, ENDED, 3),
    "mute": (fake_tool.WRITES_NO_ANSWER, ENDED, 3),
    "garbage": (fake_tool.ANSWERS_GARBAGE, ENDED, 3),
    "cut off": ("write; printf '<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>succeeded</key><tr'",
                ENDED, 3),
    "without the word": ("write; answer '<key>path</key><string>x</string>'", ENDED, 3),
    "no dictionary": ("write; printf '<?xml version=\"1.0\"?><plist version=\"1.0\"><true/></plist>'", ENDED, 3),
    "no PDF": (fake_tool.WRITES_NO_PDF, NO_PDF, 1),
    "empty PDF": (fake_tool.WRITES_AN_EMPTY_PDF, NO_PDF, 1),
    "folder": (fake_tool.MAKES_A_FOLDER, NO_PDF, 1),
    "link": (fake_tool.MAKES_A_LINK, NO_PDF, 1),
}


class FaultTests(BatchTestCase):
    def test_what_is_no_success_is_none(self):
        for name, (contents, _, _) in FAULTS.items():
            self.archive(name, contents)
        self.archive("good")
        run = self.run_batch("in", status=FAILURE)
        self.assert_converted("good.pdf")
        for name, (_, code, attempts) in FAULTS.items():
            with self.subTest(name):
                self.assert_failed(name + ".pdf", code, attempts=attempts)
        self.assertEqual(run.summary, {"total": len(FAULTS) + 1, "converted": 1, "failed": len(FAULTS)})
        self.assertIn("was ended by signal 9 (Killed) without an answer", self.records()["killed.pdf"]["error"])

    def test_exit_status_says_nothing(self):
        self.archive("a", "convert; exit 7")
        self.archive("b", "convert; kill -9 $$")
        self.run_batch("in")
        self.assert_converted("a.pdf", "b.pdf")

    def test_answer_is_found_behind_megabytes_of_log(self):
        self.archive("a", "/usr/bin/head -c 50000000 /dev/zero >&2; convert")
        self.archive("b", fake_tool.lacks(2) + "; /usr/bin/head -c 50000000 /dev/zero >&2")
        self.run_batch("in")
        self.assert_converted("a.pdf", "b.pdf")
        self.assertEqual(self.records()["b.pdf"]["missing_count"], 2)

    def test_megabytes_in_place_of_an_answer(self):
        self.archive("a", "/usr/bin/head -c 50000000 /dev/zero; convert")
        self.run_batch("in", "--retries", 0, status=FAILURE)
        self.assert_failed("a.pdf", ENDED)

    def test_children_that_outlive_the_tool_are_ended(self):
        self.archive("a", "/bin/sleep 1000 & convert")
        self.archive("b", "/bin/sleep 1000 >&- 2>&- & convert")
        self.archive("c", "/bin/sleep 1000 & kill -9 $$")
        start = time.monotonic()
        self.run_batch("in", "--retries", 0, "-j", 1, status=FAILURE)
        self.assert_converted("a.pdf", "b.pdf")
        self.assertLess(time.monotonic() - start, 10)

    def test_tool_reads_nothing_of_the_list(self):
        self.archive("a", "while read -r LINE; do kill -9 $$; done; convert")
        self.archive("b")
        self.run_batch("-", "-j", 1, given="in/a.webarchive\nin/b.webarchive\n")
        self.assert_converted("in/a.pdf", "in/b.pdf")

    def test_tool_has_no_file_of_the_batch_open(self):
        for number in range(16):
            self.archive(str(number), '/bin/sleep 0.1; /bin/ls -l /proc/self/fd >"$CALLS.$ID"; convert')
        self.run_batch("in", "-j", 8)
        listed = [path.read_text() for path in self.folder.glob("calls.*")]
        self.assertEqual(len(listed), 16)
        for text in listed:
            # The standard streams, and the folder that is listed.
            self.assertEqual(re.findall(r" (\d+) -> ", text), ["0", "1", "2", "3"], text)
            self.assertRegex(text, r" 0 -> /dev/null\n(.*\n)+.* 2 -> pipe:.*\n.* 3 -> /proc/")

    def test_limits_of_the_caller_are_those_of_the_tool(self):
        self.archive("a", '[ "$(ulimit -n) $(ulimit -Hn)" = "256 512" ] && convert')
        self.run_batch("in", "--retries", 0,
                       preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (256, 512)))
        self.assert_converted("a.pdf")

    def test_signals_that_the_caller_ignores_are_not_ignored_by_the_tool(self):
        self.archive("a", "while read -r KEY VALUE; do [ $KEY = SigIgn: ] && IGNORED=$VALUE; done </proc/$$/status;"
                          "[ $IGNORED = 0000000000000000 ] && convert")
        self.run_batch("in", "--retries", 0, preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        self.assert_converted("a.pdf")

    def test_tool_is_told_all_there_is(self):
        self.archive("a", '[ "$#" = 4 ] && [ "$1" = screen ] && [ "$WEB2PDF_DEADLINE" = 77.000000 ] &&'
                          ' [ "$WEB2PDF_XMP$WEB2PDF_ATTACH_ARCHIVE" = 11 ] && [ -z "${OutPath+set}" ] && convert')
        self.run_batch("in", "-m", "screen", "--timeout", 77, "--xmp", "--attach",
                       environment=self.environment(OutPath="/elsewhere", WEB2PDF_DEADLINE="1"))
        self.archive("a", '[ "$1" = print ] && [ -z "${WEB2PDF_DEADLINE+set}${WEB2PDF_XMP+set}" ] && convert')
        self.run_batch("in", "--timeout", 0, environment=self.environment(WEB2PDF_DEADLINE="1"))
        self.assert_converted("a.pdf")

    def test_tool_that_is_none_is_refused(self):
        self.archive("a")
        plain = self.folder / "plain"
        plain.write_text("no program")
        for tool in ("missing", "in", str(plain), "/dev/null", "missing/web2pdf"):
            with self.subTest(tool):
                self.assert_refused("--tool", "in", tool=tool)

    def test_tool_that_cannot_be_run_is_no_fault_of_the_archives(self):
        self.archive("a")
        broken = self.script("broken", "#!/no/such/interpreter\n")
        self.run_batch("in", status=FAILURE, tool=broken)
        self.assert_failed("a.pdf", NOT_STARTED)
        self.run_batch("in")
        self.assert_converted("a.pdf")


class RetryTests(BatchTestCase):
    def test_what_can_pass_is_tried_again(self):
        passing = {"lost": fake_tool.fails(URLS, -1005), "killed": fake_tool.DIES, "memory": fake_tool.fails(POSIX, 12),
                   "silent": fake_tool.fails(URLS, -1001, "The request timed out.")}
        for name, before in passing.items():
            self.archive(name, fake_tool.until(3, before))
        self.run_batch("in")
        self.assert_converted(*(name + ".pdf" for name in passing))
        self.assertEqual({record["attempts"] for record in self.records().values()}, {3})
        self.assertEqual(self.called(), 3 * len(passing))

    def test_as_often_as_was_asked(self):
        self.archive("a", fake_tool.fails(URLS, -1005, "Lost."))
        for retries in (0, 1, 4):
            run = self.run_batch("in", "--retries", retries, "--retry-failed", status=FAILURE)
            self.assertEqual(self.called(), 1 + retries)
            self.assert_failed("a.pdf", -1005, URLS, attempts=1 + retries)
            self.assertIn("failed    in/a.webarchive: Lost. (NSURLErrorDomain -1005)", run.output)

    def test_pdf_of_an_attempt_that_failed_is_not_that_of_the_next(self):
        self.archive("a", 'count; if [ $ATTEMPT = 1 ]; then write; exit; fi; succeed')
        self.run_batch("in", status=FAILURE)
        self.assert_failed("a.pdf", NO_PDF, attempts=2)

    def test_what_stays_is_tried_once(self):
        staying = {"format": (COCOA, 259), "nothing": (COCOA, 260), "frames": (TOOL, 3), "other": ("Other", 1),
                   "space": (POSIX, 28), "number": (URLS, 12)}
        for name, (domain, code) in staying.items():
            self.archive(name, fake_tool.fails(domain, code))
        self.archive("late", fake_tool.fails(URLS, -1001, "The deadline has passed."))
        self.run_batch("in", status=FAILURE)
        for name, (domain, code) in staying.items():
            self.assert_failed(name + ".pdf", code, domain)
        self.assert_failed("late.pdf", -1001, URLS)
        self.assertEqual(self.called(), len(staying) + 1)

    def test_memory_is_limited_the_first_time(self):
        self.archive("a", 'count; if [ $ATTEMPT = 1 ]; then LIMIT=${WEB2PDF_MEMORY_LIMIT:?}; exit 1; fi;'
                          ' [ -z "${WEB2PDF_MEMORY_LIMIT+set}" ] && convert')
        self.run_batch("in", "--retries", 1)
        self.assertEqual(self.records()["a.pdf"]["attempts"], 2)
        self.archive("a", '[ "$WEB2PDF_MEMORY_LIMIT" = 77 ] && convert')
        self.run_batch("in", "--retries", 0, environment=self.environment(WEB2PDF_MEMORY_LIMIT="77"))

    def test_text_of_an_error_is_harmless(self):
        self.archive("a", fake_tool.fails("D\u202eomain", 5, "one\ntwo \u202ethree \x9b31m"))
        run = self.run_batch("in", status=FAILURE)
        self.assertEqual(len(run.lines), 2)
        record = self.records()["a.pdf"]
        self.assertEqual((record["error"], record["error_domain"]), ("one\ntwo \u202ethree \x9b31m", "D\u202eomain"))


class TimeTests(BatchTestCase):
    def test_tool_that_hangs_is_ended_with_its_children(self):
        self.archive("hanging", fake_tool.HANGS)
        self.archive("with children", "/bin/sleep 1000 & /bin/sleep 1000 & wait")
        self.archive("without pipes", fake_tool.CLOSES_ITS_PIPES)
        self.archive("stopped", "write; succeed; kill -STOP $$")
        self.archive("deaf", "trap '' TERM INT HUP; write; while :; do /bin/sleep 1000; done")
        self.archive("good")
        start = time.monotonic()
        self.run_batch("in", "--timeout", 1, "-j", 6, status=FAILURE)
        took = time.monotonic() - start
        self.assertGreater(took, 11)
        self.assertLess(took, 25)
        self.assert_converted("good.pdf")
        for name in ("hanging", "with children", "without pipes", "stopped", "deaf"):
            self.assert_failed(name + ".pdf", TIMED_OUT)

    def test_program_that_is_stopped_for_a_while_takes_what_was_done_meanwhile(self):
        self.archive("a", "/bin/sleep 0.5; convert")
        child = self.start_batch("in", "--timeout", 1)
        self.wait_for(self.calls.exists)
        child.send_signal(signal.SIGSTOP)
        time.sleep(12)
        child.send_signal(signal.SIGCONT)
        self.end_of(child)
        self.assert_converted("a.pdf")

    def test_without_a_limit_there_is_none(self):
        self.archive("a", "/bin/sleep 2; convert")
        self.run_batch("in", "--timeout", 0)
        self.assert_converted("a.pdf")
