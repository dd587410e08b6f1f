#!/usr/bin/env python3
"""Does in a bare root what a page of the guide says, as a new user would, and times it.

    tests/packages/walkthrough.py ROOT FOLDER TIMES PAGE...

FOLDER is the directory in the root where it happens. A block that comes from a whole file is saved
under the file's name; a block of sh is run; a block of text behind one has to be what it printed.
The seconds that each section of a page took are added to the file TIMES.
"""

import pathlib
import re
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
BLOCK = re.compile(r"^## (.*)$|^```(\w+)(.*)\n((?:.*\n)*?)```$", re.M)


def steps(page):
    """What to do, in the order of the page: (kind, argument, lines)."""
    for heading, language, options, content in BLOCK.findall(page.read_text(encoding="utf-8")):
        file = re.search(r" file=(\S+)", options)
        if heading:
            yield "section", heading, None
        elif language == "sh":
            yield "run", content, None
        elif language == "text":
            yield "compare", content, None
        elif file and " region=" not in options:
            yield "save", pathlib.Path(file[1]).name, content


def run(root, folder, commands):
    script = f"cd {folder}\nset -e\n{commands}"
    done = subprocess.run(["chroot", root, "env", "-i", "PATH=/usr/sbin:/usr/bin:/sbin:/bin",
                           "HOME=/root", "LANG=C.UTF-8", "DEBIAN_FRONTEND=noninteractive",
                           "DEBUGINFOD_URLS=", "bash", "-c", script], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
    print("\n".join(f"    $ {line}" for line in commands.strip().split("\n")))
    if done.returncode != 0:
        sys.exit(f"{done.stdout}{done.stderr}\nexit code {done.returncode}")
    return done.stdout


def follow(page, root, folder):
    """Does what the page says; gives the seconds of each section."""
    printed, section, seconds = None, "", {}
    for kind, argument, content in steps(page):
        if kind == "section":
            section = argument
        elif kind == "save":
            pathlib.Path(root + folder, argument).write_text(content, encoding="utf-8")
            print(f"    saved {argument}")
        elif kind == "run":
            start = time.monotonic()
            printed = run(root, folder, argument)
            seconds[section] = seconds.get(section, 0) + time.monotonic() - start
        elif printed is not None:
            if printed != argument:
                sys.exit(f"{page.name}: it printed\n{printed}but the page says\n{argument}")
            print("    printed what the page says")
            printed = None
    return seconds


def main():
    root, folder, times = sys.argv[1:4]
    for name in sys.argv[4:]:
        print(f"== {name}")
        seconds = follow(ROOT / name, root, folder)
        with open(times, "a", encoding="utf-8") as table:
            for section, spent in seconds.items():
                print(f"{spent:7.1f} s  {pathlib.Path(name).stem}: {section}", file=table)


if __name__ == "__main__":
    main()
