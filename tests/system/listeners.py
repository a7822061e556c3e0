"""Listeners for indications: cimhost's own, and some that no sender would wish for."""

import re
import signal
import socket
import subprocess
import threading

from host import BUILD

ANSWER = ('<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.4">'
          '<MESSAGE ID="1" PROTOCOLVERSION="1.4"><SIMPLEEXPRSP>'
          '<EXPMETHODRESPONSE NAME="ExportIndication">{}</EXPMETHODRESPONSE>'
          "</SIMPLEEXPRSP></MESSAGE></CIM>")


class DeadListener:
    """An address that refuses every connection, and is nobody else's until it is closed."""

    def __init__(self):
        self._socket = socket.socket()
        self._socket.bind(("127.0.0.1", 0))
        self.url = f"http://127.0.0.1:{self._socket.getsockname()[1]}/"

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self._socket.close()


class ListenCommand:
    """`cimhost listen` on a free port; use with `with`."""

    def __init__(self, *options):
        command = [str(BUILD / "cimhost/cimhost"), "listen", "--port", "0", "--max-seconds", "160",
                   *map(str, options)]
        self.process = subprocess.Popen(command, stdout=subprocess.PIPE, text=True)
        ready = self.process.stdout.readline()
        found = re.search(r"http://\S+", ready)
        if not found:
            raise RuntimeError(f"cimhost listen did not start: {ready}")
        self.url = found.group(0)
        self._changed = threading.Condition()
        self._lines = []
        self._read = 0
        self._reader = threading.Thread(target=self._collect, daemon=True)
        self._reader.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()

    @property
    def text(self):
        with self._changed:
            return "".join(self._lines)

    def _collect(self):
        """Always reads: a listener that cannot print takes nothing more."""
        for line in self.process.stdout:
            with self._changed:
                self._lines.append(line)
                self._changed.notify_all()

    def read_until(self, pattern, seconds=60):
        """The next line that matches."""
        def is_there():
            while self._read < len(self._lines):
                self._read += 1
                if re.search(pattern, self._lines[self._read - 1]):
                    return True
            return False

        with self._changed:
            if self._changed.wait_for(is_there, seconds):
                return self._lines[self._read - 1]
        raise AssertionError(f"no line {pattern!r} in:\n{self.text}")

    def stop(self):
        """The number of indications that it says it received."""
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        self.process.wait(timeout=30)
        self._reader.join(timeout=30)
        self.process.stdout.close()
        found = re.search(r"received (\d+) indications", self.text)
        return int(found.group(1)) if found else None


class Listener:
    """A listener that answers each message as `answer(number, body)` says: bytes to send, of which
    empty ones close the connection, or None to say nothing until the test ends."""

    def __init__(self, answer=None):
        self._answer = answer or (lambda number, body: reply(ANSWER.format("")))
        self._changed = threading.Condition()
        self._connections = []
        self.bodies = []
        self.ended = threading.Event()
        self._socket = socket.create_server(("127.0.0.1", 0))
        self.url = f"http://localhost:{self._socket.getsockname()[1]}/take"
        threading.Thread(target=self._accept, daemon=True).start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self.ended.set()
        for each in [self._socket, *self._connections]:
            try:
                each.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass
            each.close()

    def wait_for(self, count, seconds=60):
        with self._changed:
            if not self._changed.wait_for(lambda: len(self.bodies) >= count, seconds):
                raise AssertionError(f"{len(self.bodies)} of {count} messages came")
            return list(self.bodies)

    def _accept(self):
        while True:
            try:
                connection, _ = self._socket.accept()
            except OSError:
                return
            self._connections.append(connection)
            threading.Thread(target=self._serve, args=(connection,), daemon=True).start()

    def _serve(self, connection):
        try:
            with connection, connection.makefile("rb") as stream:
                while (body := self._read(stream)) is not None:
                    with self._changed:
                        number = len(self.bodies)
                        self.bodies.append(body)
                        self._changed.notify_all()
                    answer = self._answer(number, body)
                    if answer is None:
                        self.ended.wait(120)
                        return
                    if not answer:
                        return
                    connection.sendall(answer)
        except OSError:
            pass

    @staticmethod
    def _read(stream):
        length = None
        while line := stream.readline():
            if line == b"\r\n":
                return stream.read(length).decode()
            name, _, value = line.partition(b":")
            if name.lower() == b"content-length":
                length = int(value)
        return None


def reply(text, status="200 OK"):
    body = text.encode()
    head = (f"HTTP/1.1 {status}\r\nContent-Type: text/xml\r\nCIMExport: MethodResponse\r\n"
            f"Content-Length: {len(body)}\r\n\r\n")
    return head.encode() + body


def good():
    return reply(ANSWER.format(""))
