#!/usr/bin/env python3
"""The line of README that compiles the first example does so, by pkg-config.

usage: pkgconfig_test.py PREFIX
"""

import os
import re
import sys
from pathlib import Path

import hosts


def main():
    libraries = Path(sys.argv[1]).resolve() / "lib"
    line = re.search(r"^    (g\+\+ .*pkg-config.*)$", (hosts.ROOT / "README.md").read_text(), re.M)
    if line is None:
        raise SystemExit("README.md has no line with g++ and pkg-config")
    environment = {**os.environ, "PKG_CONFIG_PATH": str(libraries / "pkgconfig"),
                   "LD_LIBRARY_PATH": str(libraries)}
    with hosts.scratch_host() as host:
        hosts.run(["sh", "-c", line[1]], cwd=host, env=environment)
        hosts.expect_example_output(hosts.run([host / "supervised"], env=environment))


main()
