"""What zentrix.panel returns; the docstring is that of zentrix.panel."""

import os
import pathlib
from collections.abc import Callable, Sequence
from typing import Any

import numpy as np
from numpy.typing import NDArray

class LivePanel:
    @property
    def parameters(self) -> dict[str, Any]: ...
    @property
    def applied(self) -> list[dict[str, Any]]: ...
    @property
    def figure(self) -> Any: ...
    def corrected(self) -> NDArray[np.complex64]: ...
    def set(
        self,
        *,
        pixel: float | tuple[float, float] = ...,
        kv: float = ...,
        wavelength: float = ...,
        C1: complex | str | tuple[float, float] = ...,
        A1: complex | str | tuple[float, float] = ...,
        B2: complex | str | tuple[float, float] = ...,
        A2: complex | str | tuple[float, float] = ...,
        C3: complex | str | tuple[float, float] = ...,
        S3: complex | str | tuple[float, float] = ...,
        A3: complex | str | tuple[float, float] = ...,
        B4: complex | str | tuple[float, float] = ...,
        D4: complex | str | tuple[float, float] = ...,
        A4: complex | str | tuple[float, float] = ...,
        C5: complex | str | tuple[float, float] = ...,
        A5: complex | str | tuple[float, float] = ...,
        R5: complex | str | tuple[float, float] = ...,
        S5: complex | str | tuple[float, float] = ...,
        focus_spread: float = ...,
        convergence: float = ...,
        vibration: float = ...,
    ) -> None: ...
    def undo(self) -> None: ...
    def redo(self) -> None: ...
    def apply(self) -> None: ...
    found: Any
    @property
    def is_estimating(self) -> bool: ...
    def estimate(self, free: str | Sequence[str] = ...) -> None: ...
    def save(
        self, file: str | os.PathLike[str] | None = None
    ) -> tuple[pathlib.Path, pathlib.Path, pathlib.Path]: ...
    def on_change(self, function: Callable[[LivePanel], object]) -> None: ...
    def show(self) -> None: ...
    def wait(self) -> None: ...
    def close(self) -> None: ...
