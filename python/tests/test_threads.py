"""Calls from any thread, forked processes, the end of the interpreter."""

import asyncio
import contextvars
import copy
import multiprocessing
import os
import pickle
import subprocess
import sys
import threading
from concurrent.futures import ProcessPoolExecutor, ThreadPoolExecutor
from types import SimpleNamespace

import numpy as np
import pytest

import zentrix
from zentrix import ScriptError

IMAGE = np.random.default_rng(5).random((40, 40), np.float32)


def test_many_threads_call_at_once(zx):
    """Each gets its own results and errors, whatever the others do."""
    median = zx.ZXMedianFilter(IMAGE, 2, None)

    def fail(number):
        raise ValueError(number)

    def calls(number):
        for _ in range(25 if os.environ.get("ZENTRIX_FEWER_CALLS") else 200):
            assert (zx.ZXMedianFilter(IMAGE, 2, None) == median).all()
            with pytest.raises(ScriptError, match=r"^Invalid mode\.$"):
                zx.ZXFTWindow(IMAGE, 8, None)
            with pytest.raises(ScriptError) as refusal:
                zx.call_method(SimpleNamespace(Run=lambda: fail(number)), "void Run( ScriptObject )")
            assert refusal.value.__cause__.args == (number,)
            tags = zx.call("NewTagGroup")
            zx.call("TagGroupSetTagAsLong", tags, "a", number)
            assert tags == {"a": number}
        return number

    with ThreadPoolExecutor(16) as pool:
        assert list(pool.map(calls, range(16))) == list(range(16))


def test_host_is_loaded_and_closed_on_any_thread(zx):
    zx.close()
    with ThreadPoolExecutor(8) as pool:
        hosts = list(pool.map(lambda _: zentrix.load(), range(8)))
        assert len(set(hosts)) == 1 and hosts[0].ZXPadSize(100) == 112
        pool.submit(hosts[0].close).result()
    with pytest.raises(ScriptError, match=r"^The library is closed\.$"):
        hosts[0].ZXPadSize(100)
    assert asyncio.run(asyncio.to_thread(lambda: zentrix.load().ZXPadSize(100))) == 112


def test_methods_run_on_the_thread_of_the_host(zx):
    """With the caller's context variables and thread-local data that last; they may use the host."""
    variable, local, seen = contextvars.ContextVar("variable"), threading.local(), []

    def run():
        local.count = getattr(local, "count", 0) + 1
        seen.append((threading.current_thread().name, variable.get(), local.count, zx.ZXPadSize(100)))
        variable.set("forgotten")

    for value in "ab":
        variable.set(value)
        zx.call_method(SimpleNamespace(Run=run), "void Run( ScriptObject )")
    assert seen == [("zentrix host", "a", 1, 112), ("zentrix host", "b", 2, 112)] and variable.get() == "b"


def pad(number):
    """On another thread, which may get the system's number of the parent's host thread."""
    with ThreadPoolExecutor(1) as pool:
        return pool.submit(zentrix.load().ZXPadSize, number).result()


@pytest.mark.parametrize("method", ["fork", "forkserver", "spawn"])
def test_processes_of_every_kind_have_a_working_host(zx, method):
    zx.ZXGaussianBlur(np.ones((300, 300)), 3.0, 0, None)  # starts the parent's team of threads
    with ProcessPoolExecutor(2, multiprocessing.get_context(method)) as pool:
        assert list(pool.map(pad, [100, 11])) == [112, 12]
        assert list(pool.map(zx.ZXPadSize, [100, 11])) == [112, 12]
        assert pool.submit(zx.call, "ZXPadSize", 100).result() == 112


def test_host_and_functions_are_pickled_by_name(zx):
    for one in (zx, zx.ZXMedianFilter):
        assert pickle.loads(pickle.dumps(one)) is one and copy.copy(one) is one and copy.deepcopy([one])[0] is one
    wanted = pickle.dumps(zx)
    zx.close()
    assert pickle.loads(wanted) is zentrix.load() is not zx


#: Each program has to end with 0 and no message on standard error.
PROGRAMS = {
    "a child forked during a call is told so": """
        threading.Thread(target=long, daemon=True).start()
        time.sleep(0.3)
        if os.fork() == 0:
            try:
                zx.ZXPadSize(100)
            except ScriptError as refusal:
                os._exit(7 if "was forked while a script function ran" in str(refusal) else 1)
            os._exit(2)
        assert os.waitstatus_to_exitcode(os.wait()[1]) == 7""",
    "Ctrl-C withdraws a queued call": """
        threading.Thread(target=long, daemon=True).start()
        time.sleep(0.3)
        threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT)).start()
        try:
            zx.ZXExp2(image, image)
        except KeyboardInterrupt:
            assert (image == 1).all() and ended == []
        else:
            sys.exit(1)""",
    "Ctrl-C reaches the method of a handler": """
        def run():
            try:
                while True: time.sleep(0.01)
            except KeyboardInterrupt:
                ended.append("method")
        threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT)).start()
        try:
            zx.call_method(SimpleNamespace(Run=run), "void Run( ScriptObject )")
        except KeyboardInterrupt:
            assert ended == ["method"]
        else:
            sys.exit(1)""",
    "a method that waits for a thread that uses the host": """
        def use():
            try:
                zx.ZXPadSize(100)
            except ScriptError as refusal:
                assert "may be waiting for this thread" in str(refusal)
                ended.append("refused")
        def run():
            thread = threading.Thread(target=use)
            thread.start()
            thread.join()
        zx.call_method(SimpleNamespace(Run=run), "void Run( ScriptObject )")
        assert ended == ["refused"]""",
    "daemon threads call and methods wait at the end": """
        method = SimpleNamespace(Run=lambda: time.sleep(0.001), Wait=lambda: time.sleep(1000))
        def use(what):
            try:
                while True: what()
            except ScriptError as refusal:
                texts = ("The interpreter is ending: scripts can no longer run.", "The library is closed.",
                         "The call was interrupted.")
                assert str(refusal) in texts
        uses = {"short": lambda: zx.ZXPadSize(100), "long": long,
                "method": lambda: zx.call_method(method, "void Run( ScriptObject )"),
                "waits": lambda: zx.call_method(method, "void Wait( ScriptObject )"),
                "report": lambda: zentrix.unwrap(np.full((300, 300), 0.5, np.float32), report=True)}
        for which in %r:
            for _ in range(3): threading.Thread(target=use, args=(uses[which],), daemon=True).start()
        time.sleep(0.05)""",
}  # fmt: skip

START = """if True:
        import atexit, os, signal, sys, threading, time
        atexit.register(lambda: print(zx))  # after the host was closed
        from types import SimpleNamespace
        import numpy as np, zentrix
        from zentrix import ScriptError
        zx, ended, image = zentrix.load(), [], np.ones((2, 2), np.float32)
        def long():
            peaks = np.zeros((1, 20000), np.complex64)
            try:
                zx.ZXMask(np.ones((512, 512), np.complex64), peaks, None, 1e6, 0.0, None)  # more than ten seconds
            except ScriptError:
                ended.append("long")
                raise SystemExit
"""


def run_program(text):
    done = subprocess.run([sys.executable, "-c", START + text], capture_output=True, text=True, check=False, timeout=100)
    assert (done.returncode, done.stderr) == (0, "")
    return done.stdout


@pytest.mark.parametrize("which", list(PROGRAMS)[:-1])
def test_program(which):
    run_program(PROGRAMS[which])


@pytest.mark.parametrize("uses", [["short"], ["method"], ["long", "short"], ["short", "method"], ["waits"], ["report"]])
def test_process_ends_while_threads_use_the_host(uses):
    for _ in range(int(os.environ.get("ZENTRIX_ENDS", 2))):
        state = "open" if uses == ["waits"] else "closed"
        assert run_program(list(PROGRAMS.values())[-1] % uses) == f"<zentrix.Host, {state}>\n"
