#!/usr/bin/env python3
"""The binning library is built against another record library with the same operations:
one that is all headers and keeps its records differently.

usage: otherrecords_test.py PREFIX
"""

import hosts


def main():
    with hosts.scratch_host("otherrecords") as host:
        records, prefix = host / "records", host / "prefix"
        hosts.cmake_build(hosts.ROOT, host / "library", f"-DCMAKE_PREFIX_PATH={records}",
                          "-DTQBINNING_BUILD_RECORD=OFF", "-DTQBINNING_BUILD_TOOL=OFF",
                          "-DTQBINNING_BUILD_TESTS=OFF", "-DCMAKE_UNITY_BUILD=ON")
        hosts.run(["cmake", "--install", host / "library", "--prefix", prefix])
        if list(prefix.rglob("*tqcom*")):
            raise SystemExit("our own record library was installed although it was not wanted")
        hosts.cmake_build(host, host / "build", f"-DCMAKE_PREFIX_PATH={prefix};{records}")
        hosts.expect_example_output(hosts.run([host / "build" / "host"]))


main()
