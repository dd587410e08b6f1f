#!/usr/bin/env python3
"""Holds the shared libraries against what was promised about how they are linked.

    tools/check_hardening.py PREFIX LIBRARY...

Each has a SONAME of version 1, full RELRO (a RELRO segment and immediate binding), no
executable stack, no text relocations, and carries no path of the machine that built it,
but for those below the PREFIX that it is to be installed in. Exits 1 on findings.
"""

import os
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def readelf(option, library):
    return subprocess.run(["readelf", option, library], check=True, capture_output=True,
                          text=True).stdout


def findings_of(library, prefix):
    dynamic = readelf("-dW", library)
    segments = readelf("-lW", library)
    stack = [line for line in segments.splitlines() if "GNU_STACK" in line]
    name = os.path.basename(library).split(".so")[0]
    with open(library, "rb") as stream:
        content = stream.read().replace(prefix.encode(), b"")
    checks = [
        (f"Library soname: [{name}.so.1]" in dynamic, f"its SONAME is not {name}.so.1"),
        ("GNU_RELRO" in segments, "no RELRO segment"),
        ("BIND_NOW" in dynamic or "(FLAGS_1)" in dynamic and " NOW" in dynamic,
         "symbols are not bound when it is loaded"),
        (len(stack) == 1 and stack[0].split()[-2] == "RW", "its stack is executable"),
        ("TEXTREL" not in dynamic, "it has text relocations"),
        (ROOT.encode() not in content, "it holds a path of the machine that built it"),
    ]
    return [f"{library}: {text}" for good, text in checks if not good]


def main():
    if len(sys.argv) < 3:
        print(__doc__)
        return 3
    prefix, *libraries = sys.argv[1:]
    findings = [finding for library in libraries for finding in findings_of(library, prefix)]
    for finding in findings:
        print(finding)
    print(f"{len(libraries)} libraries, {len(findings)} findings")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
