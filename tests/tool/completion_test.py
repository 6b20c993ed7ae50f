#!/usr/bin/env python3
"""What a shell completes, and that the manual page is clean: bash, zsh and fish read
their scripts and are asked what can follow; groff sets the page without a warning.

usage: completion_test.py TQBIN DATA_DIRECTORY
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

# What has been typed (the last word is to be completed), and words that must be among
# the answers, and words that must not.
CASES = [
    (["tqbin", "sup"], ["supervised"], ["show"]),
    (["tqbin", ""], ["supervised", "equal-frequency", "apply", "show", "check"], []),
    (["tqbin", "supervised", "--wei"], ["--weight", "--weight-rounding"], ["--target"]),
    (["tqbin", "mdlp", "--tar"], ["--target"], []),
    (["tqbin", "equal-frequency", "--tar"], [], ["--target"]),
    (["tqbin", "supervised", "some.csv", "--closed", ""], ["left", "right"], ["some.csv"]),
    (["tqbin", "apply", "--as", "in"], ["index", "interval"], ["label"]),
    (["tqbin", "supervised", "so"], ["some.csv"], []),
    (["tqbin", "apply", "--output", "so"], ["some.csv"], []),
    (["tqbin", "supervised", "--temp-dir", "f"], ["folder"], []),
    (["tqbin", "supervised", "--target", ""], [], ["some.csv"]),
    (["tqbin", "completion", ""], ["bash", "fish", "zsh"], ["some.csv"]),
]


def run(command, **how):
    done = subprocess.run(command, capture_output=True, text=True, check=False, **how)
    return done.returncode, done.stdout, done.stderr


def printed(tool, *arguments):
    code, out, err = run([tool, *arguments])
    assert code == 0 and err == "" and out, (arguments, code, err)
    return out


def ask_bash(script, words, folder):
    # bash parts words at "=" too.
    parts = [part for word in words for part in (re.split("(=)", word) if "=" in word else [word])]
    ask = 'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _tqbin; ' \
          'printf "%s\\n" "${COMPREPLY[@]}"'
    code, out, err = run(["bash", "-c", ask, "bash", script, *parts], cwd=folder)
    assert code == 0 and err == "", (words, code, err)
    return out.split()


def ask_fish(script, words, folder):
    line = " ".join(words)
    code, out, err = run(["fish", "--no-config", "-c", f"source {script}; complete -C '{line}'"],
                         cwd=folder, env={"PATH": "/usr/bin:/bin", "HOME": str(folder)})
    assert code == 0 and err == "", (words, code, err)
    return [answer.split("\t")[0].rstrip("/") for answer in out.splitlines()]


def check_answers(shell, ask, script, folder, cases):
    for words, wanted, unwanted in cases:
        answers = ask(script, words, folder)
        assert set(wanted) <= set(answers), (shell, words, answers)
        assert not set(unwanted) & set(answers), (shell, words, answers)
        assert wanted or not answers, (shell, words, answers)
    print(f"{shell}: {len(cases)} questions answered")


def check_zsh(script, folder):
    code, out, err = run(["zsh", "-n", script])
    assert (code, out, err) == (0, "", ""), (code, out, err)
    ask = f"autoload -U compinit && compinit -D -u && source {script} && print $_comps[tqbin]"
    code, out, err = run(["zsh", "-f", "-c", ask], cwd=folder)
    assert (code, out.strip(), err) == (0, "_tqbin", ""), (code, out, err)
    print("zsh: the script is read, the function registered")


def long_options(text):
    return set(re.findall(r"(?<![\w-])--[a-z][a-z-]+", text))


def check_manual(tool, folder):
    page = folder / "tqbin.1"
    page.write_text(printed(tool, "manual"))
    code, text, err = run(["groff", "-ww", "-man", "-Tascii", "-P-c", "-P-b", "-P-u", "-P-o",
                           "-rLL=200n", page])
    assert code == 0 and err == "", err
    for command in ("supervised", "equal-frequency", "apply", "show", "check", "export"):
        missing = long_options(printed(tool, command, "--help")) - long_options(text)
        assert not missing, (command, missing)
    for section in ("NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "COMMANDS", "EXAMPLES"):
        assert re.search(f"^{section}$", text, re.MULTILINE), section
    print("manual page: no warning, every option of the help")


def main():
    tool = sys.argv[1]
    with tempfile.TemporaryDirectory() as scratch:
        folder = Path(scratch)
        (folder / "some.csv").touch()
        (folder / "folder").mkdir()
        scripts = {shell: folder / f"complete.{shell}" for shell in ("bash", "zsh", "fish")}
        for shell, script in scripts.items():
            script.write_text(printed(tool, "completion", shell))
        code, out, _ = run(["shellcheck", "--shell=bash", scripts["bash"]])
        assert code == 0, out
        code, out, err = run(["fish", "--no-execute", scripts["fish"]])
        assert (code, out, err) == (0, "", ""), (code, out, err)
        with_equals = [(["tqbin", "apply", "--as=in"], ["index", "interval"], ["label"])]
        check_answers("bash", ask_bash, scripts["bash"], folder, CASES + with_equals)
        check_answers("fish", ask_fish, scripts["fish"], folder, CASES)
        check_zsh(scripts["zsh"], folder)
        check_manual(tool, folder)


main()
