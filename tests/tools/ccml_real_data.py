#!/usr/bin/env python3
"""Compares the library's walk over real documents with that of an established parser.

  ccml_real_data.py [--all] [FOLDER...]

Every XML document below the folders counts as seen. It is inside the format when a strict check
finds nothing in it and it is declared as UTF-8; then names, nesting, attributes and the text of
elements that hold only text have to be the same. The format allows what is no well-formed document
to the other parser, several elements at the top for instance; those are counted apart. By default a
sample of the installed documents is compared; --all takes all of them.
"""

import argparse
import os
import shlex
import subprocess
import sys
import tempfile
import xml.parsers.expat
from pathlib import Path

BUILD = Path(os.environ.get("CC_BUILD_DIR", "build/dev"))
EMULATOR = shlex.split(os.environ.get("CC_RUN", ""))
FOLDERS = ["/usr/share", "/usr/lib", "/etc"]
SUFFIXES = {".xml", ".svg", ".ui", ".rng", ".xsd", ".xsl", ".rdf", ".docbook", ".kcfg", ".theme"}


def program(name):
    return [*EMULATOR, str(BUILD / name)]


def escaped(text):
    for special, letter in (("\\", "\\"), ("\n", "n"), ("\r", "r"), ("\t", "t")):
        text = text.replace(special, "\\" + letter)
    return text


class Walk:
    """The lines that the example program prints, made from expat's events."""

    def __init__(self):
        self.lines = [""]
        self.depth = 0
        self.text = None  # of the element just opened, while it holds only text

    def start(self, name, attributes):
        self.depth += 1
        line = f"{self.depth} {name}"
        for key, value in zip(attributes[::2], attributes[1::2]):
            line += f"\t@{key}={escaped(value)}"
        self.lines.append(line)
        self.text = ""

    def end(self, _):
        self.depth -= 1
        if self.text is not None:
            self.lines[-1] += "\t=" + escaped(self.text)
        self.text = None

    def characters(self, data):
        if self.text is not None:
            self.text += data

    def other(self, *_):
        self.text = None


def expat_walk(data):
    walk = Walk()
    parser = xml.parsers.expat.ParserCreate()
    parser.ordered_attributes = True
    parser.buffer_text = True
    parser.StartElementHandler = walk.start
    parser.EndElementHandler = walk.end
    parser.CharacterDataHandler = walk.characters
    parser.CommentHandler = walk.other
    parser.ProcessingInstructionHandler = walk.other
    parser.Parse(data, True)
    return walk.lines


def without_empty_tags(lines):
    """<a/> and <a></a> are the same to expat."""
    return [line[:-2] if line.endswith("\t=") else line for line in lines]


def is_utf8(data):
    head = data[:200].split(b"?>")[0].lower()
    return b"encoding=" not in head or b'"utf-8"' in head or b'"us-ascii"' in head


def inside_format(paths):
    """Those of the paths in which a strict check finds nothing."""
    clean = []
    for i in range(0, len(paths), 400):
        part = paths[i : i + 400]
        out = subprocess.run([*program("ccml"), "check", "--strict", "--lang", "eng", *part],
                             capture_output=True).stdout.decode("utf-8", "replace")
        found = {line.split(": error:")[0].split(": warning:")[0].rsplit(":", 2)[0]
                 for line in out.splitlines()}
        clean += [path for path in part if path not in found]
    return clean


def documents(folders, everything):
    paths = []
    for folder in folders:
        for path in sorted(Path(folder).rglob("*")):
            if path.suffix in SUFFIXES and path.is_file() and not path.is_symlink():
                paths.append(str(path))
    return paths if everything else paths[:: max(1, len(paths) // 150)]


def compare(path):
    """None when both walks are the same, else the first difference."""
    data = Path(path).read_bytes()
    ours = subprocess.run([*program("example_dump_document"), path], capture_output=True)
    if ours.returncode:
        return ours.stderr.decode("utf-8", "replace").strip()
    # The parser reads CR LF as one LF, which the library leaves as it is.
    lines = ours.stdout.decode("utf-8", "replace").replace("\\r\\n", "\\n").split("\n")[:-1]
    theirs = expat_walk(data)
    for mine, other in zip(without_empty_tags(lines), without_empty_tags(theirs)):
        if mine != other:
            return f"{mine!r} instead of {other!r}"
    return None if len(lines) == len(theirs) else f"{len(lines)} lines instead of {len(theirs)}"


def self_test():
    """The comparison itself finds a difference."""
    with tempfile.TemporaryDirectory() as folder:
        path = Path(folder) / "a.xml"
        path.write_bytes(b'<a b="1">x<!-- --><c/>&lt;</a>\n')
        assert compare(str(path)) is None, compare(str(path))
        path.write_bytes(b'<a b="\n1">x</a>\n')
        assert compare(str(path)) is not None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--all", action="store_true")
    parser.add_argument("folders", nargs="*", default=FOLDERS)
    options = parser.parse_args()
    self_test()
    paths = documents(options.folders, options.all)
    clean = [path for path in inside_format(paths) if is_utf8(Path(path).read_bytes())]
    different = []
    others = []
    for path in clean:
        try:
            why = compare(path)
        except xml.parsers.expat.ExpatError as error:
            others.append((path, f"not well-formed: {error}"))
        else:
            if why is not None:
                different.append((path, why))
    # Line breaks at the ends of an attribute value are dropped by design, and a parser makes them
    # spaces; everything else has to be the same.
    for path, why in others + different:
        print(f"{path}: {why[:300]}")
    print(f"seen {len(paths)}, inside the format {len(clean)}, "
          f"equal {len(clean) - len(different) - len(others)}, different {len(different)}, "
          f"not well-formed {len(others)}")
    if len(others) == len(clean):
        print("no document to compare")
        return 1
    return 1 if different else 0


if __name__ == "__main__":
    sys.exit(main())
