#!/usr/bin/env python3
"""Prints how much of each folder ran, in lines and branches, after a run of an instrumented build.

    coverage.py BUILD_FOLDER [FOLDER]

With a folder of the source tree, also the figures of its files.
"""

import json
import pathlib
import subprocess
import sys

FOLDERS = ("common", "cmpicpp", "toolkit", "platform", "providers", "cimhost", "testing")
KINDS = ("lines", "branches")


def programs_of(build):
    """Everything that was linked with instrumentation."""
    for path in sorted(build.rglob("*")):
        if path.is_file() and (path.suffix == ".so" or not path.suffix):
            with open(path, "rb") as file:
                if file.read(4) == b"\x7fELF" and b"__llvm_covmap" in file.read():
                    yield path


def summaries_of(build, root):
    """{file: {kind: {"count": ..., "covered": ...}}}"""
    data = build / "profiles" / "all.profdata"
    raw = [str(path) for path in data.parent.glob("*.profraw")]
    subprocess.run(["llvm-profdata", "merge", "-o", str(data), *raw], check=True)
    objects = [f"--object={path}" for path in programs_of(build)]
    # It warns of inline functions that an object includes and does not use.
    report = subprocess.run(["llvm-cov", "export", "--summary-only", f"--instr-profile={data}", *objects],
                            check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    files = json.loads(report.stdout)["data"][0]["files"]
    return {str(pathlib.Path(file["filename"]).relative_to(root)): file["summary"] for file in files
            if pathlib.Path(file["filename"]).is_relative_to(root)}


def row(name, summaries):
    """A line of figures over these files."""
    words = []
    for kind in KINDS:
        count = sum(summary[kind]["count"] for summary in summaries)
        covered = sum(summary[kind]["covered"] for summary in summaries)
        words.append(f"{100 * covered / max(1, count):5.1f} % of {count:5} {kind}")
    return f"  {name:10} {', '.join(words)}"


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    build = pathlib.Path(sys.argv[1]).resolve()
    summaries = summaries_of(build, pathlib.Path(__file__).resolve().parent.parent)
    print("Coverage:")
    for folder in FOLDERS:
        print(row(folder, [summary for name, summary in summaries.items() if name.startswith(folder + "/")]))
    for name, summary in summaries.items():
        if len(sys.argv) == 3 and name.startswith(sys.argv[2].rstrip("/") + "/"):
            print(row(name, [summary]))


if __name__ == "__main__":
    main()
