#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""make_operations.py HEADERS SOURCE: a program that uses every public operation.

Writes SOURCE, a program that includes mfcurves/mfcurves.h and has one function for
each public or protected operation that a header below HEADERS declares. The
functions are never called, and the compiler is made to keep them, so that the
program links only if every operation can be linked.
"""

import pathlib
import sys

import public_surface

KEPT = "[[gnu::used]] static void"


def parameter_list(member):
    return ", ".join(f"{type_} a{i}{array}" for i, (type_, array) in enumerate(named(member)))


def argument_list(member):
    return ", ".join(f"std::forward<decltype(a{i})>(a{i})" for i, _ in enumerate(named(member)))


def named(member):
    """Without the dots of a function that takes any number of arguments."""
    return [(type_, array) for type_, array in member.parameters if type_ != "..."]


def of_class(scope, number):
    """A class derived from the tested one, so that its protected members are accessible."""
    namespace, _, name = scope.name.rpartition("::")
    probe = f"Probe{number}"
    lines = [f"struct {probe} : {name} {{", f"    using Tested = {name};"]
    friends = []
    for i, member in enumerate(scope.members):
        if member.protection == "private" or member.is_deleted or member.is_template:
            continue
        if member.kind == "friend":
            friends.append(of_function(member, f"friend{number}_{i}"))
        elif member.kind == "variable":
            lines.append(f"    {KEPT} use{i}(Tested& object) {{ (void)&object.{member.name}; }}")
        elif member.name == name:
            lines.append(
                f"    struct [[gnu::used]] Made{i} : Tested {{ [[gnu::used]] Made{i}({parameter_list(member)})"
                f" : Tested({argument_list(member)}) {{}} }};"
            )
        elif member.name == "~" + name:
            lines.append(f"    {KEPT} use{i}({probe}& object) {{ object.Tested::~{name}(); }}")
        else:
            const = "const " if member.is_const else ""
            comma = ", " if named(member) else ""
            qualified = "" if member.is_pure else "Tested::"
            lines.append(
                f"    {KEPT} use{i}({const}{probe}& object{comma}{parameter_list(member)})"
                f" {{ (void)object.{qualified}{member.name}({argument_list(member)}); }}"
            )
    lines.append("};")
    return namespace, lines + friends


def of_function(member, name):
    return f"{KEPT} {name}({parameter_list(member)}) {{ (void){member.name}({argument_list(member)}); }}"


def of_namespace(scope, number):
    lines = []
    for i, member in enumerate(scope.members):
        if member.is_template or member.is_deleted:
            continue
        if member.kind == "variable":
            lines.append(f"{KEPT} use{number}_{i}() {{ (void)&{member.name}; }}")
        else:
            lines.append(of_function(member, f"use{number}_{i}"))
    return scope.name, lines


def main():
    headers, source = sys.argv[1:]
    out = ['#include "mfcurves/mfcurves.h"', "", "#include <utility>", ""]
    count = 0
    for number, scope in enumerate(public_surface.surface(headers)):
        if scope.is_private or not scope.members:
            continue
        namespace, lines = of_class(scope, number) if scope.is_class else of_namespace(scope, number)
        count += sum("[[gnu::used]]" in line for line in lines)
        out += [f"namespace {namespace} {{"] if namespace else []
        out += lines
        out += [f"}}  // namespace {namespace}", ""] if namespace else [""]
    out.append("int main() {}")
    pathlib.Path(source).write_text("\n".join(out) + "\n", encoding="utf-8")
    print(f"{count} operations")


main()
