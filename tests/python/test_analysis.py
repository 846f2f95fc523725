# SPDX-License-Identifier: MIT
"""The analysis of curves: breaks, peaks, limits, other forms, pictures."""

import math
import warnings

import numpy as np
import pytest

import mfcurves as mf

# Norton, Cam Design and Manufacturing Handbook: 15/8, 10/sqrt(3), 60.
FACTORS_345 = (15.0 / 8.0, 10.0 / math.sqrt(3.0), 60.0)


def test_peaks_are_those_of_the_closed_form():
    move = mf.segments([(2.0, 10.0, "3-4-5-Polynomial")])
    orders = move.peaks()
    for order, factor in zip(orders[1:], FACTORS_345):
        assert order.greatest.y == pytest.approx(factor * 10.0 / 2.0 ** (orders.index(order)), rel=1e-12)
        assert order.guaranteed
    assert orders[2].greatest.x == pytest.approx(2.0 * (0.5 - math.sqrt(3.0) / 6.0), rel=1e-7)
    assert orders[0].mean == pytest.approx(5.0, rel=1e-12)
    assert (orders[0].least.y, orders[0].greatest.y, orders[0].greatest.x) == (0.0, 10.0, 2.0)


def test_impulses_are_listed_where_the_order_below_jumps():
    ramp = mf.segments([(1, 10, "Linear"), (2, 10, "Linear")])
    assert ramp.peaks()[2].impulses == (1.0,)
    assert ramp.peaks()[1].impulses == ()


def test_breaks_say_what_jumps(cam):
    ramp = mf.segments([(1, 10, "Linear"), (2, 10, "Linear")])
    (place,) = ramp.breaks()
    assert (place.x, place.lowest, place.cause, place.row) == (1.0, 1, "seam", 2)
    assert (place.left[1], place.right[1]) == (10.0, 0.0)
    assert ramp.breaks(order=0) == []
    assert [b.cause for b in mf.expression("abs(x-1)", domain=(0, 2)).breaks()] == ["kink"]
    assert [b.cause for b in cam.with_outside("repeat").breaks()][-1] == "cycle end"


def test_crossings(wave):
    assert wave.crossings(5.0) == pytest.approx([1 / 12, 5 / 12], rel=1e-14)
    assert wave.crossings(11.0) == []


def test_a_check_says_where_a_limit_is_broken():
    move = mf.segments([(2.0, 10.0, "3-4-5-Polynomial")])
    (broken,) = move.check(max_velocity=9.0).violations
    assert (broken.order, broken.limit) == (1, 9.0)
    assert (broken.worst_x, broken.worst) == (pytest.approx(1.0), pytest.approx(9.375))
    assert 0 < broken.start < 1 < broken.end < 2
    assert move(broken.start, 1) == pytest.approx(9.0, rel=1e-12)


def test_a_check_of_velocities_counts_from_the_velocity():
    drive = mf.segments([(2.0, 10.0, "3-4-5-Polynomial")], drive="velocity")
    assert [v.order for v in drive.check(max_velocity=9.0).violations] == [0]
    assert [v.order for v in drive.check(max_acceleration=9.0).violations] == [1]


def test_a_check_of_the_cycle(cam):
    assert cam.check(cyclic=True).ok
    open_end = mf.segments([(360, 25, "3-4-5-Polynomial")], over="angle")
    (jump,) = open_end.check(cyclic=True).violations
    assert (jump.order, jump.limit, jump.start, jump.end, jump.worst) == (0, None, 360.0, 360.0, None)


def test_an_impulse_breaks_every_limit():
    ramp = mf.segments([(1, 10, "Linear"), (2, 10, "Linear")])
    (impulse,) = ramp.check(max_acceleration=1e9).violations
    assert (impulse.start, impulse.end, impulse.worst, impulse.worst_x) == (1.0, 1.0, None, None)


def test_the_range_of_values(wave):
    low, high = wave.check(range=(-9, 9)).violations
    assert (low.limit, high.limit) == (-9.0, 9.0)
    assert (low.worst, high.worst) == (pytest.approx(-10.0), pytest.approx(10.0))
    assert (low.worst_x, high.worst_x) == (pytest.approx(0.75), pytest.approx(0.25))


def test_a_check_finds_both_sides_of_a_pole():
    low, high = mf.expression("1/x", domain=(-1, 1)).check(range=(-5, 5)).violations
    assert (low.start, low.end) == (pytest.approx(-0.2), pytest.approx(0.0, abs=1e-15))
    assert (high.start, high.end) == (pytest.approx(0.0, abs=1e-15), pytest.approx(0.2))


def test_a_check_that_finds_nothing_warns_where_this_is_not_proved(wave):
    with pytest.warns(mf.CurveWarning, match="not proved that there is none"):
        assert mf.expression("1/x", domain=(-1, 1)).check(continuity=0).ok
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        assert wave.check(range=(-10.5, 10.5), continuity=2) == (True, ())


def test_an_angle_curve_over_time(cam):
    timed = cam.over_time(rpm=300)
    assert timed.over == "time" and timed.domain == (0.0, pytest.approx(0.2))
    assert timed(0.025) == pytest.approx(12.5)
    assert timed(0.025, 1) == pytest.approx(cam(45.0, 1) * 1800.0)
    assert cam.over_time(cycle_time=0.2) == timed


def test_the_fastest_law_by_hand():
    (first, *rest) = mf.fastest(0.2, max_acceleration=10.0)
    durations = {move.profile: move.duration for move in (first, *rest)}
    assert durations["3-4-5-Polynomial"] == pytest.approx(math.sqrt(FACTORS_345[1] * 0.2 / 10.0), rel=1e-12)
    assert "Linear" not in durations and first.duration == min(durations.values())
    assert {move.limited_by for move in (first, *rest)} == {"acceleration"}
    assert "Cubic" not in {move.profile for move in mf.fastest(0.2, max_jerk=10.0)}


def test_laws_have_factors():
    laws = {law.name: law for law in mf.laws()}
    assert len(laws) == len(mf.laws()) >= 26
    law = laws["3-4-5-Polynomial"]
    assert (law.cv, law.ca, law.cj) == pytest.approx(FACTORS_345, rel=1e-12)
    assert law.continuity == 2 and "3-4-5-Polynomial" in law.formula


def test_a_table_keeps_within_its_bound(cam):
    for form in ("linear", "points", "xyva"):
        table = cam.to_table(form, tolerance=1e-3)
        assert table.bound <= 1e-3 and table.guaranteed
        assert np.all(np.diff(table.x) >= 0) and table.x[0] == 0.0 and table.x[-1] == 360.0
    x = np.linspace(0, 360, 10_001)
    lines = cam.to_table("linear", tolerance=1e-3)
    assert np.abs(np.interp(x, lines.x, lines.y) - cam(x)).max() <= 1e-3


def test_a_ppoly_keeps_within_its_tolerance(cam):
    pieces = cam.to_ppoly(1e-5)
    assert np.all(np.diff(pieces.x) > 0)
    x = np.linspace(0, 360, 10_001)
    assert np.abs(pieces(x) - cam(x)).max() <= 1e-5
    with pytest.raises(mf.CurveError):
        cam.to_ppoly(0)


def test_plots_have_a_panel_for_each_order(cam):
    matplotlib = pytest.importorskip("matplotlib")
    matplotlib.use("Agg")
    import matplotlib.pyplot as plt

    axes = cam.plot(orders=(0, 2))
    assert len(axes) == 2 and axes[1].get_ylabel() == "acceleration"
    line = axes[1].get_lines()[0]
    assert np.nanmax(line.get_ydata()) == pytest.approx(cam.peaks()[2].greatest.y, rel=1e-3)
    figure, ax = plt.subplots()
    assert cam.plot(ax=ax) is ax and len(ax.get_legend().get_texts()) == 4
    with pytest.raises(mf.CurveError):
        cam.plot(orders=(7,))
    plt.close("all")


def test_a_notebook_shows_a_picture(cam):
    svg = cam._repr_svg_()
    assert svg.lstrip().startswith(("<?xml", "<svg")) and "</svg>" in svg and "cam" in svg


@pytest.mark.parametrize("text, domain", [("floor(x)", (0, 2100)), ("sqrt(x^2)", (-1, 1)), ("1/x", (-1, 1))])
def test_places_that_are_not_proved_to_be_all_warn(text, domain):
    curve = mf.expression(text, domain=domain)
    with pytest.warns(mf.CurveWarning, match="there may be further breaks"):
        curve.breaks()
    with pytest.warns(mf.CurveWarning, match="elsewhere"):
        curve.crossings(0.5, nu=1)


def test_a_piecewise_polynomial_that_is_not_proved_warns():
    with pytest.warns(mf.CurveWarning, match="not proved to keep the tolerance"):
        mf.expression("tan(x)", domain=(1, 2)).to_ppoly(1e-3)
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        mf.segments([(2.0, 10.0, "3-4-5-Polynomial")]).to_ppoly(1e-3)


def test_a_limit_of_what_the_curve_does_not_have_is_an_error():
    row = [(90, 25, "Cubic")]
    for drive, limit in (("acceleration", "max_velocity"), ("force", "max_velocity"), ("torque", "max_jerk")):
        with pytest.raises(mf.CurveError, match=f"a curve of {drive} has no"):
            mf.segments(row, drive=drive).check(**{limit: 20})
    assert not mf.segments(row, drive="acceleration").check(max_acceleration=20).ok
