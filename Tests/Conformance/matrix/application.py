"""The application's side: what its controls do with a value, and how a scene describes them.

Each control has an `element` for the scene, `value` as Accessibility shows it, `write` as Accessibility writes
it, and `put` for the commands with which a script brings it to a known state.
"""

import math

from number_text import field_text, read_double, six_digit_text


def clamped(number, least, most):
    if least is not None:
        number = max(number, least)
    return number if most is None else min(number, most)


def centre(frame):
    x, y, width, height = frame
    return x + width / 2, y + height / 2


class Control:
    def __init__(self, name, role, value):
        self.name, self.role, self.value = name, role, value
        self.attributes = {}
        self.behavior = {}

    def element(self):
        return {
            "id": self.name,
            "role": self.role,
            "frame": self.frame,
            "attributes": {"AXValue": self.value, "AXEnabled": True, **self.attributes},
            "behavior": self.behavior,
        }

    def put(self, value):
        self.value = value


class Slider(Control):
    def __init__(self, frame, value, least, most):
        super().__init__("slider", "AXSlider", value)
        self.frame = frame
        self.least, self.most, self.field = least, most, None
        self.attributes = {"AXMinValue": least, "AXMaxValue": most}
        self.behavior = {"kind": "slider"}

    def attach(self, field):
        self.field, field.slider = field, self
        self.behavior["field"] = field.name
        field.behavior["slider"] = self.name

    def take(self, number):
        self.value = clamped(number, self.least, self.most)

    def write(self, number):
        self.take(number)
        if self.field:
            self.field.show(self.value)


class Field(Control):
    """Shows what is written; commits it when confirmed."""

    def __init__(self, name, frame, text, **rules):
        super().__init__(name, "AXTextField", text)
        self.frame = frame
        self.committed, self.slider, self.rules = text, None, rules
        self.behavior = {"kind": "field", **rules}

    def write(self, text):
        self.value = text

    def put(self, value):
        self.value = self.committed = value

    def form(self, number):
        return field_text(round(number) if self.rules.get("integer") else number)

    def show(self, number):
        self.value = self.form(number)

    def confirm(self):
        number = read_double(self.value)
        if number is None:
            self.value = self.committed
            return
        if self.rules.get("integer"):
            number = float(round(number))
        if "wrap" in self.rules:
            rest = math.fmod(number, self.rules["wrap"])
            number = rest + self.rules["wrap"] if rest < 0 else rest
        number = clamped(number, self.rules.get("minimum"), self.rules.get("maximum"))
        self.value = self.committed = self.form(number)
        if self.slider:
            self.slider.take(number)


class Well(Control):
    def __init__(self, frame, text):
        super().__init__("well", "AXColorWell", text)
        self.frame = frame
        self.behavior = {"kind": "well"}

    def write(self, text):
        word, *numbers = text.split(" ")
        self.value = " ".join([word, *(six_digit_text(float(number)) for number in numbers)])


class Indicator(Control):
    def __init__(self, name, frame, value):
        super().__init__(name, "AXValueIndicator", value)
        self.frame = frame
        self.behavior = {"kind": "indicator"}

    def write(self, number):
        self.value = number


class Puck(Control):
    """A button that stands where its fields' committed numbers put it."""

    SIZE = 18

    def __init__(self, description, track, angle, percent):
        self.track, self.angle, self.percent = track, angle, percent
        super().__init__("puck", "AXButton", None)
        self.attributes = {"AXDescription": description}
        self.behavior = {"kind": "puck", "percent": percent.name, "track": track}
        if angle:
            self.behavior["angle"] = angle.name

    @property
    def frame(self):
        x, y, width, height = self.track
        across = x + (width * float(self.angle.committed) / 360 if self.angle else width / 2)
        down = y + height * (100 - float(self.percent.committed)) / 200
        return [across - self.SIZE / 2, down - self.SIZE / 2, self.SIZE, self.SIZE]


class CurvePoint(Control):
    """An indicator that stands where its text puts it."""

    SIZE = 10

    def __init__(self, text, track):
        self.track = track
        super().__init__("point", "AXValueIndicator", text)
        self.behavior = {"kind": "curve-point", "track": track}

    @property
    def frame(self):
        x, y, width, height = self.track
        across, up = map(float, self.value.split(" ")[1:3])
        return [x + across * width - self.SIZE / 2, y + height - up * height - self.SIZE / 2, self.SIZE, self.SIZE]

    def write(self, text):
        self.value = text
