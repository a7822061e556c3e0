#!/usr/bin/env python3
"""Shows a whole server through a real WBEM client: ./demo --server NAME.

    show.py CIMHOST NAME
"""

import pathlib
import shlex
import subprocess
import sys
import time

from box.__main__ import enclosure_module, serve_command
from box.machine import Machine
from box.server import read_server
from box.words import BoxError

LIMIT = 60  # seconds for whatever is waited for


class Show:
    def __init__(self, machine, program):
        self._machine = machine
        self._program = program
        self._url = machine.address
        self._space = f"{self._url}/root/ktq"

    def all(self):
        self._identity()
        self._devices()
        self._profiles()
        if self._machine.server.chips:
            self._subscribe()
            for name in ("fan1-slows", "fan1-stops", "fan1-fails", "fan1-comes-back"):
                if name in self._machine.server.changes:
                    self._change(name)
            self._heat()
        self._test_events()

    # Pieces

    def _identity(self):
        title("What its kernel was told by its firmware")
        self._inside("dmidecode -q -t 1 -t 3 | grep -v '^$'", 24)
        title("What a WBEM client learns of it")
        self._wbemcli("ei", "-nl", f"{self._space}:PYL_ComputerSystem", lines=30)
        self._wbemcli("ei", "-nl", f"{self._space}:PYL_ComputerSystemChassis", lines=20)

    def _devices(self):
        title("Its PCI devices: as the kernel lists them, and by their names")
        self._inside("lspci -tv", 30)
        answer = self._answered("ei", "-nl", f"{self._space}:PYL_PCIDevice")
        wanted = ("-DeviceID", "-ElementName", "-PhysicalSlot")
        for device in answer.strip().split("\n\n"):
            values = [line.split("=", 1)[1] for line in device.splitlines() if line.startswith(wanted)]
            print("  " + "  ".join(values))

    def _profiles(self):
        title("The profiles that it conforms to")
        system = self._answered("ein", f"{self._space}:PYL_ComputerSystem").strip().split(":", 2)[2]
        self._wbemcli("ai", "-nl", "-ac", "PYL_ElementConformsToProfile", f"{self._space}:{system}", lines=20)

    def _subscribe(self):
        title("A listener in it, subscribed to its alerts")
        self._machine.ask(f"setsid {self._program} listen --port 5990 >/run/alerts 2>&1 &")
        made, to = (self._path(name) for name in ("CIM_IndicationFilter", "CIM_ListenerDestinationCIMXML"))
        interop = f"{self._url}/interop"
        self._wbemcli("ci", f"{interop}:{to}", 'Name="show",Destination="http://127.0.0.1:5990/"')
        self._wbemcli("ci", f"{interop}:{made}", 'Name="show",Query="SELECT * FROM KT_AlertIndication",'
                                                 'QueryLanguage="WQL",SourceNamespaces="root/ktq"')
        self._wbemcli("ci", f"{interop}:CIM_IndicationSubscription.Filter={made},Handler={to}",
                      f"Filter={made},Handler={to}")
        wait(lambda: "WBEM Providers started" in self._alerts())

    def _change(self, name):
        title(f"Its sensors: {name}")
        heard, told = len(self._alerts()), self._enclosure()
        self._machine.change(name)
        time.sleep(5)  # the provider looks each two seconds
        self._wbemcli("ei", "-nl", f"{self._space}:PYL_Fan", only=("-DeviceID", "-CurrentSpeed", "-OperationalStatus"))
        self._wbemcli("ei", "-nl", f"{self._space}:PYL_ConsolidatedStatus", only=("-ElementName", "-OperationalStatus"))
        self._show_alerts(heard)
        self._show_enclosure(told)

    def _heat(self):
        if "heat" not in self._machine.server.changes:
            return
        title("Its temperatures, before and after heat")
        show = "grep . /sys/class/hwmon/hwmon*/temp*_input"
        self._inside(show)
        self._machine.change("heat")
        time.sleep(3)  # drivers keep what they read for a while
        self._inside(show)

    def _test_events(self):
        if not self._machine.controller:
            return
        title("Root's trigger for test events, and what the enclosure receives")
        told = self._enclosure()
        self._inside("touch /tmp/PYL.test")
        wait(lambda: len(self._machine.controller.lines()) >= told + 3)
        self._show_enclosure(told)

    # Ways to show

    def _path(self, class_name):
        return (f'{class_name}.SystemCreationClassName="CIM_ComputerSystem",'
                f'SystemName="{self._machine.server.host_name}",CreationClassName="{class_name}",Name="show"')

    def _alerts(self):
        return self._machine.ask("cat /run/alerts")

    def _enclosure(self):
        return len(self._machine.controller.lines()) if self._machine.controller else 0

    def _show_alerts(self, heard):
        text = self._alerts()[heard:].strip()
        print("\nThe listener heard:" if text else "\n(The listener heard nothing.)")
        wanted = ("Summary", "Description", "PerceivedSeverity", "HWLogicalLocation", "EnclosureName",
                  "SystemSerialNumber", "SystemVirtualSerialNumber")
        for line in text.splitlines():
            if line.startswith("20") or line.strip().startswith(wanted):
                print("  " + line.strip()[:160])

    def _show_enclosure(self, told):
        lines = self._machine.controller.lines()[told:] if self._machine.controller else []
        if lines:
            print("\nThe enclosure was told:")
        for line in lines:
            print("  " + line)

    def _inside(self, command, lines=12):
        print(f"\n{self._machine.server.host_name}# {command}")
        head(self._machine.run(command).text.rstrip(), lines)

    def _answered(self, operation, *words):
        return answered(operation, *self._machine.client_options, *words)

    def _wbemcli(self, operation, *words, lines=12, only=()):
        words = (operation, *self._machine.client_options, *words)
        print("\n$ wbemcli " + shlex.join(words), flush=True)
        text = "\n".join(line for line in answered(*words).splitlines() if line.strip())
        if only:
            text = "\n".join(line for line in text.splitlines() if line.startswith(only))
        head(text, lines)


def answered(*words):
    """What wbemcli printed of a request that is to be answered."""
    answer = subprocess.run(["wbemcli", *words], capture_output=True, text=True, check=False)
    if answer.returncode != 0:
        raise BoxError(f"That should have been answered:\n{answer.stdout}{answer.stderr}")
    return answer.stdout


def title(text):
    print(f"\n== {text}", flush=True)


def head(text, limit):
    lines = text.splitlines()
    for line in lines[:limit]:
        print(line[:200])
    if len(lines) > limit:
        print(f"... and {len(lines) - limit} lines more")
    sys.stdout.flush()


def wait(is_so):
    deadline = time.monotonic() + LIMIT
    while not is_so():
        if time.monotonic() > deadline:
            raise BoxError("What was waited for did not come.")
        time.sleep(0.2)


def main():
    program, name = pathlib.Path(sys.argv[1]).resolve(), sys.argv[2]
    try:
        server = read_server(name)
        print(f"Starting the server {name}: {server.title}", flush=True)
        with Machine(server, enclosure_module=enclosure_module(program)) as machine:
            machine.serve(serve_command(program))
            print(f"Its kernel, drivers and object manager are up after {machine.ready_seconds:.0f} s.")
            Show(machine, program).all()
    except BoxError as error:
        sys.exit(f"{error}")
    print(f"\nThat was {name}; it is off, and nothing is left of it. To keep one running:\n"
          f"    {sys.argv[1]} box --server {name}")


if __name__ == "__main__":
    main()
