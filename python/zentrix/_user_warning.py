"""Warnings about what the user passed."""

import sys
import warnings


def warn(text):
    """Warns at the line outside of the package that called it, whatever lies between."""
    frame, level = sys._getframe(), 1
    while frame.f_back and frame.f_globals.get("__name__", "").split(".")[0] == __package__:
        frame, level = frame.f_back, level + 1
    warnings.warn(text, stacklevel=level)
