#!/usr/bin/env python3
"""What tqbin prints on a terminal: tables that fit its width, colours unless they are not
wanted, and how far the run is; the last also as lines for programs.

usage: terminal_test.py TQBIN DATA_DIRECTORY
"""

import fcntl
import json
import os
import pty
import re
import struct
import subprocess
import sys
import termios
from pathlib import Path


def on_terminal(command, width, stream="stdout", **environment):
    """What a command prints to a terminal that is `width` characters wide."""
    reader, terminal = pty.openpty()
    fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 24, width, 0, 0))
    variables = {name: value for name, value in os.environ.items() if name != "NO_COLOR"}
    variables.update({"TERM": "xterm"}, **environment)
    streams = {"stdout": subprocess.DEVNULL, "stderr": None, stream: terminal}
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, env=variables, **streams)
    os.close(terminal)
    text = b""
    while True:
        try:
            piece = os.read(reader, 65536)
        except OSError:  # the other end is closed
            break
        if not piece:
            break
        text += piece
    os.close(reader)
    assert process.wait() == 0, text
    return text.decode().replace("\r\n", "\n")


def tables(text):
    """The lines of the tables: after a heading, up to the next empty line."""
    return [line for block in re.findall(r"^  bin .*?(?=\n\n|\Z)", text, re.MULTILINE | re.DOTALL)
            for line in block.splitlines()]


def cells(lines):
    return sorted(cell for line in lines for cell in re.split(" {2,}", line.strip()))


def check_progress(tool, data):
    command = [tool, "equal-frequency", data / "diamonds.csv", "--bins", "4", "-a", "carat,price"]
    bar = on_terminal(command, 80, "stderr")
    assert re.search(r"\d+ rows read, \d+ rows per second", bar), bar
    assert re.search(r"\[#{10}\.{10}\] 1 of 2 columns binned, [0-9.]+ per second, \d+ s left", bar), bar
    assert bar.endswith("\r\x1b[K"), bar
    for unwanted in (["--quiet"], ["--progress", "none"]):
        assert on_terminal([*command, *unwanted], 80, "stderr") == "", unwanted

    def lines(*arguments):
        done = subprocess.run([*command, *arguments], capture_output=True, text=True, check=True)
        return done.stderr
    assert lines() == ""
    assert "\x1b" in lines("--progress", "bar")
    events = [json.loads(line) for line in lines("--progress", "json").splitlines()]
    assert [event["stage"] for event in events] == ["reading", "binning", "binning"], events
    assert events[0]["rows"] == 50000 and events[0]["seconds"] >= 0, events
    assert [(event["columns"], event["of"]) for event in events[1:]] == [(1, 2), (2, 2)], events
    assert lines("--progress", "json", "--quiet") == ""
    print("progress: bar on a terminal only, JSON on request")


def main():
    tool, data = sys.argv[1], Path(sys.argv[2])
    command = [tool, "supervised", data / "iris.csv", "--target", "species"]
    wide = on_terminal(command, 200)
    assert max(map(len, tables(wide))) > 50
    for width in (25, 33, 50):
        lines = tables(on_terminal(command, width))
        assert lines and max(map(len, lines)) <= width, (width, lines)
        # Nothing is lost, the first column is repeated.
        assert set(cells(lines)) == set(cells(tables(wide))), width

    assert "\x1b[1mpetal_width\x1b[0m" in wide
    for unwanted in (on_terminal(command, 200, NO_COLOR="1"), on_terminal(command, 200, TERM="dumb"),
                     on_terminal([*command, "--color", "never"], 200)):
        assert "petal_width" in unwanted and "\x1b" not in unwanted
    assert "\x1b[1m" in on_terminal(command, 200, NO_COLOR="")
    assert "\x1b[1m" in on_terminal([*command, "--color", "always"], 200, NO_COLOR="1")
    check_progress(tool, data)
    print("tables fit 3 widths; colours as wanted in 6 cases")


main()
