"""One of the engine's processes is killed at a random moment of a conversion.

WEB2PDF_KILLS is the number of kills, WEB2PDF_KILLS_SEED what the moments and the victims are drawn from.
"""

import os
import random
import time
import unittest

import processes
from keyedarchive import read_error
from pages import paragraphs
from tool import KILL, ToolTestCase, read_result

KILLS = int(os.environ.get("WEB2PDF_KILLS", "12"))
SEED = int(os.environ.get("WEB2PDF_KILLS_SEED", "1"))
LONGEST = 25    # seconds; a conversion takes two, a loss is noticed within five
KINDS = ("browser", "zygote", "gpu-process", "renderer", "any")


def kind_of(pid):
    """What an engine's process is; empty for one that is gone or none of the engine's."""
    try:
        with open(f"/proc/{pid}/cmdline", "rb") as file:
            line = file.read().replace(b"\0", b" ").decode(errors="replace")
    except OSError:
        return ""
    if "--type=" in line:
        return line.split("--type=")[1].split(" ")[0]
    return "browser" if "--remote-debugging-pipe" in line else ""


def zygote_of_pages(tool):
    """The zygote among whose descendants is a page process, or None."""
    for pid in processes.descendants(tool):
        if kind_of(pid) == "zygote" and "renderer" in map(kind_of, processes.descendants(pid)):
            return pid
    return None


class KillTests(ToolTestCase):
    def test_process_killed_at_any_moment(self):
        self.set_preferences({"WebToolExtraLoadingTime": 1})
        archive = self.archive_file(paragraphs(3000))
        chance = random.Random(SEED)
        duration = self.duration(archive)
        killed = 0
        for number in range(KILLS):
            kind = KINDS[number % len(KINDS)]
            moment = chance.uniform(0, duration)
            with self.subTest(number=number, kind=kind, moment=moment, seed=SEED):
                killed += self.kill_and_judge(archive, number, kind, moment, chance)
        self.assertGreater(killed, KILLS // 3, "too few conversions had such a process")

    def test_zygote_is_killed_as_soon_as_it_has_a_page(self):
        archive = self.archive_file(paragraphs(3000))
        for number in range(3):
            with self.subTest(number=number):
                output = self.folder / "out" / f"{number}.pdf"
                child = self.start("screen", archive, output, "uid")
                found = processes.wait_for(lambda tool=child.pid: zygote_of_pages(tool), 30)
                self.assertIsNotNone(found, "no page process came")
                os.kill(zygote_of_pages(child.pid), KILL)
                self.judge(child, output)

    def duration(self, archive):
        """In seconds, of a conversion in which nothing is killed; how long one takes is the machine's affair."""
        start = time.monotonic()
        child = self.start("screen", archive, self.folder / "out" / "whole.pdf", "uid")
        answer, log = child.communicate(timeout=90)
        self.assertTrue(read_result(answer)["succeeded"], log.decode())
        return time.monotonic() - start

    def kill_and_judge(self, archive, number, kind, moment, chance):
        output = self.folder / "out" / f"{number}.pdf"
        child = self.start(("screen", "print")[number % 2], archive, output, "uid")
        time.sleep(moment)
        engine = [pid for pid in processes.descendants(child.pid) if kind_of(pid)]
        victims = sorted(pid for pid in engine if kind in ("any", kind_of(pid)))
        victim = chance.choice(victims) if victims else None
        if victim:
            try:
                os.kill(victim, KILL)
            except ProcessLookupError:
                victim = None
        self.judge(child, output)
        return victim is not None

    def judge(self, child, output):
        start = time.monotonic()
        answer, log = child.communicate(timeout=90)
        self.assertLess(time.monotonic() - start, LONGEST, log.decode())
        self.assertEqual(child.returncode, 0, log.decode())
        result = read_result(answer)
        if result["succeeded"]:
            self.assertGreater(output.stat().st_size, 0)
        else:
            error = read_error(result["errorData"])
            # While the page is drawn it is the print that fails, and the log says why.
            self.assertIn((error.domain, error.code), {("NSURLErrorDomain", -1005), ("NSCocoaErrorDomain", 512)})
            self.assertIn("Code=-1005", log.decode())
            self.assertFalse(output.exists())
        self.assert_nothing_left()


if __name__ == "__main__":
    unittest.main()
