#!/usr/bin/env python3
"""Computes the expected values of test_noise.cpp apart from the code: exact fractions, rounded once where an operation
rounds. Prints the table rows and the digests that the test holds.
"""
import struct
from fractions import Fraction


def f32(value):
    """A double rounded to float."""
    return struct.unpack("<f", struct.pack("<f", value))[0]


def round_exact(value, bits):
    """A fraction rounded once, half to even, to a number of `bits` significant bits."""
    if value == 0:
        return 0.0
    sign, value = (-1, -value) if value < 0 else (1, value)
    exponent = 0
    while value >= 2 ** bits:
        value, exponent = value / 2, exponent + 1
    while value < 2 ** (bits - 1):
        value, exponent = value * 2, exponent - 1
    return float(sign * round(value) * Fraction(2) ** exponent)


def int32(value):
    return (value + 2 ** 31) % 2 ** 32 - 2 ** 31


def lattice(number, single):
    n = number % 2 ** 32
    k = n ^ (n << 13) % 2 ** 32
    h = (k * (k * k * 15731 + 789221) + 1376312589) % 2 ** 32
    value = (h & 0x7FFFFFFF) / 2 ** 31
    return f32(value) if single else value


def remainder(value, divisor):
    """Toward zero, as the machine divides."""
    result = abs(value) % abs(divisor)
    return result if value >= 0 else -result


def wrap(index, period):
    if index >= period:
        return remainder(index, period) if period != 0 else 0
    if index >= 0:
        return index
    return int32(period - 1 - remainder(int32(-index - 1), period)) if period != 0 else -1


def place(x, single):
    rounded = f32 if single else float
    if x < 0:
        x = rounded(x - 1)
    cell = int(x)
    fraction = rounded(x - cell) if x > 0 else rounded(1 - rounded(cell - x))
    return cell, fraction


def first(x, seed, period, single):
    cell, t = place(x, single)
    a = lattice(seed + wrap(cell, period), single)
    b = lattice(seed + wrap(int32(cell + 1), period), single)
    difference = f32(b - a) if single else b - a
    return round_exact(Fraction(difference) * Fraction(t) + Fraction(a), 24 if single else 53)


def second(x, seed, period, single):
    cell, t = place(x, single)
    a, b, c = (lattice(seed + wrap(int32(cell + i), period), single) for i in range(3))
    r = f32 if single else float
    rest = r(1 - t)
    m0, m1 = r(r(a + b) * 0.5), r(r(b + c) * 0.5)
    return r(r(r(m1 * r(t * t)) + r(m0 * r(rest * rest))) + r(r(r(2 * t) * rest) * b))


def mandelbrot(real, imaginary, maximum):
    zr = zi = zr2 = zi2 = 0.0
    count = 0
    while count < maximum:
        zi = 2 * zr * zi + imaginary
        zr = zr2 - zi2 + real
        zr2, zi2 = zr * zr, zi * zi
        if zr2 + zi2 >= 4.0:
            break
        count += 1
    return count


class Digest:
    """FNV-1a over the bytes."""

    def __init__(self):
        self.value = 0xCBF29CE484222325

    def add(self, data):
        for byte in data:
            self.value = (self.value ^ byte) * 0x100000001B3 % 2 ** 64


def main():
    print("// x, seed, period, first as double, first as float, second as double, second as float")
    for x, seed, period in [(0.5, 1, 8), (0.25, 1, 8), (8.25, 1, 8), (0.0, 1, 8), (0.0001, 1, 8), (-0.25, 1, 8),
                            (-8.75, 1, 8), (-1.0, 3, 8), (7.5, 3, 8), (2.5, 3, 0), (-2.5, 3, 0), (5.5, 3, -1),
                            (-5.5, 3, -1), (-3.5, 3, -8), (1.5, -2147483648, 8), (1.5, 2147483647, 8),
                            (100000.75, 42, 1000)]:
        single = f32(x)
        print("    {%r, %d, %d, %s, %sf, %s, %sf}," % (
            x, seed, period, first(x, seed, period, False).hex(), first(single, seed, period, True).hex(),
            second(x, seed, period, False).hex(), second(single, seed, period, True).hex()))
    digest = Digest()
    for index in range(2048):
        x = (index - 1024) / 37
        for seed in (-7, 0, 12345):
            for period in (0, 1, 8, -3, 1000):
                digest.add(struct.pack("<d", first(x, seed, period, False)))
                digest.add(struct.pack("<f", first(f32(x), seed, period, True)))
                digest.add(struct.pack("<d", second(x, seed, period, False)))
                digest.add(struct.pack("<f", second(f32(x), seed, period, True)))
    print("noise digest 0x%016X" % digest.value)
    digest = Digest()
    for row in range(64):
        for column in range(64):
            digest.add(struct.pack("<I", mandelbrot(column / 21 - 2.25, row / 24 - 1.3, 200)))
    print("escape digest 0x%016X" % digest.value)


main()
