# SPDX-License-Identifier: MIT
"""Documents, sound and broken."""

import json
import os
import re
import subprocess
import xml.etree.ElementTree as ElementTree

from tooltest import EXPRESSION_DOCUMENT, FAILED, SAMPLES, ToolTest, host_of, run


class Documents(ToolTest):
    def test_each_motion_object(self):
        for motion_object in ["Motor", "Force", "Torque"]:
            with self.subTest(motion_object):
                document = EXPRESSION_DOCUMENT.format(object=motion_object)
                path = self.write("curve.xml", document)
                wanted = [[2, 12, 12, 6, 0]]
                self.assertEqual(self.samples("eval", path, "2"), wanted)
                self.assertEqual(self.samples("eval", "-", "2", text=document), wanted)

    def test_one_section_a_document(self):
        path = self.write("curve.xml", EXPRESSION_DOCUMENT.format(object="Force"))
        self.assertEqual(self.done("eval", path, path, "1", "2").splitlines(),
                         [f"# {path}", "1 3 6 6 0", "2 12 12 6 0"] * 2)

    def test_one_bad_document_keeps_no_other_from_its_turn(self):
        path = self.write("curve.xml", EXPRESSION_DOCUMENT.format(object="Force"))
        missing = self.folder / "none.xml"
        result = self.refused(FAILED, "eval", missing, path, "1", says="none.xml")
        self.assertEqual(result.stdout.splitlines(), [f"# {path}", "1 3 6 6 0"])

    def test_a_document_takes_no_law_of_the_one_before(self):
        first, second = self.folder / "first.xml", self.folder / "second.xml"
        self.done("convert", "--row", "1,1,Cubic", first)
        document = first.read_text()
        first.write_text(document.replace("3*xbar^2-2*xbar^3", "xbar^2"))
        second.write_text(re.sub("<ProfileDefinitions>.*</ProfileDefinitions>", "", document))
        alone = self.refused(FAILED, "eval", second, "0.5", says="the document does not define its law")
        together = self.refused(FAILED, "eval", first, second, "0.5", says="the document does not define its law")
        self.assertEqual(together.stdout, f"# {first}\n0.5 0.25 1 2 0\n")
        self.assertEqual(together.stderr, alone.stderr)

    def test_why_a_document_cannot_be_used(self):
        document = EXPRESSION_DOCUMENT.format(object="Force")
        for text, words in [
                ("", [":1: "]), ("not XML", [":1: "]), (document[:-5], [":1: "]),
                (document.replace("<Version>1<", "<Version>2<"), ["version 2"]),
                (document.replace("FunctionName", "Name"), ["FunctionName"]),
                (document.replace(">Expression<", ">Formula<"), ["FunctionType", "Formula"]),
                ("<!DOCTYPE Curve>" + document.split("?>")[1], ["document type"])]:
            with self.subTest(words):
                path = self.write("curve.xml", text)
                self.refused(FAILED, "eval", path, "1", says=["curve.xml:", *words])
                self.refused(FAILED, "info", "-", says="standard input: ", text=text)

    def test_an_unknown_motion_object(self):
        # A file must name a motor, a force or a torque; a text need not.
        document = EXPRESSION_DOCUMENT.format(object="Heat")
        self.refused(FAILED, "eval", self.write("curve.xml", document), "1", says=["MotionObjectType", "Heat"])
        self.assertUnsound("neither a motor nor a force nor a torque", "-", text=document)

    def test_a_motion_result_has_to_exist(self):
        rows = ["--row", "2,10,Cubic"]
        path = self.folder / "curve.xml"
        self.done("convert", *rows, path)
        path.write_text(path.read_text().replace("IndependentVariableType_Time", "Spring length"))
        self.refused(FAILED, "eval", path, "1", says="Spring length")
        self.assertEqual(self.samples("eval", path, "--result", "Spring length", "1"), [[1, 5, 7.5, 0, -15]])


class Samples(ToolTest):
    def test_there_are_samples(self):
        self.assertGreaterEqual(len(SAMPLES), 8)

    def test_each_command_takes_each_sample(self):
        for path in SAMPLES:
            with self.subTest(path.name):
                host = self.host(path)
                self.assertIn("valid          yes", self.done("info", path, *host))
                lines = self.done("table", path, *host, "--samples", "50").splitlines()
                self.assertEqual(len(lines), 51)
                self.assertNotIn("nan", "".join(lines))
                self.samples("eval", path, lines[1].split(",")[0], lines[-1].split(",")[0], *host)
                ElementTree.fromstring(self.done("plot", path, *host, "-o", "-"))
                # The name of a profile from a document includes the stem of the file, so the
                # second document is the first that can be reproduced exactly.
                documents = [path]
                for generation in range(3):
                    (self.folder / str(generation)).mkdir(exist_ok=True)
                    documents.append(self.folder / str(generation) / "written.xml")
                    self.done("convert", documents[-2], documents[-1], *host)
                self.assertEqual(documents[2].read_bytes(), documents[3].read_bytes())

    def host(self, path):
        return host_of(path.read_text(encoding="utf-8"))


def text_of(name, text):
    """Replaces the text of the last element of that name."""
    return lambda document: re.sub(f"(.*<{name}>)[^<]*", lambda found: found[1] + text, document, count=1, flags=re.S)


def without(name):
    """Renames the elements of that name."""
    return lambda document: re.sub(f"(</?){name}([ />])", r"\1Other\2", document)


# Changes of a document, and words that the message must contain. A change that does not apply to a document is
# skipped.
BREAKAGES = {
    **{f"no {name}": (without(name), [f'The element "{name}" within "Curve" is missing']) for name in [
        "FunctionName", "FunctionType", "MotionObjectType", "XYDataType", "IndepVar", "DepVar", "Cursor",
        "Interpolation", "SegmentCount", "PointCount", "Expression"]},
    **{f"no {name}": (without(name), [f'The element "{name}" within "Range{name[-1]}" within "Curve" is missing'])
       for name in ["MinX", "MaxX", "MinY", "MaxY"]},
    "no rows": (without("Segment"), ["it has no row after the start"]),
    "no points": (without("Point"), ["the curve has no points"]),
    "an end with a letter": (text_of("EndX", "9O"), ["row ", '"EndX" is "9O", which is not a finite number']),
    "no value": (text_of("Value", ""), ["row ", '"Value" is "", which is not a finite number; it reads as 0']),
    "a value with a comma": (text_of("Value", "1,5"), ["row ", '"Value" is "1,5"', "it reads as 1"]),
    "a value too large": (text_of("Value", "1e999"), ["row ", '"Value" is "1e999"', "it reads as INF"]),
    "a start apart": (text_of("StartX", "0.5"), ["row ", "starts at 0.5, where the previous row does not end"]),
    "an end before the start": (text_of("EndX", "-1"), ["the row ends at -1, before it starts at"]),
    "an unknown profile": (text_of("Profile", "Wobbly"), ["row ", 'the document does not define its law "Wobbly"', '"Cubic"']),
    "no profile": (text_of("Profile", ""), ["row ", 'the document does not define its law ""', '"Cubic"']),
    "no law": (text_of("ProfileFunction", "y=x"), ["definition ", "is left out: "]),
    "an x in words": (text_of("x", "one"), ["point ", '"x" is "one", which is not a finite number']),
    "a y of words": (text_of("y", "nan"), ["point ", '"y" is "nan", which is not a finite number']),
    "an x before the others": (text_of("x", "-1e6"), ["point ", "which is not above the previous point's"]),
    "an unknown interpolation": (text_of("Interpolation", "Spline"), ['"Interpolation" is "Spline"', "_Akima"]),
    "a wrong expression": (text_of("Expression", "2*(x"), ["character 5"]),
    "an empty expression": (text_of("Expression", ""), ["the expression is empty"]),
    "an unknown quantity": (text_of("DepVar", "Speed"), ['"DepVar" is "Speed"', "MotorDriveType_Velocity"]),
    "no quantity": (text_of("DepVar", ""), ["it does not say which quantity it gives"]),
    "an unknown kind": (text_of("FunctionType", "Formula"), ['"FunctionType" is "Formula"', '"Segments"']),
    "an unknown object": (text_of("MotionObjectType", "Heat"), ["motor", "force", "torque"]),
    "another version": (text_of("Version", "2"), ["version 2, and only version 1 is read"]),
    "a version in words": (text_of("Version", "one"), ["version 0, and only version 1 is read"]),
    "a cut tag": (lambda document: document[:document.rindex("</Cur") + 5], ["broken.xml:2: ", "(column "]),
    "half of it": (lambda document: document[:len(document) // 2], ["broken.xml:2: ", "(column "]),
    "nothing": (lambda document: "", ["broken.xml:1: ", "document is empty (column 1)"]),
    "an unknown entity": (text_of("FunctionName", "&cam;"), ["broken.xml:2: ", "'cam' not defined (column "]),
}


class Broken(ToolTest):
    """Copies of the samples with one error each: every command reports it and prints no result."""

    def test_every_copy_is_explained(self):
        for path in SAMPLES:
            whole = path.read_text(encoding="utf-8")
            copies = {}
            for name, (change, words) in BREAKAGES.items():
                if change(whole) != whole:
                    (self.folder / name).mkdir(exist_ok=True)
                    copies[self.write(f"{name}/broken.xml", change(whole))] = words
            result = run("info", *copies, *host_of(whole), "--format", "json")
            self.assertEqual(result.returncode, FAILED)
            for (copy, words), shown in zip(copies.items(), json.loads(result.stdout), strict=True):
                with self.subTest(sample=path.name, breakage=copy.parent.name):
                    self.assertEqual((shown["file"], shown["valid"]), (str(copy), False))
                    said = "\n".join(f"{problem['place']}: {problem['message']}" for problem in shown["problems"])
                    for part in words:
                        self.assertIn(part.lower(), said.lower())

    def test_no_command_prints_a_result(self):
        commands = [["eval", "0.5"], ["table", "--format", "json"], ["plot", "-o", "-"], ["convert"]]
        applied = set()
        for sample in ["friction-torque", "measured-velocity", "crank-stroke"]:
            whole = (SAMPLES[0].parent / f"{sample}.xml").read_text(encoding="utf-8")
            for name, (change, words) in BREAKAGES.items():
                broken = change(whole)
                if broken == whole:
                    continue
                applied.add(name)
                path = self.write("broken.xml", broken)
                for command, file, place in [(commands[len(applied) % 4], path, path), (["eval", "1"], "-", "standard input")]:
                    with self.subTest(sample=sample, breakage=name, command=command[0]):
                        out = ["-"] if command == ["convert"] else []
                        result = self.refused(FAILED, *command, file, *out, *host_of(whole), says=f"error: {place}:", text=broken)
                        self.assertEqual(result.stdout, "")
        self.assertEqual(applied, set(BREAKAGES))

    def test_a_motion_result_that_the_host_lacks(self):
        for path in SAMPLES:
            whole = path.read_text(encoding="utf-8")
            if "<Expression>" not in whole:  # an expression names its variable itself
                with self.subTest(path.name):
                    copy = self.write("broken.xml", text_of("IndepVar", "Nothing")(whole))
                    self.refused(FAILED, "eval", copy, "1", "--result", "Something", says=["Nothing", "motion result"])

    def test_bytes_that_are_not_of_the_encoding(self):
        for path in SAMPLES:
            with self.subTest(path.name):
                copy = self.folder / "broken.xml"
                copy.write_bytes(path.read_bytes().replace(b"<FunctionName>", b"<FunctionName>\xe4"))
                self.refused(FAILED, "info", copy, says=["not proper UTF-8", "broken.xml:2: "])
                copy.write_bytes(path.read_bytes().replace(b"'UTF-8'", b"'Klingon'"))
                self.refused(FAILED, "info", copy, says=["encoding Klingon", "broken.xml:1: "])

    def test_what_is_no_file(self):
        self.refused(FAILED, "info", self.folder, says=[f"{self.folder}: ", "Is a directory"])
        self.refused(FAILED, "info", self.folder / "none.xml", says=["none.xml: ", "No such file or directory"])
        self.refused(FAILED, "info", "", says="No such file or directory")
        locked = self.write("locked.xml", SAMPLES[0].read_text(encoding="utf-8"))
        locked.chmod(0)
        if not os.access(locked, os.R_OK):  # as it is for root
            self.refused(FAILED, "info", locked, says=["locked.xml: ", "Permission denied"])

    def test_a_pipe(self):
        for path in SAMPLES:
            with self.subTest(path.name):
                pipe = self.folder / path.stem
                os.mkfifo(pipe)
                writer = subprocess.Popen(f'cat "{path}" > "{pipe}"', shell=True)
                self.assertIn("valid          yes", self.done("info", pipe, *host_of(path.read_text(encoding="utf-8"))))
                writer.wait()

    def test_a_broken_document_among_others(self):
        good = SAMPLES[0].parent / "rise-dwell-return-cam.xml"
        bad = self.write("bad.xml", text_of("Value", "high")(good.read_text(encoding="utf-8")))
        result = self.refused(FAILED, "eval", bad, good, "45", says=[f"{bad}: ", '"high"'])
        self.assertEqual(result.stdout.splitlines()[0], f"# {good}")
        result = self.refused(FAILED, "table", bad, "--format", "json", says=f"{bad}: ")
        self.assertEqual(result.stdout, "")
        result = run("eval", good, good, "400")
        self.assertEqual(result.stderr, f"mfcurve: warning: {good}: x = 400 is outside the curve, which runs from 0 to 360\n" * 2)
