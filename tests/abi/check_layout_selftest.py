#!/usr/bin/python3
"""Shows that check_layout.py reports what is wrong with a library, and only that.

One invented family of classes is compiled many times, each time with one thing
changed and in a namespace of its own, and held against one table; a change must
give exactly the lines listed with it.  $COMPILERS (default: g++ clang++) build.
"""

import sys
import unittest

sys.dont_write_bytecode = True  # leaves no directory beside the sources

from selftest_support import BuildTestCase, compilers, run

PREAMBLE = """
#include <map>
#include <memory>
#include <string>
#include <vector>
"""

FAMILY = """
class Gauge {
 public:
  enum Kind : int { kSea = 0, kRiver = 1 };
  Gauge();
  ~Gauge();
  static int sGauges;
 protected:
  double fLevel;
  int fCount;
  bool fValid;
  std::string fName;
  std::vector<double> fCrests;
  Kind fKind;
};
struct Lists {
  Lists();
  std::vector<const Gauge*>* fUnused;  // such a vector is only declared
  std::vector<std::map<unsigned long, std::string>> fNested;
  std::vector<Gauge::Kind> fKinds;
  std::vector<unsigned char> fBytes;
  std::vector<bool> fBits;
  short fPair[2];
};
Lists::Lists() {}
class IStation {
 public:
  virtual ~IStation();
  virtual int Count() const = 0;
  virtual Gauge* Find(int) = 0;
  virtual const Gauge* Find(int) const = 0;
};
class Station : public IStation {
 public:
  Station();
  int Count() const override;
  Gauge* Find(int) override;
  const Gauge* Find(int) const override;
  virtual void Add();
 protected:
  std::unique_ptr<Gauge> fGauge;
  std::map<int, double> fTides;
};
int Gauge::sGauges = 0;
Gauge::Gauge() : fLevel(), fCount(), fValid(), fKind() {}
Gauge::~Gauge() = default;
IStation::~IStation() = default;
Station::Station() = default;
int Station::Count() const { return 0; }
Gauge* Station::Find(int) { return fGauge.get(); }
const Gauge* Station::Find(int) const { return fGauge.get(); }
void Station::Add() {}
"""

TABLE = """
enum {0}::Gauge::Kind
  size 4
  values 0 1
class {0}::Gauge
  size 80
  field  0  8 double         fLevel
  field  8  4 int32          fCount
  field 12  1 bool           -       validity
  field 16 32 string         fName
  field 48 24 vector<double> fCrests
  field 72  4 {0}::Gauge::Kind fKind
class {0}::Lists
  size 128
  field  0  8 pointer<vector<pointer<{0}::Gauge>>> fUnused
  field  8 24 vector<map<uint64,string>> fNested
  field 32 24 vector<{0}::Gauge::Kind> fKinds
  field 56 24 vector<uint8>  fBytes
  field 80 40 vector<bool>   fBits
  field 120 4 int16[2]       fPair
class {0}::IStation
  size 8
  virtual 0-1 destructor
  virtual 2 Count const
  virtual 3 Find
  virtual 4 Find const
class {0}::Station
  base {0}::IStation
  size 64
  field  8  8 pointer<{0}::Gauge> fGauge
  field 16 48 map<int32,double> fTides
  virtual 5 Add
"""

# By namespace: the changes to the family's text, and the lines they must give.
VARIANTS = {
    "as_promised": ([], []),
    "field_moved": (
        [("int fCount;\n  bool fValid;", "bool fValid;\n  int fCount;")],
        ["Gauge: field 2 (fCount): expected name fCount, size 4, type int32;"
         " found name fValid, size 1, type bool",
         "Gauge: field 3 (validity): expected size 1, type bool;"
         " found size 4, type int32 (fCount)"]),
    "field_widened": (
        [("int fCount;", "long fCount;")],
        ["Gauge: size: expected 80, found 88",
         "Gauge: field 2 (fCount): expected size 4, type int32;"
         " found size 8, type int64 (fCount)",
         "Gauge: field 3 (validity): expected offset 12; found offset 16 (fValid)",
         "Gauge: field 4 (fName): expected offset 16; found offset 24 (fName)"]),
    "field_widened_into_padding": (
        [("bool fValid;", "short fValid;")],
        ["Gauge: field 3 (validity): expected size 1, type bool;"
         " found size 2, type int16 (fValid)"]),
    "field_made_bits": (
        [("bool fValid;", "bool fValid : 1;")],
        ["Gauge: field 3 (validity): expected type bool; found type bool:1 (fValid)"]),
    "field_unsigned": (
        [("int fCount;", "unsigned fCount;")],
        ["Gauge: field 2 (fCount): expected type int32; found type uint32 (fCount)"]),
    "field_renamed": (
        [("fCrests", "fHighs")],
        ["Gauge: field 5 (fCrests): expected name fCrests; found name fHighs"]),
    "unnamed_field_renamed": ([("fValid", "fGood")], []),
    "element_changed": (
        [("vector<double> fCrests", "vector<float> fCrests"),
         ("map<int, double>", "map<unsigned, double>")],
        ["Gauge: field 5 (fCrests): expected type vector<double>;"
         " found type vector<float> (fCrests)",
         "Station: field 2 (fTides): expected type map<int32,double>;"
         " found type map<uint32,double> (fTides)"]),
    "nested_element_changed": (
        [("std::vector<const Gauge*>* fUnused", "std::vector<const Gauge>* fUnused"),
         ("std::map<unsigned long, std::string>", "std::map<long, std::string>"),
         ("short fPair[2]", "short fPair[3]")],
        ["Lists: field 1 (fUnused):"
         " expected type pointer<vector<pointer<nested_element_changed::Gauge>>>;"
         " found type pointer<vector<nested_element_changed::Gauge>> (fUnused)",
         "Lists: field 2 (fNested): expected type vector<map<uint64,string>>;"
         " found type vector<map<int64,string>> (fNested)",
         "Lists: field 6 (fPair): expected size 4, type int16[2];"
         " found size 6, type int16[3] (fPair)"]),
    "field_added": (
        [("Kind fKind;", "Kind fKind;\n  int fMore;")],
        ["Gauge: field 7: expected none, found fMore at offset 76"]),
    "field_removed": (
        [("  std::map<int, double> fTides;\n", "")],
        ["Station: size: expected 64, found 16",
         "Station: field 2 (fTides): expected offset 16, found no such field"]),
    "pointer_in_another_form": ([("std::unique_ptr<Gauge> fGauge", "Gauge* fGauge"),
                                 ("fGauge.get()", "fGauge")], []),
    "slots_swapped": (
        [("virtual int Count() const = 0;\n  virtual Gauge* Find(int) = 0;",
          "virtual Gauge* Find(int) = 0;\n  virtual int Count() const = 0;")],
        ["IStation: slot 2: expected Count const, found Find",
         "IStation: slot 3: expected Find, found Count const",
         "Station: slot 2: expected Count const, found Find",
         "Station: slot 3: expected Find, found Count const"]),
    "overloads_swapped": (
        [("virtual Gauge* Find(int) = 0;\n  virtual const Gauge* Find(int) const = 0;",
          "virtual const Gauge* Find(int) const = 0;\n  virtual Gauge* Find(int) = 0;")],
        ["IStation: slot 3: expected Find, found Find const",
         "IStation: slot 4: expected Find const, found Find",
         "Station: slot 3: expected Find, found Find const",
         "Station: slot 4: expected Find const, found Find"]),
    "slot_added_to_derived": (
        [("virtual void Add();", "virtual void Add();\n  virtual void More() {}")],
        ["Station: slot 6: expected none, found More",
         "Station: virtual table: expected 6 slots, found 7"]),
    "slot_added_to_base": (
        [("const Gauge* Find(int) const = 0;",
          "const Gauge* Find(int) const = 0;\n  virtual void More() {}")],
        ["IStation: slot 5: expected none, found More",
         "IStation: virtual table: expected 5 slots, found 6",
         "Station: slot 5: expected Add, found none",
         "Station: slot 6: expected none, found Add",
         "Station: virtual table: expected 6 slots, found 7"]),
    "slot_removed": (
        [("virtual void Add();", "void Add();")],
        ["Station: slot 5: expected Add, found none",
         "Station: virtual table: expected 6 slots, found 5"]),
    "destructor_no_longer_virtual": (
        [("virtual ~IStation();", "~IStation();")],
        ["IStation: slot 0: expected destructor, found Count const",
         "IStation: slot 1: expected destructor, found Find",
         "IStation: slot 2: expected Count const, found Find const",
         "IStation: slot 3: expected Find, found none",
         "IStation: slot 4: expected Find const, found none",
         "IStation: destructor: expected virtual, found not virtual",
         "Station: slot 0: expected destructor, found Count const",
         "Station: slot 1: expected destructor, found Find",
         "Station: slot 2: expected Count const, found Find const",
         "Station: slot 3: expected Find, found Add",
         "Station: slot 5: expected Add, found none",
         "Station: virtual table: expected 6 slots, found 4"]),
    "destructor_made_virtual": (
        [("  ~Gauge();", "  virtual ~Gauge();")],
        ["Gauge: size: expected 80, found 88",
         "Gauge: field 1 (fLevel): expected offset 0; found offset 8 (fLevel)",
         "Gauge: destructor: expected not virtual, found virtual",
         "Gauge: virtual table: expected 0 slots, found 2"]),
    "base_not_public": (
        [("public IStation", "protected IStation")],
        ["Station: base: expected base_not_public::IStation,"
         " found not public base_not_public::IStation"]),
    "base_virtual": (
        [("public IStation", "virtual public IStation")],
        ["Station: base: expected base_virtual::IStation, found virtual base_virtual::IStation",
         # one offset to the base and four to adjust "this" by stand before the head
         "Station: virtual table: expected 6 slots, found 11"]),
    "base_added": (
        [("class Gauge {", "struct Place { double fNorth; };\nclass Gauge : public Place {")],
        ["Gauge: base: expected none, found base_added::Place",
         "Gauge: size: expected 80, found 88",
         "Gauge: field 1 (fLevel): expected offset 0; found offset 8 (fLevel)"]),
    "value_changed": (
        [("kRiver = 1", "kRiver = 2")],
        ["Gauge::Kind: values: expected [0, 1], found [0, 2]"]),
    "value_added": (
        [("kRiver = 1", "kRiver = 1, kLake = 2")],
        ["Gauge::Kind: values: expected [0, 1], found [0, 1, 2]"]),
    "enumeration_narrowed": (
        [("Kind : int", "Kind : short")],
        ["Gauge::Kind: size: expected 4, found 2",
         "Gauge: field 6 (fKind): expected size 4; found size 2 (fKind)"]),
}


def changed(text, changes):
    for old, new in changes:
        assert old in text, old
        text = text.replace(old, new)
    return text


class Variants(BuildTestCase):
    def check(self, compiler):
        source = PREAMBLE + "".join(
            f"namespace {name} {{ {changed(FAMILY, changes)} }}\n"
            for name, (changes, _) in VARIANTS.items())
        library = self.build("family", source, compiler)
        table = self.write("table.txt", "".join(TABLE.format(name) for name in VARIANTS))
        status, lines, errors = run("check_layout.py", "--table", table, library)
        self.assertEqual((1, ""), (status, errors))
        summary = lines.pop()
        for name, (_, expected) in VARIANTS.items():
            with self.subTest(variant=name, compiler=compiler):
                prefix = name + "::"
                found = [line[len(prefix):] for line in lines if line.startswith(prefix)]
                self.assertEqual(expected, found)
        total = sum(len(expected) for _, expected in VARIANTS.values())
        self.assertIn(f"differences: {total}", summary)

    def test_each_change_gives_its_own_lines_only(self):
        for compiler in compilers():
            self.check(compiler)


class Outcomes(BuildTestCase):
    """Exit statuses, on a library that needs no header."""

    SOURCE = """
struct Tide { Tide(); double fLevel; int fCount; };
Tide::Tide() {}
struct Wave { virtual ~Wave(); virtual void Rise(); virtual void Fall(); };
Wave::~Wave() {}
void Wave::Rise() {}
void Wave::Fall() {}
"""
    TABLE = "class Tide\n size 16\n field 0 8 double fLevel\n field 8 4 int32 fCount\n"

    def setUp(self):
        super().setUp()
        self.library = self.build("tide", self.SOURCE, compilers()[0])

    def outcome(self, table, *libraries):
        return run("check_layout.py", "--table", self.write("table.txt", table),
                   *(libraries or [self.library]))

    def test_all_as_promised(self):
        status, lines, errors = self.outcome(self.TABLE)
        self.assertEqual((0, ""), (status, errors))
        self.assertEqual(["check_layout: 1 classes and 0 enumerations in 1 definitions:"
                          " all as promised"], lines)

    def test_a_class_that_is_not_there_is_a_difference(self):
        status, lines, _ = self.outcome(self.TABLE + "class Ebb\n size 1\n")
        self.assertEqual(1, status)
        self.assertEqual("Ebb: expected in the debug information, found in no unit", lines[0])

    def test_units_that_disagree(self):
        other = self.build("other", self.SOURCE.replace("int fCount", "long fCount"),
                           compilers()[0])
        status, lines, _ = self.outcome(self.TABLE, self.library, other)
        self.assertEqual(1, status)
        self.assertEqual(["Tide: field 2 (fCount): expected size 4, type int32;"
                          " found size 8, type int64 (fCount)"], lines[:-1])
        other = self.build("other", self.SOURCE.replace("fCount", "fN"), compilers()[0])
        status, lines, _ = self.outcome(self.TABLE.replace("fCount", "- count"),
                                        self.library, other)
        self.assertEqual(1, status)
        self.assertRegex(lines[0], r"^Tide: defined differently in .*tide.cpp and .*other.cpp$")

    def test_what_is_free_or_open_may_be_anything(self):
        for table in ("class Tide\n size free\n field free\n",
                      "class Tide\n size free\n field 0 8 double -\n field open\n",
                      "class Wave\n size free\n virtual free\n",
                      "class Wave\n size 8\n virtual 0-1 destructor\n virtual 2 Rise\n"
                      " virtual open\n"):
            self.assertEqual(0, self.outcome(table)[0], table)

    def test_what_comes_before_an_open_end_must_fit(self):
        for table, line in (
                ("class Tide\n size free\n field 0 8 int64 - level\n field open\n",
                 "Tide: field 1 (level): expected type int64; found type double (fLevel)"),
                ("class Wave\n size 8\n virtual 0-1 destructor\n virtual 2 Fall\n virtual open\n",
                 "Wave: slot 2: expected Fall, found Rise")):
            status, lines, _ = self.outcome(table)
            self.assertEqual((1, [line]), (status, lines[:-1]))

    def test_no_debug_information(self):
        stripped = self.build("stripped", self.SOURCE, compilers()[0], flags=())
        self.assertCannotTell("no debug information", self.TABLE, stripped)

    def test_no_library(self):
        self.assertCannotTell("No such file", self.TABLE, self.library + ".1")

    def test_not_a_library(self):
        self.assertCannotTell("Magic number", self.TABLE, self.write("lib.so", "no library"))

    def test_type_units_are_refused(self):
        library = self.build("units", self.SOURCE, compilers()[0],
                             flags=("-g", "-fdebug-types-section"))
        self.assertCannotTell("-fdebug-types-section", self.TABLE, library)

    def test_a_table_that_contradicts_itself(self):
        for old, new, message in (
                ("field 8 4", "field 12 4", "reckoned 8 and 4"),
                ("field 8 4", "field 8 8", "reckoned 8 and 4"),
                ("size 16", "size 12", "reckoned 16"),
                ("int32", "int33", "unknown type int33"),
                ("int32", "Ebb", "unknown type Ebb"),
                (" size 16\n", "", "no size"),
                (" size 16\n", " base Ebb\n size 16\n", "base Ebb is not in the table"),
                (" size 16\n", " size 24\n virtual 2 Rise\n", "should be in slot 0"),
                (" size 16\n", " size 24\n virtual 0-2 destructor\n", "takes two slots"),
                (" size 16\n", " size sixteen\n", "cannot read"),
                (" size 16\n", " slot 3\n", "unexpected 'slot'"),
                ("class Tide", "class Tide\n size 1\nclass Tide", "a second time"),
                ("class Tide\n", "", "before the first class"),
                (self.TABLE, "# nothing\n", "no class in the table")):
            self.assertCannotTell(message, self.TABLE.replace(old, new))

    def assertCannotTell(self, message, table, *libraries):
        status, lines, errors = self.outcome(table, *libraries)
        self.assertEqual((2, []), (status, lines), table)
        self.assertIn(message, errors)


class KeptTable(BuildTestCase):
    def test_it_is_consistent_and_nothing_in_it_is_found_in_an_alien_library(self):
        library = self.build("alien", Outcomes.SOURCE, compilers()[0])
        status, lines, errors = run("check_layout.py", library)
        self.assertEqual((1, ""), (status, errors))
        self.assertGreater(len(lines), 40)
        for line in lines[:-1]:
            self.assertRegex(line, ": expected in the debug information, found in no unit$")


if __name__ == "__main__":
    unittest.main()
