#!/usr/bin/env python3
"""Compares the library's walk over real documents with that of an established parser.

  ccml_real_data.py [FOLDER...]

Every XML document below the folders counts as seen. It is inside the format when a strict check
finds nothing in it and it is declared as UTF-8; then names, nesting, attributes and the text of
elements that hold only text have to be the same. The format allows what is no well-formed document
to the other parser, several elements at the top for instance; those are counted apart. Without
folders a sample of the installed documents is compared.
"""

import os
import shlex
import subprocess
import sys
import tempfile
from pathlib import Path
from xml.dom import Node, expatbuilder
from xml.parsers.expat import ExpatError

BUILD = Path(os.environ.get("CC_BUILD_DIR", "build/dev"))
EMULATOR = shlex.split(os.environ.get("CC_RUN", ""))
FOLDERS = ["/usr/share", "/usr/lib", "/etc"]
SUFFIXES = {".xml", ".svg", ".ui", ".rng", ".xsd", ".xsl", ".rdf", ".docbook", ".kcfg", ".theme"}
ESCAPES = str.maketrans({"\\": "\\\\", "\n": "\\n", "\r": "\\r", "\t": "\\t"})


def run(name, *arguments):
    return subprocess.run([*EMULATOR, BUILD / name, *arguments], capture_output=True,
                          encoding="utf-8", errors="replace", check=False)


def walk(node, depth=1):
    """The lines that the example program prints, from the other parser's document."""
    for element in node.childNodes:
        if element.nodeType != Node.ELEMENT_NODE:
            continue
        line = f"{depth} {element.nodeName}" + "".join(
            f"\t@{key}={value.translate(ESCAPES)}" for key, value in element.attributes.items())
        kinds = {child.nodeType for child in element.childNodes}
        if kinds <= {Node.TEXT_NODE, Node.CDATA_SECTION_NODE}:
            line += "\t=" + "".join(child.data for child in element.childNodes).translate(ESCAPES)
        # <a/> and <a></a> are the same to the other parser.
        yield line.removesuffix("\t=")
        yield from walk(element, depth + 1)


def is_utf8(path):
    head = Path(path).read_bytes()[:200].split(b"?>")[0].lower()
    return b"encoding=" not in head or b'"utf-8"' in head or b'"us-ascii"' in head


def inside_format(paths):
    """Those of the paths that are in UTF-8 and in which a strict check finds nothing."""
    for i in range(0, len(paths), 400):
        part = paths[i : i + 400]
        out = run("ccml", "check", "--strict", "--lang", "eng", *part).stdout
        found = {line.split(": error:")[0].split(": warning:")[0].rsplit(":", 2)[0]
                 for line in out.splitlines()}
        yield from (path for path in part if path not in found and is_utf8(path))


def compare(path):
    """None when both walks are the same, else the first difference."""
    ours = run("example_dump_document", path)
    if ours.returncode:
        return ours.stderr.strip()
    # The parser reads CR LF as one LF, which the library leaves as it is.
    lines = ours.stdout.replace("\\r\\n", "\\n").split("\n")[1:-1]
    theirs = list(walk(expatbuilder.parse(path, namespaces=False)))
    for mine, other in zip(lines, theirs):
        if mine.removesuffix("\t=") != other:
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


def main(folders):
    self_test()
    paths = [str(path) for folder in folders or FOLDERS for path in sorted(Path(folder).rglob("*"))
             if path.suffix in SUFFIXES and path.is_file() and not path.is_symlink()]
    if not folders:
        paths = paths[:: max(1, len(paths) // 150)]
    different = others = equal = 0
    for path in inside_format(paths):
        # Line breaks at the ends of an attribute value are dropped by design, and a parser makes
        # them spaces; everything else has to be the same.
        try:
            why = compare(path)
            different += why is not None
            equal += why is None
        except ExpatError as error:
            why = f"not well-formed: {error}"
            others += 1
        if why is not None:
            print(f"{path}: {why[:300]}")
    print(f"seen {len(paths)}, inside the format {different + others + equal}, equal {equal}, "
          f"different {different}, not well-formed {others}")
    return 1 if different or not equal else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
