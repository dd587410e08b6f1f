#!/usr/bin/env python3
"""Does in a bare root what a page of the guide says, as a new user would, and times it.

    tests/packages/walkthrough.py ROOT FOLDER PAGE...

FOLDER is the directory in the root where it happens. A block that comes from a whole file is saved
under the file's name; a block of sh is run; a block of text behind one has to be what it printed.
"""

import pathlib
import re
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
BLOCK = re.compile(r"^```(\w+)(.*)\n((?:.*\n)*?)```$", re.M)


def steps(page):
    """What to do, in the order of the page: (kind, argument, lines)."""
    for language, options, content in BLOCK.findall(page.read_text(encoding="utf-8")):
        file = re.search(r" file=(\S+)", options)
        if language == "sh":
            yield "run", content, None
        elif language == "text":
            yield "compare", content, None
        elif file and " region=" not in options:
            yield "save", pathlib.Path(file[1]).name, content


def run(root, folder, commands):
    script = f"cd {folder}\nset -e\n{commands}"
    start = time.monotonic()
    done = subprocess.run(["chroot", root, "env", "-i", "PATH=/usr/sbin:/usr/bin:/sbin:/bin",
                           "HOME=/root", "LANG=C.UTF-8", "DEBIAN_FRONTEND=noninteractive",
                           "DEBUGINFOD_URLS=", "bash", "-c", script], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
    print("\n".join(f"    $ {line}" for line in commands.strip().split("\n")))
    print(f"    {time.monotonic() - start:.1f} s")
    if done.returncode != 0:
        sys.exit(f"{done.stdout}{done.stderr}\nexit code {done.returncode}")
    return done.stdout


def main():
    root, folder = sys.argv[1:3]
    for name in sys.argv[3:]:
        print(f"== {name}")
        printed = None
        for kind, argument, content in steps(ROOT / name):
            if kind == "save":
                pathlib.Path(root + folder, argument).write_text(content, encoding="utf-8")
                print(f"    saved {argument}")
            elif kind == "run":
                printed = run(root, folder, argument)
            elif printed is not None:
                if printed != argument:
                    sys.exit(f"{name}: it printed\n{printed}but the page says\n{argument}")
                print("    printed what the page says")
                printed = None


if __name__ == "__main__":
    main()
