"""HTTP as bytes, for what no well-behaved client sends."""

import socket

OPERATION = "EnumerateClassNames"


def envelope(inside, version="2.0", protocol="1.0"):
    return (f'<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="{version}" DTDVERSION="2.0">'
            f'<MESSAGE ID="1" PROTOCOLVERSION="{protocol}">{inside}</MESSAGE></CIM>')


def call(parameters="", namespace="root/ktq", operation=OPERATION):
    names = "".join(f'<NAMESPACE NAME="{name}"/>' for name in namespace.split("/"))
    return envelope(f'<SIMPLEREQ><IMETHODCALL NAME="{operation}"><LOCALNAMESPACEPATH>{names}'
                    f"</LOCALNAMESPACEPATH>{parameters}</IMETHODCALL></SIMPLEREQ>")


def head(*lines, operation=OPERATION, target="root/ktq"):
    """A request's head without the empty line that ends it."""
    fields = ("POST /cimom HTTP/1.1", "Host: localhost", "CIMOperation: MethodCall",
              f"CIMMethod: {operation}", f"CIMObject: {target}", *lines)
    return "".join(f"{line}\r\n" for line in fields).encode()


def post(body, *lines, **names):
    """A whole request with a body, of which text goes out as UTF-8."""
    data = body.encode() if isinstance(body, str) else body
    return head(f"Content-Length: {len(data)}", *lines, **names) + b"\r\n" + data


class Wire:
    """A connection to a server. A wait that takes a minute is a failed test, not a slow one."""

    def __init__(self, port):
        self.socket = socket.create_connection(("127.0.0.1", port), timeout=60)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.socket.close()

    def send(self, data):
        """False when the server has closed the connection under it."""
        try:
            self.socket.sendall(data)
            return True
        except (BrokenPipeError, ConnectionResetError):
            return False

    def end(self):
        """Nothing more will be sent."""
        try:
            self.socket.shutdown(socket.SHUT_WR)
        except OSError:
            pass  # the server was faster

    def read_all(self):
        """What comes until the server closes the connection."""
        received = b""
        try:
            while data := self.socket.recv(65536):
                received += data
        except ConnectionResetError:
            pass
        return received

    def exchange(self, data):
        """The status, head and body of the reply to the last request on this connection."""
        self.send(data)
        self.end()
        reply_head, _, body = self.read_all().partition(b"\r\n\r\n")
        words = reply_head.split(b" ", 2)
        status = int(words[1]) if len(words) > 1 else None
        return status, reply_head.decode(), body
