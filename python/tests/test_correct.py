"""Aberrations in physical units against the textbook formula in double precision."""

import numpy as np
import pytest

import zentrix
from zentrix._correct import KeptSpectrum

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


def test_stacks_and_sweeps_equal_single_calls():
    waves, focus, angles_of_a1 = noise((2, 3, 16, 12)), np.array([-30.0, 0, 12.5]), [10, 20]
    lens = dict(kv=KV, pixel=PIXEL, B2=(300, 10))
    assert (zentrix.correct(waves, **lens)[1, 2] == zentrix.correct(waves[1, 2], **lens)).all()
    for function in (zentrix.correct, zentrix.aberrate):
        sweep = function(waves, C1=focus[:, None], A1=(8, angles_of_a1), tilt=(1, 0), vibration=[0.02, 0.03], **lens)
        assert sweep.shape == (3, 2, 2, 3, 16, 12)
        for index in np.ndindex(sweep.shape[:-2]):
            c1, a1 = focus[index[0]], (8, angles_of_a1[index[1]])
            vibration = 0.02 + 0.01 * index[1]
            single = function(waves[index[2:]], C1=c1, A1=a1, tilt=(1, 0), vibration=vibration, **lens)
            assert (sweep[index] == single).all()


def test_kept_spectrum_gives_the_same_bits():
    wave, lens = noise((15, 16)), dict(kv=KV, pixel=PIXEL, C1=[4, 5])
    kept, out = KeptSpectrum(wave), np.empty((2, 15, 16), np.complex64)
    assert kept.correct(out=out, **lens) is out
    assert (out == zentrix.correct(wave, **lens)).all()
    assert (kept.aberrate(**lens) == zentrix.aberrate(wave, **lens)).all()
    for wrong in (out[0], out.astype(complex), np.asfortranarray(out)):
        with pytest.raises(ValueError, match="out is a C-contiguous complex64 array of shape"):
            kept.correct(out=wrong, **lens)


@pytest.mark.parametrize("correcting, function", [(False, zentrix.aberrate), (True, zentrix.correct)])
def test_transfer_function_is_the_factor_of_the_spectrum(correcting, function):
    wave, lens = noise((15, 16)), dict(kv=KV, pixel=PIXEL, C1=[-40, 9], tilt=(1, 2), focus_spread=3)
    factor = zentrix.transfer_function(wave.shape, correcting=correcting, shifted=False, **lens)
    assert np.abs(multiplied(wave, factor) - function(wave, **lens)).max() < 1e-5
    centred = zentrix.transfer_function(wave.shape, correcting=correcting, **lens)
    assert (np.fft.ifftshift(centred, axes=(1, 2)) == factor).all() and (centred[:, 7, 8] == 1).all()


def test_contrast_along_a_direction_agrees_with_that_of_an_image():
    more = dict(A2=(90, 9), S3=(3, 50), B4=(30, 9), D4=(20, 80), A4=(9, 7), C5=1, A5=(3, 40), R5=(1, 5))
    lens = dict(kv=KV, tilt=(1, -2), **LENS, **more, focus_spread=3, convergence=0.1, vibration=0.01)
    qx, qy, values = zentrix.ctf((64, 64), pixel=PIXEL, **lens)
    for degrees, line in ((0, values[32, 32:]), (90, values[32:0:-1, 32]), (180, values[32, 32:0:-1])):
        q, along = zentrix.ctf(q=qx[32:], along=degrees, **lens)
        assert np.abs(along - line[: q.size]).max() < 1e-4


def test_round_lens_has_the_same_contrast_in_all_directions():
    q, mean = zentrix.ctf(kv=KV, pixel=PIXEL, C1=[-50, 0], C3=0.1)
    _, along = zentrix.ctf(kv=KV, pixel=PIXEL, C1=[-50, 0], C3=0.1, along=77)
    assert mean.shape == (2, 512) and q[-1] == 0.5 / PIXEL and np.abs(mean - along).max() < 1e-9
    chi = np.pi * WAVELENGTH * q**2 * (np.array([[-50], [0]]) + 0.05e6 * (WAVELENGTH * q) ** 2)
    assert np.abs(mean - np.sin(chi)).max() < 1e-4


def test_image_of_a_weak_phase_object_is_filtered_by_twice_the_contrast():
    phase = 1e-3 * noise((31, 33)).real
    lens = dict(kv=KV, pixel=PIXEL, C1=-30, A1=(8, 20), focus_spread=2)
    image = abs(zentrix.aberrate(np.exp(1j * phase), **lens)) ** 2
    filtered = multiplied(phase, np.fft.ifftshift(zentrix.ctf(phase.shape, **lens).values)).real
    assert np.abs(image - 1 - 2 * filtered).max() < 1e-5 < filtered.std() / 10
