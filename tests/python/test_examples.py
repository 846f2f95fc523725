# SPDX-License-Identifier: MIT
"""The example scripts, run as a user runs them."""

import csv
import os
import pathlib
import re
import signal
import subprocess
import sys

import pytest

EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "examples"
VARIANTS = 800  # four batches
PNG = b"\x89PNG\r\n"


def command(script, *arguments):
    return [sys.executable, str(EXAMPLES / script), *map(str, arguments)]


def run(script, *arguments, status=0):
    said = subprocess.run(command(script, *arguments), capture_output=True, text=True, timeout=300)
    assert said.returncode == status, said.stderr
    return said


def test_a_cam_is_designed(tmp_path):
    picture = tmp_path / "cam.png"
    lines = run("design_cam.py", picture).stdout.splitlines()
    peaks = {line.split()[0]: float(line.split()[1]) for line in lines[:-1]}
    # 25 mm in 90 degrees at 300 rpm, 0.05 s: Ca H/T^2 with the factors of Norton, Cam Design
    # and Manufacturing Handbook, and pi^2/2 of the half cosine.
    for law, factor in (("3-4-5-Polynomial", 10.0 / 3.0**0.5), ("Half-Cosine", 3.14159265358979**2 / 2.0)):
        assert peaks[law] == pytest.approx(factor * 25.0 / 0.05**2, abs=0.06)
    assert lines[-1] == "the best is the cam by 3-4-5-Polynomial"
    assert picture.read_bytes().startswith(PNG)


def test_an_integrator_needs_the_breaks():
    without, with_breaks, exact = (float(text) for text in re.findall(r"(\S+) m/s", run("drive_with_breaks.py").stdout))
    assert exact == 2.0  # 100 N for 20 ms on 1 kg
    assert with_breaks == pytest.approx(exact, abs=1e-6)
    assert abs(without - exact) > 0.01


@pytest.fixture(scope="module")
def swept_here(tmp_path_factory):
    """The table of a sweep in one process, as bytes."""
    table = tmp_path_factory.mktemp("sweep") / "here.csv"
    shown = run("sweep.py", "--variants", VARIANTS, "--workers", 0, "--output", table).stdout
    work, elapsed, speed_up = map(float, re.search(r"([\d.]+) ms of work.*?([\d.]+) s in all.*?([\d.]+)$", shown.strip()).groups())
    assert 0.0 < speed_up <= 1.1  # one process
    assert work * VARIANTS / 1e3 <= 1.1 * elapsed + 0.1
    assert table.with_suffix(".png").read_bytes().startswith(PNG)
    return table.read_bytes()


def test_a_sweep_judges_every_variant(swept_here):
    rows = list(csv.DictReader(swept_here.decode().splitlines()))
    assert len(rows) == VARIANTS
    assert {"True", "False"} == {row["feasible"] for row in rows}
    row = next(row for row in rows if row["law"] == "3-4-5-Polynomial")
    seconds = float(row["angle"]) / 360.0 * 60.0 / float(row["speed"])
    stroke = float(row["stroke"])
    assert float(row["velocity"]) == pytest.approx(15.0 / 8.0 * stroke / seconds, rel=1e-12)
    assert float(row["acceleration"]) == pytest.approx(10.0 / 3.0**0.5 * stroke / seconds**2, rel=1e-12)
    assert float(row["jerk"]) == pytest.approx(60.0 * stroke / seconds**3, rel=1e-9)


def test_two_workers_make_the_same_table(swept_here, tmp_path):
    pytest.importorskip("distributed")
    run("sweep.py", "--variants", VARIANTS, "--workers", 2, "--output", tmp_path / "two.csv")
    assert (tmp_path / "two.csv").read_bytes() == swept_here


def test_a_killed_worker_changes_nothing(swept_here, tmp_path, monkeypatch):
    pytest.importorskip("distributed")
    from dask.distributed import Client, LocalCluster

    monkeypatch.syspath_prepend(EXAMPLES)
    import sweep

    with LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None) as cluster, Client(cluster) as client:
        victim = next(iter(client.run(os.getpid).values()))
        killed = []

        def kill_after_the_first_batch(done, total):
            if not killed:
                assert done < total
                os.kill(victim, signal.SIGKILL)
                killed.append(victim)

        monkeypatch.setattr(sweep, "show_progress", kill_after_the_first_batch)
        rows, _ = sweep.swept_by(client, VARIANTS)
    assert killed
    table = tmp_path / "killed.csv"
    sweep.write_rows(rows, table)
    assert table.read_bytes() == swept_here


@pytest.mark.parametrize(
    "arguments",
    [
        ("--variants", "0"),
        ("--variants", "many"),
        ("--workers", "-1"),
        ("--output", "picture.png"),
        ("--output", "no/such/folder/sweep.csv"),
        ("--color",),
    ],
    ids=" ".join,
)
def test_wrong_options_have_status_2(arguments, tmp_path):
    assert "sweep.py: error:" in run("sweep.py", *arguments, status=2).stderr


