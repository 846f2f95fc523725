# SPDX-License-Identifier: MIT
"""The examples of docstrings, of docs/python.md and of the README run and print the results shown."""

import doctest
import pathlib

import pytest

import mfcurves
from mfcurves import _curve, _errors, _inputs, _laws, _making, _results

ROOT = pathlib.Path(__file__).resolve().parents[2]
OPTIONS = doctest.ELLIPSIS | doctest.IGNORE_EXCEPTION_DETAIL


@pytest.mark.parametrize("module", [mfcurves, _curve, _errors, _inputs, _laws, _making, _results], ids=lambda m: m.__name__)
def test_docstrings(module):
    finder = doctest.DocTestFinder()
    failed = 0
    runner = doctest.DocTestRunner(optionflags=OPTIONS)
    for name, item in vars(module).items():
        is_ours = str(getattr(item, "__module__", "")).startswith("mfcurves")
        if callable(item) and is_ours and item.__doc__ and not name.startswith("_"):
            for test in finder.find(item, name, module=False, globs={}):
                failed += runner.run(test).failed
    if module.__doc__ and ">>>" in module.__doc__:
        test = doctest.DocTestParser().get_doctest(module.__doc__, {}, module.__name__, None, 0)
        failed += runner.run(test).failed
    assert failed == 0


def test_every_public_name_has_a_docstring():
    for name in mfcurves.__all__:
        item = getattr(mfcurves, name)
        if callable(item):
            assert item.__doc__, name


@pytest.mark.parametrize("page, fewest", [("docs/python.md", 20), ("README.md", 4)])
def test_pages(page, fewest):
    outcome = doctest.testfile(str(ROOT / page), module_relative=False, optionflags=OPTIONS)
    assert outcome.attempted >= fewest and outcome.failed == 0
