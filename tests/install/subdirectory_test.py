#!/usr/bin/env python3
"""A host takes the sources into its own build.

usage: subdirectory_test.py PREFIX
"""

import hosts


def main():
    with hosts.scratch_host("subdirectory") as host:
        hosts.cmake_build(host, host / "build", f"-DLIBRARY_SOURCES={hosts.ROOT}",
                          "-DCMAKE_UNITY_BUILD=ON")
        hosts.expect_example_output(hosts.run([host / "build" / "host"]))


main()
