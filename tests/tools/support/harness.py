"""What the tests of the tools share: files in a folder of their own, and comparisons that go on."""

import json
import os
import re
import subprocess
import sys
import tempfile

failures = []


def expect(what, expected, got):
    if expected != got:
        failures.append(f"{what}:\n  expected {expected!r}\n  got      {got!r}")


def put(name, content):
    with open(name, "wb") as file:
        file.write(content if isinstance(content, bytes) else content.encode())
    return name


def get(name):
    with open(name, "rb") as file:
        return file.read()


def full_disk(*command, env=None):
    """What a command comes to whose output goes to a full disk: its exit code and its errors."""
    with open("/dev/full", "wb") as full:
        done = subprocess.run(command, stdout=full, stderr=subprocess.PIPE, env=env, check=False)
    return done.returncode, done.stderr


def sarif(output, tool, texts):
    """(rule, level, URI, line, column) of each result, from an output whose structure is checked.

    `texts` are the expected texts of some rules.
    """
    log = json.loads(output)
    expect("version of SARIF", ("2.1.0", 1), (log["version"], len(log["runs"])))
    run = log["runs"][0]
    driver = run["tool"]["driver"]
    expect("driver", (tool, "unicodeCodePoints"), (driver["name"], run["columnKind"]))
    expect("version of the tool", "", re.sub(r"^\d+\.\d+\.\d+$", "", driver["version"]))
    rules = [rule["id"] for rule in driver["rules"]]
    expect("each rule once", len(set(rules)), len(rules))
    described = {rule["id"]: rule["shortDescription"]["text"] for rule in driver["rules"]}
    expect("texts of rules", texts, {rule: described.get(rule) for rule in texts})
    found = []
    for result in run["results"]:
        expect("index of a rule", result["ruleId"], rules[result["ruleIndex"]])
        expect("text of a result", True, bool(result["message"]["text"]))
        place = result["locations"][0]["physicalLocation"]
        uri, region = place["artifactLocation"]["uri"], place.get("region", {})
        expect("characters of a URI", None, re.search(r"[^A-Za-z0-9._~/%:-]|%(?![0-9A-F]{2})", uri))
        found.append((result["ruleId"], result["level"], uri, region.get("startLine"),
                      region.get("startColumn")))
    return found


def main(*tests):
    """Runs the tests in one empty folder, tells what failed, and exits."""
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        for test in tests:
            test()
        os.chdir("/")
    print("\n".join([*failures, f"{len(failures)} failures"]))
    sys.exit(1 if failures else 0)
