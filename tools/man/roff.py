"""Text as troff wants it, and the frame of a manual page."""

import re


def escape(text):
    """Plain text: nothing of it is read as a request or an escape."""
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return re.sub(r"^([.'])", r"\\&\1", text, flags=re.M)


def code(text):
    """Text of a program, in bold."""
    return "\\fB" + escape(text) + "\\fR"


def markdown(text):
    """The inline marks of Markdown: `code`, **bold** and links, of which the text stays."""
    text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", text)
    parts = re.split(r"(`[^`]+`|\*\*[^*]+\*\*)", text)
    return "".join(code(part.strip("`*")) if n % 2 else escape(part)
                   for n, part in enumerate(parts))


def head(name, section, version, summary):
    """The first lines of a page; `name` may be several names with commas."""
    title = name.split(",")[0]
    return [f'.TH "{title}" {section} "" "common_core {version}" "common_core"', ".nh", ".ad l",
            ".SH NAME", f"{escape(name)} \\- {escape(summary)}"]


def literal(lines):
    """Lines shown as they stand."""
    return [".PP", ".RS 4", ".nf", *(escape(line) for line in lines), ".fi", ".RE"]


def table(rows):
    """Rows of cells that are troff already, the first of them the heading; wide ones are filled."""
    columns = len(rows[0])
    widths = [max(len(row[n]) for row in rows) for n in range(columns)]
    widest = max(range(columns), key=lambda n: widths[n])
    layout = " ".join("lx" if n == widest else f"lw({min(widths[n] // 2 + 4, 26)})"
                      if widths[n] > 40 else "l" for n in range(columns))
    lines = [".PP", ".TS", "allbox;", " ".join("lb" for _ in rows[0]), layout + "."]
    for row in rows:
        lines.append("\t".join(f"T{{\n{cell}\nT}}" for cell in row))
    return [*lines, ".TE"]
