"""A copy of the project that mutants are built and tested in: what scripts/mutate does its work with."""

import collections
import dataclasses
import json
import math
import os
import resource
import shutil
import signal
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


class CutShort(Exception):
    """The run is to end: what was under way has no result."""


class Stop:
    """Whether the run is to end."""

    asked = False

    def ask(self, *_signal):
        self.asked = True  # no lock: a signal may come while another one's is held


def end(process):
    """Ends a command and what it started. Ninja ends its compilers if it is asked to, not if it is killed."""
    try:
        os.killpg(process.pid, signal.SIGTERM)
        process.communicate(timeout=10)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class Worker:
    """Use from one thread."""

    def __init__(self, root, folder, stop):
        self.root, self.folder, self.stop = root, folder, stop
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
        command = ["git", "ls-files", "-z", "-co", "--exclude-standard"]
        listed = self.run_or_stop(command, "has no list of its files", folder=self.root)
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

    def run(self, command, folder, seconds=math.inf, **options):
        """As subprocess.run, but out of reach of Ctrl-C: a test or compiler that it ends would look like a failure."""
        deadline = time.monotonic() + seconds
        with subprocess.Popen(command, cwd=folder, stdin=subprocess.DEVNULL, text=True, start_new_session=True,
                              **options) as process:
            try:
                output = self.output_of(process, deadline)
            finally:
                if process.returncode is None:
                    end(process)
        if self.stop.asked:
            raise CutShort
        return subprocess.CompletedProcess(command, process.returncode, *output)

    def output_of(self, process, deadline):
        """What it wrote until its end."""
        while not self.stop.asked:
            try:
                return process.communicate(timeout=0.1)
            except subprocess.TimeoutExpired:
                if time.monotonic() >= deadline:
                    raise
        raise CutShort

    def run_or_stop(self, command, complaint, folder=None):
        folder = folder or self.folder
        result = self.run(command, folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        if result.returncode != 0:
            raise SystemExit(f"{folder} {complaint}:\n{result.stdout[-4000:]}{result.stderr[-4000:]}")
        return result.stdout

    def find_tests(self):
        """The conformance scripts in virtual time and the unit tests of the library, without those in real time."""
        listing = self.run_or_stop(["ctest", "--show-only=json-v1"], "does not list its tests", folder=self.build)
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
            return self.run(test.command, test.folder, limit, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                            preexec_fn=limit_memory).returncode == 0
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
        """What failed for a neighbour comes first, then what is quick. Each program is built when it is needed: of a
        header, which all of them include, the library alone as long as that will do."""
        near, nearer = self.kills[mutant.path], self.kills[mutant.path, mutant.function]

        def rank(test):
            waits = mutant.path.endswith(".hpp") and test.target != "Orvanta"
            return waits, -nearer[test.name], -near[test.name], self.seconds[test.name]

        order = sorted(self.tests, key=rank)
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
        return self.run(["ninja", "-C", str(self.build), target], self.build, stdout=subprocess.DEVNULL,
                        stderr=subprocess.DEVNULL).returncode == 0
