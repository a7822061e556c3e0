#!/usr/bin/env -S python3 -BIS
"""Stands in for a tool of an object manager, the one that it is called as: notes the call, and does as much of
its work as can be looked at afterwards. What it remembers is in the folder $STAND_IN, or the prefix that it is in.

    calls           a line a call
    fail-TOOL       its text is what the tool says before it fails
    cim-schema      the namespaces that have the CIM schema
    classes         "NAMESPACE CLASS" a line
    compiled        "NAMESPACE FILE" a line
    modules         those that are registered
"""

import os
import pathlib
import re
import shutil
import sys

HOME = pathlib.Path(os.environ.get("STAND_IN") or pathlib.Path(sys.argv[0]).parents[1])


class Lines:
    """A file of lines, each there once."""

    def __init__(self, name):
        self._file = HOME / name

    def read(self):
        return self._file.read_text(encoding="utf-8").splitlines() if self._file.exists() else []

    def write(self, lines):
        self._file.write_text("".join(f"{line}\n" for line in dict.fromkeys(lines)), encoding="utf-8")

    def add(self, *lines):
        self.write([*self.read(), *lines])


def options_of(words, with_value, without=()):
    """The options by name, and the words that are none."""
    options, rest = {}, []
    words = iter(words)
    for word in words:
        if word in with_value:
            options[word] = next(words)
        elif word in without:
            options[word] = True
        elif word.startswith("-"):
            sys.exit(f"unknown option {word}")
        else:
            rest.append(word)
    return options, rest


def classes_in(file):
    return re.findall(r"^class (\w+)", pathlib.Path(file).read_text(encoding="utf-8"), re.MULTILINE)


def cimmof(words):
    options, files = options_of(words, ("-n", "-I"), ("-w", "-uc", "-aV", "-aEV"))
    namespace = options["-n"]
    for file in files:
        text = pathlib.Path(file).read_text(encoding="utf-8")
        modules = re.findall(r'^instance of PG_ProviderModule \{\s*Name = "(\w+)"', text, re.MULTILINE)
        if text.startswith("Qualifier"):
            Lines("cim-schema").add(namespace)
        elif modules and namespace != "root/PG_InterOp":
            sys.exit(f"no class PG_ProviderModule in {namespace}")
        elif set(modules) & set(Lines("modules").read()):
            sys.exit("registered already")
        elif not modules and namespace not in Lines("cim-schema").read():
            sys.exit("Could not find declaration for Qualifier named Version")
        Lines("modules").add(*modules)
        Lines("compiled").add(f"{namespace} {file}")
        Lines("classes").add(*(f"{namespace} {name}" for name in classes_in(file)))


def cimprovider(words):
    modules = Lines("modules")
    if words == ["-l", "-s"]:
        print("MODULE             STATUS")
        for name in modules.read():
            print(f"{name:18} OK")
    elif words[:2] == ["-r", "-m"] and words[2] in modules.read():
        modules.write([name for name in modules.read() if name != words[2]])
    else:
        sys.exit(f"cannot do {words}")


def cimcli(words):
    operation, name, option, namespace = words
    if (operation, option) != ("gc", "-n") or f"{namespace} {name}" not in Lines("classes").read():
        sys.exit("CIM_ERR_NOT_FOUND")


def cimserver(words):
    if words not in ([], ["-s"]):
        sys.exit("unknown option")


def systemctl(words):
    if words != ["restart", "sfcb"]:
        sys.exit("unknown unit")


def sfcbstage(words):
    options, files = options_of(words, ("-n", "-r", "-s"))
    stage = pathlib.Path(options["-s"])
    folder = stage / "mofs" / options["-n"]
    folder.mkdir(parents=True, exist_ok=True)
    for file in files:
        shutil.copy(file, folder)
    if "-r" in options:
        shutil.copy(options["-r"], stage / "regs")


def sfcbunstage(words):
    options, files = options_of(words, ("-n", "-r", "-s"))
    stage = pathlib.Path(options["-s"])
    for file in files:
        (stage / "mofs" / options["-n"] / file).unlink()
    if "-r" in options:
        (stage / "regs" / options["-r"]).unlink()


def sfcbrepos(words):
    options, files = options_of(words, ("-s", "-r", "-c"), ("-f",))
    if files or "-f" not in options:
        sys.exit("would ask whether to go on")
    stage = pathlib.Path(options["-s"])
    text = "".join(file.read_text(encoding="utf-8") for file in sorted((stage / "regs").iterdir()))
    folder = pathlib.Path(options["-r"])
    folder.mkdir(exist_ok=True)
    (folder / "providerRegister").write_text(text, encoding="utf-8")


def main():
    tool = pathlib.Path(sys.argv[0]).name
    with open(HOME / "calls", "a", encoding="utf-8") as calls:
        calls.write(" ".join([tool, *sys.argv[1:]]) + "\n")
    failure = HOME / f"fail-{tool}"
    if failure.exists():
        sys.exit(failure.read_text(encoding="utf-8"))
    globals()[tool](sys.argv[1:])


if __name__ == "__main__":
    main()
