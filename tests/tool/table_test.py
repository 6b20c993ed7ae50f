#!/usr/bin/env python3
"""The table for people tells the same as the JSON document for programs.

usage: table_test.py TQBIN DATA_DIRECTORY
"""

import json
import math
import re
import subprocess
import sys
from pathlib import Path

RUNS = [
    ("supervised", "iris.csv", "--target", "species"),
    ("supervised", "german_credit.csv", "--target", "credit"),
    ("supervised", "penguins.csv", "--target", "sex", "--closed", "left"),
    ("supervised", "adult_train.csv", "--target", "income-per-year"),
    ("equal-frequency", "penguins.csv", "--bins", "5"),
    ("equal-frequency", "diamonds.csv", "--bins", "10", "--closed", "left"),
]


def output(tool, data, arguments, *more):
    method, file, *options = arguments
    done = subprocess.run([tool, method, str(data / file), *options, *more], check=True,
                          capture_output=True, text=True)
    return done.stdout


def sections(table):
    """The rows of cells of every column's section, by the column's name."""
    result = {}
    for block in table.split("\n\n")[1:]:
        heading, *lines = block.splitlines()
        rows = [re.split(r"  +", line.strip()) for line in lines if not
                re.match(r"  (what to do|information gain|\d+ distinct)", line)]
        result[heading.split(": ")[0]] = rows
    return result


def interval(one, right_closed):
    lower = "(-inf" if one["lower"] is None else f"{'(['[not right_closed]}{one['lower']:.16g}"
    upper = "inf)" if one["upper"] is None else f"{one['upper']:.16g}{')]'[right_closed]}"
    return f"{lower}, {upper}"


def events(attribute, one):
    """The event rate and the weight of evidence of a bin."""
    totals = [sum(weights) for weights in
              zip(*(b["category_weights"] for b in attribute["bins"]))]
    cells = one["category_weights"]
    if sum(cells) == 0:
        return ["?", "0.000"]
    added = 0.5 if min(cells) == 0 else 0.0
    evidence = math.log((cells[1] + added) / totals[1] / ((cells[0] + added) / totals[0]))
    return [f"{100 * cells[1] / sum(cells):.1f}%", f"{evidence:.3f}"]


def expected_rows(attribute, categories, right_closed):
    whole = attribute["total_weight"]

    def row(name, weight, category_weights):
        return [name, f"{weight:.0f}", f"{100 * weight / whole:.1f}%",
                *(f"{w:.0f}" for w in category_weights)]

    has_events = len(categories) == 2 and attribute["bins"]
    rows = [["bin", "rows", "share", *categories, *(["rate", "WoE"] if has_events else [])]]
    for one in attribute["bins"]:
        rows.append(row(interval(one, right_closed), one["weight"],
                        one.get("category_weights", [])))
        if has_events:
            rows[-1] += events(attribute, one)
    totals = [sum(one["category_weights"][c] for one in attribute["bins"])
              for c in range(len(categories))]
    rows.append(row("total", attribute["weight"], totals))
    missing = whole - attribute["weight"]
    if missing > 0:
        rows.append(row("missing", missing, []))
    return rows


def main():
    tool, data = sys.argv[1], Path(sys.argv[2])
    compared = failures = 0
    for arguments in RUNS:
        document = json.loads(output(tool, data, arguments, "--format", "json"))
        table = sections(output(tool, data, arguments))
        categories = next((t["categories"] for t in document["targets"]), [])
        right_closed = document["settings"]["closed"] == "right"
        for attribute in document["attributes"]:
            expected = expected_rows(attribute, categories, right_closed)
            got = table[attribute["name"]]
            compared += len(expected)
            if got != expected:
                failures += 1
                print(arguments, attribute["name"], "\n got     ", got, "\n expected", expected)
    print(f"{compared} rows compared, {failures} columns differ")
    return 1 if failures or compared < 100 else 0


sys.exit(main())
