#!/usr/bin/env python3
"""The model files that tqbin writes are as docs/model.schema.json says.

usage: schema_test.py TQBIN DATA_DIRECTORY
"""

import copy
import json
import subprocess
import sys
from pathlib import Path

import jsonschema

RUNS = [
    ("supervised", "iris.csv", "--target", "species"),
    ("supervised", "german_credit.csv", "--target", "credit", "--target", "housing"),
    ("supervised", "penguins.csv", "--target", "sex", "--closed", "left",
     "--user-missing", "bill_length_mm=..0,99"),
    ("supervised", "german_credit.csv", "--target", "credit", "--weight", "age"),
    ("equal-frequency", "penguins.csv", "--bins", "5"),
]


def main():
    tool, data = sys.argv[1], Path(sys.argv[2])
    schema = json.loads((Path(__file__).parents[2] / "docs" / "model.schema.json").read_text())
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    failures = 0
    for method, file, *options in RUNS:
        done = subprocess.run([tool, method, str(data / file), *options, "--format", "json"],
                              check=True, capture_output=True, text=True)
        document = json.loads(done.stdout)
        for error in validator.iter_errors(document):
            failures += 1
            print(method, file, options, error.json_path, error.message)
        damaged = copy.deepcopy(document)
        damaged["attributes"][0]["surplus"] = 1
        if validator.is_valid(damaged):
            failures += 1
            print("a key that the schema does not know passed")
    print(f"{len(RUNS)} model files, {failures} failures")
    return 1 if failures else 0


sys.exit(main())
