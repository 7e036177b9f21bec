#!/usr/bin/python3
"""Writes the entries of the script reference as JSON, script function -> text, for the docstrings of the Python module.

tools/reference_entries.py docs/script-reference.md _reference.json
"""

import json
import pathlib
import re
import sys

LINK = re.compile(r"\[([^]]+)\]\([^)]+\)")
PROTOTYPES = re.compile(r"(?:    .*\n)+")


def plain(text):
    """Without prototypes, code fences and links, which have no use in a docstring."""
    text = re.sub(r"^```.*\n", "", PROTOTYPES.sub("", text, count=1), flags=re.MULTILINE)
    return re.sub(r"\n{3,}", "\n\n", LINK.sub(r"\1", text)).strip()


def entries(reference):
    found = {}
    for topic in re.split(r"^## ", reference, flags=re.MULTILINE)[1:]:
        introduction, *sections = re.split(r"^### ", topic.split("\n", 1)[1], flags=re.MULTILINE)
        general = "" if not sections or PROTOTYPES.match(introduction.lstrip("\n")) else plain(introduction)
        for section in sections or ["\n" + introduction]:
            heading, text = section.split("\n", 1)
            block = PROTOTYPES.match(text.lstrip("\n"))
            prototypes = re.findall(r"^    \w+ (\w+)\(", block[0] if block else "", re.MULTILINE)
            for name in {*prototypes, *filter(None, heading.split(", "))}:
                found["ZX" + name] = "\n\n".join(part for part in (plain(text), general) if part)
    return found


if __name__ == "__main__":
    source, target = map(pathlib.Path, sys.argv[1:])
    text = json.dumps(entries(source.read_text("utf-8")), ensure_ascii=False, indent=1, sort_keys=True)
    target.write_text(text + "\n", "utf-8")
