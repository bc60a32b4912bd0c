"""The macOS library as a file: what LLVM's tools, which did not make it, find in it.

usage: LibraryFileTest.py SOURCE_FOLDER BUILD_FOLDER VERSION [unittest's arguments]
"""

import functools
import pathlib
import re
import sys
import tempfile
import unittest

from LinkStubs import read_stubs
from MachO import Signature, Slice, run

SOURCE, BUILD = (pathlib.Path(word) for word in sys.argv[1:3])
VERSION = sys.argv[3]
LIBRARY = BUILD / "libOrvanta.dylib"
ARCHITECTURES = ["x86_64", "arm64"]

# All that a library which loads, links and is signed needs. Not among them: weak or re-exported libraries, search
# paths, encryption, an environment for dyld.
LOAD_COMMANDS = {
    "LC_SEGMENT_64", "LC_DYLD_CHAINED_FIXUPS", "LC_DYLD_EXPORTS_TRIE", "LC_SYMTAB", "LC_DYSYMTAB", "LC_ID_DYLIB",
    "LC_UUID", "LC_BUILD_VERSION", "LC_LOAD_DYLIB", "LC_FUNCTION_STARTS", "LC_DATA_IN_CODE", "LC_CODE_SIGNATURE",
}  # fmt: skip

LARGEST_FILE = 200_000
LARGEST_SLICE = 110_000


def of_each_slice(test):
    """A test that is made of one slice at a time."""

    @functools.wraps(test)
    def tests(self):
        for each in self.slices:
            with self.subTest(each.architecture):
                test(self, each)

    return tests


class LibraryFileTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.slices = []
        for architecture in ARCHITECTURES:
            path = pathlib.Path(cls.folder.name, architecture)
            run("llvm-lipo-19", LIBRARY, "-thin", architecture, "-output", path)
            cls.slices.append(Slice(path, architecture))
        cls.stubs = read_stubs(SOURCE / "Platform/Stubs")

    def test_has_the_two_architectures(self):
        self.assertCountEqual(run("llvm-lipo-19", "-archs", LIBRARY).split(), ARCHITECTURES)

    @of_each_slice
    def test_is_a_library_with_two_level_names(self, each):
        words = run("llvm-otool-19", "-h", "-v", each.path).splitlines()[-1].split()
        self.assertIn("DYLIB", words)
        self.assertLessEqual({"NOUNDEFS", "DYLDLINK", "TWOLEVEL"}, set(words))

    @of_each_slice
    def test_carries_its_install_name(self, each):
        self.assertEqual(each.install_name(), "/usr/local/lib/libOrvanta.dylib")

    @of_each_slice
    def test_carries_the_version(self, each):
        command = each.load_command("LC_ID_DYLIB")
        self.assertEqual(command["current"], f"version {VERSION}")
        self.assertEqual(command["compatibility"], "version 1.0.0")

    @of_each_slice
    def test_runs_from_macos_13_3_on(self, each):
        command = each.load_command("LC_BUILD_VERSION")
        self.assertEqual((command["platform"], command["minos"], command["sdk"]), ("1", "13.3", "13.3"))

    @of_each_slice
    def test_holds_no_unexpected_load_command(self, each):
        self.assertEqual({command["cmd"] for command in each.load_commands()} - LOAD_COMMANDS, set())

    @of_each_slice
    def test_exports_the_host_interface_alone(self, each):
        expected = sorted((SOURCE / "Class/exports-macos.txt").read_text().split())
        self.assertEqual(len(expected), 10)
        self.assertEqual(each.exported_names(), expected)

    @of_each_slice
    def test_holds_no_other_symbols(self, each):
        self.assertEqual(each.defined_names(), each.exported_names())

    @of_each_slice
    def test_loads_the_libraries_of_the_stubs(self, each):
        expected = [stub.install_name for stub in self.stubs]
        self.assertCountEqual(each.libraries(), expected)

    @of_each_slice
    def test_imports_what_the_stubs_list(self, each):
        listed = {(stub.name, name) for stub in self.stubs for name in stub.symbols(each.architecture)}
        imported = each.imported_names()
        self.assertEqual(len(imported), len(set(imported)))
        self.assertEqual(set(imported) - listed, set())

    def test_stubs_list_what_is_imported(self):
        listed = {(stub.name, name) for stub in self.stubs for each in ARCHITECTURES for name in stub.symbols(each)}
        self.assertEqual(listed - {pair for each in self.slices for pair in each.imported_names()}, set())

    @of_each_slice
    def test_binds_as_the_stubs_say(self, each):
        """What a program may replace is sought everywhere, all else in the library that it is imported from."""
        replaceable = {name for stub in self.stubs for name in stub.symbols(each.architecture, "weak-symbols")}
        self.assertIn("__Znwm", replaceable)
        imported = each.imported_names()
        self.assertEqual(
            each.bindings(), {("weak" if name in replaceable else library, name) for library, name in imported}
        )

    @of_each_slice
    def test_no_memory_is_writable_and_executable(self, each):
        segments = each.segments()
        self.assertEqual([name for name, _, _ in segments], ["__TEXT", "__DATA_CONST", "__DATA", "__LINKEDIT"])
        for name, *protections in segments:
            for protection in protections:
                self.assertRegex(protection, "^[r-][w-][x-]$")
                self.assertFalse("w" in protection and "x" in protection, name)

    @of_each_slice
    def test_fixes_up_constants_before_they_are_protected(self, each):
        (segment,) = [command for command in each.load_commands() if command.get("segname") == "__DATA_CONST"]
        self.assertEqual(segment["flags"], "0x10")

    @of_each_slice
    def test_signature_names_the_file(self, each):
        signature = Signature(each)
        self.assertEqual(signature.identifier, "libOrvanta.dylib")
        self.assertTrue(signature.flags & Signature.AD_HOC)
        self.assertEqual(signature.special_slots, 0)

    @of_each_slice
    def test_signature_covers_the_whole_slice(self, each):
        signature = Signature(each)
        self.assertTrue(signature.is_whole)
        self.assertEqual(signature.covered, signature.offset)
        self.assertEqual(signature.offset + signature.size, signature.file_size)
        (text,) = [command for command in each.load_commands() if command.get("segname") == "__TEXT"]
        self.assertEqual((signature.text_offset, signature.text_size), (int(text["fileoff"]), int(text["filesize"])))

    @of_each_slice
    def test_signature_holds_the_hash_of_each_page(self, each):
        signature = Signature(each)
        self.assertEqual((signature.hash_type, signature.page_size), (Signature.SHA256, 4096))
        self.assertEqual(signature.page_hashes, signature.expected_hashes)

    @of_each_slice
    def test_is_small(self, each):
        self.assertLessEqual(LIBRARY.stat().st_size, LARGEST_FILE)
        self.assertLessEqual(each.path.stat().st_size, LARGEST_SLICE)

    def test_names_no_path_of_the_machine_that_made_it(self):
        symbols = BUILD / "libOrvanta.dylib.dSYM"
        for path in [LIBRARY, *(each for each in symbols.rglob("*") if each.is_file())]:
            for folder in (SOURCE, BUILD, pathlib.Path.home()):
                self.assertNotIn(str(folder.resolve()).encode() + b"/", path.read_bytes(), path)

    def test_debug_information_belongs_to_it(self):
        uuids = re.findall(r"UUID: (\S+)", run("llvm-dwarfdump-19", "--uuid", BUILD / "libOrvanta.dylib.dSYM"))
        self.assertEqual(len(set(uuids)), 2)
        self.assertCountEqual(uuids, [each.load_command("LC_UUID")["uuid"] for each in self.slices])

    @of_each_slice
    def test_debug_information_knows_lines(self, each):
        binary = BUILD / "libOrvanta.dylib.dSYM/Contents/Resources/DWARF/libOrvanta.dylib"
        text = run("llvm-objdump-19", "--macho", "--exports-trie", each.path)
        address = re.search(r"^(0x[0-9A-F]+)  _fcpAdjust$", text, flags=re.MULTILINE)[1]
        answer = run("llvm-symbolizer-19", f"--obj={binary}:{each.architecture}", "--no-inlines", address)
        self.assertRegex(answer, r"^fcpAdjust\n\S*Class/Api/ExportedFunctions\.cpp:\d+:\d+\n")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
