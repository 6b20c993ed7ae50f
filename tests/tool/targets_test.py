#!/usr/bin/env python3
"""Several targets in one run give what a run for each of them gives.

usage: targets_test.py TQBIN DATA_DIRECTORY
"""

import csv
import json
import sqlite3
import subprocess
import sys
import tempfile
from pathlib import Path

# A file, options of all runs, its targets, and a column to pair with them.
RUNS = [
    ("penguins.csv", ["--user-missing", "body_mass_g=3700,4600..5000"],
     ["species", "sex", "island"], "body_mass_g"),
    ("german_credit.csv", ["--closed", "left", "--min-bin-factor", "0.2"], ["credit", "housing"], "month"),
    ("adult_train.csv", ["--weight", "fnlwgt", "--weight-rounding", "none",
                         "--prebin-threshold", "500", "--prebin-bins", "50"],
     ["income-per-year", "sex", "race"], "age"),
    ("diamonds.csv", ["-a", "carat,price", "--user-missing", "cut=Fair"],
     ["cut", "color", "clarity"], "price"),
]


def run(*arguments):
    return subprocess.run([str(argument) for argument in arguments], check=True,
                          capture_output=True, text=True).stdout


def model_of(tool, data, options):
    return json.loads(run(tool, "supervised", data, *options, "--format", "json"))


def without(options, name, value=""):
    """The options but those of this name whose value begins so."""
    kept = list(options)
    for i in reversed(range(len(options) - 1)):
        if options[i] == name and options[i + 1].startswith(value):
            del kept[i:i + 2]
    return kept


def options_for(options, target):
    """What is said about missing values of another target has no place in a run."""
    return options if target == "cut" else without(options, "--user-missing", "cut=")


def sorted_entries(model):
    return sorted(model["attributes"], key=lambda entry: (entry["name"], entry["target"]))


def check_run(tool, data, options, targets, paired):
    """The differences between one run for all targets and one for each."""
    together = model_of(tool, data, [*options, *(part for t in targets for part in ("-t", t))])
    alone = [model_of(tool, data, [*options_for(options, t), "-t", t]) for t in targets]
    wanted = {"targets": [one["targets"][0] for one in alone],
              # What is a target here is an attribute there.
              "attributes": [entry for one in alone for entry in sorted_entries(one)
                             if entry["name"] not in targets]}
    wanted["attributes"] = sorted_entries(wanted)
    differences = []
    if together["targets"] != wanted["targets"]:
        differences.append((data.name, "targets"))
    if sorted_entries(together) != wanted["attributes"]:
        differences.append((data.name, "attributes"))
    pairs = model_of(tool, data, [*without(options, "-a"), *(
        part for t in targets for part in ("--pair", f"{paired}:{t}"))])
    if pairs["attributes"] != [one for one in together["attributes"] if one["name"] == paired]:
        differences.append((data.name, "pairs", paired))
    return len(together["attributes"]), differences


def check_apply(tool, data, scratch):
    """Applied, the bins by each target are those of its own model."""
    both, alone = scratch / "both.json", scratch / "alone.json"
    run(tool, "supervised", data, "-t", "species", "-t", "sex", "--format", "json", "-o", both)
    rows = list(csv.DictReader(run(tool, "apply", both, data).splitlines()))
    differences = []
    for target in ("species", "sex"):
        run(tool, "supervised", data, "-t", target, "--format", "json", "-o", alone)
        wanted = csv.DictReader(run(tool, "apply", alone, data).splitlines())
        for row, expected in zip(rows, wanted, strict=True):
            for name in ("bill_length_mm", "body_mass_g"):
                if row[f"{name}_by_{target}_bin"] != expected[f"{name}_bin"]:
                    differences.append((target, name, row, expected))
    return len(rows), differences + check_exports(tool, both, rows)


def check_exports(tool, model, rows):
    """The differences between applied bins and those of the model in other languages."""
    names = [name for name in rows[0] if not name.endswith("_bin")]
    database = sqlite3.connect(":memory:")
    database.row_factory = sqlite3.Row
    database.execute(f"CREATE TABLE data ({', '.join(names)})")
    database.executemany(f"INSERT INTO data VALUES ({', '.join('?' * len(names))})",
                         [[row[name] for name in names] for row in rows])
    found = [dict(row) for row in database.execute(run(tool, "export", model, "--format", "sql"))]
    program = {}
    exec(run(tool, "export", model, "--format", "python"), program)
    differences = []
    for row, by_sql in zip(rows, found, strict=True):
        by_program = {**row, **program["bins_of"](row)}
        for kind, bins in (("sql", by_sql), ("python", by_program)):
            if {name: value or "" for name, value in bins.items()} != row:
                differences.append((kind, row, bins))
    return differences


def main():
    tool, data = sys.argv[1], Path(sys.argv[2])
    failed, entries = False, 0
    for file, options, targets, paired in RUNS:
        count, differences = check_run(tool, data / file, options, targets, paired)
        entries += count
        failed = failed or bool(differences)
        print(*differences, sep="\n", end="\n" if differences else "")
    with tempfile.TemporaryDirectory() as scratch:
        rows, differences = check_apply(tool, data / "penguins.csv", Path(scratch))
    print(*differences[:3], sep="\n", end="\n" if differences else "")
    print(f"{entries} results compared, {rows} rows applied")
    return 1 if failed or differences or entries < 40 or rows < 300 else 0


sys.exit(main())
