#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tests of the checks in this folder on small made-up trees."""

import pathlib
import tempfile
import unittest

import check_includes
import check_licence
import check_umbrella
import check_words


def tree(files):
    folder = tempfile.TemporaryDirectory()
    for name, text in files.items():
        path = pathlib.Path(folder.name) / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
    return folder


class CheckIncludes(unittest.TestCase):
    # file, its one include, whether that is allowed
    CASES = [
        ("mfcurves/engine/lexer.cpp", '"mfcurves/engine/lexer.h"', True),
        ("mfcurves/engine/lexer.cpp", '"mfcurves/platform/numbers.h"', True),
        ("mfcurves/platform/numbers.cpp", '"mfcurves/interfaces/CString.h"', False),
        ("mfcurves/interfaces/CString.cpp", '"mfcurves/engine/lexer.h"', False),
        ("mfcurves/functions/mfPoint2D.h", '"mfcurves/profiles/mfProfile.h"', False),
        ("mfcurves/profiles/mfProfile.h", '"mfcurves/functions/mfPoint2D.h"', False),
        ("mfcurves/segments/mfSegment.h", '"mfcurves/profiles/mfProfile.h"', True),
        ("mfcurves/segments/mfSegment.h", '"mfcurves/motion/mfFunctionData.h"', False),
        ("mfcurves/functions/mfFunctionBase.h", '"mfcurves/motion/mfEnumerations.h"', True),
        ("mfcurves/interfaces/IMotionServices.h", '"mfcurves/motion/mfEnumerations.h"', True),
        ("mfcurves/motion/mfTextConverter.h", '"mfcurves/interfaces/CString.h"', True),
        ("mfcurves/motion/mfTextConverter.cpp", '"mfcurves/segments/mfSegment.h"', False),
        ("mfcurves/motion/mfFunctionData.cpp", '"mfcurves/documents/mfCurveDocument.h"', False),
        ("mfcurves/host/Context.h", '"mfcurves/profiles/mfProfileManager.h"', True),
        ("mfcurves/host/Context.h", '"mfcurves/mfcurves.h"', False),
        ("mfcurves/mfcurves.h", '"mfcurves/host/Context.h"', True),
        ("mfcurves/host/Context.h", '"Services.h"', False),
        ("mfcurves/host/Context.h", '"tests/support/FakeHost.h"', False),
        ("mfcurves/cellar/door.h", '"mfcurves/platform/files.h"', False),
        ("mfcurves/host/Context.h", '"mfcurves/cellar/door.h"', False),
        ("mfcurves/host/Context.h", "<vector>", True),
        ("mfcurves/host/Context.cpp", "<unistd.h>", False),
        ("mfcurves/interfaces/CString.cpp", "<clocale>", False),
        ("mfcurves/platform/files.cpp", "<unistd.h>", True),
        ("mfcurves/platform/xmlRuntime.cpp", "<libxml/parser.h>", True),
        ("mfcurves/documents/mfCurveDocument.cpp", "<libxml/tree.h>", True),
        ("mfcurves/documents/mfCurveDocument.cpp", "<unistd.h>", False),
        ("mfcurves/motion/mfFunctionData.cpp", "<libxml/tree.h>", False),
        ("tools/mfcurve/main.cpp", "<CLI/CLI.hpp>", True),
        ("tools/mfcurve/main.cpp", "<sys/stat.h>", False),
        ("tools/mfcurve/main.cpp", '"mfcurves/engine/lexer.h"', False),
        ("mfcurves/drawing/svg.cpp", "<fmt/format.h>", True),
        ("mfcurves/segments/mfSegment.cpp", "<fmt/format.h>", False),
        ("examples/cam.cpp", "<libxml/tree.h>", False),
    ]

    def test_each_case(self):
        for name, include, allowed in self.CASES:
            with self.subTest(file=name, include=include), tree({name: f"#include {include}\n"}) as folder:
                self.assertEqual(check_includes.violations(pathlib.Path(folder)) == [], allowed)


class CheckUmbrella(unittest.TestCase):
    def judge(self, **umbrella_and_files):
        files = {name.replace("__", "/") + ".h": text for name, text in umbrella_and_files.items()}
        with tree(files) as folder:
            return check_umbrella.violations(pathlib.Path(folder))

    def test_takes_a_complete_one(self):
        self.assertEqual(
            self.judge(
                mfcurves__mfcurves='#include "mfcurves/host/Context.h"\n#include "mfcurves/motion/mfKind.h"\n',
                mfcurves__host__Context='#include "mfcurves/motion/mfKind.h"\nclass MFCURVES_API Context {};\n',
                mfcurves__motion__mfKind="enum Kind {};\n",
                mfcurves__engine__lexer="struct Token {};\n",
            ),
            [],
        )

    def test_names_what_is_missing(self):
        self.assertEqual(
            self.judge(mfcurves__mfcurves="", mfcurves__host__Context="class MFCURVES_API Context {};\n"),
            ["mfcurves/host/Context.h exports something and is not included"],
        )

    def test_names_what_is_internal(self):
        self.assertEqual(
            self.judge(
                mfcurves__mfcurves='#include "mfcurves/motion/mfKind.h"\n',
                mfcurves__motion__mfKind='#include "mfcurves/engine/lexer.h"\n',
                mfcurves__engine__lexer="struct Token {};\n",
            ),
            ["mfcurves/motion/mfKind.h is public and includes mfcurves/engine/lexer.h, which is not"],
        )


class CheckLicence(unittest.TestCase):
    # file, its text, whether it says its licence
    CASES = [
        ("mfcurves/a.h", "// SPDX-License-Identifier: MIT\n#pragma once\n", True),
        ("mfcurves/a.h", "#pragma once\n", False),
        ("mfcurves/a.cpp", "# SPDX-License-Identifier: MIT\n", False),
        ("mfcurves/a.cpp", "#include <map>\n\n// SPDX-License-Identifier: MIT\n", False),
        ("scripts/a.sh", "#!/bin/sh\n# SPDX-License-Identifier: MIT\n", True),
        ("tests/CMakeLists.txt", "add_test()\n", False),
        ("docs/page.md", "words\n", True),
        ("build/dev/made.cpp", "int a;\n", True),
    ]

    def judge(self, folder):
        root = pathlib.Path(folder)
        (root / "CMakeLists.txt").write_text("# SPDX-License-Identifier: MIT\n", encoding="utf-8")
        return all(check_licence.says_licence(path) for path in check_licence.sources_of(root))

    def test_each_case(self):
        for name, text, says in self.CASES:
            with self.subTest(file=name, text=text), tree({name: text}) as folder:
                self.assertEqual(self.judge(folder), says)

    def test_adds_what_is_missing_and_keeps_the_rest(self):
        for name, text, says in self.CASES:
            with self.subTest(file=name, text=text), tree({name: text}) as folder:
                path = pathlib.Path(folder) / name
                if not says:
                    check_licence.add_to(path)
                self.assertTrue(self.judge(folder))
                self.assertTrue(path.read_text(encoding="utf-8").endswith(text))


class CheckWords(unittest.TestCase):
    # file, a line of it, whether the line is counted
    CASES = [
        ("README.md", "The name stands behind the number.", True),
        ("README.md", "The stand-alone host returns the name.", False),
        ("docs/page.md", "Prints one line a sample.", True),
        ("docs/page.md", "Prints one line per sample, at most a line a day.", False),
        ("mfcurves/a.h", "// Tells the order.", True),
        ("mfcurves/a.h", "// Metellus reports the order.", False),
        ("mfcurves/a.h", "// The point is none.", True),
        ("mfcurves/a.h", "// There are nonempty rows.", False),
        ("tests/a.cpp", "// Nothing answers.", False),
        ("fuzz/corpus/a.txt", "behind", False),
    ]

    def test_each_case(self):
        for name, line, counted in self.CASES:
            with self.subTest(file=name, line=line), tree({name: line + "\n"}) as folder:
                found = check_words.lines_with_avoided_words(pathlib.Path(folder))
                self.assertEqual(found, [f"{name}:1: {line}"] if counted else [])


if __name__ == "__main__":
    unittest.main()
