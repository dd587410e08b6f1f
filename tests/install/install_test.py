#!/usr/bin/env python3
"""Installs the build into its prefix and builds and runs an outside project against it.

The project is built once as CMake finds the library and once as pkg-config does, and run with an
empty environment: what runs must come from the prefix, dictionaries included.
"""

import fnmatch
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = pathlib.Path(os.environ["CC_SOURCE_DIR"])
BUILD = pathlib.Path(os.environ["CC_BUILD_DIR"])
PREFIX = pathlib.Path(os.environ["CC_PREFIX"])
FLAGS = shlex.split(os.environ["CC_FLAGS"])
COMPILER = os.environ["CC_COMPILER"]
RUN = shlex.split(os.environ["CC_RUN"])
VERSION = "1.0.0"

# Where nothing is said of the library, only its own place leads to it.
BARE = {"PATH": os.environ["PATH"], "HOME": "/nonexistent", "LANG": "C.UTF-8"}

# Every installed file matches one pattern, and every pattern a file.
FILES = f"""
bin/cclng
bin/ccml
etc/common_core/*.lng
include/common_core/*.h
lib/cmake/common_core/common_coreConfig.cmake
lib/cmake/common_core/common_coreConfigVersion.cmake
lib/cmake/common_core/common_coreTargets*.cmake
lib/libcommon_core.so
lib/libcommon_core.so.1
lib/libcommon_core.so.{VERSION}
lib/libpaths.so
lib/libpaths.so.1
lib/libpaths.so.{VERSION}
lib/pkgconfig/common_core.pc
share/bash-completion/completions/cclng
share/bash-completion/completions/ccml
share/gdb/auto-load{PREFIX}/lib/libcommon_core.so.{VERSION}-gdb.py
""".split()

SHOWN = {
    "eng": ["lock: 1", "The document contains an error.",
            "The value is not a valid number, or it is out of range. "
            "The decimal separator is a point.",
            "File: text", "Line 2, column 12"],
}


def call(*command, **options):
    done = subprocess.run([str(part) for part in command], text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, check=False, **options)
    return done.returncode, done.stdout


class Install(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(PREFIX, ignore_errors=True)
        code, output = call("cmake", "--install", BUILD)
        if code != 0:
            raise RuntimeError(output)
        cls.work = tempfile.TemporaryDirectory()
        cls.project = pathlib.Path(cls.work.name, "project")
        shutil.copytree(HERE / "project", cls.project)

    @classmethod
    def tearDownClass(cls):
        cls.work.cleanup()

    def run_client(self, program):
        """Runs a client from elsewhere, and looks at what it loaded and printed."""
        trace = "LD_TRACE_LOADED_OBJECTS"
        if RUN:  # the emulator hands the variable on without obeying it itself
            code, loaded = call(*RUN, "-E", f"{trace}=1", program, env=BARE, cwd="/")
        else:
            code, loaded = call(program, env={**BARE, trace: "1"}, cwd="/")
        self.assertEqual(code, 0, loaded)
        for library in ("libcommon_core.so.1", "libpaths.so.1"):
            found = re.search(rf"{re.escape(library)} => (\S+)", loaded)
            self.assertIsNotNone(found, loaded)
            self.assertEqual(os.path.realpath(found[1]), f"{PREFIX}/lib/{library[:-1]}{VERSION}")
        (PREFIX / "var/lib/common_core").mkdir(parents=True, exist_ok=True)
        code, printed = call(*RUN, program, "deu", env=BARE, cwd="/")
        lines = printed.splitlines()
        self.assertEqual((code, lines[:5]), (0, SHOWN["eng"]), printed)
        self.assertEqual(lines[5], "Das Dokument enthält einen Fehler.", printed)
        self.assertEqual(len(lines), 9, printed)

    def configure(self, folder, *options, flags=FLAGS):
        return call("cmake", "-S", self.project, "-B", pathlib.Path(self.work.name, folder), "-G",
                    "Ninja", f"-DCMAKE_CXX_COMPILER={COMPILER}",
                    f"-DCMAKE_CXX_FLAGS={shlex.join(flags)}", f"-DCMAKE_PREFIX_PATH={PREFIX}",
                    *options)

    def test_files(self):
        installed = {str(path.relative_to(PREFIX)) for path in PREFIX.rglob("*")
                     if not path.is_dir()}
        for path in sorted(installed):
            self.assertTrue(any(fnmatch.fnmatchcase(path, pattern) for pattern in FILES),
                            f"{path} should not be installed")
        for pattern in FILES:
            self.assertTrue(fnmatch.filter(installed, pattern), f"{pattern} is not installed")
        headers = {path.name for path in (PREFIX / "include/common_core").iterdir()}
        self.assertEqual(headers, {path.name for path in (SOURCE / "include").glob("*.h")} |
                         {"libpaths.h"})
        dictionaries = {path.stem for path in (PREFIX / "etc/common_core").iterdir()}
        self.assertEqual(dictionaries,
                         {path.stem for path in (SOURCE / "data").glob("*.xml")})

    def test_no_path_of_the_build(self):
        for path in PREFIX.rglob("*"):
            if path.is_file() and not path.is_symlink():
                content = path.read_bytes().replace(str(PREFIX).encode(), b"")
                self.assertNotIn(str(SOURCE).encode(), content, path)

    def test_cmake(self):
        folder = pathlib.Path(self.work.name, "cmake")
        code, output = self.configure("cmake")
        self.assertEqual(code, 0, output)
        code, output = call("cmake", "--build", folder)
        self.assertEqual(code, 0, output)
        self.run_client(folder / "client")
        code, output = call(*RUN, folder / "paths", env=BARE)
        self.assertEqual(output.splitlines(), [f"{PREFIX}/etc/common_core/",
                                               f"{PREFIX}/var/lib/common_core/"])

    def test_cmake_version(self):
        for wanted, fits in (("1.0", True), ("1.1", False), ("2", False)):
            code, output = self.configure(f"version{wanted}", f"-DWANTED={wanted}")
            self.assertEqual(code == 0, fits, f"{wanted}: {output}")
        other = ["-m32"] if os.environ["CC_BITS"] == "64" else ["-m64"]
        code, output = self.configure("other_word", flags=other)
        self.assertNotEqual(code, 0, output)
        self.assertIn(f"common_coreConfig.cmake, version: {VERSION} (", output)

    def test_pkg_config(self):
        found = {**BARE, "PKG_CONFIG_PATH": f"{PREFIX}/lib/pkgconfig"}
        code, output = call("pkg-config", "--cflags", "--libs", "common_core >= 1", env=found)
        self.assertEqual(code, 0, output)
        client = pathlib.Path(self.work.name, "client")
        code, output = call(COMPILER, *FLAGS, "-std=c++17", "-Wall", "-Wextra", "-Werror",
                            self.project / "client.cpp", "-o", client, *shlex.split(output),
                            f"-Wl,-rpath,{PREFIX}/lib")
        self.assertEqual(code, 0, output)
        self.run_client(client)
        code, output = call("pkg-config", "--exists", "common_core >= 2", env=found)
        self.assertNotEqual(code, 0, output)

    def test_tools(self):
        for tool in ("ccml", "cclng"):
            code, output = call(*RUN, PREFIX / "bin" / tool, "--version", env=BARE)
            self.assertEqual(code, 0, output)
            self.assertIn(VERSION, output)


if __name__ == "__main__":
    sys.exit(unittest.main(verbosity=2))
