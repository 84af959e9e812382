"""The Job for Kubernetes: its pods, run by a container runtime with the real engine, and what becomes of those that end."""

import os
import shutil
import subprocess
import time
import unittest

import processes
from pdf import PDF
from pod import Pod, action_for, job
from shelf import SCRIPTS, ShelfTestCase, run


class ManifestTests(unittest.TestCase):
    def test_shards_are_as_many_as_pods(self):
        spec = job()["spec"]
        arguments = spec["template"]["spec"]["containers"][0]["args"]
        self.assertEqual(spec["completionMode"], "Indexed")
        self.assertIn(f"--shard=$(JOB_COMPLETION_INDEX)/{spec['completions']}", arguments)

    def test_what_another_pod_would_find_again_is_not_tried_again(self):
        self.assertEqual({status: action_for(status) for status in (0, 1, 2, 130, 137, 143)},
                         {0: "Complete", 1: "FailIndex", 2: "FailIndex", 130: "Count", 137: "Count", 143: "Count"})

    def test_the_image_has_the_fonts_that_the_package_recommends(self):
        control = (SCRIPTS.parent.parent / "debian" / "control").read_text(encoding="utf-8")
        recipe = (SCRIPTS / "Containerfile").read_text(encoding="utf-8")
        recommended = {line.strip(" ,") for line in control.splitlines() if line.startswith(" fonts-")}
        self.assertEqual({word for word in recipe.split() if word.startswith("fonts-")}, recommended)


class PodTests(ShelfTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        if os.getuid() != 0:
            raise unittest.SkipTest("a node's runtime runs as root")

    def pod(self, index, *arguments):
        return Pod(self.folder, index, {"shelf": self.shelf, "pdfs": self.pdfs}, self.programs, *arguments)

    def run_pod(self, index):
        return self.finish(self.pod(index).start())

    def finish(self, child):
        """Exit status and output."""
        self.addCleanup(child.stdout.close)
        try:
            output = child.communicate(timeout=120)[0]
        except subprocess.TimeoutExpired:
            child.kill()
            raise
        self.assertEqual(processes.wait_until_none(10), {})
        return child.returncode, output

    def keep_those_of_shard(self, index):
        """Only archives that this pod converts stay on the shelf."""
        plan = run(self.programs / "web2pdf-batch", "--dry-run", f"--shard={index}/8", "-o", self.pdfs, self.shelf).stdout
        for archive in self.shelf.rglob("*.webarchive"):
            if f"{archive} -> " not in plan:
                archive.unlink()

    def test_the_pods_of_all_shards_convert_the_shelf(self):
        self.tool_takes(0)
        self.fill(16)
        for index in range(job()["spec"]["completions"]):
            self.assertEqual(self.run_pod(index)[0], 0)
        self.assertEqual(self.attempts(), {f"page-{number}": 1 for number in range(16)})
        self.assertEqual({path.stat().st_uid for path in self.pdfs.rglob("*.pdf")}, {65532})

    def test_the_engine_has_its_own_sandbox(self):
        """Without which the tool would refuse, as the file asks for."""
        shutil.copy(os.environ["WEB2PDF_TOOL"], self.programs / "web2pdf")
        self.fill(24)
        self.keep_those_of_shard(0)
        names = {path.stem for path in self.shelf.rglob("*.webarchive")}
        self.assertNotEqual(names, set())
        status, output = self.run_pod(0)
        self.assertEqual((status, self.written()), (0, names), output)
        for path in self.pdfs.rglob("*.pdf"):
            self.assertIn(path.stem, PDF(str(path)).text())

    def test_a_failure_is_final(self):
        self.tool_takes(0)
        self.fill(0, *(f"spoiled-{number}" for number in range(24)))
        self.keep_those_of_shard(0)
        status, output = self.run_pod(0)
        self.assertEqual((status, action_for(status)), (1, "FailIndex"), output)

    def test_a_pod_that_has_to_leave_ends_in_time_and_the_next_one_does_the_rest(self):
        self.tool_takes(1)
        self.fill(48)
        self.keep_those_of_shard(0)
        count = len(list(self.shelf.rglob("*.webarchive")))
        pod = self.pod(0, "--jobs=1")
        child = pod.start()
        self.wait_for(lambda: self.attempts())
        self.assertLess(len(self.attempts()), count)
        started = time.monotonic()
        pod.terminate()
        status, output = self.finish(child)
        self.assertLess(time.monotonic() - started, job()["spec"]["template"]["spec"]["terminationGracePeriodSeconds"] / 2)
        self.assertEqual((status, action_for(status)), (130, "Count"), output)
        before = self.attempts()
        self.assertLess(len(before), count)

        self.tool_takes(0)
        self.assertEqual(self.run_pod(0)[0], 0)
        self.assertEqual(len(self.written()), count)
        self.assertEqual(self.attempts(), {name: 1 for name in self.written()})


if __name__ == "__main__":
    unittest.main()
