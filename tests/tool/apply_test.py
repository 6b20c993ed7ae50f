#!/usr/bin/env python3
"""Applying a model to the rows that it was made of gives every bin its counts back.

usage: apply_test.py TQBIN DATA_DIRECTORY
"""

import bisect
import csv
import json
import subprocess
import sys
import tempfile
from collections import Counter
from pathlib import Path

RUNS = [
    ("supervised", "iris.csv", "--target", "species"),
    ("supervised", "german_credit.csv", "--target", "credit", "--closed", "left"),
    ("supervised", "penguins.csv", "--target", "sex"),
    ("supervised", "adult_train.csv", "--target", "income-per-year"),
    ("equal-frequency", "diamonds.csv", "--bins", "7", "--closed", "left"),
    ("equal-frequency", "penguins.csv", "--bins", "5"),
]


def run(*arguments):
    return subprocess.run(arguments, check=True, capture_output=True, text=True).stdout


def bin_of(attribute, text, tokens):
    """The index as text; '' for a missing value."""
    if text.strip() in tokens:
        return ""
    side = bisect.bisect_left if attribute["closed"] == "right" else bisect.bisect_right
    return str(side(attribute["cuts"], float(text)))


def check(tool, path, arguments, model_path):
    """How many values were compared, and the differences."""
    method, file, *options = arguments
    data = path / file
    run(tool, method, str(data), *options, "--format", "json", "-o", str(model_path))
    model = json.loads(model_path.read_text())
    tokens = model["settings"]["missing_tokens"]
    rows = list(csv.DictReader(run(tool, "apply", str(model_path), str(data), "--as",
                                   "index").splitlines()))
    compared, differences = 0, []
    target = model["targets"][0]["name"] if model["targets"] else None
    for attribute in model["attributes"]:
        name = attribute["name"]
        counts = Counter()
        for row in rows:
            compared += 1
            wanted = bin_of(attribute, row[name], tokens)
            if row[name + "_bin"] != wanted:
                differences.append((file, name, row[name], row[name + "_bin"], wanted))
            if wanted != "" and (target is None or row[target].strip() not in tokens):
                counts[int(wanted)] += 1
        for b, one in enumerate(attribute["bins"]):
            if one["rows"] != counts[b]:
                differences.append((file, name, "bin", b, one["rows"], counts[b]))
    return compared, differences


def main():
    tool, data = sys.argv[1], Path(sys.argv[2])
    total, failed = 0, False
    with tempfile.TemporaryDirectory() as scratch:
        for arguments in RUNS:
            compared, differences = check(tool, data, arguments, Path(scratch) / "model.json")
            total += compared
            failed = failed or bool(differences)
            print(*differences[:5], sep="\n", end="\n" if differences else "")
    print(f"{total} values compared")
    return 1 if failed or total < 100000 else 0


sys.exit(main())
