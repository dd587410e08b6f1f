"""Runs ccml: every command, every kind of finding with its place, the outputs and exit codes."""

import json
import os
import subprocess

from support.harness import expect, full_disk, get, main, put, sarif

CCML = os.environ["CCML"]
ETC = os.environ["COMMON_CORE_ETC_DIR"]


def run(*arguments, **options):
    environment = {"PATH": os.environ["PATH"], "COMMON_CORE_ETC_DIR": ETC,
                   **options.pop("environment", {})}
    return subprocess.run([CCML, *arguments], capture_output=True, env=environment, **options)


def findings(content, *options):
    """(line, column, severity, dictionary, number) of each finding, from the JSON output."""
    put("d.xml", content)
    result = run("check", "--format=json", *options, "d.xml")
    document = json.loads(result.stdout)["documents"][0]
    found = [(f["line"], f["column"], f["severity"][0], f["dictionary"], f["number"])
             for f in document["findings"]]
    expect(f"exit code for {content!r}", 1 if found else 0, result.returncode)
    return found


# What the reader reports: the document, and its findings.
READER = [
    ('<a b="1"><c/>t &amp; u</a>', []),
    ("", []),
    ("<a>\n<>\n< b>\n</a>", [(2, 3, "e", 3, 14), (3, 3, "e", 3, 14)]),
    ("<a><b", [(1, 6, "e", 3, 11)]),
    ('<a b=1 c="2"><d e=\'1\'/></a>', [(1, 7, "e", 3, 18), (1, 20, "e", 3, 18)]),
    ('<a b="&x; &amp; &#1;">&lt &</a>',
     [(1, 7, "e", 3, 34), (1, 17, "e", 3, 34), (1, 23, "e", 3, 34), (1, 27, "e", 3, 34)]),
    ("<a><b>\n<c/>\n</b>", [(1, 4, "e", 3, 7)]),
    ("<?php if (a<b) ?><a/>", []),
    ('<a b="1\t2\n3">\t&x;\n&y;</a>', [(1, 4, "w", 3, 16), (2, 5, "e", 3, 34), (3, 1, "e", 3, 34)]),
    ("\ufeff<a>\n\t\u00e9<b c></b></a>", [(2, 11, "e", 3, 1)]),
]

# What only a strict check reports.
STRICT = [
    ("<a><b></a></b>", [(1, 7, "e", 0, 0), (1, 11, "e", 0, 0)]),
    ("</a>", [(1, 1, "e", 0, 1)]),
    ('<a b="1" c="2" b="3"/>', [(1, 16, "e", 0, 2)]),
    ("<!DOCTYPE a><!-- --><a/>", [(1, 1, "e", 0, 3)]),
    ("<a><![CDATA[x]]>--></a>", [(1, 4, "e", 0, 4)]),
    (b"<a>\xff\xfe\n\xf0\x9f\x98\x80</a>", [(1, 4, "e", 0, 5), (2, 1, "e", 0, 5)]),
    (b"<a>\0\0</a>", [(1, 4, "e", 0, 6)]),
    ("<a>" * 1001 + "</a>" * 1001, [(1, 3001, "e", 0, 7)]),
    ("<a/b c=\"1\"/>", [(1, 3, "e", 0, 8)]),
    ('<a b="1" - c="2">x</a d>', [(1, 10, "e", 0, 8), (1, 22, "e", 0, 8)]),
    ("x<a/>", [(1, 1, "e", 0, 9)]),
    ("<a/>\n x", [(2, 2, "e", 0, 9)]),
    ('<a b="1"c="2" ></a >', []),
]


def check_findings():
    for content, wanted in READER:
        expect(f"findings of {content!r}", wanted, findings(content))
    for content, wanted in STRICT:
        expect(f"strict findings of {content!r}", wanted, findings(content, "--strict"))
        if content != b"<a>\0\0</a>":
            expect(f"findings of {content!r}", [], findings(content))


def check_output():
    put("bad.xml", "<a>\n<>\n</a>")
    english = ('bad.xml:2:3: error: A tag has no element name. The name comes right after "<" or '
               '"</"; write the character "<" itself as "&lt;".\n')
    german = "bad.xml:2:3: error: In einem Tag fehlt der Elementname."
    for options, environment, start in [
        ([], {}, english),
        ([], {"LC_ALL": "C", "LANG": "de_DE.UTF-8"}, english),
        ([], {"LANG": "xx_XX"}, english),
        (["--lang=deu"], {"LANG": "fr_FR"}, german),
        ([], {"LANG": "zh_CN.UTF-8"}, "bad.xml:2:3: error: 标签中没有元素名称。"),
    ]:
        result = run("check", *options, "bad.xml", environment=environment)
        expect(f"{options} {environment}", (1, start),
               (result.returncode, result.stdout.decode()[: len(start)]))
    for language, words in zip("eng deu fra spa rus ita por pol ukr zho".split(),
                               ["Documents: ", "Dokumente: ", "Documents\u00a0: ", "Documentos: ",
                                "Документов: ", "Documenti: ", "Documentos: ", "Dokumenty: ",
                                "Документів: ", "文档："]):
        result = run("check", "--summary", "--lang", language, "-", "bad.xml", input=b"<a/>")
        last = result.stdout.decode().splitlines()[-1]
        expect(f"summary in {language}", words + "2", last[: len(words) + 1])
    result = run("check", "missing.xml", "bad.xml")
    expect("missing file",
           (2, "missing.xml: error: The file could not be opened. File: missing.xml; "
            "System message: No such file or directory\n" + english),
           (result.returncode, result.stdout.decode()))
    # A name and a document that try to write to the terminal.
    name = put("evil\x1b[2J\u009b.xml", "<a \x1b]0;x\x07=\"1\"/><b\u009b/>")
    result = run("check", "--strict", name)
    expect("controls in messages", [], [c for c in result.stdout.decode() if c < " " and c != "\n"])
    expect("controls in JSON", True,
           json.loads(run("check", "--format=json", name).stdout)["documents"][0]["name"] == name)


# File names that could be taken for something else in a URI, in JSON or on a terminal.
HOSTILE = [(b"a b#?.xml", "a%20b%23%3F.xml"), (b"c:%41.xml", "c%3A%2541.xml"),
           (b'"\\\n\x1b[2J\xff.xml', "%22%5C%0A%1B%5B2J%FF.xml")]


def check_sarif():
    strict = ["check", "--strict", "--format=sarif"]
    put("t.xml", "<a>\n\t\u00e9\U0001f600<b\tx=\"1\n2\tz\" [c]{d}/>&x;</a></c>")
    result = run(*strict, "t.xml", "none.xml")
    expect("code of SARIF", 2, result.returncode)
    expect("results", [("ccml-5", "error", "t.xml", 2, 3),
                       ("common_core-16", "warning", "t.xml", 2, 7),
                       ("common_core-2", "error", "t.xml", 3, 7),
                       ("common_core-34", "error", "t.xml", 3, 14),
                       ("ccml-1", "error", "t.xml", 3, 21),
                       ("common_core-4", "error", "none.xml", None, None)],
           sarif(result.stdout, "ccml", {"ccml-1": 'The end tag "%s" has no start tag.',
                                         "common_core-4": "The file could not be opened."}))
    missing = json.loads(run(*strict, "[a]{0}").stdout)["runs"][0]["results"][0]["message"]["text"]
    expect("neither link nor argument", True, r"File: \[a\]{{0}};" in missing)
    result = run(*strict, put("good.xml", "<a/>"))
    expect("nothing", (0, []), (result.returncode, sarif(result.stdout, "ccml", {})))
    for name, uri in HOSTILE:
        result = run(*strict, put(name, "<>"))
        expect(f"URI of {name}", [uri], [found[2] for found in sarif(result.stdout, "ccml", {})])
        document = json.loads(run("check", "--format=json", name).stdout)["documents"][0]
        expect(f"JSON of {name}", name.decode(errors="replace"), document["name"])
    path = os.path.abspath(put("good.xml", "<>"))
    expect("absolute path", f"file://{path}", sarif(run(*strict, path).stdout, "ccml", {})[0][2])


def check_usage():
    for arguments, code in [([], 3), (["bogus"], 3), (["check"], 3), (["check", "--x", "a"], 3),
                            (["check", "--format=yaml", "a"], 3), (["query", "a"], 3),
                            (["outline", "--format=sarif", "a"], 3),
                            (["query", "a//b", "bad.xml"], 3), (["format", "--indent=x", "a"], 3),
                            (["format", "--layout=wide", "a"], 3), (["--help"], 0),
                            (["check", "--help"], 0), (["--version"], 0),
                            (["check", "--lang", "xxx", "bad.xml"], 2), (["outline", "none"], 2)]:
        expect(f"code of {arguments}", code, run(*arguments).returncode)
    command = [CCML, "check", "--summary", "bad.xml"]
    expect("full output", 2, full_disk(*command, env={"COMMON_CORE_ETC_DIR": ETC})[0])


FORMAT = """<?xml version="1.0"?>
<!-- two
  lines -->
<r a="1&lt;" b="it&apos;s">
  <x/>
  <y> t &amp; u </y>
  <z></z>
  <m>text <b>bold</b> <i/> more</m>
  <k>
    <!-- c -->
    <l i="1">  </l>
  </k>
  <n>before<!-- c --></n>
</r>
"""


def check_format():
    source = ('<?xml version="1.0"?><!-- two\n  lines --><r a = "1&lt;"\n b="it\'s"><x/>'
              "<y> t &amp; u </y><z></z><m>text <b>bold</b> <i/> more</m><k> <!-- c -->"
              '<l i="1">  </l></k>\n<n>before<!-- c --></n></r>')
    expect("single", FORMAT, run("format", put("f.xml", source)).stdout.decode())
    for options in [["--layout=multi", "--indent=3"], ["--indent=0"]]:
        once = run("format", *options, "f.xml").stdout
        put("once.xml", once)
        expect(f"twice {options}", once, run("format", *options, "once.xml").stdout)
        expect(f"back from {options}", FORMAT, run("format", "once.xml").stdout.decode())
    code = run("format", "-i", put("f.xml", b"\xef\xbb\xbf" + source.encode())).returncode
    expect("in place", (0, b"\xef\xbb\xbf" + FORMAT.encode()), (code, get("f.xml")))
    for content in ["<a><b></a></b>", "<!DOCTYPE a>--><a/>", "<a x='1'/>", "<a/>x",
                    '<a - b="1"/>', "<a><![CDATA[x]]>--></a>", '<a b="&x;"/>', "<a>"]:
        result = run("format", "-i", put("refused.xml", content))
        expect(f"refused {content}", (1, content.encode()), (result.returncode, get("refused.xml")))
        result = run("format", "refused.xml")
        expect(f"output for {content}", (b"", b"refused.xml:"), (result.stdout, result.stderr[:12]))


def check_outline_and_query():
    put("t.xml", '<r><a x="1&amp;" y="2"/><a x="3">text &lt;</a><b><a>in<i/></a></b></r>')
    put("u.xml", "<r><a>other</a></r>")
    expect("outline", "r 1\n  a 2\n    @x 2\n    @y 1\n  b 1\n    a 1\n      i 1\n",
           run("outline", "t.xml").stdout.decode())
    tree = json.loads(run("outline", "--format=json", "t.xml", "u.xml").stdout)
    root = tree[0]["elements"][0]
    expect("outline as JSON", ["r", 1, ["a", "b"], {"x": 2, "y": 1}],
           [root["name"], root["count"], [child["name"] for child in root["children"]],
            root["children"][0]["attributes"]])
    expect("outlines", 2, len(tree))
    put("broken.xml", "<r><></r>")
    result = run("outline", "--format=json", "none.xml", "broken.xml", "u.xml")
    tree = json.loads(result.stdout)
    expect("outlines of failures", [("broken.xml", None), ("u.xml", 1)],
           [(one["name"], one["elements"] and len(one["elements"])) for one in tree])
    expect("failures of outline", [b"none.xml", b"broken.xml"],
           [line.split(b":")[0] for line in result.stderr.splitlines()])
    for path, files, code, output in [
        ("r/a/@x", ["t.xml"], 0, "1&\n3\n"), ("/r/a", ["t.xml"], 0, "\ntext <\n"),
        ("r/*/a", ["t.xml"], 0, "<a>in<i/></a>\n"), ("*/a/@y", ["t.xml"], 0, "2\n"),
        ("r/c", ["t.xml"], 1, ""), ("a", ["t.xml"], 1, ""), ("r/a/@z", ["t.xml"], 1, ""),
        ("r/a", ["t.xml", "u.xml"], 0, "t.xml: \nt.xml: text <\nu.xml: other\n"),
        ("r/a", ["none.xml", "u.xml"], 2, "u.xml: other\n"),
    ]:
        result = run("query", path, *files)
        expect(f"query {path}", (code, output), (result.returncode, result.stdout.decode()))


main(check_findings, check_output, check_sarif, check_usage, check_format, check_outline_and_query)
