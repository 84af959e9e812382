"""A cluster of one machine for a test: Slurm and munge with sockets, ports, a key and settings of their own.

Whatever Slurm or munge the machine runs has no part in it. Needs root, as Slurm's servers do.
"""

import contextlib
import os
import pathlib
import shutil
import socket
import subprocess
import tempfile
import time

import processes

GROUPS = pathlib.Path("/sys/fs/cgroup")
MEMORY = GROUPS / "memory" / "memory.limit_in_bytes"

# What ends a job without hesitation, and starts the next one at once.
CONFIGURATION = """
ClusterName=test
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={controller_port}
SlurmdPort={node_port}
SlurmUser=root
AuthType=auth/munge
CredType=cred/munge
AuthInfo=socket={folder}/munge.socket,cred_expire=5
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU_Memory
SchedulerParameters=batch_sched_delay=0,sched_min_interval=0,bf_interval=1
SlurmdParameters=config_overrides
KillWait=5
DefMemPerCPU=100
ProctrackType=proctrack/{processes}
TaskPlugin=task/{tasks}
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd.pid
SlurmdSpoolDir={folder}/spool
StateSaveLocation={folder}/state
MailProg=/bin/true
NodeName={node} NodeHostname={host} NodeAddr=127.0.0.1 CPUs={cpus} RealMemory=4000
PartitionName=all Nodes={node} Default=YES MaxTime=INFINITE State=UP
"""

# Where the kernel has its old hierarchy; that of version 2 Slurm shares with systemd only.
CGROUPS = """
CgroupPlugin=cgroup/v1
CgroupMountpoint=/sys/fs/cgroup
ConstrainRAMSpace=yes
"""


def free_port():
    with socket.socket() as chosen:
        chosen.bind(("127.0.0.1", 0))
        return chosen.getsockname()[1]


def remove_groups(name):
    """The control groups that Slurm leaves behind."""
    for top in GROUPS.glob(f"*/{name}"):
        for folder, _, _ in os.walk(top, topdown=False):
            os.rmdir(folder)


class Cluster:
    """Runs until it is stopped; cpus of it can be used at a time, however many the machine has."""

    def __init__(self, cpus):
        self._cleanup = contextlib.ExitStack()
        try:
            self._start(cpus)
        except BaseException:
            self.stop()
            raise

    def _start(self, cpus):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="web2pdf-slurm-"))
        self._cleanup.callback(shutil.rmtree, self.folder)
        self.folder.chmod(0o755)
        for name in ("state", "spool"):
            (self.folder / name).mkdir(mode=0o755)
        self.limits_memory = MEMORY.exists()
        node = f"test{os.getpid()}"    # names the control groups, too
        self._cleanup.callback(remove_groups, f"slurm_{node}")
        settings = CONFIGURATION.format(
            host=socket.gethostname().partition(".")[0], folder=self.folder, node=node, cpus=cpus,
            controller_port=free_port(), node_port=free_port(),
            processes="cgroup" if self.limits_memory else "linuxproc", tasks="cgroup" if self.limits_memory else "none")
        (self.folder / "slurm.conf").write_text(settings, encoding="utf-8")
        (self.folder / "cgroup.conf").write_text(CGROUPS, encoding="utf-8")
        self.environment = {"PATH": os.environ["PATH"], "LANG": "C.UTF-8", "SLURM_CONF": str(self.folder / "slurm.conf")}

        key = self.folder / "munge.key"
        key.touch(mode=0o600)
        key.write_bytes(os.urandom(64))
        self._serve("munged", "--foreground", f"--socket={self.folder}/munge.socket", f"--key-file={key}",
                    f"--pid-file={self.folder}/munged.pid", f"--seed-file={self.folder}/munged.seed",
                    f"--log-file={self.folder}/munged.log")
        self._wait((self.folder / "munge.socket").exists)
        self._serve("slurmctld", "-D")
        self._serve("slurmd", "-D", "-N", node)
        self._wait(lambda: self.run("sinfo", "--noheader", "--format=%T").stdout.strip() == "idle")

    def _serve(self, name, *options):
        log = open(self.folder / f"{name}.out", "wb")
        self._cleanup.callback(log.close)
        server = subprocess.Popen([shutil.which(name, path="/usr/sbin"), *options], stdin=subprocess.DEVNULL, stdout=log,
                                  stderr=subprocess.STDOUT, env=self.environment, start_new_session=True)
        self._cleanup.callback(self._end, server)

    @staticmethod
    def _end(server):
        server.terminate()
        try:
            server.wait(timeout=30)
        except subprocess.TimeoutExpired:
            server.kill()
            server.wait()

    def _wait(self, condition):
        if processes.wait_for(condition, 60) is None:
            logs = "\n".join(f"{path.name}:\n{path.read_text(errors='replace')}" for path in self.folder.glob("*.out"))
            raise AssertionError(f"Slurm does not start\n{logs}")

    def stop(self):
        self._cleanup.close()

    # What users do

    def run(self, *command, user=None, **environment):
        """The finished command of Slurm's, as root or as another user."""
        as_user = {} if user is None else {"user": user, "group": user, "extra_groups": []}
        return subprocess.run([str(word) for word in command], capture_output=True, text=True, timeout=120, check=False,
                              env={**self.environment, **environment}, **as_user)

    def submit(self, *arguments, **options):
        """The number of a new job."""
        done = self.run("sbatch", "--parsable", *arguments, **options)
        if done.returncode:
            raise AssertionError(done.stderr)
        return done.stdout.strip()

    def states(self, job):
        """Of each task of the job its number, mapped to its state and exit status."""
        fields = (dict(word.partition("=")[::2] for word in line.split() if "=" in word)
                  for line in self.run("scontrol", "show", "job", "--oneliner", job).stdout.splitlines())
        return {field.get("ArrayTaskId", ""): (field["JobState"], field["ExitCode"]) for field in fields if field}

    def finish(self, job, seconds=60):
        """Waits until no task of the job waits or runs; what states says then."""
        moving = {"PENDING", "CONFIGURING", "RUNNING", "COMPLETING", "SUSPENDED", "REQUEUED"}
        deadline = time.monotonic() + seconds
        while moving.intersection(state for state, _ in self.states(job).values()):
            if time.monotonic() > deadline:
                raise AssertionError(f"not finished: {self.states(job)}")
            time.sleep(0.2)
        return self.states(job)
