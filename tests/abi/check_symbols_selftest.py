#!/usr/bin/python3
"""Shows that check_symbols.py reports what comes, goes and leaks, and only that.

$COMPILERS (default: g++ clang++) build the libraries.
"""

import os
import sys
import unittest

sys.dont_write_bytecode = True  # leaves no directory beside the sources

from selftest_support import BuildTestCase, compilers, run

SOURCE = """
#define EXPORT __attribute__((visibility("default")))
namespace tides {
class EXPORT Gauge {
 public:
  virtual ~Gauge();
  int Count() const;
};
Gauge::~Gauge() {}
int Gauge::Count() const { return 1; }
void Hidden() {}
}
"""

# Stands for what the real standard library leaves visible, which is another thing
# with each compiler: members, locals, free functions, type information.
LEAKS = """
namespace std __attribute__((visibility("default"))) {
template <class T> struct vector { int grow() const; virtual ~vector(); };
template <class T> int vector<T>::grow() const { static int n = 1; return n += 1; }
template <class T> vector<T>::~vector() {}
template <class T> void sort(T) {}
}
__attribute__((visibility("default"), used))
inline void* operator new(unsigned long, void* place) { return place; }
template struct std::vector<int>;
template void std::sort(int);
"""


class Symbols(BuildTestCase):
    def check(self, source, *options, compiler=compilers()[0]):
        library = self.build("tides", source, compiler)
        return run("check_symbols.py", "--lists", self.directory, *options, library)

    def make_list(self, source=SOURCE):
        self.assertEqual(0, self.check(source, "--update")[0])

    def test_as_listed_whichever_compiler(self):
        self.make_list()
        for compiler in compilers():
            status, lines, errors = self.check(SOURCE, compiler=compiler)
            self.assertEqual((0, ""), (status, errors))
            self.assertEqual(["check_symbols: libtides.so: 7 symbols, 0 leaks: as listed"], lines)

    def test_the_list_is_for_reading(self):
        self.make_list()
        with open(os.path.join(self.directory, "symbols_tides.txt"), encoding="utf-8") as text:
            kept = text.read()
        self.assertIn("_ZNK5tides5Gauge5CountEv\ttides::Gauge::Count() const\n", kept)
        self.assertNotIn("Hidden", kept)

    def test_a_changed_signature_goes_and_comes(self):
        self.make_list()
        status, lines, _ = self.check(SOURCE.replace("Count() const", "Count()"))
        self.assertEqual(1, status)
        self.assertEqual(
            ["libtides.so: removed: tides::Gauge::Count() const [_ZNK5tides5Gauge5CountEv]",
             "libtides.so: added: tides::Gauge::Count() [_ZN5tides5Gauge5CountEv]"], lines[:-1])

    def test_what_becomes_visible(self):
        self.make_list()
        status, lines, _ = self.check(SOURCE.replace("void Hidden", "EXPORT void Hidden"))
        self.assertEqual(1, status)
        self.assertEqual(["libtides.so: added: tides::Hidden() [_ZN5tides6HiddenEv]"], lines[:-1])

    def test_leaks_are_reported_and_never_listed(self):
        self.make_list()
        for compiler in compilers():
            for options in ((), ("--update",)):
                status, lines, _ = self.check(SOURCE + LEAKS, *options, compiler=compiler)
                self.assertEqual(1, status)
                self.assertIn("7 symbols", lines[-1])
                text = "\n".join(lines[:-1])
                for leak in ("_ZNKSt6vectorIiE4growEv", "_ZZNKSt6vectorIiE4growEvE1n",
                             "_ZTISt6vectorIiE", "_ZTVSt6vectorIiE", "_ZSt4sortIiEvT_",
                             "_ZnwmPv"):
                    self.assertRegex(text, rf"libtides.so: leak: .*\[{leak}\]")
                self.assertNotRegex(text, "(?m)^libtides.so: (added|removed)")
        status, lines, _ = self.check(SOURCE)
        self.assertEqual(0, status, lines)

    def test_no_list_or_no_library(self):
        for arguments, message in (
                ((self.build("tides", SOURCE, compilers()[0]),), "--update makes the list"),
                ((os.path.join(self.directory, "libebb.so"),), "libebb.so"),
                ((self.write("ebb.txt", ""),), "not named lib"),
                ((self.write("libtext.so", "no library"),), "libtext.so")):
            status, lines, errors = run("check_symbols.py", "--lists", self.directory, *arguments)
            self.assertEqual((2, []), (status, lines))
            self.assertIn(message, errors)


if __name__ == "__main__":
    unittest.main()
