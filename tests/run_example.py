#!/usr/bin/env python3
"""Runs an example and compares what it prints with the comment at its end.

    tests/run_example.py SOURCE COMMAND...

The comment "// Prints:" is followed by the lines; "..." stands for any lines from there on. The
example runs in an empty directory of its own, next to copies of examples/data, and must end
with exit code 0 and leave nothing behind.
"""

import os
import shutil
import subprocess
import sys
import tempfile


def expected_lines(source):
    with open(source, encoding="utf-8") as stream:
        lines = stream.read().splitlines()
    if "// Prints:" not in lines:
        return ["..."]
    return [line[3:] for line in lines[lines.index("// Prints:") + 1:]]


def matches(expected, printed):
    if "..." in expected:
        shown = expected.index("...")
        return printed[:shown] == expected[:shown] and len(printed) > shown
    return printed == expected


def main():
    source, command = sys.argv[1], sys.argv[2:]
    data = os.path.join(os.path.dirname(source), "data")
    with tempfile.TemporaryDirectory() as directory:
        for name in os.listdir(data):
            shutil.copy(os.path.join(data, name), directory)
        before = sorted(os.listdir(directory))
        run = subprocess.run(command, cwd=directory, capture_output=True, text=True, check=False)
        left = sorted(set(os.listdir(directory)) - set(before))
    expected = expected_lines(source)
    print(run.stdout + run.stderr, end="")
    if run.returncode != 0:
        print(f"exit code {run.returncode}")
    if not matches(expected, run.stdout.splitlines()):
        print("expected:", *expected, sep="\n")
        return 1
    if left:
        print("left behind:", *left)
        return 1
    return 1 if run.returncode != 0 else 0


if __name__ == "__main__":
    sys.exit(main())
