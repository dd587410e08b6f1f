"""Section 1: the page of a tool, from what it says of itself with --help.

That text is "Usage: ...", paragraphs, and two-column parts: a line indented by two spaces begins an
entry, what is indented deeper explains it. A paragraph that ends with ":" introduces an example.
"""

import re
import subprocess

import roff


def blocks(text):
    return [block.split("\n") for block in re.split(r"\n{2,}", text.strip("\n"))]


def entries(lines):
    """The entries of a two-column block: (what, explanation)."""
    found = []
    for line in lines:
        if re.match(r"  \S", line):
            what, _, rest = line.strip().partition("  ")
            found.append([what, [rest.strip()] if rest else []])
        elif found:
            found[-1][1].append(line.strip())
    return found


def is_list(lines):
    return all(line.startswith("  ") for line in lines)


def is_example(lines):
    return is_list(lines) and any(re.match(r"\s+[<{\[]", line) for line in lines)


def body(text):
    lines = []
    for block in blocks(text)[1:]:
        if is_example(block):
            lines += roff.literal([line[2:] for line in block])
        elif is_list(block):
            for what, rest in entries(block):
                lines += [".TP", roff.code(what), roff.escape(" ".join(rest)) or "\\&"]
        else:
            lines += [".PP", roff.escape(" ".join(block))]
    return lines


def page(name, command, version, summary):
    done = subprocess.run([*command, "--help"], stdout=subprocess.PIPE, check=True, text=True)
    usage = blocks(done.stdout)[0][0].replace("Usage: ", "")
    return [*roff.head(name, "1", version, summary), ".SH SYNOPSIS", roff.code(usage),
            ".SH DESCRIPTION", *body(done.stdout), ".SH ENVIRONMENT", ".TP",
            roff.code("COMMON_CORE_ETC_DIR"),
            "The directory of the dictionaries, instead of the one fixed in the library.",
            ".SH SEE ALSO",
            f".BR {'ccml' if name == 'cclng' else 'cclng'} (1),",
            ".BR common_core_lng (5),", ".BR common_core_markup (5)"]
