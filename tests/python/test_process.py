# SPDX-License-Identifier: MIT
"""Threads, forks, signals, the import, and the state of the process."""

import locale
import os
import signal
import subprocess
import sys
import threading
import time

import numpy as np
import pytest

import mfcurves as mf


def run_python(script, **options):
    return subprocess.run([sys.executable, "-c", script], capture_output=True, text=True, timeout=120, **options)


def test_the_import_loads_numpy_and_nothing_else():
    said = run_python("import sys, mfcurves; print([m for m in ('scipy', 'matplotlib', 'dask') if m in sys.modules])")
    assert said.stdout.strip() == "[]"


def test_the_locale_and_signals_stay_as_they_were(cam, samples):
    before = locale.setlocale(locale.LC_ALL), signal.getsignal(signal.SIGINT)
    mf.read(samples / "valve-lift.xml")
    mf.expression("sin(x)", domain=(0, 1))(0.5)
    cam.to_xml()
    with pytest.raises(mf.CurveError):
        mf.parse("<no/>")
    assert (locale.setlocale(locale.LC_ALL), signal.getsignal(signal.SIGINT)) == before


def test_a_comma_locale_changes_nothing():
    script = (
        "import locale\n"
        "for name in ('de_DE.UTF-8', 'de_DE.utf8', 'C.UTF-8'):\n"
        "    try:\n"
        "        locale.setlocale(locale.LC_ALL, name); break\n"
        "    except locale.Error: pass\n"
        "import mfcurves as mf\n"
        "print(mf.expression('0.5*x', domain=(0, 1))(0.5), locale.setlocale(locale.LC_ALL) != 'C')\n"
    )
    assert run_python(script).stdout.strip() == "0.25 True"


def test_threads_share_a_curve(cam):
    x = np.linspace(0, 360, 200_000)
    expected = cam.svaj(x).tobytes()
    results = [None] * 4

    def work(i):
        results[i] = all(cam.svaj(x).tobytes() == expected for _ in range(5))

    threads = [threading.Thread(target=work, args=(i,)) for i in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert results == [True] * 4


def test_threads_make_curves_of_their_own(samples):
    failed = []

    def work(number):
        for i in range(50):
            curve = mf.segments([(1 + i, number, "3-4-5-Polynomial")])
            if curve(1.0 + i) != number or mf.read(samples / "valve-lift.xml").domain[0] != 0.0:
                failed.append(number)

    threads = [threading.Thread(target=work, args=(float(i),)) for i in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert failed == []


def test_the_lock_is_given_back_while_many_points_are_computed(wave):
    x = np.zeros(3_000_000)
    other = threading.Thread(target=lambda: wave.svaj(x))
    other.start()
    turns = 0
    while other.is_alive():
        turns += 1
    assert turns > 10


def test_ctrl_c_stops_a_long_evaluation():
    script = (
        "import os, signal, threading, time, numpy as np, mfcurves as mf\n"
        "wave = mf.expression('sin(x)+sin(2*x)+sin(3*x)+sin(4*x)+exp(sin(x))', domain=(0, 1))\n"
        "x = np.zeros(60_000_000)\n"
        "signal.signal(signal.SIGINT, signal.default_int_handler)\n"  # a shell may have it ignored in the background
        "threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT)).start()\n"
        "try:\n"
        "    wave(x, 3)\n"
        "    print('finished')\n"
        "except KeyboardInterrupt:\n"
        "    print('stopped')\n"
    )
    assert run_python(script).stdout.strip() == "stopped"


def test_fork_while_another_thread_compiles():
    script = (
        "import os, sys, threading, mfcurves as mf\n"
        "stop = False\n"
        "def compile():\n"
        "    i = 0\n"
        "    while not stop:\n"
        "        i += 1\n"
        "        mf.expression(f'sin({i}*x)', domain=(0, 1))\n"
        "threads = [threading.Thread(target=compile) for _ in range(2)]\n"
        "for thread in threads: thread.start()\n"
        "failed = 0\n"
        "for _ in range(50):\n"
        "    child = os.fork()\n"
        "    if child == 0:\n"
        "        ok = mf.segments([(1, 2, 'Cubic')])(1.0) == 2.0\n"
        "        os._exit(0 if ok else 1)\n"
        "    failed += os.waitpid(child, 0)[1] != 0\n"
        "stop = True\n"
        "for thread in threads: thread.join()\n"
        "print(failed)\n"
    )
    assert run_python(script).stdout.strip() == "0"


@pytest.mark.parametrize("first", ["", "import mfcurves\n"])
def test_a_subinterpreter_is_refused(first):
    script = (
        "import _xxsubinterpreters as sub\n"
        "other = sub.create()\n"
        "try:\n"
        "    sub.run_string(other, 'import mfcurves._mfcurves')\n"
        "    print('taken')\n"
        "except sub.RunFailedError as error:\n"
        "    print('refused')\n"
    )
    said = run_python(first + script)
    assert (said.returncode, said.stdout.strip()) == (0, "refused")


def test_curves_may_outlive_the_module_at_shutdown():
    script = "import sys, mfcurves as mf\nsys.kept = mf.expression('x', domain=(0, 1))\nsys.also = sys.kept.derivative()\n"
    said = run_python(script)
    assert (said.returncode, said.stderr) == (0, "")


def test_nothing_leaks(cam):
    x = np.linspace(0, 360, 1000)

    def rounds(count):
        for i in range(count):
            made = mf.segments([(1, i, "Cubic")])
            made(x)
            for at in range(100):
                made(0.01 * at, 1)
            try:
                cam("a")
            except TypeError:
                pass

    def resident():
        with open("/proc/self/statm") as file:
            return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")

    rounds(2000)
    before = resident()
    rounds(10_000)
    assert resident() - before < 4_000_000
