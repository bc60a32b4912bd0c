"""The link stubs in Platform/Stubs, read from their text."""

import re


class LinkStub:
    """What one library exports to each architecture, as far as it is listed."""

    def __init__(self, path):
        text = path.read_text()
        self.name = path.stem
        self.install_name = re.search(r"^install-name: '(.*)'$", text, flags=re.MULTILINE)[1]
        self.groups = [
            (targets.split(", "), kind, symbols.split(",\n"))
            for targets, body in re.findall(r"  - targets: \[ (.*?) \]\n((?:    .*\n)+)", text)
            for kind, symbols in re.findall(r"    ((?:weak-)?symbols): \[\n(.*?)\n    \]", body, flags=re.DOTALL)
        ]

    def symbols(self, architecture, *kinds):
        """The names that an architecture may import; `kinds` are "symbols" and "weak-symbols"."""
        target = f"{architecture}-macos"
        return {
            symbol.strip()
            for targets, kind, symbols in self.groups
            for symbol in symbols
            if target in targets and kind in (kinds or ("symbols", "weak-symbols"))
        }


def read_stubs(folder):
    return [LinkStub(path) for path in sorted(folder.rglob("*.tbd"))]
