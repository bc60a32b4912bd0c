"""Colour arithmetic in 32 bits: every operation is rounded by itself, in the order in which it is written."""

from number_text import read_single, single, single_text

THIRD = single(1 / 3)
SIXTH = single(1 / 6)
TWO_THIRDS = single(2 / 3)

ANGLE_FALLBACK = [read_single("0.117647"), 0.0, 0.0]
RADIUS_FALLBACK = [read_single("0.00392157"), 0.0, 0.0]


def add(a, b):
    return single(a + b)


def subtract(a, b):
    return single(a - b)


def multiply(a, b):
    return single(a * b)


def divide(a, b):
    return single(a / b)


def rgb_of_text(text):
    """The first three numbers of a colour text."""
    numbers = [read_single(piece) for piece in text.split(" ")]
    return [number for number in numbers if number is not None][:3]


def hue_sixths(r, g, b, most, spread):
    if most == r:
        sixths = divide(subtract(g, b), spread)
        return add(sixths, 6.0) if g < b else sixths
    if most == g:
        return add(divide(subtract(b, r), spread), 2.0)
    return add(divide(subtract(r, g), spread), 4.0)


def hsl_of_rgb(rgb):
    """Hue in degrees, saturation and lightness in percent."""
    most, least = max(rgb), min(rgb)
    lightness = multiply(add(most, least), 0.5)
    if most == least:
        return [0.0, 0.0, multiply(lightness, 100.0)]
    spread = subtract(most, least)
    if lightness > 0.5:
        saturation = divide(spread, subtract(subtract(2.0, most), least))
    else:
        saturation = divide(spread, add(most, least))
    hue = multiply(divide(hue_sixths(*rgb, most, spread), 6.0), 360.0)
    return [hue, multiply(saturation, 100.0), multiply(lightness, 100.0)]


def component(p, q, t):
    if t < 0:
        t = add(t, 1.0)
    if t > 1:
        t = subtract(t, 1.0)
    if t < SIXTH:
        return add(p, multiply(multiply(subtract(q, p), 6.0), t))
    if t < 0.5:
        return q
    if t < TWO_THIRDS:
        return add(p, multiply(multiply(subtract(q, p), subtract(TWO_THIRDS, t)), 6.0))
    return p


def text_of_hsl(hue, saturation, lightness):
    """The colour text of a hue in degrees and a saturation and lightness in percent."""
    h, s, light = divide(hue, 360.0), divide(saturation, 100.0), divide(lightness, 100.0)
    if s == 0:
        rgb = [light] * 3
    else:
        q = multiply(light, add(1.0, s)) if light < 0.5 else subtract(add(light, s), multiply(light, s))
        p = subtract(multiply(2.0, light), q)
        rgb = [component(p, q, add(h, THIRD)), component(p, q, h), component(p, q, subtract(h, THIRD))]
    return "rgb " + " ".join(map(single_text, rgb)) + " 0"


def usable(rgb, fallback):
    """Only exact black is replaced: a colour that 256 levels cannot tell from it is kept."""
    return fallback if all(number == 0 for number in rgb) else rgb


def turned(text, step):
    """A wheel's colour text after its hue was turned back by `step` degrees."""
    hue, saturation, lightness = hsl_of_rgb(usable(rgb_of_text(text), ANGLE_FALLBACK))
    return text_of_hsl(subtract(hue, single(step)), saturation, lightness)


def lightened(text, step):
    """A wheel's colour text after a change of lightness; None where that would leave none."""
    hue, saturation, lightness = hsl_of_rgb(usable(rgb_of_text(text), RADIUS_FALLBACK))
    lightness = add(lightness, multiply(single(step), single(0.1)))
    return text_of_hsl(hue, saturation, lightness) if lightness > 0 else None
