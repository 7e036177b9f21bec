"""The host: loading, closing, threads."""

import os
import subprocess
import sys
import threading
import time

import numpy as np
import pytest

import zentrix
from zentrix import ScriptError


def test_loading_again_gives_the_running_host(zx):
    zx.close()  # with what other tests left in it
    zx = zentrix.load()
    assert zentrix.load() is zx and zentrix.load(zx._file) is zx
    with pytest.raises(ScriptError, match="A host is running already"):
        zentrix.load("/no/such/library.so")
    zx.close()
    zx.close()
    assert repr(zx) == "<zentrix.Host, closed>" and not any(zx.held())
    for use in (lambda: zx.ZXPadSize(3), zx.functions):
        with pytest.raises(ScriptError, match=r"^The library is closed\.$"):
            use()
    again = zentrix.load()
    assert again is not zx and again.ZXPadSize(11) == 12


def test_arrays_outlive_the_host_that_made_them(zx):
    result = zx.ZXExp2(np.ones((2, 2), np.float32), None)
    zx.close()
    assert result.tolist() == [[2, 2], [2, 2]]
    assert zentrix.load().ZXLog2(result, result) is result


def test_a_file_that_is_no_library_is_told(zx):
    zx.close()
    for path in ("/no/such/library.so", __file__):
        with pytest.raises(ScriptError, match="cannot be loaded"):
            zentrix.load(path)
    assert zentrix.load().ZXPadSize(11) == 12


def test_another_thread_gets_an_error(zx):
    refusals = []

    def use_everything():
        for use in (lambda: zx.ZXPadSize(3), zx.functions, zx.held, zx.close):
            try:
                use()
            except ScriptError as refusal:
                refusals.append(str(refusal))

    thread = threading.Thread(target=use_everything)
    thread.start()
    thread.join()
    assert refusals == ["Scripts run on the host's main thread only, the one that called zentrix.load()."] * 4


def test_other_threads_run_while_the_library_computes(zx):
    ticks, stop = [0], threading.Event()

    def tick():
        while not stop.is_set():
            ticks[0] += 1
            time.sleep(0.001)

    thread = threading.Thread(target=tick)
    thread.start()
    time.sleep(0.02)
    before = ticks[0]
    zx.ZXMedianFilter(np.random.default_rng(1).random((700, 700)), 20, None)  # takes some tenths of a second
    during = ticks[0] - before
    stop.set()
    thread.join()
    assert during >= 3


def test_objects_may_die_on_another_thread(zx):
    keep = [zx.ZXExp2(np.ones((2, 2), np.float32), None), zx.call("NewTagGroup")]
    thread = threading.Thread(target=keep.clear)
    thread.start()
    thread.join()
    assert not keep and zx.ZXPadSize(11) == 12


def test_what_the_host_has_to_say_is_logged(zx, caplog):
    with caplog.at_level("INFO", "zentrix"):
        zx.call("WriteOutputWindow", "module", 0, "a line\n")
        zx.call("OkDialog", "a question")
    assert [(one.levelname, one.message) for one in caplog.records] == [("INFO", "a line"), ("WARNING", "a question")]


def test_a_program_that_closes_nothing_ends_well():
    """At the exit of the interpreter the library is closed and handlers are let go, whatever still refers to what."""
    program = """if True:
        import numpy, threading, zentrix
        class Handler: pass
        zx = zentrix.load()
        handler = Handler(); handler.host = zx; handler.image = zx.ZXExp2(numpy.ones((2, 2), numpy.float32), None)
        zx.ZXSetZentrixHandler(handler, {"host": zx}); zx.ZXSetZentrixHandler(Handler(), {})
        """
    done = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, env=os.environ, check=False)
    assert (done.returncode, done.stdout, done.stderr) == (0, "", "")
