"""Takes from a program under test what the kernel may refuse elsewhere, such as in containers.

Each function goes before the start of the program: subprocess.Popen(..., preexec_fn=refuse_mounts).
"""

import ctypes
import platform
import struct

_PR_SET_SECCOMP, _PR_SET_NO_NEW_PRIVS, _FILTER_MODE = 22, 38, 2
_LOAD, _EQUAL, _ANY_BIT, _RETURN = 0x20, 0x15, 0x45, 0x06
_NUMBER, _FIRST_ARGUMENT = 0, 16    # where they are in what a filter is told of a call
_ALLOW, _EPERM = 0x7fff0000, 0x00050001

_X86 = platform.machine() == "x86_64"
_CLONE, _UNSHARE, _MOUNT = (56, 272, 165) if _X86 else (220, 97, 40)
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


def refuse_namespaces():
    _refuse([_CLONE, _UNSHARE], _NEW_USER | _NEW_PROCESSES | _NEW_NETWORK)


def refuse_mounts():
    _refuse([_MOUNT])


def refuse_landlock():
    _refuse([_LANDLOCK_CREATE_RULESET])
