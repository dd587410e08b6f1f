"""Holds the texts in data/ to the rules of whole messages, and the compiled files to the texts.

The documents are read with another reader than the library's. Messages are joined without anything
between them, so line breaks at their ends are part of the rules; so is the typography of each
language.
"""

import os
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

ROOT = pathlib.Path(os.environ["CC_SOURCE_DIR"])
DOCUMENTS = sorted((ROOT / "data").glob("*.xml"))
COUNT = 39
STAMP = 0xF196B6AA
PLACEHOLDERS = {17: ["%d"], 21: ["%d", "%d"], 25: ["%s"], 28: ["%s"]}
FOLLOWING = set(PLACEHOLDERS)  # each begins on a line of its own
HEADING = 37

# What must not stand in a text of the language, beside what FORBIDDEN_EVERYWHERE lists.
FORBIDDEN_EVERYWHERE = [r"  ", r"\t", r"\r", r"^ ", r" $", r"\.\.\.", r" \n", r"\n "]
QUOTES = {
    "deu": ("„", "“", r"[«»”\"']"),
    "fra": ("«\u00a0", "\u00a0»", r"[“”„\"']|«(?!\u00a0)|(?<!\u00a0)»"),
    "spa": ("«", "»", r"[“”„\"']|« | »"),
    "rus": ("«", "»", r"[“”„\"']|« | »"),
}
PUNCTUATION = {
    "fra": r"(?<![\u00a0\u202f\d:])[:](?![:])|(?<!\u202f);|(?<!\u202f)[!?]",
}

problems = []


def report(language, number, what):
    problems.append(f"common_core.{language}.xml: message {number}: {what}")


def check_text(language, number, text):
    body = text
    if number in FOLLOWING:
        if not text.startswith("\n"):
            report(language, number, "does not begin with a line break")
        body = text.removeprefix("\n")
    elif number == HEADING:
        if not text.endswith(".\n"):
            report(language, number, "does not end with a full stop and a line break")
        body = text.removesuffix("\n")
    elif not text.endswith("."):
        report(language, number, "does not end with a full stop")
    if "\n" in body:
        report(language, number, "has a line break inside")
    if not body[:1].isupper() and not body.startswith(("\"&", "„&", "«")):
        report(language, number, "does not begin like a sentence")
    if re.findall(r"%.?", text) != PLACEHOLDERS.get(number, []):
        report(language, number, "has other placeholders")
    # Entities, attributes and the quote that a text shows are no prose.
    prose = re.sub(r"&(amp|lt|gt|quot|apos);", "&", text)
    prose = re.sub(r"\w+=\"\w+\"|\(\"\)", "", prose)
    for pattern in FORBIDDEN_EVERYWHERE:
        if re.search(pattern, body):
            report(language, number, f"holds {pattern!r}")
    if language in PUNCTUATION and re.search(PUNCTUATION[language], prose):
        report(language, number, "lacks a no-break space before a punctuation mark")
    if language in QUOTES:
        opening, closing, wrong = QUOTES[language]
        if prose.count(opening) != prose.count(closing):
            report(language, number, "has unbalanced quotation marks")
        if re.search(wrong, prose):
            report(language, number, "has quotation marks of another language")


def check_document(path):
    name, language, _ = path.name.split(".")
    root = xml.etree.ElementTree.parse(path).getroot()
    expected = {"name": name, "language": language, "stamp": f"{STAMP:08x}"}
    if root.attrib != expected or root.tag != "dictionary":
        problems.append(f"{path.name}: the root is {root.tag} {root.attrib}")
    texts = [message.text for message in root]
    numbers = [int(message.get("number")) for message in root]
    if numbers != list(range(COUNT)):
        problems.append(f"{path.name}: the numbers are {numbers}")
    for number, text in zip(numbers, texts):
        check_text(language, number, text)
        if language == "eng" and not root[number].get("note"):
            report(language, number, "has no note for translators")
    if language != "eng":
        reference = xml.etree.ElementTree.parse(path.with_name(f"{name}.eng.xml")).getroot()
        for number, text in zip(numbers, texts):
            if text == reference[number].text:
                report(language, number, "is not translated")
    return texts


def check_compiled(path, texts, folder):
    for order in ["little", "big"]:
        output = pathlib.Path(folder, "out.lng")
        subprocess.run([os.environ["CCLNG"], "compile", path, "-o", output, "--byte-order", order],
                       check=True)
        pool = b""
        offsets = []
        for text in texts:
            offsets.append(len(pool))
            pool += text.encode() + b"\0"
        words = [0, 0x524C434C, 1, 8, STAMP, COUNT, len(pool), *offsets]
        mark = "<" if order == "little" else ">"
        if output.read_bytes() != struct.pack(f"{mark}{len(words)}I", *words) + pool:
            problems.append(f"{path.name}: compiled to other bytes ({order})")


if len(DOCUMENTS) < 5:
    problems.append(f"only {len(DOCUMENTS)} documents in data/")
with tempfile.TemporaryDirectory() as temporary:
    for document in DOCUMENTS:
        check_compiled(document, check_document(document), temporary)
print("\n".join(problems))
sys.exit(1 if problems else 0)
