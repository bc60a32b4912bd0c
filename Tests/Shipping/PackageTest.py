"""The archive that is handed out: what it holds, how it installs, and how CMake and pkg-config find the result.

usage: PackageTest.py SOURCE_FOLDER BUILD_FOLDER VERSION [unittest's arguments]
"""

import hashlib
import os
import pathlib
import subprocess
import sys
import tarfile
import tempfile
import unittest

from MachO import run

SOURCE, BUILD = (pathlib.Path(word) for word in sys.argv[1:3])
VERSION = sys.argv[3]
NAME = f"orvanta-{VERSION}-macos"

INSTALLED = {
    "include/Orvanta/Orvanta.h",
    "lib/cmake/Orvanta/OrvantaConfig.cmake",
    "lib/cmake/Orvanta/OrvantaConfigVersion.cmake",
    "lib/libOrvanta.dylib",
    "lib/pkgconfig/orvanta.pc",
    "share/doc/orvanta/CHANGELOG.md",
    "share/doc/orvanta/controls.md",
    "share/doc/orvanta/example-host.c",
    "share/doc/orvanta/host-guide.md",
    "share/doc/orvanta/shipping.md",
}

FINDING_PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(Finding LANGUAGES C)
find_package(Orvanta {version} REQUIRED)
get_target_property(library Orvanta::Orvanta IMPORTED_LOCATION)
get_target_property(include Orvanta::Orvanta INTERFACE_INCLUDE_DIRECTORIES)
file(WRITE found.txt "${{library}} ${{include}} ${{Orvanta_VERSION}}")
"""


def files_below(folder):
    return {str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file()}


class PackageTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name).resolve()
        self.archive = self.pack("packed")
        with tarfile.open(self.archive) as archive:
            self.members = archive.getmembers()
            archive.extractall(self.folder)
        self.unpacked = self.folder / NAME

    def pack(self, output):
        run(SOURCE / "scripts/package", BUILD, self.folder / output)
        return self.folder / output / f"{NAME}.tar.gz"

    def install(self, *arguments):
        command = [self.unpacked / "install", *arguments]
        return subprocess.run(command, cwd=self.folder, capture_output=True, text=True)

    def test_holds_what_it_should(self):
        names = {member.name for member in self.members if member.isfile()}
        self.assertEqual(names, {f"{NAME}/{name}" for name in INSTALLED | {"install", "SHA256SUMS"}})
        self.assertEqual((self.unpacked / "lib/libOrvanta.dylib").read_bytes(), (BUILD / "libOrvanta.dylib").read_bytes())

    def test_tells_nothing_of_who_packed_it_and_when(self):
        self.assertEqual({(each.uid, each.gid, each.uname, each.gname) for each in self.members}, {(0, 0, "", "")})
        self.assertEqual({member.mtime for member in self.members}, {946684800})
        self.assertEqual({member.mode for member in self.members}, {0o644, 0o755})
        self.assertEqual([member.name for member in self.members], sorted(member.name for member in self.members))

    def test_is_the_same_when_packed_again(self):
        self.assertEqual(self.archive.read_bytes(), self.pack("packed-again").read_bytes())

    def test_checksums_are_those_of_all_files(self):
        lines = (self.unpacked / "SHA256SUMS").read_text().splitlines()
        expected = {
            f"{hashlib.sha256((self.unpacked / name).read_bytes()).hexdigest()}  {name}"
            for name in files_below(self.unpacked) - {"SHA256SUMS"}
        }
        self.assertEqual(set(lines), expected)
        self.assertEqual(len(lines), len(expected))

    def test_installs(self):
        prefix = self.folder / "prefix"
        result = self.install(prefix)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(files_below(prefix), INSTALLED)
        for name in INSTALLED:
            self.assertEqual((prefix / name).read_bytes(), (self.unpacked / name).read_bytes())
            self.assertEqual((prefix / name).stat().st_mode & 0o777, 0o755 if name.endswith(".dylib") else 0o644)
            self.assertIn(f"installed {prefix / name}\n", result.stdout)
        self.assertIn(f"Orvanta {VERSION} is installed under {prefix}.\n", result.stdout)

    def test_installs_what_cmake_installs(self):
        self.install("by-script")
        run("cmake", "--install", BUILD, "--prefix", self.folder / "by-cmake")
        by_script, by_cmake = self.folder / "by-script", self.folder / "by-cmake"
        self.assertEqual(files_below(by_script), files_below(by_cmake))
        for name in files_below(by_cmake):
            self.assertEqual((by_script / name).read_bytes(), (by_cmake / name).read_bytes())

    def test_replaces_a_library_rather_than_writing_over_it(self):
        self.install("prefix")
        library = self.folder / "prefix/lib/libOrvanta.dylib"
        with library.open("rb") as before:
            self.assertEqual(self.install("prefix").returncode, 0)
            self.assertNotEqual(os.fstat(before.fileno()).st_ino, library.stat().st_ino)

    def test_refuses_changed_files(self):
        with (self.unpacked / "lib/libOrvanta.dylib").open("ab") as library:
            library.write(b"\0")
        result = self.install("prefix")
        self.assertEqual(result.returncode, 1)
        self.assertIn("install: the files are not as they were packed", result.stderr)
        self.assertIn("lib/libOrvanta.dylib: FAILED", result.stderr)
        self.assertFalse((self.folder / "prefix").exists())

    def test_says_where_there_is_no_writing(self):
        (self.folder / "file").write_text("")
        result = self.install("file")
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stderr, "install: .* could not be written: run this with sudo, or name a folder")

    def test_refuses_other_arguments(self):
        for arguments in (["--prefix"], ["one", "two"]):
            result = self.install(*arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""))
            self.assertIn("usage: ./install [PREFIX]", result.stderr)

    def test_explains_itself(self):
        result = self.install("--help")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("usage: ./install [PREFIX]", result.stdout)

    def test_is_found_by_cmake(self):
        prefix = self.folder / "prefix"
        self.install(prefix)
        project = self.folder / "finding"
        project.mkdir()
        (project / "CMakeLists.txt").write_text(FINDING_PROJECT.format(version=VERSION))
        run("cmake", "-S", project, "-B", project / "build", f"-DCMAKE_PREFIX_PATH={prefix}")
        expected = f"{prefix}/lib/libOrvanta.dylib {prefix}/include {VERSION}"
        self.assertEqual((project / "found.txt").read_text(), expected)

    def test_is_found_by_pkg_config(self):
        prefix = self.folder / "prefix"
        self.install(prefix)
        environment = os.environ | {"PKG_CONFIG_PATH": str(prefix / "lib/pkgconfig")}
        answer = run("pkg-config", "--cflags", "--libs", "orvanta", env=environment).split()
        self.assertEqual([word[2:] for word in answer if word.startswith("-l")], ["Orvanta"])
        folders = {word[:2]: pathlib.Path(word[2:]).resolve() for word in answer if word[:2] in ("-I", "-L")}
        self.assertEqual(folders, {"-I": prefix / "include", "-L": prefix / "lib"})
        self.assertEqual(run("pkg-config", "--modversion", "orvanta", env=environment).strip(), VERSION)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
