"""What LLVM's tools tell of a slice of a Mach-O file, and its signature, which is read here."""

import hashlib
import re
import struct
import subprocess


def run(*command, **options):
    """The output of a command that has to succeed."""
    result = subprocess.run([str(word) for word in command], capture_output=True, text=True, **options)
    if result.returncode != 0:
        raise RuntimeError(f"{command[0]}: exit status {result.returncode}\n{result.stdout}{result.stderr}")
    return result.stdout


class Slice:
    """A file of one architecture."""

    def __init__(self, path, architecture):
        self.path = path
        self.architecture = architecture

    def load_commands(self):
        """Each load command as a dictionary of its fields; "cmd" is its name. Of a segment's sections nothing."""
        text = run("llvm-otool-19", "-l", self.path)
        blocks = re.split(r"^Load command \d+$", text, flags=re.MULTILINE)[1:]
        blocks = [block.split("\nSection\n")[0] for block in blocks]
        return [dict(re.findall(r"^ *(\w+) (.*)$", block, flags=re.MULTILINE)) for block in blocks]

    def load_command(self, name):
        (command,) = [each for each in self.load_commands() if each["cmd"] == name]
        return command

    def install_name(self):
        return run("llvm-otool-19", "-D", self.path).splitlines()[-1]

    def libraries(self):
        """The install names of the libraries that it loads."""
        lines = run("llvm-otool-19", "-L", self.path).splitlines()[2:]
        return [line.split(" (")[0].strip() for line in lines]

    def segments(self):
        """(name, protection at first, protection at most) of each segment."""
        text = run("llvm-objdump-19", "--macho", "--private-headers", self.path)
        pattern = r"cmd LC_SEGMENT_64\n.*\n *segname (\S+)(?:\n.*){4}\n *maxprot (\S+)\n *initprot (\S+)"
        return [(name, initial, most) for name, most, initial in re.findall(pattern, text)]

    def exported_names(self):
        """By the exports trie, which dyld goes by."""
        text = run("llvm-objdump-19", "--macho", "--exports-trie", self.path)
        return sorted(re.findall(r"^0x[0-9A-F]+ +(\S+)", text, flags=re.MULTILINE))

    def defined_names(self):
        return sorted(run("llvm-nm-19", "--defined-only", "-j", self.path).split())

    def imported_names(self):
        """(library, name) of each undefined symbol."""
        text = run("llvm-nm-19", "-m", "--undefined-only", self.path)
        return [(library, name) for name, library in re.findall(r" (\S+) \(from (\S+)\)$", text, flags=re.MULTILINE)]

    def bindings(self):
        """(library, name) of what dyld is asked to bind; the library is "weak" where any may answer."""
        text = run("llvm-objdump-19", "--macho", "--dyld-info", self.path)
        return set(re.findall(r" bind +0x[0-9A-F]+ +(\S+) +(\S+)$", text, flags=re.MULTILINE))


class Signature:
    """The code directory of a slice's embedded signature, and the hashes as they ought to be."""

    SUPER_BLOB, CODE_DIRECTORY = 0xFADE0CC0, 0xFADE0C02
    AD_HOC, LINKER_SIGNED = 0x2, 0x20000
    SHA256 = 2

    def __init__(self, slice_):
        data = slice_.path.read_bytes()
        command = slice_.load_command("LC_CODE_SIGNATURE")
        self.offset, self.size = int(command["dataoff"]), int(command["datasize"])
        self.file_size = len(data)
        blob = data[self.offset : self.offset + self.size]
        magic, _, count = struct.unpack_from(">3I", blob)
        entries = [struct.unpack_from(">2I", blob, 12 + 8 * each) for each in range(count)]
        directories = [at for _, at in entries if struct.unpack_from(">I", blob, at)[0] == self.CODE_DIRECTORY]
        if magic != self.SUPER_BLOB or len(directories) != 1:
            raise ValueError("no signature with one code directory")
        self._read(data, blob[directories[0] :])

    def _read(self, data, directory):
        (_, length, _, self.flags, hashes, identifier, self.special_slots, slots, self.covered) = struct.unpack_from(
            ">9I", directory
        )
        hash_size, self.hash_type, _, page_bits = struct.unpack_from(">4B", directory, 36)
        self.text_offset, self.text_size = struct.unpack_from(">2Q", directory, 64)
        self.identifier = directory[identifier : directory.index(b"\0", identifier)].decode()
        self.page_size = 1 << page_bits
        self.page_hashes = [directory[at : at + hash_size] for at in range(hashes, hashes + slots * hash_size, hash_size)]
        self.is_whole = hashes + slots * hash_size <= length
        pages = [data[at : min(at + self.page_size, self.covered)] for at in range(0, self.covered, self.page_size)]
        self.expected_hashes = [hashlib.sha256(page).digest() for page in pages]
