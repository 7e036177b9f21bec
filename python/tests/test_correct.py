"""Aberrations in physical units against the textbook formula in double precision."""

import numpy as np
import pytest

import zentrix

PIXEL, KV = 0.05, 300
WAVELENGTH = 1.96874900e-3  # nm
NM, UM, MM = 1, 1e3, 1e6
#: name -> (nanometres in a unit, term of the aberration function without its coefficient)
TERMS = {
    "C1": (NM, lambda w, s, c: s / 2),
    "A1": (NM, lambda w, s, c: c**2 / 2),
    "B2": (NM, lambda w, s, c: s * c),
    "A2": (NM, lambda w, s, c: c**3 / 3),
    "C3": (MM, lambda w, s, c: s**2 / 4),
    "S3": (UM, lambda w, s, c: s * c**2),
    "A3": (UM, lambda w, s, c: c**4 / 4),
    "B4": (UM, lambda w, s, c: s**2 * c),
    "D4": (UM, lambda w, s, c: s * c**3),
    "A4": (UM, lambda w, s, c: c**5 / 5),
    "C5": (MM, lambda w, s, c: s**3 / 6),
    "A5": (MM, lambda w, s, c: c**6 / 6),
    "R5": (MM, lambda w, s, c: s * c**4),
    "S5": (MM, lambda w, s, c: s**2 * c**2),
}
ROUND = ("C1", "C3", "C5")
DEGREES = 37.0


def noise(shape):
    random = np.random.default_rng(11)
    return (random.normal(size=shape) + 1j * random.normal(size=shape)).astype(np.complex64)


def angles(shape):
    """Scattering angle of each element of an uncentred spectrum; the imaginary part is up, rows go down."""
    v, u = (np.fft.fftfreq(size, PIXEL) for size in shape)
    return WAVELENGTH * (u[None] - 1j * v[:, None])


def terms_at(name, w):
    return TERMS[name][1](w, abs(w) ** 2, w.conj())


def modulus_for(name, w, radians):
    """The modulus whose aberration function reaches that many radians in the spectrum."""
    nanometres = radians * WAVELENGTH / (2 * np.pi) / abs(terms_at(name, w)).max()
    return nanometres / TERMS[name][0]


@pytest.mark.parametrize("name", TERMS)
@pytest.mark.parametrize("shape", [(32, 48), (31, 45)])
def test_each_aberration_is_the_textbooks(name, shape):
    wave, w = noise(shape), angles(shape)
    modulus = modulus_for(name, w, 9.0)
    coefficient = modulus * TERMS[name][0] * (1 if name in ROUND else np.exp(1j * np.deg2rad(DEGREES)))
    chi = 2 * np.pi / WAVELENGTH * (coefficient * terms_at(name, w)).real
    given = {name: modulus if name in ROUND else (modulus, DEGREES)}
    for remove, sign in ((False, -1), (True, 1)):
        result = zentrix.correct(wave, kv=KV, pixel=PIXEL, remove=remove, **given)
        expected = np.fft.ifft2(np.fft.fft2(wave) * np.exp(sign * 1j * chi))
        assert result.dtype == np.complex64 and np.abs(result - expected).max() < 2e-5


def test_the_envelope_and_the_tilt():
    wave, w = noise((32, 32)), angles((32, 32))
    g2 = (abs(w) / WAVELENGTH) ** 2
    spread, vibration = 3.0, 0.03
    damping = np.exp(-((np.pi * spread * WAVELENGTH * g2) ** 2) / 2 - 2 * (np.pi * vibration) ** 2 * g2)
    damped = zentrix.correct(wave, kv=KV, pixel=PIXEL, focus_spread=spread, vibration=vibration, envelope="on")
    assert np.abs(damped - np.fft.ifft2(np.fft.fft2(wave) * damping)).max() < 1e-5
    same = zentrix.correct(wave, kv=KV, pixel=PIXEL, focus_spread=spread, vibration=vibration)
    assert np.abs(same - wave).max() < 1e-6
    tilted = w + 1e-3 * (4 + 3j)
    chi = np.pi / WAVELENGTH * 20 * (abs(tilted) ** 2 - 25e-6)
    result = zentrix.correct(wave, kv=KV, pixel=PIXEL, C1=20, tilt=(4, 3), remove=False)
    assert np.abs(result - np.fft.ifft2(np.fft.fft2(wave) * np.exp(-1j * chi))).max() < 2e-5


def test_the_wave_stays_and_any_complex_array_will_do():
    wave = noise((16, 16))
    kept = wave.copy()
    expected = zentrix.correct(wave, wavelength=WAVELENGTH, pixel=PIXEL, A1=10)
    assert (wave == kept).all() and not np.shares_memory(expected, wave)
    for other in (wave.astype(np.complex128), np.asfortranarray(wave), wave[::-1][::-1], wave.astype(">c8"), wave.tolist()):
        assert (zentrix.correct(other, wavelength=WAVELENGTH, pixel=PIXEL, A1=(10, 0)) == expected).all()


@pytest.mark.parametrize(
    "more, error, text",
    [
        ({"C1": (1, 2)}, ValueError, "C1 is a number in nm, not (1, 2)."),
        ({"A1": (1, 2, 3)}, ValueError, "A1 is a modulus or (modulus, degrees) in nm, not (1, 2, 3)."),
        ({"C3": "much"}, ValueError, "C3 is a number in mm, not 'much'."),
        ({"A4": np.nan}, ValueError, "A4 is a modulus or (modulus, degrees) in um, not nan."),
        ({"kv": None}, TypeError, "correct() needs either kv or wavelength."),
        ({"wavelength": 1}, TypeError, "correct() needs either kv or wavelength."),
        ({"pixel": 0}, ValueError, "The pixel size must be a positive number of nanometres."),
        ({"vibration": -1}, ValueError, "The vibration must not be negative."),
        ({"envelope": "some"}, ValueError, 'The envelope is "auto", "on" or "off", not "some".'),
        ({"wave": np.zeros((4, 4))}, TypeError, "The wave has to be a complex array of two dimensions, not float64"),
        ({"wave": np.zeros(4, complex)}, TypeError, "The wave has to be a complex array of two dimensions, not complex"),
        ({"wave": np.zeros((0, 4), complex)}, ValueError, "An array of shape (0, 4) cannot be an image"),
        ({"C9": 1}, TypeError, "correct() got an unexpected keyword argument 'C9'"),
    ],
)
def test_parameters_without_sense_are_refused(more, error, text):
    with pytest.raises(error) as refusal:
        zentrix.correct(**{"wave": noise((4, 4)), "kv": KV, "pixel": PIXEL, **more})
    assert str(refusal.value).startswith(text)
