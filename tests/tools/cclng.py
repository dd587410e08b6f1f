"""Runs cclng: every command, every kind of finding with its place, and the exit codes."""

import json
import os
import re
import struct
import subprocess

from support.harness import expect, get, main, put, sarif

CCLNG = os.environ["CCLNG"]
# Only a build with sanitizers reads this.
LEAKS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "support", "leaks.txt")


def run(*arguments, etc="/nonexistent/", **options):
    environment = dict(os.environ, COMMON_CORE_ETC_DIR=etc,
                       LSAN_OPTIONS=f"suppressions={LEAKS}:print_suppressions=0")
    return subprocess.run([CCLNG, *arguments], capture_output=True, env=environment, **options)


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


def document(*messages, head='name="m" language="eng"'):
    return f"<dictionary {head}>\n" + "".join(f"{m}\n" for m in messages) + "</dictionary>\n"


def message(number, text):
    return f'<message number="{number}">{text}</message>'


NO_STAMP = fnv("m\n0s\n1dd\n")
GOOD = document(message(0, "Saved %s."), message(1, "%d of %d &lt;&amp;&gt;\n100%% \u00e9"))
TEXTS = [b"Saved %s.", "%d of %d <&>\n100%% \u00e9".encode()]

# Documents and their findings as "line:column: text". The library's own texts come with their
# numbers, since no dictionary is installed.
DOCUMENTS = [
    # the reader's errors
    ("", ["1:1: The document holds no dictionary."]),
    ("<", ["1:1: The document holds no dictionary.", "1:2: Message 11 of the dictionary common_core."]),
    (document(message(0, "a < b"), message(2, "c")),
     ["1:1: Messages 0 to 1 are missing.", "2:25: Message 14 of the dictionary common_core."]),
    (document(message(0, "a &b; c")), ["1:1: The dictionary holds no message.",
                                       "2:23: Message 34 of the dictionary common_core."]),
    (document(message(0, "a"), "<message number='1'>b</message>"),
     ["3:1: The attribute \"number\" is missing or empty.",
      "3:18: Message 18 of the dictionary common_core."]),
    (document(message(0, "a"), head='name="m" language="eng" x=y "</x>"'),
     ["1:40: Message 18 of the dictionary common_core."]),
    # structure
    ("<dictionary name=\"m\" language=\"eng\">" + message(0, "a"),
     ["1:68: The end tag of \"dictionary\" is missing."]),
    (document("<mesage number=\"0\">a</mesage>", message(0, "a")),
     ["2:1: The element is called \"mesage\" instead of \"message\"."]),
    (document("<message number=\"0\">a</mesage>"),
     ["2:22: The end tag is called \"mesage\" instead of \"message\"."]),
    (document(message(0, "a<b/>c"), message(0, "d")),
     ["2:22: A message holds plain text only, but here stands an element."]),
    (document(message(0, "a<!-- b -->c"), message(0, "d")),
     ["2:22: A message holds plain text only; what translators should know belongs into its "
      "attribute \"note\"."]),
    (document("stray", message(0, "a")), ["2:1: Text stands outside of the messages."]),
    (document(message(0, "a")) + document(message(1, "b")),
     ["4:1: The document holds a second dictionary."]),
    (document(message(0, "a")) + "</x>", ["4:1: The end tag closes no element."]),
    # attributes
    (document(message(0, "a"), head="language=\"eng\" stamp=\"xyz\""),
     ["1:1: The attribute \"name\" is missing or empty.",
      "1:35: The stamp is no hexadecimal number of up to 8 digits."]),
    (document(message(0, "a"), head="name=\"m\" language=\"eng\" stamp=\"123456789\""),
     ["1:44: The stamp is no hexadecimal number of up to 8 digits."]),
    (document('<message number="0" number="1" notes="x">a</message>'),
     ["2:21: The attribute \"number\" stands twice.", "2:32: The attribute \"notes\" is unknown."]),
    (document(message(0, "a"), message("1x", "b"), message(-1, "c"), message(100000, "d")),
     ["3:1: \"1x\" is no message number from 0 to 99999.",
      "4:1: \"-1\" is no message number from 0 to 99999.",
      "5:1: \"100000\" is no message number from 0 to 99999."]),
    (document('<message number="0" note="&x;">a</message>'),
     ["2:27: Message 34 of the dictionary common_core."]),
    (document('<message number="0"\n note="x\ny">%x</message>', message(0, "%y")),
     ['2:1: Message 0 holds "%x", which is no placeholder. Write a percent sign as "%%".',
      '5:1: Message 0 holds "%y", which is no placeholder. Write a percent sign as "%%".',
      "5:1: Message 0 stands twice; the first is on line 2."]),
    # numbers
    (document(message(1, "a"), message(1, "b"), message(3, "c"), message(99, "d")),
     ["1:1: Message 0 is missing.", "1:1: Message 2 is missing.",
      "1:1: Messages 4 to 98 are missing.",
      "3:1: Message 1 stands twice; the first is on line 2."]),
    # placeholders
    (document(message(0, "%d %x"), message(1, "100 %"), message(2, "%\u00e9")),
     ["2:1: Message 0 holds \"%x\", which is no placeholder. Write a percent sign as \"%%\".",
      "3:1: Message 1 holds \"%\", which is no placeholder. Write a percent sign as \"%%\".",
      "4:1: Message 2 holds \"%\u00e9\", which is no placeholder. Write a percent sign as \"%%\"."]),
    # bytes
    (document(message(0, "ab@c")).encode().replace(b"@", b"\xff"),
     ["2:23: The text is not in UTF-8."]),
    (document(message(0, "\U0001f600")), ["2:21: The text is not in UTF-8."]),
    (document(message(0, "ab\0c")), ["2:23: The text holds a 0 byte."]),
    # nothing terminal-like reaches the screen
    (document("<message number=\"0\" x=\"\">\x1b[2J</message>", "\x1b[31m\u202e\u009b"),
     ["2:21: The attribute \"x\" is unknown.", "3:1: Text stands outside of the messages."]),
    (document("<message number=\"\x1b[31m\u202e\u009b\">a</message>", message(0, "")),
     ["2:1: \" [31m\\u{202E}\\u{9B}\" is no message number from 0 to 99999."]),
    # good ones
    (GOOD, []),
    ("\ufeff<?xml version=\"1.0\"?>\n<!-- a -->" + document(message(0, ""), " <!-- b --> "), []),
]

# A translation of GOOD, and its findings.
TRANSLATIONS = [
    (GOOD, []),
    (document(message(1, "%d %d"), message(0, "%%%s%%")), []),
    (document(message(0, "%s")), ["1:1: Message 1 is missing."]),
    (document(message(0, "%s"), message(1, "%d"), message(2, "x")),
     ["3:1: Message 1 has the placeholders %d, but the reference has %d %d.",
      "4:1: The reference has no message 2."]),
    (document(message(0, "x"), message(1, "%u %d")),
     ["2:1: Message 0 has the placeholders none, but the reference has %s.",
      "3:1: Message 1 has the placeholders %u %d, but the reference has %d %d."]),
    (document(message(0, "%s"), message(1, "%d %d"), head='name="n" language="deu" stamp="1"'),
     ['1:1: The name is "n", but that of the reference is "m".',
      f"1:1: The stamp is 00000001, but that of the reference is {NO_STAMP:08x}."]),
    (document(message(0, "%s"), message(1, "%d %d"),
              head=f'name="m" language="deu" stamp="{NO_STAMP:x}"'), []),
]


def findings_of(result, path):
    lines = result.stderr.decode().splitlines()
    return [line.removeprefix(path + ":").replace(": error:", ":", 1) for line in lines]


def test_check():
    for content, findings in DOCUMENTS:
        result = run("check", put("d.xml", content))
        expect(f"findings of {content!r}", findings, findings_of(result, "d.xml"))
        expect(f"code of {content!r}", 1 if findings else 0, result.returncode)
        expect("output", b"", result.stdout)
    put("reference.xml", GOOD)
    for content, findings in TRANSLATIONS:
        result = run("check", "--reference", "reference.xml", put("d.xml", content))
        expect(f"findings of {content!r}", findings, findings_of(result, "d.xml"))
        expect(f"code of {content!r}", 1 if findings else 0, result.returncode)


def test_check_many():
    put("good.xml", GOOD)
    put("bad.xml", document(message(1, "")))
    bad = b"bad.xml:1:1: error: Message 0 is missing.\n"
    missing = (b"none.xml: error: The file could not be opened. File: none.xml; "
               b"System message: No such file or directory\n")
    for arguments, code, errors in [
        (["good.xml", "good.xml"], 0, b""),
        (["good.xml", "bad.xml", "bad.xml"], 1, bad + bad),
        (["bad.xml", "none.xml", "bad.xml"], 2, bad + missing + bad),
        (["--reference", "good.xml", "good.xml"], 0, b""),
        (["--reference=bad.xml", "good.xml", "bad.xml"], 1, bad),
        (["--reference", "none.xml", "bad.xml"], 2, missing + bad),
    ]:
        result = run("check", *arguments)
        expect(arguments, (code, errors), (result.returncode, result.stderr))
    for form in ["json", "sarif"]:
        result = run("check", "--format", form, "--reference=good.xml", "none.xml", "bad.xml")
        expect(form, (2, b""), (result.returncode, result.stderr))
        if form == "json":
            expect(form, [("good.xml", []), ("none.xml", [(3, 4, None)]), ("bad.xml", [(0, 16, 1), (0, 20, 2)])],
                   [(d["name"], [(f["dictionary"], f["number"], f.get("line"))
                                 for f in d["findings"]])
                    for d in json.loads(result.stdout)["documents"]])
        else:
            expect(form, [("common_core-4", "error", "none.xml", None, None),
                          ("cclng-16", "error", "bad.xml", 1, 1),
                          ("cclng-20", "error", "bad.xml", 2, 1)],
                   sarif(result.stdout, "cclng",
                         {"cclng-16": "Messages are numbered from 0 without gaps."}))
    for name, content in [("n.eng.xml", "n"), ("m.deu.xml", "m")]:
        result = run("check", put(name, GOOD))
        expect(name, 1, result.returncode)
        expect(name, 1, result.stderr.count(b"but its file name says"))
    expect("matching name", 0, run("check", put("m.eng.xml", GOOD)).returncode)


def test_compile_and_decompile():
    put("m.eng.xml", GOOD)
    for arguments, order in [([], "<"), (["--byte-order", "little"], "<"),
                             (["--byte-order=big"], ">")]:
        result = run("compile", "m.eng.xml", "-o", "m.eng.lng", *arguments)
        expect(arguments, (0, b"", b""), (result.returncode, result.stdout, result.stderr))
        expect(arguments, lng(NO_STAMP, TEXTS, order), get("m.eng.lng"))

        result = run("decompile", "m.eng.lng")
        expect(arguments, (0, b""), (result.returncode, result.stderr))
        expect("no stamp where it follows from the rest", False, b"stamp" in result.stdout)
        os.makedirs("again", exist_ok=True)
        put("again/m.eng.xml", result.stdout)
        byte_order = "little" if order == "<" else "big"
        run("compile", "again/m.eng.xml", "-o", "again.lng", "--byte-order", byte_order)
        expect("round trip", get("m.eng.lng"), get("again.lng"))
        result = run("decompile", "m.eng.lng", "-o", "again.xml")
        expect("into a file", get("again/m.eng.xml"), get("again.xml"))

    put("m.eng.lng", b"old")
    expect("findings", 1, run("compile", put("b.xml", "<a>"), "-o", "m.eng.lng").returncode)
    expect("the old file stays", b"old", get("m.eng.lng"))
    for arguments in [["compile", "none.xml", "-o", "x"], ["compile", "m.eng.xml", "-o", "no/x"],
                      ["decompile", "none.lng"], ["decompile", "."], ["header", "none.xml"]]:
        result = run(*arguments)
        expect(arguments, 2, result.returncode)
        expect(arguments, True, result.stderr.startswith(b"cclng: The file could not be opened."))


def test_decompile_foreign_files():
    good = lng(7, [b"a", b"b"])
    other_bytes = b": error: Compiling the document again gives other bytes"
    invalid = b": error: The file is no dictionary, or it is damaged.\n"
    cut = b": error: The dictionary ends too early.\n"
    for what, content, code, error in [
        ("given stamp", good, 0, b""),
        ("no text", lng(7, [])[:28], 0, b""),
        ("bytes behind the pool", good + b"x", 1, other_bytes),
        ("another order in the pool",
         good[:28] + struct.pack("<2I", 2, 0) + good[36:], 1, other_bytes),
        ("nothing", b"", 1, cut),
        ("text", b"no dictionary at all, but long enough", 1, invalid),
        ("cut", good[:-1], 1, cut),
        ("the greatest count", good[:20] + struct.pack("<i", 0x7FFFFFFF) + good[24:], 1, cut),
        ("the greatest pool", good[:24] + struct.pack("<i", 0x7FFFFFFF) + good[28:], 1, cut),
        ("offset outside", good[:28] + struct.pack("<2I", 0, 4) + good[36:], 1, invalid),
        ("negative count", good[:20] + struct.pack("<i", -1) + good[24:], 1, invalid),
        ("version", good[:8] + b"\2" + good[9:], 1, b": error: The dictionary has an unsupported "
                                                    b"version.\n"),
    ]:
        result = run("decompile", put("f.lng", content))
        expect(what, code, result.returncode)
        expect(what, True, error in result.stderr)
        expect(what, error == b"", result.stderr == b"")


def test_header():
    for head, name, stamp in [
        ('name="m" language="eng"', "m", NO_STAMP),
        ('name="a-b.c" language="eng" stamp="F196B6AA"', "a_b_c", 0xF196B6AA),
        ('name="7" language="eng" stamp="1"', "_7", 1),
    ]:
        put("h.xml", document(message(1, "%d %d"), message(0, "%s"), head=head))
        result = run("header", "h.xml")
        record = (f"inline IDLocLoader::Localization {name}_info = "
                  f"{{2, 8, static_cast<int>(0x{stamp:08X})}};\n")
        expect(head, (0, b""), (result.returncode, result.stderr))
        expect(head, True, result.stdout.decode().endswith(record))
        run("header", "h.xml", "-o", "h.h")
        expect(head, result.stdout, get("h.h"))


def test_command_lines():
    for arguments, word in [
        ([], "command is missing"), (["frob"], "no command frob"),
        (["\x1b[2J"], "no command \\u{1B}[2J"), (["compile", "d.xml"], "-o"),
        (["compile", "-o", "x"], "one document"), (["compile", "a", "b", "-o", "x"], "one document"),
        (["compile", "a", "-o"], "needs a value"), (["compile", "a", "-o", ""], "-o"),
        (["compile", "a", "-ox", "--byte-order", "middle"], "little or big"),
        (["check"], "needs a document"), (["check", "--format=xml", "a"], "json or sarif"), (["check", "--refrence", "a", "b"], "--refrence"),
        (["check", "--help=x"], "takes no value"), (["decompile"], "one dictionary"),
        (["header", "a", "b"], "one document"), (["header", "-x", "a"], "Unknown option -x"),
        (["stats"], "needs a document"), (["stats", "--format=xml", "a"], "text or json"),
        (["diff", "a"], "two documents"),
    ]:
        result = run(*arguments)
        expect(arguments, (3, b""), (result.returncode, result.stdout))
        expect(arguments, True, word in result.stderr.decode())
        expect(arguments, False, b"\x1b" in result.stderr)
    for arguments, start in [(["--help"], b"Usage: cclng "), (["check", "-h"], b"Usage: cclng "),
                             (["--version"], b"cclng ")]:
        result = run(*arguments)
        expect(arguments, (0, True, b""),
               (result.returncode, result.stdout.startswith(start), result.stderr))
        expect("width", [], [x for x in result.stdout.decode().splitlines() if len(x) > 80])
    put("-d.xml", GOOD)
    expect("after --", 0, run("check", "--", "-d.xml").returncode)
    with open("/dev/full", "wb") as full:
        result = subprocess.run([CCLNG, "--help"], stdout=full, stderr=subprocess.PIPE, check=False)
    expect("full disk", (2, b"cclng: The standard output could not be written.\n"),
           (result.returncode, result.stderr))


def test_stats_and_diff():
    put("eng.xml", document(message(0, "a %s"), message(1, "b"), message(2, "c"), message(3, "d")))
    put("deu.xml", document(message(0, "A %s"), message(1, "b"), message(3, ""),
                            head='name="m" language="deu"'))
    put("bad.xml", document(message(4, "e")))
    counts = {"name": "deu.xml", "language": "deu", "texts": 4, "translated": 1, "same": 1,
              "missing": 2}
    result = run("stats", "eng.xml", "deu.xml")
    expect("stats", (0, ["deu", "4", "1", "1", "2", "deu.xml"]),
           (result.returncode, result.stdout.decode().splitlines()[1].split()))
    for arguments, code, documents in [
        (["--reference", "eng.xml", "deu.xml", "eng.xml", "deu.xml"], 0, [counts, counts]),
        (["eng.xml"], 0, []), (["eng.xml", "bad.xml", "deu.xml"], 1, [counts]),
        (["eng.xml", "none.xml", "deu.xml"], 2, [counts]),
    ]:
        result = run("stats", "--format=json", *arguments)
        expect(arguments, (code, {"reference": "eng.xml", "documents": documents}),
               (result.returncode, json.loads(result.stdout)))
    for arguments, code, lines in [
        (["eng.xml", "eng.xml"], 0, []),
        (["eng.xml", "deu.xml"], 1, ['changed 0: "a %s" -> "A %s"', 'removed 2: "c"',
                                     'changed 3: "d" -> ""']),
        (["bad.xml", put("new.xml", document(message(0, "\n\u202e")))], 1,
         ['added 0: "\\n\\u{202E}"', 'removed 4: "e"']),
        (["eng.xml", "none.xml"], 2, []), (["eng.xml", put("empty.xml", "")], 1, []),
    ]:
        result = run("diff", *arguments)
        expect(arguments, (code, lines), (result.returncode, result.stdout.decode().splitlines()))


PO_TRANSLATION = ('<?xml version="1.0" encoding="UTF-8"?>\n<!-- One.\n     Two. -->\n' +
                  document('  <message number="0" note="&quot;a&quot; &lt; b">%s ist da.</message>',
                           "  " + message(1, "%d/%d\n%% &gt;"), head='name="m" language="deu"'))

# What is replaced in the PO file of that translation and by what, the findings
# of importing it, and whether msgfmt has something against it too.
PO_CHANGES = [
    ("", '#~ msgctxt "9"\n#~ msgid "old"\n#~ msgstr "alt"\n\n', [], False),
    ('#, c-format\nmsgctxt "0"', '#, fuzzy, c-format\nmsgctxt "0"',
     ["Messages that are marked as fuzzy: 1. They count as not translated.",
      "1:1: Message 0 is missing."], False),
    ('msgid "Saved', 'msgid "Kept',
     ["Messages that are translated from another text than that of the reference: 1. They count as "
      "not translated.", "1:1: Message 0 is missing."], False),
    ('msgstr "%s ist da."', 'msgstr ""', ["1:1: Message 0 is missing."], False),
    ("%s ist", "%d ist", ["Message 0 has the placeholders %d, but the reference has %s."], True),
    ("%d/%d", "%2$d/%1$d",
     ['Message 1 holds "%2", which is no placeholder. Write a percent sign as "%%".',
      "Message 1 has the placeholders none, but the reference has %d %d."], False),
    ('msgctxt "0"', 'msgctxt "7"',
     ['The context "7" is no message number of the reference.', "1:1: Message 0 is missing."],
     False),
    ('msgctxt "0"\n', "", ['The entry of "Saved %s." has no message number for its context.',
                          "1:1: Message 0 is missing."], False),
    ('msgstr "%s ist da."', 'msgid_plural "%s"\nmsgstr[0] "%s"\nmsgstr[1] "%s"',
     ["Message 0 has plural forms, which dictionaries do not have.",
      "1:1: Message 0 is missing."], True),
    ("%s ist", "%s \U0001f600", ["Message 0 holds a character of more than three bytes.",
                                "1:1: Message 0 is missing."], False),
    ("charset=UTF-8", "charset=ISO-8859-1",
     ['1:1: The header says that the text is in "ISO-8859-1" instead of UTF-8; msgconv converts '
      "it."], False),
    ('"Language: de', '"Language: ', ["1:1: The header names no language."], False),
    ('msgstr "%s', 'msgstr %s"', ['19: keyword "s" unknown', "19:9: syntax error"], True),
]


def test_po():
    put("m.eng.xml", document('<message number="0" note="Last.">Saved %s.</message>',
                              message(1, "%d of %d &lt;&amp;&gt;\n100%% \u00e9")))
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
        expect(f"findings of {by!r}", findings, [x.removeprefix(" error: ").removeprefix("error: ")
                                                 for x in findings_of(result, "new.po")])
        expect(f"code of {by!r}", 1 if findings else 0, result.returncode)
        expect(f"document of {by!r}", "old" if findings else PO_TRANSLATION,
               get("m.deu.xml").decode())
        msgfmt = subprocess.run(["msgfmt", "-c", "-o", "/dev/null", "new.po"], check=False,
                                stderr=subprocess.DEVNULL)
        expect(f"msgfmt of {by!r}", 1 if fatal else 0, msgfmt.returncode)
    # what an older translation lacks is for translators to do
    put("m.deu.xml", document(message(1, "%d"), head='name="m" language="deu" stamp="1"'))
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
    for arguments, code in [(["po-export", "none.xml"], 2), (["po-export", "m.eng.xml", "n.xml"], 2),
                            (["po-import", "m.eng.xml", "none.po"], 2), (["po-export"], 3),
                            (["po-import", "m.eng.xml", "."], 2), (["po-import", "m.eng.xml"], 3),
                            (["po-export", "m.eng.xml", "-o", "no/x"], 2)]:
        expect(arguments, code, run(*arguments).returncode)


def test_po_of_the_product():
    """From each document in data/ to a PO file and back: not a byte is lost."""
    if not os.environ["CC_GETTEXTPO"]:
        return
    data = os.path.join(os.environ["CC_SOURCE_DIR"], "data")
    for name in sorted(os.listdir(data)):
        reference = os.path.join(data, name.split(".")[0] + ".eng.xml")
        run("po-export", reference, os.path.join(data, name), "-o", "data.po")
        subprocess.run(["msgfmt", "-c", "-o", "/dev/null", "data.po"], check=True,
                       stderr=subprocess.DEVNULL)
        result = run("po-import", reference, "data.po", "-o", name)
        expect(name, (0, b""), (result.returncode, result.stderr))
        expect(name, get(os.path.join(data, name)), get(name))


main(test_check, test_check_many, test_compile_and_decompile, test_decompile_foreign_files,
     test_header, test_stats_and_diff, test_po, test_po_of_the_product, test_command_lines)
