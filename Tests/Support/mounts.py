"""File systems of a test's own, which only the programs see that it starts with them, whoever runs the tests.

    mounts = OwnMounts({"/some/folder": "size=64k"})
    subprocess.Popen(..., preexec_fn=mounts.join)
    mounts.seen("/some/folder/file").read_bytes()
    mounts.end()
"""

import ctypes
import os
import pathlib
import subprocess

_NEW_MOUNTS, _NEW_USER = 0x00020000, 0x10000000
_READ_ONLY, _REMOUNT, _RECURSIVE, _PRIVATE = 1, 32, 0x4000, 0x40000


def _call(name, *arguments):
    function = getattr(ctypes.CDLL(None, use_errno=True), name)
    if function(*arguments) != 0:
        raise OSError(ctypes.get_errno(), name)


def _mount(folder, flags, options=""):
    _call("mount", b"memory", str(folder).encode(), b"tmpfs", flags, options.encode())


class OwnMounts:
    def __init__(self, folders):
        """Mounts a tmpfs with the given options on each folder."""
        self._folders = folders
        self._needs_user = os.geteuid() != 0
        self._user, self._group = os.geteuid(), os.getegid()
        self._holder = subprocess.Popen(["sleep", "600"], preexec_fn=self._make)
        self.process = self._holder.pid

    def _make(self):
        _call("unshare", _NEW_MOUNTS | (_NEW_USER if self._needs_user else 0))
        if self._needs_user:
            for file, text in (("setgroups", "deny"), ("uid_map", f"{self._user} {self._user} 1"),
                               ("gid_map", f"{self._group} {self._group} 1")):
                pathlib.Path("/proc/self", file).write_text(text, encoding="ascii")
        _mount("/", _RECURSIVE | _PRIVATE)
        for folder, options in self._folders.items():
            _mount(folder, 0, options)

    def join(self):
        """For a child process, before its program."""
        for kind in ("user", "mnt") if self._needs_user else ("mnt",):
            with open(f"/proc/{self.process}/ns/{kind}", "rb") as file:
                _call("setns", file.fileno(), 0)

    def seen(self, path):
        """The path of what is at a path for the programs that joined."""
        return pathlib.Path(f"/proc/{self.process}/root{path}")

    def make_read_only(self, folder):
        def remount():
            self.join()
            _mount(folder, _REMOUNT | _READ_ONLY)
        subprocess.run(["true"], preexec_fn=remount, check=True)

    def end(self):
        self._holder.kill()
        self._holder.wait()
