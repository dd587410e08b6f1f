#!/usr/bin/env python3
"""Prints what share of the sources ran, and holds what did not against tests/uncovered.txt.

    tools/check_coverage.py REPORT      the file of gcovr --json

A source line is a finding if it or one of its branches did not run and the list does not name it,
and a line of the list is one if all of it ran or it is gone. The list goes by the text of source
lines, as their numbers change too often; `#` comments give the reasons:

    file: text     lines with this text, not all of which runs
    ? file: text   the same where it depends on the machine or the moment whether it runs
    ? file: *      a whole file
"""

import collections
import json
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LIST = "tests/uncovered.txt"


def read_list():
    """{(file, text): (number of the line, whether it may run)}"""
    entries = {}
    for number, line in enumerate((ROOT / LIST).read_text(encoding="utf-8").splitlines(), 1):
        if line.strip() and not line.startswith("#"):
            file, _, text = line.removeprefix("? ").partition(": ")
            entries[file, text.strip()] = number, line.startswith("? ")
    return entries


def lines_of(report):
    """Each counted line of code: its file, its number, whether it ran, and its branches' counts."""
    for file in json.loads(pathlib.Path(report).read_text(encoding="utf-8"))["files"]:
        for line in file["lines"]:
            if not line["gcovr/noncode"]:
                counts = [branch["count"] for branch in line["branches"]]
                yield file["file"], line["line_number"], line["count"] > 0, counts


def print_shares(shares):
    print(f"{'folder':<10} {'lines':>6} {'run':>7}  {'branches':>8} {'run':>7}")
    shares["all"] = [sum(column) for column in zip(*shares.values())]
    for folder, (lines, lines_run, branches, branches_run) in shares.items():
        print(f"{folder:<10} {lines:>6} {100 * lines_run / max(lines, 1):>6.2f}%  "
              f"{branches:>8} {100 * branches_run / max(branches, 1):>6.2f}%")


def main():
    entries = read_list()
    used = set()
    findings = []
    sources = {}
    shares = collections.defaultdict(lambda: [0, 0, 0, 0])
    for file, number, ran, counts in lines_of(sys.argv[1]):
        if file not in sources:
            sources[file] = (ROOT / file).read_text(encoding="utf-8").splitlines()
        branches_run = sum(count > 0 for count in counts)
        parts = 1, ran, len(counts), branches_run
        shares[file.split("/")[0]] = [a + b for a, b in zip(shares[file.split("/")[0]], parts)]
        if ran and branches_run == len(counts):
            continue
        text = sources[file][number - 1].strip()
        listed = {(file, text), (file, "*")} & entries.keys()
        used |= listed
        if not listed:
            missing = f"{len(counts) - branches_run} of {len(counts)} branches" if ran else "this line"
            findings.append(f"{file}:{number}: error: {missing} did not run: {text}")
    for (file, text), (number, may_run) in entries.items():
        known = text == "*" or any(text == line.strip() for line in sources.get(file, []))
        if file not in sources or not known:
            findings.append(f"{LIST}:{number}: error: this line is gone: {file}: {text}")
        elif not may_run and (file, text) not in used:
            findings.append(f"{LIST}:{number}: error: all of this line ran: {file}: {text}")
    print_shares(shares)
    print("\n".join([*findings, f"{len(entries)} lines listed, {len(findings)} findings"]))
    return 1 if findings or not sources else 0


if __name__ == "__main__":
    sys.exit(main())
