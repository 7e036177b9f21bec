#!/usr/bin/python3
"""Calls the Python module with objects that misbehave: python_objects.py [CALLS [SEED]]

Their special methods raise, return wrong types and huge numbers, change the arguments or call the host again. Every call
may raise an exception, but the interpreter survives, a call that fails leaves arrays as they were, no reference to an
argument is lost, and the host reports no breach of its contract.
"""

import random
import re
import sys

import numpy as np

import zentrix

dice = random.Random(int(sys.argv[2]) if len(sys.argv) > 2 else 1)
zx = zentrix.load()


class Mischief(Exception):
    pass


def misbehave():
    """What a special method does: raises, returns something odd, or calls the host."""
    kind = dice.randrange(8)
    if kind == 0:
        raise Mischief("raised by a special method")
    if kind == 1:
        raise KeyboardInterrupt
    if kind == 2:
        return zx.ZXPadSize(100)
    if kind == 3:
        return zx.held() and 3
    return dice.choice([0, 1, -1, 2**31, 2**64, 10**400, 1.5, float("nan"), None, "text", b"\xff", "nul\0", object(), [], {}, 1j])


class Odd:
    """Every conversion misbehaves."""

    def _odd(self, *_, **__):
        return misbehave()

    __float__ = __int__ = __index__ = __complex__ = __len__ = __getitem__ = __iter__ = __array__ = __fspath__ = _odd
    __bool__ = __str__ = __repr__ = __hash__ = __contains__ = __call__ = __eq__ = _odd

    def __getattr__(self, name):
        return misbehave()

    def __del__(self):
        try:
            misbehave()
        except BaseException:
            pass


class OddDict(dict):
    def __len__(self):
        return misbehave()

    def __getitem__(self, key):
        return misbehave()

    def __setitem__(self, key, value):
        misbehave()

    def __iter__(self):
        self.clear()
        return iter([misbehave(), "Name"])

    def keys(self):
        return misbehave()


class OddList(list):
    def __len__(self):
        return misbehave()

    def __getitem__(self, index):
        self.clear()
        return misbehave()

    def __iter__(self):
        return iter([misbehave()])


class OddArray(np.ndarray):
    armed = False  # while the host is called

    def __array_finalize__(self, other):
        if OddArray.armed and dice.randrange(6) == 0:
            raise Mischief("finalized")


TYPES = ["f4", "f8", "c8", "c16", "i1", "u1", "i2", "u2", "i4", "u4", ">f4", "?", "i8", "f2", "O", "S3", "M8[s]"]


def array():
    shape = [dice.randrange(0, 9) for _ in range(dice.randrange(0, 5))] if dice.randrange(5) == 0 else [
        dice.randrange(1, 12) for _ in range(dice.randrange(1, 4))]
    kind = np.dtype(dice.choice(TYPES[:6]) if dice.randrange(3) else dice.choice(TYPES))
    made = np.zeros(shape, kind)
    if kind.kind in "fc":
        made[...] = np.array(dice.choice([0.5, -0.0, np.nan, np.inf, 1e-45, 3e38]), "f8").astype(kind)
    form = dice.randrange(7)
    if form == 0 and made.ndim:
        made = made[..., ::-1]
    elif form == 1 and made.ndim:
        made = made[..., ::2]
    elif form == 2:
        made = made.T
    elif form == 3:
        made.flags.writeable = False
    elif form == 4 and made.ndim:
        made = np.broadcast_to(made[..., :1], made.shape)
    elif form == 5:
        made = made.view(OddArray)
    return made


def tags():
    return dice.choice([OddDict({"Name": "a2"}), OddList([{"Name": "a10"}]), [{"Name": "a10"}, OddDict({"Name": "a2"})], {"a": Odd()},
                        [["a", "b"]], None, [{"Name": f"img{i}"} for i in range(dice.randrange(5))]])


def argument(arrays):
    kind = dice.randrange(12)
    if kind < 5:
        if arrays and dice.randrange(4) == 0:
            return dice.choice(arrays)
        arrays.append(array())
        return arrays[-1]
    if kind == 5:
        return dice.choice([Odd(), OddDict(), OddList([1, 2])])
    if kind == 6:
        return tags()
    if kind == 7:
        return None
    if kind == 8:
        return dice.choice(["", "a", "x\0y", b"bytes", "\udcff", "*.raw"])
    return dice.choice([0, 1, 2, 3, -1, 5, 0.5, 1.5, float("nan"), float("inf"), 1j, True, 40])


def is_excluded(name):
    return "Exec" in name or "SpecialDirectory" in name


def callees():
    """Pairs of a function and the types of its parameters: those of its prototypes, or none."""
    made = []
    for text in zx.functions():
        name, parameters = re.fullmatch(r"\S+ (\w+)\s*\((.*)\)", text).groups()
        if not is_excluded(name):
            made.append((name, getattr(zx, name), [one.strip() for one in parameters.split(",") if one.strip() not in ("", "void")]))
    for name in ("correct", "aberrate", "unwrap", "transfer_function", "ctf", "wavelength", "from_notation", "to_notation", "read"):
        made.append((name, getattr(zentrix, name), []))
    return made


def fitting(parameter, arrays):
    """A value of a parameter's type."""
    if "Image" in parameter and parameter.count("*") == ("Image *" in parameter):
        arrays.append(np.full((6, 5), 0.5, "c8" if "Complex" in parameter else dice.choice(["f4", "f8"])))
        return arrays[-1]
    if "*" in parameter:
        return zentrix.Ref() if hasattr(zentrix, "Ref") else None
    if "TagGroup" in parameter:
        return [{"Name": "a10"}, {"Name": "a2"}]
    if "string" in parameter:
        return "*.raw"
    return dice.choice([0, 1, 2, 3]) if "long" in parameter else dice.choice([0.5, 1.0])


OPTIONS = ["kv", "pixel", "C1", "A1", "C3", "mask", "report", "wavelength", "tilt", "focus_spread"]


def small(name, values):
    """Bounds the number that only makes a call long."""
    if name in ("ZXPadSize", "ZXRadialSurvey"):
        return [min(value, 1000) if isinstance(value, (int, float)) and value == value else value for value in values]
    return values


def one_call(name, callee, parameters):
    arrays = []
    count = len(parameters) if parameters and dice.randrange(8) else dice.choice([1, 2, 2, 3, 4, 5, 8])
    odd = dice.randrange(4)  # out of 8 arguments
    values = small(name, [fitting(parameters[i], arrays) if i < len(parameters) and dice.randrange(8) >= odd else argument(arrays)
                          for i in range(count)])
    named = {}
    if not name.startswith("ZX") and dice.randrange(4):
        named = {option: dice.choice([300, 0.02, -40, Odd(), (14, 35), None, array()]) for option in dice.sample(OPTIONS, 3)}
    before = [one.tobytes() if one.dtype != object else None for one in arrays]
    try:
        OddArray.armed = True
        callee(*values, **named)
        return True
    except (Exception, KeyboardInterrupt):
        OddArray.armed = False
        for one, bytes_before in zip(arrays, before):
            if bytes_before is not None and one.tobytes() != bytes_before:
                sys.exit(f"{name} failed and changed an array")
        return False
    finally:
        OddArray.armed = False


def main():
    calls = int(sys.argv[1]) if len(sys.argv) > 1 else 1000
    all_callees = callees()
    assert len(all_callees) > 50, all_callees
    watched = np.zeros((4, 4), "f4")
    references = sys.getrefcount(watched)
    succeeded = 0
    for number in range(calls):
        succeeded += one_call(*dice.choice(all_callees))
        try:
            zx.ZXAbs(watched, Odd())
        except (Exception, KeyboardInterrupt):
            pass
        if sys.getrefcount(watched) != references:
            sys.exit(f"a reference was lost after {number} calls")
    try:
        zx.ZXSetZentrixHandler(None, None)
    except KeyboardInterrupt:
        pass
    held = zx.held()
    if held.locks or held.violations:
        sys.exit(f"left: {held.locks} {held.violations}")
    print(f"{2 * calls} calls, {succeeded} of {calls} random ones succeeded")


main()
