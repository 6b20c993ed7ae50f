#!/usr/bin/env python3
"""Shows Doxygen a public header as it is meant: the comment before a declaration, or
behind it on its line, is its documentation.

usage: filter.py HEADER

A comment before several declarations without a blank line between them is about each.
What is protected serves tests and is left out.  Lines keep their numbers.
"""

import re
import sys
from pathlib import Path

COMMENT = re.compile(r"^\s*//\s?(.*)$")
TRAILING = re.compile(r"^(.*\S)\s+//\s(.*)$")
SECTION = re.compile(r"^ (public|protected|private):")
NO_DECLARATION = re.compile(r"^\s*(#|}|namespace\b|friend\b|class \w+;|\w+:$|$)")


class Header:
    """The state between the lines of a header."""

    def __init__(self):
        self.comment = []  # of the paragraph, as far as it has come
        self.follows_comment = False
        self.in_declaration = False
        self.open_parentheses = 0
        self.in_protected = False

    def remember(self, text):
        """A line of a comment: the first one begins a new text."""
        self.comment = [*self.comment, text] if self.follows_comment else [text]
        self.follows_comment = True
        return ""

    def section(self, line):
        """Begins or ends what is left out; `line` begins a section or ends a class."""
        was_protected, self.in_protected = self.in_protected, "protected" in line
        if self.in_protected and not was_protected:
            return f"{line} /** \\cond */"
        return f"/** \\endcond */ {line}" if was_protected and not self.in_protected else line

    def declaration(self, line):
        """A line of code, with its documentation when it begins a declaration."""
        line = re.sub(r"\[\[\w+\]\] ", "", line)  # an attribute hides a class's name
        trailing = TRAILING.match(line)
        code = trailing[1] if trailing else line
        begins = not self.in_declaration and not NO_DECLARATION.match(code)
        text = " ".join(self.comment)
        if trailing:
            text += f" {trailing[2]}"
        self.open_parentheses += code.count("(") - code.count(")")
        is_complete = self.open_parentheses == 0 and code.rstrip().endswith((";", "{", "}", ","))
        self.in_declaration = (begins or self.in_declaration) and not is_complete
        if code.rstrip().endswith("{"):
            self.comment = []
        return f"/** {escaped(text)} */ {code}" if begins and text else code

    def shown(self, line):
        """What Doxygen sees in place of a line."""
        comment = COMMENT.match(line)
        if comment:
            return self.remember(comment[1])
        self.follows_comment = False
        if not line.strip():
            self.comment, self.in_declaration = [], False
        if SECTION.match(line) or line == "};":
            self.comment = []
            return self.section(line)
        return self.declaration(line)


def escaped(text):
    """The text without what Doxygen would take for a command."""
    return re.sub(r"([\\@#%])", r"\\\1", text).replace("<", "&lt;").replace("*/", "* /")


def main():
    header = Header()
    for line in Path(sys.argv[1]).read_text(encoding="utf-8").splitlines():
        print(header.shown(line))


main()
