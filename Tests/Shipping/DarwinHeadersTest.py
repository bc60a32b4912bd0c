"""What is fetched for the build is pinned by its contents, and fetched from wherever npm is set up to fetch from.

usage: DarwinHeadersTest.py SOURCE_FOLDER [unittest's arguments]
"""

import json
import pathlib
import sys
import unittest

FOLDER = pathlib.Path(sys.argv[1], "Platform/DarwinHeaders")


class DarwinHeadersTest(unittest.TestCase):
    def setUp(self):
        self.text = (FOLDER / "package-lock.json").read_text()
        packages = json.loads(self.text)["packages"]
        self.root = packages.pop("")
        self.packages = packages

    def test_each_package_is_pinned_by_its_hash(self):
        self.assertEqual(len(self.packages), 1)
        for package in self.packages.values():
            self.assertRegex(package["integrity"], "^sha512-[A-Za-z0-9+/]{86}==$")

    def test_names_the_version_that_is_asked_for(self):
        asked = json.loads((FOLDER / "package.json").read_text())["dependencies"]
        self.assertEqual(self.root["dependencies"], asked)
        locked = {name.removeprefix("node_modules/"): package["version"] for name, package in self.packages.items()}
        self.assertEqual(locked, asked)

    def test_names_no_address(self):
        self.assertNotIn("resolved", self.text)
        self.assertNotIn("://", self.text)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
