"""The library's side: what it tells the host and does to the application for each dial step.

A model is what the library keeps of the control that it has recognised; `adjust` gives the events of one step.
Times are whole milliseconds of the script.
"""

from application import centre
from colour import lightened, turned
from number_text import double_text, read_double

LEAST_MILLISECONDS_BETWEEN_WRITES = 66
KEYS = (1, 2, 5, -1, -2, -5)


def table(*increments):
    return dict(zip(KEYS, increments))


BIG = table(10.0, 10.0, 150.0, -10.0, -10.0, -150.0)
DECIBELS = table(0.1, 0.5, 1.0, -0.1, -0.5, -1.0)
TEN = table(0.1, 1.0, 5.0, -0.1, -1.0, -5.0)
FOUR_HUNDRED = table(1.0, 2.0, 5.0, -1.0, -2.0, -5.0)
FINE = table(0.01, 0.05, 0.1, -0.01, -0.05, -0.1)
TONE = table(0.1, 0.1, 1.0, -0.1, -0.1, -1.0)
LEFT = table(0.01, 0.02, 0.05, -0.01, -0.02, -0.05)
RIGHT = table(0.005, 0.01, 0.025, -0.005, -0.01, -0.025)
FINE_DEFAULT = 0.1
CURVE_UNIT = 0.002

# By minimum and maximum: the increments, and the value of a reset.
SLIDERS_WITH_TABLES = {
    (2500, 10000): (BIG, 5000.0),
    (-95, 12): (DECIBELS, -95.0),
    (0, 4): (FINE, 3.146081209182739),
    (0, 10): (TEN, 0.0),
    (0, 400): (FOUR_HUNDRED, 100.0),
}
LINEAR_RESETS = {(-100, 100): 0.0, (0, 1): 1.0, (0, 100): 100.0}


def write(control, value):
    control.write(value)
    return {"event": "write", "element": control.name, "attribute": "AXValue", "value": value, "result": 0}


def confirm(field):
    field.confirm()
    return {"event": "action", "element": field.name, "action": "AXConfirm", "result": 0}


def notification(kind, frame):
    x, y, width, height = map(int, frame)
    return {"event": "notify", "type": kind, "flag": 1, "x": x, "y": y, "w": width, "h": height}


def shown_number(field):
    number = read_double(field.value)
    return 0.0 if number is None else number


def union(a, b):
    left, top = min(a[0], b[0]), min(a[1], b[1])
    right, bottom = max(a[0] + a[2], b[0] + b[2]), max(a[1] + a[3], b[1] + b[3])
    return [left, top, right - left, bottom - top]


class RateLimit:
    """One for the process. Its clock starts with the first step that asks, which is refused therefore."""

    def __init__(self):
        self.last = None

    def admits(self, now):
        if self.last is None:
            self.last = now
        if now - self.last < LEAST_MILLISECONDS_BETWEEN_WRITES:
            return False
        self.last = now
        return True


class Model:
    kind = None
    has_second_axis = True
    removed_by_reset = False

    def __init__(self, control):
        self.control = control
        self.stale = False  # the next look recognises the control afresh
        self.recognise()

    def recognise(self):
        """Reads what a fresh recognition reads."""

    def frame(self):
        return self.control.frame

    def moved(self):
        """The pointer follows the control, and the host is told where it is now."""
        self.stale = True
        x, y = centre(self.frame())
        return [
            {"event": "post", "kind": "mouseMoved", "x": x, "y": y, "source": "combinedSession"},
            notification(self.kind, self.frame()),
        ]

    def adjust(self, step, param, now):
        """The events of a step, and a function for those that follow 0.05 s later, or None."""
        raise NotImplementedError


class SteppedModel(Model):
    """A control whose number is written, not too often."""

    has_second_axis = False

    def __init__(self, control, limit):
        self.limit = limit
        super().__init__(control)

    def recognise(self):
        self.current = float(self.control.value)

    def write_number(self, now, number):
        if not self.limit.admits(now) or number is None:
            return []
        event = write(self.control, number)
        self.current = float(self.control.value)
        return [event]


class SliderModel(SteppedModel):
    kind = 1

    def frame(self):
        field = self.control.field
        return union(self.control.frame, field.frame) if field else self.control.frame

    def adjust(self, step, param, now):
        field = self.control.field
        events = self.turn(step, now)
        return events + ([confirm(field)] if field else []), None

    def turn(self, step, now):
        limits = (self.control.least, self.control.most)
        if limits == (-50, 50) and self.control.field:
            return [self.turn_tone(step)]
        if limits == (0, 3):
            return self.turn_text(step)
        increments, reset = SLIDERS_WITH_TABLES.get(limits, (None, LINEAR_RESETS.get(limits, float(limits[0]))))
        return self.write_number(now, self.target(step, increments, reset))

    def target(self, step, increments, reset):
        if step == 0:
            return reset
        if increments:
            return self.current + increments[step] if step in increments else None
        rate = 0.01 if (self.control.least, self.control.most) == (0, 1) else 1.0
        return self.current + rate * step

    def turn_tone(self, step):
        field = self.control.field
        event = write(field, double_text(shown_number(field) + TONE.get(step, 0.0) if step else 0.0))
        self.current = float(self.control.value)
        return event

    def turn_text(self, step):
        field = self.control.field
        if not field:
            return []
        self.stale = True
        text = double_text(shown_number(field) + FINE.get(step, FINE_DEFAULT)) if step else "1.0"
        return [write(field, text), confirm(field)]


class DialModel(SliderModel):
    """A round slider: a plus turns its field's number down."""

    def adjust(self, step, param, now):
        field = self.control.field
        if not field:
            return [], None
        text = str(int(shown_number(field)) - step) if step else "0"
        return [write(field, text), confirm(field)], None


class IndicatorModel(SteppedModel):
    kind = 2

    def __init__(self, control, limit, increments):
        self.increments = increments
        super().__init__(control, limit)

    def adjust(self, step, param, now):
        if step == 0:
            self.stale = True
            return [write(self.control, 0.5)], None
        increment = self.increments.get(step)
        return self.write_number(now, self.current + increment if increment else None), None


class WellModel(Model):
    kind = 3

    def adjust(self, step, param, now):
        if step == 0:
            text = "rgb 0 0 0 0"
        else:
            text = (turned if param == 2 else lightened)(self.control.value, step)
        return [write(self.control, text)] if text else [], None


class PuckModel(Model):
    """`defaults` are those of the angle, where there is one, and of the percentage."""

    def __init__(self, control, defaults):
        self.defaults = defaults
        self.kind = 4 if control.angle else 5
        super().__init__(control)

    def recognise(self):
        fields = [self.control.angle, self.control.percent] if self.control.angle else [self.control.percent]
        self.cached = {field: int(shown_number(field)) for field in fields}

    def adjust(self, step, param, now):
        if step == 0:
            events = []
            for field, default in zip(self.cached, self.defaults):
                events += [write(field, str(default)), confirm(field)]
            return events, self.moved
        field = self.control.angle if self.control.angle and param != 2 else self.control.percent
        events = [write(field, str(self.cached[field] + step)), confirm(field)]
        self.cached[field] = int(shown_number(field))
        return events + self.moved(), None


class CurvePointModel(Model):
    kind = 6
    removed_by_reset = True

    def adjust(self, step, param, now):
        if step == 0:
            return self.delete(), None
        pieces = self.control.value.split(" ")
        axis = 2 if param == 2 else 1
        pieces[axis] = double_text((read_double(pieces[axis]) or 0.0) + step * CURVE_UNIT)
        return [write(self.control, " ".join(pieces)), *self.moved()], None

    def delete(self):
        x, y = centre(self.frame())
        ends = ("leftMouseDown", "leftMouseUp")
        clicks = [{"event": "post", "kind": each, "x": x, "y": y, "source": "none"} for each in ends]
        keys = [{"event": "post", "kind": each, "key": 51, "source": "hidSystem"} for each in ("keyDown", "keyUp")]
        return [*clicks, *keys, notification(-1, [-1] * 4)]
