"""What people write, right or wrong, and the answer that they get."""

import decimal
import fractions
import pathlib
import types

import numpy as np
import pytest

import zentrix

LENS = dict(kv=300, pixel=0.05)
SHAPE = (6, 8)
WAVE = np.exp(1j * np.arange(48).reshape(SHAPE))
PHASE = np.angle(WAVE)
HOLES = np.zeros(SHAPE, bool)
HOLES[1, 2] = HOLES[4, 5] = True
MASKED = np.ma.MaskedArray(WAVE, mask=HOLES)
TORN = np.where(HOLES, np.nan, WAVE)
STACK = np.stack([WAVE, TORN])
FROZEN = WAVE.copy()
FROZEN.flags.writeable = False


def correct(wave=WAVE, **more):
    return zentrix.correct(wave, **{**LENS, **more})


def uses_of_coefficients():
    round_one, pair = "C1 is a number in nm", "A1 is a modulus or (modulus, degrees) in nm"
    no_angle = "it is round and has no angle, so it cannot be"
    quantity = types.SimpleNamespace(units="nm")
    for value in ("-62.5", decimal.Decimal("-62.5"), fractions.Fraction(-125, 2), np.float32(-62.5), np.array(-62.5),
                  -62.5 + 0j, np.array(-62.5 + 0j)):  # fmt: skip
        yield {"C1": value}, {"C1": -62.5}
    for value in (14j, "14@90", (14, 90), (np.int16(14), fractions.Fraction(90)), (-14, -90), np.array(14j)):
        yield {"A1": value}, {"A1": (14.0, 90.0)}
    yield {"C1": range(3)}, {"C1": np.arange(3)}
    yield {"A1": ["3@20", (3, 25), 3j]}, {"A1": (3, [20, 25, 90])}
    yield {"C1": True}, TypeError(f"{round_one}, not True.")
    yield {"C1": np.array([True])}, TypeError(f"{round_one}, not an array of bool and shape (1,).")
    yield {"C1": None}, TypeError(f"{round_one}, not None.")
    yield {"A1": {"modulus": 14}}, TypeError(f"{pair}, not {{'modulus': 14}}.")
    yield {"C1": "12 nm"}, ValueError('C1 is a number in nm, not "12 nm".')
    yield {"A1": "14 @ 35"}, ValueError('A1 is MODULUS or MODULUS@DEGREES in nm, not "14 @ 35".')
    yield {"C1": "-62@30"}, ValueError('C1 is a number in nm, not "-62@30".')
    yield {"C1": 3 + 4j}, ValueError(f"{round_one}; {no_angle} the complex (3+4j).")
    yield {"C1": (1, 2)}, ValueError(f"{round_one}; {no_angle} (1, 2).")
    yield {"A1": (1, 2, 3)}, ValueError(f"{pair}, not (1, 2, 3).")
    yield {"A1": (14, "35")}, TypeError(f"{pair}, not '35'.")
    yield {"A1": [14, 35]}, ValueError(
        "A1=[14, 35] is ambiguous: write (14, 35) for modulus and degrees, numpy.array([14, 35]) for a sweep of two "
        "moduli."
    )
    yield {"A1": np.nan}, ValueError(f"{pair}, not nan.")
    yield {"C1": 10**400}, ValueError(f"{round_one}, not inf.")
    yield {"C1": np.array([1, np.inf])}, ValueError(f"{round_one}; element 1 of the array is inf.")
    yield {"C1": []}, ValueError(f"{round_one}; [] is empty.")
    yield {"C1": [1, [2, 3]]}, ValueError(f"{round_one}; the elements of the list have different lengths.")
    yield {"A1": ([1, 2], [1, 2, 3])}, ValueError(f"{pair}; arrays of shape (2,) and (3,) do not fit each other.")
    yield {"C1": np.zeros(3), "vibration": np.zeros(2)}, ValueError(
        "The arrays of a sweep have to fit each other as in NumPy: C1 (3,), vibration (2,)."
    )
    yield {"C1": np.ma.MaskedArray([1, 2])}, TypeError(f"{round_one}, not a masked array; pass its compressed() values.")
    yield {"C1": quantity}, TypeError(
        f"{round_one}: convert namespace(units='nm') to this unit and pass the plain number."
    )
    yield {"C1": 1e30}, ValueError("C1 is too large.")


def uses_of_names_and_units():
    yield {"energy": 300e3}, TypeError(
        "correct() has no parameter 'energy'. Did you mean kv (accelerating voltage in kV: kv=300)?"
    )
    yield {"defocus": 5}, TypeError("correct() has no parameter 'defocus'. Did you mean C1 (nm; C1 < 0 is underfocus)?")
    yield {"Cs": 5}, TypeError("correct() has no parameter 'Cs'. Did you mean C3 (spherical aberration, mm)?")
    yield {"c1": 5}, TypeError("correct() has no parameter 'c1'. Did you mean C1?")
    yield {"focuspread": 5}, TypeError("correct() has no parameter 'focuspread'. Did you mean focus_spread?")
    yield {"C12": 5}, TypeError(
        "correct() has no parameter 'C12'. The coefficients have the names C1, A1, B2 ...; zentrix.from_notation converts "
        "others."
    )
    yield {"remove": False}, TypeError(
        "correct() has no parameter 'remove'. zentrix.correct removes aberrations, zentrix.aberrate applies them."
    )
    yield {"kv": 300e3}, ValueError("300000 kV: are these volts? kv is in kilovolts, 300 for 300,000 V.")
    yield {"kv": 0.3}, ValueError(
        "0.3 kV: are these megavolts? kv is in kilovolts; for slow electrons give the wavelength, 0.0707973 nm."
    )
    yield {"kv": 0}, ValueError("The accelerating voltage must be a positive number of kilovolts.")
    yield {"kv": "300"}, TypeError("kv is the accelerating voltage in kV, not '300'.")
    yield {"kv": None}, TypeError("correct() needs either kv or wavelength.")
    yield {"wavelength": 2e-3}, TypeError("correct() needs either kv or wavelength.")
    yield {"kv": None, "wavelength": -1}, ValueError("The wavelength must be a positive number of nanometres.")
    yield {"pixel": (0.05, 0.05)}, {"pixel": 0.05}
    yield {"pixel": (0.05, 0.06)}, ValueError("Pixels have to be square, not 0.05 x 0.06 nm: resample the wave.")
    yield {"kv": None, "wavelength": 2e-12}, ValueError(
        "The wavelength is 2e-12 nm: are these metres? wavelength is in nanometres."
    )
    yield {"pixel": 2e-11}, ValueError("The pixel size is 2e-11 nm: are these metres? pixel is in nanometres.")
    yield {"pixel": [[1], [2, 3]]}, TypeError("pixel is the pixel size in nm, not [1].")
    yield {"pixel": 0}, ValueError("The pixel size must be a positive number of nanometres.")
    yield {"pixel": np.nan}, ValueError("pixel is the pixel size in nm, not nan.")
    yield {"kv": None, "wavelength": 1.97}, UserWarning("Scattering angles reach 19.7 rad: check the units of wavelength")
    yield {"kv": None, "wavelength": 1.97, "pixel": 0.2}, UserWarning("Scattering angles reach 4.92 rad")
    yield {"tilt": 1}, TypeError("tilt is (right, up) in mrad, not 1.")
    yield {"tilt": np.array(1)}, TypeError("tilt is (right, up) in mrad, not array(1).")
    yield {"tilt": (1, None)}, TypeError("tilt is (right, up) in mrad, not None.")
    yield {"tilt": 1 + 2j}, {"tilt": (1, 2)}
    yield {"envelope": True}, TypeError('envelope is "auto", "on" or "off", not True.')
    yield {"envelope": "yes"}, ValueError('envelope is "auto", "on" or "off", not \'yes\'.')
    yield {"focus_spread": "3"}, TypeError("focus_spread is an rms width in nm, not '3'.")
    yield {"convergence": -1}, ValueError("The convergence must not be negative.")


def uses_of_waves():
    replaced = 'infinite or not a number; nan="zero" or "mean" replaces them.'
    for wave in (WAVE.tolist(), WAVE.astype(">c16"), np.asfortranarray(WAVE), FROZEN, WAVE.astype(np.clongdouble)):
        yield {"wave": wave, "C1": 9}, {"C1": 9}
    yield {"wave": PHASE}, TypeError(
        "The wave is a complex array, not float64 of shape (6, 8); a wave is modulus * numpy.exp(1j * phase)."
    )
    yield {"wave": WAVE.astype(object)}, TypeError("The wave is a complex array, not object of shape (6, 8).")
    yield {"wave": [[1j], [1j, 2]]}, TypeError(
        "The wave is a complex array of shape (..., y, x), not [[1j], [1j, 2]]."
    )
    yield {"wave": "wave.npy"}, TypeError(
        "The wave is a complex array, not a file's name: numpy.load('wave.npy') reads one."
    )
    yield {"wave": WAVE[0]}, ValueError("The wave is an array of shape (..., y, x), not (8,).")
    yield {"wave": WAVE[:0]}, ValueError("The wave of shape (0, 8) has no pixel.")
    yield {"wave": TORN}, ValueError(f"2 of 48 pixels of the wave are {replaced}")
    yield {"wave": STACK}, ValueError(f"2 of 48 pixels of the wave's plane 1 are {replaced}")
    yield {"wave": MASKED}, ValueError(f"2 of 48 pixels of the wave are masked, {replaced}")
    yield {"wave": WAVE * 1e200}, ValueError(
        '48 of 48 pixels of the wave are beyond the range of single precision; nan="zero" or "mean" replaces them.'
    )
    yield {"wave": MASKED, "nan": "zero"}, {"wave": np.where(HOLES, 0, WAVE)}
    yield {"wave": TORN, "nan": "mean"}, {"wave": np.where(HOLES, WAVE[~HOLES].mean(), WAVE)}
    yield {"wave": WAVE * np.nan, "nan": "mean"}, ValueError("No pixel of the wave is a finite number.")
    yield {"nan": "drop"}, ValueError('nan is "refuse", "zero" or "mean", not \'drop\'.')


def uses_of_other_functions():
    quantity = types.SimpleNamespace(units="nm")
    unwrap, table = zentrix.unwrap, np.array([300, 200])
    yield lambda: unwrap(WAVE), TypeError(
        "The phase is a real array in radians, not complex128 of shape (6, 8); numpy.angle(wave) is the phase of a wave."
    )
    yield lambda: unwrap(np.zeros(SHAPE, int)), TypeError(
        "The phase is a real array in radians, not int64 of shape (6, 8)."
    )
    yield lambda: unwrap(pathlib.PurePosixPath("p.npy")), TypeError(
        "The phase is a real array, not a file's name: numpy.load(PurePosixPath('p.npy')) reads one."
    )
    yield lambda: unwrap(PHASE[0]), ValueError(
        "The phase is an array of shape (..., y, x), not (8,); numpy.unwrap unwraps lines."
    )
    yield lambda: unwrap(PHASE[:, :0]), ValueError("The phase of shape (6, 0) has no pixel.")
    yield lambda: unwrap(PHASE * 57), UserWarning("a wrapped phase in radians is expected.")
    yield lambda: unwrap(PHASE, mask=HOLES * 1), TypeError(
        "mask is a boolean array, True where a pixel is left out, not int64."
    )
    yield lambda: unwrap(PHASE, mask=[[True], [True, False]]), TypeError(
        "mask is a boolean array, True where a pixel is left out, not [[True], [True, False]]."
    )
    yield lambda: unwrap(PHASE, report=1), TypeError("report is True or False, not 1.")
    yield lambda: unwrap(PHASE, mask=HOLES.T), ValueError("The mask of shape (8, 6) does not fit the phase of shape (6, 8).")
    yield lambda: unwrap(PHASE, mask=HOLES[:1]), ValueError("The mask of shape (1, 8) does not fit the phase of shape (6, 8).")
    yield lambda: unwrap(PHASE, box=2.5), TypeError("box is a whole number of pixels, not 2.5.")
    yield lambda: unwrap(PHASE, box=-1), ValueError("box is a number of pixels, 0 or more, not -1.")
    yield lambda: unwrap(PHASE.astype(">f8"), box=np.uint8(0)), lambda: unwrap(PHASE.astype(np.float32))
    yield lambda: zentrix.wavelength(300e3), ValueError(
        "300000 kV: are these volts? kv is in kilovolts, 300 for 300,000 V."
    )
    convert, back, names = zentrix.to_notation, zentrix.from_notation, "is not a name of coefficients here"
    yield lambda: convert("polar", {}, clockwise="no"), TypeError("clockwise is True or False, not 'no'.")
    yield lambda: convert("polar", {"kv": 3e5}), ValueError(
        "300000 kV: are these volts? kv is in kilovolts, 300 for 300,000 V."
    )
    yield lambda: back("polar", {1: 2}), TypeError("The names of coefficients are texts, not 1.")
    yield lambda: back("polar", [("C10", 1), ("C10", 2)]), ValueError("C10 is given twice.")
    yield lambda: back("polar", {"c10": 1}), ValueError(f"c10 {names}. Did you mean C10?")
    yield lambda: back("polar", {"kv": 300}), ValueError(f"kv {names}. Did you mean energy?")
    yield lambda: zentrix.wavelength(table), lambda: [zentrix.wavelength(300), zentrix.wavelength(200)]
    yield lambda: zentrix.transfer_function(64, **LENS), TypeError("shape is (height, width), not 64.")
    yield lambda: zentrix.transfer_function(WAVE, **LENS), TypeError(
        "shape is (height, width), not an array of complex128 and shape (6, 8)."
    )
    yield lambda: zentrix.transfer_function((0, 4), **LENS), ValueError(
        "shape is (height, width), 1 or more each, not (0, 4)."
    )
    yield lambda: zentrix.ctf(SHAPE, along=30, **LENS), TypeError("ctf() takes either shape, or q and along.")
    yield lambda: zentrix.ctf(q=[-1, 2], kv=300), ValueError(
        "q is an array of frequencies in 1/nm, 0 or more; -1.0 is negative (along gives a direction)."
    )
    yield lambda: zentrix.ctf(q=[0, 6000], kv=300), ValueError(
        "q is an array of frequencies in 1/nm, 5000 or less; 6000 is usually in another unit."
    )
    yield lambda: unwrap(quantity), TypeError(
        "The phase is a real array in radians: convert namespace(units='nm') to this unit and pass the plain number."
    )
    yield lambda: zentrix.ctf(kv=300), TypeError("ctf() needs pixel, the pixel size in nm.")


USES = [
    *uses_of_coefficients(),
    *uses_of_names_and_units(),
    *uses_of_waves(),
    *uses_of_other_functions(),
]  #: what is written as parameters of correct() or as a call; the answer, or what is written elsewhere for the same


@pytest.mark.parametrize("use, answer", USES)
def test_use_has_its_answer(use, answer):
    call = use if callable(use) else lambda: correct(**use)
    if isinstance(answer, Warning):
        with pytest.warns(type(answer), match=str(answer)) as warned:
            call()
        assert warned[0].filename == __file__
    elif isinstance(answer, Exception):
        with pytest.raises(type(answer)) as refusal:
            call()
        assert str(refusal.value) == str(answer)
    else:
        expected = answer() if callable(answer) else correct(**answer)
        assert np.allclose(call(), expected, rtol=0, atol=1e-6)
