#!/usr/bin/env python3
"""Builds the C++ binding with PYL_SYSTEM_CMPI against stand-ins for the headers that systems have.

    system_headers.py SOURCE_FOLDER CXX

A stand-in is made of our own headers, by the few changes in which a system's differ as far as the binding can
see.
"""

import pathlib
import re
import subprocess
import sys
import tempfile

HEADERS = ("cmpidt", "cmpift", "cmpimacs")


def level_200(text):
    """Without what 2.1 added, and with what it renamed."""
    text = re.sub(r"#define (CMPIVersion210|CMPI_MB_(Logging|Tracing|PropertyFiltering|Codepage\w+)) .*\n", "", text)
    text = text.replace("CMPICurrentVersion CMPIVersion210", "CMPICurrentVersion CMPIVersion200")
    text = re.sub(r"#if CMPI_VERSION >= CMPIVersion210.*?#endif\n", "", text, flags=re.DOTALL)
    text = re.sub(r"    CMPI_RC_\w+ = (18|27|29|62),.*\n", "", text)
    text = text.replace("    OversubscriptionError = 8,\n", "")
    text = text.replace("typedef int CMPIVersion;", "").replace("CMPIVersion ", "int ")
    text = text.replace("int brokerVersion", "unsigned int brokerVersion")
    text = re.sub(r"typedef enum _CMPICodepageID .*?CMPICodepageID;", "", text, flags=re.DOTALL)
    text = re.sub(r"(typedef )?struct _CMPI(PropertyList|EnumerationFilter)(FT)? (\w+;|\{.*?\n\};)", "", text,
                  flags=re.DOTALL)
    added = r"\w+Filtered|\w+FilterCollection|newPropertyList|newStringCP|newEnumerationFilter|newCharsCP"
    added += r"|freeChars|\w+(Mutex|Condition)2"
    text = re.sub(rf"    [\w* ]+ ?\*?\(\*({added})\)\([^;]*\);\n", "", text)
    # Handles were open to writers, and a filter's poll had no result.
    text = text.replace("const void* hdl", "void* hdl")
    text = re.sub(r"const (CMPI\w+FT)\* (\w+);", r"\1* \2;", text)
    return text.replace("const CMPIResult* result, const CMPISelectExp* filter,", "const CMPISelectExp* filter,")


def standard_200(text):
    return level_200(text).replace("    int miVersion;", "    const int miVersion;")


def standard_210(text):
    """Includes its platform's header without the folder, and refuses to guess the platform."""
    return text.replace("#pragma once\n", """#pragma once
#include <cmpipl.h>
#ifndef CMPI_PLATFORM_LINUX_GENERIC_GNU
#error "no platform is defined"
#endif
""", 1)


def host_200(text):
    """Of a host: thread keys are the system's own, and strings give away their text."""
    text = text.replace("typedef unsigned long CMPI_THREAD_KEY_TYPE;",
                        "#include <pthread.h>\ntypedef pthread_key_t CMPI_THREAD_KEY_TYPE;")
    return level_200(text).replace("const char* (*getCharPtr)", "char* (*getCharPtr)")


def host_without_cpp(text):
    """Of a host that is written in C: a macro is missing where the headers are used alone."""
    text = level_200(text).replace("#define CMPI_THREAD_CDECL\n", "")
    return text.replace("(*CMPIThreadFunc)", "(CMPI_THREAD_CDECL *CMPIThreadFunc)")


SETS = (standard_200, standard_210, host_200, host_without_cpp)


def write_set(change, source, folder):
    folder.mkdir(parents=True)
    for header in HEADERS:
        # It does not step aside as ours do.
        text = (source / "cmpi" / f"{header}.h").read_text().replace("PYL_SYSTEM_CMPI", "PYL_NEVER_DEFINED")
        (folder / f"{header}.h").write_text(change(text))
    (folder / "cmpipl.h").write_text("#pragma once\n")


def run(*command):
    result = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            text=True)
    return "" if result.returncode == 0 else f"{' '.join(map(str, command))}\n{result.stdout}"


def main():
    source, compiler = pathlib.Path(sys.argv[1]), sys.argv[2]
    complaints = []
    with tempfile.TemporaryDirectory() as scratch:
        scratch = pathlib.Path(scratch)
        build = scratch / "build"
        for change in SETS:
            folder = scratch / change.__name__
            write_set(change, source, folder / "cmpi")
            complaint = run("cmake", "-S", source, "-B", build, "-G", "Ninja", "-DPYL_SYSTEM_CMPI=ON",
                            f"-DPYL_CMPI_INCLUDE_DIR={folder}", f"-DCMAKE_CXX_COMPILER={compiler}",
                            "-DCMAKE_UNITY_BUILD=ON",
                            "-DCMAKE_UNITY_BUILD_BATCH_SIZE=0", "-DPYL_BUILD_CIMHOST=OFF",
                            "-DPYL_BUILD_TESTS=OFF") or run("cmake", "--build", build, "--target", "pyl_cmpicpp")
            if complaint:
                complaints.append(f"with headers of {change.__name__}:\n{complaint}")
    print("\n".join(complaints) or "no warning")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
