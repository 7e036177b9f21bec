"""The host that all tests share. A test that closes it makes the next test load another."""

import os

import pytest

import zentrix

#: Calls in the tests that look for lost references; the sanitizers make each call many times slower.
MANY = 2_000 if os.environ.get("ZENTRIX_FEWER_CALLS") else 100_000


@pytest.fixture
def zx():
    host = zentrix.load()
    yield host
    held = host.held()
    assert not held.locks and not held.violations
