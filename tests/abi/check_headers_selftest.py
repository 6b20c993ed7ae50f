#!/usr/bin/python3
"""Shows that check_headers.sh refuses headers that a host could not include."""

import os
import sys
import unittest

sys.dont_write_bytecode = True  # leaves no directory beside the sources

from selftest_support import BuildTestCase, compilers, run

GOOD = "#pragma once\n#include <string>\nstruct Gauge { std::string fName; };\n"

BAD = {
    "lacks an include": "#pragma once\ninline std::string Name();\n",
    "has no guard": "struct Gauge { int fCount; };\n",
    "narrows": "#pragma once\ninline int Floor(double d) { return d; }\n",
    "shadows": "#pragma once\ninline int F(int n) { { int n = 2; return n; } }\n",
    "needs C++20": "#pragma once\ntemplate <class T> requires true struct Tide {};\n",
}


class Headers(BuildTestCase):
    def check(self, *directories, **environment):
        paths = [os.path.join(self.directory, directory) for directory in directories]
        return run("check_headers.sh", *paths, **environment)

    def test_good_headers_that_include_each_other_across_directories(self):
        self.write("one/tides/gauge.h", GOOD)
        self.write("two/tides/station.hpp",
                   "#pragma once\n#include <tides/gauge.h>\nstruct Station { Gauge fGauge; };\n")
        status, lines, errors = self.check("one", "two")
        self.assertEqual((0, ""), (status, errors))
        count = len(compilers())
        self.assertEqual([f"check_headers: 2 headers, {count} compilers, 0 failures"], lines)

    def test_each_bad_header_fails_with_every_compiler(self):
        for number, (fault, text) in enumerate(BAD.items()):
            with self.subTest(fault=fault):
                self.write(f"{number}/tides/good.h", GOOD)
                self.write(f"{number}/tides/bad.h", text)
                status, lines, _ = self.check(str(number))
                self.assertEqual(1, status)
                failed = [line for line in lines if "does not compile with" in line]
                self.assertEqual([f"tides/bad.h does not compile with {compiler}:"
                                  for compiler in compilers()], failed)

    def test_nothing_to_compile_or_to_compile_with(self):
        self.write("none/readme.txt", "")
        self.write("one/gauge.h", GOOD)
        for directories, environment in (((), {}), (("none",), {}), (("missing",), {}),
                                         (("one", "none"), {}),
                                         (("one",), {"COMPILERS": "no-such-compiler"})):
            self.assertEqual(2, self.check(*directories, **environment)[0], directories)


if __name__ == "__main__":
    unittest.main()
