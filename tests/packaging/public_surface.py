# SPDX-License-Identifier: MIT
"""The declarations in a folder of headers, read by Doxygen.

surface(HEADERS) returns the functions, variables and classes of every header below
the folder HEADERS, the private ones included.
"""

import dataclasses
import pathlib
import subprocess
import tempfile
import xml.etree.ElementTree as xml

SETTINGS = """
INPUT = {headers}
RECURSIVE = YES
FILE_PATTERNS = *.h
OUTPUT_DIRECTORY = {output}
GENERATE_XML = YES
XML_PROGRAMLISTING = NO
GENERATE_HTML = NO
GENERATE_LATEX = NO
EXTRACT_ALL = YES
EXTRACT_PRIVATE = YES
EXTRACT_STATIC = YES
MACRO_EXPANSION = YES
PREDEFINED = MFCURVES_API= MFCURVES_LOCAL= __cpp_lib_span=202002L __cplusplus=202002L
QUIET = YES
WARNINGS = NO
"""


@dataclasses.dataclass
class Member:
    kind: str  # function, variable or friend
    name: str
    protection: str
    is_static: bool
    is_const: bool
    is_virtual: bool
    is_pure: bool
    is_deleted: bool
    is_template: bool
    parameters: list  # (type, array) each


@dataclasses.dataclass
class Scope:
    """A class, or a namespace with its free functions; the global one has no name."""

    name: str
    is_class: bool
    is_private: bool
    members: list


def text_of(element):
    return "" if element is None else "".join(element.itertext())


def member_of(definition):
    arguments = text_of(definition.find("argsstring")).replace(" ", "")
    return Member(
        kind=definition.get("kind"),
        name=text_of(definition.find("name")),
        protection=definition.get("prot"),
        is_static=definition.get("static") == "yes",
        is_const=definition.get("const") == "yes",
        is_virtual=definition.get("virt") in {"virtual", "pure-virtual"},
        is_pure=definition.get("virt") == "pure-virtual",
        is_deleted=arguments.endswith("=delete"),
        is_template=definition.find("templateparamlist") is not None,
        parameters=[
            (text_of(parameter.find("type")), text_of(parameter.find("array")))
            for parameter in definition.findall("param")
            if text_of(parameter.find("type")) != "void"
        ],
    )


def is_function_or_variable(definition):
    if definition.get("kind") == "friend":
        return "class" not in text_of(definition.find("type")) and "(" in text_of(definition.find("argsstring"))
    return definition.get("kind") in {"function", "variable"}


def is_global(definition):
    """False for what a file lists of a namespace: its definition has a qualified name."""
    return "::" + text_of(definition.find("name")) not in text_of(definition.find("definition"))


def scope_of(compound):
    definitions = [d for d in compound.iter("memberdef") if is_function_or_variable(d)]
    kind = compound.get("kind")
    if kind == "file":
        definitions = [d for d in definitions if is_global(d)]
    return Scope(
        name="" if kind == "file" else text_of(compound.find("compoundname")),
        is_class=kind in {"class", "struct"},
        is_private=compound.get("prot") == "private",
        members=[member_of(d) for d in definitions],
    )


def surface(headers):
    with tempfile.TemporaryDirectory() as output:
        settings = SETTINGS.format(headers=headers, output=output)
        subprocess.run(["doxygen", "-"], input=settings, text=True, check=True, stdout=subprocess.DEVNULL)
        compounds = [
            compound
            for path in sorted(pathlib.Path(output, "xml").glob("*.xml"))
            for compound in xml.parse(path).getroot().findall("compounddef")
        ]
    return [
        scope_of(compound)
        for compound in compounds
        if compound.get("kind") in {"class", "struct", "namespace", "file"}
        and compound.find("templateparamlist") is None
    ]
