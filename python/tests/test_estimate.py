"""zentrix.estimate: what it returns, its callback, and what it refuses. Whether it finds the truth: tests/host/estimation."""

import signal

import numpy as np
import pytest

import zentrix

LENS = {"kv": 300, "pixel": 0.05, "C1": -40.0, "A1": (9.0, 30.0)}


@pytest.fixture(scope="module")
def wave():
    """Of a phase object without symmetry, seen by LENS in the left half, by another lens in the right one."""
    y, x = np.indices((96, 96))
    phase = np.zeros((96, 96))
    for i in range(24):
        square = (x - (i * 37 + i * i * 11) % 96) ** 2 + (y - (i * 53 + i * i * 7) % 96) ** 2
        phase += 0.9 * np.exp(-square / (2.4 + 0.1 * (i % 9)))
    halves = [zentrix.aberrate(np.exp(1j * phase), **lens) for lens in (LENS, {**LENS, "C1": 25, "A1": 0})]
    return np.concatenate(halves, axis=1)


def search(wave, **options):
    return zentrix.estimate(wave, kv=300, pixel=0.05, vibration=0, **options)


def test_result_is_a_mapping_for_correct_with_uncertainties(wave):
    left = search(wave, free="C1,A1", region=(0, 0, 96, 96), threads=1)
    assert left.determined and left.object == "phase" and list(left.coefficients) == ["C1", "A1"]
    assert left["C1"] == pytest.approx(-40, abs=0.3) and left["A1"] == pytest.approx((9, 30), abs=1)
    assert left.coefficients["C1"].value == left["C1"] and 0 < left.coefficients["A1"].uncertainty < 0.3
    assert np.ptp(abs(zentrix.correct(wave, **left)[8:-8, 8:88])) < 0.1 * np.ptp(abs(wave[8:-8, 8:88]))
    assert repr(left).startswith("<zentrix.Estimate, phase object, ") and "C1 -40" in repr(left)
    again = search(wave, free=["A1", "C1"], region=(0, 0, 96, 96), threads=3)
    assert dict(again) == dict(left) and again.coefficients == left.coefficients
    assert search(wave, free="C1", region=[96, 0, 96, 96])["C1"] == pytest.approx(25, abs=0.3)


def test_range_is_where_C1_is_searched_and_other_coefficients_are_as_given(wave):
    far = zentrix.correct(wave[:, :96], kv=300, pixel=0.05, C1=360)  # C1 is -400 there
    known = search(far, free="C1", range=(-460, -340), A1=(9, 30))
    assert known["C1"] == pytest.approx(-400, abs=0.5) and known["A1"] == (9, 30)
    missed = search(far, free="C1", range=(-60, 60), C1=7, A1=(9, 30))
    assert not missed.determined and missed["C1"] == 7 and "not determined: the modulus varies" in repr(missed)
    assert search(far, free="C1", object="amplitude").object == "amplitude"


def test_progress_follows_and_stops_the_search(wave):
    calls = []
    search(wave, region=(0, 0, 96, 96), progress=lambda fraction, best: calls.append((fraction, best)))
    fractions = [fraction for fraction, _ in calls]
    assert fractions == sorted(fractions) and 0 <= fractions[0] and fractions[-1] <= 1
    assert all(set(best) >= {"C1", "A1"} and len(best["A1"]) == 2 for _, best in calls)
    found = search(wave, C1=3, progress=lambda fraction, best: False)
    assert found.stopped and not any(one.determined for one in found.coefficients.values()) and found["C1"] == 3
    with pytest.raises(ZeroDivisionError):
        search(wave, progress=lambda fraction, best: 1 / 0)


def test_a_signal_stops_the_search(wave):
    def interrupt(number, frame):
        raise KeyboardInterrupt

    former = signal.signal(signal.SIGALRM, interrupt)
    signal.setitimer(signal.ITIMER_REAL, 0.01)
    try:
        with pytest.raises(KeyboardInterrupt):
            search(wave)
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, former)


@pytest.mark.parametrize(
    ("options", "error", "text"),
    [
        ({"free": "C1,Z9"}, ValueError, "free: 'Z9' is not a coefficient"),
        ({"free": ["C1", "C1"]}, ValueError, "free: C1 is there twice"),
        ({"free": ()}, ValueError, "free"),
        ({"free": 5}, TypeError, "free is names of coefficients"),
        ({"object": "both"}, ValueError, "object"),
        ({"range": (1, 2, 3)}, TypeError, "range is 2 numbers"),
        ({"range": (60, 20)}, ValueError, "range"),
        ({"range": (-np.inf, 60)}, ValueError, "range is 2 numbers, not -inf"),
        ({"region": (0, 0, 96)}, TypeError, "region is 4 whole numbers"),
        ({"region": (0, 0, 64.5, 64)}, ValueError, "region is 4 whole numbers, not 64.5"),
        ({"threads": -5}, ValueError, "threads is a whole number from 0 to 1024, not -5"),
        ({"threads": 1.7}, ValueError, "threads is a whole number"),
        ({"region": (100, 0, 96, 96)}, ValueError, "region"),
        ({"region": (0, 0, 32, 32)}, ValueError, "64 x 64"),
        ({"C1": [1, 2]}, ValueError, "single values, not a sweep"),
        ({"progress": 3}, TypeError, "progress is a function"),
    ],
)
def test_wrong_options_are_named(wave, options, error, text):
    with pytest.raises(error, match=text):
        search(wave, **options)
