#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""check_exports.py HEADERS LIBRARY: a shared library exports what its headers declare, and no more.

Every symbol that it defines for others must be a function that a header below
HEADERS declares, no private one among them but virtual ones, or a part of a public
class that is not a function. Instantiations of standard templates are weak symbols
of the standard library and do not count. (That all promised is there is shown by
linking the program of make_operations.py.)
"""

import re
import subprocess
import sys

import public_surface

PART = re.compile(r"^(?:vtable|VTT|typeinfo|typeinfo name|guard variable) for ")
THUNK = re.compile(r"^(?:non-)?virtual thunk to ")
TEMPLATE_ARGUMENTS = re.compile(r"<[^<>]*>")


def symbols(library):
    """Every symbol with its kind, and whether it is a part of a class such as its virtual table."""
    lines = subprocess.run(["nm", "-DC", "--defined-only", library], check=True, capture_output=True,
                           text=True).stdout.splitlines()
    for line in lines:
        _, kind, name = line.split(maxsplit=2)
        yield kind, PART.sub("", THUNK.sub("", name)), PART.match(name) is not None


def qualified_name(symbol):
    """A symbol without arguments, template arguments and the type that it returns."""
    operator = re.search(r"[\w:]*\boperator\s*(?:\(\)|[^\w\s(]+|[^(]+)", symbol)
    while TEMPLATE_ARGUMENTS.search(symbol):
        symbol = TEMPLATE_ARGUMENTS.sub("", symbol)
    if operator:
        return operator.group(0)
    return re.sub(r"\[abi:\w+\]", "", symbol).split("(")[0].split(" ")[-1]


def is_standard(kind, symbol):
    return kind in "WVu" and qualified_name(symbol).startswith(("std::", "__gnu_cxx::"))


def promised(scopes):
    """Qualified names of public functions and variables, and those of public classes."""
    operations, classes = set(), set()
    for scope in scopes:
        if scope.is_private:
            continue
        if scope.is_class:
            classes.add(scope.name)
        for member in scope.members:
            if member.protection == "private" and not member.is_virtual:
                continue
            owner = scope.name.rpartition("::")[0] if member.kind == "friend" else scope.name
            operations.add(f"{owner}::{member.name}" if owner else member.name)
    return operations, classes


def main():
    headers, library = sys.argv[1:]
    operations, classes = promised(public_surface.surface(headers))
    shown = sorted({symbol for symbol in symbols(library) if not is_standard(*symbol[:2])})
    wrong = [
        name
        for _, name, is_part in shown
        if qualified_name(name) not in (classes if is_part else operations)
    ]
    for name in wrong:
        print(f"shown, but no header promises it: {name}")
    print(f"{len(shown)} symbols, {len(wrong)} too many")
    return 1 if wrong or not shown else 0


sys.exit(main())
