#!/usr/bin/env python3
"""What the dialect forbids is found, and what it allows is not."""

import os
import pathlib
import subprocess
import sys
import tempfile

import dialect
from dialect import violations

CASES = [  # source, words of what is found; none: allowed
    ("const T& x;", None),
    ("T const& x;", "const stands behind 'T'"),
    ("std::vector<int> const x;", "const stands behind '>'"),
    ("template <typename T> const T* get();", None),
    ("extern PYL_EXPORT const char* const names[];", None),
    ("char* const x = y;", None),
    ("int f() const;", None),
    ("if (x == nullptr) return;", "'== nullptr'"),
    ("return x != nullptr;", None),
    ("using namespace std;", "'using namespace'"),
    ("using namespace std::chrono_literals;", None),
    ("using std::string;", None),
    ("static int f() { return 1; }", "'static'"),
    ("    static int f();", None),
    ("if (x) return;", None),
    ("if (x) {\n    return;\n}", "needs no braces"),
    ("if (x) {\n    // Why.\n    return;\n}", None),
    ("if (x)\n    return;", "wants braces"),
    ("if (x) [[unlikely]] {\n    fail();\n}", None),
    ("if constexpr (x) return;", None),
    ("if (x) EXPECT_EQ(a, b);", "wants braces"),
    ("if (x) {\n    EXPECT_EQ(a, b);\n}", None),
    ("for (;;) if (x) return;", "wants braces"),
    ("for (const auto& x : y) f(x);", None),
    ("while (f()) {\n}", None),
    ("do {\n    f();\n} while (x);", None),
    ("if (x) {\n    f();\n} else {\n    g();\n}", None),
    ("if (x) f();\nelse g();", "wants braces"),
    ("#if defined(x)\nint y;\n#endif", None),
    ("class A {\nprivate:\n    int find() const;\n};", "the private function find"),
    ("class A {\nprivate:\n    int _find() const;\n};", None),
    ("class A : B {\nprivate:\n    int find() const override;\n};", None),
    ("class A {\npublic:\n    int find() const;\n};", None),
    ("struct A {\n    int find() const;\n};", None),
    ("// " + "x" * 98, "101 columns"),
    ('f("' + "x" * 98 + '");', None),
    ('f("x", ' + "x" * 98 + ");", "107 columns"),
    ("// clang-format off\n// " + "x" * 110 + "\n// clang-format on", None),
    ("// clang-format off\n// " + "x" * 118 + "\n// clang-format on", "121 columns"),
    ('const char* x = R"(if (x == nullptr) T const&)";', None),
    ("// T const& in a comment", None),
    ("int f() { if (x", None),  # half written
    ("if (x) {", None),
    ("for", None),
]


def main():
    failures = 0
    for source, expected in CASES:
        found = [words for _, words in violations(source, is_c=False)]
        if found if expected is None else not any(expected in words for words in found):
            print(f"{source!r}: found {found}")
            failures += 1
    with tempfile.TemporaryDirectory() as folder:
        page = pathlib.Path(folder) / "page.md"
        page.write_text("Ask for it (if you have one.\n", encoding="utf-8")
        run = subprocess.run([sys.executable, dialect.__file__, folder, os.fspath(page)],
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if run.returncode == 0 or run.stdout != f"{page}: not read: no .h, .cpp or .c\n":
        print(f"a page of text: {run.returncode} {run.stdout!r}")
        failures += 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
