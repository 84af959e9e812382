"""Takes from a program under test what the kernel may refuse elsewhere, such as in containers.

Each function goes before the start of the program: subprocess.Popen(..., preexec_fn=refuse_mounts).
"""

import ctypes
import json
import pathlib
import platform
import struct

_PR_SET_SECCOMP, _PR_SET_NO_NEW_PRIVS, _FILTER_MODE = 22, 38, 2
_LOAD, _EQUAL, _ANY_BIT, _RETURN = 0x20, 0x15, 0x45, 0x06
_NUMBER, _FIRST_ARGUMENT = 0, 16    # where they are in what a filter is told of a call
_ALLOW, _EPERM = 0x7fff0000, 0x00050001

_X86 = platform.machine() == "x86_64"
_CLONE, _UNSHARE, _MOUNT, _CHROOT = (56, 272, 165, 161) if _X86 else (220, 97, 40, 51)
_LANDLOCK_CREATE_RULESET = 444
_NEW_USER, _NEW_PROCESSES, _NEW_NETWORK = 0x10000000, 0x20000000, 0x40000000


def _refuse(calls, flags=None):
    """Has the calls fail, only those with one of the flags in their first argument when there are flags."""
    program = [(_LOAD, 0, 0, _NUMBER)]
    program += [(_EQUAL, len(calls) - at, 0, call) for at, call in enumerate(calls)]
    program += [(_RETURN, 0, 0, _ALLOW)]
    if flags is not None:
        program += [(_LOAD, 0, 0, _FIRST_ARGUMENT), (_ANY_BIT, 1, 0, flags), (_RETURN, 0, 0, _ALLOW)]
    program += [(_RETURN, 0, 0, _EPERM)]
    code = ctypes.create_string_buffer(b"".join(struct.pack("HBBI", *step) for step in program))
    described = ctypes.create_string_buffer(struct.pack("HxxxxxxP", len(program), ctypes.addressof(code)))
    prctl = ctypes.CDLL(None, use_errno=True).prctl
    if prctl(_PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) or prctl(_PR_SET_SECCOMP, _FILTER_MODE, described, 0, 0):
        raise OSError(ctypes.get_errno(), "the filter can not be installed")


PROFILE = pathlib.Path(__file__).resolve().parents[2] / "Documentation" / "containers" / "seccomp.json"
_ALLOW_ALL, _FAIL = 0x7fff0000, 0x00050000
_EQUAL_TO = 4    # SCMP_CMP_EQ


class _Argument(ctypes.Structure):
    _fields_ = [("index", ctypes.c_uint), ("op", ctypes.c_int), ("value", ctypes.c_uint64), ("mask", ctypes.c_uint64)]


def apply_profile(path=PROFILE):
    """Puts the project's profile for containers around this process, as their programs do."""
    library = ctypes.CDLL("libseccomp.so.2")
    library.seccomp_init.restype = ctypes.c_void_p
    library.seccomp_rule_add_array.argtypes = [ctypes.c_void_p, ctypes.c_uint32, ctypes.c_int, ctypes.c_uint,
                                               ctypes.POINTER(_Argument)]
    library.seccomp_load.argtypes = [ctypes.c_void_p]
    profile = json.loads(path.read_text(encoding="utf-8"))
    if profile["defaultAction"] != "SCMP_ACT_ALLOW":
        raise ValueError("only profiles that name what they refuse are understood")
    context = library.seccomp_init(_ALLOW_ALL)
    for rule in profile["syscalls"]:
        arguments = [_Argument(one["index"], _EQUAL_TO, one["value"], 0) for one in rule.get("args", ())]
        for name in rule["names"]:
            number = library.seccomp_syscall_resolve_name(name.encode())
            failed = library.seccomp_rule_add_array(context, _FAIL | rule["errnoRet"], number, len(arguments),
                                                    (_Argument * len(arguments))(*arguments))
            if failed:
                raise OSError(-failed, f"{name} can not be refused")
    if failed := library.seccomp_load(context):
        raise OSError(-failed, "the profile can not be applied")


def refuse_namespaces():
    _refuse([_CLONE, _UNSHARE], _NEW_USER | _NEW_PROCESSES | _NEW_NETWORK)


def refuse_mounts():
    _refuse([_MOUNT])


def refuse_chroot():
    """As the usual profile of a container does that has no capabilities."""
    _refuse([_CHROOT])


def refuse_landlock():
    _refuse([_LANDLOCK_CREATE_RULESET])
