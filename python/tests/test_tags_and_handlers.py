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
        (True, 1, 1.0, None),
        (2**31 - 1, 2**31 - 1, 2.0**31, None),
        (2**31, None, 2.0**31, None),
        (1e39, None, None, None),
        ("Å", None, None, "Å"),
        (None, None, None, None),
        (np.zeros(2), None, None, None),
        ({}, None, None, None),
    ],
)
def test_a_tag_is_read_as_its_kind(zx, value, as_long, as_float, as_text):
    tags = {"a": {"b": [0, value]}}
    found = [read(zx, kind, tags, "a:b:[1]") for kind in ("Long", "Float", "String")]
    assert found == [as_long, as_float, as_text]
    assert read(zx, "Long", tags, "a:c") is None and zx.call("TagGroupCountTags", tags["a"]["b"]) == 2


@pytest.mark.parametrize("make", [dict, collections.OrderedDict, collections.UserDict])
def test_tags_are_written_into_the_dictionary_itself(zx, make):
    tags = make(list=[1])
    zx.call("TagGroupSetTagAsLong", tags, "n", 5)
    zx.call("TagGroupSetTagAsFloat", tags, "f", 0.1)
    zx.call("TagGroupSetTagAsString", tags, "list:[1]", "end")
    zx.call("TagGroupSetTagAsLong", tags, "list:[0]", 2)
    zx.call("TagGroupSetTagAsLong", tags, "new:deep", 9)
    assert dict(tags) == {"list": [2, "end"], "n": 5, "f": np.float32(0.1), "new": {"deep": 9}}
    assert read(zx, "Long", tags, "new:deep") == 9


def test_what_takes_no_tags_says_so(zx):
    for tags, path, text in (
        ((1, 2), "[0]", "TypeError: 'tuple' object does not support item assignment"),
        (types.MappingProxyType({}), "a", "TypeError: 'mappingproxy' object does not support item assignment"),
        ({"a": 1}, "a:b", 'The tag "a" is not a group.'),
    ):
        with pytest.raises(ScriptError) as refusal:
            zx.call("TagGroupSetTagAsLong", tags, path, 3)
        assert str(refusal.value) == text


def test_the_hosts_own_tags_read_as_dictionaries_and_lists(zx):
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


class Panel:
    """A handler that writes down how it was called."""

    def __init__(self):
        self.calls = []

    def OnChange(self):
        self.calls.append("change")

    def OnMany(self, number, real, text, tags, image):
        self.calls.append((number, real, text, tags, image))
        return {"answer": number}

    def OnBad(self):
        return 1 / 0

    def OnStop(self):
        raise KeyboardInterrupt

    def OnNested(self):
        zentrix.load().ZXFTWindow(np.zeros((1, 1)), 99, None)

    def OnClose(self):
        zentrix.load().close()

    def OnWrong(self):
        return "no number"

    plain = 3  # not callable


MANY_ARGUMENTS = "TagGroup OnMany( ScriptObject, long, double, string, TagGroup, ImageRef )"


def test_a_handlers_methods_are_called_with_python_values(zx):
    panel, tags, image = Panel(), {"a": 1}, np.zeros((2, 2))
    assert zx.call_method(panel, "void OnChange( ScriptObject self )") is None
    assert zx.call_method(panel, MANY_ARGUMENTS, 3, 4, "five", tags, image) == {"answer": 3}
    assert panel.calls[0] == "change" and panel.calls[1][:3] == (3, 4.0, "five")
    assert panel.calls[1][3] is tags and np.shares_memory(panel.calls[1][4], image)


@pytest.mark.parametrize(
    "prototype, text, cause",
    [
        ("void OnBad( ScriptObject )", "ZeroDivisionError: division by zero", ZeroDivisionError),
        ("void OnNested( ScriptObject )", "Invalid mode.", ScriptError),
        ("void OnClose( ScriptObject )", "The library cannot be closed while one of its functions runs.", ScriptError),
        ("long OnWrong( ScriptObject )", 'text "no number" cannot be passed as 32-bit integer.', None),
        ("void plain( ScriptObject )", 'script object "Panel" has no method "void plain( ScriptObject )".', None),
    ],
)
def test_what_a_handler_raises_stops_the_script(zx, prototype, text, cause):
    with pytest.raises(ScriptError) as refusal:
        zx.call_method(Panel(), prototype)
    assert str(refusal.value) == text
    assert isinstance(refusal.value.__cause__, cause) if cause else refusal.value.__cause__ is None


def test_an_interrupt_goes_through_as_it_is(zx):
    with pytest.raises(KeyboardInterrupt):
        zx.call_method(Panel(), "void OnStop( ScriptObject )")


def test_the_library_holds_every_handler_until_it_is_closed(zx):
    def lines(host):
        return [line for line in host.held().references if "script object" in line or "tag group" in line]

    zx.close()
    zx = zentrix.load()
    panels = [Panel(), Panel()]
    for panel in panels:
        zx.ZXSetZentrixHandler(panel, {"a": 1})
    expected = ['script object "Panel": 1 reference', "tag group of 1: 1 reference"]
    assert sorted(lines(zx)) == sorted(expected * 2)
    zx.close()
    assert sorted(lines(zx)) == expected  # the former pair; the last one was released
