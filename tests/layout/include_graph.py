#!/usr/bin/env python3
"""Holds the include graph: which folder may include headers of which.

    include_graph.py ROOT
"""

import pathlib
import re
import sys

# A folder and what its sources may include, besides themselves. The longest prefix decides.
# cimhost knows a module by the C interface only: so a module that runs in it runs in any object manager.
MAY_INCLUDE = {
    "cmpi": (),
    "cmpicpp": ("cmpi",),
    "platform/logger": (),
    "platform": ("platform/logger",),
    "platform/computersystem": ("platform/logger", "platform/smbios"),  # docs/decisions/0005
    "platform/blade": ("platform/logger", "platform/smbios", "platform/computersystem"),  # the same
    "common": ("cmpicpp", "cmpi", "platform"),
    "providers": ("common", "cmpicpp", "cmpi", "platform"),
    "cimhost": ("cmpi",),
}
FOLDERS = ("cmpi", "cmpicpp", "common", "platform", "providers", "cimhost", "tests", "bench", "fuzz")
SOURCES = (".h", ".cpp", ".c")
INCLUDE = re.compile(r'^\s*#\s*include(?:_next)?\s*[<"]([^">]+)[">]', re.MULTILINE)


def unit_of(path):
    """The folder whose rule holds for a file: two levels below platform/, one elsewhere."""
    parts = path.split("/")
    return "/".join(parts[:2]) if parts[0] == "platform" and len(parts) > 2 else parts[0]


def rule_for(unit):
    return MAY_INCLUDE.get(unit, MAY_INCLUDE.get(unit.split("/")[0]))


def is_allowed(unit, target):
    if target == unit:
        return True
    return any(target == allowed or target.startswith(allowed + "/") for allowed in rule_for(unit))


def violations(root):
    """Every include that the rules forbid, as "file: includes header"."""
    found = []
    for folder in MAY_INCLUDE:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix not in SOURCES:
                continue
            name = path.relative_to(root).as_posix()
            if name.count("/") and unit_of(name).split("/")[0] != folder.split("/")[0]:
                continue
            for header in INCLUDE.findall(path.read_text(encoding="utf-8", errors="replace")):
                if header.split("/")[0] not in FOLDERS:
                    continue
                if not is_allowed(unit_of(name), unit_of(header)):
                    found.append(f"{name}: includes {header}")
    return sorted(set(found))


def main():
    found = violations(pathlib.Path(sys.argv[1]))
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
