"""Types of the package; the docstrings are in its modules."""

import os
from collections.abc import Callable, Iterable, Iterator, Mapping, Sequence
from typing import Any, Literal, NamedTuple, Protocol, SupportsFloat, overload

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._functions import ScriptFunctions
from ._panel.live_panel import LivePanel

__version__: str
Real = SupportsFloat
Numbers = float | Sequence[float] | NDArray[Any]
Coefficient = complex | str | tuple[Numbers, Numbers] | Sequence[Any] | NDArray[Any]

class _Lazy(Protocol):
    """A Dask array, or a lazy signal of HyperSpy."""

    def compute(self, *arguments: Any, **keywords: Any) -> Any: ...

class _Signal(Protocol):
    """A signal of HyperSpy."""

    axes_manager: Any
    metadata: Any

class Axis(NamedTuple):
    step: float
    first: float
    unit: str

class Image(np.ndarray[Any, np.dtype[Any]]):
    axes: tuple[Axis, ...]
    kv: float | None
    name: str
    def __new__(
        cls, array: ArrayLike, axes: Sequence[Axis] = (), kv: float | None = None, name: str = ""
    ) -> Image: ...
    @property
    def pixel(self) -> float | None: ...

class ScriptError(RuntimeError): ...

class Ref:
    value: Any
    def __init__(self, initial: Any = None) -> None: ...

class TagGroup(Mapping[str, Any]):
    def __getitem__(self, name: str) -> Any: ...
    def __iter__(self) -> Iterator[str]: ...
    def __len__(self) -> int: ...

class TagList(Sequence[Any]):
    def __getitem__(self, index: Any) -> Any: ...
    def __len__(self) -> int: ...

class Held(NamedTuple):
    references: list[str]
    locks: list[str]
    others: list[str]
    violations: list[str]

class UnwrapReport(NamedTuple):
    positive_residues: Any
    negative_residues: Any
    cut_pixels: Any
    regions: Any
    unreached: Any
    left_out: Any
    labels: NDArray[np.int32]

class HologramReport(NamedTuple):
    sideband: tuple[float, float]
    height: float
    distinction: float | None
    doubtful: bool
    spacing: float
    angle: float
    contrast: float
    reference_contrast: float | None
    radius: float
    resolution: float
    replaced: int
    weak: int
    reduction: float
    pixel: float | None

class RadialCTF(NamedTuple):
    q: NDArray[np.float64]
    values: NDArray[np.float64]

class ImageCTF(NamedTuple):
    qx: NDArray[np.float64]
    qy: NDArray[np.float64]
    values: NDArray[np.float32]

class EstimatedCoefficient(NamedTuple):
    value: Any
    uncertainty: float
    angle_uncertainty: float
    determined: bool
    reason: str

class Estimate(Mapping[str, Any]):
    coefficients: dict[str, EstimatedCoefficient]
    object: Literal["phase", "amplitude"]
    criterion: str
    noise: float
    resolution: float
    chi_uncertainty: float
    starts: int
    agreeing: int
    evaluations: int
    seconds: float
    stopped: bool
    @property
    def determined(self) -> bool: ...
    def __getitem__(self, name: str) -> Any: ...
    def __iter__(self) -> Iterator[str]: ...
    def __len__(self) -> int: ...

class Host(ScriptFunctions):
    def call(self, name: str, /, *arguments: Any, **keywords: Any) -> Any: ...
    def call_method(self, handler: object, prototype: str, *arguments: Any) -> Any: ...
    def functions(self) -> list[str]: ...
    def trace(self) -> dict[str, tuple[int, int]]: ...
    def notifications(self, array: NDArray[Any]) -> int: ...
    def held(self) -> Held: ...
    def close(self) -> None: ...

def load(path: str | os.PathLike[str] | None = None) -> Host: ...
@overload
def correct(wave: _Lazy | _Signal | Image, **parameters: Any) -> Any: ...
@overload
def correct(
    wave: ArrayLike,
    *,
    nan: Literal["refuse", "zero", "mean"] = "refuse",
    progress: Callable[..., Iterable[Any]] | None = None,
    pixel: Real | tuple[Real, Real],
    kv: Real | None = None,
    wavelength: Real | None = None,
    C1: Coefficient = 0.0,
    A1: Coefficient = 0.0,
    B2: Coefficient = 0.0,
    A2: Coefficient = 0.0,
    C3: Coefficient = 0.0,
    S3: Coefficient = 0.0,
    A3: Coefficient = 0.0,
    B4: Coefficient = 0.0,
    D4: Coefficient = 0.0,
    A4: Coefficient = 0.0,
    C5: Coefficient = 0.0,
    A5: Coefficient = 0.0,
    R5: Coefficient = 0.0,
    S5: Coefficient = 0.0,
    focus_spread: Numbers = 0.0,
    convergence: Numbers = 0.0,
    vibration: Numbers = 0.0,
    tilt: complex | tuple[Numbers, Numbers] = (0.0, 0.0),
    envelope: Literal["auto", "on", "off"] = "auto",
) -> NDArray[np.complex64]: ...
def estimate(
    wave: ArrayLike,
    *,
    free: str | Sequence[str] = ...,
    range: Sequence[float] | None = None,
    region: Sequence[int] | None = None,
    object: Literal["phase", "amplitude", "auto"] = "auto",
    nan: Literal["refuse", "zero", "mean"] = "refuse",
    threads: int = 0,
    progress: Callable[[float, dict[str, tuple[float, float]]], bool | None] | None = None,
    pixel: Real | tuple[Real, Real],
    kv: Real | None = None,
    wavelength: Real | None = None,
    C1: Coefficient = 0.0,
    A1: Coefficient = 0.0,
    B2: Coefficient = 0.0,
    A2: Coefficient = 0.0,
    C3: Coefficient = 0.0,
    S3: Coefficient = 0.0,
    A3: Coefficient = 0.0,
    B4: Coefficient = 0.0,
    D4: Coefficient = 0.0,
    A4: Coefficient = 0.0,
    C5: Coefficient = 0.0,
    A5: Coefficient = 0.0,
    R5: Coefficient = 0.0,
    S5: Coefficient = 0.0,
    focus_spread: Numbers = 0.0,
    convergence: Numbers = 0.0,
    vibration: Numbers = 0.0,
    tilt: complex | tuple[Numbers, Numbers] = (0.0, 0.0),
    envelope: Literal["auto", "on", "off"] = "auto",
) -> Estimate: ...
@overload
def aberrate(wave: _Lazy | _Signal | Image, **parameters: Any) -> Any: ...
@overload
def aberrate(
    wave: ArrayLike,
    *,
    nan: Literal["refuse", "zero", "mean"] = "refuse",
    progress: Callable[..., Iterable[Any]] | None = None,
    pixel: Real | tuple[Real, Real],
    kv: Real | None = None,
    wavelength: Real | None = None,
    C1: Coefficient = 0.0,
    A1: Coefficient = 0.0,
    B2: Coefficient = 0.0,
    A2: Coefficient = 0.0,
    C3: Coefficient = 0.0,
    S3: Coefficient = 0.0,
    A3: Coefficient = 0.0,
    B4: Coefficient = 0.0,
    D4: Coefficient = 0.0,
    A4: Coefficient = 0.0,
    C5: Coefficient = 0.0,
    A5: Coefficient = 0.0,
    R5: Coefficient = 0.0,
    S5: Coefficient = 0.0,
    focus_spread: Numbers = 0.0,
    convergence: Numbers = 0.0,
    vibration: Numbers = 0.0,
    tilt: complex | tuple[Numbers, Numbers] = (0.0, 0.0),
    envelope: Literal["auto", "on", "off"] = "auto",
) -> NDArray[np.complex64]: ...
def transfer_function(
    shape: Sequence[int],
    *,
    correcting: bool = False,
    shifted: bool = True,
    pixel: Real | tuple[Real, Real],
    kv: Real | None = None,
    wavelength: Real | None = None,
    C1: Coefficient = 0.0,
    A1: Coefficient = 0.0,
    B2: Coefficient = 0.0,
    A2: Coefficient = 0.0,
    C3: Coefficient = 0.0,
    S3: Coefficient = 0.0,
    A3: Coefficient = 0.0,
    B4: Coefficient = 0.0,
    D4: Coefficient = 0.0,
    A4: Coefficient = 0.0,
    C5: Coefficient = 0.0,
    A5: Coefficient = 0.0,
    R5: Coefficient = 0.0,
    S5: Coefficient = 0.0,
    focus_spread: Numbers = 0.0,
    convergence: Numbers = 0.0,
    vibration: Numbers = 0.0,
    tilt: complex | tuple[Numbers, Numbers] = (0.0, 0.0),
    envelope: Literal["auto", "on", "off"] = "auto",
) -> NDArray[np.complex64]: ...
@overload
def ctf(
    shape: None = None,
    *,
    q: Numbers | None = None,
    along: float | None = None,
    pixel: Real | tuple[Real, Real] = ...,
    kv: Real | None = None,
    wavelength: Real | None = None,
    C1: Coefficient = 0.0,
    A1: Coefficient = 0.0,
    B2: Coefficient = 0.0,
    A2: Coefficient = 0.0,
    C3: Coefficient = 0.0,
    S3: Coefficient = 0.0,
    A3: Coefficient = 0.0,
    B4: Coefficient = 0.0,
    D4: Coefficient = 0.0,
    A4: Coefficient = 0.0,
    C5: Coefficient = 0.0,
    A5: Coefficient = 0.0,
    R5: Coefficient = 0.0,
    S5: Coefficient = 0.0,
    focus_spread: Numbers = 0.0,
    convergence: Numbers = 0.0,
    vibration: Numbers = 0.0,
    tilt: complex | tuple[Numbers, Numbers] = (0.0, 0.0),
    envelope: Literal["auto", "on", "off"] = "auto",
) -> RadialCTF: ...
@overload
def ctf(
    shape: Sequence[int],
    *,
    pixel: Real | tuple[Real, Real],
    kv: Real | None = None,
    wavelength: Real | None = None,
    C1: Coefficient = 0.0,
    A1: Coefficient = 0.0,
    B2: Coefficient = 0.0,
    A2: Coefficient = 0.0,
    C3: Coefficient = 0.0,
    S3: Coefficient = 0.0,
    A3: Coefficient = 0.0,
    B4: Coefficient = 0.0,
    D4: Coefficient = 0.0,
    A4: Coefficient = 0.0,
    C5: Coefficient = 0.0,
    A5: Coefficient = 0.0,
    R5: Coefficient = 0.0,
    S5: Coefficient = 0.0,
    focus_spread: Numbers = 0.0,
    convergence: Numbers = 0.0,
    vibration: Numbers = 0.0,
    tilt: complex | tuple[Numbers, Numbers] = (0.0, 0.0),
    envelope: Literal["auto", "on", "off"] = "auto",
) -> ImageCTF: ...
@overload
def wavelength(kv: float) -> float: ...
@overload
def wavelength(kv: Sequence[float] | NDArray[Any]) -> NDArray[np.float64]: ...
def read(path: str | os.PathLike[str]) -> Image: ...
def write(
    path: str | os.PathLike[str],
    array: ArrayLike,
    *,
    pixel: Real | tuple[Real, Real] | None = None,
    kv: Real | None = None,
) -> None: ...
@overload
def hologram(
    hologram: ArrayLike | _Signal,
    reference: ArrayLike | _Signal | None = None,
    *,
    sideband: Literal["auto", "other"] | tuple[float, float] = "auto",
    radius: Real | None = None,
    window: Literal["disk", "hann", "gaussian"] = "disk",
    flank: Real | None = None,
    full_size: bool = False,
    despike: bool = False,
    pixel: Real | tuple[Real, Real] | None = None,
    report: Literal[False] = False,
) -> NDArray[np.complex64]: ...
@overload
def hologram(
    hologram: ArrayLike | _Signal,
    reference: ArrayLike | _Signal | None = None,
    *,
    sideband: Literal["auto", "other"] | tuple[float, float] = "auto",
    radius: Real | None = None,
    window: Literal["disk", "hann", "gaussian"] = "disk",
    flank: Real | None = None,
    full_size: bool = False,
    despike: bool = False,
    pixel: Real | tuple[Real, Real] | None = None,
    report: Literal[True],
) -> tuple[NDArray[np.complex64], HologramReport]: ...
@overload
def hologram(
    hologram: ArrayLike | _Signal,
    reference: ArrayLike | _Signal | None = None,
    *,
    sideband: Literal["auto", "other"] | tuple[float, float] = "auto",
    radius: Real | None = None,
    window: Literal["disk", "hann", "gaussian"] = "disk",
    flank: Real | None = None,
    full_size: bool = False,
    despike: bool = False,
    pixel: Real | tuple[Real, Real] | None = None,
    report: bool,
) -> Any: ...
@overload
def unwrap(phase: _Lazy | _Signal, mask: Any = None, box: int | None = None, **parameters: Any) -> Any: ...
@overload
def unwrap(
    phase: ArrayLike,
    mask: ArrayLike | None = None,
    box: int | None = None,
    report: Literal[False] = False,
    progress: Callable[..., Iterable[Any]] | None = None,
) -> NDArray[np.float32]: ...
@overload
def unwrap(
    phase: ArrayLike,
    mask: ArrayLike | None = None,
    box: int | None = None,
    *,
    report: Literal[True],
    progress: Callable[..., Iterable[Any]] | None = None,
) -> tuple[NDArray[np.float32], UnwrapReport]: ...
@overload
def unwrap(
    phase: ArrayLike,
    mask: ArrayLike | None = None,
    box: int | None = None,
    report: bool = False,
    progress: Callable[..., Iterable[Any]] | None = None,
) -> Any: ...
def panel(
    wave: ArrayLike,
    *,
    title: str = "Zentrix",
    show: Literal["real", "imaginary", "modulus", "log", "phase"] = "phase",
    colour: bool = False,
    save: str | os.PathLike[str] = "corrected.npy",
    nan: Literal["mean"] = "mean",
    pixel: float | tuple[float, float],
    kv: float | None = None,
    wavelength: float | None = None,
    C1: complex | str | tuple[float, float] = 0.0,
    A1: complex | str | tuple[float, float] = 0.0,
    B2: complex | str | tuple[float, float] = 0.0,
    A2: complex | str | tuple[float, float] = 0.0,
    C3: complex | str | tuple[float, float] = 0.0,
    S3: complex | str | tuple[float, float] = 0.0,
    A3: complex | str | tuple[float, float] = 0.0,
    B4: complex | str | tuple[float, float] = 0.0,
    D4: complex | str | tuple[float, float] = 0.0,
    A4: complex | str | tuple[float, float] = 0.0,
    C5: complex | str | tuple[float, float] = 0.0,
    A5: complex | str | tuple[float, float] = 0.0,
    R5: complex | str | tuple[float, float] = 0.0,
    S5: complex | str | tuple[float, float] = 0.0,
    focus_spread: float = 0.0,
    convergence: float = 0.0,
    vibration: float = 0.0,
    tilt: complex | tuple[float, float] = (0.0, 0.0),
    envelope: Literal["auto", "on", "off"] = "auto",
) -> LivePanel: ...
def to_notation(
    notation: Literal["polar", "cartesian", "corrector"],
    values: Mapping[str, Any],
    *,
    length: str | None = None,
    angle: Literal["deg", "rad"] = "deg",
    clockwise: bool = False,
    zero: float = 0.0,
) -> dict[str, float]: ...
def from_notation(
    notation: Literal["polar", "cartesian", "corrector"],
    values: Mapping[str, float],
    *,
    length: str | None = None,
    angle: Literal["deg", "rad"] = "deg",
    clockwise: bool = False,
    zero: float = 0.0,
) -> dict[str, Any]: ...
def read_parameters(path: str | os.PathLike[str]) -> dict[str, Any]: ...
def write_parameters(path: str | os.PathLike[str], parameters: Mapping[str, Any]) -> None: ...
