#!/usr/bin/env python3
"""Installs a build and moves the tree to another place: nothing in it may remember
where it was.

usage: install_tree.py BUILD_DIRECTORY DESTINATION
"""

import shutil
import subprocess
import sys
import tempfile
from pathlib import Path


def remembering(tree, *places):
    """The text files of the tree in which one of the places is named."""
    texts = [path for path in tree.rglob("*") if path.suffix in (".cmake", ".pc", ".h")]
    if len(texts) < 10:
        raise SystemExit(f"only {len(texts)} text files were installed; something is missing")
    return [path for path in texts if any(str(place) in path.read_text() for place in places)]


def main():
    build, destination = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
    shutil.rmtree(destination, ignore_errors=True)
    with tempfile.TemporaryDirectory() as scratch:
        first = Path(scratch) / "first"
        subprocess.run(["cmake", "--install", build, "--prefix", first], check=True,
                       stdout=subprocess.DEVNULL)
        shutil.move(first, destination)
        found = remembering(destination, first, build)
    for path in found:
        print(f"{path} names the place where it was built or installed first")
    return 1 if found else 0


sys.exit(main())
