#!/usr/bin/env python3
"""Builds the library and the dictionaries again, elsewhere, and compares every byte.

The copy of the sources stands in a folder with another name and length, and is built with the
options of this build.
"""

import filecmp
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

SOURCE = pathlib.Path(os.environ["CC_SOURCE_DIR"])
BUILD = pathlib.Path(os.environ["CC_BUILD_DIR"])
PRODUCTS = ["libcommon_core.so.*.*", "libpaths.so.*.*", "lng/*.lng"]


def options():
    """What this build was configured with, as far as it decides about the products."""
    chosen = ("CMAKE_BUILD_TYPE", "CMAKE_CXX_COMPILER", "CMAKE_CXX_FLAGS", "CMAKE_C_FLAGS",
              "CMAKE_CXX_FLAGS_DEBUG", "CMAKE_CXX_FLAGS_RELEASE", "CMAKE_INSTALL_PREFIX",
              "COMMON_CORE_SANITIZE")
    for line in (BUILD / "CMakeCache.txt").read_text(encoding="utf-8").splitlines():
        name, _, value = line.partition("=")
        if name.partition(":")[0] in chosen:
            yield f"-D{name}={value}"


def main():
    with tempfile.TemporaryDirectory() as directory:
        copy = pathlib.Path(directory, "another", "place")
        shutil.copytree(SOURCE, copy, ignore=shutil.ignore_patterns(".git", "build"))
        build = copy / "build" / BUILD.name
        subprocess.run(["cmake", "-G", "Ninja", "-S", copy, "-B", build, *options(),
                        "--no-warn-unused-cli", "-DCOMMON_CORE_TESTS=OFF"], check=True,
                       stdout=subprocess.DEVNULL)
        subprocess.run(["cmake", "--build", build, "--target", "common_core", "dictionaries"],
                       check=True, stdout=subprocess.DEVNULL)
        compared = [product.relative_to(BUILD) for pattern in PRODUCTS
                    for product in sorted(BUILD.glob(pattern))]
        different = [str(name) for name in compared if not (build / name).exists() or
                     not filecmp.cmp(BUILD / name, build / name, shallow=False)]
    print(f"{len(compared)} files compared, different are {different}")
    return 1 if different or len(compared) < len(PRODUCTS) else 0


if __name__ == "__main__":
    sys.exit(main())
