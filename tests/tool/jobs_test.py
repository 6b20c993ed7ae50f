#!/usr/bin/env python3
"""Several jobs give the bytes that one job gives, stop when told to and leave nothing.

usage: jobs_test.py TQBIN DATA_DIRECTORY
"""

import os
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

TOOL, DATA = (Path(argument).resolve() for argument in sys.argv[1:3])

# Data with missing values, weights, several targets, chosen pairs, user-missing values.
RUNS = [
    ("supervised", "iris.csv", "-t", "species"),
    ("supervised", "penguins.csv", "-t", "species", "-t", "sex", "-t", "island",
     "--user-missing", "body_mass_g=3700,4600..5000", "--user-missing", "sex=MALE"),
    ("supervised", "german_credit.csv", "--closed", "left", "--min-bin-factor", "0.2",
     "--pair", "month:housing", "--pair", "credit_amount:credit", "--pair", "age:housing",
     "--pair", "month:credit"),
    ("supervised", "adult_train.csv", "-t", "income-per-year", "-t", "sex", "-w", "fnlwgt",
     "--weight-scale", "mean"),
    ("supervised", "adult_train.csv", "-t", "income-per-year", "-w", "fnlwgt", "--user-missing", "capital-gain=0",
     "--weight-rounding", "none"),
    ("supervised", "diamonds.csv", "-t", "cut", "-t", "color", "--user-missing", "cut=Fair"),
]


class Jobs(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.temporary = Path(scratch.name)
        self.environment = {**os.environ, "TMPDIR": scratch.name}

    def outcome(self, *arguments, **keywords):
        """Exit code, output and messages of a run, which leaves nothing behind."""
        run = subprocess.run([TOOL, *arguments], capture_output=True, env=self.environment,
                             cwd=DATA, **keywords)
        self.assertEqual([], list(self.temporary.iterdir()))
        return run.returncode, run.stdout, run.stderr

    def check(self, *arguments, code=0, **keywords):
        one = self.outcome(*arguments, "--jobs", "1", **keywords)
        self.assertEqual(code, one[0], one[2])
        for jobs in ("3", "0", "100"):
            self.assertEqual(one, self.outcome(*arguments, "--jobs", jobs, **keywords), jobs)

    def test_any_number_of_jobs_gives_the_same_bytes(self):
        for arguments in RUNS:
            with self.subTest(arguments=arguments):
                self.check(*arguments, "--format", "json")

    def test_columns_that_cannot_be_cut_keep_order_and_status(self):
        rows = b"t,u,a,b,c,d\nx,k,1,,1,1\ny,k,1,,2,\nx,k,1,,3,2\ny,k,1,,4,2\n"
        self.check("supervised", "-", "-t", "t", "-t", "u", "-a", "d,b,a,c", "--strict", "--format",
                   "json", input=rows, code=1)
        self.check("supervised", "-", "-t", "t", "-a", "d,b,a,c", input=rows)

    def test_rows_of_no_weight_count_nowhere(self):
        rows = b"t,w,a,b\n" + b"x,2,1,5\ny,0,2,6\nx,-1,9,7\ny,,8,7\ny,0.2,8,7\ny,1,3,9\n" * 50
        self.check("supervised", "-", "-t", "t", "-w", "w", "--format", "json", input=rows)

    def test_errors_are_those_of_one_job(self):
        late = b"t,a,b\n" + b"x,1,2\ny,2,3\n" * 3000 + b"y,oops,4\n"
        self.check("supervised", "-", "-t", "t", "-a", "a,b", input=late, code=3)
        nothing = b"t,w,a,b\nx,0,1,2\ny,0,2,3\n"
        self.check("supervised", "-", "-t", "t", "-w", "w", input=nothing, code=3)

    def test_a_full_disk_of_one_job_fails_the_run(self):
        # A limit on the size of files that the temporary files do not fit.
        self.assertEqual(4, self.outcome("supervised", "diamonds.csv", "-t", "cut", "--jobs", "2",
                                         preexec_fn=lambda: limit_files(8192))[0])

    def test_progress_counts_the_columns_of_all_jobs(self):
        rows = b"t,a,b,c\n" + b"x,1,2,3\ny,2,3,4\n" * 60000
        _, _, shown = self.outcome("supervised", "-", "-t", "t", "--jobs", "3", "--progress",
                                   "json", input=rows)
        told = [line.split(b',"seconds"')[0] for line in shown.splitlines()]
        self.assertEqual([b'{"stage":"reading","rows":50000', b'{"stage":"reading","rows":100000',
                          *(b'{"stage":"binning","columns":%d,"of":3' % i for i in (1, 2, 3))],
                         told)

    def test_a_signal_ends_a_run_that_reads(self):
        run = subprocess.Popen([TOOL, "supervised", "-", "-t", "a", "--jobs", "2"],
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, env=self.environment)
        run.stdin.write(b"a,b,c\n" + b"1,2,3\n" * 20000)
        run.stdin.flush()
        self.wait_for("tqbin-*")
        self.expect_end(run)

    def test_a_signal_ends_all_jobs(self):
        # So many rows of distinct values that the signal finds both at work.
        path = self.temporary / "rows.csv"
        with path.open("w") as file:
            file.write("t,a,b,c,d\n")
            for i in range(100000):
                file.write(f"{i % 3},{i * 7919 % 100003},{i * 104729 % 100003},{i % 997},{i}\n")
        with path.open() as rows:
            path.unlink()
            run = subprocess.Popen([TOOL, "supervised", "-", "-t", "t", "--jobs", "2"],
                                   stdin=rows, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   env=self.environment)
            self.wait_for("tqbin-*/2/*")
            self.expect_end(run)

    def wait_for(self, pattern):
        for _ in range(20000):
            if any(self.temporary.glob(pattern)):
                return
            time.sleep(0.001)
        self.fail("waited in vain")

    def expect_end(self, run):
        run.send_signal(signal.SIGINT)
        output, errors = run.communicate(timeout=20)
        self.assertEqual((130, b"", b"tqbin: cancelled by SIGINT\n"),
                         (run.returncode, output, errors))
        self.assertEqual([], list(self.temporary.iterdir()))


def limit_files(size):
    import resource
    resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
