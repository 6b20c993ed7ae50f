#!/usr/bin/env python3
"""A run that is told to stop stops at once, says so and leaves nothing behind.

usage: signals_test.py TQBIN DATA_DIRECTORY
"""

import contextlib
import os
import pty
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

TOOL = sys.argv[1]


class Signals(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.temporary = Path(scratch.name)

    def start(self, *arguments, **keywords):
        """A run that reads a pipe which stays open."""
        run = subprocess.Popen([TOOL, *arguments], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE,
                               env={**os.environ, "TMPDIR": str(self.temporary)}, **keywords)
        self.addCleanup(self.end, run)
        return run

    @staticmethod
    def end(run):
        run.kill()
        run.wait()
        for stream in (run.stdin, run.stdout, run.stderr):
            stream.close()

    def started(self, *arguments, **keywords):
        """The same, in the middle of the rows."""
        run = self.start(*arguments, **keywords)
        run.stdin.write(b"t,a\n" + b"x,1\ny,2\n" * 20000)
        run.stdin.flush()
        self.wait_for(self.has_temporary_files)
        return run

    def has_temporary_files(self):
        return any(self.temporary.glob("tqbin-*/[0-9a-f]*"))

    @staticmethod
    def catches(run, number):
        """Whether a run has got so far as to have a handler for a signal."""
        status = Path(f"/proc/{run.pid}/status").read_text(encoding="ascii")
        caught = int(next(line for line in status.splitlines()
                          if line.startswith("SigCgt:")).split()[1], 16)
        return caught >> (number - 1) & 1 == 1

    def wait_for(self, condition):
        for _ in range(1000):
            if condition():
                return
            time.sleep(0.01)
        self.fail("waited in vain")

    def finish(self, run):
        output, errors = run.communicate(timeout=20)
        self.assertEqual([], list(self.temporary.iterdir()))
        return run.returncode, output, errors

    def test_a_signal_ends_the_run_while_it_waits_for_rows(self):
        for number, code in ((signal.SIGINT, 130), (signal.SIGTERM, 143), (signal.SIGHUP, 129)):
            for method in (("supervised", "-", "--target", "t"),
                           ("equal-frequency", "-", "--bins", "3", "--attribute", "a")):
                with self.subTest(signal=number.name, method=method[0]):
                    run = self.started(*method)
                    run.send_signal(number)
                    expected = f"tqbin: cancelled by {number.name}\n".encode()
                    self.assertEqual((code, b"", expected), self.finish(run))

    def test_a_signal_ends_the_run_before_the_first_row(self):
        run = self.start("supervised", "-", "--target", "t")
        self.wait_for(lambda: self.catches(run, signal.SIGINT))
        run.send_signal(signal.SIGINT)
        self.assertEqual((130, b"", b"tqbin: cancelled by SIGINT\n"), self.finish(run))

    def test_a_signal_ends_a_run_that_never_waits(self):
        rows = subprocess.Popen(["yes", "x,1"], stdout=subprocess.PIPE)
        self.addCleanup(lambda: (rows.kill(), rows.wait(), rows.stdout.close()))
        run = subprocess.Popen([TOOL, "equal-frequency", "-", "--bins", "3"], stdin=rows.stdout,
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                               env={**os.environ, "TMPDIR": str(self.temporary)})
        self.wait_for(self.has_temporary_files)
        run.send_signal(signal.SIGTERM)
        output, errors = run.communicate(timeout=20)
        self.assertEqual(b"", output)
        self.assertEqual(143, run.returncode)
        self.assertEqual([], list(self.temporary.iterdir()))

    def test_a_second_signal_ends_the_run_at_once(self):
        # Stopped, the process meets both signals together when it goes on.
        run = self.started("supervised", "-", "--target", "t")
        run.send_signal(signal.SIGSTOP)
        run.send_signal(signal.SIGINT)
        run.send_signal(signal.SIGTERM)
        run.send_signal(signal.SIGCONT)
        code, output, _ = self.finish(run)
        self.assertIn(code, (130, 143))
        self.assertEqual(b"", output)

    def test_an_ignored_hangup_stays_ignored(self):
        run = self.started("supervised", "-", "--target", "t",
                           preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        run.send_signal(signal.SIGHUP)
        code, output, errors = self.finish(run)
        self.assertEqual((0, b""), (code, errors))
        self.assertIn(b"40000 rows", output)

    def test_a_failure_ends_the_run_while_it_waits_for_rows(self):
        run = self.started("supervised", "-", "--target", "t")
        shutil.rmtree(next(self.temporary.iterdir()))
        with contextlib.suppress(BrokenPipeError):  # when it has ended already
            run.stdin.write(b"x,1\ny,2\n" * 20000)
            run.stdin.flush()
        self.assertEqual(4, run.wait(timeout=20))  # the pipe is still open
        self.assertIn(b"tqbin: ", run.stderr.read())

    def test_progress_goes_to_a_terminal_only(self):
        for is_terminal in (True, False):
            with self.subTest(terminal=is_terminal):
                main, side = pty.openpty() if is_terminal else os.pipe()
                run = subprocess.Popen(
                    [TOOL, "equal-frequency", "-", "--bins", "2"], stdin=subprocess.PIPE,
                    stdout=subprocess.PIPE, stderr=side,
                    env={**os.environ, "TERM": "xterm", "TMPDIR": str(self.temporary)})
                os.close(side)
                output, _ = run.communicate(b"a\n" + b"1\n2\n3\n" * 50000)
                shown = b""
                try:
                    while block := os.read(main, 65536):
                        shown += block
                except OSError:  # how a terminal whose other side is closed ends
                    pass
                os.close(main)
                self.assertEqual(0, run.returncode)
                self.assertIn(b"150000 rows", output)
                if is_terminal:
                    self.assertIn(b"100000 rows read", shown)
                    self.assertIn(b"1 of 1 columns binned", shown)
                    self.assertTrue(shown.endswith(b"\r\x1b[K"))
                else:
                    self.assertEqual(b"", shown)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
