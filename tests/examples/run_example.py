#!/usr/bin/env python3
"""An example prints what is kept for it, leaves no file behind, and stays short.

usage: run_example.py PROGRAM SOURCE
"""

import csv
import os
import sqlite3
import subprocess
import sys
import tempfile
from pathlib import Path

HERE = Path(__file__).parent
LONGEST = 79  # lines of a program that one reads in one go


def make_database(path):
    """The flowers as an SQLite file, with a row whose measurement is missing."""
    with open(HERE.parents[1] / "examples" / "data" / "iris.csv", encoding="utf-8") as table:
        rows = [(float(row["petal_length"]), row["species"]) for row in csv.DictReader(table)]
    database = sqlite3.connect(path)
    with database:
        database.execute("CREATE TABLE iris(petal REAL, species TEXT)")
        database.executemany("INSERT INTO iris VALUES(?, ?)", [*rows, (None, "setosa")])
    database.close()


def faults(program, source):
    """What is wrong with the example, as lines of text."""
    with tempfile.TemporaryDirectory() as scratch:
        database, temporary = Path(scratch) / "iris.db", Path(scratch) / "tmp"
        make_database(database)
        temporary.mkdir()
        done = subprocess.run([program, database], text=True, capture_output=True, check=False,
                              env={**os.environ, "TMPDIR": str(temporary)})
        left = [str(path) for path in temporary.rglob("*")]
    expected = (HERE / "expected" / source.with_suffix(".txt").name).read_text()
    if done.returncode != 0 or done.stderr:
        yield f"exit code {done.returncode}, expected 0; it said: {done.stderr}"
    if done.stdout != expected:
        yield f"it printed\n{done.stdout}instead of\n{expected}"
    if left:
        yield f"left behind: {left}"
    length = len(source.read_text().splitlines())
    if length > LONGEST:
        yield f"{source.name} has {length} lines, more than {LONGEST}"


def main():
    found = list(faults(Path(sys.argv[1]), Path(sys.argv[2])))
    print("\n".join(found))
    return 1 if found else 0


sys.exit(main())
