"""Builds hosts of the installed libraries, outside the tree, and compares what they print."""

import shutil
import subprocess
import tempfile
from contextlib import contextmanager
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[1]
EXPECTED = (ROOT / "tests" / "examples" / "expected" / "supervised.txt").read_text()


@contextmanager
def scratch_host(folder=None):
    """A directory outside the tree, with the example programs and a host's build file."""
    with tempfile.TemporaryDirectory() as scratch:
        host = Path(scratch)
        (host / "examples").mkdir()
        for name in ("supervised.cpp", "privatedirectory.h"):
            shutil.copy(ROOT / "examples" / name, host / "examples")
        if folder is not None:
            shutil.copytree(HERE / folder, host, dirs_exist_ok=True)
        yield host


def run(command, **options):
    """The output of a command; ends the test with what it said when it fails."""
    done = subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          check=False, **options)
    if done.returncode != 0:
        raise SystemExit(f"{command} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


def cmake_build(source, build, *definitions):
    """Configures and builds, without optimisation: it is the build files that are tested."""
    run(["cmake", "-S", source, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
         "-DCMAKE_CXX_FLAGS_DEBUG=-O0", *definitions])
    run(["cmake", "--build", build, "-j2"])


def expect_example_output(output):
    """The first example must have printed what is kept for it."""
    if output != EXPECTED:
        raise SystemExit(f"it printed\n{output}instead of\n{EXPECTED}")
