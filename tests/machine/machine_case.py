"""A server in the box with an object manager inside, asked with wbemcli from outside."""

import os
import pathlib
import re
import subprocess
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from box.__main__ import enclosure_module, serve_command
from box.machine import Machine
from box.server import read_server

BUILD = pathlib.Path(os.environ["PYL_BUILD_FOLDER"])
PROGRAM = BUILD / "cimhost/cimhost"


class Instance(dict):
    """Properties that have a value, as wbemcli writes them; arrays are lists. Its path is without server."""

    def __init__(self, path, properties):
        super().__init__(properties)
        self.path = path


def instances_in(text):
    """What `wbemcli ei -nl` printed."""
    found = []
    for block in re.split(r"\n\s*\n", text.strip()):
        path, *lines = block.strip().splitlines()
        properties = {}
        for line in lines:
            name, _, value = line.removeprefix("-").partition("=")
            properties[name] = _value(value)
        found.append(Instance(path.split(":", 2)[-1], properties))
    return found


def _value(text):
    words = re.findall(r'"((?:[^"\\]|\\.)*)"(?:,|$)', text)
    if not words:
        return text
    return words[0] if len(words) == 1 else words


class MachineCase(unittest.TestCase):
    """One boot for all tests of a class."""

    server = None  # its name
    drives = ()
    serves = True
    memory = None

    @classmethod
    def setUpClass(cls):
        cls.machine = Machine(read_server(cls.server), memory=cls.memory, drives=cls.drives,
                              enclosure_module=enclosure_module(PROGRAM))
        cls.machine.__enter__()
        cls.addClassCleanup(cls.machine.close)
        if cls.serves:
            cls.serve()
        print(f"{cls.server}: ready after {cls.machine.ready_seconds:.0f} s", file=sys.stderr)

    @classmethod
    def serve(cls, *options):
        cls.machine.serve([*serve_command(PROGRAM), *options])

    def log(self):
        return "\n".join(self.machine.console[-60:])

    def ask(self, *words, namespace="root/ktq", options=()):
        """wbemcli OPERATION ":Class..." [DATA]: what it printed; the test fails when it was refused."""
        operation, target, *data = words
        command = ["wbemcli", operation, *self.machine.client_options, *options,
                   f"{self.machine.address}/{namespace}{target}", *data]
        answer = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=180,
                                check=False)
        self.assertEqual(0, answer.returncode, answer.stdout + self.log())
        return answer.stdout

    def instances(self, class_name, namespace="root/ktq"):
        text = self.ask("ei", f":{class_name}", namespace=namespace, options=["-nl"])
        return instances_in(text) if text.strip() else []

    def instance(self, class_name):
        found = self.instances(class_name)
        self.assertEqual(1, len(found), found)
        return found[0]

    def work(self):
        """Has the base server's worker read the hardware and post its state; what the client printed."""
        worker = self.ask("ein", ":PYL_BaseServerWorker").strip().split(":", 2)[2]
        return self.ask("cm", f":{worker}", "PerformWork")

    def wait_until(self, is_so, seconds=180):
        deadline = time.monotonic() + seconds
        while not is_so():
            self.assertLess(time.monotonic(), deadline, self.log())
            time.sleep(0.2)

    # What the programs of others say, inside.

    def firmware(self, kind):
        """dmidecode's fields of the first record of a type; what is not given is not there."""
        text = self.machine.ask(f"dmidecode -q -t {kind}")
        first = text.strip().split("\n\n")[0]
        fields = dict(re.findall(r"^\t(\S[^:\n]*): (.*)$", first, re.MULTILINE))
        return {name: value.strip() for name, value in fields.items() if value.strip() not in ("Not Specified", "")}

    def devices(self):
        """lspci's devices by their addresses, with numbers as numbers."""
        devices = {}
        for block in self.machine.ask("lspci -Dvmmknn").strip().split("\n\n"):
            fields = dict(line.split(":\t", 1) for line in block.splitlines())
            devices[fields["Slot"]] = fields
        return devices
