#!/usr/bin/env python3
"""Builds, tests, serves and asks a project, by the commands of its own README, against the installed tree.

    examples_test.py new PREFIX SOURCE_FOLDER CXX SANITIZERS
"""

import sys

from session import Session, commands_of, expect


def new(session, _):
    """The project that `cimhost new` makes."""
    said = session.type("cimhost new AcmeEthernet")
    page = (session.folder / "AcmeEthernet/README.md").read_text(encoding="utf-8")
    commands = ["cd AcmeEthernet", *commands_of(page)]
    if commands_of(said) != commands:
        sys.exit(f"README has {commands}, and this was said:\n{said}")
    for line in commands:
        said = session.type(line)
    expect(r'ACME_Ethernet\.InstanceID="ACME:Ethernet:left".*Temperature=40', said)


EXAMPLES = {"new": new}


def main():
    name, prefix, source, compiler, sanitizers = sys.argv[1:6]
    with Session(prefix, compiler, sanitizers) as session:
        EXAMPLES[name](session, source)


if __name__ == "__main__":
    main()
