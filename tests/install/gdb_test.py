#!/usr/bin/env python3
"""Lets gdb show values of an outside program, with what the installed prefix brings and no more.

32-bit programs that an emulator runs are debugged through the emulator. gdb then sees no shared
libraries, so it is told to load the printers, and finds no dictionaries.
"""

import os
import pathlib
import re
import shlex
import socket
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
PREFIX = pathlib.Path(os.environ["CC_PREFIX"])
FLAGS = shlex.split(os.environ["CC_FLAGS"])
PRINTERS = f"{PREFIX}/share/gdb/auto-load{PREFIX}/lib/libcommon_core.so.1.0.0-gdb.py"
RUN = shlex.split(os.environ["CC_RUN"])

# The variable, and what gdb shows before any dictionary is loaded.
SHOWN = [
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
LOADED = (r'message of 4 entries{slot 3, number 37 "The document contains an error.\n"; '
          r'slot 3, number 25 "\nFile: %s": "a.xml"; '
          r'slot 3, number 21 "\nLine %d, column %d": 3, -14; "as it is\n"}')


def free_port():
    with socket.socket() as door:
        door.bind(("127.0.0.1", 0))
        return door.getsockname()[1]


class Gdb(unittest.TestCase):
    def setUp(self):
        self.work = tempfile.TemporaryDirectory()
        self.addCleanup(self.work.cleanup)
        self.program = pathlib.Path(self.work.name, "values")
        subprocess.run([os.environ["CC_COMPILER"], *FLAGS, "-std=c++17", "-g", "-O0",
                        f"-I{PREFIX}/include/common_core", HERE / "gdb" / "values.cpp", "-o",
                        self.program, f"-L{PREFIX}/lib", "-lcommon_core",
                        f"-Wl,-rpath,{PREFIX}/lib", f"-Wl,-rpath-link,{PREFIX}/lib"], check=True)

    def debug(self, *commands):
        """Runs gdb on the program up to its first stop and gives what the commands print."""
        start = ["run"]
        if RUN:
            port = free_port()
            emulator = subprocess.Popen([*RUN, "-g", str(port), self.program])
            self.addCleanup(emulator.wait)
            self.addCleanup(emulator.kill)
            start = [f"source {PRINTERS}", f"target remote 127.0.0.1:{port}", "continue"]
        steps = ["set width 0", "set debuginfod enabled off", "set confirm off", "break stop",
                 *start, "up", *commands, "kill"]
        done = subprocess.run(
            ["gdb", "-q", "-batch", "-nx",
             "-iex", f"add-auto-load-safe-path {PREFIX}",
             "-iex", f"add-auto-load-scripts-directory {PREFIX}/share/gdb/auto-load",
             *(part for step in steps for part in ("-ex", step)), self.program],
            text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=200, check=False)
        return done.stdout

    def test_values(self):
        output = self.debug(*(f"print {name}" for name, _ in SHOWN), "continue", "up",
                            "print message")
        printed = [re.sub('0x[0-9a-f]+ "', '"', line.split(" = ", 1)[1])
                   for line in output.splitlines() if line.startswith("$")]
        self.assertEqual(len(printed), len(SHOWN) + 1, output)
        for (name, wanted), shown in zip(SHOWN, printed):
            self.assertEqual(shown, wanted, name)
        self.assertEqual(printed[-1], dict(SHOWN)["message"] if RUN else LOADED)


if __name__ == "__main__":
    sys.exit(unittest.main(verbosity=2))
