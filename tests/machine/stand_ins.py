"""Installations of other object managers, as far as stand-ins go."""

import pathlib

from machine_case import PROGRAM

HERE = pathlib.Path(__file__).resolve().parent
TREE = HERE.parents[1]
TOOLS = {"sfcb": ("sfcbd", ("sfcbstage", "sfcbunstage", "sfcbrepos")),
         "openpegasus": ("cimserver", ("cimmof", "cimprovider"))}


def install(kind, prefix, **files):
    """Below the prefix, laid out as the real ones are; `files`: name and content of those that it behaves by."""
    server, tools = TOOLS[kind]
    for folder in ("bin", "sbin", "lib", "etc/sfcb", "var/lib/sfcb/stage/regs"):
        (prefix / folder).mkdir(parents=True)
    (prefix / "sbin" / server).symlink_to(HERE / "stand_in_server.py")
    for tool in tools:
        (prefix / "bin" / tool).symlink_to(TREE / "tests/packaging/stand_in.py")
    (prefix / "cimhost").symlink_to(PROGRAM)
    (prefix / "base").symlink_to(TREE / "schema/base")
    (prefix / "etc/sfcb/sfcb.cfg").write_text("httpPort: 1\nproviderDirs: /nosuch\n", encoding="utf-8")
    (prefix / "cim-schema").write_text("root/ktq\nroot/PG_InterOp\n", encoding="utf-8")
    for name, content in files.items():
        (prefix / name.replace("_", "-")).write_text(content, encoding="utf-8")
    return prefix
