"""selector_table.py ROOT HEADER...   prints a page of the reference: each selector of the headers with its C++ name.

A selector is a comment of its own over a declaration, "// - setFrame:", or "// + processInfo" for a class. script/
check-sources uses the same reading to see that the names follow the rules of CONTRIBUTING.md.
"""

import pathlib
import re
import sys
from typing import NamedTuple

COMMENT = re.compile(r"\s*// ([-+]) ([A-Za-z_]\w*(?::(?:\w+:)*)?)$")
CLASS = re.compile(r"(?:class|struct) (?:[A-Z_]+ )?(\w+)(?: final)?(?: :.*)? \{")
ATTRIBUTES = re.compile(r"\[\[.*?\]\]|\btemplate <.*?>\s", re.DOTALL)


class Declaration(NamedTuple):
    line: int      # of the selector
    sign: str      # "-", or "+" for a class
    selector: str
    owner: str     # the class whose body it stands in; empty for a category's function
    before: str    # its type and specifiers
    name: str      # its name in C++; empty where nothing is declared
    first: str     # its first parameter; empty if there is none
    count: int     # the number of its parameters


def parameters(text):
    """Those that begin the text, up to the parenthesis that ends them."""
    depth, begin, found = 0, 0, []
    for at, sign in enumerate(text):
        if sign in ",)" and depth == 0:
            found.append(" ".join(text[begin:at].split()))
            begin = at + 1
            if sign == ")":
                break
        depth += (sign in "(<{") - (sign in ")>}")
    return [parameter for parameter in found if parameter]


def declarations(text):
    """What stands below each selector of a header."""
    lines, owner = text.split("\n"), ""
    for number, line in enumerate(lines, 1):
        if match := CLASS.match(line):
            owner = match.group(1)
        elif line == "};":
            owner = ""
        if not (comment := COMMENT.match(line)):
            continue
        below = "\n".join(line for line in lines[number:number + 40] if not line.lstrip().startswith("//"))
        below = ATTRIBUTES.sub("", below)
        before, name, found = "", "", []
        if declared := re.match(r"([^;{}()]*?)(~?\w+)\(", below):
            before, name = declared.groups()
            found = parameters(below[declared.end():])
        yield Declaration(number, *comment.groups(), owner, before, name, found[0] if found else "", len(found))


def receiver(path, declaration):
    """The class that has the operation; that of a category stands in the header's name."""
    return declaration.owner or pathlib.PurePath(path).stem.partition("+")[0]


def rows(headers):
    """Rows of the table for headers by their paths, in the order of the alphabet."""
    found = [(declaration, path) for path, text in headers.items() for declaration in declarations(text)]
    for declaration, path in sorted(found, key=lambda row: (row[0].selector.lower(), row[1], row[0].line)):
        full = "::".join(("qrv", *filter(None, (declaration.owner, declaration.name))))
        yield (f"| `{declaration.sign} {declaration.selector}` | [{declaration.name}](@ref {full}) "
               f"| `{receiver(path, declaration)}` | `{path}` |")


def main(root, *paths):
    headers = {str(pathlib.Path(path).relative_to(root)): pathlib.Path(path).read_text(encoding="utf-8")
               for path in paths}
    print("# Selectors {#selectors}\n\nEvery operation that has a selector, and its name in C++. `+` stands before those "
          "of a class, `-` before those\nof a value. Initialisers (`init…`) that cannot fail are constructors.\n\n"
          "| selector | in C++ | class | header |\n|---|---|---|---|")
    print("\n".join(rows(headers)))


if __name__ == "__main__":
    main(*sys.argv[1:])
