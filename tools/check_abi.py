#!/usr/bin/env python3
"""Holds the binary interface of the library against the description in packaging/abi/.

    tools/check_abi.py [--update] LIBRARY

The descriptions are libabigail's, one per word size, made from a build with debugging information:
every exported function with the types of its parameters, every public type with its size and the
places of its members and of its virtual functions. Exits 1 on any difference, an addition
included; --update writes the description instead.
"""

import os
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def description_of(library):
    with open(library, "rb") as stream:
        bits = {1: 32, 2: 64}[stream.read(5)[4]]
    return os.path.join(ROOT, "packaging", "abi", f"common_core.{bits}.abi")


def update(library, description):
    os.makedirs(os.path.dirname(description), exist_ok=True)
    subprocess.run(["abidw", "--drop-undefined-syms", "--no-show-locs", "--no-corpus-path",
                    "--no-comp-dir-path", "--no-elf-needed", "--type-id-style", "hash",
                    "--out-file", description, library], check=True)


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--update"]
    if len(arguments) != 1:
        print(__doc__)
        return 3
    library = arguments[0]
    description = description_of(library)
    if "--update" in sys.argv:
        update(library, description)
        return 0
    compare = subprocess.run(["abidiff", "--fail-no-debug-info", "--harmless", "--no-corpus-path",
                              description, library], check=False)
    print(f"{os.path.basename(description)}: abidiff ended with {compare.returncode}")
    return 1 if compare.returncode else 0


if __name__ == "__main__":
    sys.exit(main())
