#!/usr/bin/env python3
"""Holds what the library takes from the C library against the calls that the tests let fail.

    tools/check_imports.py LIBRARY

Each function stands in one of two tables: SWEPT names the function of platform/ around it, which
tests/faults/platform_calls.h has to list; UNSWEPT gives the reason why none has to. One that stands
in neither is a finding, so that a new call which can fail is swept from its first day.
"""

import os
import pathlib
import re
import subprocess
import sys

SWEPT = {
    "fopen": "openStream", "fclose": "closeStream", "fread": "readStream", "fputs": "writeStreamText",
    "__uflow": "readStreamByte", "fwrite": "writeStream", "fflush": "flushStream",
    "fseek": "seekStream", "ftell": "tellStream", "stat": "statPath", "lstat64": "pathStatus",
    "mkdir": "makeDirectory", "rmdir": "removeDirectory", "remove": "removePath",
    "unlink": "unlinkPath", "rename": "renamePath", "readlink": "readLink", "open": "openFile",
    "close": "closeFile", "read": "readFile", "write": "writeFile", "lseek": "seekFile",
    "ftruncate": "truncateFile", "fstat64": "fileStatus", "fsync": "syncFile",
    "fchmod": "changePermissions", "fchown": "changeOwner", "flock": "tryLockFile",
    "opendir": "openDirectory", "readdir64": "readDirectory", "closedir": "closeDirectory",
    "kill": "signalProcess", "getrandom": "randomBytes", "strerrordesc_np": "errorText",
    "setlocale": "characterType", "localtime_r": "localTime", "strftime": "formatTime",
}
UNSWEPT = {
    "computes in memory that it is given": "mem(chr|cmp|cpy|move|rchr|set)|str(chr|chrnul|cmp|len|nlen)"
        "|strto(d_l|ll|ull)|(is|to)(lower|upper)|tow(lower|upper)|v?snprintf",
    "answers from what the process holds": "__errno_location|getpid|nl_langinfo|tzset|uselocale"
        "|freelocale|clearerr_unlocked|fileno_unlocked|stdout|__x86_get_cpuid_feature_leaf",
    "puts back one byte, which the C library always has room for": "ungetc",
    "gives advice, and nothing relies on its being followed": "madvise",
    "may return early, and nothing relies on its length": "nanosleep",
    "without memory the locale stays as it is": "newlocale|duplocale",
    "belongs to the compiler": r"_Z.*|_ITM_.*|_Unwind_.*|__cxa_.*|__gxx_.*|__gmon_start__"
        r"|_+tls_get_addr|__\w+di[234]",
}


def main():
    calls = pathlib.Path(os.environ["CC_SOURCE_DIR"], "tests", "faults", "platform_calls.h")
    listed = set(re.findall(r"CALL\((\w+),", calls.read_text(encoding="utf-8")))
    names = subprocess.run(["nm", "-D", "--undefined-only", sys.argv[1]], check=True,
                           capture_output=True, text=True).stdout
    imported = {line.split()[-1].partition("@")[0] for line in names.splitlines()}
    findings = [f"{name} is in neither table" for name in sorted(imported - SWEPT.keys())
                if not any(re.fullmatch(pattern, name) for pattern in UNSWEPT.values())]
    findings += [f"{name} is gone" for name in sorted(SWEPT.keys() - imported)]
    findings += [f"{SWEPT[name]}, which calls {name}, is not swept"
                 for name in sorted(SWEPT) if SWEPT[name] not in listed]
    print("\n".join([*findings, f"{len(imported)} imports, {len(findings)} findings"]))
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
