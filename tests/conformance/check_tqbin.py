#!/usr/bin/env python3
"""Holds tqbin against those conformance cases that a CSV file can express.

usage: check_tqbin.py TQBIN [CASES_DIRECTORY]

The tool takes labels, not codes, and reads only finite numbers; it bins every attribute
against one target, once.  So a case is used when its target has plain codes, at least
two of them among the cases kept, and its numbers are finite; of a supervised case every
continuous attribute's result against the list's own target is compared, of an
equal-frequency one, whose attributes influence each other, the results of a first call
for all attributes.  Exit status 1 when a result differs or too few cases could be used.
"""

import json
import math
import subprocess
import sys
import tempfile
from collections import Counter
from pathlib import Path

MISSING = -sys.float_info.max
LARGEST = sys.float_info.max
FEWEST_CASES = 80  # of the 200; fewer would mean that this script has lost its grip


class Unusable(Exception):
    """Why a case cannot be given to the tool."""


def number(value):
    if isinstance(value, int):
        return float(value)
    if value == "missing":
        return MISSING
    return float(value) if value in ("nan", "inf", "-inf") else float.fromhex(value)


def text(value):
    return "" if value == MISSING else repr(value)


def encoded_weight(variable, value):
    """The weight after rounding; None when the case is dropped."""
    if value == MISSING or value in map(number, variable.get("missing_values", [])):
        return None
    if "missing_interval" in variable:
        low, high = map(number, variable["missing_interval"])
        if low <= value <= high:
            return None
    if variable["rounding"] == 0:
        value = math.floor(value)
    elif variable["rounding"] == 1:
        value = math.floor(value + 0.5)
    return value if value > 0 else None


class Case:
    def __init__(self, case):
        self.case = case
        self.supervised = case["family"] == "supervised"
        self.variables = case["variables"]
        self.records = [[number(value) for value in record] for record in case["records"]]
        self.target = self.find(lambda v: v.get("role") == "target")
        self.weight = self.find(lambda v: v["kind"] == "weight")
        self.continuous = [i for i, v in enumerate(self.variables) if v["kind"] == "continuous"]

    def find(self, wanted):
        found = [i for i, v in enumerate(self.variables) if wanted(v)]
        return found[0] if found else None

    def require(self, condition, reason):
        if not condition:
            raise Unusable(reason)

    def check_usable(self):
        self.require(self.case["expected"]["calls"], "the variable list is refused")
        self.require(all(call["severity"] != "error" or call["code"] == 120008
                         for call in self.case["expected"]["calls"]), "a call fails")
        self.require(self.case["settings"]["bins"] >= 2, "no number of bins")
        self.require(self.continuous, "no continuous attribute")
        used = self.continuous + ([self.weight] if self.weight is not None else [])
        self.require(all(math.isfinite(record[i]) for record in self.records for i in used),
                     "numbers that are not finite")
        for i in used:
            low, high = map(number, self.variables[i].get("missing_interval", [0, 0]))
            self.require(low <= high < LARGEST, "an empty interval")
        if self.supervised:
            self.check_target()
        else:
            self.require(self.target is None and len(used) == len(self.variables),
                         "equal frequency with categories")
            self.require(self.case["calls"][0] == {}, "equal frequency of listed attributes")

    def check_target(self):
        self.require(self.target is not None, "no target")
        codes = [record[self.target] for record in self.records]
        self.require(all(code in (MISSING, -1.0) or code in range(256) for code in codes),
                     "odd codes")
        kept = {record[self.target] for record in self.records if self.is_kept(record)}
        kept -= {MISSING, -1.0}
        self.require(len(kept) >= 2, "fewer than two categories")
        self.require(kept == set(codes) - {MISSING, -1.0}, "a category in dropped cases only")
        declared = self.variables[self.target]["categories"]
        self.require(max(kept) < declared, "codes beyond the declaration")
        self.codes = sorted(int(code) for code in kept)

    def is_kept(self, record):
        if self.weight is None:
            return True
        return encoded_weight(self.variables[self.weight], record[self.weight]) is not None

    def label(self, code):
        """Labels sort like the codes."""
        return "" if code in (MISSING, -1.0) else f"class {int(code):03}"

    def csv(self):
        columns = [i for i, v in enumerate(self.variables)
                   if v["kind"] != "categorical" or i == self.target]
        lines = [",".join(f"v{i}" for i in columns)]
        for record in self.records:
            fields = [self.label(record[i]) if i == self.target else text(record[i])
                      for i in columns]
            # A line without any character would be no row.
            lines.append(",".join(fields) if any(fields) or len(fields) > 1 else '""')
        return "\n".join(lines) + "\n"

    def arguments(self):
        settings = self.case["settings"]
        closed = ["--closed", "right" if settings["right_closed"] else "left"]
        attributes = [argument for i in self.continuous for argument in ("--attribute", f"v{i}")]
        if self.supervised:
            arguments = ["supervised", "--target", f"v{self.target}",
                         "--prebin-threshold", str(max(0, settings["distinct_threshold"])),
                         "--prebin-bins", str(settings["bins"]),
                         "--min-bin-factor", repr(number(settings["small_bin_threshold"]))]
        else:
            arguments = ["equal-frequency", "--bins", str(settings["bins"])]
        if self.weight is not None:
            rounding = {0: "down", 1: "closest"}.get(self.variables[self.weight]["rounding"], "none")
            arguments += ["--weight", f"v{self.weight}", "--weight-rounding", rounding]
        return arguments + closed + attributes + self.user_missing()

    def user_missing(self):
        arguments = []
        for i, variable in enumerate(self.variables):
            if variable["kind"] == "categorical":
                continue
            for value in map(number, variable.get("missing_values", [])):
                if value != MISSING:  # is missing anyway
                    arguments += ["--user-missing", f"v{i}={value!r}"]
            if "missing_interval" in variable:
                low, high = map(number, variable["missing_interval"])
                if high != MISSING:
                    arguments += ["--user-missing", f"v{i}={text(low)}..{high!r}"]
        return arguments

    def expected(self):
        """The first result of each continuous attribute, against the own target."""
        results = {}
        for result in self.case["expected"]["results"]:
            if result.get("target") == self.target and result["attribute"] in self.continuous:
                if result["status"]["severity"] != "error":
                    results.setdefault(result["attribute"], result)
        self.require(results, "no result against the own target")
        return results

    def differences(self, document):
        found = {attribute["name"]: attribute for attribute in document["attributes"]}
        for index, wanted in self.expected().items():
            actual = found.get(f"v{index}")
            if actual is None:
                yield f"v{index} is not binned"
                continue
            for what, a, b in self.pairs(wanted, actual, document):
                if a != b:
                    yield f"v{index}: {what}: expected {a}, got {b}"

    def pairs(self, wanted, actual, document):
        yield "code", wanted["status"]["code"], actual["status"]["code"]
        yield "severity", wanted["status"]["severity"], actual["status"]["severity"]
        cuts = [number(cut) for cut in wanted["cuts"]]
        if LARGEST not in cuts and MISSING not in cuts:  # the tool leaves borders out
            yield "cuts", cuts, actual["cuts"]
            yield from self.bin_pairs(wanted, actual, document)
        yield "distinct values", wanted["distinct_values"], actual["distinct_values"]
        total = number(wanted["total_weight"])
        yield "weight", total, actual["weight"]
        yield ("missing weight", number(wanted["total_weight_with_missing"]) - total,
               actual["total_weight"] - actual["weight"])
        for what in ("minimum", "maximum"):
            value = number(wanted[what])
            yield what, None if value == MISSING else value, actual[what]
        if self.supervised:
            entropy = number(wanted["model_entropy"])
            if entropy == MISSING:
                yield "entropy", None, actual["entropy"]
            else:  # the tool gives the categories other codes: a sum in another order
                yield ("entropy", True, actual["entropy"] is not None and
                       math.isclose(entropy, actual["entropy"], rel_tol=1e-12, abs_tol=1e-12))

    def bin_pairs(self, wanted, actual, document):
        weights = [b["weight"] for b in actual["bins"]]
        counts = wanted["cell_counts"]
        if not self.supervised:
            if len(counts) == len(wanted["cuts"]) + 1 and wanted["cuts"]:
                yield "bins", [number(count) for count in counts], weights
            return
        rows = [[number(count) for count in row] for row in counts]
        yield "bins", [row[0] for row in rows], weights
        yield "categories", list(map(self.label, self.codes)), document["targets"][0]["categories"]
        for row, b in zip(rows, actual["bins"]):
            yield "category weights", [row[code + 1] for code in self.codes], b["category_weights"]


def check(tool, case, directory):
    """The differences between a case's answers and the tool's; Unusable without any."""
    case.check_usable()
    case.expected()
    table = Path(directory) / "case.csv"
    table.write_text(case.csv(), encoding="ascii")
    done = subprocess.run([tool, *case.arguments(), str(table), "--format", "json"],
                          capture_output=True, text=True, check=False)
    if done.returncode != 0:
        return [f"exit code {done.returncode}: {done.stderr.strip()}",
                " ".join(case.arguments()), case.csv()]
    return list(case.differences(json.loads(done.stdout)))


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    cases = Path(sys.argv[2]) if len(sys.argv) == 3 else Path(__file__).parent / "cases"
    checked = 0
    failed = 0
    unusable = Counter()
    with tempfile.TemporaryDirectory() as directory:
        for file in sorted(cases.glob("*.json")):
            for content in json.loads(file.read_text(encoding="utf-8"))["cases"]:
                try:
                    differences = check(sys.argv[1], Case(content), directory)
                except Unusable as reason:
                    unusable[str(reason)] += 1
                    continue
                checked += 1
                failed += bool(differences)
                for difference in differences:
                    print(f"{file.name}: {content['name']}: {difference}")
    for reason, count in unusable.most_common():
        print(f"not usable, {reason}: {count}")
    print(f"{checked} cases checked, {failed} with differences")
    sys.exit(failed > 0 or checked < FEWEST_CASES)


if __name__ == "__main__":
    main()
