#!/usr/bin/env python3
"""Looks at what was built for the hardening that cmake/TargetDefaults.cmake asks for, and
shows on files built without it that this look would notice.

usage: hardening_test.py COMPILER FILE...

Needs readelf (binutils).
"""

import os
import re
import subprocess
import sys
import tempfile
import unittest

COMPILER, PRODUCTS = sys.argv[1], sys.argv[2:]

# The record library keeps no arrays on its stack: there is nothing to guard or check.
WITHOUT_ARRAYS = re.compile(r"libtqcomkvr\.so")

HARD = ("-O2", "-fPIE", "-pie", "-D_FORTIFY_SOURCE=2", "-fstack-protector-strong",
        "-Wl,-z,relro", "-Wl,-z,now")

SOURCE = """
#include <cstdio>
int main(int count, char** texts) {
  char text[64];
  std::sprintf(text, "%d %s", count, texts[0]);
  return std::puts(text);
}
"""


def weaknesses(path):
    """What the file lacks, in words."""
    text = subprocess.run(["readelf", "--wide", "--file-header", "--segments", "--dynamic",
                           "--dyn-syms", path], capture_output=True, text=True, check=True,
                          env={**os.environ, "LC_ALL": "C"}).stdout
    wanted = {
        "fixed address": r"(?m)^  Type: +DYN ",
        "bindings stay writable": r"GNU_RELRO",
        "bindings are made late": r"FLAGS.*\bNOW\b|BIND_NOW",
        "stack can be executed": r"GNU_STACK .* RW +0x",
    }
    if not WITHOUT_ARRAYS.search(os.path.basename(path)):
        wanted["stack is not guarded"] = r"UND __stack_chk_fail\b"
        wanted["calls are not checked"] = r"UND __\w+_chk\b"
    return {name for name, pattern in wanted.items() if not re.search(pattern, text)}


class Hardening(unittest.TestCase):
    def test_what_was_built_is_hardened(self):
        self.assertTrue(PRODUCTS)
        for product in PRODUCTS:
            self.assertEqual(set(), weaknesses(product), product)

    def weaknesses_with(self, *flags):
        with tempfile.TemporaryDirectory() as directory:
            source = os.path.join(directory, "weak.cpp")
            with open(source, "w", encoding="utf-8") as file:
                file.write(SOURCE)
            program = os.path.join(directory, "weak")
            subprocess.run([COMPILER, *HARD, "-w", *flags, source, "-o", program], check=True)
            return weaknesses(program)

    def test_each_weakness_is_noticed(self):
        for flags, weakness in (
                ((), None),
                (("-fno-pie", "-no-pie"), "fixed address"),
                (("-Wl,-z,norelro",), "bindings stay writable"),
                (("-Wl,-z,lazy",), "bindings are made late"),
                (("-Wl,-z,execstack",), "stack can be executed"),
                (("-fno-stack-protector",), "stack is not guarded"),
                (("-U_FORTIFY_SOURCE",), "calls are not checked")):
            self.assertEqual({weakness} - {None}, self.weaknesses_with(*flags), flags)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
