"""The script for Slurm, on a cluster of one machine that the tests start. Slurm's servers run as root only."""

import os
import unittest

from shelf import SCRIPTS, ShelfTestCase, kill
from slurm import Cluster

NOBODY = 65534


class SlurmTestCase(ShelfTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        if os.getuid() != 0:
            raise unittest.SkipTest("the servers of Slurm need root")
        cls.cluster = Cluster(cpus=16)
        cls.addClassCleanup(cls.cluster.stop)

    def setUp(self):
        super().setUp()
        self.addCleanup(self.assert_nothing_runs)

    def assert_nothing_runs(self):
        self.cluster.run("scancel", "--state=PENDING")
        self.cluster.run("scancel", "--full")
        self.wait_for(lambda: self.cluster.run("squeue", "--noheader").stdout == "", 30)
        self.assertEqual(self.batches(), [])

    def submit(self, shards, *options, user=None, **settings):
        """The numbers of the two jobs."""
        done = self.cluster.run(SCRIPTS / "slurm.sh", shards, self.shelf, self.pdfs, "--jobs", 1, *options, user=user, PATH=self.path,
                                SBATCH_OUTPUT=f"{self.pdfs}/%A_%a.log", SBATCH_MEM_PER_CPU="100", **settings)
        self.assertEqual(done.returncode, 0, done.stderr)
        words = done.stdout.replace(",", "").split()
        return words[1], words[3]

    def convert(self, shards, *options, **settings):
        """The states of the tasks when all have ended, and that of the report."""
        job, report = self.submit(shards, *options, **settings)
        report_state, = self.cluster.finish(report).values()
        return self.cluster.states(job), report_state[0]

    def log(self):
        return "\n".join(path.read_text(encoding="utf-8") for path in sorted(self.pdfs.glob("*.log")))

    def assert_all_done(self, ended, count):
        states, report = ended
        self.assertEqual(set(states.values()), {("COMPLETED", "0:0")}, self.log())
        self.assertEqual(report, "COMPLETED", self.log())
        self.assertEqual(len(self.written()), count)
        self.assert_report_names(count)


class SlurmTests(SlurmTestCase):
    def assert_arrays_of_eight_convert(self, user):
        self.tool_takes(0)
        self.fill(16)
        ended = self.convert(8, user=user)
        self.assert_all_done(ended, 16)
        self.assertEqual(ended[0].keys(), {str(shard) for shard in range(8)})
        self.assertEqual(self.attempts(), {f"page-{number}": 1 for number in range(16)})

    def test_root_converts(self):
        self.assert_arrays_of_eight_convert(None)

    def test_a_user_converts(self):
        self.assert_arrays_of_eight_convert(NOBODY)
        self.assertEqual({path.stat().st_uid for path in self.pdfs.rglob("*.pdf")}, {NOBODY})

    def test_an_archive_that_fails_makes_its_task_fail_and_no_other(self):
        self.tool_takes(0)
        self.fill(6, "spoiled")
        states, report = self.convert(3)
        self.assertEqual(sorted(states.values()), [("COMPLETED", "0:0")] * 2 + [("FAILED", "1:0")])
        self.assertEqual(len(self.written()), 6)

    def test_a_task_without_memory_says_so_and_converts_the_others(self):
        if not self.cluster.limits_memory:
            self.skipTest("Slurm limits memory by control groups of version 1, or with systemd")
        self.tool_takes(0)
        self.fill(4, "greedy")
        states, _ = self.convert(1, "--retries", 0)
        self.assertEqual(states, {"0": ("OUT_OF_MEMORY", "0:125")}, self.log())
        self.assertEqual(self.written(), {f"page-{number}" for number in range(4)})


class SlurmInterruptionTests(SlurmTestCase):
    def test_a_task_that_is_killed_is_taken_up_by_the_next_submission(self):
        self.tool_takes(1)
        self.fill(12)
        job, report = self.submit(2)
        self.wait_for(lambda: len(self.attempts()) >= 2 and len(self.batches()) == 2)
        kill(self.batches()[0])
        states = self.cluster.finish(report) and self.cluster.states(job)
        self.assertEqual(sorted(states.values()), [("COMPLETED", "0:0"), ("FAILED", "0:9")])
        before = self.attempts()
        self.assertLess(len(before), 12)
        self.assert_all_done(self.convert(2), 12)
        self.assertLessEqual(before.items(), self.attempts().items())

    def test_a_task_that_is_cancelled_keeps_what_it_has_finished(self):
        self.tool_takes(1)
        self.fill(8)
        job, report = self.submit(1)
        self.wait_for(lambda: len(self.attempts()) >= 2)
        self.cluster.run("scancel", f"{job}_0")
        self.cluster.finish(report)
        before = self.attempts()
        self.assertEqual(self.cluster.states(job)["0"][0], "CANCELLED")
        self.assertTrue(2 <= len(before) < 8, before)
        self.assert_all_done(self.convert(1), 8)
        self.assertLessEqual(before.items(), self.attempts().items())

    def test_before_the_time_is_over_a_task_ends_by_itself(self):
        """Slurm looks at the time twice a minute only, so that this one's signal comes within half a minute."""
        self.tool_takes(2)
        self.fill(60)
        states, _ = self.convert(1, SBATCH_TIMELIMIT="1", SBATCH_SIGNAL="B:TERM@55")
        self.assertEqual(states, {"0": ("FAILED", "130:0")}, self.log())
        self.assertTrue(0 < len(self.attempts()) < 60)
        self.assertEqual(self.written(), self.attempts().keys())

    def test_a_task_that_is_requeued_goes_on(self):
        self.tool_takes(1)
        self.fill(6)
        job, report = self.submit(1)
        self.wait_for(lambda: len(self.attempts()) >= 2)
        self.assertEqual(self.cluster.run("scontrol", "requeue", f"{job}_0").returncode, 0)
        self.cluster.finish(report)
        self.assertEqual(self.cluster.states(job), {"0": ("COMPLETED", "0:0")}, self.log())
        self.assertEqual(self.attempts(), {f"page-{number}": 1 for number in range(6)})


if __name__ == "__main__":
    unittest.main()
