#!/usr/bin/env python3
"""When temporary files get lost the tool says so, and never believes the results.

usage: filesystem_test.py TQBIN DATA_DIRECTORY
"""

import os
import resource
import stat
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

TOOL = sys.argv[1]
DATA = Path(sys.argv[2])
HALF = b"x,1\ny,2\n" * 20000  # more than the library keeps before it writes


class FileSystem(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.temporary = Path(scratch.name)

    def run_with_interruption(self, interrupt):
        """A run during whose data pass `interrupt` is called with its directory."""
        run = subprocess.Popen([TOOL, "supervised", "-", "--target", "t"],
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, text=False,
                               env={**os.environ, "TMPDIR": str(self.temporary)})
        run.stdin.write(b"t,a\n" + HALF)
        run.stdin.flush()
        for _ in range(1000):
            if any(self.temporary.glob("tqbin-*/[0-9a-f]*")):
                break
            time.sleep(0.01)
        time.sleep(0.1)
        directory, = self.temporary.iterdir()
        interrupt(directory)
        output, errors = run.communicate(HALF, timeout=20)
        self.assertEqual([], list(self.temporary.iterdir()))
        return run.returncode, output, errors.decode()

    def test_nothing_happens_when_nothing_is_touched(self):
        seen = []

        def look(directory):
            seen.append(stat.S_IMODE(directory.stat().st_mode))
            seen.extend(stat.S_IMODE(file.stat().st_mode) for file in directory.iterdir())

        code, output, errors = self.run_with_interruption(look)
        self.assertEqual((0, ""), (code, errors))
        self.assertIn(b"80000 rows\n", output)
        self.assertEqual([0o700, 0o600, 0o600, 0o600], seen)  # two columns, and the owner

    def test_removed_files_are_noticed(self):
        def remove(directory):
            for file in directory.iterdir():
                file.unlink()

        code, output, errors = self.run_with_interruption(remove)
        self.assertEqual((4, b""), (code, output))
        self.assertIn("only 0 of 2 temporary files are whole", errors)

    def test_one_removed_file_is_noticed(self):
        def remove(directory):
            min(directory.iterdir()).unlink()

        code, output, errors = self.run_with_interruption(remove)
        self.assertEqual((4, b""), (code, output))
        self.assertIn("only 1 of 2 temporary files are whole", errors)

    def test_a_removed_directory_is_noticed(self):
        def remove(directory):
            for file in directory.iterdir():
                file.unlink()
            directory.rmdir()

        code, output, errors = self.run_with_interruption(remove)
        self.assertEqual((4, b""), (code, output))
        self.assertIn("temporary", errors)

    def test_a_file_of_somebody_else_is_no_harm(self):
        code, output, errors = self.run_with_interruption(
            lambda directory: (directory / "other").write_bytes(b"1234567"))
        self.assertEqual((0, ""), (code, errors))

    def test_files_that_cannot_be_opened_for_reading_are_noticed(self):
        # With ever more open files allowed, every step fails in its turn: the results
        # must be right, or absent with an error.
        arguments = [TOOL, "supervised", str(DATA / "iris.csv"), "--target", "species"]
        good = subprocess.run(arguments, capture_output=True, check=True).stdout
        outcomes = set()
        for limit in range(4, 16):
            done = subprocess.run(
                arguments, capture_output=True, check=False,
                env={**os.environ, "TMPDIR": str(self.temporary)},
                preexec_fn=lambda n=limit: resource.setrlimit(resource.RLIMIT_NOFILE, (n, n)))
            if done.returncode == 127:  # the loader needs some files itself
                continue
            # They look with a pipe whether there is an object at an address.
            if b"Sanitizer" in done.stderr or b"runtime error: member " in done.stderr:
                self.skipTest("the sanitizers need open files themselves")
            self.assertEqual(good if done.returncode == 0 else b"", done.stdout, limit)
            self.assertEqual(done.returncode == 0, done.stderr == b"", limit)
            self.assertEqual([], list(self.temporary.iterdir()))
            outcomes.add(done.returncode)
            if b"file handle is NULL" in done.stderr:
                outcomes.add("the library's own message")
        self.assertLessEqual({0, 4, "the library's own message"}, outcomes)

    def test_a_run_that_cannot_fit_is_refused_before_it_begins(self):
        data = self.temporary / "huge.csv"
        data.write_bytes(b"a\n" + b"1\n" * 1000000)
        os.truncate(data, 1 << 42)  # takes no room
        free = os.statvfs(self.temporary)
        if free.f_bavail * free.f_frsize > 1 << 43:
            self.skipTest("more room than a sparse file can pretend to need")
        done = subprocess.run([TOOL, "equal-frequency", str(data), "--bins", "3"],
                              capture_output=True, check=False, timeout=20,
                              env={**os.environ, "TMPDIR": str(self.temporary)})
        self.assertEqual((4, b""), (done.returncode, done.stdout))
        self.assertIn(b" MB are free, but the temporary files need about ", done.stderr)
        self.assertEqual([data], list(self.temporary.iterdir()))

    def test_a_full_file_system_is_noticed(self):
        # A limit on file sizes, at every size from nothing to enough.  The thread sanitizer
        # would meet it with a file of its own below TMPDIR.
        arguments = [TOOL, "equal-frequency", str(DATA / "diamonds.csv"), "--bins", "4",
                     "--temp-dir", str(self.temporary)]
        good = subprocess.run(arguments, capture_output=True, check=True).stdout
        outcomes = set()
        for limit in (0, 8, 79999, 80000, 100000, 431519, 431520, 500000):
            done = subprocess.run(
                arguments, capture_output=True, check=False,
                env={**os.environ, "TMPDIR": "/nonexistent"},
                preexec_fn=lambda n=limit: resource.setrlimit(resource.RLIMIT_FSIZE, (n, n)))
            expected = (0, good) if limit >= 53940 * 8 else (4, b"")
            self.assertEqual(expected, (done.returncode, done.stdout), limit)
            self.assertEqual([], list(self.temporary.iterdir()))
            outcomes.add(done.returncode)
        self.assertEqual({0, 4}, outcomes)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
