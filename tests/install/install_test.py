#!/usr/bin/env python3
"""Installs the build into its prefix and builds and runs an outside project against it.

The project is built once as CMake finds the library and once as pkg-config does, and run with an
empty environment: what runs must come from the prefix, dictionaries included. So must what lets gdb
show values of a program.
"""

import fnmatch
import os
import pathlib
import re
import shlex
import shutil
import socket
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

PRINTERS = f"share/gdb/auto-load{PREFIX}/lib/libcommon_core.so.{VERSION}-gdb.py"

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
{PRINTERS}
""".split()

SHOWN = ["lock: 1", "The document contains an error.",
         "The value is not a valid number, or it is out of range. "
         "The decimal separator is a point.",
         "File: text", "Line 2, column 12", "Das Dokument enthält einen Fehler."]

# Variables of gdb/values.cpp, and what gdb shows before any dictionary is loaded.
VALUES = [
    ("text", r'"café \"1\""'),
    ("none", "null"),
    ("wide", '"café"'),
    ("noWide", "null"),
    ("part", '"name"'),
    ("rest", '"value"'),
    ("noSlice", "null"),
    ("bag", "8 bytes, cursor at 8, capacity 16{61 62 00 00 02 00 00 00}"),
    ("empty", "0 bytes, cursor at 0, capacity 0{}"),
    ("message", 'message of 4 entries{slot 3, number 37; slot 3, number 25: "a.xml"; '
                  r'slot 3, number 21: 3, -14; "as it is\n"}'),
    ("foreign", "message of 1 entry{slot 1, number 7, arguments unknown: 05 00 00 00}"),
    ("nothing", "message of 0 entries{}"),
    ("numbers", "SimpleVector<int> of 3, capacity 16 = {1, 4, 9}"),
    ("names", 'StringVector<char> of 2, capacity 16 = {"Ada", 0x0}'),
    ("fresh", "document level, depth 0"),
    ("start", 'start tag, depth 1 = {name = "a", tag = "<a>"}'),
    ("comment", 'comment, depth 1 = {tag = "<!-- c -->"}'),
    ("whole", r'empty element, depth 1 = {name = "b", tag = "<b c=\"1\"/>"}'),
    ("end", 'end tag, depth 0 = {name = "a", tag = "</a>"}'),
]

# The same once a rendering has loaded the library's dictionary.
RENDERED = (r'message of 4 entries{slot 3, number 37 "The document contains an error.\n"; '
            r'slot 3, number 25 "\nFile: %s": "a.xml"; '
            r'slot 3, number 21 "\nLine %d, column %d": 3, -14; "as it is\n"}')


class Install(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(PREFIX, ignore_errors=True)
        subprocess.run(["cmake", "--install", BUILD], check=True, stdout=subprocess.DEVNULL)
        work = tempfile.TemporaryDirectory()
        cls.addClassCleanup(work.cleanup)
        cls.work = pathlib.Path(work.name)
        cls.project = shutil.copytree(HERE / "project", cls.work / "project")

    def call(self, *command, succeeds=True, **options):
        """Runs a command, which has to succeed or to fail, and gives what it prints."""
        done = subprocess.run([str(part) for part in command], text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, check=False, **options)
        self.assertEqual(done.returncode == 0, succeeds, done.stdout)
        return done.stdout

    def run_client(self, program):
        """Runs a client from elsewhere, and looks at what it loaded and printed."""
        trace = "LD_TRACE_LOADED_OBJECTS"
        if RUN:  # the emulator hands the variable on without obeying it itself
            loaded = self.call(*RUN, "-E", f"{trace}=1", program, env=BARE, cwd="/")
        else:
            loaded = self.call(program, env={**BARE, trace: "1"}, cwd="/")
        for library in ("libcommon_core.so.1", "libpaths.so.1"):
            found = re.search(rf"{re.escape(library)} => (\S+)", loaded)
            self.assertIsNotNone(found, loaded)
            self.assertEqual(os.path.realpath(found[1]), f"{PREFIX}/lib/{library[:-1]}{VERSION}")
        (PREFIX / "var/lib/common_core").mkdir(parents=True, exist_ok=True)
        printed = self.call(*RUN, program, "deu", env=BARE, cwd="/").splitlines()
        self.assertEqual((printed[:6], len(printed)), (SHOWN, 9))

    def configure(self, folder, *options, flags=FLAGS, succeeds=True):
        return self.call("cmake", "-S", self.project, "-B", self.work / folder, "-G", "Ninja",
                         f"-DCMAKE_CXX_COMPILER={COMPILER}",
                         f"-DCMAKE_CXX_FLAGS={shlex.join(flags)}",
                         f"-DCMAKE_PREFIX_PATH={PREFIX}", *options, succeeds=succeeds)

    def test_files(self):
        installed = {str(path.relative_to(PREFIX)) for path in PREFIX.rglob("*")
                     if not path.is_dir()}
        matching = {pattern: set(fnmatch.filter(installed, pattern)) for pattern in FILES}
        self.assertEqual([], [pattern for pattern in FILES if not matching[pattern]])
        self.assertEqual(set(), installed - set().union(*matching.values()))
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
        self.configure("cmake")
        self.call("cmake", "--build", self.work / "cmake")
        self.run_client(self.work / "cmake" / "client")
        paths = self.call(*RUN, self.work / "cmake" / "paths", env=BARE)
        self.assertEqual(paths.splitlines(), [f"{PREFIX}/etc/common_core/",
                                              f"{PREFIX}/var/lib/common_core/"])

    def test_cmake_version(self):
        for wanted, fits in (("1.0", True), ("1.1", False), ("2", False)):
            self.configure(f"version{wanted}", f"-DWANTED={wanted}", succeeds=fits)
        other = ["-m32"] if os.environ["CC_BITS"] == "64" else ["-m64"]
        output = self.configure("other_word", flags=other, succeeds=False)
        self.assertIn(f"common_coreConfig.cmake, version: {VERSION} (", output)

    def compiled(self, source):
        """Builds a program as pkg-config says."""
        found = {**BARE, "PKG_CONFIG_PATH": f"{PREFIX}/lib/pkgconfig"}
        self.call("pkg-config", "--exists", "common_core >= 2", env=found, succeeds=False)
        flags = self.call("pkg-config", "--cflags", "--libs", "common_core >= 1", env=found)
        program = self.work / source.stem
        self.call(COMPILER, *FLAGS, "-std=c++17", "-g", "-Wall", "-Wextra", "-Werror", source, "-o",
                  program, *shlex.split(flags), f"-Wl,-rpath,{PREFIX}/lib")
        return program

    def test_pkg_config(self):
        self.run_client(self.compiled(self.project / "client.cpp"))

    def test_gdb(self):
        program = self.compiled(HERE / "gdb" / "values.cpp")
        start = ["run"]
        if RUN:  # through the emulator gdb sees no shared libraries: it is told of the printers
            with socket.socket() as door:
                door.bind(("127.0.0.1", 0))
                port = door.getsockname()[1]
            emulator = subprocess.Popen([*RUN, "-g", str(port), program])
            self.addCleanup(emulator.wait)
            self.addCleanup(emulator.kill)
            start = [f"source {PREFIX}/{PRINTERS}", f"target remote 127.0.0.1:{port}", "continue"]
        steps = ["set width 0", "set debuginfod enabled off", "set confirm off", "break stop",
                 *start, "up", *(f"print {name}" for name, _ in VALUES), "continue", "up",
                 "print message", "kill"]
        output = self.call("gdb", "-q", "-batch", "-nx",
                           "-iex", f"add-auto-load-safe-path {PREFIX}", "-iex",
                           f"add-auto-load-scripts-directory {PREFIX}/share/gdb/auto-load",
                           *(part for step in steps for part in ("-ex", step)), program,
                           timeout=200)
        printed = [re.sub('0x[0-9a-f]+ "', '"', line.split(" = ", 1)[1])
                   for line in output.splitlines() if line.startswith("$")]
        # Nor are the dictionaries found there.
        rendered = dict(VALUES)["message"] if RUN else RENDERED
        self.assertEqual(printed, [*(shown for _, shown in VALUES), rendered], output)

    def test_tools(self):
        for tool in ("ccml", "cclng"):
            self.assertIn(VERSION, self.call(*RUN, PREFIX / "bin" / tool, "--version", env=BARE))


if __name__ == "__main__":
    sys.exit(unittest.main(verbosity=2))
