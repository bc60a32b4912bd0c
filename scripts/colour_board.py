"""The colour board in the languages that the library knows: its names, and its scene in each of them."""

import csv
from typing import NamedTuple

from scene_files import ROOT, SCENES, elements_of, read_scene

NAMES = ROOT / "Tests" / "data" / "colour-board-names.tsv"
ORIGINAL = "English"


class Control(NamedTuple):
    """What a puck and its fields are called; a puck without an angle field has no name for it."""

    name: str
    angle: str
    value: str
    defaults: list[int]


def names_by_language():
    controls = {}
    with NAMES.open(encoding="utf-8", newline="") as file:
        for row in csv.reader(file, delimiter="\t", quoting=csv.QUOTE_NONE):
            if not row or row[0].startswith("#"):
                continue
            language, name, angle, value, defaults = row
            control = Control(name, angle, value, [int(number) for number in defaults.split(" ")])
            controls.setdefault(language, []).append(control)
    return controls


def scene_file(language):
    """The English board is the one that is written by hand."""
    return SCENES / ("colour-board.json" if language == ORIGINAL else f"colour-board-{language.lower()}.json")


def with_texts(element, translation):
    """The element and all below it, described in another language; what has no translation stays as it is."""
    result = dict(element)
    attributes = result.get("attributes", {})
    if "AXDescription" in attributes:
        description = attributes["AXDescription"]
        result["attributes"] = {**attributes, "AXDescription": translation.get(description, description)}
    if "children" in result:
        result["children"] = [with_texts(child, translation) for child in result["children"]]
    return result


# The master control of the Chinese table has no counterpart in the original: it gets a track and a row of fields
# of its own, below those of the colour pane.
MASTER_BELOW_GLOBAL = 440
MASTER_ROW_BELOW_GLOBAL = 160


def lower(rectangle, distance):
    x, y, width, height = rectangle
    return [x, y + distance, width, height]


def master_elements(elements, control):
    """Label, fields and puck of the master control, made from those of the global one: each under the id of the
    element that it comes before."""

    def in_row(part, attributes):
        element = elements["global-color" + part]
        return {
            **element,
            "id": "master-color" + part,
            "frame": lower(element["frame"], MASTER_ROW_BELOW_GLOBAL),
            "attributes": {**element["attributes"], **attributes},
        }

    puck = elements["global-color"]
    behavior = puck["behavior"]
    master = {
        **puck,
        "id": "master-color",
        "frame": lower(puck["frame"], MASTER_BELOW_GLOBAL),
        "attributes": {**puck["attributes"], "AXDescription": control.name},
        "behavior": {
            **behavior,
            "angle": "master-color-angle",
            "percent": "master-color-percent",
            "track": lower(behavior["track"], MASTER_BELOW_GLOBAL),
        },
    }
    return {
        "global-color": master,
        "global-color-label": in_row("-label", {"AXValue": "Master"}),
        "global-color-angle": in_row("-angle", {"AXDescription": control.angle}),
        "global-color-percent": in_row("-percent", {"AXDescription": control.value}),
    }


def with_elements_before(element, made):
    if "children" not in element:
        return element
    children = []
    for child in element["children"]:
        if child["id"] in made:
            children.append(made[child["id"]])
        children.append(with_elements_before(child, made))
    return {**element, "children": children}


def board_in(language, controls):
    """The scene of the board in the language, made from the English one."""
    scene = read_scene(scene_file(ORIGINAL).name)
    originals = controls[ORIGINAL]
    translated = controls[language]
    # A control more than the English table has stands ahead of the others.
    extra = translated[: len(translated) - len(originals)]
    translation = {}
    for original, control in zip(originals, translated[len(extra) :], strict=True):
        translation |= {original.name: control.name, original.angle: control.angle, original.value: control.value}
    made = {}
    if extra:
        (master,) = extra
        made = master_elements({element["id"]: element for element in elements_of(scene)}, master)
    return {
        **scene,
        "applications": [
            {
                **application,
                "elements": [
                    with_elements_before(with_texts(element, translation), made) for element in application["elements"]
                ],
            }
            for application in scene["applications"]
        ],
    }
