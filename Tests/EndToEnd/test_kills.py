"""The tool is killed at any moment: nothing outlives it, and every file is as it was or complete.

script/stress does this for as long as one likes; WEB2PDF_KILLS says how often, WEB2PDF_SEED with which dice.
"""

import os
import random
import signal
import subprocess
import time
import unittest

import processes
from pages import paragraphs
from test_deadline import large_pdf
from test_stored_pdf import stored
from tool import ToolTestCase, read_result

OLD = b"old contents"
LEAVES_ITS_CHILD = """
import subprocess, sys
print(subprocess.Popen(sys.argv[1:], stdout=subprocess.DEVNULL).pid)
"""
SIGNALS = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGKILL)


class KilledTests(ToolTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        for number in SIGNALS[:-1]:    # a shell has what runs in its background ignore some
            signal.signal(number, signal.SIG_DFL)

    def setUp(self):
        super().setUp()
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        self.output, self.answer = self.folder / "out" / "page.pdf", self.folder / "out" / "answer.plist"
        archives = {"page": paragraphs(300), "large": stored(large_pdf(60_000_000))}
        self.archives = {name: self.archive_file(archive, name) for name, archive in archives.items()}
        # How long a run takes, and what it makes.
        self.seconds, self.complete = {}, {}
        for name in self.archives:
            start = time.monotonic()
            self.finish(self.launch(name, "pipe"))
            self.seconds[name] = time.monotonic() - start
            self.complete[name] = self.output.stat().st_size
            self.assertGreater(self.complete[name], 1000)

    def launch(self, name, surroundings):
        command = [os.environ["WEB2PDF_TOOL"], "screen", self.archives[name], str(self.output), "uid"]
        if surroundings == "closed streams":
            command = ["/bin/sh", "-c", 'exec "$@" <&- >&- 2>&-', "sh", *command]
        if surroundings == "parent gone":
            command = ["/usr/bin/python3", "-c", LEAVES_ITS_CHILD, *command]
        more = {"OutPath": self.answer} if surroundings == "file" else {}
        child = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                 env=self.environment(**more), cwd=self.folder)
        self.addCleanup(child.stdout.close)
        if surroundings == "reader gone":
            child.stdout.close()
        return child

    def finish(self, child):
        answer = b"" if child.stdout.closed else child.stdout.read()
        child.wait(timeout=60)
        return answer

    def kill_once(self, dice):
        name = dice.choice(sorted(self.archives))
        surroundings = dice.choice(("pipe", "file", "closed streams", "parent gone", "reader gone"))
        number, seconds = dice.choice(SIGNALS), dice.uniform(0, 1.1) * self.seconds[name]
        has_old = dice.random() < 0.7
        for path in (self.folder / "out").iterdir():
            path.unlink()
        if has_old:
            self.output.write_bytes(OLD)
        with self.subTest(name, surroundings=surroundings, signal=number.name, seconds=round(seconds, 3), old=has_old):
            child = self.launch(name, surroundings)
            tool = int(child.stdout.readline()) if surroundings == "parent gone" else child.pid
            time.sleep(seconds)
            os.kill(tool, number)    # at worst a zombie, since nobody has waited for it
            answer = self.finish(child)
            self.assertEqual(processes.wait_until_none(5), {}, "processes outlived the tool")
            processes.reap()
            self.assertEqual(processes.carrying("WEB2PDF_TEST_RUN", self.marker), {})
            self.assert_files(name, has_old)
            self.assert_answer(answer)

    def assert_files(self, name, has_old):
        self.assertEqual(os.listdir(self.folder / "tmp"), [])
        self.assertLessEqual(set(os.listdir(self.folder / "out")), {"page.pdf", "answer.plist"})
        if not self.output.exists():
            self.assertFalse(has_old, "the old file is gone")
            return
        contents = self.output.read_bytes()
        if not (has_old and contents == OLD):
            # The engine's document is there first, then the one with the attributes.
            self.assertGreater(len(contents), self.complete[name] * 0.9)
            self.assertTrue(contents.endswith(b"%%EOF\n") or contents.endswith(b"%%EOF"), contents[-20:])

    def assert_answer(self, answer):
        for text in (answer, self.answer.read_bytes() if self.answer.exists() else b""):
            if text:
                self.assertTrue(read_result(text)["succeeded"])

    def test_at_random_moments(self):
        dice = random.Random(int(os.environ.get("WEB2PDF_SEED", "1")))
        for _ in range(int(os.environ.get("WEB2PDF_KILLS", "10"))):
            self.kill_once(dice)


if __name__ == "__main__":
    unittest.main()
