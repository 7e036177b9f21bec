"""Signals of HyperSpy: calibrations are read, axes and metadata stay."""

import copy
import types

import numpy as np
import pytest

import zentrix

LENS = dict(C1=-50, A1=(12, 30), C3=0.01)


class Tree(dict):
    get_item, set_item = dict.get, dict.__setitem__


class StandIn:
    """The members of a signal that the package uses, as HyperSpy 1.7 has them."""

    def __init__(self, data):
        self.data, self.metadata = data, Tree()
        axes = [types.SimpleNamespace(name=name, units="<undefined>", scale=1.0) for name in "xy"]
        axes[0].index_in_array, axes[1].index_in_array = data.ndim - 1, data.ndim - 2
        self.axes_manager = types.SimpleNamespace(signal_axes=tuple(axes))

    def _deepcopy_with_new_data(self, data):
        new = copy.copy(self)
        new.data = data
        return new


def real_signal(data):
    api = pytest.importorskip("hyperspy.api")
    return (api.signals.ComplexSignal2D if data.dtype.kind == "c" else api.signals.Signal2D)(data)


@pytest.mark.filterwarnings("ignore")
@pytest.mark.parametrize("make", [StandIn, real_signal])
def test_units_come_from_the_axes_and_the_result_is_a_signal(make):
    rng = np.random.default_rng(8)
    waves = np.exp(1j * rng.normal(0, 0.3, (3, 40, 56))).astype(np.complex64)
    expected = zentrix.correct(waves, kv=300, pixel=0.05, **LENS)
    units = {"nm": 0.05, "pm": 50, "Å": 0.5, "A": 0.5, "Angstrom": 0.5, "µm": 5e-5, "μm": 5e-5}
    for unit, scale in units.items():
        seen = make(waves)
        seen.metadata.set_item("Acquisition_instrument.TEM.beam_energy", 300.0)
        for axis in seen.axes_manager.signal_axes:
            axis.units, axis.scale = unit, scale
        corrected = zentrix.correct(seen, **LENS)
        assert type(corrected) is type(seen), unit
        assert [axis.units for axis in corrected.axes_manager.signal_axes] == [unit, unit]
        assert np.abs(corrected.data - expected).max() < 1e-5, unit
    assert zentrix.correct(wave=seen, kv=300, pixel=0.05, **LENS).data.tobytes() == expected.tobytes()  # these override
    with pytest.raises(ValueError, match="more axes than the signal has"):
        zentrix.aberrate(seen, C1=np.array([1.0, 2.0]))

    phases = make(np.angle(waves))
    result, report = zentrix.unwrap(phases, report=True)
    assert type(result) is type(phases) and result.data.tobytes() == zentrix.unwrap(phases.data).tobytes()
    assert report.regions.shape == (3,)

    plain = make(waves)
    with pytest.raises(ValueError, match='axis "?.*"? has no unit of length.*: give pixel in nm'):
        zentrix.correct(plain, kv=300)
    with pytest.raises(TypeError, match="no Acquisition_instrument.TEM.beam_energy"):
        zentrix.correct(plain, pixel=0.05)
    for axis, scale in zip(seen.axes_manager.signal_axes, (5e-5, 6e-5)):
        axis.scale = scale
    with pytest.raises(ValueError, match="Pixels have to be square, not"):
        zentrix.correct(seen)


@pytest.mark.filterwarnings("ignore")
def test_map_calls_the_functions_on_threads_and_lazily():
    api = pytest.importorskip("hyperspy.api")
    waves = np.exp(1j * np.random.default_rng(9).normal(0, 0.3, (6, 32, 48))).astype(np.complex64)
    expected = zentrix.correct(waves, kv=300, pixel=0.05, **LENS)
    seen = api.signals.ComplexSignal2D(waves)
    lazy = seen.as_lazy()
    for mapped in (
        seen.map(zentrix.correct, kv=300, pixel=0.05, inplace=False, show_progressbar=False, **LENS),
        seen.map(zentrix.correct, kv=300, pixel=0.05, inplace=False, parallel=True, show_progressbar=False, **LENS),
        zentrix.correct(lazy, kv=300, pixel=0.05, **LENS),
    ):
        if mapped._lazy:
            assert hasattr(mapped.data, "dask")  # not computed yet
            mapped.compute(show_progressbar=False)
        assert mapped.data.tobytes() == expected.tobytes()


def test_progress_wraps_the_planes_of_a_stack():
    waves = np.ones((2, 3, 8, 8), np.complex64)
    seen = []

    def progress(iterable, total):
        for one in iterable:
            seen.append((one, total))
            yield one

    zentrix.correct(waves, kv=300, pixel=0.05, progress=progress)
    zentrix.unwrap(waves.real, progress=progress)
    assert seen == 2 * [(index, 6) for index in np.ndindex(2, 3)]
    with pytest.raises(TypeError, match="progress is a function such as tqdm.tqdm, not True"):
        zentrix.unwrap(waves.real, progress=True)
