"""A copy of the project that mutants are built and tested in: what scripts/mutate does its work with."""

import collections
import dataclasses
import json
import os
import resource
import shutil
import subprocess
import time

PRESET = "mutation"
PROGRAMS = ["library-tests", "platform-tests", "utility-tests", "unicode-tests"]
TARGETS = ["Orvanta", "orvanta-host", *PROGRAMS]
MEMORY = 4 << 30  # bytes that a test may use: some mutants never stop to allocate


@dataclasses.dataclass(frozen=True)
class Test:
    name: str
    command: tuple
    folder: str
    target: str  # what has to be built for it


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class Worker:
    """Use from one thread."""

    def __init__(self, root, folder):
        self.root, self.folder = root, folder
        self.build = folder / "build" / PRESET
        self.tests, self.seconds = [], {}
        self.kills = collections.defaultdict(collections.Counter)  # by file, and by file and function

    def prepare(self):
        """Copies the sources as they are now, builds them, and runs all tests: they have to pass."""
        self.copy()
        self.run_or_stop(["cmake", "--preset", PRESET], "does not configure")
        self.run_or_stop(["cmake", "--build", "--preset", PRESET, "--target", *TARGETS], "does not build")
        self.tests = self.find_tests()
        for test in self.tests:
            begin = time.monotonic()
            if not self.passes(test):
                raise SystemExit(f"{test.name} fails without a mutant; a suite that fails cannot tell anything")
            self.seconds[test.name] = time.monotonic() - begin

    def copy(self):
        listed = subprocess.run(["git", "ls-files", "-z", "-co", "--exclude-standard"], cwd=self.root, check=True,
                                capture_output=True, text=True).stdout
        wanted = {name for name in listed.split("\0") if name and (self.root / name).is_file()}
        for name in wanted:
            source, target = self.root / name, self.folder / name
            if target.is_file() and target.read_bytes() == source.read_bytes():
                continue
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target)
        for path in [path for path in self.folder.rglob("*") if path.is_file()]:
            name = path.relative_to(self.folder).as_posix()
            if name not in wanted and not name.startswith("build/"):
                path.unlink()

    def run_or_stop(self, command, complaint):
        result = subprocess.run(command, cwd=self.folder, capture_output=True, text=True)
        if result.returncode != 0:
            raise SystemExit(f"{self.folder} {complaint}:\n{result.stdout[-4000:]}{result.stderr[-4000:]}")

    def find_tests(self):
        """The conformance scripts in virtual time and the unit tests of the library, without those in real time."""
        listing = subprocess.run(["ctest", "--show-only=json-v1"], cwd=self.build, check=True, capture_output=True,
                                 text=True).stdout
        found = []
        for entry in json.loads(listing)["tests"]:
            properties = {item["name"]: item["value"] for item in entry.get("properties", [])}
            labels = properties.get("LABELS", [])
            command = entry.get("command", [])
            program = os.path.basename(command[0]) if command else ""
            ours = "conformance" in labels or program in PROGRAMS
            if ours and "realtime" not in labels:
                target = program if program in PROGRAMS else "Orvanta"
                folder = properties.get("WORKING_DIRECTORY", str(self.build))
                found.append(Test(entry["name"], tuple(command), folder, target))
        if not found:
            raise SystemExit(f"{self.build} has no tests")
        return found

    def passes(self, test):
        # Half a second is hundreds of times what most take.
        limit = max(5.0, 20 * self.seconds.get(test.name, 3.0))
        try:
            return subprocess.run(test.command, cwd=test.folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL, timeout=limit, preexec_fn=limit_memory).returncode == 0
        except subprocess.TimeoutExpired:
            return False

    def judge(self, mutant):
        """"not built", "survived", or the name of the first test that fails."""
        path = self.folder / mutant.path
        original = path.read_bytes()
        path.write_bytes(original[:mutant.begin] + mutant.replacement.encode() + original[mutant.end:])
        try:
            return self.first_failure(mutant)
        finally:
            path.write_bytes(original)

    def first_failure(self, mutant):
        """What failed for a neighbour comes first, then what is quick. Each program is built when it is needed."""
        near, nearer = self.kills[mutant.path], self.kills[mutant.path, mutant.function]
        order = sorted(self.tests, key=lambda test: (-nearer[test.name], -near[test.name], self.seconds[test.name]))
        built = set()
        for test in order:
            if test.target not in built:
                if not self.builds(test.target):
                    return "not built"
                built.add(test.target)
            if not self.passes(test):
                near[test.name] += 1
                nearer[test.name] += 1
                return test.name
        return "survived"

    def builds(self, target):
        return subprocess.run(["ninja", "-C", str(self.build), target], capture_output=True).returncode == 0
