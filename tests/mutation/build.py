"""Builds the tests with a copy of the sources that contains the mutants."""
import collections
import hashlib
import json
import shutil
import subprocess

from mutation import places, schemata

SEED = 20261122
FOLDERS = ("data", "models")


def run(*command):
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)


class MutantBuild:
    """The copy in build-mutants/source, its build, and the mutants in it."""

    def __init__(self, root, count):
        self.root = root
        self.folder = root / "build-mutants"
        self.copy = self.folder / "source"
        self.binaries = self.copy / "build"
        self._count = count
        self.found = 0
        self._drawn = []
        self.mutants = {}  # by their numbers, which begin with 1

    def make(self, programs):
        self._copy_sources()
        run("cmake", "--preset", "release", "-S", self.copy)
        self._choose_mutants()
        self._write_mutants()
        run("cmake", "--build", self.binaries, "--target", *programs)

    def _copy_sources(self):
        """All that git knows but for the mutated sources; an unchanged file keeps its time."""
        listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], check=True,
                                cwd=self.root, capture_output=True).stdout.decode().rstrip("\0").split("\0")
        for name in listed:
            source = self.root / name
            if not source.is_file() or is_mutated(name) and (self.copy / name).exists():
                continue
            content = source.read_bytes()
            if name == "data/CMakeLists.txt":
                content = (b"add_compile_options(-w)\n" + content
                           + b"target_sources(garage_data PRIVATE ../tests/mutation/mutant.cpp)\n")
            elif name == "models/CMakeLists.txt":
                content = b"add_compile_options(-w)\n" + content
            write_if_other(self.copy / name, content)
            shutil.copymode(source, self.copy / name)

    def _choose_mutants(self):
        """A fixed choice of all the mutants that compile."""
        files = [str(path.relative_to(self.root)) for folder in FOLDERS
                 for path in sorted((self.root / folder).glob("*.cpp"))]
        arguments = self._compiler_arguments()
        groups = places.compatible(self.root, files, arguments)
        found = dict(enumerate(places.find(self.root, groups, arguments)))
        wrong = schemata.rejected(self.root, groups, arguments, by_file(found))
        candidates = [mutant for number, mutant in found.items() if number not in wrong]
        self.found = len(candidates)
        self._drawn = drawn(candidates)[:self._count]
        self.mutants = dict(enumerate(sorted(self._drawn), 1))

    def first(self, count):
        """The numbers of those drawn first."""
        chosen = set(self._drawn[:count])
        return [number for number, mutant in self.mutants.items() if mutant in chosen]

    def _compiler_arguments(self):
        """Those of the models, with which the sources of data/ can be read, too."""
        commands = json.loads((self.binaries / "compile_commands.json").read_text())
        return next(search_paths(entry["command"].split()) for entry in commands
                    if entry["file"] == str(self.copy / "models/carslistmodel.cpp"))

    def _write_mutants(self):
        mutants = by_file(self.mutants)
        for folder in FOLDERS:
            for path in sorted((self.root / folder).glob("*.cpp")):
                name = str(path.relative_to(self.root))
                text = schemata.instrument(path.read_bytes(), mutants.get(name, {}))
                write_if_other(self.copy / name, text.encode())


def is_mutated(name):
    return name.split("/")[0] in FOLDERS and name.endswith(".cpp")


def drawn(mutants):
    """In a random order that a change of other lines leaves as it is."""
    seen = collections.Counter()
    order = {}
    for mutant in sorted(mutants):
        identity = (SEED, mutant.file, mutant.operator, mutant.original_shown, mutant.mutated_shown)
        order[mutant] = hashlib.sha256(repr((identity, seen[identity])).encode()).digest()
        seen[identity] += 1
    return sorted(mutants, key=order.get)


def by_file(mutants):
    files = collections.defaultdict(dict)
    for number, mutant in mutants.items():
        files[mutant.file][number] = mutant
    return files


def search_paths(command):
    """Without precompiled headers, warnings and outputs."""
    kept = [word for word in command if word.startswith(("-D", "-I", "-std", "-f"))]
    for option, value in zip(command, command[1:]):
        if option == "-isystem":
            kept += [option, value]
    return kept


def write_if_other(path, content):
    if path.exists() and path.read_bytes() == content:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)
