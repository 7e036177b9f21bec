#!/usr/bin/env python3
"""Prints the polynomial coefficients of src/numeric/ and the largest relative error that each leaves.

Each function is written as leading part + correction * P(z); P minimises the largest relative error of the whole by
the exchange algorithm of Remez (Cheney, Introduction to Approximation Theory, 1966, chapter 3).
"""
import mpmath as mp

mp.mp.dps = 40


def remez(f, weight, low, high, count):
    """Coefficients of the polynomial with `count` terms whose weighted distance from f on [low, high] is smallest."""
    low, high = mp.mpf(low), mp.mpf(high)
    grid = [low + (high - low) * (1 - mp.cos(mp.pi * i / 600)) / 2 for i in range(601)]
    grid = [z for z in grid if weight(z) != 0]
    values = {z: (f(z), weight(z)) for z in grid}
    nodes = [grid[round((len(grid) - 1) * (1 - mp.cos(mp.pi * i / count)) / 2)] for i in range(count + 1)]
    for _ in range(30):
        system = mp.matrix(count + 1, count + 1)
        right = mp.matrix(count + 1, 1)
        for row, z in enumerate(nodes):
            for k in range(count):
                system[row, k] = z**k
            system[row, count] = (-1) ** row / values[z][1]
            right[row] = values[z][0]
        solution = mp.lu_solve(system, right)
        coefficients = [solution[k] for k in range(count)]

        def error(z):
            return (mp.polyval(coefficients[::-1], z) - values[z][0]) * values[z][1]

        extrema, last_sign = [], 0
        for z in grid:  # the largest error in each run of one sign
            e = error(z)
            sign = 1 if e > 0 else -1
            if sign != last_sign:
                extrema.append(z)
                last_sign = sign
            elif abs(e) > abs(error(extrema[-1])):
                extrema[-1] = z
        while len(extrema) > count + 1:  # drop the weaker end
            extrema.pop(0 if abs(error(extrema[0])) < abs(error(extrema[-1])) else -1)
        if len(extrema) < count + 1 or extrema == nodes:
            break
        nodes = extrema
    return coefficients, max(abs(error(z)) for z in grid)


def report(name, f, weight, low, high, count):
    coefficients, error = remez(f, weight, low, high, count)
    print(f"{name}: relative error 2^{mp.nstr(mp.log(error, 2), 4)}")
    for c in coefficients:
        print("   ", mp.nstr(c, 18))


def of_square(f):
    """z -> f(sqrt(z)), away from 0 where the correction is a quotient of vanishing parts."""
    return lambda z: f(mp.sqrt(z))


quarter = (mp.pi / 4) ** 2
tiny = mp.mpf("1e-8")
report("sine: r + r z P(z)", of_square(lambda r: (mp.sin(r) / r - 1) / r**2),
       of_square(lambda r: r**3 / mp.sin(r)), tiny, quarter, 4)
report("cosine: P(z), absolute, since all of [cos(pi/4), 1] shares one ulp", of_square(mp.cos), lambda z: mp.mpf(1), 0,
       quarter, 5)
report("2^r: P(r)", lambda r: mp.mpf(2) ** r, lambda r: mp.mpf(2) ** -r, -0.5, 0.5, 8)
s_squared = ((mp.sqrt(2) - 1) / (mp.sqrt(2) + 1)) ** 2
for terms in (4, 5):  # 4 are enough for one rounding; the power multiplies the error by up to 128 and takes 5
    report("log: s + s z P(z), s = (m - 1) / (m + 1), half the logarithm", of_square(lambda s: (mp.atanh(s) / s - 1) / s**2),
           of_square(lambda s: s**3 / mp.atanh(s)), tiny, s_squared, terms)
report("arc tangent: t + t z P(z)", of_square(lambda t: (mp.atan(t) / t - 1) / t**2),
       of_square(lambda t: t**3 / mp.atan(t)), tiny, mp.tan(mp.pi / 8) ** 2, 6)
