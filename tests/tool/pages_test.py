#!/usr/bin/env python3
"""The pages of the documentation show commands and programs that do what they say.

usage: pages_test.py TQBIN DATA_DIRECTORY

Of README.md and every page of docs/:

- blocks marked `sh` are run one after the other, in one shell for each page, and must
  succeed; those marked `sh fails` must end with 3;
- a block marked `text` is what the block before it prints;
- a block marked `cpp` is compiled, with `records` and `privateDirectory` at hand;
- indented lines are for those who work on the project: the scripts, files and presets
  that they name must exist.
"""

import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
BLOCK = re.compile(r"^```(\w+)( fails)?\n(.*?)^```$", re.S | re.M)
MARK = "~~~ a block begins ~~~"

# What must show in a page's output, so that the text beside the commands stays true.
EXPECTED = {
    "numerics.md": ["gain 0.0476", "gain 0.1400", "gain 0.0469", "gain 0.0456", "gain 0.1326",
                    "gain 0.0443", "gain 0.0967"],
    "tutorial.md": ["(23, 27]", "WoE", "1 remark", "the counts of 2 of 8 bins are not known",
                    "attributes[0].cuts[1]: 21 is not above 23", "age_bin", '"(35, 43]"'],
}

# What surrounds the statements of a page.
PROGRAM = """{includes}
#include <cstddef>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>
#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>
void Host(TQCommon::RecordIterator& records, const std::string& privateDirectory);
void Host(TQCommon::RecordIterator& records, const std::string& privateDirectory) {{
  static_cast<void>(records);
  static_cast<void>(privateDirectory);
  {{
{statements}
  }}
}}
"""


def script(blocks):
    """One shell script; where a block must fail, its exit code is checked."""
    lines = ["set -eu"]
    for fails, block in blocks:
        lines.append(f"echo '{MARK}'")
        lines.append(f"set +e\n{block}\ncode=$?\nset -e\n[ $code -eq 3 ]" if fails else block)
    return "\n".join(lines)


def run_commands(page, blocks, tool, data):
    """Runs a page's commands; yields what is wrong."""
    commands = [(fails, body) for kind, fails, body in blocks if kind == "sh"]
    if not commands:
        return
    with tempfile.TemporaryDirectory() as scratch:
        shutil.copytree(data, Path(scratch) / "examples" / "data")
        binaries = Path(scratch) / "build" / "demo" / "tool"
        binaries.mkdir(parents=True)
        (binaries / "tqbin").symlink_to(tool)
        done = subprocess.run(["bash", "-c", script(commands)], cwd=scratch, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                              env={**os.environ, "LC_ALL": "C"})
    if done.returncode != 0:
        yield f"the commands end with {done.returncode}: {done.stdout[-2000:]}"
        return
    outputs = done.stdout.split(MARK + "\n")[1:]
    for part in EXPECTED.get(page.name, []):
        if part not in done.stdout:
            yield f"not seen in what the commands print: {part}"
    for shown, output in shown_outputs(blocks, outputs):
        if shown.strip() not in output:
            yield f"the page shows\n{shown}where the commands print\n{output}"


def shown_outputs(blocks, outputs):
    """Pairs of what the page says that commands print, and what they printed."""
    printed = iter(outputs)
    output = ""
    for kind, _, body in blocks:
        if kind == "sh":
            output = next(printed)
        elif kind == "text":
            yield body, output


def compile_programs(blocks):
    """Compiles a page's C++ statements, each block by itself; yields what is wrong."""
    compiler = os.environ.get("CXX", "c++")
    for kind, _, body in blocks:
        if kind != "cpp":
            continue
        includes = "\n".join(re.findall(r"^#include.*$", body, re.M))
        statements = re.sub(r"^#include.*$", "", body, flags=re.M)
        done = subprocess.run(
            [compiler, "-std=c++17", "-fsyntax-only", "-x", "c++", "-Wall", "-Wextra",
             "-Wno-unused", "-Werror", f"-I{ROOT}/include", f"-I{ROOT}/record/include", "-"],
            input=PROGRAM.format(includes=includes, statements=statements), text=True,
            stderr=subprocess.PIPE, check=False)
        if done.returncode != 0:
            yield f"does not compile:\n{body}\n{done.stderr[:1500]}"


def check_names(text):
    """Yields what indented lines name that does not exist."""
    presets = {preset["name"] for preset in json.loads(
        (ROOT / "CMakePresets.json").read_text())["buildPresets"]}
    for line in re.findall(r"^ {4}(\S.*)$", re.sub(BLOCK, "", text), re.M):
        for name in re.findall(r"--preset (\S+)", line):
            if name not in presets:
                yield f"no such preset: {name}"
        for name in re.findall(r"(?<![\w/$\"-])(?:scripts|tests|bench|examples)/[\w./-]+", line):
            if not (ROOT / name).exists():
                yield f"no such file: {name}"


def faults(page, tool, data):
    """All that is wrong with a page."""
    text = page.read_text(encoding="utf-8")
    blocks = [(kind, bool(fails), body) for kind, fails, body in BLOCK.findall(text)]
    yield from run_commands(page, blocks, tool, data)
    yield from compile_programs(blocks)
    yield from check_names(text)


def main():
    tool, data = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
    pages = [ROOT / "README.md", ROOT / "CONTRIBUTING.md", *sorted((ROOT / "docs").glob("*.md"))]
    found = [f"{page.name}: {fault}" for page in pages for fault in faults(page, tool, data)]
    print("\n".join(found))
    print(len(pages), "pages,", len(found), "faults")
    return 1 if found else 0


sys.exit(main())
