"""Holds the texts in data/ to the rules of whole messages.

The documents are read with another reader than the library's. Messages are joined without anything
between them, so line breaks at their ends are part of the rules; so is the typography of each
language. That a translation has the numbers and placeholders of the English document is known from
the build, which checks it.
"""

import os
import pathlib
import re
import sys
import xml.etree.ElementTree

ROOT = pathlib.Path(os.environ["CC_SOURCE_DIR"])
DOCUMENTS = sorted((ROOT / "data").glob("*.xml"))
FOLLOWING = {("common_core", number) for number in (17, 21, 25, 28)}  # on a line of their own
HEADING = ("common_core", 37)

# What must not stand in a text of any language.
FORBIDDEN = [r"  ", r"\t", r"\r", r"^ ", r" $", r"\.\.\.", r" \n", r"\n ", r"« ", r" »"]
# The quotation marks of a language; no other ones stand in its texts.
ALL_QUOTES = set("«»“”„\"'")
QUOTES = {"deu": "„“", "fra": "«»", "spa": "«»", "rus": "«»", "ita": "«»", "por": "“”", "pol": "„”",
          "ukr": "«»", "zho": "“”"}
# A punctuation mark that is not written as the language writes it.
PUNCTUATION = {
    "fra": r"(?<![\u00a0\u202f\d:])[:](?![:])|(?<!\u202f)[;!?]|«(?!\u00a0)|(?<!\u00a0)»",
    "zho": r"(?<!“)[.,:;?!()](?!”)|[，。；：（）“”、] | [，。；：（）“”、]",
}
FULL_STOPS = {"zho": "。"}

problems = []


def check_text(name, language, number, text):
    def report(what):
        problems.append(f"{name}.{language}.xml: message {number}: {what}")

    body = text
    full_stop = FULL_STOPS.get(language, ".")
    if (name, number) in FOLLOWING:
        if not text.startswith("\n"):
            report("does not begin with a line break")
        body = text.removeprefix("\n")
    elif (name, number) == HEADING:
        if not text.endswith(full_stop + "\n"):
            report("does not end with a full stop and a line break")
        body = text.removesuffix("\n")
    elif not text.endswith(full_stop):
        report("does not end with a full stop")
    if "\n" in body:
        report("has a line break inside")
    if body[:1].islower() or not (body[:1].isalpha() or body.startswith(("\"&", "„&", "«", "“"))):
        report("does not begin like a sentence")
    # Entities, attributes and the quote that a text shows are no prose.
    prose = re.sub(r"&(amp|lt|gt|quot|apos);", "&", text)
    prose = re.sub(r"\w+=\"\w+\"|[(（]\"[)）]", "", prose)
    for pattern in FORBIDDEN:
        if re.search(pattern, body):
            report(f"holds {pattern!r}")
    if language in PUNCTUATION and re.search(PUNCTUATION[language], prose):
        report("has a punctuation mark of another language")
    if language in QUOTES:
        opening, closing = QUOTES[language]
        if prose.count(opening) != prose.count(closing):
            report("has unbalanced quotation marks")
        if (ALL_QUOTES & set(prose)) - {opening, closing}:
            report("has quotation marks of another language")


def check_document(path):
    name, language, _ = path.name.split(".")
    root = xml.etree.ElementTree.parse(path).getroot()
    english = xml.etree.ElementTree.parse(path.with_name(f"{name}.eng.xml")).getroot()
    for message in root:
        number = int(message.get("number"))
        check_text(name, language, number, message.text)
        if language == "eng" and not message.get("note"):
            problems.append(f"{path.name}: message {number}: has no note for translators")
        if language != "eng" and message.text == english[number].text:
            problems.append(f"{path.name}: message {number}: is not translated")


if len(DOCUMENTS) < 20:
    problems.append(f"only {len(DOCUMENTS)} documents in data/")
for document in DOCUMENTS:
    check_document(document)
print("\n".join(problems))
sys.exit(1 if problems else 0)
