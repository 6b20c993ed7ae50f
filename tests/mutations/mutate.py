#!/usr/bin/python3
"""Breaks the library on purpose and tells which breaks the unit tests do not notice.

    mutate.py [--work DIRECTORY] [NAME...]

The mutations stand in the *.txt files beside this script, one after another:

    [name]
    file: src/algorithm/entropykernel.cpp
    breaks: of two equal entropies the rightmost wins
    -entropy < least
    +entropy <= least

The lines behind "-", joined, must occur exactly once in the file and are replaced by
those behind "+", which may be none.  A mutation whose text is gone is stale: it is
reported and fails the run before anything is built.  NAMEs (* and ? match) select
mutations; without any all are tried.

A copy of the tree is built without optimisation, and its tests must pass.  Each
mutation is applied to that copy alone, what depends on it is built again, and the
test programs run, that of the mutated folder first, until a test fails, crashes or
does not end: then the mutation is killed.  DIRECTORY keeps the copy and its build
for the next run; without it both are temporary.

Exit status: 0 all killed; 1 survivors, stale mutations, or mutations that do not
compile; 2 nothing could be tried.
"""

import argparse
import fnmatch
import os
import re
import resource
import shutil
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass, field
from pathlib import Path

HERE = Path(__file__).resolve().parent
TREE = HERE.parents[1]

# What the unit tests are built from.
PARTS = ["CMakeLists.txt", "cmake", "examples", "include", "record", "src", "tests"]

# Folders of src/, each with a test program of its name.
FOLDERS = ["common", "metadata", "data", "algorithm", "output"]

LEAST_TIMEOUT = 20.0  # seconds; a program has this or TIMEOUT_FACTOR times its own time
TIMEOUT_FACTOR = 5
MOST_MEMORY = 8 << 30  # bytes of address space, for a mutant that never stops growing


class Unusable(Exception):
    """The mutations, or the tree, cannot be tried."""


@dataclass
class Mutation:
    name: str
    listed: str  # FILE:LINE of its entry
    file: str = ""
    breaks: str = ""
    old: list = field(default_factory=list)
    new: list = field(default_factory=list)

    def replaced(self, text):
        """The mutated text; None when the mutation is stale."""
        old, new = "\n".join(self.old), "\n".join(self.new)
        return text.replace(old, new) if text.count(old) == 1 else None

    @property
    def folder(self):
        return Path(self.file).parts[1]


def parse(path):
    mutations = []
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        where = f"{path.name}:{number}"
        if not line or line.startswith("#"):
            continue
        heading = re.fullmatch(r"\[([a-z0-9-]+)\]", line)
        if heading:
            mutations.append(Mutation(heading[1], where))
            continue
        if not mutations:
            raise Unusable(f"{where}: a mutation begins with [name]")
        mutation = mutations[-1]
        if line.startswith("file: "):
            mutation.file = line[6:]
        elif line.startswith("breaks: "):
            mutation.breaks = line[8:]
        elif line[0] == "-":
            mutation.old.append(line[1:])
        elif line[0] == "+":
            mutation.new.append(line[1:])
        else:
            raise Unusable(f"{where}: neither file:, breaks:, - nor +")
    return mutations


def read_mutations():
    mutations = [mutation for path in sorted(HERE.glob("*.txt")) for mutation in parse(path)]
    names = set()
    for mutation in mutations:
        if not (mutation.file and mutation.breaks and mutation.old):
            raise Unusable(f"{mutation.listed}: {mutation.name} lacks file:, breaks: or -")
        if mutation.folder not in FOLDERS:
            raise Unusable(f"{mutation.listed}: {mutation.file} is in no folder with tests")
        if mutation.name in names:
            raise Unusable(f"{mutation.listed}: a second {mutation.name}")
        names.add(mutation.name)
    return mutations


def select(mutations, patterns):
    for pattern in patterns:
        if not any(fnmatch.fnmatch(mutation.name, pattern) for mutation in mutations):
            raise Unusable(f"no mutation is named {pattern}")
    return [mutation for mutation in mutations
            if not patterns or any(fnmatch.fnmatch(mutation.name, p) for p in patterns)]


def stale_ones(mutations):
    stale = []
    for mutation in mutations:
        path = TREE / mutation.file
        if not path.is_file() or mutation.replaced(path.read_text(encoding="utf-8")) is None:
            stale.append(mutation)
    return stale


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class Workshop:
    """A copy of the tree, and its build."""

    def __init__(self, directory):
        self.tree = directory / "tree"
        self.build = directory / "build"
        self.timeouts = {}

    def copy(self):
        """Brings the copy up to date, touching only files that differ."""
        wanted = set()
        for part in PARTS:
            root = TREE / part
            for source in [root] if root.is_file() else root.rglob("*"):
                relative = source.relative_to(TREE)
                if not source.is_file() or "__pycache__" in relative.parts:
                    continue
                wanted.add(relative)
                target = self.tree / relative
                if not target.is_file() or target.read_bytes() != source.read_bytes():
                    target.parent.mkdir(parents=True, exist_ok=True)
                    shutil.copyfile(source, target)
        for target in list(self.tree.rglob("*")):
            if target.is_file() and target.relative_to(self.tree) not in wanted:
                target.unlink()

    def configure(self):
        self.run(["cmake", "-S", str(self.tree), "-B", str(self.build), "-G", "Ninja",
                  "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0",
                  "-DCMAKE_CXX_FLAGS=-w",  # a mutation may leave a name without use
                  "-DCMAKE_CXX_COMPILER=g++", "-DTQBINNING_BUILD_TOOL=OFF"])

    def make(self, folders):
        return subprocess.run(
            ["cmake", "--build", str(self.build), "--target", *[f"{f}_tests" for f in folders]],
            capture_output=True, text=True, check=False)

    def run(self, command):
        done = subprocess.run(command, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise Unusable(f"{' '.join(command)} failed:\n{done.stdout}{done.stderr}")

    def prepare(self):
        self.copy()
        self.configure()
        built = self.make(FOLDERS)
        if built.returncode != 0:
            raise Unusable(f"the tree does not build:\n{built.stdout}{built.stderr}")
        for folder in FOLDERS:
            started = time.monotonic()
            failure = self.test(folder)
            if failure is not None:
                raise Unusable(f"{folder}_tests fail on the unbroken library: {failure}")
            took = time.monotonic() - started
            self.timeouts[folder] = max(LEAST_TIMEOUT, TIMEOUT_FACTOR * took)

    def test(self, folder):
        """None when all tests pass, else what failed first."""
        try:
            done = subprocess.run(
                [str(self.build / "tests" / f"{folder}_tests"), "--gtest_fail_fast",
                 "--gtest_brief=1"],
                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                timeout=self.timeouts.get(folder, 600.0), preexec_fn=limit_memory)
        except subprocess.TimeoutExpired:
            return f"{folder}_tests do not end"
        if done.returncode == 0:
            return None
        failed = re.search(r"\[  FAILED  \] ([\w/]+\.[\w/]+)", done.stdout.decode(errors="replace"))
        return failed[1] if failed else f"{folder}_tests end with {done.returncode}"

    def judge(self, mutation):
        """(verdict, what killed it)."""
        path = self.tree / mutation.file
        original = path.read_text(encoding="utf-8")
        try:
            path.write_text(mutation.replaced(original), encoding="utf-8")
            rest = [folder for folder in FOLDERS if folder != mutation.folder]
            for folders in [mutation.folder], rest:
                built = self.make(folders)
                if built.returncode != 0:
                    errors = re.findall(r"error: .*", built.stdout + built.stderr)
                    # A program that cannot even list its tests is not a compiler's matter.
                    if errors:
                        return "does not compile", errors[0]
                    return "killed", f"{folders[0]}_tests crash at once"
                for folder in folders:
                    failure = self.test(folder)
                    if failure is not None:
                        return "killed", failure
            return "SURVIVED", ""
        finally:
            path.write_text(original, encoding="utf-8")


def report(mutation, verdict, by, seconds):
    print(f"{mutation.name:<34} {verdict:<16} {seconds:5.1f} s  {by}", flush=True)


def try_all(mutations, workshop):
    counts = {}
    survivors = []
    for mutation in mutations:
        started = time.monotonic()
        verdict, by = workshop.judge(mutation)
        report(mutation, verdict, by, time.monotonic() - started)
        counts[verdict] = counts.get(verdict, 0) + 1
        if verdict != "killed":
            survivors.append((mutation, verdict))
    for mutation, verdict in survivors:
        print(f"\n{verdict}: {mutation.name} ({mutation.listed}), {mutation.file}:"
              f" {mutation.breaks}")
        for line in mutation.old:
            print(f"  -{line}")
        for line in mutation.new:
            print(f"  +{line}")
    print(f"\n{len(mutations)} mutations: "
          + ", ".join(f"{count} {verdict}" for verdict, count in sorted(counts.items())))
    return not survivors


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--work", type=Path, metavar="DIRECTORY",
                        help="keep the copy and its build there")
    parser.add_argument("names", nargs="*", metavar="NAME")
    arguments = parser.parse_args()
    try:
        mutations = select(read_mutations(), arguments.names)
        stale = stale_ones(mutations)
        for mutation in stale:
            print(f"stale: {mutation.name} ({mutation.listed}): its text does not occur exactly"
                  f" once in {mutation.file}")
        if stale:
            return 1
        with tempfile.TemporaryDirectory(prefix="mutate_") as temporary:
            workshop = Workshop((arguments.work or Path(temporary)).resolve())
            started = time.monotonic()
            workshop.prepare()
            print(f"unbroken: built and tested in {time.monotonic() - started:.0f} s", flush=True)
            return 0 if try_all(mutations, workshop) else 1
    except Unusable as error:
        print(f"mutate: {error}", file=sys.stderr)
        return 2


if __name__ == "__main__":
    sys.exit(main())
