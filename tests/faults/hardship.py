#!/usr/bin/env python3
"""Runs tqbin where little goes right: killed at any moment, two at a time in one
directory, on a full disk.  No run may be hurt by another or give a wrong answer.

usage: hardship.py [--kills N] [--pairs N] TQBIN DATA_DIRECTORY
"""

import argparse
import os
import random
import resource
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

TMPFS_KILOBYTES = 512


def parse():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--kills", type=int, default=10)
    parser.add_argument("--pairs", type=int, default=3)
    parser.add_argument("tqbin", type=os.path.abspath)
    parser.add_argument("data", type=Path)
    return parser.parse_args()


class Hardship(unittest.TestCase):
    arguments: argparse.Namespace

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.temporary = Path(scratch.name)
        self.environment = {**os.environ, "TMPDIR": str(self.temporary)}
        tool, data = self.arguments.tqbin, self.arguments.data
        self.commands = (
            [tool, "equal-frequency", str(data / "diamonds.csv"), "--bins", "4"],
            [tool, "supervised", str(data / "iris.csv"), "--target", "species"])
        self.good = []
        for command in self.commands:
            done = subprocess.run(command, capture_output=True, check=True)
            self.good.append((0, done.stdout, done.stderr))

    def start(self, command, **keywords):
        return subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                **{"env": self.environment, **keywords})

    def expect_good(self, which):
        done = subprocess.run(self.commands[which], env=self.environment, capture_output=True,
                              check=False)
        self.assertEqual(self.good[which], (done.returncode, done.stdout, done.stderr))

    def test_a_killed_run_hurts_no_later_one_and_is_cleared_away(self):
        start = time.monotonic()
        self.expect_good(0)
        length = time.monotonic() - start
        moments = random.Random(1)
        left = 0
        for kill in range(self.arguments.kills):
            run = self.start(self.commands[0])
            if kill > 0:
                time.sleep(moments.uniform(0, length))
            while kill == 0 and run.poll() is None and not any(self.temporary.iterdir()):
                time.sleep(0.001)  # the first leaves something, however slow the machine is
            run.kill()
            run.communicate()
            left += any(self.temporary.iterdir())
            self.expect_good(1)
            self.assertEqual([], list(self.temporary.iterdir()))
        print(f"{self.arguments.kills} runs killed, {left} left something, all of it cleared away")
        self.assertGreater(left, 0)

    def test_two_runs_at_once_give_the_answers_that_they_give_alone(self):
        for _ in range(self.arguments.pairs):
            runs = [self.start(command) for command in (self.commands[0], self.commands[0])]
            for run in runs:
                output, errors = run.communicate(timeout=60)
                self.assertEqual(self.good[0], (run.returncode, output, errors))
            self.assertEqual([], list(self.temporary.iterdir()))
        print(f"{self.arguments.pairs} pairs of runs at once, all right")

    def test_a_full_disk_is_an_error_with_a_name(self):
        disk = self.temporary / "disk"
        disk.mkdir()
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={TMPFS_KILOBYTES}k",
                                  "tmpfs", str(disk)], capture_output=True, check=False)
        if mounted.returncode != 0:
            self.skipTest("a disk of its own needs the right to mount one")
        self.addCleanup(subprocess.run, ["umount", str(disk)], check=True)
        run = self.start(self.commands[0], env={**os.environ, "TMPDIR": str(disk)})
        output, errors = run.communicate(timeout=60)
        self.assertEqual((4, b""), (run.returncode, output))
        self.assertIn(b"tqbin: ", errors)
        # From standard input the rows are not known before: the disk fills up.
        rows = (self.arguments.data / "diamonds.csv").read_bytes()
        run = self.start([*self.commands[0][:2], "-", *self.commands[0][3:]],
                         env={**os.environ, "TMPDIR": str(disk)}, stdin=subprocess.PIPE)
        output, errors = run.communicate(rows, timeout=60)
        self.assertEqual((4, b""), (run.returncode, output))
        self.assertIn(b"tqbin: ", errors)
        self.assertEqual([], list(disk.iterdir()))

    def test_a_limit_on_file_sizes_is_an_error_with_a_name(self):
        command = [*self.commands[0], "--temp-dir", str(self.temporary)]
        # The thread sanitizer would meet the limit with a file of its own below TMPDIR.
        environment = {**os.environ, "TMPDIR": "/nonexistent"}
        for size in (0, 50000, 100000, 400000):
            run = self.start(command, env=environment, preexec_fn=lambda n=size:
                             resource.setrlimit(resource.RLIMIT_FSIZE, (n, n)))
            output, errors = run.communicate(timeout=60)
            self.assertEqual((4, b""), (run.returncode, output))
            self.assertIn(b"tqbin: ", errors)
            self.assertEqual([], list(self.temporary.iterdir()))


if __name__ == "__main__":
    Hardship.arguments = parse()
    unittest.main(argv=sys.argv[:1])
