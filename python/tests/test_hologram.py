"""Waves from simulated holograms with known phases."""

import numpy as np
import pytest

import zentrix

SIZE = 256


def grid(height=SIZE, width=SIZE):
    y, x = np.indices((height, width))
    return y / height - 0.5, x / width - 0.5


def specimen(height=SIZE, width=SIZE):
    """A hill of phase next to a flat vacuum, with some absorption."""
    y, x = grid(height, width)
    hill = np.exp(-((x - 0.1) ** 2 + (y + 0.15) ** 2) / 0.005)
    return (1 - 0.2 * hill) * np.exp(3j * hill)


def record(wave, carrier, contrast=0.4, dose=None, seed=0):
    """The hologram of a wave; `carrier` in periods per image (right, down), `dose` in electrons per pixel."""
    y, x = (axis + 0.5 for axis in grid(*wave.shape))
    intensity = 1 + abs(wave) ** 2 + 2 * contrast * (wave * np.exp(2j * np.pi * (carrier[0] * x + carrier[1] * y))).real
    if dose is None:
        return intensity.astype(np.float32)
    return np.random.default_rng(seed).poisson(dose / 2 * intensity).astype(np.uint16)


def carriers(spacings=(2.6, 3.7, 5.2, 8.3), angles=range(0, 180, 15), size=SIZE):
    for spacing in spacings:
        for degrees in angles:
            yield size / spacing * np.exp(1j * np.radians(degrees + 0.7))


def phase_error(wave, truth):
    """Differences of the phases [rad] without their mean, where no filter rings: away from the edges."""
    step = len(truth) // len(wave)
    inner = slice(len(wave) // 8, -(len(wave) // 8))
    ratio = (wave * truth[::step, ::step].conj())[inner, inner]
    return np.angle(ratio / ratio.mean())


def test_sideband_is_found_at_any_angle_and_spacing():
    missed = []
    for number, carrier in enumerate(carriers()):
        holo = record(specimen(), (carrier.real, carrier.imag), contrast=0.1, dose=200, seed=number)
        holo[np.random.default_rng(number).integers(0, SIZE, 3)] = 0  # dead rows
        holo[tuple(np.random.default_rng(number).integers(0, SIZE, (2, 30)))] = 60000  # hot pixels
        despike = number % 2 == 0  # the search itself does it always
        limit = 0.1 if despike else 0.4
        found = zentrix.hologram(holo, despike=despike, report=True)[1]
        off = abs(complex(*found.sideband) - carrier) + abs(found.angle + np.degrees(np.angle(carrier))) / 10
        if not (off < limit and abs(found.spacing * abs(carrier) / SIZE - 1) < 0.02 * limit and not found.doubtful):
            missed.append((carrier, found))
    assert missed == []


@pytest.mark.parametrize("shape", [(256, 256), (192, 256)])
@pytest.mark.parametrize("dose, bound", [(None, 0.02), (1000, 0.06)])
def test_phase_is_recovered(shape, dose, bound):
    truth, carrier = specimen(*shape), (-41.3, 52.6)
    vacuum = record(np.ones(shape), carrier, dose=dose, seed=1)
    holo = record(truth, carrier, dose=dose, seed=2)
    for reference in (vacuum, None):
        wave, found = zentrix.hologram(holo, reference, full_size=True, radius=20, report=True)
        assert wave.shape == shape and wave.dtype == np.complex64
        error = phase_error(wave, truth)
        assert np.sqrt((error**2).mean()) < bound
        assert abs(found.contrast - 0.4) < 0.02 and abs(complex(*found.sideband) - complex(*carrier)) < 0.05
        assert found.reference_contrast is None if reference is None else abs(found.reference_contrast - 0.4) < 0.02
        assert reference is not None or abs(np.median(abs(wave)) - 1) < 0.01
    modulus = abs(zentrix.hologram(holo, vacuum, full_size=True, radius=20))
    assert np.abs(modulus - abs(truth))[32:-32, 32:-32].max() < (0.05 if dose is None else 0.3)


def test_smaller_wave_samples_the_same_field():
    holo, vacuum = (record(wave, (30.2, 60.4)) for wave in (specimen(), np.ones((SIZE, SIZE))))
    full = zentrix.hologram(holo, vacuum, radius=30, full_size=True)
    small, found = zentrix.hologram(holo, vacuum, radius=30, pixel=0.05, report=True)
    assert small.shape == (64, 64) and found.reduction == 4 and found.pixel == pytest.approx(0.2)
    assert np.abs(small - full[::4, ::4])[4:-4, 4:-4].max() < 1e-3
    assert found.resolution == pytest.approx(SIZE / (30 - 0.06 * 30))
    assert found.contrast == pytest.approx(0.4, abs=0.02)
    assert zentrix.hologram(holo - holo.mean(), radius=30, report=True)[1].contrast is None


def test_the_other_sideband_has_the_conjugate_wave():
    holo, vacuum = (record(wave, (-40.4, -30.3)) for wave in (specimen(), np.ones((SIZE, SIZE))))
    lower, found = zentrix.hologram(holo, vacuum, report=True)
    assert found.sideband == pytest.approx((40.4, 30.3), abs=0.05)
    assert np.abs(zentrix.hologram(holo, vacuum, sideband="other") - lower.conj()).max() < 1e-4
    given = zentrix.hologram(holo, vacuum, sideband=(-40, -30), report=True)[1]
    assert given.sideband == pytest.approx((-40.4, -30.3), abs=0.05) and given.distinction is None and not given.doubtful
    with pytest.warns(UserWarning, match="no clear peak at the given position"):
        assert zentrix.hologram(holo, vacuum, sideband=(-40, 60), report=True)[1].doubtful


@pytest.mark.parametrize("level, modulus, weak", [(0, 0, 19000), (0.05, 5, 19000), (0.2, 5, 0)])
def test_quotient_fades_with_a_reference_below_a_tenth_of_its_median(level, modulus, weak):
    dark = np.ones((SIZE, SIZE))
    dark[60:200, 60:200] = level
    holo, vacuum = record(np.ones_like(dark), (40, 50)), record(dark, (40, 50))
    wave, found = zentrix.hologram(holo, vacuum, sideband=(40, 50), full_size=True, radius=30, report=True)
    assert abs(abs(wave[100:160, 100:160]).mean() - modulus) < 0.5 and abs(wave).max() < 12
    assert abs(found.weak - weak) < 1500


@pytest.mark.parametrize("carrier, sideband, room", [((-50, 0), (50, 0), 50), ((0, -50), (0, 50), 50), ((9, 100), (9, 100), 58.8)])
def test_sideband_is_the_lower_or_right_one_and_the_filter_ends_half_way_to_the_next_band(carrier, sideband, room):
    found = zentrix.hologram(record(specimen() ** 0.2, carrier), report=True)[1]
    assert found.sideband == pytest.approx(sideband, abs=0.05) and found.radius == pytest.approx(room / 2, rel=2e-3)


@pytest.mark.parametrize(
    "options, half, factors",
    [
        ({}, 18.8, {17: 1, 19: 0.371, 21: 0}),
        ({"flank": 8}, 16, {11: 1, 16: 0.5, 19: 0.038}),
        ({"flank": 0}, 20, {20: 1, 21: 0}),
        ({"window": "hann"}, 10, {5: 0.854, 10: 0.5, 21: 0}),
        ({"window": "gaussian"}, 7.85, {10: 0.325, 20: 0.0111, 21: 0}),
    ],
)
def test_filter_has_the_documented_factors(options, half, factors):
    x = grid()[1]
    for frequency, factor in factors.items():
        wave = 1 + 0.1 * np.exp(2j * np.pi * frequency * x)
        holo, vacuum = record(wave, (40, 70)), record(np.ones_like(x), (40, 70))
        quotient, found = zentrix.hologram(holo, vacuum, full_size=True, radius=20, report=True, **options)
        spectrum = np.fft.fft2(quotient)
        assert abs(spectrum[0, frequency] / spectrum[0, 0]) == pytest.approx(0.1 * factor, abs=1e-3)
        assert found.resolution == pytest.approx(SIZE / half, rel=1e-3)


def test_recordings_of_any_magnitude_are_judged_alike():
    holo, vacuum = (record(wave, (40.2, 50.7)).astype(np.float64) for wave in (specimen(), np.ones((SIZE, SIZE))))
    for reference in (vacuum, None):
        wave, found = zentrix.hologram(holo, reference, report=True)
        for unit in (np.float64(2.0**-1000), np.float32(2.0**-100), np.float32(2.0**124), np.float64(2.0**1000)):
            scaled = [None if image is None else image.astype(unit.dtype) * unit for image in (holo, reference)]
            again, report = zentrix.hologram(*scaled, report=True)
            assert abs(again - wave).max() < 1e-6 and report._replace(sideband=found.sideband) == found
            assert report.sideband == pytest.approx(found.sideband, abs=1e-9)
    assert np.array_equal(zentrix.hologram(holo * 2.0**80, vacuum * 2.0**70), 2**10 * zentrix.hologram(holo, vacuum))


def test_second_sideband_makes_the_choice_doubtful():
    holo = record(np.ones((SIZE, SIZE)), (40, 50)) + record(np.ones((SIZE, SIZE)), (-60, 30), contrast=0.3)
    with pytest.warns(UserWarning, match="The sideband is only 1[.]. times as high as the next peak"):
        assert zentrix.hologram(holo, report=True)[1].doubtful


def test_stack_shares_sideband_and_filter():
    planes = [record(specimen() ** power, (40.2, 50.7)) for power in (1, 2)]
    waves = zentrix.hologram(np.stack(planes))
    for wave, plane in zip(waves, planes):
        assert np.abs(wave - zentrix.hologram(plane, sideband=(40.2, 50.7))).max() < 0.02


def no_fringes():
    rng = np.random.default_rng(5)
    y, x = grid()
    spots = np.zeros((SIZE, SIZE))
    spots[rng.integers(0, SIZE, 40), rng.integers(0, SIZE, 40)] = 1e4
    yield "noise", rng.poisson(100, (SIZE, SIZE))
    yield "edges", rng.poisson(100 + 80 * (abs(x) < 0.2) * (abs(y + 0.3 * x) < 0.2))
    yield "hot pixels", rng.poisson(100, (SIZE, SIZE)) + spots
    yield "hill", rng.poisson(1000 * abs(specimen()) ** 2)
    yield "amorphous", zentrix.load().ZXGaussianBlur(rng.normal(100, 20, (SIZE, SIZE)), 1.5, 4, None)
    yield "lattice", 100 + 20 * np.cos(2 * np.pi * 60 * x) + 20 * np.cos(2 * np.pi * 60 * y) + rng.normal(size=x.shape)
    yield "constant", np.ones((SIZE, SIZE))


def test_images_without_fringes_are_refused():
    for name, image in no_fringes():
        with pytest.raises(zentrix.ScriptError, match="No fringes were found"):
            pytest.fail(f"{name}: {zentrix.hologram(image, report=True)[1]}")


GOOD = record(specimen(), (40, 50))


@pytest.mark.parametrize(
    "arguments, keywords, text",
    [
        ((specimen(),), {}, "this is a wave already"),
        (("holo.npy",), {}, "not a file's name"),
        ((GOOD[0],), {}, r"of shape \(y, x\) or \(z, y, x\)"),
        ((GOOD, GOOD[:-1]), {}, "does not fit the hologram"),
        ((np.where(GOOD > 2.5, np.nan, GOOD),), {}, "pixels of the hologram are infinite or not a number"),
        ((GOOD, np.where(GOOD > 2.5, np.nan, GOOD)), {}, "reference: .* pixels of the reference are infinite"),
        ((GOOD, np.ones_like(GOOD)), {}, "reference: No fringes were found"),
        ((np.stack([GOOD] * 3, axis=-1),), {}, r"\(256, 256, 3\) looks like a colour picture"),
        ((GOOD * 1e30, GOOD), {}, r"differ by a factor of more than 10\^18"),
        ((np.where(GOOD > 2.5, 1e30, GOOD),), {}, "pixels are too large next to the others"),
        ((np.where(GOOD > 2.5, 1e300, GOOD),), {}, r"pixels of the hologram are more than 10\^38 times"),
        ((GOOD[:20],), {}, "at least 32 x 32"),
        ((GOOD,), {"flank": 2, "window": "hann"}, 'flank is that of window="disk"'),
        ((GOOD,), {"radius": 70}, "reaches the centre of the transform"),
        ((GOOD,), {"flank": -1}, "between 0 and the radius"),
        ((GOOD,), {"sideband": "left"}, 'sideband is "auto" or "other"'),
        ((GOOD,), {"sideband": (0, 0)}, "at the centre"),
        ((GOOD,), {"sideband": (200, 0)}, "outside the transform"),
        ((GOOD,), {"window": "box"}, 'window is "disk", "hann" or "gaussian"'),
    ],
)
def test_what_cannot_be_used_is_refused(arguments, keywords, text):
    with pytest.raises((TypeError, ValueError, zentrix.ScriptError), match=text):
        zentrix.hologram(*arguments, **keywords)
