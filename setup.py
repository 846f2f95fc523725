# SPDX-License-Identifier: MIT
"""Builds the Python module by CMake; everything else about the package is in pyproject.toml.

MFCURVES_BUILD names a build folder that CMake has configured with MFCURVES_PYTHON; without it
there is a release build of its own.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = pathlib.Path(__file__).resolve().parent
PARTS = re.findall(r"define MFCURVES_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", (ROOT / "mfcurves" / "version.h").read_text())


class CMakeBuild(build_ext):
    def build_extension(self, extension):
        given = os.environ.get("MFCURVES_BUILD")
        build = pathlib.Path(given) if given else pathlib.Path(self.build_temp).resolve() / "cmake"
        module = pathlib.Path(self.get_ext_fullpath(extension.name)).resolve()
        if not given:
            self.configure(build)
        subprocess.run(["cmake", "--build", build, "--target", "_mfcurves", "--parallel"], check=True)
        module.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(build / "python" / "mfcurves" / module.name, module)
        # The library contains the laws; the file is for users who read or change them.
        shutil.copy(ROOT / "share" / "mfcurves" / "SegmentTypes.txt", module.parent)

    def configure(self, build):
        options = {
            "CMAKE_BUILD_TYPE": "Release",
            "MFCURVES_PYTHON": "ON",
            "MFCURVES_INSTALL": "OFF",
            "MFCURVES_TOOL": "OFF",
            "MFCURVES_TESTS": "OFF",
            "MFCURVES_EXAMPLES": "OFF",
            "Python_EXECUTABLE": sys.executable,
        }
        subprocess.run(
            ["cmake", "-S", ROOT, "-B", build, *(f"-D{key}={value}" for key, value in options.items())],
            check=True,
        )


setup(
    version=".".join(PARTS),
    package_dir={"": "python"},
    packages=["mfcurves"],
    package_data={"mfcurves": ["py.typed", "*.pyi"]},
    ext_modules=[Extension("mfcurves._mfcurves", sources=[])],
    cmdclass={"build_ext": CMakeBuild},
)
