# SPDX-License-Identifier: MIT
"""The content of the package that pip builds, and that it works alone."""

import os
import pathlib
import subprocess
import sys
import zipfile

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]


@pytest.fixture(scope="module")
def wheel(tmp_path_factory):
    """The wheel of a copy of the sources, with the module of the build folder MFCURVES_BUILD."""
    if "MFCURVES_BUILD" not in os.environ:
        pytest.skip("MFCURVES_BUILD names no build folder; scripts/python_test.sh sets it")
    folder = tmp_path_factory.mktemp("wheel")
    sources = folder / "sources"
    (sources / "python").mkdir(parents=True)  # pip writes files there
    for name in ("LICENSE", "docs", "mfcurves", "pyproject.toml", "python/mfcurves", "setup.py", "share"):
        (sources / name).symlink_to(ROOT / name)
    pip = [sys.executable, "-m", "pip", "wheel", "--no-build-isolation", "--no-deps", "--quiet"]
    subprocess.run([*pip, "--wheel-dir", folder, sources], check=True, capture_output=True)
    (made,) = folder.glob("*.whl")
    return made


def test_a_wheel_holds_library_stubs_laws_and_licence(wheel):
    with zipfile.ZipFile(wheel) as archive:
        names = archive.namelist()
        files = {name.partition("/")[2] for name in names}
        laws = next(name for name in names if name.endswith("SegmentTypes.txt"))
        assert archive.read(laws) == (ROOT / "share" / "mfcurves" / "SegmentTypes.txt").read_bytes()
        licence = next(name for name in names if name.endswith("LICENSE"))
        assert archive.read(licence) == (ROOT / "LICENSE").read_bytes()
    sources = {path.name for path in (ROOT / "python" / "mfcurves").iterdir() if path.suffix in (".py", ".pyi", ".typed")}
    assert sources | {"py.typed"} <= files
    assert any(name.startswith("_mfcurves.") and name.endswith(".so") for name in files)


def test_a_wheel_works_alone(wheel, tmp_path):
    with zipfile.ZipFile(wheel) as archive:
        archive.extractall(tmp_path)
    script = "import mfcurves as mf; print(mf.__file__, mf.segments([(2, 8, '3-4-5-Polynomial')])(1.0))"
    environment = {**os.environ, "PYTHONPATH": str(tmp_path)}
    said = subprocess.run(
        [sys.executable, "-c", script], cwd=tmp_path, env=environment, check=True, capture_output=True, text=True
    )
    assert said.stdout.split() == [str(tmp_path / "mfcurves" / "__init__.py"), "4.0"]
