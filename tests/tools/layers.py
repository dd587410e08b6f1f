#!/usr/bin/env python3
"""Shows that the check of layers finds what it is there to find."""

import os
import pathlib
import subprocess
import sys
import tempfile

CHECK = pathlib.Path(os.environ["CC_SOURCE_DIR"], "tools", "check_layers.py")

# {files with their text, the exit code, a part of what is printed}
CASES = [
    ({"core/bag.cpp": '#include "charr.h"\n', "include/charr.h": ""}, 0, "0 findings"),
    ({"core/bag.cpp": "#include <vector>\n"}, 0, "0 findings"),
    ({"core/bag.cpp": '\n#include "tttproc.h"\n', "include/tttproc.h": ""}, 1,
     "core/bag.cpp:2:10: error: bag must not include include/tttproc.h of the layer message"),
    ({"files/fileproc.cpp": '# include "mlproc.h"\n', "include/mlproc.h": ""}, 1,
     "fileproc.cpp:1:11"),
    ({"markup/mlproc.cpp": '#include "loc/rendering.h"\n', "loc/rendering.h": ""}, 1, "rendering"),
    ({"platform/linux.cpp": '#include "charproc.h"\n', "include/charproc.h": ""}, 1, "layer text"),
    ({"core/bag.cpp": '#include "nowhere.h"\n'}, 1, "no file of this project"),
    ({"core/unheard_of.cpp": ""}, 1, "gives this file no layer"),
    ({}, 1, "0 sources"),
]

failed = 0
for files, code, part in CASES:
    with tempfile.TemporaryDirectory() as directory:
        for name, text in files.items():
            path = pathlib.Path(directory, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        run = subprocess.run([sys.executable, CHECK, directory], capture_output=True, text=True,
                             check=False)
    if run.returncode != code or part not in run.stdout:
        print(f"{files}: exit code {run.returncode}, expected {code} and '{part}'\n{run.stdout}")
        failed += 1
sys.exit(1 if failed else 0)
