#!/usr/bin/env python3
"""Builds, tests, serves and asks a project, by the commands of its own README, against the installed tree.

    examples_test.py new|ethernet BUILD_FOLDER SOURCE_FOLDER CXX SANITIZERS
"""

import pathlib
import re
import shutil
import socket
import sys

from session import Session, commands_of, expect


MOST_LINES = 180


def count_lines(example):
    """Of the module, by file: lines with neither nothing nor a comment alone."""
    files = (file for file in sorted(example.glob("AcmeEthernet*")) if not file.stem.endswith("_test"))
    return {file.name: len([line for line in file.read_text(encoding="utf-8").splitlines()
                            if line.strip() and not line.strip().startswith("//")]) for file in files}


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
    example = pathlib.Path(source) / "examples/ethernet"
    lines = count_lines(example)
    print(f"{sum(lines.values())} lines: {lines}")
    if sum(lines.values()) > MOST_LINES:
        sys.exit(f"more than {MOST_LINES}")
    shutil.copytree(example, session.folder / "AcmeEthernet")
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
