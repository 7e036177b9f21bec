"""Script functions for the correction of electron waves, on NumPy arrays.

    import numpy, zentrix
    zx = zentrix.load()
    smooth = zx.ZXMedianFilter(numpy.random.rand(512, 512), 2)

`load` starts a host with the library; each script function is an attribute of the host. `correct` applies or removes
the aberrations of a lens in physical units.
"""

import atexit
import importlib
import logging
import os
import pathlib
from typing import NamedTuple

from . import _interpreter  # first, because its error explains those of the other imports
from . import _core
from ._core import ScriptError
from ._core import version as __version__
from ._correct import aberrate, correct
from ._hologram import HologramReport, hologram
from ._files import Axis, Image, read, write
from ._estimate import Estimate, EstimatedCoefficient, estimate
from ._notation import from_notation, to_notation
from ._panel import panel
from ._parameters import read_parameters, write_parameters
from ._phases import UnwrapReport, unwrap
from ._ref import Ref
from ._script_functions import make_function, nearest, parse
from ._tags import TagGroup, TagList
from ._transfer import ImageCTF, RadialCTF, ctf, transfer_function, wavelength

_FUNCTIONS = (
    aberrate,
    correct,
    ctf,
    estimate,
    from_notation,
    hologram,
    panel,
    read,
    read_parameters,
    to_notation,
    transfer_function,
    unwrap,
    wavelength,
    write,
    write_parameters,
)
_CLASSES = (
    Axis,
    Estimate,
    EstimatedCoefficient,
    HologramReport,
    Image,
    ImageCTF,
    RadialCTF,
    Ref,
    ScriptError,
    TagGroup,
    TagList,
    UnwrapReport,
)
__all__ = ["Held", "Host", "load", *(_public.__name__ for _public in _CLASSES + _FUNCTIONS)]

for _public in _CLASSES + _FUNCTIONS:
    _public.__module__ = "zentrix"  # where users find them
_core.look_up_classes()
_open_host = None


class Held(NamedTuple):
    """What the library holds, one line for each item; all lists are empty if it holds nothing."""

    references: list  #: host objects
    locks: list  #: image locks
    others: list  #: registered functions, windows and links
    violations: list  #: breaches of the contract so far


class Host:
    """The host with the library running in it. Every script function is an attribute; `functions` lists them."""

    def __init__(self, core, file):
        self._core = core
        self._file = file
        self._functions = {}
        self._host_functions = {text.split("(")[0].split()[-1].lstrip("*") for text in core.host_functions()}
        prototypes = [parse(text) for text in core.functions()]
        for name in dict.fromkeys(one.function for one in prototypes):
            self._functions[name] = make_function(core, [one for one in prototypes if one.function == name])
        self.__dict__.update(self._functions)

    def __getattr__(self, name):
        """A script function by its name without the prefix."""
        functions = self.__dict__.get("_functions", {})
        if "ZX" + name in functions:
            return functions["ZX" + name]
        near = None if name.startswith("_") else nearest(name, dir(self))
        raise AttributeError(f"The host has no attribute {name!r}." + (f" Did you mean {near}?" if near else ""))

    def __dir__(self):
        return [*super().__dir__(), *(name.removeprefix("ZX") for name in self._functions)]

    def call(self, name, /, *arguments, **keywords):
        """Calls a function by name: a script function, or a function of the host such as "TagGroupCountTags".

        The prefix ZX may be omitted unless the host has a function of that name. Only script functions take keywords.
        """
        if name not in self._host_functions:
            function = self._functions.get(name) or self._functions.get("ZX" + name)
            if function:
                return function(*arguments, **keywords)
            near = nearest(name, [*self._functions, *self._host_functions])
            raise ScriptError(f'There is no script function "{name}".' + (f" Did you mean {near}?" if near else ""))
        if keywords:
            raise TypeError(f"{name}() takes no keyword arguments: it is a function of the host.")
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

    def __reduce__(self):
        """Pickled, it is the host of the process that unpickles it: loaded there when necessary."""
        default = self._file == os.path.realpath(_library_file())
        return load, () if default else (self._file,)

    def __copy__(self):
        return self

    def __deepcopy__(self, memo):
        return self

    def __repr__(self):
        return f"<zentrix.Host, {'open' if self._core.is_open() else 'closed'}>"


def load(path=None):
    """Starts the host with the library and returns it; returns the running host if there is one.

    path    the library's file. Default: the environment's ZENTRIX_LIBRARY, or the file installed with this module

    Any thread may call it and use the host. Raises ScriptError if the library is not found or does not start, and
    during the `close` of another host.
    """
    host = _open_host
    if host is not None and path is None and host._core.is_open():
        return host
    return _core.call_on_host_thread(lambda: _load(path))  # one thread at a time


def _load(path):
    global _open_host
    file = os.path.realpath(_library_file() if path is None else os.fspath(path))
    if _open_host is not None and _open_host._core.is_open():
        if path is not None and file != _open_host._file:
            raise ScriptError(f'A host is running already, with the library "{_open_host._file}": close() it first.')
        return _open_host
    _open_host = Host(_core.Session(file, _log), file)
    return _open_host


def __getattr__(name):
    """Script functions are found here, too, so that pickle can name them; zentrix.dask is imported by its use."""
    if name == "dask":
        return importlib.import_module(".dask", __name__)
    functions = load()._functions if name.startswith("ZX") else {}
    if name in functions:
        return functions[name]
    near = None if name.startswith("_") else nearest(name, [*__all__, *functions])
    raise AttributeError(
        f"module {__name__!r} has no attribute {name!r}" + (f". Did you mean {near}?" if near else "")
    )


def _library_file():
    """The file named in the environment, or the one in this package's folder. Other folders may not be trusted."""
    return os.environ.get("ZENTRIX_LIBRARY") or pathlib.Path(__file__).resolve().parent / "Zentrix64.so"


def _log(level, text):
    getattr(logging.getLogger("zentrix"), level)("%s", text.rstrip("\n"))


@atexit.register
def _close_at_exit():
    _core.end(lambda: _open_host is not None and _open_host.close())
