"""Large batches: the numbers agree, and the program stays small."""

import collections
import os
import resource
import subprocess

import fake_tool
from batch import BATCH_DOMAIN, ENDED, FAILURE, NO_PDF, BatchTestCase

URLS, COCOA = "NSURLErrorDomain", "NSCocoaErrorDomain"
COUNT = 500
# Each is a hundredth: the error that remains, if one does, and how often the tool is called.
KINDS = {
    "format": (fake_tool.fails(COCOA, 259), (COCOA, 259), 1),
    "lost": (fake_tool.fails(URLS, -1005), (URLS, -1005), 3),
    "killed": (fake_tool.DIES, (BATCH_DOMAIN, ENDED), 3),
    "garbage": (fake_tool.ANSWERS_GARBAGE, (BATCH_DOMAIN, ENDED), 3),
    "no PDF": (fake_tool.WRITES_NO_PDF, (BATCH_DOMAIN, NO_PDF), 1),
    "late": (fake_tool.fails(URLS, -1001, "The deadline has passed."), (URLS, -1001), 1),
    "passing": (fake_tool.until(2, fake_tool.DIES), None, 2),
    "lacking": (fake_tool.lacks(1), None, 1),
}


class ManyTests(BatchTestCase):
    def setUp(self):
        super().setUp()
        self.expected = {}
        each = COUNT // 100
        for number in range(COUNT):
            kind = list(KINDS)[number // each] if number < each * len(KINDS) else None
            contents, error, _ = KINDS.get(kind, (fake_tool.CONVERTS, None, 1))
            name = f"{number % 7}/{number:04}"
            self.archive(name, contents)
            self.expected[name + ".pdf"] = error
        self.failing = sum(error is not None for error in self.expected.values())
        self.summary = {"total": COUNT, "converted": COUNT - self.failing, "failed": self.failing}
        self.calling = COUNT + each * sum(calls - 1 for _, _, calls in KINDS.values())

    def test_numbers_agree_however_many_run_at_once(self):
        # Without pdfinfo, which is not what is tested.
        environment = self.environment(PATH="/nowhere")
        for jobs in (1, 2, 7, 64):
            with self.subTest(jobs):
                self.output = self.folder / f"out{jobs}"
                for path in self.folder.glob("calls.*"):
                    path.unlink()
                run = self.run_batch("in", "-j", jobs, output=f"out{jobs}", environment=environment, status=FAILURE)
                self.assertEqual(run.summary, self.summary)
                self.assertEqual(self.called(), self.calling)
                words = collections.Counter(line.split("] ")[1].split()[0] for line in run.lines[:-1])
                self.assertEqual(words, {"converted": COUNT - self.failing, "failed": self.failing})
                self.assertEqual(len(self.lines_of()), COUNT)
                told = {pdf: (record["error_domain"], record["error_code"]) if "error" in record else None
                        for pdf, record in self.records().items()}
                self.assertEqual(told, self.expected)
                self.assert_converted(*(pdf for pdf, error in self.expected.items() if error is None))

    def test_few_descriptors_are_enough(self):
        def limit():
            resource.setrlimit(resource.RLIMIT_NOFILE, (256, 4096))
        run = self.run_batch("in", "-j", 64, environment=self.environment(PATH="/nowhere"), status=FAILURE,
                             preexec_fn=limit)
        self.assertEqual(run.summary, self.summary)


class MemoryTests(BatchTestCase):
    def most(self, *arguments, **options):
        """Bytes that the program itself has held at most; its children are measured by themselves."""
        child = subprocess.Popen(self.command(*arguments), cwd=self.folder, env=self.environment(PATH="/nowhere"),
                                 stdout=subprocess.DEVNULL, **options)
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        return child.returncode, usage.ru_maxrss * 1024

    def test_long_lists_take_little(self):
        listed = self.folder / "list"
        listed.write_text("".join(f"archive/of/the/year/{number % 100}/page number {number:06}.webarchive\n"
                                  for number in range(100_000)))
        with open(listed, "rb") as file:
            status, most = self.most("-", "-n", stdin=file)
        self.assertEqual(status, 0)
        self.assertLess(most, 120_000_000)

    def test_large_archives_and_pdfs_take_little(self):
        archive = self.archive("a", "/usr/bin/head -c 300000000 /dev/zero >\"$PDF\"; succeed; exit")
        with open(archive, "ab") as file:
            file.truncate(300_000_000)
        status, most = self.most("in", stdin=subprocess.DEVNULL)
        self.assertEqual(status, 0)
        self.assertLess(most, 60_000_000)
        self.assertEqual(self.records()["a.pdf"]["pdf_size"], 300_000_000)
