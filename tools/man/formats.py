"""Section 5: pages of the file formats, from sections of docs/formats.md.

Of Markdown it knows headings, paragraphs, lists, tables and blocks of code.
"""

import re

import roff


def section(text, heading):
    """The lines below a heading of the second level (an expression), up to the next one."""
    found = re.search(rf"^## {heading}\n(.*?)(?=^## |\Z)", text, re.M | re.S)
    return found[1].strip("\n").split("\n") if found else None


def cells(line):
    return [roff.markdown(cell.strip()) for cell in re.split(r"(?<!\\)\|", line.strip("|"))]


def convert(lines):
    result, n = [], 0
    while n < len(lines):
        line = lines[n]
        if line.startswith("```"):
            end = lines.index("```", n + 1)
            result += roff.literal(lines[n + 1:end])
            n = end
        elif line.startswith("    ") and not lines[n - 1].strip():
            end = n
            while end < len(lines) and (lines[end].startswith("    ") or not lines[end].strip()):
                end += 1
            result += roff.literal([text[4:] for text in lines[n:end]])
            n = end - 1
        elif line.startswith("#"):
            result.append(".SS " + roff.markdown(line.lstrip("# ")))
        elif line.startswith("|"):
            end = n
            while end < len(lines) and lines[end].startswith("|"):
                end += 1
            result += roff.table([cells(text) for m, text in enumerate(lines[n:end]) if m != 1])
            n = end - 1
        elif re.match(r"[-*] |\d+\. ", line):
            mark, text = line.split(" ", 1)
            result += [".IP \\(bu 2" if mark in "-*" else f".IP {mark} 4", roff.markdown(text)]
        elif line.startswith("  ") and result:
            result[-1] += " " + roff.markdown(line.strip())
        elif line:
            text = [line]
            while n + 1 < len(lines) and lines[n + 1] and not re.match(r"[#|`]|- ", lines[n + 1]):
                n += 1
                text.append(lines[n])
            result += [".PP", roff.markdown(" ".join(text))]
        n += 1
    return result


def page(name, heading, text, version, summary, other):
    lines = section(text, heading)
    if lines is None:
        return None
    return ["'\\\" t", *roff.head(name, "5", version, summary), ".SH DESCRIPTION",
            *convert(lines), ".SH SEE ALSO", ".BR ccml (1),", ".BR cclng (1),",
            f".BR {other} (5)"]
