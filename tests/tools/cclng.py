"""Runs cclng: every command, every kind of finding with its place, and the exit codes."""

import json
import os
import re
import struct
import subprocess

from support.harness import expect, full_disk, get, main, put, sarif

CCLNG = os.environ["CCLNG"]
# Only a build with sanitizers reads this.
LEAKS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "support", "leaks.txt")


def run(*arguments):
    environment = dict(os.environ, COMMON_CORE_ETC_DIR="/nonexistent/",
                       LSAN_OPTIONS=f"suppressions={LEAKS}:print_suppressions=0")
    return subprocess.run([CCLNG, *arguments], capture_output=True, env=environment, check=False)


def lng(stamp, texts, order="<"):
    """The file as described, made without the tool."""
    pool = b""
    offsets = []
    for text in texts:
        offsets.append(len(pool))
        pool += text + b"\0"
    words = [0, 0x524C434C, 1, 8, stamp, len(texts), len(pool), *offsets]
    return struct.pack(f"{order}{len(words)}I", *words) + pool


def fnv(text):
    state = 2166136261
    for byte in text.encode():
        state = (state ^ byte) * 16777619 % 2**32
    return state


def doc(*messages, head='name="m" language="eng"'):
    return f"<dictionary {head}>\n" + "".join(f"{m}\n" for m in messages) + "</dictionary>\n"


def msg(number, text):
    return f'<message number="{number}">{text}</message>'


NO_STAMP = fnv("m\n0s\n1dd\n")
GOOD = doc(msg(0, "Saved %s."), msg(1, "%d of %d &lt;&amp;&gt;\n100%% \u00e9"))
TEXTS = [b"Saved %s.", "%d of %d <&>\n100%% \u00e9".encode()]
BAD_STAMP = "The stamp is no hexadecimal number of up to 8 digits."
NO_NUMBER = "is no message number from 0 to 99999."
NOT_UTF8 = "The text is not in UTF-8."


def reader(number):
    """A text of the library, which comes with its number, since no dictionary is installed."""
    return f"Message {number} of the dictionary common_core."


def unknown(number, what):
    return (f'Message {number} holds "{what}", which is no placeholder. '
            'Write a percent sign as "%%".')


# Documents and their findings as "line:column: text".
DOCUMENTS = [
    # the reader's errors
    ("<", ["1:1: The document holds no dictionary.", f"1:2: {reader(11)}"]),
    (doc(msg(0, "a < b"), msg(1, "c")), ["1:1: Message 0 is missing.", f"2:25: {reader(14)}"]),
    (doc(msg(0, "a &b; c")), ["1:1: The dictionary holds no message.", f"2:23: {reader(34)}"]),
    (doc(msg(0, "a"), head='name="m" language="eng" x=y "</x>"'), [f"1:40: {reader(18)}"]),
    # structure
    ('<dictionary name="m" language="eng">' + msg(0, "a"),
     ['1:68: The end tag of "dictionary" is missing.']),
    (doc('<message number="0">a</mesage>'),
     ['2:22: The end tag is called "mesage" instead of "message".']),
    (doc("stray", '<mesage number="0">a</mesage>', msg(0, "a"), msg(1, "a<b/>c"),
         msg(2, "a<!-- b -->c")) + doc(msg(1, "b")) + "</x>",
     ["2:1: Text stands outside of the messages.",
      '3:1: The element is called "mesage" instead of "message".',
      "5:22: A message holds plain text only, but here stands an element.",
      "6:22: A message holds plain text only; what translators should know belongs into its "
      'attribute "note".', "8:1: The document holds a second dictionary.",
      "11:1: The end tag closes no element."]),
    # attributes
    (doc(msg(0, "a"), head='language="eng" stamp="xyz"'),
     ['1:1: The attribute "name" is missing or empty.', f"1:35: {BAD_STAMP}"]),
    (doc(msg(0, "a"), head='name="m" language="eng" stamp="123456789"'), [f"1:44: {BAD_STAMP}"]),
    (doc('<message number="0" number="1" notes="x">a</message>'),
     ['2:21: The attribute "number" stands twice.', '2:32: The attribute "notes" is unknown.']),
    (doc(msg(0, "a"), msg("1x", "b"), msg(-1, "c"), msg(100000, "d")),
     [f'3:1: "1x" {NO_NUMBER}', f'4:1: "-1" {NO_NUMBER}', f'5:1: "100000" {NO_NUMBER}']),
    (doc('<message number="0" note="&x;">a</message>'), [f"2:27: {reader(34)}"]),
    (doc('<message number="0"\n note="x\ny">%x</message>', msg(0, "%y")),
     [f'2:1: {unknown(0, "%x")}', f'5:1: {unknown(0, "%y")}',
      "5:1: Message 0 stands twice; the first is on line 2."]),
    # numbers, placeholders, bytes
    (doc(msg(1, "a"), msg(3, "c"), msg(99, "d")),
     ["1:1: Message 0 is missing.", "1:1: Message 2 is missing.",
      "1:1: Messages 4 to 98 are missing."]),
    (doc(msg(0, "%d %x"), msg(1, "100 %"), msg(2, "%\u00e9")),
     [f'2:1: {unknown(0, "%x")}', f'3:1: {unknown(1, "%")}', f'4:1: {unknown(2, "%é")}']),
    (doc(msg(0, "ab@c"), msg(1, "\U0001f600"), msg(2, "ab\0c")).encode().replace(b"@", b"\xff"),
     [f"2:23: {NOT_UTF8}", f"3:21: {NOT_UTF8}", "4:23: The text holds a 0 byte."]),
    # nothing terminal-like reaches the screen
    (doc('<message number="\x1b[31m\u202e\u009b">a</message>', msg(0, "")),
     [f'2:1: " [31m\\u{{202E}}\\u{{9B}}" {NO_NUMBER}']),
    # good ones
    (GOOD, []),
    ('\ufeff<?xml version="1.0"?>\n<!-- a -->' + doc(msg(0, ""), " <!-- b --> "), []),
]

# A translation of GOOD, and its findings.
TRANSLATIONS = [
    (doc(msg(1, "%d %d"), msg(0, "%%%s%%")), []),
    (doc(msg(0, "%s")), ["1:1: Message 1 is missing."]),
    (doc(msg(0, "x"), msg(1, "%u %d"), msg(2, "x")),
     ["2:1: Message 0 has the placeholders none, but the reference has %s.",
      "3:1: Message 1 has the placeholders %u %d, but the reference has %d %d.",
      "4:1: The reference has no message 2."]),
    (doc(msg(0, "%s"), msg(1, "%d %d"), head='name="n" language="deu" stamp="1"'),
     ['1:1: The name is "n", but that of the reference is "m".',
      f"1:1: The stamp is 00000001, but that of the reference is {NO_STAMP:08x}."]),
    (doc(msg(0, "%s"), msg(1, "%d %d"), head=f'name="m" language="deu" stamp="{NO_STAMP:x}"'), []),
]


def findings_of(errors, path):
    lines = errors.decode().splitlines()
    return [line.removeprefix(path + ":").replace(": error:", ":", 1) for line in lines]


def outcome(*arguments):
    result = run(*arguments)
    return result.returncode, result.stdout, result.stderr


def test_check():
    put("reference.xml", GOOD)
    for table, options in [(DOCUMENTS, []), (TRANSLATIONS, ["--reference", "reference.xml"])]:
        for content, findings in table:
            code, output, errors = outcome("check", *options, put("d.xml", content))
            expect(content, (1 if findings else 0, b"", findings),
                   (code, output, findings_of(errors, "d.xml")))


def test_check_many():
    put("good.xml", GOOD)
    put("bad.xml", doc(msg(1, "")))
    bad = b"bad.xml:1:1: error: Message 0 is missing.\n"
    missing = (b"none.xml: error: The file could not be opened. File: none.xml; "
               b"System message: No such file or directory\n")
    for arguments, code, errors in [
        (["good.xml", "bad.xml", "bad.xml"], 1, bad + bad),
        (["bad.xml", "none.xml", "bad.xml"], 2, bad + missing + bad),
        (["--reference=bad.xml", "good.xml", "bad.xml"], 1, bad),
        (["--reference", "none.xml", "bad.xml"], 2, missing + bad),
        ([put("m.eng.xml", GOOD)], 0, b""),
    ]:
        expect(arguments, (code, b"", errors), outcome("check", *arguments))
    for name in ["n.eng.xml", "m.deu.xml"]:
        code, _, errors = outcome("check", put(name, GOOD))
        expect(name, (1, 1), (code, errors.count(b"but its file name says")))
    json_output, sarif_output = (
        run("check", "--format", form, "--reference=good.xml", "none.xml", "bad.xml").stdout
        for form in ["json", "sarif"])
    expect("JSON", [("good.xml", []), ("none.xml", [(3, 4, None)]),
                    ("bad.xml", [(0, 16, 1), (0, 20, 2)])],
           [(d["name"], [(f["dictionary"], f["number"], f.get("line")) for f in d["findings"]])
            for d in json.loads(json_output)["documents"]])
    expect("SARIF", [("common_core-4", "error", "none.xml", None, None),
                     ("cclng-16", "error", "bad.xml", 1, 1),
                     ("cclng-20", "error", "bad.xml", 2, 1)],
           sarif(sarif_output, "cclng", {"cclng-16": "Messages are numbered from 0 without gaps."}))


def test_compile_and_decompile():
    put("m.eng.xml", GOOD)
    os.makedirs("again", exist_ok=True)
    for options, order in [([], "<"), (["--byte-order", "little"], "<"),
                           (["--byte-order=big"], ">")]:
        expect(options, (0, b"", b""), outcome("compile", "m.eng.xml", "-o", "m.eng.lng", *options))
        expect(options, lng(NO_STAMP, TEXTS, order), get("m.eng.lng"))
        code, document, errors = outcome("decompile", "m.eng.lng")
        expect(options, (0, b"", False), (code, errors, b"stamp" in document))
        run("decompile", "m.eng.lng", "-o", "again/m.eng.xml")
        expect("into a file", document, get("again/m.eng.xml"))
        run("compile", "again/m.eng.xml", "-o", "again.lng", *options)
        expect("round trip", get("m.eng.lng"), get("again.lng"))
    expect("findings", 1, run("compile", put("b.xml", "<a>"), "-o", "again.lng").returncode)
    expect("the old file stays", get("m.eng.lng"), get("again.lng"))


def test_decompile_foreign_files():
    good = lng(7, [b"a", b"b"])
    other = b"Compiling the document again gives other bytes"
    invalid = b"The file is no dictionary, or it is damaged.\n"
    cut = b"The dictionary ends too early.\n"
    for what, content, error in [
        ("given stamp", good, b""),
        ("no text", lng(7, [])[:28], b""),
        ("bytes behind the pool", good + b"x", other),
        ("another order in the pool", good[:28] + struct.pack("<2i", 2, 0) + good[36:], other),
        ("nothing", b"", cut),
        ("text", b"no dictionary at all, but long enough", invalid),
        ("cut", good[:-1], cut),
        ("the greatest count", good[:20] + b"\xff\xff\xff\x7f" + good[24:], cut),
        ("offset outside", good[:28] + struct.pack("<2i", 0, 4) + good[36:], invalid),
        ("version", good[:8] + b"\2" + good[9:], b"The dictionary has an unsupported version.\n"),
    ]:
        code, _, errors = outcome("decompile", put("f.lng", content))
        expect(what, (1 if error else 0, error),
               (code, errors.partition(b": error: ")[2][:len(error)] or errors))


def test_header():
    for head, name, stamp in [
        ('name="m" language="eng"', "m", NO_STAMP),
        ('name="a-b.c" language="eng" stamp="F196B6AA"', "a_b_c", 0xF196B6AA),
        ('name="7" language="eng" stamp="1"', "_7", 1),
    ]:
        put("h.xml", doc(msg(1, "%d %d"), msg(0, "%s"), head=head))
        code, output, errors = outcome("header", "h.xml")
        record = (f"inline IDLocLoader::Localization {name}_info = "
                  f"{{2, 8, static_cast<int>(0x{stamp:08X})}};\n")
        expect(head, (0, b"", True), (code, errors, output.decode().endswith(record)))
    run("header", "h.xml", "-o", "h.h")
    expect("into a file", output, get("h.h"))


def test_command_lines():
    put("d.xml", GOOD)
    for arguments, word in [
        ([], "command is missing"), (["\x1b[2J"], "no command \\u{1B}[2J"),
        (["compile", "d.xml"], "-o"), (["compile", "-o", "x"], "one document"),
        (["compile", "a", "-o"], "needs a value"), (["compile", "a", "-o", ""], "-o"),
        (["compile", "a", "-ox", "--byte-order", "middle"], "little or big"),
        (["check"], "needs a document"), (["check", "--format=xml", "a"], "json or sarif"),
        (["check", "--refrence", "a", "b"], "--refrence"),
        (["check", "--help=x"], "takes no value"), (["decompile"], "one dictionary"),
        (["header", "a", "b"], "one document"), (["header", "-x", "a"], "Unknown option -x"),
        (["stats"], "needs a document"), (["stats", "--format=xml", "a"], "text or json"),
        (["diff", "a"], "two documents"),
    ]:
        code, output, errors = outcome(*arguments)
        expect(arguments, (3, b"", True, False),
               (code, output, word in errors.decode(), b"\x1b" in errors))
    for arguments in [["compile", "none.xml", "-o", "x"], ["compile", "d.xml", "-o", "no/x"],
                      ["decompile", "none.lng"], ["decompile", "."], ["header", "none.xml"]]:
        code, _, errors = outcome(*arguments)
        expect(arguments, (2, True), (code, b"cclng: The file could not be opened." in errors))
    for arguments, start in [(["--help"], b"Usage: cclng "), (["check", "-h"], b"Usage: cclng "),
                             (["--version"], b"cclng ")]:
        code, output, errors = outcome(*arguments)
        expect(arguments, (0, start, b""), (code, output[:len(start)], errors))
        expect("width", [], [x for x in output.decode().splitlines() if len(x) > 80])
    expect("after --", 0, run("check", "--", put("-d.xml", GOOD)).returncode)
    expect("full disk", (2, b"cclng: The standard output could not be written.\n"),
           full_disk(CCLNG, "--help"))


def test_stats_and_diff():
    put("eng.xml", doc(msg(0, "a %s"), msg(1, "b"), msg(2, "c"), msg(3, "d")))
    put("deu.xml", doc(msg(0, "A %s"), msg(1, "b"), msg(3, ""), head='name="m" language="deu"'))
    put("bad.xml", doc(msg(4, "e")))
    counts = {"name": "deu.xml", "language": "deu", "texts": 4, "translated": 1, "same": 1,
              "missing": 2}
    expect("stats", ["deu", "4", "1", "1", "2", "deu.xml"],
           run("stats", "eng.xml", "deu.xml").stdout.decode().splitlines()[1].split())
    for arguments, code, documents in [
        (["--reference", "eng.xml", "deu.xml", "eng.xml", "deu.xml"], 0, [counts, counts]),
        (["eng.xml", "bad.xml", "deu.xml"], 1, [counts]),
        (["eng.xml", "none.xml", "deu.xml"], 2, [counts]),
    ]:
        result = run("stats", "--format=json", *arguments)
        expect(arguments, (code, {"reference": "eng.xml", "documents": documents}),
               (result.returncode, json.loads(result.stdout)))
    for other, code, lines in [
        (["eng.xml", "eng.xml"], 0, []),
        (["eng.xml", "deu.xml"], 1, ['changed 0: "a %s" -> "A %s"', 'removed 2: "c"',
                                     'changed 3: "d" -> ""']),
        (["bad.xml", put("new.xml", doc(msg(0, "\n\u202e")))], 1,
         ['added 0: "\\n\\u{202E}"', 'removed 4: "e"']),
        (["eng.xml", "none.xml"], 2, []), (["eng.xml", put("empty.xml", "")], 1, []),
    ]:
        result = run("diff", *other)
        expect(other, (code, lines), (result.returncode, result.stdout.decode().splitlines()))


PO_TRANSLATION = ('<?xml version="1.0" encoding="UTF-8"?>\n<!-- One.\n     Two. -->\n' +
                  doc('  <message number="0" note="&quot;a&quot; &lt; b">%s ist da.</message>',
                      "  " + msg(1, "%d/%d\n%% &gt;"), head='name="m" language="deu"'))
NO_0 = "1:1: Message 0 is missing."

# What is replaced in the PO file of that translation and by what, the findings
# of importing it, and whether msgfmt has something against it too.
PO_CHANGES = [
    ("", '#~ msgctxt "9"\n#~ msgid "old"\n#~ msgstr "alt"\n\n', [], False),
    ('#, c-format\nmsgctxt "0"', '#, fuzzy, c-format\nmsgctxt "0"',
     ["Messages that are marked as fuzzy: 1. They count as not translated.", NO_0], False),
    ('msgid "Saved', 'msgid "Kept',
     ["Messages that are translated from another text than that of the reference: 1. They count as "
      "not translated.", NO_0], False),
    ('msgstr "%s ist da."', 'msgstr ""', [NO_0], False),
    ("%s ist", "%d ist", ["Message 0 has the placeholders %d, but the reference has %s."], True),
    ("%d/%d", "%2$d/%1$d",
     [unknown(1, "%2"), "Message 1 has the placeholders none, but the reference has %d %d."],
     False),
    ('msgctxt "0"', 'msgctxt "7"',
     ['The context "7" is no message number of the reference.', NO_0], False),
    ('msgctxt "0"\n', "",
     ['The entry of "Saved %s." has no message number for its context.', NO_0], False),
    ('msgstr "%s ist da."', 'msgid_plural "%s"\nmsgstr[0] "%s"\nmsgstr[1] "%s"',
     ["Message 0 has plural forms, which dictionaries do not have.", NO_0], True),
    ("%s ist", "%s \U0001f600",
     ["Message 0 holds a character of more than three bytes.", NO_0], False),
    ("charset=UTF-8", "charset=ISO-8859-1",
     ['1:1: The header says that the text is in "ISO-8859-1" instead of UTF-8; msgconv converts '
      "it."], False),
    ('"Language: de', '"Language: ', ["1:1: The header names no language."], False),
    ('msgstr "%s', 'msgstr %s"', ['19: keyword "s" unknown', "19:9: syntax error"], True),
]


def msgfmt(name):
    return subprocess.run(["msgfmt", "-c", "-o", "/dev/null", name], check=False,
                          stderr=subprocess.DEVNULL).returncode


def test_po():
    put("m.eng.xml", doc('<message number="0" note="Last.">Saved %s.</message>',
                         msg(1, "%d of %d &lt;&amp;&gt;\n100%% \u00e9")))
    if not os.environ["CC_GETTEXTPO"]:
        for command in [["po-export", "m.eng.xml"], ["po-import", "m.eng.xml", "none.po"]]:
            result = run(*command)
            expect(command, (3, True), (result.returncode, b"without gettext" in result.stderr))
        return
    put("m.deu.xml", PO_TRANSLATION)
    expect("export", 0, run("po-export", "m.eng.xml", "m.deu.xml", "-o", "deu.po").returncode)
    po = get("deu.po").decode()
    for what in ["# One.\n# Two.\n", '"Language: de\\n"', '# "a" < b\n#. Last.\n'
                 "#. Arguments, in this order: a text.\n#: m.eng.xml:2\n#, c-format\n"]:
        expect(what, True, what in po)
    for old, by, findings, fatal in PO_CHANGES:
        put("new.po", po.replace(old, by, 1))
        put("m.deu.xml", "old")
        result = run("po-import", "m.eng.xml", "new.po", "-o", "m.deu.xml")
        found = [x.removeprefix(" ").removeprefix("error: ")
                 for x in findings_of(result.stderr, "new.po")]
        expect(f"import of {by!r}", (1 if findings else 0, findings), (result.returncode, found))
        expect(f"document of {by!r}", "old" if findings else PO_TRANSLATION,
               get("m.deu.xml").decode())
        expect(f"msgfmt of {by!r}", 1 if fatal else 0, msgfmt("new.po"))
    # what an older translation lacks is for translators to do
    put("m.deu.xml", doc(msg(1, "%d"), head='name="m" language="deu" stamp="1"'))
    partial = run("po-export", "m.eng.xml", "m.deu.xml").stdout
    expect("missing and changed", (True, True),
           (b'msgid "Saved %s."\nmsgstr ""\n' in partial, b"#, fuzzy, c-format" in partial))
    # from a template by way of gettext's tools
    run("po-export", "m.eng.xml", "-o", "m.pot")
    subprocess.run(["msgen", "-o", "en.po", "m.pot"], check=True)
    put("fr.po", re.sub(b"Language: [^\\\\]*", b"Language: fr_CA", get("en.po")))
    result = run("po-import", "m.eng.xml", "fr.po")
    expect("from a template", (0, b"", True), (result.returncode, result.stderr,
                                               b'language="fra"' in result.stdout))
    for arguments, code in [(["po-export", "m.eng.xml", "n.xml"], 2), (["po-export"], 3),
                            (["po-import", "m.eng.xml", "none.po"], 2),
                            (["po-import", "m.eng.xml", "."], 2), (["po-import", "m.eng.xml"], 3),
                            (["po-export", "m.eng.xml", "-o", "no/x"], 2)]:
        expect(arguments, code, run(*arguments).returncode)
    # from each document of the product to a PO file and back: not a byte is lost
    data = os.path.join(os.environ["CC_SOURCE_DIR"], "data")
    for name in sorted(os.listdir(data)):
        reference = os.path.join(data, name.split(".")[0] + ".eng.xml")
        run("po-export", reference, os.path.join(data, name), "-o", "data.po")
        expect(name, 0, msgfmt("data.po"))
        expect(name, (0, b"", b""), outcome("po-import", reference, "data.po", "-o", name))
        expect(name, get(os.path.join(data, name)), get(name))


main(test_check, test_check_many, test_compile_and_decompile, test_decompile_foreign_files,
     test_header, test_stats_and_diff, test_po, test_command_lines)
