"""Aberrations in physical units against the textbook formula in double precision."""

import numpy as np
import pytest

import zentrix

PIXEL, KV = 0.05, 300
WAVELENGTH = 1.96874900e-3  # nm
#: Coefficients of 50 nm and more, and their aberration function; w is the scattering angle, c its conjugate.
LENS = {"C1": -50, "A1": (40, 37), "B2": (900, -20), "C3": 0.5, "A3": (70, 110), "S5": (60, 5)}
CHI = [
    lambda w, c: -50 * w * c / 2,
    lambda w, c: 40 * np.exp(1j * np.deg2rad(37)) * c**2 / 2,
    lambda w, c: 900 * np.exp(1j * np.deg2rad(-20)) * w * c**2,
    lambda w, c: 0.5e6 * (w * c) ** 2 / 4,
    lambda w, c: 70e3 * np.exp(1j * np.deg2rad(110)) * c**4 / 4,
    lambda w, c: 60e6 * np.exp(1j * np.deg2rad(5)) * w**2 * c**4,
]


def noise(shape):
    random = np.random.default_rng(11)
    return (random.normal(size=shape) + 1j * random.normal(size=shape)).astype(np.complex64)


def angles(shape):
    """Scattering angle of each element of an uncentred spectrum. The imaginary part points up, rows go down."""
    v, u = (np.fft.fftfreq(size, PIXEL) for size in shape)
    return WAVELENGTH * (u[None] - 1j * v[:, None])


def multiplied(wave, factor):
    return np.fft.ifft2(np.fft.fft2(wave) * factor)


@pytest.mark.parametrize("shape", [(32, 48), (31, 45)])
def test_aberrations_and_envelope_agree_with_the_textbook(shape):
    wave, w = noise(shape), angles(shape)
    chi = 2 * np.pi / WAVELENGTH * sum(term(w, w.conj()).real for term in CHI)
    g2 = (abs(w) / WAVELENGTH) ** 2
    damping = np.exp(-((np.pi * 3 * WAVELENGTH * g2) ** 2) / 2 - 2 * (np.pi * 0.03) ** 2 * g2)
    for function, sign in ((zentrix.aberrate, -1), (zentrix.correct, 1)):
        result = function(wave, kv=KV, pixel=PIXEL, **LENS, focus_spread=3, vibration=0.03, envelope="on")
        assert result.dtype == np.complex64
        assert np.abs(result - multiplied(wave, damping * np.exp(sign * 1j * chi))).max() < 1e-4


def test_tilt_moves_the_aberrations():
    wave, w = noise((32, 32)), angles((32, 32)) + 1e-3 * (4 + 3j)
    chi = np.pi / WAVELENGTH * 20 * (abs(w) ** 2 - 25e-6)
    result = zentrix.aberrate(wave, kv=KV, pixel=PIXEL, C1=20, tilt=(4, 3))
    assert np.abs(result - multiplied(wave, np.exp(-1j * chi))).max() < 2e-5


def test_wave_is_unchanged_and_may_be_any_complex_array():
    wave = noise((16, 16))
    kept = wave.copy()
    expected = zentrix.correct(wave, wavelength=WAVELENGTH, pixel=PIXEL, A1=10)
    assert (wave == kept).all() and not np.shares_memory(expected, wave)
    for other in (wave.astype(np.complex128), np.asfortranarray(wave), wave.astype(">c8"), wave.tolist()):
        assert (zentrix.correct(other, wavelength=WAVELENGTH, pixel=PIXEL, A1=(10, 0)) == expected).all()


@pytest.mark.parametrize(
    "more, error, text",
    [
        ({"A1": (1, 2, 3)}, ValueError, "A1 is a modulus or (modulus, degrees) in nm, not (1, 2, 3)."),
        ({"A4": np.nan}, ValueError, "A4 is a modulus or (modulus, degrees) in um, not nan."),
        ({"wavelength": 1}, TypeError, "correct() needs either kv or wavelength."),
        ({"pixel": 0}, ValueError, "The pixel size must be a positive number of nanometres."),
        ({"envelope": "some"}, ValueError, 'envelope is "auto", "on" or "off", not \'some\'.'),
        ({"wave": np.array([[1, np.nan], [np.inf, 1j]])}, ValueError, "2 of 4 pixels of the wave are infinite or not"),
        ({"wave": np.full((2, 2), np.nan * 1j), "nan": "mean"}, ValueError, "No pixel of the wave is a finite number."),
        ({"nan": "none"}, ValueError, 'nan is "refuse", "zero" or "mean", not \'none\'.'),
        ({"wave": np.zeros(4, complex)}, ValueError, "The wave is an array of shape (..., y, x), not (4,)."),
        ({"wave": np.zeros((0, 4), complex)}, ValueError, "The wave of shape (0, 4) has no pixel."),
    ],
)
def test_invalid_parameters_are_refused(more, error, text):
    with pytest.raises(error) as refusal:
        zentrix.correct(**{"wave": noise((4, 4)), "kv": KV, "pixel": PIXEL, **more})
    assert str(refusal.value).startswith(text)


@pytest.mark.parametrize("rule, value", [("zero", 0), ("mean", 2 + 1j)])
def test_pixels_that_are_not_finite_are_replaced(rule, value):
    wave = np.full((4, 4), 2 + 1j)
    wave[1, 2] = complex(np.nan, 5)
    expected = wave.copy()
    expected[1, 2] = value
    result = zentrix.correct(wave, kv=KV, pixel=PIXEL, C1=5, nan=rule)
    assert (result == zentrix.correct(expected, kv=KV, pixel=PIXEL, C1=5)).all()
