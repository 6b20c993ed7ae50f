#!/usr/bin/python3
"""Compares the dynamic symbols that libraries export with the kept lists.

    check_symbols.py [--update] [--lists DIRECTORY] LIBRARY...

The list of libNAME.so is symbols_NAME.txt in DIRECTORY (default: beside this
script): a line for each symbol, its mangled name, a tab, and the same in plain
words for the reader.  A symbol that goes breaks hosts at load time; one that
comes is a promise for ever after; so both want a look and an --update.

Templates of the standard library that the compiler instantiated here and left
visible are leaks: which of them there are changes with the compiler and its
options, and a host could come to bind to ours.  They are reported, and never
taken into a list.

Exit status: 0 as listed; 1 additions, removals or leaks, one line each (with
--update only leaks); 2 a library or list cannot be read.

Needs nm and c++filt (binutils).
"""

import argparse
import os
import re
import subprocess
import sys

AS_LISTED, DIFFERS, CANNOT_TELL = 0, 1, 2

# Names that the linker adds to every library.
LINKER_NAMES = {"_init", "_fini", "_edata", "_end", "__bss_start"}

# A mangled name whose outermost scope is the standard library's: after marks for
# virtual tables, type information, thunks, guards and locals, "N", and const; or one
# of its operators new and delete that only place an object.
STANDARD_LIBRARY = re.compile(
    r"_Z(?:Z|GV|GR|T[VTISC]|T[hv]\w+?_)*N?[rVKRO]*(?:St|S[absiod]|9__gnu_cxx|10__cxxabiv1)"
    r"|_Zn[wa]mPv$|_Zd[la]PvS_$")


class Unusable(Exception):
    """A library or a list cannot be read."""


def output_of(command, text=None):
    try:
        return subprocess.run(command, input=text, capture_output=True, text=True,
                              check=True).stdout
    except OSError as error:
        raise Unusable(f"{command[0]}: {error.strerror}") from error
    except subprocess.CalledProcessError as error:
        raise Unusable(error.stderr.strip() or f"{command[0]} failed") from error


def exported(library):
    """The mangled names, each with its version when it has one (NAME@@VERSION)."""
    lines = output_of(["nm", "-D", "--defined-only", "--format=posix", library]).splitlines()
    names = {line.split()[0] for line in lines} - LINKER_NAMES
    if not names:
        raise Unusable(f"{library}: exports no symbols")
    return names


def in_words(names):
    """{mangled name: demangled name}."""
    names = sorted(names)
    words = output_of(["c++filt"], "".join(name.split("@")[0] + "\n" for name in names))
    return dict(zip(names, words.splitlines()))


def list_path(directory, library):
    match = re.fullmatch(r"lib(.+?)\.so(\..+)?", os.path.basename(library))
    if not match:
        raise Unusable(f"{library}: not named lib*.so")
    return os.path.join(directory, f"symbols_{match[1]}.txt")


def read_list(path):
    try:
        with open(path, encoding="utf-8") as text:
            lines = [line.split("#")[0].split() for line in text]
    except OSError as error:
        raise Unusable(f"{path}: {error.strerror}; --update makes the list") from error
    return {words[0] for words in lines if words}


def write_list(path, library, words):
    with open(path, "w", encoding="utf-8") as text:
        text.write(f"# What {os.path.basename(library).split('.so')[0]}.so exports."
                   "  Made by check_symbols.py --update; review the difference.\n")
        for name, plain in sorted(words.items(), key=lambda item: (item[1], item[0])):
            text.write(f"{name}\t{plain}\n")


def check(library, directory, update):
    """Prints what is wrong with one library; returns the number of lines."""
    path = list_path(directory, library)
    names = exported(library)
    leaks = {name for name in names if STANDARD_LIBRARY.match(name)}
    names -= leaks
    if update:
        write_list(path, library, in_words(names))
        kept = names
    else:
        kept = read_list(path)
    lines = 0
    for kind, group in (("removed", kept - names), ("added", names - kept), ("leak", leaks)):
        for name, plain in sorted(in_words(group).items(), key=lambda item: item[1]):
            print(f"{os.path.basename(library)}: {kind}: {plain} [{name}]")
            lines += 1
    print(f"check_symbols: {os.path.basename(library)}: {len(names)} symbols, {len(leaks)} leaks:"
          f" {'list written' if update else 'differences' if lines else 'as listed'}")
    return lines


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--update", action="store_true", help="write the lists anew")
    parser.add_argument("--lists", default=os.path.dirname(os.path.abspath(__file__)),
                        metavar="DIRECTORY")
    parser.add_argument("libraries", nargs="+", metavar="LIBRARY")
    arguments = parser.parse_args()
    try:
        lines = sum(check(library, arguments.lists, arguments.update)
                    for library in arguments.libraries)
    except Unusable as error:
        print(f"check_symbols: {error}", file=sys.stderr)
        return CANNOT_TELL
    return DIFFERS if lines else AS_LISTED


if __name__ == "__main__":
    sys.exit(main())
