#!/usr/bin/env python3
"""Does what docs/tutorial.md says: types each line that stands behind a "$ ", and holds what is shown below it against what
was said; "..." stands for anything. What needs root is done without, and what needs another object manager by stand-ins
for its tools.

    tutorial_test.py BUILD_FOLDER SOURCE_FOLDER CXX SANITIZERS
"""

import pathlib
import re
import shutil
import sys

from session import Session

TOOLS = ("cimmof", "cimprovider", "cimserver", "cimcli", "sfcbstage", "sfcbunstage", "sfcbrepos", "systemctl")
PORTS = [entry for entry in pathlib.Path("/sys/class/net").iterdir() if (entry / "type").read_text().strip() == "1"]


def steps_of(page):
    """Each command with what is shown of its output."""
    for block in re.findall(r"(?:^    .*\n|^\n(?=    ))+", page, re.MULTILINE):
        for step in re.split(r"^    \$ ", block, flags=re.MULTILINE)[1:]:
            command, *shown = (line.strip() for line in step.strip().splitlines())
            yield command, [line for line in shown if line]


def without_root(command, session, home):
    """What is typed in place of a command of root's; nothing for what a test must not do."""
    if command.startswith("sudo ip "):
        return None
    if command.startswith("sudo apt install "):
        return f"cmake --install build --prefix {session.prefix}"
    state = f"--state {home} " if "sfcb" in command else ""
    return re.sub(r"^sudo (pylcommon-register .*--provider-dir) \S+", rf"\1 {home}/providers {state}", command)


def stand_in(session, source):
    """Tools of object managers that are called by the session; where they keep what they are told."""
    home = session.prefix / "stand-ins"
    for name in ("bin", "providers", "stage/regs"):
        (home / name).mkdir(parents=True)
    for tool in TOOLS:
        (home / "bin" / tool).symlink_to(source / "tests/packaging/stand_in.py")
    (home / "cim-schema").write_text("root/ktq\nroot/PG_InterOp\n", encoding="utf-8")
    session.environment.update(STAND_IN=str(home), PATH=f"{home}/bin:{session.environment['PATH']}")
    return home


def main():
    build, source, compiler, sanitizers = sys.argv[1:5]
    source = pathlib.Path(source)
    missing = [tool for tool in ("gdb", "dpkg", "wbemcli") if not shutil.which(tool)]
    if missing:
        print(f"skipped: there is no {missing}")
        sys.exit(77)
    page = (source / "docs/tutorial.md").read_text(encoding="utf-8")
    with Session(build, compiler, sanitizers) as session:
        home = stand_in(session, source)
        for command, shown in steps_of(page):
            command = without_root(command, session, home)
            if not command or "ReadCounter" in command and not PORTS:
                continue
            said = session.type(command)
            for line in shown:
                pattern = re.escape(line).replace(r"\.\.\.", ".*")
                if not (found := re.search(pattern, said)):
                    sys.exit(f"$ {command}\nis shown to say\n{line}\nand says\n{said}")
                said = said[found.end():]


if __name__ == "__main__":
    main()
