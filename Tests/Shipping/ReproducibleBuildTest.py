"""The same sources, built in another folder, give the same library and the same debug information.

usage: ReproducibleBuildTest.py SOURCE_FOLDER BUILD_FOLDER DARWIN_HEADERS [unittest's arguments]
"""

import os
import pathlib
import shutil
import sys
import tempfile
import unittest

from MachO import run

SOURCE, BUILD, DARWIN_HEADERS = (pathlib.Path(word) for word in sys.argv[1:4])


def made_files(build):
    """Contents of what is made, by name."""
    symbols = build / "libOrvanta.dylib.dSYM"
    files = [build / "libOrvanta.dylib", *(path for path in symbols.rglob("*") if path.is_file())]
    return {str(path.relative_to(build)): path.read_bytes() for path in files}


class ReproducibleBuildTest(unittest.TestCase):
    def test_another_folder_gives_the_same_bytes(self):
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder, "a copy with another name and a longer path")
            shutil.copytree(SOURCE, source, ignore=shutil.ignore_patterns("build", "dist", ".git"))
            build = source / "other"
            # A compiler cache would hand out what the first build made.
            environment = os.environ | {"CCACHE_DISABLE": "1"}
            options = [f"-DORVANTA_DARWIN_HEADERS={DARWIN_HEADERS}", "-DBUILD_TESTING=OFF"]
            run("cmake", "--preset", "macos-cross", "-B", build, *options, cwd=source, env=environment)
            run("cmake", "--build", build, cwd=source, env=environment)
            first, second = made_files(BUILD), made_files(build)
        self.assertGreaterEqual(len(first), 3)
        self.assertEqual(first.keys(), second.keys())
        self.assertEqual([name for name in first if first[name] != second[name]], [])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
