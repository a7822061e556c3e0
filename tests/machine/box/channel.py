"""Commands for the guest, and QEMU's own monitor: two sockets of QEMU."""

import dataclasses
import json
import os
import re
import socket
import threading

from .words import BoxError


@dataclasses.dataclass
class Result:
    status: int
    text: str


class ShellChannel:
    """A shell behind a port of the guest. One command at a time, from any thread."""

    def __init__(self, path):
        self._socket = _connect(path)
        self._device = None
        self._lock = threading.Lock()

    def run(self, command, seconds=180):
        """Runs it to its end; its two outputs are one. Its standard input is empty."""
        mark = f"box-{os.urandom(8).hex()}"
        # What stays in the background must not hold the port: its output is the command's own file.
        text = (f"( {command}\n) >/run/box-output 2>&1 </dev/null 3>&-; box_status=$?; "
                f"{{ cat /run/box-output; echo; echo {mark} $box_status; }} >&3\n")
        with self._lock:
            self._socket.settimeout(seconds)
            self._socket.sendall(text.encode())
            return self._answer(mark.encode(), command)

    def _answer(self, mark, command):
        received = b""
        pattern = re.compile(b"\n" + mark + rb" (\d+)\n")
        while not (found := pattern.search(received)):
            try:
                more = self._socket.recv(1 << 20)
            except TimeoutError:
                raise BoxError(f"The guest did not end this in time: {command}\n"
                               f"{received.decode(errors='replace')}") from None
            if not more:
                raise BoxError(f"The machine ended in the middle of: {command}")
            received += more
        return Result(int(found.group(1)), received[:found.start()].decode(errors="replace"))

    def close(self):
        self._socket.close()


class Monitor:
    """QEMU's monitor (QMP)."""

    def __init__(self, path):
        self._socket = _connect(path)
        self._socket.settimeout(30)
        self._lines = self._socket.makefile("r", encoding="utf-8")
        self._events = []
        self._next()  # its greeting
        self.ask("qmp_capabilities")

    def ask(self, command, **arguments):
        """What it answers. Raises BoxError with its reason when it refuses."""
        message = {"execute": command}
        if arguments:
            message["arguments"] = {name.replace("_", "-"): value for name, value in arguments.items()}
        self._socket.sendall(json.dumps(message).encode() + b"\n")
        while True:
            answer = self._next()
            if "event" in answer:
                self._events.append(answer)
            if "error" in answer:
                raise BoxError(f"QEMU refused {command}: {answer['error']['desc']}")
            if "return" in answer:
                return answer["return"]

    def human(self, line):
        """For what only people may ask."""
        return self.ask("human-monitor-command", command_line=line)

    def wait_for(self, name, device):
        """Until this event has come of this device."""
        while True:
            for event in self._events:
                if event["event"] == name and event.get("data", {}).get("device") == device:
                    self._events.remove(event)
                    return
            self._events.append(self._next())

    def _next(self):
        line = self._lines.readline()
        if not line:
            raise BoxError("QEMU has ended.")
        return json.loads(line)

    def close(self):
        self._lines.close()
        self._socket.close()


def _connect(path):
    connection = socket.socket(socket.AF_UNIX)
    connection.connect(str(path))
    return connection
