#!/usr/bin/env python3
"""Holds the include graph: which folder may include headers of which.

    include_graph.py ROOT
"""

import pathlib
import re
import sys

# A room and what its sources may include, besides themselves. A name covers the folders below it.
# cimhost knows a module by the C interface only: so a module that runs in it runs in any object manager.
MODEL = ("cimhost/repository",)
OBJECTS = (*MODEL, "cimhost/query", "cmpi")
MODULES = (*OBJECTS, "cimhost/objects")
OPERATIONS = (*MODULES, "cimhost/modules")
INDICATIONS = (*OPERATIONS, "cimhost/operations", "cimhost/mof")  # subscriptions are kept as MOF
MAY_INCLUDE = {
    "cmpi": (),
    "cmpicpp": ("cmpi",),
    "platform/logger": (),
    "platform/smbios": ("platform/logger",),
    "platform/ipmi": ("platform/logger",),
    "platform/host": ("platform/logger", "platform/smbios"),  # docs/decisions/0005
    "common": ("cmpicpp", "cmpi", "platform"),
    "toolkit": ("common", "cmpicpp", "cmpi", "platform"),
    "providers": ("toolkit", "common", "cmpicpp", "cmpi", "platform"),
    "cimhost/repository": (),
    "cimhost/mof": MODEL,
    "cimhost/query": MODEL,
    "cimhost/objects": OBJECTS,
    "cimhost/modules": MODULES,
    "cimhost/operations": OPERATIONS,
    "cimhost/indications": INDICATIONS,
    "cimhost/cimxml": (*INDICATIONS, "cimhost/indications"),
    "cimhost/http": (),
    "cimhost/client": (*INDICATIONS, "cimhost/indications", "cimhost/cimxml", "cimhost/http"),
    "cimhost/server": ("cimhost", "cmpi"),
    # The one room that may know both sides, and that neither side knows.
    "testing": ("toolkit", "common", "cmpicpp", "cmpi", "platform", "cimhost"),
}
# Private headers: for their own layer, wherever in it.
LAYERS = ("cmpicpp", "common", "toolkit", "platform/logger", "platform/smbios", "platform/ipmi", "platform/host")
FREE = ("tests", "bench", "fuzz")
SOURCES = (".h", ".cpp", ".c")
INCLUDE = re.compile(r'^\s*#\s*include(?:_next)?\s*[<"]([^">]+)[">]', re.MULTILINE)
FOLDERS = {room.split("/")[0] for room in MAY_INCLUDE} | set(FREE)


def is_below(name, folder):
    return name == folder or name.startswith(folder + "/")


def room_of(name):
    """The room whose rule holds for a file, or None for one that is in none."""
    return next((room for room in MAY_INCLUDE if is_below(name, room)), None)


def is_allowed(name, header):
    room = room_of(name)
    if "/detail/" in header and not any(is_below(name, layer) and is_below(header, layer)
                                        for layer in LAYERS):
        return False
    return any(is_below(header, allowed) for allowed in (room, *MAY_INCLUDE[room]))


def violations(root):
    """Every include that the rules forbid, as "file: includes header"."""
    found = []
    for folder in sorted(FOLDERS - set(FREE)):
        for path in sorted((root / folder).rglob("*")):
            if path.suffix not in SOURCES:
                continue
            name = path.relative_to(root).as_posix()
            if not room_of(name):
                found.append(f"{name}: is in no room that the rules know")
                continue
            for header in INCLUDE.findall(path.read_text(encoding="utf-8", errors="replace")):
                if header.split("/")[0] in FOLDERS and not is_allowed(name, header):
                    found.append(f"{name}: includes {header}")
    return sorted(set(found))


def main():
    found = violations(pathlib.Path(sys.argv[1]))
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
