"""Script functions as Python functions: keywords, omitted arguments, outputs as named tuples, docstrings."""

import collections
import difflib
import functools
import inspect
import json
import keyword
import os
import pathlib
import re
from typing import NamedTuple

import numpy as np

from ._numbers import as_scalar, shown
from ._ref import Ref

_DESTINATION = re.compile(r"(img|cim)Dst")
_INPUT_POINTERS = ("Image", "char")  # images and texts are passed by pointer; other pointers are output parameters
_OMITTED = inspect.Parameter.empty


class Parameter(NamedTuple):
    """A parameter of a prototype."""

    name: str  #: as in the prototype; a keyword of Python ends in "_": lambda_
    kind: str  #: type, without the star of an output parameter
    is_output: bool
    may_be_omitted: bool  #: a destination; or an output parameter that only such parameters follow


class Prototype(NamedTuple):
    """A prototype such as "double ZXMin(ImageRef imgSrc, long * nX, long * nY, long * nZ)"."""

    text: str
    result: str  #: type, "void" if there is none
    function: str
    parameters: list

    @property
    def outputs(self):
        """The positions of the output parameters."""
        return [position for position, one in enumerate(self.parameters) if one.is_output]


def parse(text):
    """The `Prototype` of a text."""
    result, function, listed = re.fullmatch(r"(\w+) (\w+)\((.*)\)", text).groups()
    parameters = []
    for one in reversed([] if listed.strip() in ("", "void") else listed.split(",")):
        kind, star, name = re.fullmatch(r"\s*(\w+)\s*(\*?)\s*(\w+)\s*", one).groups()
        is_output = star == "*" and kind not in _INPUT_POINTERS
        is_last = all(later.may_be_omitted for later in parameters)
        is_destination = star == "" and _DESTINATION.fullmatch(name) is not None
        name += "_" * keyword.iskeyword(name)
        parameters.insert(0, Parameter(name, kind, is_output, is_destination or (is_output and is_last)))
    return Prototype(text, result, function, parameters)


def make_function(core, prototypes):
    """The Python function for a script function.

    core         its host's `_core.Session`
    prototypes   its `Prototype`s in the order of registration
    """
    name = prototypes[0].function
    most_general = max(prototypes, key=lambda one: len(one.parameters))
    sizes = {len(one.parameters): one for one in prototypes}

    def call(*arguments, **keywords):
        prototype = None if keywords else sizes.get(len(arguments))
        if prototype is None:
            prototype, arguments = _bind(prototypes, arguments, keywords)
        outputs = prototype.outputs
        if not outputs:
            return _call_with_note(core, prototype, arguments)
        return _call_with_outputs(core, prototype, list(arguments), outputs)

    call.__name__ = call.__qualname__ = name
    call.__module__ = "zentrix"  # found there by pickle
    call.__doc__ = "\n".join([one.text for one in prototypes] + ["", _reference().get(name, "")]).rstrip()
    call.__signature__ = _signature(most_general, min(len(one.parameters) for one in prototypes))
    return call


def nearest(name, names):
    """The most similar of the names, whatever the case of the letters and the prefix; None if none is similar."""
    plain = {one.lower().removeprefix("zx"): one for one in names}
    found = difflib.get_close_matches(name.lower().removeprefix("zx"), plain, 1, 0.6)
    return plain[found[0]] if found else None


def _call_with_outputs(core, prototype, arguments, outputs):
    """Without any Ref or None for the output parameters, they are returned in a named tuple."""
    by_reference = any(arguments[k] is None or isinstance(arguments[k], Ref) for k in outputs)
    for k in outputs:
        if arguments[k] is _OMITTED:
            arguments[k] = None if by_reference else Ref()
        elif arguments[k] is not None and not isinstance(arguments[k], Ref):
            arguments[k] = Ref(_checked_start(prototype, prototype.parameters[k], arguments[k]))
    result = _call_with_note(core, prototype, arguments)
    if by_reference:
        return result
    fields = ["result"] * (prototype.result != "void") + [prototype.parameters[k].name for k in outputs]
    values = [result] * (prototype.result != "void") + [arguments[k].value for k in outputs]
    return make_result(prototype.function, tuple(fields), values)


def _checked_start(prototype, parameter, value):
    """The initial value of an output parameter; the host would ignore one of another type."""
    wanted, fits = {
        "long": ("a number", _is_real(value)),
        "double": ("a number", _is_real(value)),
        "dm_string": ("a text", isinstance(value, (str, os.PathLike))),
        "ImageRef": ("an array", isinstance(value, np.ndarray)),
    }.get(parameter.kind, ("", True))
    if not fits:
        raise TypeError(f"{prototype.function}() takes {wanted} as the initial {parameter.name}, not {shown(value)}.")
    return value


def _is_real(value):
    return isinstance(value, (bool, np.bool_)) or (
        not isinstance(value, np.ndarray) and isinstance(as_scalar(value), float)
    )


def _call_with_note(core, prototype, arguments):
    try:
        return core.call(prototype.function, *arguments)
    except RuntimeError as refusal:
        if str(refusal) == "Parameters are invalid." and hasattr(refusal, "add_note"):
            listed = (f"{one.name}={_brief(value)}" for one, value in zip(prototype.parameters, arguments))
            refusal.add_note(f"The arguments were {', '.join(listed)}.")
        raise


def _brief(value):
    if isinstance(value, Ref):
        return f"Ref({_brief(value.value)})"
    return f"<{value.dtype} {value.shape}>" if hasattr(value, "dtype") and getattr(value, "shape", ()) else repr(value)


def _bind(prototypes, arguments, keywords):
    """The prototype that takes the arguments, and the arguments in its order. If there are several, the longest.

    Raises TypeError, in Python's words, if there is none.
    """
    name = prototypes[0].function
    names = {parameter.name for prototype in prototypes for parameter in prototype.parameters}
    for unknown in keywords.keys() - names:
        near = nearest(unknown, names)
        hint = f". Did you mean {near!r}?" if near else ""
        raise TypeError(f"{name}() got an unexpected keyword argument {unknown!r}{hint}")
    problems = []
    for prototype in sorted(prototypes, key=lambda one: -len(one.parameters)):
        bound, problem = _bind_to(prototype, arguments, keywords)
        if bound is not None:
            return prototype, bound
        problems.append(problem)
    raise TypeError(f"{name}() {min(problems)[-1]}")


def _bind_to(prototype, arguments, keywords):
    """(arguments in order, None), or (None, problem): the problem to report is the least of all prototypes."""
    parameters = prototype.parameters
    size, names = len(parameters), [one.name for one in parameters]
    if len(arguments) > size:
        least = sum(not one.may_be_omitted for one in parameters)
        takes = f"{size}" if least == size else f"from {least} to {size}"
        plural = "" if takes == "1" else "s"
        return None, (2, -size, f"takes {takes} positional argument{plural} but {len(arguments)} were given")
    for given in keywords:
        if given not in names:
            return None, (3, size, f"got an unexpected keyword argument {given!r}")
        if given in names[: len(arguments)]:
            return None, (1, size, f"got multiple values for argument {given!r}")
    omitted = [None if not one.is_output and one.may_be_omitted else _OMITTED for one in parameters]
    bound = [*arguments, *(keywords.get(one, omitted[k]) for k, one in enumerate(names) if k >= len(arguments))]
    missing = [repr(one.name) for one, value in zip(parameters, bound) if value is _OMITTED and not one.may_be_omitted]
    if not missing:
        return bound, None
    listed = " and ".join([", ".join(missing[:-1])] * (len(missing) > 1) + missing[-1:])
    plural = "" if len(missing) == 1 else "s"
    return None, (0, len(missing), f"missing {len(missing)} required positional argument{plural}: {listed}")


def _signature(prototype, shortest):
    """The signature of the longest prototype. The default `...` marks an argument that another prototype does not have."""
    parameters, is_optional = [], False
    for position, one in enumerate(prototype.parameters):
        kind, default = inspect.Parameter.POSITIONAL_OR_KEYWORD, _OMITTED
        if one.may_be_omitted:
            default = None
        elif position >= shortest:
            default = ...
        elif is_optional:
            kind = inspect.Parameter.KEYWORD_ONLY
        is_optional |= default is not _OMITTED
        parameters.append(inspect.Parameter(one.name, kind, default=default))
    return inspect.Signature(parameters)


@functools.cache
def _result_class(function, fields):
    named = collections.namedtuple(f"{function}Result", fields, module="zentrix")
    named.__doc__ = f"What {function} returns, with its output parameters."
    named.__reduce__ = lambda self: (make_result, (function, fields, tuple(self)))
    return named


def make_result(function, fields, values):
    """A named tuple of the outputs of a script function. Also unpickles it."""
    return _result_class(function, fields)(*values)


@functools.cache
def _reference():
    """Script function -> its entry in the script reference, made at build time by tools/reference_entries.py."""
    return json.loads((pathlib.Path(__file__).parent / "_reference.json").read_text("utf-8"))
