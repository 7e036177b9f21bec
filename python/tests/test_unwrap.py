"""Unwrapping of phases: gaps, stacks, the report."""

import numpy as np
import pytest

import zentrix

Y, X = np.indices((48, 64))
TRUTH = 0.3 * X + 0.004 * Y**2
PHASE = np.angle(np.exp(1j * TRUTH))
HOLES = (abs(X - 30) < 6) & (abs(Y - 20) < 6)
HOLES[5, 50] = True
NOISE = np.angle(np.exp(1j * (TRUTH + np.random.default_rng(2).normal(size=TRUTH.shape))))


def torn(kind):
    """PHASE with marks in the holes, and the further arguments that leave them out."""
    marked = np.where(HOLES, np.nan if kind == "nan" else X * Y * 7919 % 13, PHASE)
    if kind == "masked array":
        return np.ma.MaskedArray(marked, mask=HOLES), {}
    return marked, {"mask": HOLES} if kind == "mask" else {}


@pytest.mark.parametrize("kind", ["nan", "mask", "masked array"])
def test_gaps_do_not_spread_and_come_back(kind):
    phase, more = torn(kind)
    result, report = zentrix.unwrap(phase, report=True, **more)
    assert result.dtype == np.float32 and isinstance(result, np.ma.MaskedArray) == (kind == "masked array")
    values = np.asarray(result)
    assert np.abs(values - TRUTH)[~HOLES].max() < 1e-4
    assert np.array_equal(values[HOLES], np.asarray(phase)[HOLES].astype(np.float32), equal_nan=True)
    assert report[:6] == (0, 0, 0, 1, 0, HOLES.sum())
    assert ((report.labels == 0) == HOLES).all()


def test_stack_goes_plane_by_plane():
    stack = np.stack([[PHASE, NOISE], [NOISE.T.reshape(PHASE.shape), PHASE]])
    result, report = zentrix.unwrap(stack, mask=HOLES, box=9, report=True)
    for index in np.ndindex(2, 2):
        single, about = zentrix.unwrap(stack[index], mask=HOLES, box=9, report=True)
        assert (result[index] == single).all() and (report.labels[index] == about.labels).all()
        assert [field[index] for field in report[:6]] == list(about[:6])


def test_report_tells_residues_and_cuts():
    vortex = np.arctan2(Y - 20.5, X - 30.5)  # grows clockwise on the displayed image, where y points down
    for phase, charges in ((vortex, (1, 0)), (vortex[:, ::-1], (0, 1))):
        report = zentrix.unwrap(phase, report=True)[1]
        assert report[:2] == charges and report.regions == 1 and report.cut_pixels == 2 * 21  # from row 20 to the edge
