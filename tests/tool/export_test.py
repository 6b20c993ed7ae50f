#!/usr/bin/env python3
"""What `tqbin export` writes finds the bins that the model's cut points mean.

usage: export_test.py TQBIN DATA_DIRECTORY

SQL runs in SQLite and PostgreSQL, Python here, C behind a compiler, PMML in the small
evaluator below; each over all rows of the five data sets, and over numbers and names
made to cause trouble.
"""

import bisect
import csv
import ctypes
import io
import json
import math
import random
import sqlite3
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from postgres_test import Server, programs

TOOL, DATA = sys.argv[1], Path(sys.argv[2])

RUNS = [
    ("supervised", "iris.csv", "--target", "species"),
    ("supervised", "penguins.csv", "--target", "sex", "--closed", "left",
     "--user-missing", "bill_length_mm=39.1,50..55", "--user-missing", "body_mass_g=..3500"),
    ("supervised", "german_credit.csv", "--target", "credit"),
    ("supervised", "adult_train.csv", "--target", "income-per-year", "--closed", "left"),
    ("equal-frequency", "diamonds.csv", "--bins", "7", "--user-missing", "x=0",
     "--user-missing", "price=326,400..500"),
]
PMML = "{http://www.dmg.org/PMML-4_4}"
LIMIT = sys.float_info.max
HOSTILE = ["a\"b'c`d", "two\nlines\r\tand", "select", "*/ ?\?/ // --", "\\", "\\\"; \\n'",
           "%s %d {0} {}", "ünï ☃ 😀", "]]> <!-- &amp; </x>", "1", "bin_of_1", "class", '"""',
           "'; DROP TABLE data; --", "\u2028line", "x" * 60, "x" * 61]


def expected(attribute, tokens, value):
    """The index of a value's bin, plainly; None for a missing one."""
    if value is None or (isinstance(value, str) and value.strip() in tokens):
        return None
    number = float(value)
    missing = attribute["missing"]
    if not -LIMIT < number < LIMIT or number in missing["values"]:
        return None
    if missing["range"] is not None:
        low, high = missing["range"]
        if (low is None or low <= number) and (high is None or number <= high):
            return None
    side = bisect.bisect_left if attribute["closed"] == "right" else bisect.bisect_right
    return side(attribute["cuts"], number)


def interval(attribute, place):
    """How the bin is written: shortest numbers, without a needless '.0'."""
    def text(number):
        return repr(number).removesuffix(".0")
    cuts, closed = attribute["cuts"], attribute["closed"]
    lower = text(cuts[place - 1]) if place > 0 else "-inf"
    upper = text(cuts[place]) if place < len(cuts) else "inf"
    return (("[" if closed == "left" and place > 0 else "(") + f"{lower}, {upper}" +
            ("]" if closed == "right" and place < len(cuts) else ")"))


def export(model_path, form, *options):
    return subprocess.run([TOOL, "export", str(model_path), "--format", form, *options],
                          check=True, capture_output=True).stdout.decode()


def named(columns):
    """A dictionary of (name, result) pairs that come once each."""
    result = dict(columns)
    assert len(result) == len(list(columns))
    return result


class PythonBins:
    def __init__(self, path, _scratch, *options):
        self.space = {}
        exec(compile(export(path, "python", *options), "export", "exec"), self.space)

    def bin(self, bins_name, value):
        return self.space["COLUMNS"][bins_name][1](value)

    def names(self):
        return {bins: name for bins, (name, _) in self.space["COLUMNS"].items()}


class CBins:
    def __init__(self, path, scratch, *options):
        source, library = scratch / "bins.c", scratch / f"bins{random.random()}.so"
        source.write_text(export(path, "c", *options), encoding="ascii")
        subprocess.run(["gcc", "-std=c99", "-O1", "-Wall", "-Wextra", "-pedantic", "-Werror",
                        "-Wtrigraphs", "-shared", "-fPIC", str(source), "-o", str(library)],
                       check=True)
        result = ctypes.c_int if "index" in options else ctypes.c_char_p

        class Column(ctypes.Structure):
            _fields_ = [("name", ctypes.c_char_p), ("bins_name", ctypes.c_char_p),
                        ("bin", ctypes.CFUNCTYPE(result, ctypes.c_double))]

        self.library = ctypes.CDLL(str(library))
        table = ctypes.cast(self.library.tqbin_columns, ctypes.POINTER(Column))
        self.columns, self.tokens = {}, json.loads(path.read_text())["settings"]["missing_tokens"]
        for i in range(1 << 30):
            if table[i].name is None:
                break
            self.columns[table[i].bins_name.decode()] = (table[i].name.decode(), table[i].bin)

    def bin(self, bins_name, value):
        missing = value is None or (isinstance(value, str) and value.strip() in self.tokens)
        found = self.columns[bins_name][1](math.nan if missing else float(value))
        if isinstance(found, bytes):
            return found.decode()
        return None if found == -1 else found

    def names(self):
        return {bins: name for bins, (name, _) in self.columns.items()}


class PmmlBins:
    """An evaluator of documents with a transformation dictionary of Discretize only."""

    def __init__(self, path, _scratch, *options):
        root = ElementTree.fromstring(export(path, "pmml", *options))
        assert (root.tag, root.get("version")) == (PMML + "PMML", "4.4")
        assert [one.tag.removeprefix(PMML) for one in root] == [
            "Header", "DataDictionary", "TransformationDictionary"]
        fields = root.findall(f"{PMML}DataDictionary/{PMML}DataField")
        assert int(root.find(f"{PMML}DataDictionary").get("numberOfFields")) == len(fields)
        self.missing = named([(one.get("name"), {value.get("value") for value in one})
                              for one in fields])
        for value in root.iter(f"{PMML}Value"):
            assert value.get("property") == "missing"
        self.columns = named([(one.get("name"), self.discretize(one))
                              for one in root.findall(f"{PMML}TransformationDictionary/*")])

    @staticmethod
    def discretize(field):
        (element,) = field
        assert (field.tag, element.tag) == (PMML + "DerivedField", PMML + "Discretize")
        assert element.get("dataType") == field.get("dataType")
        assert set(field.attrib) == {"name", "optype", "dataType"}
        convert = {"integer": int, "string": str}[field.get("dataType")]
        intervals = []
        for one in element:
            (limits,) = one
            assert (one.tag, limits.tag) == (PMML + "DiscretizeBin", PMML + "Interval")
            low, high = float(limits.get("leftMargin")), float(limits.get("rightMargin"))
            closure = limits.get("closure")
            assert closure in ("openOpen", "openClosed", "closedOpen", "closedClosed")
            intervals.append((low, closure.startswith("closed"), high,
                              closure.endswith("Closed"), convert(one.get("binValue"))))
        return element.get("field"), intervals

    def bin(self, bins_name, value):
        name, intervals = self.columns[bins_name]
        if value is None or (isinstance(value, str) and value.strip() in self.missing[name]):
            return None
        number = float(value)
        found = [result for low, low_closed, high, high_closed, result in intervals
                 if (low <= number if low_closed else low < number) and
                 (number <= high if high_closed else number < high)]
        assert len(found) <= 1, (bins_name, value, found)  # intervals are disjoint
        return found[0] if found else None

    def names(self):
        return {bins: name for bins, (name, _) in self.columns.items()}


def quoted(name):
    return '"' + name.replace('"', '""') + '"'


def run_in_sqlite(query, table, names, rows, column_type):
    """The names and rows that the query gives, the table's own columns first."""
    database = sqlite3.connect(":memory:")
    columns = ", ".join(f"{quoted(name)} {column_type}" for name in names)
    database.execute(f"CREATE TABLE {quoted(table)} ({columns})")
    places = ", ".join("?" * len(names))
    database.executemany(f"INSERT INTO {quoted(table)} VALUES ({places})", rows)
    cursor = database.execute(query)
    return [column[0] for column in cursor.description], cursor.fetchall()


def copy_text(value):
    """A value as COPY reads it."""
    if value is None:
        return "\\N"
    text = str(value).replace("\\", "\\\\").replace("\t", "\\t")
    return text.replace("\n", "\\n").replace("\r", "\\r")


class Postgres:
    def __init__(self):
        self.server = Server()

    def run(self, query, table, names, rows, column_type):
        columns = ", ".join(f"{quoted(name)} {column_type}" for name in names)
        lines = "".join("\t".join(map(copy_text, row)) + "\n" for row in rows)
        script = ("SET client_min_messages = warning;\n"
                  f"DROP TABLE IF EXISTS {quoted(table)};\n"
                  f"CREATE TABLE {quoted(table)} ({columns});\n"
                  f"COPY {quoted(table)} FROM STDIN;\n{lines}\\.\n"
                  f"\\pset null '<null>'\n{query}")
        done = subprocess.run([str(programs() / "psql"), "-q", "-v", "ON_ERROR_STOP=1", "--csv",
                               self.server.address], input=script.encode(), check=True,
                              stdout=subprocess.PIPE)
        header, *found = csv.reader(io.StringIO(done.stdout.decode(), newline=""))
        return header, [[None if field == "<null>" else field for field in row] for row in found]


class Export(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.directory = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.directory.cleanup)
        cls.scratch = Path(cls.directory.name)
        cls.postgres = Postgres()
        cls.addClassCleanup(cls.postgres.server.stop)

    def make_model(self, *arguments):
        path = self.scratch / "model.json"
        method, file, *options = arguments
        subprocess.run([TOOL, method, str(file), *options, "--format", "json", "-o", str(path)],
                       check=True, capture_output=True)
        return path, json.loads(path.read_text())

    def hand_made(self, attributes, tokens=("", "NA")):
        """A model with attributes (name, cuts, closed side, labels, missing rule)."""
        rows = self.scratch / "rows.csv"
        rows.write_text("a\n" + "\n".join(map(str, range(20))) + "\n")
        path, model = self.make_model("equal-frequency", rows, "--bins", "2")
        model["settings"]["missing_tokens"] = list(tokens)
        template = model["attributes"].pop()
        for name, cuts, closed, labels, missing in attributes:
            model["attributes"].append({**template, "name": name, "cuts": cuts, "closed": closed,
                                        "labels": labels, "missing": missing, "bins": []})
        path.write_text(json.dumps(model))
        return path, model

    def compare(self, attribute, value, wanted, found, where):
        """Compares every bin found for a value (an index) with the one wanted."""
        if found != wanted:
            self.fail(f"{where}: {attribute['name']!r} = {value!r}: {found!r} for {wanted!r}")

    def check_programs(self, path, model, values_of, *options):
        """Python, C and PMML, over each value; returns how many were compared."""
        tokens, compared = model["settings"]["missing_tokens"], 0
        for language in (PythonBins, CBins, PmmlBins):
            bins = language(path, self.scratch, *options)
            self.assertEqual({one["name"] + "_bin": one["name"] for one in model["attributes"]},
                             bins.names())
            for attribute in model["attributes"]:
                for value in values_of(attribute):
                    wanted = expected(attribute, tokens, value)
                    if wanted is not None and "index" not in options:
                        wanted = (attribute["labels"][wanted] if attribute["labels"]
                                  else interval(attribute, wanted))
                    self.compare(attribute, value, wanted,
                                 bins.bin(attribute["name"] + "_bin", value), language.__name__)
                    compared += 1
        return compared

    def check_databases(self, path, model, rows, column_type, databases, *options, table="data"):
        """The query, over rows of the attributes' values; returns how many were compared."""
        query = export(path, "sql", "--table", table, *options)
        attributes, tokens = model["attributes"], model["settings"]["missing_tokens"]
        names = [one["name"] for one in attributes]
        wanted = []
        for row in rows:
            places = [expected(one, tokens, value) for one, value in zip(attributes, row)]
            wanted.append([place if place is None or "index" in options else
                           one["labels"][place] if one["labels"] else interval(one, place)
                           for one, place in zip(attributes, places)])
        for run in databases:
            header, found = run(query, table, names, rows, column_type)
            self.assertEqual(names + [name + "_bin" for name in names], header)
            self.assertEqual(len(rows), len(found))
            for given, row, wants in zip(rows, found, wanted):
                for i, attribute in enumerate(attributes):
                    got = row[len(names) + i]
                    if got is not None and "index" in options:
                        got = int(got)
                    self.compare(attribute, given[i], wants[i], got, run.__qualname__)
        return len(databases) * len(rows) * len(names)

    def test_every_row_of_the_data_sets(self):
        compared = 0
        for number, (method, file, *arguments) in enumerate(RUNS):
            path, model = self.make_model(method, DATA / file, *arguments)
            with open(DATA / file, newline="", encoding="utf-8") as lines:
                table = list(csv.DictReader(lines))
            rows = [[row[one["name"]] for one in model["attributes"]] for row in table]
            distinct = {one["name"]: {row[one["name"]] for row in table} |
                        {str(cut) for cut in one["cuts"]} | set(one["cuts"]) | {None, ""}
                        for one in model["attributes"]}
            options = ("--as", "index") if number % 2 == 0 else ()
            compared += self.check_programs(path, model, lambda one: distinct[one["name"]],
                                            *options)
            databases = [run_in_sqlite] + [self.postgres.run] * (len(rows) < 2000)
            compared += self.check_databases(path, model, rows, "TEXT", databases, *options)
            tokens = model["settings"]["missing_tokens"]
            numbers = [[None if value in tokens else float(value) for value in row]
                       for row in rows]
            compared += self.check_databases(path, model, numbers, "DOUBLE PRECISION",
                                             [run_in_sqlite, self.postgres.run], *options)
        self.assertGreater(compared, 1500000)

    def test_numbers_at_and_beside_every_cut(self):
        random.seed(20)
        cuts = sorted({random.uniform(-9, 9) * 10.0 ** random.randint(-30, 30)
                       for _ in range(200)} | {-1e308, -5e-324, 0.0, 2.5, 1e22, 1e23, 1e308})
        values = {LIMIT, -LIMIT, math.inf, -math.inf, math.nan, 1.5e308, None}
        for cut in cuts:
            values |= {cut, math.nextafter(cut, math.inf), math.nextafter(cut, -math.inf)}
        rules = [{"values": [], "range": None}, {"values": [cuts[3], 2.5, 7], "range": None},
                 {"values": [cuts[5]], "range": [cuts[10], cuts[12]]},
                 {"values": [], "range": [None, cuts[9]]}, {"values": [], "range": [2.5, None]},
                 {"values": [], "range": [None, None]}, {"values": [], "range": [0, 0]}]
        attributes = [(f"{closed}{i}", cuts, closed, None, rule)
                      for closed in ("left", "right") for i, rule in enumerate(rules)]
        attributes.append(("uncut", [], "right", None, rules[1]))
        path, model = self.hand_made(attributes)
        self.check_programs(path, model, lambda _: values, "--as", "index")
        rows = [[value] * len(attributes) for value in values]
        self.check_databases(path, model, rows, "DOUBLE PRECISION",
                             [run_in_sqlite, self.postgres.run], "--as", "index")

    def test_hostile_names_stay_names(self):
        rule = {"values": [], "range": None}
        attributes = [(name, [1.5], "right", [name, "upper " + name], rule) for name in HOSTILE]
        path, model = self.hand_made(attributes, tokens=["", *HOSTILE])
        values = [None, "", "1.5", "1.6", *(name for name in HOSTILE if name == name.strip())]
        self.check_programs(path, model, lambda _: values)
        rows = [[value] * len(attributes) for value in values]
        for table in ("data", 'x" y\'; --'):
            self.check_databases(path, model, rows, "TEXT", [run_in_sqlite], table=table)
        short = {**model, "attributes": [one for one in model["attributes"]
                                         if len(one["name"]) < 55]}
        path.write_text(json.dumps(short))
        rows = [[value] * len(short["attributes"]) for value in values]
        self.check_databases(path, short, rows, "TEXT", [self.postgres.run], table='x" y\'; --')

    def test_blanks_and_tabs_around_a_text_do_not_count(self):
        rule = {"values": [], "range": None}
        path, model = self.hand_made([("a", [1.5], "right", None, rule)])
        texts = ["NA", "\tNA ", "\t", " \t ", "\t1", " 2\t"]
        self.check_programs(path, model, lambda _: texts)
        self.check_databases(path, model, [[text] for text in texts], "TEXT",
                             [run_in_sqlite, self.postgres.run])

    def test_a_row_of_python(self):
        path, _ = self.make_model("supervised", DATA / "iris.csv", "--target", "species",
                                  "--attribute", "petal_length")
        space = {}
        exec(export(path, "python", "--suffix", "!"), space)
        self.assertEqual({"petal_length!": "(1.9, 4.7]"}, space["bins_of"]({"petal_length": 2}))
        self.assertRaises(ValueError, space["bins_of"], {"petal_length": "long"})

    def test_a_column_that_is_not_there_is_an_error(self):
        path, _ = self.make_model("supervised", DATA / "iris.csv", "--target", "species")
        with self.assertRaisesRegex(sqlite3.OperationalError, "no such column"):
            run_in_sqlite(export(path, "sql"), "data", ["a"], [], "REAL")

    def test_what_cannot_be_written_is_refused(self):
        rule = {"values": [], "range": None}
        for form, name, suffix, message in (
                ("sql", "zero\0", "_bin", "'zero\\x00' cannot be written in SQL"),
                ("pmml", "bell\a", "_bin", "'bell\\x07' cannot be written in PMML"),
                ("pmml", "\uffff", "_bin", "cannot be written in PMML"),
                ("c", "a", "", "there is a column 'a' already")):
            path, _ = self.hand_made([(name, [1], "right", None, rule)])
            done = subprocess.run([TOOL, "export", str(path), "--format", form, "--suffix",
                                   suffix], capture_output=True, text=True, check=False)
            self.assertEqual((3, ""), (done.returncode, done.stdout))
            self.assertIn(message, done.stderr)
            self.assertEqual(1, done.stderr.count("\n"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
