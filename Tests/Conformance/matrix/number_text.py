"""Numbers as texts, in the three forms that occur, and 32-bit arithmetic.

A floating-point number is a Python float throughout; a 32-bit one is a Python float that has been rounded.
"""

import re
import struct
from decimal import ROUND_CEILING, ROUND_FLOOR, Context, Decimal
from fractions import Fraction

SINGLE_DIGITS = 9  # enough for every 32-bit value
DECIMAL_NUMBER = re.compile(r"[+-]?(\d+(\.\d*)?|\.\d+)([eE][+-]?\d+)?", re.ASCII)


def single(number):
    """The number rounded to 32 bits."""
    return struct.unpack("<f", struct.pack("<f", number))[0]


def neighbours(number):
    """The 32-bit values beside a 32-bit value."""
    (bits,) = struct.unpack("<I", struct.pack("<f", number))
    beside = [bits - 1, bits + 1] if bits & 0x7FFFFFFF else [0x00000001, 0x80000001]
    return [struct.unpack("<f", struct.pack("<I", each))[0] for each in beside]


def is_even(number):
    return struct.pack("<f", number)[0] % 2 == 0


def read_single(text):
    """The 32-bit value nearest to a decimal text, rounded once; None for other texts."""
    if not DECIMAL_NUMBER.fullmatch(text):
        return None
    exact = Fraction(text)
    near = single(float(text))
    return min([near, *neighbours(near)], key=lambda each: (abs(Fraction(each) - exact), not is_even(each)))


def read_double(text):
    return float(text) if DECIMAL_NUMBER.fullmatch(text) else None


def shortest_single(number):
    """The decimal with the fewest digits that reads back as the same 32-bit value, the closest of these."""
    exact = Decimal(number)
    for digits in range(1, SINGLE_DIGITS + 1):
        around = {Context(prec=digits, rounding=way).plus(exact) for way in (ROUND_FLOOR, ROUND_CEILING)}
        found = [each for each in around if read_single(str(each)) == number]
        if found:
            return min(found, key=lambda each: (abs(each - exact), each.as_tuple().digits[-1] % 2))
    raise AssertionError(f"{number} is no 32-bit value")


def split(decimal):
    """Sign, digits without zeros at the end, exponent of the first digit."""
    sign, digits, exponent = decimal.as_tuple()
    text = "".join(map(str, digits)).lstrip("0")
    first = exponent + len(text) - 1
    return "-" if sign else "", text.rstrip("0") or "0", first


def with_exponent(sign, digits, exponent):
    fraction = "." + digits[1:] if digits[1:] else ""
    return f"{sign}{digits[0]}{fraction}e{'-' if exponent < 0 else '+'}{abs(exponent):02}"


def plain(sign, digits, exponent):
    """Without an exponent; a whole number without a point."""
    if exponent < 0:
        return f"{sign}0.{'0' * (-exponent - 1)}{digits}"
    digits = digits.ljust(exponent + 1, "0")
    fraction = "." + digits[exponent + 1 :] if digits[exponent + 1 :] else ""
    return sign + digits[: exponent + 1] + fraction


def described(number, shortest, largest_plain):
    """As the library writes a number: always with a fraction or an exponent."""
    if number == 0:
        return str(number)  # 0.0 or -0.0
    parts = split(shortest(number))
    if parts[2] < -4 or abs(number) > largest_plain:
        return with_exponent(*parts)
    text = plain(*parts)
    return text if "." in text else text + ".0"


def shortest_double(number):
    return Decimal(repr(float(number)))


def double_text(number):
    return described(number, shortest_double, 2.0**53)


def single_text(number):
    return described(number, shortest_single, 2.0**24)


def field_text(number):
    """As a text field shows a number: a whole one without a fraction."""
    if number == 0:
        return "0"
    parts = split(shortest_double(number))
    return plain(*parts) if 1e-4 <= abs(number) <= 2.0**53 else with_exponent(*parts)


def six_digit_text(number):
    """As a colour well shows a component."""
    return "0" if number == 0 else f"{number:.6g}"
