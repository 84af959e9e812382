"""Runs the pod that kubernetes.yaml describes, as a node would, with the container runtime crun and this machine's system.

What is taken from the file: arguments, variables, user, capabilities, privileges, the profile for system calls, the
root folder's protection, mounts and their sizes. The network is one without any connection, /dev/shm is small.
"""

import json
import os
import pathlib
import re
import subprocess
import tempfile

import yaml

import confinement
from shelf import SCRIPTS

# The system that stands for the image's; folders that are links somewhere else on this machine are so there, too.
SYSTEM = ("usr", "etc", "bin", "lib", "lib64", "sbin")
BYTES = {"Ki": 1 << 10, "Mi": 1 << 20, "Gi": 1 << 30}
# What usual runtimes hide.
MASKED = ["/proc/acpi", "/proc/kcore", "/proc/keys", "/proc/latency_stats", "/proc/scsi", "/proc/sched_debug",
          "/proc/timer_list", "/sys/firmware"]
READ_ONLY = ["/proc/asound", "/proc/bus", "/proc/fs", "/proc/irq", "/proc/sys", "/proc/sysrq-trigger"]


def job():
    """The Job of the file."""
    documents = yaml.safe_load_all((SCRIPTS / "kubernetes.yaml").read_text(encoding="utf-8"))
    return next(document for document in documents if document["kind"] == "Job")


def action_for(status):
    """What the Job's controller does about a pod that has ended with this status."""
    if status == 0:
        return "Complete"
    for rule in job()["spec"]["podFailurePolicy"]["rules"]:
        if (codes := rule.get("onExitCodes")) and (status in codes["values"]) == (codes["operator"] == "In"):
            return rule["action"]
    return "Count"  # a new pod, as often as backoffLimitPerIndex says


def bind(source, place, *options):
    return {"type": "bind", "source": str(source), "destination": place, "options": ["rbind", "nosuid", "nodev", *options]}


def temporary(place, size):
    return {"type": "tmpfs", "source": "tmpfs", "destination": place,
            "options": ["nosuid", "nodev", "mode=1777", f"size={size}"]}


class Pod:
    """Of one shard. Claims are the folders that stand for them; programs is the folder that the program is in."""

    def __init__(self, folder, index, claims, programs, *arguments):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="pod-", dir=folder))
        self.name = self.folder.name
        self._index = index
        self._spec = job()["spec"]["template"]["spec"]
        self._container, = self._spec["containers"]
        self._make_root()
        configuration = self._configuration(claims, programs, arguments)
        (self.folder / "config.json").write_text(json.dumps(configuration), encoding="utf-8")

    def _make_root(self):
        root = self.folder / "root"
        for name in ("dev", "proc", "sys", "tmp", "programs", "shelf", "pdfs"):
            (root / name).mkdir(parents=True)
        for name in SYSTEM:
            if os.path.islink(f"/{name}"):
                (root / name).symlink_to(os.readlink(f"/{name}"))
            elif os.path.isdir(f"/{name}"):
                (root / name).mkdir()

    def _argument(self, text):
        return re.sub(r"\$\(JOB_COMPLETION_INDEX\)", str(self._index), text)

    def _volume(self, mount, claims):
        volume, = (volume for volume in self._spec["volumes"] if volume["name"] == mount["name"])
        if "emptyDir" in volume:
            number, unit = re.fullmatch(r"(\d+)(\w+)", volume["emptyDir"]["sizeLimit"]).groups()
            return temporary(mount["mountPath"], int(number) * BYTES[unit])
        claim = volume["persistentVolumeClaim"]
        return bind(claims[claim["claimName"]], mount["mountPath"], "ro" if claim.get("readOnly") else "rw")

    def _configuration(self, claims, programs, arguments):
        of_pod, of_container = self._spec["securityContext"], self._container["securityContext"]
        assert of_container["capabilities"] == {"drop": ["ALL"]}
        assert of_pod["seccompProfile"]["type"] == "Localhost"
        variables = [f"{variable['name']}={variable['value']}" for variable in self._container["env"]]
        return {
            "ociVersion": "1.0.2",
            "process": {
                "user": {"uid": of_pod["runAsUser"], "gid": of_pod["runAsGroup"], "additionalGids": [of_pod["fsGroup"]]},
                "args": ["web2pdf-batch", *arguments, *map(self._argument, self._container["args"])],
                "env": ["PATH=/programs:/usr/bin:/bin", f"JOB_COMPLETION_INDEX={self._index}", *variables],
                "cwd": "/",
                "capabilities": {},
                "noNewPrivileges": not of_container["allowPrivilegeEscalation"],
            },
            "root": {"path": "root", "readonly": of_container["readOnlyRootFilesystem"]},
            "hostname": self.name,
            "mounts": [
                {"type": "proc", "source": "proc", "destination": "/proc", "options": ["nosuid", "noexec", "nodev"]},
                {"type": "tmpfs", "source": "tmpfs", "destination": "/dev", "options": ["nosuid", "mode=755", "size=65536"]},
                temporary("/dev/shm", 65536),
                *(bind(f"/{name}", f"/{name}", "ro") for name in SYSTEM if os.path.isdir(f"/{name}") and not os.path.islink(f"/{name}")),
                bind(programs, "/programs", "ro"),
                *(self._volume(mount, claims) for mount in self._container["volumeMounts"]),
            ],
            "linux": {
                "namespaces": [{"type": name} for name in ("pid", "mount", "ipc", "uts", "network")],
                "seccomp": json.loads(confinement.PROFILE.read_text(encoding="utf-8")),
                "maskedPaths": MASKED,
                "readonlyPaths": READ_ONLY,
            },
        }

    def _crun(self, *arguments):
        """Crun refuses machines with both versions of control groups, which it need not see here."""
        without = ["unshare", "--mount", "sh", "-c", 'umount -q /sys/fs/cgroup/unified; exec "$0" "$@"']
        return [*without, "crun", "--root", str(self.folder / "state"), "--cgroup-manager", "disabled", *arguments]

    def start(self):
        """The program's own status is that of this child."""
        return subprocess.Popen(self._crun("run", "--bundle", str(self.folder), self.name), stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)

    def terminate(self):
        """What a node does first to a pod that is to end."""
        subprocess.run(self._crun("kill", self.name, "TERM"), check=True, timeout=30)
