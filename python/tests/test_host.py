"""Loading, closing, interruption."""

import os
import signal
import subprocess
import sys
import threading
import time
import weakref

import numpy as np
import pytest

import zentrix
from zentrix import ScriptError


def test_load_returns_the_running_host_until_it_is_closed(zx):
    zx.close()
    zx = zentrix.load()
    assert zentrix.load() is zx and zentrix.load(zx._file) is zx
    with pytest.raises(ScriptError, match="A host is running already"):
        zentrix.load("/no/such/library.so")
    result = zx.ZXExp2(np.ones((2, 2), np.float32), None)
    zx.close()
    zx.close()
    assert repr(zx) == "<zentrix.Host, closed>" and not any(zx.held())
    for use in (lambda: zx.ZXPadSize(3), zx.functions):
        with pytest.raises(ScriptError, match=r"^The library is closed\.$"):
            use()
    for path in ("/no/such/library.so", __file__):
        with pytest.raises(ScriptError, match="cannot be loaded"):
            zentrix.load(path)
    again = zentrix.load()
    assert again is not zx and again.ZXLog2(result, result) is result and (result == 1).all()


def test_other_threads_run_while_the_library_computes(zx):
    stop, times = threading.Event(), []

    def record_times():
        while not stop.wait(0.001):
            times.append(time.monotonic())

    thread = threading.Thread(target=record_times)
    thread.start()
    start = time.monotonic()
    zx.ZXMedianFilter(np.random.default_rng(1).random((700, 700)), 20, None)  # takes some tenths of a second
    end = time.monotonic()
    stop.set()
    thread.join()
    assert sum(start < one < end for one in times) >= 3


def test_objects_may_die_on_another_thread(zx):
    keep = [zx.ZXExp2(np.ones((2, 2), np.float32), None), zx.call("NewTagGroup")]
    thread = threading.Thread(target=keep.clear)
    thread.start()
    thread.join()
    assert not keep and zx.ZXPadSize(11) == 12


def test_messages_of_the_library_are_logged(zx, caplog):
    with caplog.at_level("INFO", "zentrix"):
        zx.call("WriteOutputWindow", "module", 0, "a line\n")
        zx.call("OkDialog", "a question")
    assert [(one.levelname, one.message) for one in caplog.records] == [("INFO", "a line"), ("WARNING", "a question")]


def test_handlers_are_held_until_close(zx):
    class Handler:
        pass

    handlers = [Handler(), Handler()]
    for handler in handlers:
        zx.ZXSetZentrixHandler(handler, {"a": 1})
    held = [line for line in zx.held().references if "Handler" in line or "tag group of 1" in line]
    assert sorted(held) == sorted(['script object "Handler": 1 reference', "tag group of 1: 1 reference"] * 2)
    watched = [weakref.ref(handler) for handler in handlers]
    del handler, handlers
    zx.close()
    assert not any(zx.held()) and all(one() is None for one in watched)


PROGRAM = """if True:
    import numpy, zentrix
    zx = zentrix.load()
    class Handler:
        def __del__(self):
            {finalizer}
    handler = Handler(); handler.image = zx.ZXExp2(numpy.ones((2, 2), numpy.float32), None)
    zx.ZXSetZentrixHandler(Handler(), {{}}); zx.ZXSetZentrixHandler(handler, {{"handler": handler}})
    del handler
    {end}
"""


@pytest.mark.parametrize("end", ["pass", "zx.close(); zx.close()"])
@pytest.mark.parametrize("finalizer", ["pass", "zx.close(); zx.held()"])
def test_process_ends_cleanly(finalizer, end):
    """Whether the program closes the host or not, and even if the finalizer of a handler closes it."""
    program = PROGRAM.format(finalizer=finalizer, end=end)
    done = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, env=os.environ, check=False)
    assert (done.returncode, done.stdout, done.stderr) == (0, "", "")


def test_host_cannot_be_loaded_while_it_is_closed(zx):
    class Handler:
        def __del__(self):
            try:
                zentrix.load()
            except ScriptError as refusal:
                refusals.append(str(refusal))

    refusals = []
    zx.ZXSetZentrixHandler(Handler(), {})
    zx.close()
    assert refusals == ["A host cannot be started while another one is closed."]


def test_descriptions_of_held_objects_may_use_the_host(zx):
    class Tags(dict):
        def __len__(self):
            zx.close()
            return 1 // self["divisor"]

    for divisor in (1, 1, 0):
        zx.ZXSetZentrixHandler(None, Tags(divisor=divisor))
    with pytest.raises(ScriptError, match="^ZeroDivisionError") as refusal:
        zx.held()
    assert isinstance(refusal.value.__cause__, ZeroDivisionError) and not zx.held().references


INTERRUPTED = """if True:
    import os, signal, threading, time
    import numpy as np, zentrix
    zx = zentrix.load()
    spectrum, peaks = np.ones((512, 512), np.complex64), np.zeros((1, 20000), np.complex64)
    class Alarm(Exception): pass
    def alarm(*_): raise Alarm
    signal.signal(signal.SIGUSR1, alarm)
    for number, expected in (signal.SIGINT, KeyboardInterrupt), (signal.SIGUSR1, Alarm):
        threading.Timer(0.3, os.kill, (os.getpid(), number)).start()
        start = time.monotonic()
        try:
            zx.ZXMask(spectrum, peaks, None, 1e6, 0.0, None)
        except expected as error:
            assert time.monotonic() - start < 5 and error.__context__ is None
            print(expected.__name__, zx.ZXPadSize(100), *zx.held().locks, *zx.held().violations, flush=True)
    zx.ZXMask(spectrum, peaks, None, 1e6, 0.0, None)
"""


def test_signals_interrupt_long_calls():
    """Also when nothing catches the exception. Without interruption each call would take more than ten seconds."""
    command = [sys.executable, "-c", INTERRUPTED]
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True) as child:
        lines = [child.stdout.readline().split() for _ in range(2)]
        time.sleep(0.3)
        child.send_signal(signal.SIGINT)
        _, errors = child.communicate(timeout=5)
    assert lines == [["KeyboardInterrupt", "112"], ["Alarm", "112"]]
    assert errors.endswith("KeyboardInterrupt\n") and child.returncode == -signal.SIGINT
