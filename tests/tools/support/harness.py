"""What the tests of the tools share: files in a folder of their own, and comparisons that go on."""

import os
import sys
import tempfile

failures = []


def expect(what, expected, got):
    if expected != got:
        failures.append(f"{what}:\n  expected {expected!r}\n  got      {got!r}")


def put(name, content):
    with open(name, "wb") as file:
        file.write(content if isinstance(content, bytes) else content.encode())
    return name


def get(name):
    with open(name, "rb") as file:
        return file.read()


def main(*tests):
    """Runs the tests in one empty folder, tells what failed, and exits."""
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        for test in tests:
            test()
        os.chdir("/")
    print("\n".join([*failures, f"{len(failures)} failures"]))
    sys.exit(1 if failures else 0)
