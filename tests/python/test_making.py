# SPDX-License-Identifier: MIT
"""Making curves, their properties, and the errors for bad input."""

import copy
import errno
import math
import os
import pathlib
import pickle
import subprocess
import sys

import numpy as np
import pytest
from hypothesis import given, settings
from hypothesis import strategies as st

import mfcurves as mf

NUMBERS = st.floats(-1e6, 1e6, allow_subnormal=False)
LAWS = st.sampled_from(["Linear", "Cubic", "3-4-5-Polynomial", "4-5-6-7-Polynomial", "Half-Cosine"])


@st.composite
def curves(draw):
    kind = draw(st.sampled_from(["segments", "points", "expression"]))
    common = {
        "over": draw(st.sampled_from(["time", "angle", "Slip Speed"])),
        "drive": draw(st.sampled_from(["displacement", "velocity", "force"])),
        "rotary": draw(st.booleans()),
        "name": draw(st.text(st.characters(blacklist_categories=["Cs"], blacklist_characters="\0"), max_size=8)),
    }
    ends = np.cumsum(draw(st.lists(st.floats(0.001, 100.0), min_size=1, max_size=6)))
    if kind == "segments":
        rows = [(end, draw(NUMBERS), draw(LAWS)) for end in ends.tolist()]
        return mf.segments(rows, start=(0.0, draw(NUMBERS)), six_decimals=draw(st.booleans()), **common)
    if kind == "points":
        y = [draw(NUMBERS) for _ in ends]
        return mf.points(ends, y, draw(st.sampled_from(["linear", "cubic", "akima"])), **common)
    return mf.expression(f"{draw(NUMBERS)!r}*x^2+sin(x)".replace("e+", "e"), domain=(0, float(ends[-1])), **common)


@given(curves())
@settings(max_examples=200, deadline=None)
def test_copies_of_every_kind_are_equal(curve):
    for other in (pickle.loads(pickle.dumps(curve)), copy.copy(curve), copy.deepcopy(curve), eval(repr(curve))):
        assert other == curve and hash(other) == hash(curve) and not other != curve
        x = np.linspace(*curve.domain, 50)
        assert other.svaj(x).tobytes() == curve.svaj(x).tobytes()


def test_pickles_are_exact_in_another_process(tmp_path):
    random = np.random.default_rng(1)
    made = []
    for _ in range(1000):
        ends = np.cumsum(random.uniform(0.01, 1.0, 3)) / 3.0
        values = random.normal(size=3) / 3.0
        made.append(mf.segments([(e, v, "3-4-5-Polynomial") for e, v in zip(ends, values)]))
    (tmp_path / "curves").write_bytes(pickle.dumps(made))
    script = (
        "import pickle, sys, numpy as np\n"
        "for curve in pickle.load(open(sys.argv[1], 'rb')):\n"
        "    sys.stdout.buffer.write(curve.svaj(np.linspace(*curve.domain, 20)).tobytes())\n"
    )
    said = subprocess.run([sys.executable, "-c", script, tmp_path / "curves"], check=True, capture_output=True)
    assert said.stdout == b"".join(c.svaj(np.linspace(*c.domain, 20)).tobytes() for c in made)


@pytest.mark.parametrize("protocol", range(pickle.HIGHEST_PROTOCOL + 1))
def test_every_protocol_keeps_curves_and_derivatives(cam, protocol):
    velocity = cam.derivative()
    assert pickle.loads(pickle.dumps((cam, velocity), protocol)) == (cam, velocity)


def test_a_pickle_keeps_the_rule_beyond_the_ends(cam):
    repeated = pickle.loads(pickle.dumps(cam.with_outside("repeat")))
    assert repeated(405.0) == cam(45.0)


def test_curves_differ_by_every_argument(cam):
    others = [
        cam.replace(name="other"),
        cam.replace(over="time"),
        cam.replace(drive="velocity"),
        cam.replace(rotary=True),
        cam.replace(start=(0, 1)),
        cam.replace(rows=cam.rows[:-1]),
        cam.replace(six_decimals=True),
        mf.points([0, 1], [0, 1]),
    ]
    assert all(cam != other for other in others)
    assert len({cam, *others}) == 9
    assert cam != "cam"


def test_a_curve_says_what_it_is_made_of(cam, spline):
    assert (cam.name, cam.over, cam.drive, cam.rotary) == ("cam", "angle", "displacement", False)
    assert cam.rows[0] == (90.0, 25.0, "3-4-5-Polynomial") and cam.rows[0].end == 90.0
    assert spline.rows == ()
    assert cam.domain == (0.0, 360.0)
    assert cam.replace(over="Slip Speed").over == "Slip Speed"


def test_curves_are_constant(cam):
    for attribute in ("domain", "rows", "name", "over", "drive", "rotary"):
        with pytest.raises(AttributeError):
            setattr(cam, attribute, None)
    with pytest.raises(TypeError):
        cam.rows[0] = (1, 2, "Linear")


def test_a_law_travels_with_its_curve():
    text = """SegmentType("Mine", x, x1, y1, x2, y2)
    xbar = (x-x1)/(x2-x1);
    y = y1+(y2-y1)*xbar^2;
    return y;
endSegmentType"""
    curve = mf.segments([(1, 1, "Mine")], laws={"Mine": text})
    assert pickle.loads(pickle.dumps(curve))(0.5) == 0.25


def test_documents_come_back(cam, tmp_path):
    exact = cam.replace(six_decimals=True)
    path = tmp_path / "cam.xml"
    exact.write(path)
    assert mf.read(path) == mf.read(str(path)) == mf.parse(exact.to_xml()) == exact


def test_what_six_digits_change_is_a_warning(tmp_path):
    curve = mf.points([0, 1], [0, 1000.123])
    with pytest.warns(mf.CurveWarning, match="1000.123") as caught:
        curve.to_xml()
        curve.write(tmp_path / "curve.xml")
    assert len(caught) == 2 and {warning.filename for warning in caught} == {__file__}


def test_every_sample_is_read(samples):
    for path in sorted(samples.glob("*.xml")):
        curve = mf.read(path, results=["Slip Speed", "Shaft Speed"])
        assert np.isfinite(curve(np.linspace(*curve.domain, 5))).any()


def test_a_missing_result_is_named(samples):
    with pytest.raises(mf.CurveError, match="Slip Speed"):
        mf.read(samples / "friction-torque.xml")


BAD = [
    (lambda: mf.segments([]), mf.CurveError, "row"),
    (lambda: mf.segments([(1, 2)]), TypeError, "row 1"),
    (lambda: mf.segments("abc"), TypeError, "rows"),
    (lambda: mf.segments([("a", 2, "Linear")]), TypeError, "end of row 1"),
    (lambda: mf.segments([(1, None, "Linear")]), TypeError, "value of row 1"),
    (lambda: mf.segments([(1, 2, 3)]), TypeError, "profile of row 1"),
    (lambda: mf.segments([(1, 2, "Linera")]), mf.CurveError, "Linear"),
    (lambda: mf.segments([(1, float("nan"), "Linear")]), mf.CurveError, "row 1"),
    (lambda: mf.segments([(2, 1, "Linear"), (1, 1, "Linear")]), mf.CurveError, "row 2"),
    (lambda: mf.segments([(1, 2, "Linear")], start=3), TypeError, "start"),
    (lambda: mf.segments([(1, 2, "Linear")], laws=[]), TypeError, "laws"),
    (lambda: mf.segments([(1, 2, "Linear")], drive="speed"), mf.CurveError, "drive"),
    (lambda: mf.segments([(1, 2, "Linear")], over=3), TypeError, "over"),
    (lambda: mf.segments([(1, 2, "Linear")], over=""), mf.CurveError, "motion result"),
    (lambda: mf.points([], []), mf.CurveError, "points"),
    (lambda: mf.points([0, 0], [1, 2]), mf.CurveError, "point 2"),
    (lambda: mf.points([0, 1], [1]), mf.CurveError, ""),
    (lambda: mf.points([[0, 1]], [[1, 2]]), mf.CurveError, "one dimension"),
    (lambda: mf.points([0, np.inf], [1, 2]), mf.CurveError, "point 2"),
    (lambda: mf.points(["a"], [1]), TypeError, "real numbers"),
    (lambda: mf.points([0, 1], [1, 2], "spline"), mf.CurveError, "interpolation"),
    (lambda: mf.points(np.ma.array([0, 1], mask=[0, 1]), [1, 2]), mf.CurveError, "masked"),
    (lambda: mf.expression("sin(x", domain=(0, 1)), mf.CurveError, "character 6"),
    (lambda: mf.expression("x*y", domain=(0, 1)), mf.CurveError, ""),
    (lambda: mf.expression("x", domain=(1, 0)), mf.CurveError, ""),
    (lambda: mf.expression(b"x", domain=(0, 1)), TypeError, "text"),
    (lambda: mf.expression("x", domain=1), TypeError, "domain"),
    (lambda: mf.expression("x\0y", domain=(0, 1)), mf.CurveError, "zero character"),
    (lambda: mf.segments([(1, 2, "Linear")], name="half\ud800"), mf.CurveError, "character 5"),
    (lambda: mf.parse("<Curve/>"), mf.CurveError, "missing"),
    (lambda: mf.parse("no xml"), mf.CurveError, ""),
    (lambda: mf.parse(3), TypeError, "text"),
    (lambda: mf.read(3.5), TypeError, ""),
    (lambda: mf.fastest(0.0, max_velocity=1), mf.CurveError, "stroke"),
    (lambda: mf.fastest(1.0), mf.CurveError, "max_velocity"),
    (lambda: mf.fastest(1.0, max_jerk=-1), mf.CurveError, "above 0"),
]


@pytest.mark.parametrize("number", range(len(BAD)))
def test_bad_input_is_refused_with_a_sentence(number):
    make, error, said = BAD[number]
    with pytest.raises(error) as caught:
        make()
    assert said in str(caught.value) and str(caught.value)


CALLS = [
    (lambda cam: cam("45"), TypeError),
    (lambda cam: cam(None), TypeError),
    (lambda cam: cam(1j), TypeError),
    (lambda cam: cam(object()), TypeError),
    (lambda cam: cam({1.0}), TypeError),
    (lambda cam: cam([None, 1.0]), TypeError),
    (lambda cam: cam(np.array([1j], object)), TypeError),
    (lambda cam: cam(10**400), TypeError),
    (lambda cam: cam([[1.0], [1.0, 2.0]]), (TypeError, ValueError)),
    (lambda cam: cam(np.array(["a"])), TypeError),
    (lambda cam: cam(np.array([1], "M8[s]")), TypeError),
    (lambda cam: cam(1.0, 4), mf.CurveError),
    (lambda cam: cam(1.0, -1), mf.CurveError),
    (lambda cam: cam([1.0], 4), mf.CurveError),
    (lambda cam: cam(1.0, 1.5), TypeError),
    (lambda cam: cam(1.0, 0, "up"), mf.CurveError),
    (lambda cam: cam(), TypeError),
    (lambda cam: cam.svaj("a"), TypeError),
    (lambda cam: cam.derivative("1"), TypeError),
    (lambda cam: cam.with_outside("wrap"), mf.CurveError),
    (lambda cam: cam.replace(colour="red"), TypeError),
    (lambda cam: cam.breaks(order=5), mf.CurveError),
    (lambda cam: cam.crossings("a"), TypeError),
    (lambda cam: cam.check(max_velocity=0), mf.CurveError),
    (lambda cam: cam.check(continuity=4), mf.CurveError),
    (lambda cam: cam.check(range=3), TypeError),
    (lambda cam: cam.check(range=(5, 1)), mf.CurveError),
    (lambda cam: cam.check(range=(math.nan, 1)), mf.CurveError),
    (lambda cam: cam.check(cyclic="no"), TypeError),
    (lambda cam: cam.crossings(math.nan), mf.CurveError),
    (lambda cam: cam.crossings(math.inf), mf.CurveError),
    (lambda cam: cam.replace(rotary="no"), TypeError),
    (lambda cam: cam.replace(six_decimals=2), TypeError),
    (lambda cam: mf.read(0), TypeError),
    (lambda cam: cam.over_time(), TypeError),
    (lambda cam: cam.over_time(rpm=0), mf.CurveError),
    (lambda cam: cam.replace(over="time").over_time(rpm=1), mf.CurveError),
    (lambda cam: mf.Curve("cam"), TypeError),
]


@pytest.mark.parametrize("number", range(len(CALLS)))
def test_bad_calls_are_refused(cam, number):
    call, error = CALLS[number]
    with pytest.raises(error) as caught:
        call(cam)
    assert str(caught.value)


def test_errors_survive_pickling():
    with pytest.raises(mf.CurveError) as caught:
        mf.segments([(1, 2, "No such law"), (0, 2, "Linear")])
    again = pickle.loads(pickle.dumps(caught.value))
    assert again.problems == caught.value.problems and str(again) == str(caught.value)
    assert again.problems[0].place == "row 1" and again.problems[0].level == "error"
    assert isinstance(again, ValueError)


@pytest.mark.parametrize(
    "state",
    [{}, None, {"kind": "segments"}, {"kind": "spline"}, {"kind": "points", "x": "abc", "y": 3}, [1, 2]],
)
def test_damaged_pickles_are_refused(state):
    from mfcurves._curve import _restored

    with pytest.raises((mf.CurveError, TypeError)):
        _restored(state, "extend")


def test_files_that_cannot_be_read_or_written(cam, tmp_path):
    with pytest.raises(FileNotFoundError) as caught:
        mf.read(tmp_path / "none.xml")
    assert caught.value.errno == errno.ENOENT
    with pytest.raises(IsADirectoryError):
        mf.read(tmp_path)
    with pytest.raises(FileNotFoundError):
        cam.write(tmp_path / "none" / "cam.xml")
    with pytest.raises(IsADirectoryError):
        cam.write(tmp_path)


def test_a_file_without_permission_is_refused(cam, tmp_path):
    if os.geteuid() == 0:
        target = pathlib.Path("/proc/version")  # not even the administrator can write it
    else:
        target = tmp_path / "locked.xml"
        target.write_text("")
        target.chmod(0o400)
    with pytest.raises((PermissionError, mf.CurveError)):
        cam.write(target)


@pytest.mark.skipif(not os.path.exists("/dev/full"), reason="this system has no full device")
def test_a_full_device_is_the_error_of_the_system(cam):
    with pytest.raises(OSError) as caught:
        cam.write("/dev/full")
    assert (caught.value.errno, caught.value.filename) == (errno.ENOSPC, "/dev/full")


def test_a_curve_that_was_never_made_is_refused():
    with pytest.raises(TypeError):
        mf.Curve.__new__(mf.Curve)(1.0)


def test_a_number_that_is_too_large_is_refused():
    with pytest.raises(mf.CurveError, match="end of row 1"):
        mf.segments([(10**400, 1, "Linear")])
    with pytest.raises(TypeError):
        mf.points([0, 10**400], [0, 1])
    with pytest.raises((TypeError, mf.CurveError)):
        mf.expression("x", domain=(0, 1))(1.0, 10**400)
