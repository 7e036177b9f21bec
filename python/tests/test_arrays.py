"""NumPy arrays as host images."""

import gc
import resource
import sys
import types

import numpy as np
import pytest
from conftest import MANY

from zentrix import Ref, ScriptError


@pytest.mark.parametrize("kind", ["i1", "u1", "i2", "u2", "i4", "u4", "f4", "f8", "c8", "c16"])
def test_element_types_are_preserved(zx, kind):
    """The transpose moves whole elements, so any lost bit shows."""
    volume = np.frombuffer(np.random.default_rng(1).bytes(24 * np.dtype(kind).itemsize), kind).reshape(2, 3, 4)
    result = zx.ZXTransposeXZ(volume, None)
    assert result.dtype == volume.dtype and result.shape == (4, 3, 2) and result.flags.writeable
    assert result.tobytes() == volume.transpose().tobytes()


def test_destination_is_returned_as_the_same_object(zx):
    source = np.float32([[1, 2], [3, 4]])
    block = np.full((6, 6), -1, np.float32)
    for destination in (np.empty_like(source), block[1:3, 4:2:-1], source):
        values = source.copy()
        count = sys.getrefcount(destination)
        assert zx.ZXExp2(source, destination) is destination
        assert sys.getrefcount(destination) == count
        assert destination.tolist() == (2**values).tolist()
    assert (block == -1).sum() == 32  # nothing outside the view was written
    rho = Ref(np.empty((2, 2), np.float32))
    before = rho.value
    zx.ZXAbsArg(source.astype(np.complex64), rho, Ref())
    assert rho.value is before


def test_result_shares_the_hosts_memory(zx):
    result = zx.ZXExp2(np.zeros((2, 2), np.float32), None)
    address = result.ctypes.data
    again = zx.ZXFTWindow(result, 0, result)  # returns the host's own image
    assert again is result and again.ctypes.data == address
    view = result[:, ::-1]
    assert zx.ZXExp2(view, view) is view and np.shares_memory(view, result)
    del view, again
    kept, result = result.reshape(-1), None
    gc.collect()
    assert kept.tolist() == [1, 1, 1, 2]  # survives the array that it is a view of
    kept.shape = (1, 4)
    assert zx.ZXExp2(kept, None).shape == (1, 4)  # another image than before


def test_notifications_of_a_new_array_start_at_zero(zx):
    source = zx.ZXExp2(np.zeros((2, 2), np.float32), None)
    zx.ZXLog2(source, source)
    assert zx.notifications(source) == 2
    for _ in range(50):  # even at the address of an earlier array
        fresh = np.zeros((2, 2), np.float32)
        assert zx.notifications(fresh) == 0
        zx.ZXExp2(source, fresh)
        assert zx.notifications(fresh) == 1
        del fresh


@pytest.mark.parametrize("strides, writeable", [((4, 4), True), ((12, 4), False)])
def test_overlapping_or_read_only_array_can_be_a_source_only(zx, strides, writeable):
    array = np.lib.stride_tricks.as_strided(np.zeros(9, np.float32), (3, 3), strides, writeable=writeable)
    assert zx.ZXMedianFilter(array, 1, None).shape == (3, 3)
    with pytest.raises(ScriptError) as refusal:
        zx.ZXExp2(np.zeros((3, 3), np.float32), array)
    assert str(refusal.value) == 'image "array" (3 x 3, Real 4 Byte) is read-only.'


@pytest.mark.parametrize("array", [
    np.frombuffer(bytearray(5) + np.float32([1, 2, 5]).tobytes(), np.float32, offset=5),  # as out of a message
    np.array([(1, 0), (2, 0), (5, 0)], [("a", "f4"), ("b", "i2")])["a"],
])  # fmt: skip
def test_unaligned_array_can_be_a_source_only(zx, array):
    assert zx.ZXMedian(array) == 2 and zx.ZXExp2(array).tolist() == [2, 4, 32]
    with pytest.raises(ScriptError, match=r'^image "unaligned array" \(3, Real 4 Byte\) is read-only\.$'):
        zx.ZXExp2(np.zeros(3, np.float32), array)
    assert array.tolist() == [1, 2, 5]


@pytest.mark.parametrize(
    "array, error, text",
    [
        (np.zeros(3, np.int64), TypeError, "An array of int64 cannot be an image: convert it with astype() to"),
        (np.zeros(3, object), TypeError, "An array of object cannot be an image"),
        (np.zeros(3, ">f4"), TypeError, "An array of >f4 has its bytes in the other order: convert it with"),
        (np.ma.zeros(3, np.float32), TypeError, "A masked array cannot be an image: pass its filled() values."),
        (np.zeros((), np.float32), ValueError, "An array of shape () cannot be an image: it needs 1 to 3 dimensions."),
        (np.zeros((1, 1, 1, 1), np.float32), ValueError, "An array of shape (1, 1, 1, 1) cannot be an image"),
        (np.zeros((2, 0), np.float32), ValueError, "An array of shape (2, 0) cannot be an image: it has no element."),
        (np.broadcast_to(np.float32(0), (2**31,)), ValueError, "An array of shape (2147483648,) cannot be an image"),
    ],
)
def test_unsuitable_arrays_are_refused(zx, array, error, text):
    with pytest.raises(error) as refusal:
        zx.ZXMedian(array)
    assert str(refusal.value).startswith(text)


def test_calls_and_errors_leak_nothing(zx):
    """Reference counts and the process's memory, after many calls of each kind."""
    source, destination = np.ones((4, 4), np.float32), np.empty((4, 4), np.float32)
    wrong, names, handler, ref = np.ones(4), ["b10", "b9"], types.SimpleNamespace(), Ref()
    handler.OnChange, handler.OnBad = lambda: None, lambda: 1 / 0

    def make_calls():
        zx.ZXExp2(source, destination)
        zx.ZXExp2(source, None)
        zx.ZXAbsArg(zx.ZXPolar(1.0, source, None), ref, Ref(destination))
        zx.ZXSortNumberedName(names)
        zx.call_method(handler, "void OnChange( ScriptObject self )")
        for call, *arguments in (
            (zx.ZXExp2, source, wrong),
            (zx.ZXMedian, handler),
            (zx.call_method, handler, "void OnBad( ScriptObject self )"),
            (zx.call_method, handler, "void Missing( ScriptObject self )"),
        ):
            with pytest.raises(ScriptError):
                call(*arguments)

    states = []
    for rounds in (200, MANY // 10):
        for _ in range(rounds):
            make_calls()
        gc.collect()
        counts = [sys.getrefcount(one) for one in (source, destination, wrong, names, handler, ref)]
        states.append((counts, zx.held(), resource.getrusage(resource.RUSAGE_SELF).ru_maxrss))
    assert states[0][:2] == states[1][:2]
    if MANY > 10_000:  # the sanitizers do not return freed memory
        assert states[1][2] - states[0][2] < 1000  # KiB: 100 bytes for each make_calls
