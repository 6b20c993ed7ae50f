#!/usr/bin/python3
"""Compares the branches that no test takes with the list of those that are explained.

    unexplained.py COVERAGE DOCUMENT

COVERAGE is gcovr's JSON.  DOCUMENT holds a table with rows of the form

    | `src/data/bindataset.cpp` | `delete reader;` | 1 | why no test takes it |

A row explains all lines of its file that contain its code, and tells how many of
their branches are not taken.  Exit status: 0 the two agree; 1 they do not, a line
for each difference.  Run from the root of the tree.
"""

import json
import re
import sys

ROW = re.compile(r"\| `([^`]+)` \| `([^`]+)` \| (\d+) \| .+ \|")


def untaken(coverage):
    """(file, line number, text, branches not taken) of each line that has such."""
    for file in coverage["files"]:
        with open(file["file"], encoding="utf-8") as source:
            text = source.read().splitlines()
        for line in file["lines"]:
            if line["gcovr/noncode"]:
                continue
            count = sum(branch["count"] == 0 for branch in line["branches"])
            if count > 0:
                number = line["line_number"]
                yield file["file"], number, text[number - 1].strip(), count


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        lines = list(untaken(json.load(file)))
    with open(sys.argv[2], encoding="utf-8") as file:
        rows = [(path, code, int(count)) for path, code, count in ROW.findall(file.read())]

    differences = 0
    explained = set()
    for path, code, count in rows:
        matching = [line for line in lines if line[0] == path and code in line[2]]
        explained.update(matching)
        found = sum(line[3] for line in matching)
        if found != count:
            print(f"{path}: `{code}`: {count} branches explained, {found} not taken")
            differences += 1
    for path, number, text, count in lines:
        if (path, number, text, count) not in explained:
            print(f"{path}:{number}: {count} branches not taken and not explained: {text}")
            differences += 1
    print(f"{sum(line[3] for line in lines)} branches not taken, on {len(lines)} lines, each"
          f" explained in {sys.argv[2]}" if differences == 0 else f"{differences} differences")
    return 1 if differences else 0


if __name__ == "__main__":
    sys.exit(main())
