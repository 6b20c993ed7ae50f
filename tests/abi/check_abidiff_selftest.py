#!/usr/bin/python3
"""Shows that check_abidiff.sh reports changes of the binary interface, and only them.

Builds with g++, as the dumps are; with clang++ as well when $COMPILERS (default:
g++ clang++) names it.
"""

import sys
import unittest

sys.dont_write_bytecode = True  # leaves no directory beside the sources

from selftest_support import BuildTestCase, compilers, run

SOURCE = """
#include <string>
#include <vector>
#define EXPORT __attribute__((visibility("default")))
class EXPORT IStation {
 public:
  enum Kind { kSea = 0, kRiver = 1 };
  virtual ~IStation();
  virtual Kind GetKind() const = 0;
  virtual int Count() const = 0;
};
class EXPORT Station : public IStation {
 public:
  Station();
  Kind GetKind() const override;
  int Count() const override;
  void Add(int level);
 protected:
  std::string fName;
  int fLow;
  int fHigh;
  std::vector<double> fLevels;
};
IStation::~IStation() {}
Station::Station() : fLow(0), fHigh(1) {}
IStation::Kind Station::GetKind() const { return kSea; }
int Station::Count() const { return int(fLevels.size()); }
void Station::Add(int level) { fLevels.push_back(level); }
"""

CHANGES = {
    "fields swapped": ("int fLow;\n  int fHigh;", "int fHigh;\n  int fLow;"),
    "field widened": ("int fHigh;", "long fHigh;"),
    "element changed": ("vector<double>", "vector<float>"),
    "slots swapped": ("virtual Kind GetKind() const = 0;\n  virtual int Count() const = 0;",
                      "virtual int Count() const = 0;\n  virtual Kind GetKind() const = 0;"),
    "slot added": ("virtual int Count() const = 0;",
                   "virtual int Count() const = 0;\n  virtual void More() {}"),
    "enumerator changed": ("kRiver = 1", "kRiver = 2"),
    "parameter changed": ("Add(int level)", "Add(double level)"),
    "result changed": ("void Station::Add(int level) {", "int Station::Add(int level) { return 0;"),
    "function removed": ("void Station::Add", "inline void Station::Add"),
}


class AbiDiff(BuildTestCase):
    def check(self, source, *options, compiler="g++", flags=("-g",)):
        library = self.build("tides", source, compiler, flags)
        return run("check_abidiff.sh", "--dumps", self.directory, *options, library)

    def setUp(self):
        super().setUp()
        status, _, errors = self.check(SOURCE, "--update")
        self.assertEqual((0, ""), (status, errors))

    def test_alike_at_any_optimisation(self):
        for level in ("-O0", "-O1", "-O2"):
            status, lines, errors = self.check(SOURCE, flags=("-g", level))
            self.assertEqual((0, ""), (status, errors), lines)
            self.assertEqual("check_abidiff: libtides.so: alike", lines[-1])

    def test_each_change_is_seen(self):
        for change, (old, new) in CHANGES.items():
            with self.subTest(change=change):
                self.assertIn(old, SOURCE)
                source = SOURCE.replace(old, new)
                if change == "result changed":
                    source = source.replace("void Add", "int Add")
                status, lines, _ = self.check(source)
                self.assertEqual(1, status, lines)
                self.assertEqual("check_abidiff: libtides.so: not alike", lines[-1])

    def test_nothing_to_compare(self):
        self.assertEqual(2, self.check(SOURCE, flags=())[0])
        missing = run("check_abidiff.sh", "--dumps", self.directory, self.directory + "/libebb.so")
        self.assertEqual(2, missing[0])
        other = self.build("other", SOURCE, "g++")
        self.assertEqual(2, run("check_abidiff.sh", "--dumps", self.directory, other)[0])
        text = self.write("libtext.so", "no library")
        self.assertEqual(2, run("check_abidiff.sh", "--dumps", self.directory, text)[0])

    @unittest.skipUnless("clang++" in compilers(), "clang++ is not among the compilers")
    def test_a_build_by_clang_is_refused(self):
        status, _, errors = self.check(SOURCE, compiler="clang++")
        self.assertEqual(2, status)
        self.assertIn("built by clang", errors)


if __name__ == "__main__":
    unittest.main()
