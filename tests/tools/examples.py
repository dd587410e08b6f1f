#!/usr/bin/env python3
"""Runs the examples of a build and compares what they print with what their sources say.

    tests/tools/examples.py [NAME...]

A source may end with a comment of the lines that the program prints:

    // Prints:                       or, where it exits with another code than 0,
    // Prints, with exit code 1:
    // first line
    // ...

A line of three dots stands for any lines. A program without the comment only has to exit with 0.
Each runs in a directory of its own that holds the files of examples/data/, and leaves no other
file there. An example that is a folder is run if its main.cpp has the comment.
"""

import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
HEAD = re.compile(r"^// Prints(?:, with exit code (\d+))?:$", re.M)
BUILD = pathlib.Path(os.environ.get("CC_BUILD_DIR", ROOT / "build" / "dev")).resolve()


def split_source(text):
    """The source without its closing comment, the lines of the comment or None, the exit code."""
    heads = list(HEAD.finditer(text))
    if not heads:
        return text, None, 0
    head = heads[-1]
    lines = text[head.end():].strip("\n").split("\n")
    for line in lines:
        if not line.startswith("//"):
            sys.exit(f"examples: '{line}' stands behind the comment of what is printed")
    return (text[:head.start()].rstrip("\n") + "\n", [line[3:] for line in lines],
            int(head.group(1) or 0))


def matches(lines, wanted):
    """Compares lines with wanted ones, where '...' stands for any number of lines."""
    if not wanted:
        return not lines
    if wanted[0] == "...":
        return any(matches(lines[n:], wanted[1:]) for n in range(len(lines) + 1))
    return bool(lines) and lines[0] == wanted[0] and matches(lines[1:], wanted[1:])


def run(name):
    """Runs one example; gives its exit code, what it printed, and the files that it left."""
    program = [*shlex.split(os.environ.get("CC_RUN", "")), str(BUILD / f"example_{name}")]
    with tempfile.TemporaryDirectory() as work:
        shutil.copytree(ROOT / "examples" / "data", work, dirs_exist_ok=True)
        data = pathlib.Path(work, "shared")
        data.mkdir()
        before = set(pathlib.Path(work).rglob("*"))
        environment = {**os.environ, "COMMON_CORE_ETC_DIR": f"{BUILD}/lng/",
                       "COMMON_CORE_DATA_DIR": f"{data}/"}
        done = subprocess.run(program, cwd=work, env=environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60)
        left = set(pathlib.Path(work).rglob("*")) - before
    return done.returncode, done.stdout.decode("utf-8"), sorted(path.name for path in left)


def sources():
    """The main source of each example by its name."""
    found = {path.stem: path for path in (ROOT / "examples").glob("*.cpp")}
    for path in (ROOT / "examples").glob("*/main.cpp"):
        if HEAD.search(path.read_text(encoding="utf-8")):
            found[path.parent.name] = path
    return found


def check(name):
    """What an example does otherwise than it says; empty when it runs as it should."""
    _, wanted, wanted_code = split_source(sources()[name].read_text(encoding="utf-8"))
    code, output, left = run(name)
    lines = output.rstrip("\n").split("\n")
    if code == wanted_code and not left and (wanted is None or matches(lines, wanted)):
        return ""
    return "\n".join([f"exit code {code}, expected {wanted_code}; left {left}; it printed",
                      *lines, "but was expected to print", *(wanted or ["anything"])])


def main():
    names = sys.argv[1:] or sorted(sources())
    failed = 0
    for name in names:
        problem = check(name)
        print(f"{'FAILED' if problem else 'ok':8}{name}\n{problem}".rstrip())
        failed += bool(problem)
    print(f"{len(names) - failed} of {len(names)} examples run as they say")
    return 1 if failed or not names else 0


if __name__ == "__main__":
    sys.exit(main())
