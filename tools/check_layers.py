#!/usr/bin/env python3
"""Holds every #include of the product's sources against the table of layers.

Each source belongs to one layer by its name, and may include its own layer and those that
the layer stands on. A source that the table does not know is a finding too, so that a new
one gets its place at once. Prints file:line:column: error: text; exits 1 on findings.
"""

import fnmatch
import os
import re
import sys

# layer: (what it stands on, the sources that belong to it)
LAYERS = {
    "base": ([], ["include/common_core_api.h", "loc/message_numbers.h", "core/init_order*"]),
    "paths": (["base"], ["platform/libpaths/*"]),
    "platform": (["base", "paths"], ["platform/*"]),
    "text": (
        ["platform"],
        ["*/charproc*", "*/utf8proc*", "*/numbers*", "*/*kernels*", "*/*tables*", "core/win1251*",
         "core/formatted_text*", "unicode/*"],
    ),
    "strings": (["text"], ["*/charr*", "*/chpair*", "*/containers*"]),
    "bag": (["strings"], ["*/bag*"]),
    "message": (["bag"], ["*/tttproc*", "loc/message_reader*"]),
    "files": (["message"], ["*/fileproc*", "*/ffproc*", "*/utf8io*", "unicode/utf8io*", "files/*"]),
    "modules": (
        ["files"],
        ["*/cc_loc_loader*", "*/id_loc_loader*", "*/loc_loader*", "*/loc_module*",
         "*/common_core_loc*", "loc/lng_format*"],
    ),
    "rendering": (["modules"], ["loc/render*"]),
    "markup": (["files"], ["*/mlproc*", "*/pairtag*", "*/strtag*", "markup/*"]),
    "process": (["files"], ["*/rundetector*", "process/*"]),
}

FOLDERS = ["include", "core", "unicode", "loc", "files", "markup", "process", "platform"]
INCLUDE = re.compile(r'(\s*#\s*include\s*)"([^"]+)"')


def layer_of(path):
    # The longest pattern decides: "loc/lng_format*" before "loc/*".
    best = None
    for layer, (_, patterns) in LAYERS.items():
        for pattern in patterns:
            if fnmatch.fnmatch(path, pattern) and (best is None or len(pattern) > len(best[1])):
                best = (layer, pattern)
    return best[0] if best else None


def reachable(layer):
    result = {layer}
    for below in LAYERS[layer][0]:
        result |= reachable(below)
    return result


def resolve(root, path, name):
    """The file that `name` means in `path`, as the compiler looks for it."""
    for folder in (os.path.dirname(path), "include", "", "platform/libpaths"):
        candidate = os.path.normpath(os.path.join(folder, name))
        if os.path.isfile(os.path.join(root, candidate)):
            return candidate
    return None


def check_file(root, path):
    own = layer_of(path)
    if own is None:
        return [f"{path}:1:1: error: tools/check_layers.py gives this file no layer"]
    allowed = reachable(own)
    findings = []
    with open(os.path.join(root, path), encoding="utf-8") as stream:
        for number, line in enumerate(stream, 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            place = f"{path}:{number}:{len(match[1]) + 1}"
            target = resolve(root, path, match[2])
            if target is None:
                findings.append(f'{place}: error: "{match[2]}" is no file of this project')
                continue
            layer = layer_of(target)
            if layer is not None and layer not in allowed:
                findings.append(
                    f"{place}: error: {own} must not include {target} of the layer {layer}")
    return findings


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    if len(sys.argv) > 1:
        root = sys.argv[1]
    sources = []
    for folder in FOLDERS:
        for directory, _, names in os.walk(os.path.join(root, folder)):
            for name in names:
                if name.endswith((".h", ".cpp")):
                    sources.append(os.path.relpath(os.path.join(directory, name), root))
    findings = [finding for path in sorted(sources) for finding in check_file(root, path)]
    for finding in findings:
        print(finding)
    print(f"{len(sources)} sources, {len(findings)} findings")
    return 1 if findings or not sources else 0


if __name__ == "__main__":
    sys.exit(main())
