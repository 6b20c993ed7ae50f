#!/usr/bin/env python3
"""Runs one golden case: a folder with a command and what must come of it.

usage: run_golden.py TQBIN DATA_DIRECTORY CASE_FOLDER [--update]

The folder holds `cmd`, a bash script that finds `tqbin` on its path and the data sets
in `data/`, and beside it any input files.  What it prints and returns must equal the
files `stdout` and `stderr` (absent: nothing) and `exit` (absent: 0), to the byte, and
it must leave nothing in TMPDIR.  --update writes these files anew: look at them, and
check their numbers, before you keep them.
"""

import difflib
import os
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

RESULTS = ("stdout", "stderr", "exit")


def run(tool, data, case, scratch):
    """What the case's command does in a fresh directory, and what it leaves behind."""
    temporary = scratch / "tmp"
    work = scratch / "work"
    for folder in (scratch / "bin", temporary, work):
        folder.mkdir()
    (scratch / "bin" / "tqbin").symlink_to(tool)
    (work / "data").symlink_to(data)
    for file in case.iterdir():
        if file.name not in RESULTS:
            shutil.copy(file, work)
    environment = {"PATH": f"{scratch}/bin:{os.environ['PATH']}", "LC_ALL": "C",
                   "TMPDIR": str(temporary)}
    for name in ("ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "LLVM_PROFILE_FILE"):
        if name in os.environ:
            environment[name] = os.environ[name]
    done = subprocess.run(["bash", "cmd"], cwd=work, env=environment, capture_output=True,
                          stdin=subprocess.DEVNULL, timeout=120, check=False)
    results = {"stdout": done.stdout.decode(errors="backslashreplace"),
               "stderr": done.stderr.decode(errors="backslashreplace"),
               "exit": f"{done.returncode}\n" if done.returncode != 0 else ""}
    return results, sorted(path.name for path in temporary.iterdir())


def expected(case, name):
    file = case / name
    return file.read_text() if file.exists() else ""


def update(case, results):
    for name, text in results.items():
        if text:
            (case / name).write_text(text)
        else:
            (case / name).unlink(missing_ok=True)


def main():
    tool, data, case = (Path(argument).resolve() for argument in sys.argv[1:4])
    with tempfile.TemporaryDirectory() as scratch:
        results, left = run(tool, data, case, Path(scratch))
    if "--update" in sys.argv[4:]:
        update(case, results)
    failed = False
    for name, text in results.items():
        if text != expected(case, name):
            failed = True
            sys.stdout.writelines(difflib.unified_diff(
                expected(case, name).splitlines(True), text.splitlines(True),
                f"expected {name}", f"{name} of this run"))
    if left:
        failed = True
        print("left in TMPDIR:", *left)
    return 1 if failed else 0


sys.exit(main())
