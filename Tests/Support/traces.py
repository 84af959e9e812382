"""Reads what `strace -f -y` has written to a file."""

import re
from dataclasses import dataclass

_BEGUN = re.compile(r"^(\d+) +(.*?) *<unfinished \.\.\.>$")
_RESUMED = re.compile(r"^(\d+) +<\.\.\. \w+ resumed>(.*)$")
_RETURNED = re.compile(r"^(\d+) +(\w+)\((.*?)\) *= (-?\d+)(?:<([^>]*)>)?")


@dataclass(frozen=True)
class Call:
    process: str
    name: str
    arguments: str
    result: int
    file: str | None    # that a descriptor which is returned stands for


def calls(text):
    """The calls that came back, in this order: those that others interrupted are put together."""
    begun = {}
    for line in text.splitlines():
        if match := _BEGUN.match(line):
            begun[match[1]] = match[2]
            continue
        if match := _RESUMED.match(line):
            line = f"{match[1]} {begun.pop(match[1], '?(')}{match[2]}"
        if match := _RETURNED.match(line):
            yield Call(match[1], match[2], match[3], int(match[4]), match[5])
