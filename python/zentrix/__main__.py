"""python -m zentrix: the version, and the programs of the package."""

import argparse
import importlib
import sys

from . import __version__

#: Command -> the module whose main(arguments) runs it, imported only then.
PROGRAMS = {"panel": "zentrix._panel.program"}


def main(arguments=None):
    parser = argparse.ArgumentParser(prog="python -m zentrix", description="Correction of electron waves.")
    parser.add_argument("--version", action="version", version=f"zentrix {__version__}")
    parser.add_argument("command", choices=sorted(PROGRAMS), help="COMMAND --help lists its options")
    parser.add_argument("options", nargs=argparse.REMAINDER, help="options of the command")
    given = parser.parse_args(arguments)
    return importlib.import_module(PROGRAMS[given.command]).main(given.options)


if __name__ == "__main__":
    sys.exit(main())
