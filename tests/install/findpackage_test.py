#!/usr/bin/env python3
"""A host finds the moved package by find_package, and the tool runs where it stands.

usage: findpackage_test.py PREFIX
"""

import sys
from pathlib import Path

import hosts


def main():
    prefix = Path(sys.argv[1]).resolve()
    with hosts.scratch_host("consumer") as host:
        hosts.cmake_build(host, host / "build", f"-DCMAKE_PREFIX_PATH={prefix}")
        hosts.expect_example_output(hosts.run([host / "build" / "host"]))
        hosts.run([host / "build" / "recordsonly" / "recordsonly"])
    version = hosts.run([prefix / "bin" / "tqbin", "--version"])
    if "1.0" not in version:
        raise SystemExit(f"tqbin --version says {version}")


main()
