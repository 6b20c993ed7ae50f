#!/usr/bin/env python3
"""Makes every call into the system fail in turn and looks what becomes of the run.

usage: faults.py [--points N] [--valgrind] FAILING_CALLS_LIBRARY HOST TQBIN

Each run must give the answer that it gives undisturbed, or an error with a name and a
status; nothing may crash, hang or be left behind.  Prints, call by call, how often a run
makes it and what came of its failures: once alone, and from then on.  With --points,
only so many of each program's calls of one kind fail, spread over the run.  With
--valgrind, memory lost by the library counts as a failure too; that is slow.
"""

import argparse
import collections
import os
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

CALLS = ("fopen", "fread", "fwrite", "fclose", "remove", "malloc", "mmap", "getrandom", "open",
         "openat", "opendir", "read", "write", "fsync", "rename", "unlink", "unlinkat", "rmdir",
         "mkdtemp", "mkostemp", "flock", "statvfs", "memfd_create", "dup", "dup2", "pipe2",
         "eventfd")
REMOVING = {"remove", "unlink", "unlinkat", "rmdir"}  # what cannot be removed is left
SECONDS = 60
LOST = 99  # valgrind's exit code for lost memory

Run = collections.namedtuple("Run", "code output errors left count written")


class Program:
    """A program with its arguments, run in directories of its own."""

    def __init__(self, name, command, prefix=()):
        self.name = name
        self.command = command
        self.prefix = list(prefix)
        self.good = self.run({})
        assert self.good.code == 0 and not self.good.left, self.good

    def run(self, faults):
        with tempfile.TemporaryDirectory(prefix="faults-") as scratch:
            temporary = Path(scratch) / "tmp"
            work = Path(scratch) / "work"
            temporary.mkdir()
            work.mkdir()
            count = Path(scratch) / "count"
            command = [part.replace("{tmp}", str(temporary)) for part in self.command]
            done = subprocess.run(self.prefix + command, cwd=work, capture_output=True,
                                  timeout=SECONDS, check=False,
                                  env={**os.environ, **faults, "TMPDIR": str(temporary),
                                       "FAULT_COUNT": str(count)})
            left = sorted(path.name for path in temporary.iterdir())
            written = {path.name: path.read_bytes() for path in work.iterdir()}
            calls = int(count.read_text()) if count.exists() else 0
        return Run(done.returncode, done.stdout, done.stderr.decode(errors="replace"), left,
                   calls, written)

    def judge(self, run, call):
        """What became of a run: "right", "error", or, in other words, what is wrong."""
        named = any(line.startswith(("tqbin: ", "host: ")) for line in run.errors.splitlines())
        if run.code < 0 or run.code > 5:
            return f"ended with {run.code}"
        if run.left and not (call in REMOVING and (self.name == "library" or named)):
            return "left " + ", ".join(run.left)
        if run.code == 0:
            same = (run.output, run.written) == (self.good.output, self.good.written)
            return "right" if same else "WRONG ANSWER"
        if set(run.written) - set(self.good.written) and call not in REMOVING:
            return "left a half-written file"
        return "error" if named else "an error without a message"


def points_of(count, most):
    """The calls to fail: all of them, or so many spread evenly."""
    if most is None or count <= most:
        return range(1, count + 1)
    return sorted({1 + i * (count - 1) // max(most - 1, 1) for i in range(most)})


def attempt(program, library, call, point, mode):
    faults = {"LD_PRELOAD": library, "FAULT_CALL": call, "FAULT_AT": str(point)}
    if mode == "once":
        faults["FAULT_ONCE"] = "1"
    try:
        run = program.run(faults)
    except subprocess.TimeoutExpired:
        return "did not end"
    verdict = program.judge(run, call)
    return verdict if verdict in ("right", "error") else f"{verdict}: {run.errors[-300:]!r}"


def inject(program, library, call, most, pool):
    """Fails one kind of call; the row of the matrix, and what went wrong."""
    count = program.run({"LD_PRELOAD": library, "FAULT_CALL": call, "FAULT_AT": "0"}).count
    points = points_of(count, most)
    row = [program.name, call, str(len(points))]
    wrong = []
    for mode in ("once", "from then on"):
        verdicts = list(pool.map(
            lambda point, mode=mode: attempt(program, library, call, point, mode), points))
        outcomes = collections.Counter(verdicts)
        row += [str(outcomes["right"]), str(outcomes["error"])]
        wrong += [f"{program.name}: {call} {point} {mode}: {verdict}"
                  for point, verdict in zip(points, verdicts)
                  if verdict not in ("right", "error")]
    return row + [str(len(wrong))], wrong


def programs(arguments, scratch):
    rows = [f"{'xyz'[i % 3]},{i % 11 / 4},{(i * 7) % 13},{1 + i % 2}\n" for i in range(60)]
    data = Path(scratch) / "data.csv"
    data.write_text("t,a,b,w\n" + "".join(rows))
    lost = ["valgrind", "-q", "--vgdb=no", "--leak-check=full", "--errors-for-leak-kinds=definite,indirect",
            f"--error-exitcode={LOST}"] if arguments.valgrind else []
    yield Program("library", [arguments.host, "{tmp}"], lost)
    if not arguments.valgrind:
        yield Program("tqbin", [arguments.tqbin, "supervised", str(data), "--target", "t",
                                "--weight", "w", "--format", "json", "--output", "model.json"])


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--points", type=int)
    parser.add_argument("--valgrind", action="store_true")
    parser.add_argument("library", type=os.path.abspath)
    parser.add_argument("host", type=os.path.abspath)
    parser.add_argument("tqbin", type=os.path.abspath)
    arguments = parser.parse_args()
    calls = [call for call in CALLS if call != "malloc" or not arguments.valgrind]
    failures = []
    print("| program | call | injection points | once: right | error | from then on: right "
          "| error | wrong |\n|---|---|---|---|---|---|---|---|")
    with tempfile.TemporaryDirectory() as scratch, ThreadPoolExecutor(2) as pool:
        for program in programs(arguments, scratch):
            for call in calls:
                row, wrong = inject(program, arguments.library, call, arguments.points, pool)
                failures += wrong
                if row[2] != "0":
                    print("| " + " | ".join(row) + " |", flush=True)
    for failure in failures:
        print(failure, file=sys.stderr)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
