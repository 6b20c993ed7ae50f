"""What the self-tests of the checkers in this directory share."""

import os
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))


def compilers():
    return os.environ.get("COMPILERS", "g++ clang++").split()


def run(script, *arguments, **environment):
    """(exit status, lines on standard output, text on standard error) of a checker."""
    command = [os.path.join(HERE, script), *arguments]
    if script.endswith(".py"):
        command.insert(0, sys.executable)
    done = subprocess.run(command, capture_output=True, text=True, check=False,
                          env={**os.environ, **environment})
    return done.returncode, done.stdout.splitlines(), done.stderr


class BuildTestCase(unittest.TestCase):
    """A test case with a directory of its own, in which it can build libraries."""

    maxDiff = None

    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="abi_selftest_")
        self.addCleanup(directory.cleanup)
        self.directory = directory.name

    def write(self, name, text):
        path = os.path.join(self.directory, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return path

    def build(self, name, source, compiler, flags=("-g",)):
        """Builds libNAME.so from C++ text and returns its path."""
        path = self.write(name + ".cpp", source)
        library = os.path.join(self.directory, f"lib{name}.so")
        done = subprocess.run([compiler, "-std=c++17", "-O1", "-w", "-fPIC", "-shared",
                               "-fvisibility=hidden", *flags, "-o", library, path],
                              capture_output=True, text=True, check=False)
        self.assertEqual(0, done.returncode, done.stderr)
        return library
