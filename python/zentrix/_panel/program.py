"""python -m zentrix panel WAVE.npy: the live panel as a program."""

import argparse
import pathlib
import sys

import numpy as np

from .pages import COEFFICIENTS, WIDTHS


def main(arguments=None):
    """Returns the exit code: 0, or 1 for a wave or parameters that cannot be shown. Ends with 2 for wrong options."""
    options = vars(_parser().parse_args(_joined(sys.argv[1:] if arguments is None else arguments)))
    file, backend = pathlib.Path(options.pop("wave")), options.pop("backend")
    start = {name: value for name, value in options.items() if value is not None}
    start.setdefault("save", file.with_name(file.stem + "-corrected.npy"))
    try:
        if backend:
            import matplotlib

            matplotlib.use(backend)
        from .. import panel

        panel(np.load(file, allow_pickle=False), title=f"{file.name} - Zentrix", **start).wait()
    except (OSError, ValueError, TypeError, RuntimeError, ImportError) as problem:
        print(f"python -m zentrix panel: {problem}", file=sys.stderr)
        return 1
    return 0


def _parser():
    parser = argparse.ArgumentParser(
        prog="python -m zentrix panel",
        description="Shows a wave, corrected live by the aberrations that the knobs of a panel show.",
    )
    parser.add_argument("wave", metavar="WAVE.npy", help="complex array of two dimensions")
    voltage = parser.add_mutually_exclusive_group(required=True)
    voltage.add_argument("--kv", type=float, help="accelerating voltage [kV]")
    voltage.add_argument("--wavelength", type=float, help="wavelength [nm]")
    parser.add_argument("--pixel", type=float, required=True, help="pixel size [nm]")
    for row in COEFFICIENTS.values():
        form = "MODULUS or MODULUS@DEGREES" if row.has_angle else "number"
        parser.add_argument(f"--{row.name}", metavar="VALUE", help=f"{form} [{row.unit}]")
    for name in WIDTHS:
        unit = "mrad" if name == "convergence" else "nm"
        parser.add_argument(f"--{name.replace('_', '-')}", type=float, help=f"rms width [{unit}]")
    parser.add_argument("--tilt", type=_tilt, metavar="RIGHT,UP", help="beam tilt [mrad]; also two arguments")
    parser.add_argument("--envelope", choices=("auto", "on", "off"), help='"on" damps the corrected wave, too')
    parser.add_argument("--show", choices=("real", "imaginary", "modulus", "log", "phase"))
    parser.add_argument("--colour", action="store_const", const=True, help="phases in colours")
    parser.add_argument("--save", metavar="FILE.npy", help="the file of the button Save; default: WAVE-corrected.npy")
    parser.add_argument("--backend", help="of matplotlib: QtAgg, TkAgg, WebAgg (in the browser) ...")
    return parser


def _tilt(text):
    try:
        right, up = map(float, text.split(","))
    except ValueError:
        raise argparse.ArgumentTypeError(f"tilt is RIGHT,UP in mrad, not {text!r}") from None
    return right, up


def _joined(arguments):
    """"--A1 -3@20" as "--A1=-3@20", as the parser would take -3@20 for an option; "--tilt 1 -2" as "--tilt=1,-2"."""
    result, rest = [], list(arguments)
    while rest:
        argument = rest.pop(0)
        if argument.startswith("--") and argument[2:] in (*COEFFICIENTS, "tilt") and rest:
            argument += "=" + rest.pop(0)
            if argument.startswith("--tilt") and "," not in argument and rest:
                argument += "," + rest.pop(0)
        result.append(argument)
    return result
