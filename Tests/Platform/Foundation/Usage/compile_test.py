#!/usr/bin/env python3
"""Formats are checked while a program is compiled, and the compiler names the fault.

Usage: compile_test.py COMPILER INCLUDE_FOLDER [OPTION...]
"""
import concurrent.futures
import os
import pathlib
import subprocess
import sys
import tempfile

# What is compiled, and what the compiler has to say; None for nothing.
FORMAT = "NSString::stringWithFormat({});"
CASES = [
    (FORMAT.format('u"%@ %d %5.2f%% %s %S %p", NSString(u"a"), 1, 2.0, "b", u"c", nullptr'), None),
    (FORMAT.format('"%2$@ %1$*3$d", 1, "text", 2'), "aConversionIsUnknown"),
    (FORMAT.format('"%2$@ %1$d", 1, "text"'), None),
    (FORMAT.format('u"%*d %.*f", 5, 42, 2, 1.5'), None),
    (FORMAT.format('"%d"'), "aConversionHasNoArgument"),
    (FORMAT.format('u"%d %@", 1'), "aConversionHasNoArgument"),
    (FORMAT.format('u"%*d", 1'), "aConversionHasNoArgument"),
    (FORMAT.format('u"no conversion", 1'), "anArgumentHasNoConversion"),
    (FORMAT.format('u"%d", NSString(u"a")'), "anArgumentDoesNotFitItsConversion"),
    (FORMAT.format('u"%@", 5'), "anArgumentDoesNotFitItsConversion"),
    (FORMAT.format('u"%f", 5'), "anArgumentDoesNotFitItsConversion"),
    (FORMAT.format('u"%s", u"wide"'), "anArgumentDoesNotFitItsConversion"),
    (FORMAT.format('u"%k", 5'), "aConversionIsUnknown"),
    (FORMAT.format('u"cut %", 5'), "aConversionIsUnknown"),
    (FORMAT.format('u"%*d", 1.5, 2'), "aWidthOrPrecisionIsNoInteger"),
    (FORMAT.format('NSString(u"%d"), NSString(u"known at run time only")'), None),
    ('NSLog(u"%d", "text");', "anArgumentDoesNotFitItsConversion"),
    ('QRV_LOG("file", "function", u"Area", u"%@ %d", u"text", 1);', None),
    ('QRV_LOG("file", "function", u"Area", u"%@ %d", u"text");', "aConversionHasNoArgument"),
    ("[[maybe_unused]] id x = 0;", "deleted"),
    ('[[maybe_unused]] bool is = NSString(u"a") == NSArray();', "deleted"),
]


def fault(case, compiler, folder, options):
    code, wanted = case
    source = pathlib.Path(folder) / f"{CASES.index(case)}.cpp"
    source.write_text('#include "Platform/Foundation/NSArray.h"\n#include "Platform/Logging/NSLog.h"\n'
                      '#include "QRVFoundation/Source/QRVLog.h"\n'
                      f"using namespace qrv;\nvoid check() {{ {code} }}\n", encoding="utf-8")
    done = subprocess.run([compiler, "-std=c++20", "-fsyntax-only", *options, source], capture_output=True, text=True,
                          env={**os.environ, "LC_ALL": "C"}, timeout=120, check=False)
    is_right = done.returncode == 0 if wanted is None else done.returncode != 0 and wanted in done.stderr
    return "" if is_right else f"{code}\n  wanted: {wanted}\n  found: {done.returncode} {done.stderr[:1500]}"


def main(compiler, include_folder, *options):
    with tempfile.TemporaryDirectory(prefix="compile-test-") as folder:
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            faults = list(filter(None, pool.map(
                lambda case: fault(case, compiler, folder, (f"-I{include_folder}", *options)), CASES)))
    print("\n".join(faults) or f"{len(CASES)} cases as they should be")
    return 1 if faults else 0


sys.exit(main(*sys.argv[1:]))
