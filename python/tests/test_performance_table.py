"""The performance table: its comparisons hold with the installed libraries, and its page lists the rows that are lost."""

import sys
from dataclasses import replace
from pathlib import Path

import numpy as np
import pytest

sys.path.insert(0, str(Path(__file__).parents[2] / "bench"))

from table import page, quality  # noqa: E402
from table.images import Images  # noqa: E402
from table.job_rows import PROGRAM  # noqa: E402
from table.measuring import Timing, measure_row  # noqa: E402
from table.row import Row, Topic, agree, read  # noqa: E402
from table.rows import TOPICS  # noqa: E402

IMAGES = Images(128)
ROWS = [row for topic in TOPICS for row in topic.rows if row.switched or PROGRAM.exists()]
EXTREMES = Row("extremes", lambda zx, d: zx.ZXMax(d.real, None, None, None), {"NumPy": lambda d: d.real.max()}, read(4))


@pytest.mark.parametrize("row", ROWS, ids=[row.name for row in ROWS])
def test_peers_and_plain_form_give_the_same_result(zx, row):
    timing = measure_row(zx, row, IMAGES, seconds=0)
    assert timing.differ == []
    assert timing.ours > 0 and timing.limit > 0 and (timing.plain is None) != row.switched
    assert zx.ZXAbs(np.complex64([[3e-30]]), None)[0, 0] == 0, "the vector forms are chosen again"


def test_wrong_results_are_noticed(zx):
    wrong = replace(EXTREMES, peers={"NumPy": lambda d: d.real.min()})
    assert measure_row(zx, wrong, IMAGES, seconds=0).differ == ["NumPy"]
    assert measure_row(zx, replace(EXTREMES, right=lambda d, r: False), IMAGES, seconds=0).differ == ["ours"]
    framed = np.pad(np.zeros((2, 2)), 1, constant_values=1)
    assert agree(framed, framed - framed, 0, 1) and not agree(framed, framed - framed, 0.5)


def test_slow_peers_are_left_out(zx):
    former = IMAGES.pixels // 4, Timing(1e-6, 0.9, {"NumPy": 0.3}, 1e-6, [])
    timing = measure_row(zx, EXTREMES, IMAGES, former, seconds=0)
    assert timing.plain is None and timing.peers["NumPy"] > 0
    assert measure_row(zx, EXTREMES, IMAGES, (IMAGES.pixels, timing), seconds=0).plain is None


def test_wrong_pixels_are_those_with_other_turns_than_most():
    truth = np.linspace(0, 9, 100).reshape(10, 10)
    result = truth + 2 * np.pi
    result[0, :3] += 2 * np.pi
    assert quality.wrong_share(result, truth) == pytest.approx(0.03)
    assert quality.jumps_left(result) == 1 + 3


def test_page_tells_ratios_and_why_a_row_is_lost():
    topics = [Topic("Ranks", (replace(EXTREMES, why="A reason."), replace(EXTREMES, name="won", why="Hidden.")))]
    results = {
        "extremes": {512: Timing(1e-3, 4e-3, {"NumPy": 5e-4}, 1e-3, []), 2048: Timing(1e-2, None, {}, 5e-3, ["plain"])},
        "won": {512: Timing(1e-3, 4e-3, {"NumPy": 2e-3}, 1e-3, [])},
    }
    text = page.page(topics, results, {}, {}, "processor", "versions", [512, 2048])
    assert "| extremes | 3.81 · 2.38 | 4.00 · – | NumPy **0.50** · – | read 1.00 · 2.00 |" in text
    assert "| extremes | NumPy **0.50** · – | A reason. |" in text and "Hidden" not in text
    assert "- extremes at 2048: plain" in text
