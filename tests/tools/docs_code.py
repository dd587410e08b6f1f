#!/usr/bin/env python3
"""Holds the blocks of README.md and docs/ against the files that the tests compile and run.

    tests/tools/docs_code.py [--fill]

The first line of a block says where its content comes from:

    ```cpp file=examples/x.cpp               the file, without its comment of what it prints
    ```cpp file=examples/x.cpp region=name   the lines between // [name] and // [/name]
    ```text output=x                         what example x prints

`file=` works for every language; in files with other comments the marks stand behind # or <!--.
A block of C++ has to have it. Files that the text links or names, as in `docs/abi.md`, have to be
there. With --fill, blocks that differ are written anew.
"""

import re
import sys
import textwrap

import examples

ROOT = examples.ROOT
BLOCK = re.compile(r"^```(.*)\n((?:.*\n)*?)```$", re.M)
FENCE = re.compile(r"(\w+)?((?: +[\w]+=[^\s=]+)*)[ \t]*")
LINK = re.compile(r"\]\(([^)#:]+)[^)]*\)")
NAMED = re.compile(r"`([\w.-]+/[\w./-]+)`")
MARK = re.compile(r"^[ \t]*(?://|#|<!--) \[(/?)([\w-]+)\](?: -->)?$\n?", re.M)

FOLDERS = {path.name for path in ROOT.iterdir() if path.is_dir()} - {"build"}


def content(options):
    """The text that a block should hold; raises ValueError where there is none."""
    if "output" in options:
        return examples.run(options["output"])[1].rstrip("\n") + "\n"
    path = ROOT / options["file"]
    if not path.is_file():
        raise ValueError(f"there is no file {options['file']}")
    text = path.read_text(encoding="utf-8")
    if path.suffix == ".cpp":
        text = examples.split_source(text)[0]
    if name := options.get("region"):
        marks = [mark for mark in MARK.finditer(text) if mark[2] == name]
        if [mark[1] for mark in marks] != ["", "/"]:
            raise ValueError(f"{options['file']} has no whole region [{name}]")
        text = textwrap.dedent(text[marks[0].end():marks[1].start()]).strip("\n")
    return MARK.sub("", text).rstrip("\n") + "\n"


def check(path):
    """The page with every block as it should be, the number of blocks, and what is wrong."""
    text = path.read_text(encoding="utf-8")
    problems = []
    blocks = 0

    def report(place, what):
        problems.append(f"{path.relative_to(ROOT)}:{text[:place].count(chr(10)) + 1}: {what}")

    def fill(block):
        nonlocal blocks
        fence = FENCE.fullmatch(block[1])
        if not fence:
            report(block.start(), "the first line of the block is not understood")
            return block[0]
        options = dict(item.split("=", 1) for item in fence[2].split())
        if "file" not in options and "output" not in options:
            if fence[1] in ("cpp", "c++", "cc"):
                report(block.start(), "a block of C++ has to say file=")
            return block[0]
        blocks += 1
        try:
            wanted = content(options)
        except ValueError as error:
            report(block.start(), error)
            return block[0]
        if wanted != block[2]:
            report(block.start(), "the block differs from " +
                   (options.get("file") or "what the example prints"))
        return f"```{block[1]}\n{wanted}```"

    filled = BLOCK.sub(fill, text)
    prose = BLOCK.sub(lambda block: re.sub(".", " ", block[0]), text)
    if "\n```" in prose:
        report(prose.index("\n```") + 1, "the block has no end")
    named = [(name.start(), ROOT / name[1]) for name in NAMED.finditer(prose)
             if name[1].split("/")[0] in FOLDERS]
    for place, target in [(link.start(), path.parent / link[1])
                          for link in LINK.finditer(prose)] + named:
        if not target.exists():
            report(place, f"there is no {target.relative_to(ROOT)}")
    return filled, blocks, problems


def main():
    blocks, problems = 0, []
    for path in [*sorted(ROOT.glob("*.md")), *sorted((ROOT / "docs").rglob("*.md"))]:
        filled, count, found = check(path)
        if sys.argv[1:] == ["--fill"]:
            path.write_text(filled, encoding="utf-8")
        blocks += count
        problems += found
    print("\n".join([*problems, f"{blocks} blocks come from files and programs, "
                     f"{len(problems)} problems"]))
    return 1 if problems or not blocks else 0


if __name__ == "__main__":
    sys.exit(main())
