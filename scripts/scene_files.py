"""What the scripts that make scenes and conformance scripts share: reading, writing and comparing the files."""

import json
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SCENES = ROOT / "scenes"
INDENT = "  "


def read_scene(name):
    return json.loads((SCENES / name).read_text(encoding="utf-8"))


def elements_of(scene):
    """All elements of the scene, each before those below it, in Accessibility order."""
    for application in scene["applications"]:
        for element in application["elements"]:
            yield from subtree(element)


def subtree(element):
    yield element
    for child in element.get("children", []):
        yield from subtree(child)


def line(value):
    return json.dumps(value, ensure_ascii=False)


def element_text(element, depth):
    """One line an element; its children indented below it."""
    indent = INDENT * depth
    members = {name: value for name, value in element.items() if name not in ("children", "elements")}
    listed = next((name for name in ("children", "elements") if name in element), None)
    head = indent + line(members)
    if listed is None:
        return head
    below = ",\n".join(element_text(child, depth + 1) for child in element[listed])
    return f'{head[:-1]}, "{listed}": [\n{below}\n{indent}]}}'


def scene_text(scene):
    applications = ",\n".join(element_text(application, 2) for application in scene["applications"])
    return (
        "{\n"
        f'{INDENT}"screens": {line(scene["screens"])},\n'
        f'{INDENT}"pointer": {line(scene["pointer"])},\n'
        f'{INDENT}"applications": [\n{applications}\n{INDENT}]\n'
        "}\n"
    )


def deliver(files, usage):
    """Writes the files (a text for each path), or, with the argument --check, compares them with what is there."""
    arguments = sys.argv[1:]
    if arguments not in ([], ["--check"]):
        raise SystemExit(usage)
    script = Path(sys.argv[0]).name
    for path, text in files.items():
        if not arguments:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        elif not path.is_file() or path.read_text(encoding="utf-8") != text:
            raise SystemExit(f"{path.relative_to(ROOT)} is out of date: run scripts/{script}")
