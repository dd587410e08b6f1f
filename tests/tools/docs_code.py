#!/usr/bin/env python3
"""Holds the blocks of README.md and docs/ against the files that the tests compile and run.

    tests/tools/docs_code.py [--fill] [--build DIR]

The first line of a block says where its content comes from:

    ```cpp file=examples/x.cpp               the file, without its comment of what it prints
    ```cpp file=examples/x.cpp region=name   the lines between // [name] and // [/name]
    ```text output=x                         what example x prints

`file=` works for every language; in files with other comments the marks stand behind # or <!--.
A block of C++ has to have it. Files that the text links or names, as in `docs/abi.md`, have to be
there. With --fill, blocks that differ are written anew.
"""

import argparse
import pathlib
import re
import sys
import textwrap

import examples

ROOT = examples.ROOT
FENCE = re.compile(r"^```(\w+)?((?: +[\w]+=[^\s=]+)*)[ \t]*$")
LINK = re.compile(r"\]\(([^)#:]+)[^)]*\)")
NAMED = re.compile(r"`([\w.-]+/[\w./-]+)`")
MARK = re.compile(r"^\s*(?://|#|<!--) \[(/?)([\w-]+)\](?: -->)?$")

FOLDERS = {path.name for path in ROOT.iterdir() if path.is_dir()} - {"build"}


def region(lines, name):
    taken, inside, found = [], False, False
    for line in lines:
        mark = MARK.match(line)
        if mark and mark.group(2) == name:
            inside = not mark.group(1)
            found = True
        elif inside and not mark:
            taken.append(line)
    return taken if found and not inside else None


def content(options, build):
    """The lines that a block should hold, and what is wrong with its first line, one of them."""
    if "output" in options:
        _, output, _ = examples.run(build, options["output"])
        return output.rstrip("\n").split("\n"), None
    path = ROOT / options["file"]
    if not path.is_file():
        return None, f"there is no file {options['file']}"
    text = path.read_text(encoding="utf-8")
    if path.suffix == ".cpp":
        text = examples.split_source(text)[0]
    lines = text.rstrip("\n").split("\n")
    if "region" not in options:
        return [line for line in lines if not MARK.match(line)], None
    lines = region(lines, options["region"])
    if lines is None:
        return None, f"{options['file']} has no whole region [{options['region']}]"
    return textwrap.dedent("\n".join(lines)).strip("\n").split("\n"), None


class Page:
    """One page, read line by line; `new` collects it with every block as it should be."""

    def __init__(self, path):
        self.path = path
        self.lines = path.read_text(encoding="utf-8").split("\n")
        self.new = []
        self.problems = []
        self.blocks = 0

    def problem(self, number, text):
        self.problems.append(f"{self.path.relative_to(ROOT)}:{number + 1}: {text}")

    def check(self, build):
        number = 0
        while number < len(self.lines):
            line = self.lines[number]
            self.new.append(line)
            if not line.startswith("```"):
                self.check_names(number, line)
                number += 1
                continue
            end = number + 1
            while end < len(self.lines) and self.lines[end] != "```":
                end += 1
            if end == len(self.lines):
                self.problem(number, "the block has no end")
                self.new += self.lines[number + 1:]
                return
            self.new += self.block(number, self.lines[number + 1:end], build) + ["```"]
            number = end + 1

    def check_names(self, number, line):
        named = [ROOT / name for name in NAMED.findall(line) if name.split("/")[0] in FOLDERS]
        for path in [self.path.parent / link for link in LINK.findall(line)] + named:
            if not path.exists():
                self.problem(number, f"there is no {path.relative_to(ROOT)}")

    def block(self, number, held, build):
        fence = FENCE.match(self.lines[number])
        if not fence:
            self.problem(number, "the first line of the block is not understood")
            return held
        options = dict(item.split("=", 1) for item in fence.group(2).split())
        if "file" not in options and "output" not in options:
            if fence.group(1) in ("cpp", "c++", "cc"):
                self.problem(number, "a block of C++ has to say file=")
            return held
        wanted, wrong = content(options, build)
        if wrong:
            self.problem(number, wrong)
            return held
        self.blocks += 1
        if wanted != held:
            self.problem(number, "the block differs from " +
                         (options.get("file") or "what the example prints"))
        return wanted


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--build", type=pathlib.Path, default=examples.default_build())
    parser.add_argument("--fill", action="store_true", help="write the blocks that differ anew")
    options = parser.parse_args()
    blocks = failed = 0
    for path in [*sorted(ROOT.glob("*.md")), *sorted((ROOT / "docs").rglob("*.md"))]:
        page = Page(path)
        page.check(options.build.resolve())
        blocks += page.blocks
        if options.fill and page.new != page.lines:
            path.write_text("\n".join(page.new), encoding="utf-8")
            print(f"{path.relative_to(ROOT)}: written anew")
            page = Page(path)
            page.check(options.build.resolve())
        failed += len(page.problems)
        for problem in page.problems:
            print(problem)
    print(f"{blocks} blocks come from files and programs, {failed} problems")
    return 1 if failed or not blocks else 0


if __name__ == "__main__":
    sys.exit(main())
