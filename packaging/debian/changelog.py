#!/usr/bin/env python3
"""Prints the newest release of CHANGELOG.md in the form of Debian's change logs.

    packaging/debian/changelog.py VERSION MAINTAINER DATE
"""

import pathlib
import re
import sys
import textwrap

ROOT = pathlib.Path(__file__).resolve().parents[2]


def main():
    version, maintainer, date = sys.argv[1:]
    text = (ROOT / "CHANGELOG.md").read_text(encoding="utf-8")
    newest = text.split("\n## ")[1].split("\n", 1)[1]
    print(f"common-core ({version}) unstable; urgency=medium\n")
    for change in re.split(r"^- ", newest, flags=re.M)[1:]:
        print(textwrap.fill(" ".join(change.split()), 76, initial_indent="  * ",
                            subsequent_indent="    "))
    print(f"\n -- {maintainer}  {date}")


if __name__ == "__main__":
    main()
