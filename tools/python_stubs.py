#!/usr/bin/python3
"""Writes the types of all script functions, zentrix/_functions.pyi, from the prototypes of the library.

PYTHONPATH=build/release/python tools/python_stubs.py > python/zentrix/_functions.pyi
"""

import keyword
import re
from itertools import groupby

import zentrix

HEAD = '''"""Types of the script functions, made by tools/python_stubs.py."""

import os
from collections.abc import Mapping, MutableSequence
from typing import Any, SupportsFloat, SupportsIndex, overload

from numpy.typing import NDArray

from . import Ref, TagGroup, TagList

Number = SupportsIndex | SupportsFloat
Complex = complex | Number
Text = str | os.PathLike[str] | os.PathLike[bytes]
Image = NDArray[Any]
Tags = Mapping[str, Any] | MutableSequence[Any] | TagList

class ScriptFunctions:
'''

ARGUMENTS = {
    "long": "Number",
    "float": "Number",
    "double": "Number",
    "complex": "Complex",
    "string": "Text",
    "dm_string": "Text",
    "char*": "Text",
    "ImageRef": "Image | None",
    "Image*": "Image | None",
    "ComplexImagePtr": "Image | None",
    "TagGroup": "Tags | None",
    "ScriptObject": "object",
}
RESULTS = {
    "void": "None",
    "long": "int",
    "double": "float",
    "dm_string": "str",
    "ImageRef": "Image",
    "ComplexImagePtr": "Image",
    "TagGroup": "TagGroup | TagList",
}


def parameter(text):
    kind, star, name = re.fullmatch(r"\s*(\w+)\s*(\*?)\s*(\w+)\s*", text).groups()
    annotation = ARGUMENTS.get(kind + star) or "Ref | None"  # any other star marks an output parameter
    return f"{name}{'_' if keyword.iskeyword(name) else ''}: {annotation}"


def method(prototype):
    result, name, listed = re.fullmatch(r"(\w+) (\w+)\((.*)\)", prototype).groups()
    parameters = [] if listed.strip() in ("", "void") else [parameter(one) for one in listed.split(",")]
    return f"    def {name}({', '.join(['self', *parameters, '/'])}) -> {RESULTS[result]}: ...\n"


def stubs(prototypes):
    text = HEAD
    for _, same_name in groupby(prototypes, lambda one: one.split("(")[0].split()[1]):
        methods = [method(one) for one in same_name]
        mark = "    @overload\n" if len(methods) > 1 else ""
        text += "".join(mark + one for one in methods)
    return text


if __name__ == "__main__":
    print(stubs(zentrix.load().functions()), end="")
