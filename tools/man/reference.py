"""Section 3: a page per class and per family of functions, from the XML that Doxygen writes.

What stands between two comments of dashes in a header, as in "// ----- loading", becomes a section
of the page. Every function that belongs to no class gets a page of its own that leads to its
family's.
"""

import pathlib
import re
import xml.etree.ElementTree as ElementTree

import roff

SECTION = "3cc"
SEPARATOR = re.compile(r"^\s*// -{20,} (.+)$")


def inline(node):
    """The content of a node as troff, in one line."""
    result = roff.escape(node.text or "")
    for child in node:
        if child.tag in ("computeroutput", "bold"):
            result += roff.code("".join(child.itertext()))
        elif child.tag in ("ndash", "mdash"):
            result += "\\(en"
        else:
            result += inline(child)
        result += roff.escape(child.tail or "")
    return result


def paragraphs(node):
    """The blocks of a description as troff lines."""
    lines = []
    for para in [] if node is None else node.findall("para"):
        rest = ElementTree.Element("para")
        rest.text = para.text
        for child in para:
            if child.tag == "itemizedlist":
                for item in child.findall("listitem"):
                    lines += [".IP \\(bu 2", *(inline(p).strip() for p in item.findall("para"))]
            elif child.tag in ("programlisting", "verbatim"):
                lines += roff.literal("".join(child.itertext()).split("\n"))
            else:
                rest.append(child)
        text = inline(rest).strip()
        if text:
            lines += [".PP", text]
    return lines


def description(member):
    brief = paragraphs(member.find("briefdescription"))
    detail = paragraphs(member.find("detaileddescription"))
    # The first sentence and what follows it are one paragraph in the header.
    if brief and detail and detail[0] == ".PP" and len(brief) == 2:
        joint = "" if detail[1].startswith("'") else " "
        return [".PP", brief[1] + joint + detail[1], *detail[2:]]
    return brief + detail


def plain(node):
    return "".join(node.itertext()).strip() if node is not None else ""


def declaration(member):
    kind = member.get("kind")
    if kind == "enum":
        return "enum " + plain(member.find("name"))
    if kind == "typedef":
        return plain(member.find("definition"))
    if kind == "define":
        parameters = [plain(p.find("defname")) for p in member.findall("param")]
        return "#define " + plain(member.find("name")) + (
            f"({', '.join(parameters)})" if parameters else "")
    text = " ".join([plain(member.find("type")), plain(member.find("name"))]).strip()
    text += plain(member.find("argsstring")).replace("=default", "")
    for word in ("virtual", "static", "explicit"):
        if (member.get("virt") if word == "virtual" else member.get(word)) in ("yes", "virtual"):
            text = f"{word} {text}"
    for pattern, shown in ((r"constexpr |extern ", ""), (r" ([*&]+) ", r"\1 "), (r"< ", "<"),
                           (r" >", ">"), (r" ([*&]+)(?=\w)", r"\1 ")):
        text = re.sub(pattern, shown, text)
    return text + ";"


def documented(member):
    return bool(description(member))


class Compound:
    """A class, a struct or a header, with its members in the order of the header."""

    def __init__(self, path, source):
        self.node = ElementTree.parse(path).getroot().find("compounddef")
        self.name = plain(self.node.find("compoundname"))
        self.kind = self.node.get("kind")
        location = self.node.find("location")
        self.header = source / location.get("file") if location is not None else None
        self.members = [member for member in self.node.iter("memberdef")
                        if member.get("prot") != "private" and documented(member)]
        self.members.sort(key=self.line)
        self.inner = [plain(node) for node in self.node.findall("innerclass")
                      if node.get("prot") == "public"]

    @staticmethod
    def line(member):
        return int(member.find("location").get("line"))

    def separators(self):
        """The lines where a section begins, and its name."""
        lines = self.header.read_text(encoding="utf-8").split("\n")
        found = [(n + 1, SEPARATOR.match(text)) for n, text in enumerate(lines)]
        return [(n, match[1]) for n, match in found if match]

    def documentation(self):
        """All members as troff, section by section."""
        lines, current, separators = [], None, self.separators()
        for member in self.members:
            before = [name for n, name in separators if n < self.line(member)]
            first = self.node.find("location").get("line")
            inside = [name for n, name in separators
                      if self.kind == "file" or int(first) < n < self.line(member)]
            name = before[-1] if before and inside else None
            if name != current and name:
                lines += [f".SS {roff.escape(name[0].upper() + name[1:])}"]
            current = name
            lines += [".TP", roff.code(declaration(member))]
            text = description(member)
            lines += text[1:] if text[:1] == [".PP"] else text
            lines += self.values(member)
        return [".br\n.IP" if line == ".PP" else line for line in lines]

    @staticmethod
    def values(member):
        lines = []
        for value in member.findall("enumvalue"):
            name = plain(value.find("name")) + " " + plain(value.find("initializer"))
            text = " ".join(line for line in description(value) if not line.startswith("."))
            lines += [".RS", ".TP", roff.code(name.strip()), text, ".RE"]
        return lines


class Reference:
    """All pages of section 3."""

    def __init__(self, xml, source, version):
        self.version = version
        found = [Compound(path, source) for path in sorted(pathlib.Path(xml).glob("*.xml"))
                 if re.match(r"(class|struct|.*_8h\.xml)", path.name)]
        self.compounds = {compound.name: compound for compound in found}
        self.classes = [name for name, compound in self.compounds.items()
                        if compound.kind in ("class", "struct") and self.outer(name) is None]
        self.families = [name for name, compound in self.compounds.items()
                         if compound.kind == "file" and self.own(compound)]

    def outer(self, name):
        parent = name.rpartition("::")[0]
        return parent if parent in self.compounds else None

    @staticmethod
    def own(compound):
        return [member for member in compound.members if member.get("kind") != "typedef"]

    def names(self):
        """Every documented public name: classes, members, values of enumerations."""
        count = len([c for c in self.compounds.values() if c.kind != "file"])
        for compound in self.compounds.values():
            count += len(compound.members)
            count += sum(len(member.findall("enumvalue")) for member in compound.members)
        return count

    def synopsis(self, compound, shown):
        lines = [".SH SYNOPSIS", ".nf", roff.code(f"#include <{compound.header.name}>"), ".PP"]
        lines += [roff.code(line) for line in shown]
        return [*lines, ".fi", ".PP", "Linked by " + roff.code(self.link_option(compound)) + "."]

    @staticmethod
    def link_option(compound):
        return "-lpaths" if compound.header.name == "libpaths.h" else "-lcommon_core"

    def style(self, compound):
        """The first paragraphs of the header: what it is for and how its failures look."""
        return paragraphs(self.compounds[compound.header.name].node.find("detaileddescription"))

    def see_also(self, own):
        others = sorted(set(self.classes) | {self.page(name) for name in self.families})
        return [".SH SEE ALSO", " ,\n".join(f".BR {name} ({SECTION})" for name in others
                                            if name != own)]

    @staticmethod
    def page(name):
        return name[:-2] if name.endswith(".h") else name

    def summary(self, compound):
        brief = inline(compound.node.find("briefdescription")).strip()
        brief = re.sub(r"\\f[BR]", "", brief).replace("\\-", "-").rstrip(".")
        return brief[0].lower() + brief[1:] if re.match(r"[A-Z]([a-z]| )", brief) else brief

    def class_page(self, name):
        compound = self.compounds[name]
        lines = roff.head(name, SECTION, self.version, self.summary(compound))
        bases = ", ".join("public " + plain(node)
                          for node in compound.node.findall("basecompoundref"))
        parameters = [plain(p.find("type")) for p in
                      compound.node.findall("templateparamlist/param")]
        shown = [f"template <{', '.join(parameters)}>"] if parameters else []
        kind = compound.kind
        shown.append(f"{kind} {name}" + (f" : {bases}" if bases else "") + ";")
        lines += self.synopsis(compound, shown)
        lines += [".SH DESCRIPTION", *description(compound.node), *self.style(compound)]
        lines += [".SH MEMBERS", *compound.documentation()]
        for inner in compound.inner:
            nested = self.compounds[inner]
            lines += [f".SH {roff.escape(inner)}", *description(nested.node),
                      *nested.documentation()]
        return lines + self.see_also(name)

    def family_page(self, name):
        compound = self.compounds[name]
        members = self.own(compound)
        compound.members = members
        lines = roff.head(self.page(name), SECTION, self.version, self.summary(compound))
        lines += self.synopsis(compound, [declaration(member) for member in members])
        lines += [".SH DESCRIPTION", *self.style(compound), ".SH INTERFACE",
                  *compound.documentation()]
        return lines + self.see_also(self.page(name))

    def write(self, folder):
        """Writes every page; gives their names and those of the pages that lead to them."""
        written, leading = [], []
        pages = [(name, self.class_page(name)) for name in self.classes]
        pages += [(self.page(name), self.family_page(name)) for name in self.families]
        for name, lines in pages:
            (folder / f"{name}.{SECTION}").write_text("\n".join(lines) + "\n", encoding="utf-8")
            written.append(name)
        for family in self.families:
            for member in self.own(self.compounds[family]):
                name = plain(member.find("name"))
                path = folder / f"{name}.{SECTION}"
                if member.get("kind") == "function" and name not in leading:
                    path.write_text(f".so man3/{self.page(family)}.{SECTION}\n", encoding="utf-8")
                    leading.append(name)
        return written, leading
