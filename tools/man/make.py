#!/usr/bin/env python3
"""Writes the manual: section 1 from the tools, section 3 from the headers, section 5 from the
description of the formats. Also runs Doxygen, whose warnings are errors.

    tools/man/make.py --output DIR [--html DIR] [--version VERSION] [--gzip]
                       [--tool NAME=COMMAND]...
"""

import argparse
import gzip
import pathlib
import shlex
import shutil
import subprocess
import sys
import tempfile

import formats
import program
import reference

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOLS = {"cclng": "compiles and checks dictionaries of translated messages",
         "ccml": "checks, formats and queries markup documents"}
FORMATS = {"common_core_lng": (r"\.lng dictionary", "file format of dictionaries"),
           "common_core_markup": ("Markup document", "markup format of documents")}


def doxygen(folder, html):
    settings = (ROOT / "docs" / "Doxyfile").read_text(encoding="utf-8")
    settings += (f"\nINPUT = include platform/libpaths README.md CONTRIBUTING.md CHANGELOG.md docs"
                 f"\nUSE_MDFILE_AS_MAINPAGE = README.md\nOUTPUT_DIRECTORY = {folder}"
                 f"\nGENERATE_HTML = {'YES' if html else 'NO'}\n")
    done = subprocess.run(["doxygen", "-"], cwd=ROOT, input=settings, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    print(done.stdout, end="")
    if done.returncode != 0:
        sys.exit("Doxygen found something to complain about")
    if html:
        shutil.rmtree(html, ignore_errors=True)
        shutil.copytree(folder / "html", html)


def fresh(folder):
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    return folder


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--output", type=pathlib.Path, required=True)
    parser.add_argument("--html", type=pathlib.Path)
    parser.add_argument("--version", default="1.0.0")
    parser.add_argument("--tool", action="append", default=[])
    parser.add_argument("--gzip", action="store_true", help="compress the pages")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as work:
        doxygen(pathlib.Path(work), options.html)
        pages = reference.Reference(pathlib.Path(work, "xml"), ROOT, options.version)
        written, leading = pages.write(fresh(options.output / "man3"))
    print(f"{pages.names()} documented names; section 3: {len(written)} pages, "
          f"{len(leading)} names that lead to them")

    folder = fresh(options.output / "man1")
    for tool in options.tool:
        name, command = tool.split("=", 1)
        lines = program.page(name, shlex.split(command), options.version, TOOLS[name])
        (folder / f"{name}.1").write_text("\n".join(lines) + "\n", encoding="utf-8")

    folder = fresh(options.output / "man5")
    text = (ROOT / "docs" / "formats.md").read_text(encoding="utf-8")
    names = list(FORMATS)
    for name, (heading, summary) in FORMATS.items():
        other = names[1 - names.index(name)]
        lines = formats.page(name, heading, text, options.version, summary, other)
        if lines is None:
            sys.exit(f"docs/formats.md has no section '{heading}'")
        (folder / f"{name}.5").write_text("\n".join(lines) + "\n", encoding="utf-8")
    if options.gzip:
        for page in options.output.glob("man?/*"):
            page.with_name(page.name + ".gz").write_bytes(
                gzip.compress(page.read_bytes(), 9, mtime=0))
            page.unlink()
    return 0


if __name__ == "__main__":
    sys.exit(main())
