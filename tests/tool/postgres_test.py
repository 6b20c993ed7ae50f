#!/usr/bin/env python3
"""Bins what a PostgreSQL server answers, from a server started for the occasion.

usage: postgres_test.py TQBIN DATA_DIRECTORY

The server listens on a socket in a temporary directory and on no port.
"""

import os
import pwd
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TOOL, DATA = sys.argv[1:3]


def programs():
    """Where Debian keeps the server's programs, of the latest version."""
    found = sorted(Path("/usr/lib/postgresql").glob("*/bin/initdb"),
                   key=lambda path: int(path.parts[4]))
    if not found:
        sys.exit("postgres_test: no server; install postgresql")
    return found[-1].parent


class Server:
    """A server that runs until it is stopped; never as root, which it refuses."""

    def __init__(self):
        self.directory = Path(tempfile.mkdtemp(prefix="tqpg"))
        self.user = None
        if os.getuid() == 0:
            self.user = "postgres"
            os.chown(self.directory, pwd.getpwnam(self.user).pw_uid, -1)
        self.run("initdb", "-A", "trust", "-U", "tester", "-E", "UTF8", "--locale=C", "-N",
                 "-D", str(self.directory / "data"))
        self.run("pg_ctl", "-w", "-D", str(self.directory / "data"), "-l",
                 str(self.directory / "log"), "-o",
                 f"-k {self.directory} -c listen_addresses='' -c fsync=off", "start")
        self.address = f"postgresql://tester:secret@/postgres?host={self.directory}"

    def run(self, program, *arguments):
        subprocess.run([str(programs() / program), *arguments], user=self.user, check=True,
                       cwd="/", stdout=subprocess.DEVNULL)

    def execute(self, statements):
        subprocess.run([str(programs() / "psql"), "-q", "-v", "ON_ERROR_STOP=1", self.address],
                       input=statements, text=True, check=True)

    def stop(self):
        self.run("pg_ctl", "-D", str(self.directory / "data"), "-m", "immediate", "stop")
        shutil.rmtree(self.directory)


class Postgres(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.server = Server()
        cls.addClassCleanup(cls.server.stop)
        cls.server.execute(f"""
            CREATE TABLE iris (sepal_length float8, sepal_width float8, petal_length float8,
                               petal_width float8, species text);
            \\copy iris FROM '{DATA}/iris.csv' CSV HEADER
            CREATE TABLE numbers AS SELECT i % 7 / 3.0::float8 AS a, nullif(i % 5, 0) AS b,
                                           'x' || i % 2 AS t FROM generate_series(1, 20000) i;
            CREATE TABLE empty (a float8, t text);
            """)

    def tqbin(self, *arguments):
        return subprocess.run([TOOL, *arguments], capture_output=True, text=True, timeout=60,
                              check=False)

    def ask(self, query, *arguments):
        return self.tqbin("supervised", self.server.address, "--query", query, *arguments)

    def refused(self, query, message, code=3, arguments=("--target", "t")):
        done = self.ask(query, *arguments)
        self.assertEqual((code, ""), (done.returncode, done.stdout))
        self.assertIn(message, done.stderr)
        self.assertEqual(1, done.stderr.count("\n"))
        self.assertNotIn("secret", done.stderr)

    def test_a_table_gives_what_its_file_gives(self):
        columns = ("--target", "species")
        table = self.ask("SELECT * FROM iris", *columns)
        file = self.tqbin("supervised", f"{DATA}/iris.csv", *columns)
        self.assertEqual("", table.stderr)
        self.assertEqual(file.stdout.split("\n")[1:], table.stdout.split("\n")[1:])
        self.assertTrue(table.stdout.startswith("postgresql:///postgres: 4 columns"))

    def test_null_is_missing_and_every_row_arrives(self):
        done = self.ask("SELECT * FROM numbers", "--target", "t", "--missing-token", "none")
        self.assertEqual(("", 0), (done.stderr, done.returncode))
        self.assertIn("20000 rows", done.stdout)
        self.assertRegex(done.stdout, r"missing +4000")

    def test_a_query_that_only_reads_is_enforced(self):
        self.refused("INSERT INTO empty VALUES (1, 'x') RETURNING a, t", "read-only transaction")
        self.refused("DROP TABLE empty", "read-only transaction")

    def test_queries_that_are_no_good(self):
        self.refused("SELECT nothing FROM numbers", 'column "nothing" does not exist')
        self.refused("SELECT 1; SELECT 2", "cannot insert multiple commands")
        self.refused("SELECT a, a, t FROM numbers", "two columns are named 'a'")
        self.refused("SELECT 1/(i-3000) AS a, 'x' AS t FROM generate_series(1, 5000) i",
                     "division by zero")
        self.refused("SELECT t, t AS a FROM numbers", "row 1, column 2: 'x1' in column 'a'",
                     arguments=("--target", "t", "-a", "a"))
        self.refused("SELECT * FROM empty", "no row follows")
        self.refused("", "no query", code=2)

    def test_a_server_that_is_not_there(self):
        done = self.tqbin("supervised", f"postgresql://u:secret@/x?host={self.server.directory}/no",
                          "--query", "SELECT 1", "--target", "t")
        self.assertEqual((3, ""), (done.returncode, done.stdout))
        self.assertIn("check the address", done.stderr)
        self.assertNotIn("secret", done.stderr)

    def test_a_signal_ends_a_query_that_takes_long(self):
        run = subprocess.Popen([TOOL, "supervised", self.server.address, "--query",
                                "SELECT pg_sleep(60), 1 AS a, 'x' AS t", "--target", "t"],
                               stderr=subprocess.PIPE, text=True)
        with self.assertRaises(subprocess.TimeoutExpired):
            run.wait(0.5)
        run.send_signal(signal.SIGINT)
        _, errors = run.communicate(timeout=20)
        self.assertEqual((130, "tqbin: cancelled by SIGINT\n"), (run.returncode, errors))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
