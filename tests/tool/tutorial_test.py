#!/usr/bin/env python3
"""The commands of docs/tutorial.md do what the tutorial says.

usage: tutorial_test.py TQBIN DATA_DIRECTORY

Blocks marked `sh` are run one after the other, in one shell, and must succeed; those
marked `sh fails` must end with 3.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

# What must show in the output, so that the text beside the commands stays true.
EXPECTED = ["(23, 27]", "WoE", '1 remark', "the counts of 2 of 8 bins are not known",
            "attributes[0].cuts[1]: 21 is not above 23", "age_bin", '"(35, 43]"']


def script(blocks):
    """One shell script; where a block must fail, its exit code is checked."""
    lines = ["set -eu"]
    for kind, block in blocks:
        if kind == "sh fails":
            block = f"set +e\n{block}\ncode=$?\nset -e\n[ $code -eq 3 ]"
        lines.append(block)
    return "\n".join(lines)


def main():
    tool, data = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
    text = (Path(__file__).parents[2] / "docs" / "tutorial.md").read_text()
    blocks = re.findall(r"^```(sh(?: fails)?)\n(.*?)^```$", text, re.S | re.M)
    with tempfile.TemporaryDirectory() as scratch:
        shutil.copytree(data, Path(scratch) / "examples" / "data")
        binaries = Path(scratch) / "build" / "demo" / "tool"
        binaries.mkdir(parents=True)
        (binaries / "tqbin").symlink_to(tool)
        done = subprocess.run(["bash", "-c", script(blocks)], cwd=scratch, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                              env={**os.environ, "LC_ALL": "C"})
    missing = [part for part in EXPECTED if part not in done.stdout]
    if done.returncode != 0 or missing:
        print(done.stdout[-3000:], "\nexit code", done.returncode, "not seen:", missing)
        return 1
    print(len(blocks), "blocks of commands run")
    return 0


sys.exit(main())
