#!/usr/bin/env python3
"""Weighted runs tell how many rows their bins hold, as a plain count of the file does.

usage: rows_test.py TQBIN DATA_DIRECTORY
"""

import bisect
import csv
import json
import math
import subprocess
import sys
from collections import Counter
from pathlib import Path

# The method, its options, a file and its weight column.
RUNS = [
    ("supervised", ["-t", "income-per-year", "-t", "sex", "-a", "age,hours-per-week",
                    "--weight-scale", "mean", "--user-missing", "age=17,40..44"],
     "adult_train.csv", "fnlwgt"),
    ("supervised", ["-t", "sex", "--closed", "left"], "penguins.csv", "bill_depth_mm"),
    ("equal-frequency", ["-b", "4"], "penguins.csv", "flipper_length_mm"),
]


def counts_of(attribute, model, rows, weight):
    """Rows in all, with a value, and in each bin and category; what the file says."""
    tokens = model["settings"]["missing_tokens"]
    target = next((t for t in model["targets"] if t["name"] == attribute["target"]), None)
    side = bisect.bisect_left if attribute["closed"] == "right" else bisect.bisect_right
    rule = attribute["missing"]
    low, high = rule["range"] or (math.inf, -math.inf)
    total, bins = 0, Counter()
    for row in rows:
        if row[weight] in tokens:
            continue
        total += 1
        text = row[attribute["name"]]
        if text in tokens or (target and row[target["name"]] in tokens):
            continue
        value = float(text)
        if value not in rule["values"] and not low <= value <= high:
            category = target["categories"].index(row[target["name"]]) if target else None
            bins[side(attribute["cuts"], value), category] += 1
    return total, bins


def check(attribute, model, rows, weight):
    total, bins = counts_of(attribute, model, rows, weight)
    found = Counter()
    for b, one in enumerate(attribute["bins"]):
        for category, count in enumerate(one.get("category_rows", [])):
            found[b, category] = count
        if attribute["target"] is None:
            found[b, None] = one["rows"]
        elif one["rows"] != sum(one["category_rows"]):
            return False
    return (+found == bins and attribute["rows"] == sum(bins.values()) and
            attribute["total_rows"] == total)


def main():
    tool, data = sys.argv[1], Path(sys.argv[2])
    checked, failed = 0, []
    for method, options, file, weight in RUNS:
        printed = subprocess.run([tool, method, str(data / file), *options, "-w", weight,
                                  "--format", "json"], check=True, capture_output=True, text=True)
        model = json.loads(printed.stdout)
        with open(data / file, newline="", encoding="utf-8") as lines:
            rows = [{name: text.strip() for name, text in row.items()}
                    for row in csv.DictReader(lines)]
        for attribute in model["attributes"]:
            checked += len(attribute["bins"])
            if not check(attribute, model, rows, weight):
                failed.append((file, attribute["name"], attribute["target"]))
    print(*failed, sep="\n", end="\n" if failed else "")
    print(f"{checked} bins counted")
    return 1 if failed or checked < 40 else 0


sys.exit(main())
