#!/usr/bin/env python3
"""Runs test programs in a locale that changes case, decimal points or dates.

    locales_test.py LOCALE PROGRAM...

The locale is compiled into the build's folder, so that it need not be installed. The programs run
with the process in it; in some, also with just the thread of the tests.
"""

import itertools
import os
import pathlib
import shlex
import subprocess
import sys

RUN = shlex.split(os.environ["CC_RUN"])
FOLDER = pathlib.Path(os.environ["CC_BUILD_DIR"], "locales")

# The decimal point, and who is in the locale.
LOCALES = {
    "C": (".", ["process"]),
    "C.UTF-8": (".", ["process"]),
    "de_DE.UTF-8": (",", ["process", "thread"]),
    "tr_TR.UTF-8": (",", ["process", "thread"]),  # dotted and dotless i
}

# Long, and nothing in them depends on a locale.
LEFT_OUT = "-*LinearTime*:Utf8.EveryShortString:Kernels.*:ReaderTwin.*"


def compile_locale(name):
    """Makes the locale in FOLDER, once."""
    target = FOLDER / name
    if name.startswith("C") or (target / "LC_CTYPE").exists():
        return
    FOLDER.mkdir(parents=True, exist_ok=True)
    language, charset = name.split(".")
    subprocess.run(["localedef", "-i", language, "-f", charset, target], check=True)


def run(program, environment):
    """Runs a program; returns what it printed when it failed."""
    done = subprocess.run([*RUN, program, "--gtest_brief=1", f"--gtest_filter={LEFT_OUT}"],
                          env=environment, check=False, capture_output=True, text=True,
                          errors="replace")
    return "" if done.returncode == 0 else f"{done.returncode}\n{done.stdout}{done.stderr}"


def main():
    name, programs = sys.argv[1], sys.argv[2:]
    point, scopes = LOCALES[name]
    compile_locale(name)
    environment = dict(os.environ, LC_ALL=name)
    if not name.startswith("C"):
        environment["LOCPATH"] = str(FOLDER)
    shown = subprocess.run(["locale", "decimal_point"], env=environment, check=True,
                           capture_output=True, text=True).stdout.strip()
    failed = 0
    if shown != point:
        print(f"{name}: the decimal point is {shown!r}")
        failed += 1
    for scope, program in itertools.product(scopes, programs):
        environment["CC_TEST_LOCALE"] = scope
        complaint = run(program, environment)
        if complaint:
            print(f"{name}, {scope}: {program} ended with {complaint}")
            failed += 1
    print(f"{name}, {len(scopes)} times {len(programs)} programs, {failed} failures")
    return 1 if failed or not programs else 0


if __name__ == "__main__":
    sys.exit(main())
