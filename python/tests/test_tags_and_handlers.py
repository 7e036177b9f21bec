"""Dictionaries and lists as tag groups, objects as handlers."""

import collections
import types

import numpy as np
import pytest

import zentrix
from zentrix import Ref, ScriptError


def read(zx, kind, tags, path):
    value = Ref()
    return value.value if zx.call(f"TagGroupGetTagAs{kind}", tags, path, value) else None


@pytest.mark.parametrize(
    "value, as_long, as_float, as_text",
    [
        (-7.9, -7, np.float32(-7.9), None),
        (2**31 - 1, 2**31 - 1, 2.0**31, None),
        (2**31, None, 2.0**31, None),
        (1e39, None, None, None),
        ("Å", None, None, "Å"),
        (None, None, None, None),
        (np.zeros(2), None, None, None),
    ],
)
def test_tags_are_read_as_numbers_or_texts(zx, value, as_long, as_float, as_text):
    tags = {"a": {"b": [0, value]}}
    found = [read(zx, kind, tags, "a:b:[1]") for kind in ("Long", "Float", "String")]
    assert found == [as_long, as_float, as_text]
    assert read(zx, "Long", tags, "a:c") is None and zx.call("TagGroupCountTags", tags["a"]["b"]) == 2


@pytest.mark.parametrize("make", [dict, collections.OrderedDict, collections.UserDict])
def test_tags_are_written_to_the_mapping_itself(zx, make):
    tags = make(list=[1])
    zx.call("TagGroupSetTagAsLong", tags, "n", 5)
    zx.call("TagGroupSetTagAsFloat", tags, "f", 0.1)
    zx.call("TagGroupSetTagAsString", tags, "list:[1]", "end")
    zx.call("TagGroupSetTagAsLong", tags, "list:[0]", 2)
    zx.call("TagGroupSetTagAsLong", tags, "new:deep", 9)
    assert dict(tags) == {"list": [2, "end"], "n": 5, "f": np.float32(0.1), "new": {"deep": 9}}
    assert read(zx, "Long", tags, "new:deep") == 9


def test_tags_that_cannot_be_written_are_refused(zx):
    for tags, path, text in (
        ((1, 2), "[0]", "TypeError: 'tuple' object does not support item assignment"),
        (types.MappingProxyType({}), "a", "TypeError: 'mappingproxy' object does not support item assignment"),
        ({"a": 1}, "a:b", 'The tag "a" is not a group.'),
    ):
        with pytest.raises(ScriptError) as refusal:
            zx.call("TagGroupSetTagAsLong", tags, path, 3)
        assert str(refusal.value) == text


def test_tags_of_the_host_behave_like_mappings_and_lists(zx):
    group, tags = zx.call("NewTagGroup"), zx.call("NewTagList")
    zx.call("TagGroupSetTagAsLong", group, "b", 1)
    zx.call("TagGroupSetTagAsString", group, "a:c", "text")
    zx.call("TagGroupInsertTagAsTagGroup", tags, 0, group)
    zx.call("TagGroupSetTagAsFloat", tags, "[1]", 0.5)
    assert isinstance(group, zentrix.TagGroup) and isinstance(tags, zentrix.TagList)
    assert list(group) == ["b", "a"] and group == {"b": 1, "a": {"c": "text"}} and dict(group.items())["b"] == 1
    assert tags == [group, 0.5] and tags[-1] == 0.5 and tags[:1] == [group] and tags != "x"
    assert repr(tags) == "TagList([TagGroup({'b': 1, 'a': TagGroup({'c': 'text'})}), 0.5])"
    for missing, error in ((lambda: group["x"], KeyError), (lambda: tags[2], IndexError)):
        with pytest.raises(error):
            missing()
    assert "x" not in group and group.get("x", 8) == 8


def test_methods_are_called_with_python_values(zx):
    calls, tags, image = [], {"a": 1}, np.zeros((2, 2))
    handler = types.SimpleNamespace(OnMany=lambda *arguments: calls.append(arguments) or {"answer": len(arguments)})
    prototype = "TagGroup OnMany( ScriptObject, long, double, string, TagGroup, ImageRef )"
    assert zx.call_method(handler, prototype, 3, 4, "five", tags, image) == {"answer": 5}
    assert calls[0][:3] == (3, 4.0, "five") and calls[0][3] is tags and np.shares_memory(calls[0][4], image)


@pytest.mark.parametrize(
    "result, method, text, cause",
    [
        ("void", lambda: 1 / 0, "ZeroDivisionError: division by zero", ZeroDivisionError),
        ("void", lambda: zentrix.load().ZXFTWindow(np.zeros((1, 1)), 99, None), "Invalid mode.", ScriptError),
        ("void", lambda: zentrix.load().close(), "The library cannot be closed while one of its functions runs.",
         ScriptError),
        ("long", lambda: "no number", 'text "no number" cannot be passed as 32-bit integer.', None),
        ("void", 3, 'script object "SimpleNamespace" has no method "void Run( ScriptObject )".', None),
    ],
)  # fmt: skip
def test_exception_of_a_method_stops_the_script(zx, result, method, text, cause):
    with pytest.raises(ScriptError) as refusal:
        zx.call_method(types.SimpleNamespace(Run=method), f"{result} Run( ScriptObject )")
    assert str(refusal.value) == text
    assert isinstance(refusal.value.__cause__, cause) if cause else refusal.value.__cause__ is None


def test_interrupt_is_raised_unchanged(zx):
    def interrupt():
        raise KeyboardInterrupt

    with pytest.raises(KeyboardInterrupt):
        zx.call_method(types.SimpleNamespace(Run=interrupt), "void Run( ScriptObject )")
