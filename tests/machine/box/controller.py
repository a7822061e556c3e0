"""A management controller that runs beside the machine: the OpenIPMI simulator, with an enclosure's module in it."""

import pathlib
import signal
import socket
import subprocess
import time

from .processes import end_with_us
from .words import BoxError, program

IDENTITY = "no-device-sdrs 0x23 9 8 0x9f 0x7ed9 0x1002"  # device, revisions, version, features, maker, product


class Controller:
    """On a free loopback port, by the simulator's VM protocol. It takes one client at a time, so that nobody else may
    look at its port."""

    def __init__(self, folder, module=None, identity=IDENTITY):
        """`module`: the enclosure's; without it there is a controller and no enclosure."""
        self.folder = pathlib.Path(folder)
        self.port = None
        self._module = module
        self._process = None
        (self.folder / "state").mkdir(parents=True)
        (self.folder / "commands").write_text(f"mc_setbmc 0x20\nmc_add 0x20 0 {identity}\nmc_enable 0x20\n")

    def start(self):
        """Again on the port that it had."""
        for _ in range(5):  # somebody else may take the port first
            port = self.port or _free_port()
            if self._starts_at(port):
                self.port = port
                return
            time.sleep(0.2)
        raise BoxError(f"ipmi_sim did not start:\n{(self.folder / 'log').read_text()}")

    def _starts_at(self, port):
        lines = ['name "enclosure"', "set_working_mc 0x20", f"  serial 15 127.0.0.1 {port} codec VM"]
        if self._module:
            lines.append(f'loadlib "{self._module}" "{self.folder}"')
        (self.folder / "lan.conf").write_text("\n".join(lines) + "\n")
        command = [program("ipmi_sim"), "-n", "-c", self.folder / "lan.conf", "-f", self.folder / "commands",
                   "-s", self.folder / "state"]
        # SIGPIPE stays ignored, as Python has it: the simulator would die of an answer to a client
        # that has left.
        with open(self.folder / "log", "wb") as log:
            self._process = subprocess.Popen([str(word) for word in command], stdout=log, stderr=log,
                                             stdin=subprocess.DEVNULL, restore_signals=False,
                                             preexec_fn=end_with_us)
        while self._process.poll() is None:
            if _is_listening(port):
                return True
            time.sleep(0.02)
        return False

    def signal(self, number):
        self._process.send_signal(number)

    def freeze(self):
        """It is there, and answers nothing."""
        self.signal(signal.SIGSTOP)

    def thaw(self):
        self.signal(signal.SIGCONT)

    def kill(self):
        if self._process:
            self._process.kill()
            self._process.wait()

    def behave(self, behaviour):
        """How the enclosure answers from now on: "completion NUMBER" or "output LENGTH"."""
        (self.folder / "behaviour").write_text(behaviour)

    def lines(self):
        """The lines of options that arrived at the enclosure."""
        try:
            return (self.folder / "lines").read_text().splitlines()
        except FileNotFoundError:
            return []


def _free_port():
    with socket.create_server(("127.0.0.1", 0)) as taken:
        return taken.getsockname()[1]


def _is_listening(port):
    place = f"0100007F:{port:04X}"
    lines = pathlib.Path("/proc/net/tcp").read_text().splitlines()
    return any(line.split()[1] == place and line.split()[3] == "0A" for line in lines[1:])
