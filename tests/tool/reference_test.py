#!/usr/bin/env python3
"""Holds tqbin's results on whole data sets against the plain second implementation.

usage: reference_test.py TQBIN DATA_DIRECTORY
"""

import json
import math
import random
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True  # the sources' folder stays as it is

import reference  # noqa: E402

SUPERVISED = [
    # file, target, options for tqbin, keyword arguments for the reference
    ("iris.csv", "species", [], {}),
    ("iris.csv", "species", ["--closed", "left"], {"right_closed": False}),
    ("german_credit.csv", "credit", [], {}),
    ("penguins.csv", "species", [], {}),
    ("penguins.csv", "sex", ["--closed", "left"], {"right_closed": False}),
    ("adult_train.csv", "income-per-year", [], {}),
    ("adult_train.csv", "income-per-year", ["--min-bin-factor", "0.5"], {"min_bin_factor": 0.5}),
    ("diamonds.csv", "cut", ["--prebin-threshold", "300", "--prebin-bins", "100"],
     {"prebin_threshold": 300, "prebin_bins": 100}),
    ("diamonds.csv", "clarity",
     ["--prebin-threshold", "300", "--prebin-bins", "60", "--closed", "left"],
     {"prebin_threshold": 300, "prebin_bins": 60, "right_closed": False}),
]

WEIGHTED = [
    # rounding, attributes; the census weight is a sampling weight, taken as a number
    ("closest", ["age", "hours-per-week"]),
    ("none", ["age"]),
]

EQUAL_FREQUENCY = [
    ("iris.csv", 4, []),
    ("penguins.csv", 7, []),
    ("penguins.csv", 5, ["--closed", "left"]),
    ("german_credit.csv", 3, []),
    ("adult_train.csv", 10, []),
    ("adult_train.csv", 10, ["--closed", "left"]),
    ("diamonds.csv", 12, []),
]


RANDOM_TABLES = 150


def random_table(source, missing_values):
    """A small table full of ties; with or without missing values, odd weights.

    Weights that count are multiples of a quarter, so that sums and differences are exact,
    and not below 1, so that the logarithm of two rows' weight minus 1 is not negative.
    """
    spread = source.choice([3, 6, 30])
    lines = ["value,class,weight"]
    for _ in range(source.randint(2, 60)):
        value = source.randint(-spread, spread) / source.choice([1, 2])
        is_missing = missing_values and source.random() < 0.15
        lines.append(",".join(["" if is_missing else str(value),
                               source.choice("xyz") if source.random() < 0.9 else "NA",
                               source.choice(["1", "2", "2.5", "7", "1.25", "", "-1"])]))
    return "\n".join(lines + ["0,x,3", "1,y,3", ""])


def run(tool, *arguments):
    done = subprocess.run([tool, *arguments, "--format", "json"], check=True,
                          capture_output=True, text=True)
    return json.loads(done.stdout)


class Checker:
    def __init__(self):
        self.checked = 0
        self.failures = []

    def equal(self, what, got, expected):
        self.checked += 1
        if got != expected:
            self.failures.append(f"{what}: {got} instead of {expected}")

    def close(self, what, got, expected):
        self.checked += 1
        if not math.isclose(got, expected, rel_tol=1e-9, abs_tol=1e-12):
            self.failures.append(f"{what}: {got} instead of {expected}")

    def common(self, what, got, column):
        values = [case[0] for case in column.cases]
        self.equal(what + " minimum", got["minimum"], min(values))
        self.equal(what + " maximum", got["maximum"], max(values))
        self.equal(what + " distinct", got["distinct_values"], len(set(values)))
        weight = sum(case[2] for case in column.cases)
        self.close(what + " weight", got["weight"], weight)
        self.close(what + " missing", got["total_weight"] - got["weight"],
                   column.weight_with_missing - weight)
        self.equal(what + " bins", len(got["bins"]), len(got["cuts"]) + 1)
        ends = [None, *got["cuts"], None]
        for b, one in enumerate(got["bins"]):
            self.equal(f"{what} ends of bin {b}", [one["lower"], one["upper"]], ends[b:b + 2])

    def supervised(self, what, tool, path, target, options, keywords, reading):
        document = run(tool, "supervised", str(path), "--target", target, *options)
        names = [attribute["name"] for attribute in document["attributes"]]
        columns, categories = reference.read_columns(path, names, target, **reading)
        self.equal(what + " categories", document["targets"][0]["categories"], categories)
        for got in document["attributes"]:
            name = f"{what} {got['name']}"
            column = columns[got["name"]]
            cuts, counts, model = reference.supervised(column, categories, **keywords)
            self.common(name, got, column)
            self.equal(name + " cuts", got["cuts"], cuts)
            for one, row in zip(got["bins"], counts):
                self.close(name + " bin weight", one["weight"], sum(row))
                for a, b in zip(one["category_weights"], row, strict=True):
                    self.close(name + " category weight", a, b)
            self.close(name + " entropy", got["entropy"], model)
            self.equal(name + " code", got["status"]["code"], 0 if cuts else 120017)

    def equal_frequency(self, what, tool, path, bins, options, reading):
        document = run(tool, "equal-frequency", str(path), "--bins", str(bins), *options)
        names = [attribute["name"] for attribute in document["attributes"]]
        columns, _ = reference.read_columns(path, names, **reading)
        for got in document["attributes"]:
            name = f"{what} {got['name']}"
            column = columns[got["name"]]
            cuts, weights = reference.equal_frequency(column, bins, "left" not in options)
            self.common(name, got, column)
            self.equal(name + " cuts", got["cuts"], cuts)
            for one, weight in zip(got["bins"], weights):
                self.close(name + " bin weight", one["weight"], weight)


def check_random_tables(check, tool, path):
    for seed in range(RANDOM_TABLES):
        source = random.Random(seed)
        options = ["--attribute", "value"]
        keywords, reading = {}, {}
        if source.random() < 0.5:
            options += ["--closed", "left"]
            keywords["right_closed"] = False
        if source.random() < 0.7:
            rounding = source.choice(["closest", "down", "none"])
            options += ["--weight", "weight", "--weight-rounding", rounding]
            reading = {"weight": "weight", "rounding": rounding}
        path.write_text(random_table(source, True))
        factor = source.choice([0, 0.5, 1])
        check.supervised(f"seed {seed}", tool, path, "class",
                         [*options, "--min-bin-factor", str(factor)],
                         {**keywords, "min_bin_factor": factor}, reading)
        path.write_text(random_table(source, False))
        check.equal_frequency(f"seed {seed}", tool, path, source.randint(2, 8), options, reading)


def main():
    tool, data = sys.argv[1], Path(sys.argv[2])
    check = Checker()
    for file, target, options, keywords in SUPERVISED:
        check.supervised(f"{file} {' '.join(options)}", tool, data / file, target, options,
                         keywords, {})
    for rounding, attributes in WEIGHTED:
        options = ["--weight", "fnlwgt", "--weight-rounding", rounding]
        for attribute in attributes:
            options += ["--attribute", attribute]
        check.supervised(f"weight {rounding}", tool, data / "adult_train.csv", "income-per-year",
                         options, {}, {"weight": "fnlwgt", "rounding": rounding})
    for file, bins, options in EQUAL_FREQUENCY:
        check.equal_frequency(f"{file} {bins} {' '.join(options)}", tool, data / file, bins,
                              options, {})
    with tempfile.TemporaryDirectory() as directory:
        check_random_tables(check, tool, Path(directory) / "table.csv")
    print(f"{check.checked} numbers compared, {len(check.failures)} differ")
    for failure in check.failures[:20]:
        print(failure)
    return 1 if check.failures or check.checked < 1000 else 0


sys.exit(main())
