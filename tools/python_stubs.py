#!/usr/bin/python3
"""Writes the types of all script functions, zentrix/_functions.pyi, from the prototypes of the library.

PYTHONPATH=build/release/python tools/python_stubs.py > python/zentrix/_functions.pyi
"""

import textwrap

import zentrix
from zentrix._script_functions import parse

HEAD = '''"""Types of the script functions, made by tools/python_stubs.py."""

import os
from collections.abc import Mapping, MutableSequence
from typing import Any, NamedTuple, SupportsFloat, SupportsIndex, overload

from numpy.typing import NDArray

from . import Ref, TagGroup, TagList

Number = SupportsIndex | SupportsFloat
Complex = complex | Number
Text = str | os.PathLike[str] | os.PathLike[bytes]
Image = NDArray[Any]
Tags = Mapping[str, Any] | MutableSequence[Any] | TagList

'''

ARGUMENTS = {
    "long": "Number",
    "float": "Number",
    "double": "Number",
    "complex": "Complex",
    "string": "Text",
    "dm_string": "Text",
    "char": "Text",
    "ImageRef": "Image | None",
    "Image": "Image | None",
    "ComplexImagePtr": "Image | None",
    "TagGroup": "Tags | None",
    "ScriptObject": "object",
}
INITIAL_VALUES = {**ARGUMENTS, "ImageRef": "Image"}
RESULTS = {
    "void": "None",
    "long": "int",
    "double": "float",
    "dm_string": "str",
    "ImageRef": "Image",
    "ComplexImagePtr": "Image",
    "TagGroup": "TagGroup | TagList",
}


def result_class(prototype):
    """The class of the named tuple that a prototype with output parameters returns."""
    fields = [] if prototype.result == "void" else [("result", prototype.result)]
    fields += [(prototype.parameters[k].name, prototype.parameters[k].kind) for k in prototype.outputs]
    lines = [f"class {prototype.function}Result(NamedTuple):\n"]
    return "".join(lines + [f"    {name}: {RESULTS[kind]}\n" for name, kind in fields]) + "\n"


def method(prototype, result, output_types, by_keyword=None):
    """A method with `output_types[kind]` for output parameters, and keywords only from position `by_keyword` on."""
    listed, is_optional = ["self"], False
    for position, one in enumerate(prototype.parameters):
        if by_keyword is None and is_optional and not one.may_be_omitted:
            by_keyword = position
        if position == by_keyword:
            listed.append("*")
        is_optional |= one.may_be_omitted
        annotation = output_types[one.kind] if one.is_output else ARGUMENTS[one.kind]
        default = "" if not one.may_be_omitted else " = ..." if one.is_output else " = None"
        listed.append(f"{one.name}: {annotation}{default}")
    return f"    def {prototype.function}({', '.join(listed)}) -> {result}: ...\n"


def wrapped(form):
    """The form with its parameters on lines of their own, if it is too long for one line of 120 columns."""
    if len(form) <= 121:
        return form
    head, rest = form.split("(", 1)
    parameters, result = rest.split(") -> ")
    result, comment = result.split("...")
    unbroken = parameters.replace(" ", "\0").replace(",\0", ", ")  # lines break between parameters only
    lines = textwrap.fill(unbroken + ",", 120, initial_indent=" " * 8, subsequent_indent=" " * 8).replace("\0", " ")
    return f"{head}({comment.rstrip()}\n{lines}\n    ) -> {result}...\n"


def with_required(prototype, positions):
    """The prototype with parameters that may not be omitted."""
    parameters = list(prototype.parameters)
    for k in positions:
        parameters[k] = parameters[k]._replace(may_be_omitted=False)
    return prototype._replace(parameters=parameters)


def is_covered(prototype, general):
    """Whether the general prototype takes every call of the other one, since its further parameters may be omitted."""
    size = len(prototype.parameters)
    further = general.parameters[size:]
    return general.parameters[:size] == prototype.parameters and all(one.may_be_omitted for one in further) and further


def forms(prototype, general):
    """All forms of one prototype: as scripts use it, and with omitted arguments."""
    result, outputs = RESULTS[prototype.result], prototype.outputs
    if is_covered(prototype, general):
        return []
    if not outputs:
        made = method(prototype, result, ARGUMENTS)
        complete = with_required(prototype, range(len(prototype.parameters)))
        return [made, method(complete, result, ARGUMENTS)] if "*," in made else [made]
    references = dict.fromkeys(ARGUMENTS, "Ref | None")
    made = [method(prototype, f"{prototype.function}Result", INITIAL_VALUES)]
    made.append(method(with_required(prototype, outputs[:1]), result, references))
    if len(outputs) > 1 and prototype.parameters[outputs[0]].may_be_omitted:
        made[0] = made[0].replace("\n", "  # type: ignore[misc]\n")  # without outputs, the first form applies
        made.append(method(prototype, result, references, by_keyword=outputs[0]))
    return made


def stubs(prototypes):
    text, classes = "class ScriptFunctions:\n", ""
    for name in dict.fromkeys(one.function for one in prototypes):
        same_name = [one for one in prototypes if one.function == name]
        most_general = max(same_name, key=lambda one: len(one.parameters))
        made = [form for one in same_name for form in forms(one, most_general)]
        mark = "    @overload\n" if len(made) > 1 else ""
        text += "".join(mark + wrapped(one) for one in made) + f"    {name.removeprefix('ZX')} = {name}\n"
        if most_general.outputs:
            classes += result_class(most_general)
    return HEAD + classes + text


if __name__ == "__main__":
    print(stubs([parse(one) for one in zentrix.load().functions()]), end="")
