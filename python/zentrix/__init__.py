"""Script functions for the correction of electron waves, on NumPy arrays.

    import numpy, zentrix
    zx = zentrix.load()
    smooth = zx.ZXMedianFilter(numpy.random.rand(512, 512), 2, None)

`load` starts a host with the library; each script function is an attribute of the host. `correct` applies or removes
the aberrations of a lens in physical units.
"""

import atexit
import logging
import os
import pathlib
from typing import NamedTuple

from . import _interpreter  # first, because its error explains those of the other imports
from . import _core
from ._core import ScriptError
from ._core import version as __version__
from ._correct import aberrate, correct
from ._panel import panel
from ._phases import UnwrapReport, unwrap
from ._ref import Ref
from ._tags import TagGroup, TagList
from ._transfer import ImageCTF, RadialCTF, ctf, transfer_function, wavelength

_FUNCTIONS = (aberrate, correct, ctf, panel, transfer_function, unwrap, wavelength)
_CLASSES = (ImageCTF, RadialCTF, Ref, ScriptError, TagGroup, TagList, UnwrapReport)
__all__ = ["Held", "Host", "load", *(_public.__name__ for _public in _CLASSES + _FUNCTIONS)]

for _public in _CLASSES + _FUNCTIONS:
    _public.__module__ = "zentrix"  # where users find them
_open_host = None


class Held(NamedTuple):
    """What the library holds, one line for each item; all lists are empty if it holds nothing."""

    references: list  #: host objects
    locks: list  #: image locks
    others: list  #: registered functions, windows and links
    violations: list  #: breaches of the contract so far


class Host:
    """The host with the library running in it. Every script function is an attribute; `functions` lists them."""

    def __init__(self, core):
        self._core = core
        prototypes = {}
        for text in core.functions():
            prototypes.setdefault(text.split("(")[0].split()[-1], []).append(text)
        for name, texts in prototypes.items():
            setattr(self, name, _script_function(core, name, texts))

    def call(self, name, *arguments):
        """Calls a function by name: a script function, or a function of the host such as "TagGroupCountTags"."""
        return self._core.call(name, *arguments)

    def call_method(self, handler, prototype, *arguments):
        """Calls a method of a handler as the library does, for example "void OnChange( ScriptObject self )"."""
        return self._core.call_method(handler, prototype, *arguments)

    def functions(self):
        """The prototypes of all script functions, in the order of registration."""
        return self._core.functions()

    def trace(self):
        """The time reports of all functions: counter name -> (reports, ticks)."""
        return self._core.trace()

    def notifications(self, array):
        """How often the host was notified that the pixels of this array's image have changed."""
        return _core.notifications(array)

    def held(self):
        """What the library holds now; after `close` nothing but violations. See `Held`."""
        return Held(*self._core.held())

    def close(self):
        """Shuts the library down. Does nothing if it is closed."""
        self._core.close()

    def __repr__(self):
        return f"<zentrix.Host, {'open' if self._core.is_open() else 'closed'}>"


def load(path=None):
    """Starts the host with the library and returns it; returns the running host if there is one.

    path    the library's file. Default: the environment's ZENTRIX_LIBRARY, or the file installed with this module

    The calling thread becomes the host's main thread, the only one that may call script functions.
    Raises ScriptError if the library is not found or does not start, and during the `close` of another host.
    """
    global _open_host
    file = os.path.realpath(_library_file() if path is None else os.fspath(path))
    if _open_host is not None and _open_host._core.is_open():
        if path is not None and file != _open_host._file:
            raise ScriptError(f'A host is running already, with the library "{_open_host._file}": close() it first.')
        return _open_host
    _open_host = Host(_core.Session(file, _log))
    _open_host._file = file
    return _open_host


def _library_file():
    """The file named in the environment, or the one in this package's folder. Other folders may not be trusted."""
    return os.environ.get("ZENTRIX_LIBRARY") or pathlib.Path(__file__).resolve().parent / "Zentrix64.so"


def _script_function(core, name, prototypes):
    def call(*arguments):
        return core.call(name, *arguments)

    call.__name__ = call.__qualname__ = name
    call.__doc__ = "\n".join(prototypes)
    return call


def _log(level, text):
    getattr(logging.getLogger("zentrix"), level)("%s", text.rstrip("\n"))


@atexit.register
def _close_at_exit():
    if _open_host is not None:
        try:
            _open_host.close()
        except ScriptError:  # loaded on another thread, the only one that could close it
            pass
