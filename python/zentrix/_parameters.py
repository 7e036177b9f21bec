"""Files of lens parameters, which the command line and the panel read and write, too."""

import json
import os

from . import _core
from ._coefficients import COEFFICIENTS, polar
from ._numbers import number, shown, word
from ._optics import PARAMETERS, WIDTHS, advice, kilovolts, pixel_size, tilt_parts


def read_parameters(path):
    """The lens parameters in a file: keywords of `correct` and the other functions that take them.

    path           a file of parameters, as `write_parameters`, "zentrix convert" and the panel write it or a person
                   types it; the record of a result ("out.json" next to "out.npy"); or a file with the names of another
                   notation. docs/parameters.md describes what is accepted.

    Returns a dictionary of what the file gives: coefficients with an angle as (modulus, degrees), and so on. Numbers
    are the same to the bit as those that were written. Raises FileNotFoundError; ValueError, naming the file and the
    entry that is not understood.

        sharp = zentrix.correct(wave, **zentrix.read_parameters("out.json"))
    """
    path = os.fsdecode(path)
    with open(path, "rb"):  # raises what Python raises
        pass
    return {name: _value(entry) for name, entry in json.loads(_core.read_parameters(path)).items()}


def write_parameters(path, parameters):
    """Writes lens parameters to a JSON file for `read_parameters`, "zentrix correct --params" and the panel.

    path           the file; written whole or not at all
    parameters     dictionary of parameters in the forms that `correct` takes, without arrays. None is left out.

    Raises TypeError or ValueError, naming the parameter or the file.

        zentrix.write_parameters("lens.json", dict(kv=300, pixel=0.02, C1=-62, A1=(14, 35)))
    """
    if not hasattr(parameters, "items"):
        raise TypeError(f"parameters is a dictionary, not {shown(parameters)}.")
    given = {name: value for name, value in parameters.items() if value is not None}
    for name in given:
        if name not in PARAMETERS:
            raise ValueError(f"{name} is not a parameter. {advice(str(name))}")
    plain = {name: _plain(name, given[name]) for name in PARAMETERS if name in given}
    _core.write_parameters(os.fsdecode(path), json.dumps(plain, allow_nan=False))


def _value(entry):
    if not isinstance(entry, dict):
        return entry
    if "angle" in entry:
        return entry["modulus"], entry["angle"]
    return tuple(entry["value"]) if isinstance(entry["value"], list) else entry["value"]


def _plain(name, value):
    """The value of one parameter as JSON has it."""
    if name in COEFFICIENTS:
        modulus, degrees = (_single(name, part) for part in polar(name, value))
        return [modulus, degrees] if COEFFICIENTS[name][2] else modulus
    if name == "kv":
        return kilovolts(value)
    if name == "pixel":
        return pixel_size(value)
    if name == "tilt":
        return [_single(name, part) for part in tilt_parts(value)]
    if name == "envelope":
        return word(name, value, ("auto", "on", "off"))
    return number(value, f"{name} is a number in {WIDTHS.get(name, 'nm')}")


def _single(name, part):
    if not isinstance(part, float):
        raise ValueError(f"{name} is one value here, not an array.")
    return part
