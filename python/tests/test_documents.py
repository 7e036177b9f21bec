"""The examples in the documents."""

import doctest
import pathlib

import pytest

DOCS = pathlib.Path(__file__).resolve().parents[2] / "docs"


@pytest.mark.parametrize("name", sorted(path.name for path in DOCS.glob("*.md") if ">>> " in path.read_text("utf-8")))
def test_examples_give_the_documented_results(name):
    outcome = doctest.testfile(str(DOCS / name), module_relative=False, encoding="utf-8")
    assert outcome.attempted > 0 and outcome.failed == 0
