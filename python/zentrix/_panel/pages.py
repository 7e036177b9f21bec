"""The panel's pages: coefficients, labels, steps. Names, order and steps are those of the panel on Windows."""

from typing import NamedTuple


class Row(NamedTuple):
    name: str  #: keyword of zentrix.correct
    label: str
    unit: str
    step: float  #: at the start; 0: about one percent of the value
    has_angle: bool = True


class Page(NamedTuple):
    title: str
    rows: tuple


def _round(name, label, unit, step):
    return Row(name, label, unit, step, has_angle=False)


# A step of a modulus changes the phase at 25 mrad and 300 kV by a few tenths of a radian, so that it is visible but not
# too much (C3: a few radians).
PAGES = (
    Page(
        "Rotation",
        (_round("C1", "C1 (z)", "nm", 1), _round("C3", "C3 (Cs)", "mm", 0.01), _round("C5", "C5", "mm", 1)),
    ),
    Page(
        "Basic",
        (
            Row("A1", "A1 (2-fold Astigma.)", "nm", 0.5),
            Row("B2", "B2 (Coma)", "nm", 5),
            Row("A2", "A2 (3-fold Astigma.)", "nm", 10),
        ),
    ),
    Page("3rd", (Row("S3", "S3", "µm", 0.1), Row("A3", "A3", "µm", 0.5))),
    Page("4th", (Row("B4", "B4", "µm", 5), Row("D4", "D4", "µm", 5), Row("A4", "A4", "µm", 20))),
    Page("5th", (Row("A5", "A5", "mm", 1), Row("R5", "R5", "mm", 1), Row("S5", "S5", "mm", 1))),
)
#: Beyond the coefficients. A wave of given wavelength has the row "wavelength" instead of "kv".
MICROSCOPE = Page(
    "Microscope",
    (
        _round("kv", "Voltage", "kV", 1),
        _round("pixel", "Pixel size", "nm", 0),
        _round("focus_spread", "Focus spread (rms)", "nm", 0.5),
        _round("convergence", "Convergence (rms)", "mrad", 0.05),
        _round("vibration", "Vibration (rms)", "nm", 0.005),
    ),
)
WAVELENGTH = _round("wavelength", "Wavelength", "nm", 0)
COEFFICIENTS = {row.name: row for page in PAGES for row in page.rows}
WIDTHS = ("focus_spread", "convergence", "vibration")
ANGLE_STEP = 5  #: degrees


def microscope(has_wavelength):
    rows = MICROSCOPE.rows
    return Page(MICROSCOPE.title, (WAVELENGTH, *rows[1:])) if has_wavelength else MICROSCOPE
