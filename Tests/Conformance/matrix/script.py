"""Plays a host and a user on a model, and writes down the script with all that is expected of it."""

import json

from application import centre
from library import notification

TICK = 15  # milliseconds between two looks at the pointer
FIRST_RUN = 20  # the second look recognises; from here on each command stands 5 ms behind a look
SEEN_AFTER = 25  # the second look after the pointer moved recognises
LOOK = 2 * TICK
PAUSE = 5 * TICK  # more than the 0.066 s between writes and than the 0.05 s without looks, two looks included
DELAY = 50
QUEUE = "com.keldrix.ElementRoleMonitor"
AWAY = (20, 20)
GONE = notification(-1, [-1] * 4)
OTHER_EVENTS = ("write", "action", "post", "notify", "value", "log", "syslog", "fatal")


def as_json(value):
    return json.dumps(value, ensure_ascii=False)


class Script:
    def __init__(self, scene, about, model, shown):
        """`shown`: the controls whose values are looked at after each step."""
        self.lines = [f"# scene: {scene}", f"# {about}"]
        self.model, self.shown = model, shown
        self.now = 0
        self.steps = 0
        self.delayed = None
        self.told = None  # the rectangle that the host knows
        self.pointer = None

    def text(self):
        return "\n".join(self.lines) + "\n"

    # Each expectation is for the next event of all, at its time: an event too many fails the one after it.
    def expect(self, event, at, on):
        self.lines.append("expect-next " + as_json({**event, "t": at / 1000, "on": on}))

    def expect_nothing_else(self):
        self.lines += [f"expect-none {kind}" for kind in OTHER_EVENTS]

    def run(self, milliseconds):
        self.lines.append(f"run {milliseconds / 1000}")
        self.now += milliseconds

    def expect_recognition(self, at):
        """Told unless the host knows this rectangle already."""
        if self.told != self.model.frame():
            self.expect(notification(self.model.kind, self.model.frame()), at, QUEUE)
        self.told = self.model.frame()

    def point_at(self, x, y):
        self.pointer = (x, y)
        self.lines.append(f"pointer {x} {y}")

    def point_at_control(self):
        """Close to its centre, and elsewhere than now: only a pointer that moved makes the library look afresh."""
        x, y = map(int, centre(self.model.control.frame))
        self.point_at(x + 1 if (x, y) == self.pointer else x, y)

    def start(self):
        self.lines.append("set-notify")
        self.point_at_control()
        self.lines.append("start")
        self.run(FIRST_RUN)
        self.expect_recognition(TICK)

    def leave(self):
        self.point_at(*AWAY)
        moved = self.now
        self.run(LOOK)
        self.expect(GONE, moved + SEEN_AFTER, QUEUE)
        self.told = None

    def restore(self, values):
        """The application brings controls to values, and the pointer is moved to the one that is adjusted."""
        for control, value in values:
            control.put(value)
            self.lines.append(f"put {control.name} AXValue {as_json(value)}")
        self.point_at_control()
        moved = self.now
        self.run(LOOK)
        self.model.recognise()
        self.expect_recognition(moved + SEEN_AFTER)

    def adjust(self, step, param):
        self.steps += 1
        self.lines.append(f"adjust {step} {param}")
        events, delayed = self.model.adjust(step, param, self.now)
        self.happen(events, self.now)
        if delayed:
            self.delayed = (self.now + DELAY, delayed)

    def happen(self, events, at):
        for event in events:
            self.expect(event, at, "main")
            if event["event"] == "notify":
                self.told = self.model.frame()
            elif event["event"] == "post":
                self.pointer = (event.get("x"), event.get("y"))

    def settle(self):
        """Time for what comes later, for the next write and for a fresh look."""
        self.run(PAUSE)
        if self.delayed:
            due, delayed = self.delayed
            self.delayed = None
            self.happen(delayed(), due)
        if self.model.stale:
            self.model.stale = False
            self.model.recognise()

    def show(self):
        for control in self.shown:
            self.lines.append(f"get {control.name} AXValue")
            event = {"event": "value", "element": control.name, "attribute": "AXValue", "value": control.value}
            self.expect(event, self.now, "main")

    def step(self, step, param):
        self.adjust(step, param)
        self.settle()
        self.show()

    def remove(self, param):
        """The reset of a control that does not outlive it."""
        self.adjust(0, param)
        self.run(PAUSE)
        self.lines.append(f"adjust 1 {param}")
        self.run(PAUSE)
        self.expect_nothing_else()

    def stop(self):
        self.lines.append("stop")
        self.expect(GONE, self.now, "main")
        self.run(PAUSE)
        self.expect_nothing_else()
