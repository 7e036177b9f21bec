"""NumPy arrays as host images."""

import gc
import resource
import sys

import numpy as np
import pytest
from conftest import MANY
from script_calls import Handler

from zentrix import Ref, ScriptError

TYPES = ["i1", "u1", "i2", "u2", "i4", "u4", "f4", "f8", "c8", "c16"]


@pytest.mark.parametrize("kind", TYPES)
def test_an_element_type_goes_there_and_back(zx, kind):
    """Whole elements are moved by the transpose, so any lost bit or byte shows."""
    volume = np.frombuffer(np.random.default_rng(1).bytes(24 * np.dtype(kind).itemsize), kind).reshape(2, 3, 4)
    result = zx.ZXTransposeXZ(volume, None)
    assert result.dtype == volume.dtype and result.shape == (4, 3, 2) and result.flags.writeable
    assert result.tobytes() == volume.transpose().tobytes()


@pytest.mark.parametrize("shape", [(5,), (1,), (4, 5), (1, 5), (4, 1), (3, 4, 5), (3, 1, 1)])
def test_a_shape_stays(zx, shape):
    source = np.random.default_rng(2).uniform(size=shape).astype(np.float32)
    result = zx.ZXExp2(source, None)
    assert result.shape == shape and np.allclose(result, 2.0**source)


def test_a_destination_comes_back_as_the_same_object(zx):
    source = np.float32([[1, 2], [3, 4]])
    block = np.full((6, 6), -1, np.float32)
    for destination in (np.empty_like(source), block[1:3, 4:2:-1], source):
        values = source.copy()
        count = sys.getrefcount(destination)
        assert zx.ZXExp2(source, destination) is destination
        assert sys.getrefcount(destination) == count
        assert destination.tolist() == (2**values).tolist()
    inside = np.zeros((6, 6), bool)
    inside[1:3, 3:5] = True
    assert (block[~inside] == -1).all()
    rho = Ref(np.empty((2, 2), np.float32))
    before = rho.value
    zx.ZXAbsArg(source.astype(np.complex64), rho, Ref())
    assert rho.value is before


def test_a_result_shares_the_hosts_memory(zx):
    result = zx.ZXExp2(np.zeros((2, 2), np.float32), None)
    address = result.ctypes.data
    again = zx.ZXFTWindow(result, 0, result)  # the host's own image comes back
    assert again is result and again.ctypes.data == address
    view = result[:, ::-1]
    assert zx.ZXExp2(view, view) is view and np.shares_memory(view, result)
    del view, again
    kept, result = result.reshape(-1), None
    gc.collect()
    assert kept.tolist() == [1, 1, 1, 2]  # 2 to the window of two elements, 0 and 1; the array it came in is gone


def test_the_host_counts_what_it_is_told(zx):
    source, destination = np.zeros((2, 2), np.float32), np.zeros((2, 2), np.float32)
    for times in (1, 2):
        zx.ZXExp2(source, destination)
        assert zx.notifications(destination) == times and zx.notifications(source) == 0
    result = zx.ZXExp2(source, None)
    zx.ZXLog2(result, result)
    assert zx.notifications(result) == 2
    with pytest.raises(ScriptError):
        zx.ZXFTWindow(source, 99, destination)
    assert zx.notifications(destination) == 2
    for _ in range(50):  # a new array begins at 0, wherever it lies
        fresh = np.zeros((2, 2), np.float32)
        assert zx.notifications(fresh) == 0
        zx.ZXExp2(source, fresh)
        del fresh


def test_a_reshaped_array_is_another_image(zx):
    array = zx.ZXExp2(np.zeros((2, 6), np.float32), None)
    array.shape = (3, 4)
    assert zx.ZXExp2(array, None).shape == (3, 4)


def overlapping():
    return np.lib.stride_tricks.as_strided(np.zeros(5, np.float32), (3, 3), (4, 4), writeable=True)


def frozen():
    array = np.zeros((3, 3), np.float32)
    array.flags.writeable = False
    return array


@pytest.mark.parametrize("make", [frozen, overlapping, lambda: np.broadcast_to(np.float32([1, 2, 3]), (3, 3))])
def test_what_cannot_be_written_can_be_read(zx, make):
    array = make()
    assert zx.ZXMedianFilter(array, 1, None).shape == (3, 3)
    with pytest.raises(ScriptError) as refusal:
        zx.ZXExp2(np.zeros((3, 3), np.float32), array)
    assert str(refusal.value) == 'image "array" (3 x 3, Real 4 Byte) is read-only.'


def unaligned():
    return np.frombuffer(bytes(17), np.uint8)[1:].view(np.float32)


def half_steps():
    return np.zeros(4, [("a", "f4"), ("b", "i2")])["a"]


@pytest.mark.parametrize(
    "make, error, text",
    [
        (lambda: np.zeros(3, np.int64), TypeError, "An array of int64 cannot be an image: convert it with astype()"),
        (lambda: np.zeros(3, np.longdouble), TypeError, "An array of float128 cannot"),
        (lambda: np.zeros(3, object), TypeError, "An array of object cannot"),
        (lambda: np.zeros(3, "U4"), TypeError, "An array of <U4 cannot"),
        (lambda: np.zeros(3, ">f4"), TypeError, "An array of >f4 has its bytes in the other order: convert it with"),
        (lambda: np.ma.zeros(3, np.float32), TypeError, "A masked array cannot be an image: pass its filled() values."),
        (lambda: np.zeros((), np.float32), ValueError, "An array of shape () cannot be an image: it needs 1 to 3"),
        (lambda: np.zeros((1, 1, 1, 1), np.float32), ValueError, "An array of shape (1, 1, 1, 1) cannot"),
        (lambda: np.zeros((2, 0), np.float32), ValueError, "An array of shape (2, 0) cannot be an image: it has no el"),
        (unaligned, ValueError, "An array with unaligned elements cannot be an image: pass a copy()."),
        (half_steps, ValueError, "An array with"),
        (lambda: np.broadcast_to(np.float32(0), (2**31,)), ValueError, "An array of shape (2147483648,) cannot"),
    ],
)
def test_an_array_that_cannot_be_an_image_is_refused(zx, make, error, text):
    with pytest.raises(error) as refusal:
        zx.ZXMedian(make())
    assert str(refusal.value).startswith(text)


def test_nothing_is_kept_by_calls_and_errors(zx):
    """Counts of references, and the process's memory, after many calls of each kind."""
    source, destination = np.ones((4, 4), np.float32), np.empty((4, 4), np.float32)
    wrong, names, handler, ref = np.ones(4), ["b10", "b9"], Handler(), Ref()
    prototype = "void OnChange( ScriptObject self )"

    def refused(call, *arguments):
        try:
            call(*arguments)
        except ScriptError:
            return
        raise AssertionError("not refused")

    def round_of_calls():
        zx.ZXExp2(source, destination)
        zx.ZXExp2(source, None)
        zx.ZXAbsArg(zx.ZXPolar(1.0, source, None), ref, Ref(destination))
        zx.ZXSortNumberedName(names)
        zx.call_method(handler, prototype)
        refused(zx.ZXExp2, source, wrong)
        refused(zx.ZXMedian, handler)
        refused(zx.call_method, handler, "void OnBad( ScriptObject self )")
        refused(zx.call_method, handler, "void Missing( ScriptObject self )")

    watched = [source, destination, wrong, names, handler, ref]
    for _ in range(200):
        round_of_calls()
    gc.collect()
    counts = [sys.getrefcount(one) for one in watched]
    nones, held = sys.getrefcount(None), zx.held()
    peak = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
    for _ in range(MANY // 10):  # ten calls a round
        round_of_calls()
    gc.collect()
    assert [sys.getrefcount(one) for one in watched] == counts
    assert abs(sys.getrefcount(None) - nones) < 100
    assert zx.held() == held
    if MANY > 10_000:  # the sanitizers hold freed memory back
        assert resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - peak < 1000  # KiB: 100 bytes a round
