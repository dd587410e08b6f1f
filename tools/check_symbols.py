#!/usr/bin/env python3
"""Holds the symbols that the libraries export against packaging/common_core.symbols.

    tools/check_symbols.py [--update] LIBRARY...

A line of the list is: word size ("any", "32" or "64"), library, version, demangled name.
With --update the list's entries for the libraries' word size are replaced by what they export.
Exits 1 on a difference.
"""

import os
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
LIST = os.path.join(ROOT, "packaging", "common_core.symbols")
HEAD = "# tools/check_symbols.py --update build/dev/lib*.so && " \
       "tools/check_symbols.py --update build/m32/lib*.so\n"


def bits_of(library):
    with open(library, "rb") as stream:
        return {1: "32", 2: "64"}[stream.read(5)[4]]


def exported(library):
    """The set of "library version name" that a library defines for others."""
    soname = ""
    dynamic = subprocess.run(["readelf", "-dW", library], check=True, capture_output=True,
                             text=True)
    for line in dynamic.stdout.splitlines():
        if "(SONAME)" in line:
            soname = line.split("[")[1].split("]")[0]
    names = subprocess.run(["nm", "-D", "--defined-only", "--with-symbol-versions", library],
                           check=True, capture_output=True, text=True)
    result = set()
    mangled = []
    for line in names.stdout.splitlines():
        kind, name = line.split()[-2:]
        if kind != "A":
            base, _, version = name.partition("@")
            mangled.append((base, version.lstrip("@") or "-"))
    demangled = subprocess.run(["c++filt"], input="\n".join(base for base, _ in mangled),
                               check=True, capture_output=True, text=True)
    for (_, version), name in zip(mangled, demangled.stdout.splitlines()):
        result.add(f"{soname} {version} {name}")
    return result


def read_list():
    """The listed symbols by word size."""
    listed = {"32": set(), "64": set()}
    if os.path.exists(LIST):
        with open(LIST, encoding="utf-8") as stream:
            for line in stream:
                if not line.startswith("#"):
                    bits, entry = line.rstrip("\n").split(" ", 1)
                    for size in listed if bits == "any" else [bits]:
                        listed[size].add(entry)
    return listed


def write_list(listed):
    lines = []
    for entry in listed["32"] | listed["64"]:
        both = entry in listed["32"] and entry in listed["64"]
        bits = "any" if both else "32" if entry in listed["32"] else "64"
        lines.append((entry, bits))
    with open(LIST, "w", encoding="utf-8") as stream:
        stream.write(HEAD)
        stream.writelines(f"{bits} {entry}\n" for entry, bits in sorted(lines))


def main():
    update = "--update" in sys.argv
    libraries = [argument for argument in sys.argv[1:] if argument != "--update"]
    if not libraries:
        print(__doc__)
        return 3
    bits = bits_of(libraries[0])
    found = set()
    for library in libraries:
        found |= exported(library)
    listed = read_list()
    if update:
        listed[bits] = found
        write_list(listed)
        return 0
    for entry in sorted(found - listed[bits]):
        print(f"exported, but not listed: {entry}")
    for entry in sorted(listed[bits] - found):
        print(f"listed, but not exported: {entry}")
    print(f"{len(found)} symbols exported in {bits} bits, {len(found ^ listed[bits])} differences")
    return 1 if found != listed[bits] or not found else 0


if __name__ == "__main__":
    sys.exit(main())
