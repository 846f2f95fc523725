# SPDX-License-Identifier: MIT
"""Values and derivatives against closed forms, SciPy and mpmath, for numbers and arrays."""

import decimal
import fractions
import math
import weakref

import numpy as np
import pytest
from hypothesis import given, settings
from hypothesis import strategies as st
from scipy.interpolate import Akima1DInterpolator, CubicSpline

import mfcurves as mf

mpmath = pytest.importorskip("mpmath")


def knots():
    gaps = st.lists(st.floats(0.01, 10.0), min_size=2, max_size=20)
    return gaps.flatmap(
        lambda steps: st.tuples(
            st.just(np.cumsum([0.0, *steps])),
            st.lists(st.floats(-100.0, 100.0), min_size=len(steps) + 1, max_size=len(steps) + 1).map(np.array),
        )
    )


@given(knots())
@settings(max_examples=100, deadline=None)
def test_cubic_points_are_the_natural_spline_of_scipy(points):
    x, y = points
    ours, theirs = mf.points(x, y, "cubic"), CubicSpline(x, y, bc_type="natural")
    at = np.linspace(x[0], x[-1], 101)[:-1]
    for nu in range(3):
        scale = np.abs(theirs(at, nu)).max() + np.abs(y).max() / np.diff(x).min() ** nu
        np.testing.assert_allclose(ours(at, nu), theirs(at, nu), atol=1e-9 * scale, rtol=0)


@given(knots().filter(lambda points: len(points[0]) > 4))
@settings(max_examples=100, deadline=None)
def test_akima_points_are_those_of_scipy(points):
    x, y = points
    if np.any(np.diff(y) == 0.0):
        return  # equal neighbours: SciPy takes another mean of slopes
    ours, theirs = mf.points(x, y, "akima"), Akima1DInterpolator(x, y)
    at = np.linspace(x[0], x[-1], 101)[:-1]
    scale = np.abs(y).max() / np.diff(x).min()
    np.testing.assert_allclose(ours(at), theirs(at), atol=1e-6 * scale, rtol=0)


# Norton, Cam Design and Manufacturing Handbook.
LAWS = {
    "3-4-5-Polynomial": lambda u: 10 * u**3 - 15 * u**4 + 6 * u**5,
    "4-5-6-7-Polynomial": lambda u: 35 * u**4 - 84 * u**5 + 70 * u**6 - 20 * u**7,
    "Cubic": lambda u: 3 * u**2 - 2 * u**3,
    "Half-Cosine": lambda u: (1 - mpmath.cos(mpmath.pi * u)) / 2,
}


@pytest.mark.parametrize("law", LAWS)
@pytest.mark.parametrize("u", [0.0, 0.1, 0.3, 0.5, 0.75, 1.0])
def test_laws_have_the_values_of_their_formulas(law, u):
    curve = mf.segments([(1.0, 1.0, law)])
    with mpmath.workdps(40):
        for nu in range(4):
            expected = float(mpmath.diff(LAWS[law], mpmath.mpf(u), nu))
            assert curve(u, nu) == pytest.approx(expected, abs=2e-13 * 840)


@pytest.mark.parametrize("text, function", [("x*exp(-x)", lambda x: x * mpmath.exp(-x)),
                                            ("sqrt(1+x^2)", lambda x: mpmath.sqrt(1 + x**2)),
                                            ("10*sin(2*pi*x)", lambda x: 10 * mpmath.sin(2 * mpmath.pi * x))])
def test_expressions_have_the_derivatives_of_their_formulas(text, function):
    curve = mf.expression(text, domain=(0, 2))
    with mpmath.workdps(40):
        for x in (0.25, 1.0, 1.75):
            for nu in range(4):
                expected = float(mpmath.diff(function, mpmath.mpf(x), nu))
                assert curve(x, nu) == pytest.approx(expected, rel=1e-12, abs=1e-11)


def test_numbers_and_arrays_have_the_same_bits(cam, wave, spline):
    for curve in (cam, wave, spline):
        first, last = curve.domain
        x = np.linspace(first - 0.1, last + 0.1, 1000)
        for nu in range(4):
            assert curve(x, nu).tobytes() == np.array([curve(float(at), nu) for at in x]).tobytes()
        assert curve.svaj(x).tobytes() == np.stack([curve(x, nu) for nu in range(4)]).tobytes()


@pytest.mark.parametrize("shape", [(), (0,), (1,), (3, 0, 2), (2, 3, 4)])
def test_the_shape_comes_back(cam, shape):
    x = np.full(shape, 45.0)
    assert cam(x).shape == shape
    assert cam.svaj(x).shape == (4, *shape)


@pytest.mark.parametrize("dtype", ["f4", "f8", "i4", "u1", ">f8", "?", "f2"])
def test_every_real_dtype_is_taken(cam, dtype):
    x = np.array([0, 1, 1], dtype)
    np.testing.assert_array_equal(cam(x), cam(x.astype("f8")))
    assert cam(x).dtype == np.float64


def test_strides_do_not_matter(cam):
    x = np.linspace(0, 360, 24).reshape(4, 6)
    np.testing.assert_array_equal(cam(x.T), cam(x).T)
    np.testing.assert_array_equal(cam(x[::-1, ::2]), cam(x)[::-1, ::2])
    x.flags.writeable = False
    np.testing.assert_array_equal(cam(x), cam(x.copy()))


def test_masks_are_kept(cam):
    x = np.ma.array([1.0, 2.0, 3.0], mask=[False, True, False])
    y = cam(x)
    assert isinstance(y, np.ma.MaskedArray)
    assert y.mask.tolist() == [False, True, False]
    assert cam.svaj(x).mask[2].tolist() == [False, True, False]


def test_what_has_no_value_is_nan(cam):
    assert math.isnan(cam(math.nan)) and math.isnan(cam(np.nan, 3))
    assert np.isnan(mf.expression("1/x", domain=(0, 1))([0.0, 1.0])).tolist() == [True, False]


def test_scalars_of_any_kind_give_numbers(cam):
    for x in (45, 45.0, np.float32(45), np.int8(45)):
        y = cam(x)
        assert isinstance(y, float) and y == 12.5
    assert cam(x=45.0, nu=0) == cam(45.0, 0, "left") == 12.5


def test_numbers_without_a_dtype_are_taken(cam):
    assert cam(fractions.Fraction(91, 2)) == cam(decimal.Decimal("45.5")) == cam(45.5)
    assert cam([fractions.Fraction(91, 2), 45]).tolist() == [cam(45.5), cam(45.0)]
    assert cam(np.array([[2**70, 45]], object)).tolist() == [[cam(2.0**70), cam(45.0)]]
    assert cam(np.array([], object)).shape == (0,)


def test_sides_differ_where_rows_meet():
    ramp = mf.segments([(1, 10, "Linear"), (2, 10, "Linear")])
    assert [ramp(1.0, 1, side=side) for side in ("left", "right", "plain")] == [10.0, 0.0, 0.0]
    assert ramp(np.array([1.0]), 1, "left").tolist() == [10.0]
    assert ramp.svaj(1.0, side="left")[1] == 10.0


@pytest.mark.parametrize("rule, below, above", [("extend", -10.0, 20.0), ("hold", 0.0, 10.0),
                                                ("repeat", 0.0, 0.0), ("undefined", None, None)])
def test_rules_beyond_the_ends(rule, below, above):
    ramp = mf.segments([(1, 10, "Linear")]).with_outside(rule)
    for x, expected in ((-1.0, below), (2.0, above)):
        y = ramp(x)
        assert math.isnan(y) if expected is None else y == expected


def test_derivatives_are_functions(cam):
    velocity = cam.derivative()
    assert velocity(45.0) == cam(45.0, 1)
    assert velocity.derivative(2)(45.0) == velocity(45.0, nu=2) == cam(45.0, 3)
    assert velocity.domain == cam.domain
    assert velocity == cam.derivative(1) and velocity != cam.derivative(2)
    assert hash(velocity) == hash(cam.derivative(1))
    with pytest.raises(mf.CurveError):
        velocity.derivative(3)


def test_a_curve_takes_no_further_attributes(cam):
    with pytest.raises(AttributeError):
        cam.naem = "x"
    assert weakref.ref(cam)() is cam
