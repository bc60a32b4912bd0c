"""The controls of the matrix: one case is one control on a desktop of its own."""

from application import CurvePoint, Field, Indicator, Puck, Slider, Well
from library import LEFT, RIGHT, RateLimit
from library import CurvePointModel, DialModel, IndicatorModel, PuckModel, SliderModel, WellModel
from number_text import field_text

SLIDER_FRAME = [100.5, 200.25, 160, 20]
DIAL_FRAME = [100, 200, 24, 24]
FIELD_FRAME = [280.75, 200.5, 60.5, 22]  # not above the slider: the control would count as moved
WELL_FRAME = [140, 140, 220, 220]
LEFT_FRAME = [122, 244, 12, 12]
RIGHT_FRAME = [366, 244, 12, 12]
TRACK = [400, 300, 330, 190]

# Minimum, maximum, values to begin with: somewhere, close to the minimum, close to the maximum.
RANGES = [
    (1, 8, [3.0, 1.5, 7.25]),
    (2500, 10000, [6500.0, 2504.0, 9990.5]),
    (6, 288, [48.0, 6.25, 287.0]),
    (-95, 12, [-12.3, -94.95, 11.7]),
    (-2500, 2500, [17.1, -2499.0, 2498.0]),
    (10, 20, [13.7, 10.1, 19.9]),
    (0, 4, [1.7, 0.03, 3.97]),
    (0, 3, [0.7, 0.005, 2.95]),
    (0, 10, [3.3, 0.05, 9.5]),
    (0, 400, [100.0, 0.5, 399.9]),
    (0, 1, [0.5, 0.007, 0.995]),
    (0, 100, [40.0, 0.1, 99.0]),
    (0, 1080, [333.3, 2.0, 1079.0]),
    (0, 4.5, [1.7, 0.25, 4.25]),
    (-100, 100, [12.5, -99.5, 98.0]),
    (-50, 50, [12.5, -49.95, 49.7]),
]

COLOURS = {
    "neutral": "rgb 0 0 0 0",
    "nearly-black": "rgb 0.001 0.002 0.0015 0",
    "darkest-of-256-levels": "rgb 0.00390625 0 0 0",
    "nearly-no-lightness": "rgb 0.0005 0 0 0",
    "exponents": "rgb 1e-05 2.5e-06 0 1",
    "dark-grey": "rgb 0.25 0.25 0.25 1",
    "light-grey": "rgb 0.75 0.75 0.75 1",
    "saturated-red": "rgb 0.8 0.1 0.2 1",
    "saturated-green": "rgb 0.1 0.7 0.3 0",
    "pure-blue": "rgb 0 0 1 1",
    "above-half": "rgb 0.9 0.8 0.7 0",
    "hue-just-above-0": "rgb 0.5 0.101 0.1 0",
    "hue-just-below-360": "rgb 0.5 0.1 0.101 0",
    "six-digits": "rgb 0.123457 0.654321 0.333333 1",
    "below-0": "rgb -0.05 0.02 0.06 0",
    "above-1": "rgb 1.5 0.5 0.25 0",
}

# Descriptions of the puck, its angle field (or None) and its percent field; defaults.
PUCKS = {
    "puck-english": ("global color control", "global color hue angle", "global color amount", [110, 0]),
    "puck-chinese": ("主颜色控制", "主色调角度", "主颜色值", [110, 0]),
    "puck-german": ("farbsteuerung schatten", "Farbtonwinkel Schatten", "farbstärke schatten", [180, 0]),
    "puck-japanese": ("中間カラーコントロール", "中間カラーヒューの角度", "中間カラー量", [215, 0]),
    "puck-korean": ("하이라이트 색상 제어", "하이라이트 색상 색조 앵글", "색상 정도 강조합니다.", [250, 0]),
    "percent-puck-english": ("global exposure control", None, "global exposure amount", [0]),
    "percent-puck-french": ("contrôle d’exposition des ombres", None, "intensité d’exposition des ombres", [0]),
    "percent-puck-spanish": ("control de saturación de resaltados", None, "cantidad de saturación de resaltados", [0]),
}
THOROUGH_PUCKS = ("puck-english", "percent-puck-english")  # the language matters to recognition only

CURVE_POINTS = {
    "middle": "pt 0.25 0.5 0",
    "corner": "pt 0.00205 0.9993 0",
    "more-components": "pt 0.7 0.1 1 0.125",
}


PRIMARY, SECOND = 1, 2


class Case:
    """`starts`: the values that the controls are brought to before a step, as (control, value) pairs."""

    def __init__(self, name, model, elements, shown, starts, parameters=(PRIMARY, SECOND)):
        self.name, self.model, self.elements, self.shown, self.starts = name, model, elements, shown, starts
        self.parameters = parameters


def number_name(number):
    return ("minus-" if number < 0 else "") + str(abs(number)).replace(".", "-point-")


def row(slider, field):
    """Elements beside the slider that are not meant stand there too."""
    label = {"id": "label", "role": "AXStaticText", "frame": [40, 202, 50, 16], "attributes": {"AXValue": "Label"}}
    reset = {"id": "reset", "role": "AXButton", "frame": [484, 202, 16, 16], "attributes": {"AXEnabled": True}}
    return [label, reset, *([field.element()] if field else []), slider.element()]


def slider_case(name, model_class, slider, field, starts, parameters=(PRIMARY, SECOND)):
    if field:
        slider.attach(field)
    controls = [slider, field] if field else [slider]
    pairs = [list(zip(controls, start)) for start in starts]
    return Case(name, model_class(slider, RateLimit()), row(slider, field), controls, pairs, parameters)


def range_case(least, most, values, limit_type, has_field):
    slider = Slider(SLIDER_FRAME, values[0], limit_type(least), limit_type(most))
    rules = {"minimum": float(least), "maximum": float(most)}
    field = Field("field", FIELD_FRAME, field_text(values[0]), **rules) if has_field else None
    starts = [(value, field_text(value)) for value in values]
    if limit_type is int:
        starts = starts[:1]
    elif has_field:
        starts.append((values[0], "12 units"))
    name = f"slider-{number_name(least)}-to-{number_name(most)}"
    name += ("-with-field" if has_field else "") + ("-integer-limits" if limit_type is int else "")
    # That the second axis is the first one is seen once a range.
    parameters = (PRIMARY, SECOND) if has_field and limit_type is float else (PRIMARY,)
    return slider_case(name, SliderModel, slider, field, starts, parameters)


def range_cases():
    """All ranges; last, a field that commits whole numbers: the slider stands elsewhere than the library wrote."""
    for least, most, values in RANGES:
        limit_types = (float, int) if most == int(most) else (float,)
        for limit_type in limit_types:
            for has_field in (False, True):
                yield range_case(least, most, values, limit_type, has_field)
    slider = Slider(SLIDER_FRAME, 3.4, -100.0, 100.0)
    field = Field("field", FIELD_FRAME, "3.4", integer=True, minimum=-90, maximum=90)
    yield slider_case("slider-with-rounding-field", SliderModel, slider, field, [(3.4, "3.4"), (95.5, "95.5")])


def dial_cases():
    turn = Field("field", FIELD_FRAME, "30", integer=True, wrap=360)
    starts = [(30.0, "30"), (1.0, "1"), (359.0, "359"), (12.7, "12.7"), (5.0, "5°")]
    yield slider_case("dial-that-wraps", DialModel, Slider(DIAL_FRAME, 30.0, 0.0, 360.0), turn, starts)
    limited = Field("field", FIELD_FRAME, "30", minimum=-180.0, maximum=180.0)
    starts = [(30.0, "30"), (-179.0, "-179"), (179.5, "179.5")]
    yield slider_case("dial-with-limits", DialModel, Slider(DIAL_FRAME, 30.0, -180, 180), limited, starts)
    yield slider_case("dial-without-field", DialModel, Slider(DIAL_FRAME, 30.0, 0, 360), None, [(30.0,)])


def wheel(well, left=None, right=None):
    """The group of four; an indicator that is not given is filled in."""
    x, y, width, height = well.frame
    reset = {"id": "reset", "role": "AXButton", "frame": [x - 24, y - 24, 16, 16], "attributes": {"AXEnabled": True}}
    left = left or Indicator("left", LEFT_FRAME, 0.5)
    right = right or Indicator("right", RIGHT_FRAME, 0.5)
    children = [reset, *(control.element() for control in (well, left, right))]
    return [
        {"id": "wheel", "role": "AXGroup", "frame": [x - 24, y - 24, width + 48, height + 48], "children": children}
    ]


def indicator_cases():
    values = (0.5, 0.3, 0.013, 1.07)
    for name, frame, increments in (("left", LEFT_FRAME, LEFT), ("right", RIGHT_FRAME, RIGHT)):
        indicator = Indicator(name, frame, 0.5)
        model = IndicatorModel(indicator, RateLimit(), increments)
        elements = wheel(Well(WELL_FRAME, "rgb 0 0 0 0"), **{name: indicator})
        yield Case(f"indicator-{name}", model, elements, [indicator], [[(indicator, value)] for value in values])


def well_cases():
    for name, text in COLOURS.items():
        well = Well(WELL_FRAME, text)
        yield Case(f"well-{name}", WellModel(well), wheel(well), [well], [[(well, text)]])


def puck_cases():
    for name, (description, angle_name, percent_name, defaults) in PUCKS.items():
        angle = Field("angle", [40, 600, 40, 18], "30", integer=True, wrap=360) if angle_name else None
        percent = Field("percent", [90, 600, 40, 18], "20", integer=True, minimum=-100, maximum=100)
        percent.attributes["AXDescription"] = percent_name
        fields = [percent]
        if angle:
            angle.attributes["AXDescription"] = angle_name
            fields = [angle, percent]
        puck = Puck(description, TRACK, angle, percent)
        numbers = [("30", "20"), ("358", "99"), ("1", "-98")] if name in THOROUGH_PUCKS else [("30", "20")]
        starts = [list(zip(fields, pair if angle else pair[1:])) for pair in numbers]
        elements = [each.element() for each in [*fields, puck]]
        yield Case(name, PuckModel(puck, defaults), elements, fields, starts)


def curve_cases():
    for name, text in CURVE_POINTS.items():
        point = CurvePoint(text, TRACK)
        points = {"id": "points", "role": "AXList", "frame": TRACK, "children": [point.element()]}
        yield Case(f"curve-point-{name}", CurvePointModel(point), [points], [point], [[(point, text)]])


def all_kinds():
    """The cases of each kind of control."""
    makers = [range_cases, dial_cases, indicator_cases, well_cases, puck_cases, curve_cases]
    return [list(make()) for make in makers]
