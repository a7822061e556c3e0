#!/usr/bin/env -S python3 -BIS
"""Stands in for an object manager, the one that it is called as: sfcbd or cimserver. What the stand-ins of its tools
have staged or compiled below its prefix, and nothing else, is served by cimhost in its manner.

    cimhost, base   links, to the program and the small part of the CIM schema
    forgets         a class whose registration it does not see
    last-words      what it says instead of starting
"""

import os
import pathlib
import re
import signal
import subprocess
import sys
import time

NAME = pathlib.Path(sys.argv[0]).name
HOME = pathlib.Path(sys.argv[0]).parents[1]
KINDS = {"2": "instance", "3": "association", "4": "indication", "5": "method"}


def read(name):
    file = HOME / name
    return file.read_text(encoding="utf-8") if file.exists() else ""


def command(manner, port, namespaces, schema, registration, folders):
    """`schema`: (namespace, file) each, in order."""
    words = [HOME / "cimhost", "serve", "--manner", manner, "--port", port, "--no-console",
             "--registration", registration]
    for namespace in namespaces:
        words += ["--namespace", namespace, "--schema", HOME / "base/base.mof"]
        words += [word for each, file in schema if each == namespace for word in ("--schema", file)]
    words += [word for folder in folders for word in ("--provider-dir", folder)]
    return [str(word) for word in words]


def sfcbd(words):
    settings = dict(re.findall(r"(?m)^ *(\w+) *: *(.*)$", pathlib.Path(words[words.index("-c") + 1]).read_text("utf-8")))
    register = (pathlib.Path(settings["registrationDir"]) / "providerRegister").read_text("utf-8")
    sections = re.split(r"(?m)^(?=\[)", register)
    forgotten = f"[{read('forgets').strip()}]"
    registration = HOME / "registration"
    registration.write_text("".join(each for each in sections if not each.startswith(forgotten)), encoding="utf-8")
    stage = HOME / "var/lib/sfcb/stage/mofs"
    schema = [(str(file.parent.relative_to(stage)), file) for file in sorted(stage.rglob("*.mof"))]
    run = command("sfcb", settings["httpPort"], dict(schema), schema, registration, settings["providerDirs"].split())
    os.execv(run[0], run)


def capabilities(text):
    """Lines of a registration, of the instances in OpenPegasus' form."""
    def value(name, block):
        return re.search(rf"\b{name} = (.*?);", block, re.DOTALL).group(1)

    for block in re.findall(r"instance of PG_ProviderCapabilities \{(.*?)\n\};", text, re.DOTALL):
        module, provider, class_name = (value(name, block).strip('"')
                                        for name in ("ProviderModuleName", "ProviderName", "ClassName"))
        kinds = " ".join(KINDS[each] for each in re.findall(r"\d", value("ProviderType", block)))
        for namespace in re.findall('"(.*?)"', value("Namespaces", block)):
            yield f"{class_name} {namespace} {provider} {module} {kinds}\n"


def cimserver(words):
    process = HOME / "pid"
    if words == ["-s"]:
        os.kill(int(process.read_text("utf-8")), signal.SIGTERM)
        return
    settings = dict(word.split("=") for word in words)
    compiled = [line.split() for line in read("compiled").splitlines()]
    lines = [line for _, file in compiled if file.endswith("Registration.mof")
             for line in capabilities(pathlib.Path(file).read_text("utf-8"))]
    registration = HOME / "registration"
    registration.write_text("".join(lines), encoding="utf-8")
    schema = [(space, file) for space, file in compiled if not file.endswith("Registration.mof")]
    run = command("openpegasus", settings["httpPort"], read("cim-schema").split(), schema, registration,
                  [HOME / "lib"])
    started = subprocess.Popen(run, start_new_session=True)
    process.write_text(str(started.pid), encoding="utf-8")
    time.sleep(1)  # it leaves its child behind


def main():
    if words := read("last-words"):
        sys.exit(words)
    {"sfcbd": sfcbd, "cimserver": cimserver}[NAME](sys.argv[1:])


if __name__ == "__main__":
    main()
