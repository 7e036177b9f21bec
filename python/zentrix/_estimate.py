"""The aberrations of a wave, found from the wave itself."""

from collections.abc import Mapping
from typing import Any, NamedTuple

from . import _core
from ._coefficients import COEFFICIENTS
from ._numbers import number, shown, word
from ._optics import Optics, takes_optics
from ._signals import takes_signals
from ._wave_arrays import checked_copy

WIDTHS = ("focus_spread", "convergence", "vibration")
MOST_THREADS = 1024
FREE = ("C1", "A1", "B2", "A2", "C3", "S3")


class EstimatedCoefficient(NamedTuple):
    """A coefficient that was searched."""

    value: Any  #: in the unit of `correct`; (modulus, degrees) unless it is round. The start value if not determined
    uncertainty: float  #: standard deviation of the modulus, or of each component, in the same unit
    angle_uncertainty: float  #: standard deviation [degrees]; 0 if it is round
    determined: bool  #: whether the wave fixes it
    reason: str  #: why not


class Estimate(Mapping):
    """What `estimate` has found. As a mapping it has the parameters for `correct`: zentrix.correct(wave, **found)."""

    def __init__(self, parameters, found):
        self._parameters = parameters
        #: name -> EstimatedCoefficient
        self.coefficients = {one["name"]: _coefficient(one) for one in found["coefficients"]}
        self.object = found["object"]  #: "phase" or "amplitude"
        self.criterion = found["criterion"]  #: what was optimised
        self.noise = found["noise"]  #: rms of a pixel's complex noise over the mean modulus
        self.resolution = found["resolution"]  #: highest frequency in use [1/nm]
        self.chi_uncertainty = found["chi_uncertainty"]  #: standard deviation of chi, rms up to the resolution [rad]
        self.starts = found["starts"]  #: starts of the search; for an amplitude object the quarters of the wave
        self.agreeing = found["agreeing"]  #: how many of them led to the result
        self.evaluations = found["evaluations"]  #: of the criterion
        self.seconds = found["seconds"]
        self.stopped = found["stopped"]  #: by `progress`; then nothing is determined

    @property
    def determined(self):
        """Whether all coefficients that were searched are determined."""
        return all(one.determined for one in self.coefficients.values())

    def __getitem__(self, name):
        return self._parameters[name]

    def __iter__(self):
        return iter(self._parameters)

    def __len__(self):
        return len(self._parameters)

    def __repr__(self):
        lines = [f"<zentrix.Estimate, {self.object} object, {self.criterion}"]
        for name, one in self.coefficients.items():
            unit = COEFFICIENTS[name][1]
            known = f"{one.value} +- {one.uncertainty:.2g} {unit}" if one.determined else f"not determined: {one.reason}"
            lines.append(f"  {name} {known}")
        return "\n".join(lines) + ">"


@takes_signals
@takes_optics
def estimate(
    wave,
    *,
    free=FREE,
    range=None,
    region=None,
    object="auto",
    nan="refuse",
    threads=0,
    progress=None,
    **optics,
):
    """Finds the aberrations of a wave from the wave itself. docs/estimation.md explains what can be found and how.

    wave           complex array (y, x) of at least 64 x 64 pixels, not modified; also a signal of HyperSpy, whose axes
                   and metadata give pixel and kv unless they are given here
    free           the coefficients to find: names, or a text such as "C1,A1"
    range          (lowest, highest) C1 [nm] of the search; None: by wavelength and resolution, around C1
    region         (x, y, width, height) of the part of the wave to use [pixels]; None: all of it
    object         "phase": the object changes the phase only; "amplitude": it absorbs, and C1 and A1 are found by
                   sharpness; "auto": decided by the wave
    nan            as in `correct`
    threads        0: one for each processor; at most 1024. The result does not depend on it
    progress       function (fraction, coefficients) that is called about ten times per second, with the best
                   coefficients so far, name -> (modulus, degrees); the search stops when it returns False
    OPTICS

    The coefficients among them are where the search starts, and the values of those that are not free; none of these
    parameters may be an array. If a width of the envelope is given, all three count as known to a tenth; otherwise the
    uncertainties include what an unknown envelope may change. Give vibration=0 for a wave without envelope.

    Returns an `Estimate`, a mapping for `correct` with uncertainties. A coefficient that the wave does not fix is not
    determined and keeps its start value.
    Raises TypeError or ValueError, naming the parameter. Ctrl-C stops it.

        found = zentrix.estimate(wave, kv=300, pixel=0.02)
        corrected = zentrix.correct(wave, **found)
    """
    try:
        names = [name.strip() for name in free.split(",")] if isinstance(free, str) else list(free)
    except TypeError:
        raise TypeError(f'free is names of coefficients, such as "C1,A1", not {shown(free)}.') from None
    for name in names:
        if not isinstance(name, str) or name not in COEFFICIENTS:
            raise ValueError(f"free: {shown(name)} is not a coefficient; they are {', '.join(COEFFICIENTS)}.")
        if names.count(name) > 1:
            raise ValueError(f"free: {name} is there twice.")
    word("object", object, ("auto", "phase", "amplitude"))
    lens = Optics("estimate", optics)
    if lens.shape:
        raise ValueError(f"estimate() takes single values, not a sweep of shape {lens.shape}.")
    if progress is not None and not callable(progress):
        raise TypeError(f"progress is a function (fraction, coefficients), not {shown(progress)}.")
    many = _whole(threads, f"threads is a whole number from 0 to {MOST_THREADS}")
    if not 0 <= many <= MOST_THREADS:
        raise ValueError(f"threads is a whole number from 0 to {MOST_THREADS}, not {shown(threads)}.")
    bounds = _numbers("range", range, 2, "numbers", number)
    part = _numbers("region", region, 4, "whole numbers", _whole)
    plane = checked_copy(wave, nan)
    if plane.ndim != 2:
        raise ValueError(f"The wave is an array of shape (y, x), not {plane.shape}.")
    ((_, setting),) = lens.settings()
    found = _core.estimate(
        plane, setting, names, bounds, part, object, many, any(name in optics for name in WIDTHS), progress
    )
    parameters = {name: optics[name] for name in optics if name not in COEFFICIENTS}
    for name, (modulus, degrees) in found["lens"].items():
        if modulus != 0 or name in names:
            parameters[name] = (modulus, degrees) if COEFFICIENTS[name][2] else modulus
    return Estimate(parameters, found)


def _coefficient(one):
    modulus, degrees = one["value"]
    value = (modulus, degrees) if COEFFICIENTS[one["name"]][2] else modulus
    return EstimatedCoefficient(
        value, one["uncertainty"], one["angle_uncertainty"], one["determined"], one["reason"]
    )


def _whole(value, takes):
    one = number(value, takes)
    if one != int(one) or abs(one) >= 2**31:
        raise ValueError(f"{takes}, not {shown(value)}.")
    return int(one)


def _numbers(name, values, count, kind, convert):
    if values is None:
        return None
    takes = f"{name} is {count} {kind}"
    try:
        parts = tuple(values)
    except TypeError:
        parts = ()
    if len(parts) != count:
        raise TypeError(f"{takes}, not {shown(values)}.")
    return tuple(convert(one, takes) for one in parts)
