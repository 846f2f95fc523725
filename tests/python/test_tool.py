# SPDX-License-Identifier: MIT
"""The module and the command-line tool give the same bits."""

import json
import os
import pathlib
import subprocess

import numpy as np
import pytest

import mfcurves as mf

SAMPLES = pathlib.Path(__file__).resolve().parents[2] / "share/mfcurves/curves"
# The other one needs a host that knows its motion result.
DOCUMENTS = sorted(path for path in SAMPLES.glob("*.xml") if path.stem != "friction-torque")


@pytest.fixture(scope="module")
def tool():
    if "MFCURVES_BUILD" not in os.environ:
        pytest.skip("MFCURVES_BUILD names no build folder; scripts/python_test.sh sets it")
    return pathlib.Path(os.environ["MFCURVES_BUILD"]) / "tools/mfcurve/mfcurve"


@pytest.mark.parametrize("document", DOCUMENTS, ids=lambda path: path.stem)
def test_values_of_a_document_are_those_of_the_tool(tool, document, tmp_path):
    curve = mf.read(document)
    x = np.linspace(*curve.domain, 997)
    places = tmp_path / "x.txt"
    places.write_text("\n".join(map(repr, x.tolist())) + "\n")
    shown = subprocess.run(
        [tool, "eval", document, "--at", places, "--format", "json"], capture_output=True, text=True, check=True
    ).stdout
    points = json.loads(shown)[0]["points"]
    assert [point["x"] for point in points] == x.tolist()
    values = np.array([[point[key] for point in points] for key in ("value", "d1", "d2", "d3")], float)
    np.testing.assert_array_equal(values, curve.svaj(x))
