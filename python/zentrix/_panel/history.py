"""States of the panel that undo and redo move through."""

from typing import NamedTuple


class State(NamedTuple):
    """What a correction depends on; never changed in place."""

    values: dict  #: name -> (value in its unit, degrees), for all coefficients and the microscope
    applied: tuple = ()  #: keywords of the corrections that made the source, first one first


class History:
    """States in the order of their making. Edits of the same control become one step until `seal`."""

    def __init__(self, state):
        self._states = [state]
        self._now = 0
        self._open_control = None

    @property
    def state(self):
        return self._states[self._now]

    def record(self, state, control=None):
        """Makes `state` the present one and forgets what could be redone."""
        merges = control is not None and control == self._open_control
        del self._states[self._now + (0 if merges else 1) :]
        self._states.append(state)
        self._now = len(self._states) - 1
        self._open_control = control

    def seal(self):
        """The next edit is a step of its own."""
        self._open_control = None

    def move(self, steps):
        """Undoes (-1) or redoes (1); false if there is nothing."""
        self.seal()
        if not 0 <= self._now + steps < len(self._states):
            return False
        self._now += steps
        return True
