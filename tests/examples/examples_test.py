#!/usr/bin/env python3
"""Builds, tests, serves and asks a project, by the commands of its own README, against the installed tree.

    examples_test.py new|ethernet BUILD_FOLDER SOURCE_FOLDER CXX SANITIZERS
"""

import difflib
import pathlib
import re
import shutil
import socket
import sys

from session import Session, commands_of, expect


MOST_LINES = 180


def code_of(text):
    """Its lines, without those that are empty or a comment alone."""
    lines = (line.strip() for line in text.splitlines())
    return [line for line in lines if line and not line.startswith("//")]


def count_lines(examples):
    """How many lines the module of the Ethernet provider has, and how many of them `cimhost new` writes."""
    own = there = 0
    for name in ("AcmeEthernet.mof", "AcmeEthernetProvider.h", "AcmeEthernetProvider.cpp"):
        lines = code_of((examples / "ethernet" / name).read_text(encoding="utf-8"))
        model = (examples / "new" / name.replace("Ethernet", "Thing")).read_text(encoding="utf-8")
        same = difflib.SequenceMatcher(None, code_of(model.replace("Thing", "Ethernet")), lines, autojunk=False)
        own += len(lines)
        there += sum(block.size for block in same.get_matching_blocks())
    return own, there


def new(session, _):
    """The project that `cimhost new` makes."""
    said = session.type("cimhost new AcmeEthernet")
    page = (session.folder / "AcmeEthernet/README.md").read_text(encoding="utf-8")
    commands = ["cd AcmeEthernet", *commands_of(page)]
    if commands_of(said) != commands:
        sys.exit(f"README has {commands}, and this was said:\n{said}")
    for line in commands:
        said = session.type(line)
        if line.startswith("ctest"):
            expect("100% tests passed, 0 tests failed out of 3", said)
    expect(r'ACME_Ethernet\.InstanceID="ACME:Ethernet:left".*Temperature=40', said)


def ethernet(session, source):
    """The wanted module: what it says of this machine is what the kernel says, and it is as short as is told."""
    examples = pathlib.Path(source) / "examples"
    lines, there = count_lines(examples)
    page = (pathlib.Path(source) / "docs/tutorial.md").read_text(encoding="utf-8")
    split = f"{lines} lines of code, {there} of which `cimhost new` wrote"
    if lines > MOST_LINES or split not in " ".join(page.split()):
        sys.exit(f"it has {split}; at most {MOST_LINES}, and as the tutorial says")
    shutil.copytree(examples / "ethernet", session.folder / "AcmeEthernet")
    for line in ("cd AcmeEthernet", "cmake -B build", "cmake --build build"):
        session.type(line)
    expect("100% tests passed", session.type("ctest --test-dir build"))
    session.type("cimhost serve --project cimhost.toml")
    ports = {entry.name for entry in pathlib.Path("/sys/class/net").iterdir()
             if (entry / "type").read_text().strip() == "1"}
    url = "http://localhost:5988/root/ktq"
    server = f'PYL_ComputerSystem.CreationClassName=PYL_ComputerSystem,Name={socket.gethostname()}'
    for said in (session.type(f"wbemcli ein {url}:ACME_Ethernet"), session.type(f"wbemcli ain '{url}:{server}'")):
        if set(re.findall(r'DeviceID="(.*?)"', said)) != ports:
            sys.exit(f"expected {ports} in:\n{said}")


EXAMPLES = {"new": new, "ethernet": ethernet}


def main():
    name, build, source, compiler, sanitizers = sys.argv[1:6]
    with Session(build, compiler, sanitizers) as session:
        EXAMPLES[name](session, source)


if __name__ == "__main__":
    main()
