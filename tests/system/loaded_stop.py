"""A server that is stopped while clients ask it, for the test of such stops and for what measures them."""

import contextlib
import http.client
import threading
import time

from clients_test import SERVED, Reader
from host import Host
from wire import call

ASKING = 4
OPERATION = "EnumerateInstanceNames"
REQUEST = call('<IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="TST_Member"/></IPARAMVALUE>', operation=OPERATION)
HEADERS = {"CIMOperation": "MethodCall", "CIMMethod": OPERATION, "CIMObject": "root%2Fktq"}


def ask_until_closed(port, cut, broken):
    """Asks on one connection until the server closes it, and tells replies that did not come whole from those that
    a client would take for whole."""
    connection = http.client.HTTPConnection("127.0.0.1", port, timeout=20)
    with contextlib.closing(connection):
        while True:
            try:
                connection.request("POST", "/cimom", REQUEST, HEADERS)
                reply = connection.getresponse()
            except (OSError, http.client.HTTPException):
                return
            try:
                body = reply.read()
            except (OSError, http.client.HTTPException) as error:
                cut.append(repr(error))
                return
            # A request that had not fully arrived when the server stopped is answered 503.
            if reply.status != 503 and not body.rstrip().endswith(b"</CIM>"):
                broken.append(body[-200:])
            if reply.will_close:
                return


class LoadedStop:
    """One stop beside clients that ask, and others that never read: its exit status, its seconds, what the server
    logged, and which replies were at fault. All must come whole, but where clients that never read keep the provider
    busy until the second is over: there a reply may end early, if only its client can see it."""

    def __init__(self, number, silent):
        host = Host(arguments=SERVED)
        never = [Reader(host.port) for _ in range(silent)]
        cut, broken = [], []
        threads = [threading.Thread(target=ask_until_closed, args=(host.port, cut, broken))
                   for _ in range(ASKING)]
        for thread in threads:
            thread.start()
        time.sleep(0.002 * (number % 10))
        began = time.monotonic()
        self.status = host.stop()
        self.seconds = time.monotonic() - began
        self.log = host.log()
        for thread in threads:
            thread.join()
        for client in never:
            client.socket.close()
        self.faults = broken if silent else broken + cut
