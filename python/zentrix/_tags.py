"""Tag groups and lists of the host, as dictionaries and lists."""

from collections.abc import Mapping, Sequence


class TagGroup(Mapping):
    """Named tags of the host, in the order in which they were added."""

    __slots__ = ("_tags",)

    def __init__(self, tags):
        self._tags = tags

    def __len__(self):
        return len(self._tags)

    def __getitem__(self, name):
        return self._tags.get(name)

    def __iter__(self):
        return (self._tags.name_at(i) for i in range(len(self._tags)))

    def __repr__(self):
        return f"TagGroup({dict(self)!r})"


class TagList(Sequence):
    """Numbered tags of the host. Equal to any list or tuple of equal tags."""

    __slots__ = ("_tags",)
    __hash__ = None

    def __init__(self, tags):
        self._tags = tags

    def __len__(self):
        return len(self._tags)

    def __getitem__(self, index):
        if isinstance(index, slice):
            return [self._tags.get_at(i) for i in range(*index.indices(len(self)))]
        return self._tags.get_at(range(len(self))[index])

    def __eq__(self, other):
        if not isinstance(other, (list, tuple, TagList)):
            return NotImplemented
        return list(self) == list(other)

    def __repr__(self):
        return f"TagList({list(self)!r})"


def wrap(tags, is_list):
    return TagList(tags) if is_list else TagGroup(tags)
