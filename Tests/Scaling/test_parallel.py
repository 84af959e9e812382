"""The script for GNU parallel, over ssh to this machine under several names.

Each connection has a server of its own, which talks to the client through pipes: there is no port and nothing to stop.
"""

import os
import pathlib
import signal
import subprocess
import unittest

import processes
from shelf import SCRIPTS, ShelfTestCase, kill, run

SERVER = """
HostKey {folder}/key
AuthorizedKeysFile {folder}/key.pub
StrictModes no
UsePAM no
PidFile none
ForceCommand env -i PATH='{path}' HOME={folder}/home SHELL=/bin/sh sh -c "$SSH_ORIGINAL_COMMAND"
"""

CLIENT = """
Host gone
    ProxyCommand false
Host *
    ProxyCommand /usr/sbin/sshd -i -f {folder}/server -E {folder}/%n.log
    IdentityFile {folder}/key
    IdentitiesOnly yes
    UserKnownHostsFile {folder}/known
    BatchMode yes
"""


def host_of(process):
    """A process and those that it comes from, up to the server of its connection: what ends when a host dies."""
    everyone, chain = processes.snapshot(), [process]
    while everyone[chain[-1]][2] != "ssh":
        chain.append(everyone[chain[-1]][0])
    return chain[:-1]


class ParallelTests(ShelfTestCase):
    def setUp(self):
        super().setUp()
        (self.folder / "home").mkdir()
        if os.getuid() == 0:    # where the server locks its own child in; a service would have made it
            pathlib.Path("/run/sshd").mkdir(mode=0o755, exist_ok=True)
        run("ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", self.folder / "key")
        key = (self.folder / "key.pub").read_text(encoding="utf-8")
        (self.folder / "known").write_text(f"* {key}", encoding="utf-8")
        for name, text in (("server", SERVER), ("client", CLIENT)):
            (self.folder / name).write_text(text.format(folder=self.folder, path=self.path), encoding="utf-8")
        self.environment = {"PATH": self.path, "HOME": str(self.folder / "home"), "LANG": "C.UTF-8",
                            "PARALLEL_SSH": f"ssh -F {self.folder}/client"}
        self.addCleanup(self.assert_nothing_runs)

    def assert_nothing_runs(self):
        self.assertEqual(processes.wait_until_none(10), {})

    def convert(self, hosts, shards, *options):
        return run(SCRIPTS / "parallel.sh", hosts, shards, self.shelf, self.pdfs, *options, env=self.environment)

    def start(self, hosts, shards):
        child = subprocess.Popen([SCRIPTS / "parallel.sh", hosts, str(shards), self.shelf, self.pdfs, "--jobs", "1"],
                                 stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True,
                                 env=self.environment, start_new_session=True)
        self.addCleanup(child.stderr.close)
        self.addCleanup(child.wait)
        return child

    def hosts_of_shards(self):
        """Which host has ended which shard, in the end."""
        lines = (self.pdfs / "parallel.log").read_text(encoding="utf-8").splitlines()[1:]
        return {int(line.split("\t")[0]) - 1: line.split("\t")[1] for line in lines}

    def test_hosts_share_the_shards(self):
        self.tool_takes(0.2)
        self.fill(16)
        done = self.convert("one,two,three", 6)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(self.attempts(), {f"page-{number}": 1 for number in range(16)})
        self.assertEqual(self.written(), self.attempts().keys())
        self.assertEqual(set(self.hosts_of_shards().values()), {"one", "two", "three"})
        self.assertEqual(self.hosts_of_shards().keys(), set(range(6)))
        self.assert_report_names(16)

    def test_what_fails_is_tried_by_one_host_only(self):
        self.tool_takes(0)
        self.fill(3, "spoiled")
        done = self.convert("one,two", 2)
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertEqual(self.written(), {"page-0", "page-1", "page-2"})
        self.assertEqual(self.attempts()["spoiled"], 1)

    def test_a_host_that_is_not_there_is_done_without(self):
        self.tool_takes(0)
        self.fill(8)
        done = self.convert("gone,one", 4)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(self.hosts_of_shards(), {shard: "one" for shard in range(4)})
        self.assertEqual(len(self.written()), 8)

    def test_without_any_host_nothing_is_said_to_be_done(self):
        self.tool_takes(0)
        self.fill(2)
        done = self.convert("gone", 2)
        self.assertEqual(done.returncode, 130)
        self.assertIn("shards that did not end: 2", done.stderr)

    def test_another_host_takes_over_when_one_dies(self):
        self.tool_takes(1)
        self.fill(8)
        child = self.start("one,two", 2)
        self.wait_for(lambda: len(self.written()) >= 2 and len(self.batches()) == 2)
        kill(*host_of(self.batches()[0]))
        self.assertEqual(child.wait(timeout=60), 0, child.stderr.read())
        self.assertEqual(len(self.written()), 8)
        self.assertEqual(len(set(self.hosts_of_shards().values())), 1)

    def test_without_its_connection_a_host_stops(self):
        self.tool_takes(1)
        self.fill(8)
        child = self.start("one", 1)
        self.wait_for(lambda: self.written())
        started = self.batches()
        client, = (pid for pid, name in processes.descendants(child.pid).items() if name == "ssh")
        kill(client)
        self.wait_for(lambda: not set(started) & set(self.batches()), 20)
        self.assertEqual(child.wait(timeout=60), 0, child.stderr.read())
        self.assertEqual(len(self.written()), 8)

    def test_what_is_interrupted_is_taken_up_again(self):
        self.tool_takes(1)
        self.fill(8)
        child = self.start("one,two", 2)
        self.wait_for(lambda: len(self.written()) >= 2)
        os.killpg(child.pid, signal.SIGINT)
        child.wait(timeout=30)
        self.wait_for(lambda: not self.batches(), 20)
        before = self.attempts()
        self.assertTrue(0 < len(before) < 8, before)
        self.assertEqual(self.convert("one,two", 2).returncode, 0)
        self.assertEqual(len(self.written()), 8)
        self.assertLessEqual(before.items(), self.attempts().items())

    def test_usage(self):
        done = run(SCRIPTS / "parallel.sh", env=self.environment)
        self.assertEqual((done.returncode, done.stderr), (2, "parallel.sh HOSTS SHARDS SOURCE FOLDER [OPTION...]\n"))


if __name__ == "__main__":
    unittest.main()
