"""Measures alerts from a provider to its subscribers: rows h2.

The floor is a client that posts one stored alert to the same listener over and over.
"""

import contextlib
import http.client
import pathlib
import re
import socket
import tempfile
import time

from server_rows import ROUNDS, Client, Floor, Host, call, running
from table import Row

ALERTS = 4000  # they all find room in a queue
LISTENERS = (1, 8)
ANSWER = (b'<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0">'
          b'<MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEEXPRSP>'
          b'<EXPMETHODRESPONSE NAME="ExportIndication"/></SIMPLEEXPRSP></MESSAGE></CIM>')
REPLY = (b"HTTP/1.1 200 OK\r\nContent-Type: application/xml; charset=utf-8\r\n"
         b"CIMExport: MethodResponse\r\nContent-Length: %d\r\n\r\n" % len(ANSWER)) + ANSWER
SERVICE = call("EnumerateInstances",
               '<IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="CIM_IndicationService"/></IPARAMVALUE>',
               "interop")


def subscriptions(port, count):
    """MOF that subscribes so many listeners to all alerts."""
    keys = ('    SystemCreationClassName = "CIM_ComputerSystem"; SystemName = "bench";\n'
            '    CreationClassName = "{}"; Name = "{}";\n').format
    parts = ["instance of CIM_IndicationFilter as $Filter {\n" + keys("CIM_IndicationFilter", "all") +
             '    Query = "SELECT * FROM KT_AlertIndication"; QueryLanguage = "WQL";\n'
             '    SourceNamespaces = {"root/bench"};\n};\n']
    for number in range(count):
        parts.append(f"instance of CIM_ListenerDestinationCIMXML as $Listener{number} {{\n" +
                     keys("CIM_ListenerDestinationCIMXML", f"listener{number}") +
                     f'    Destination = "http://127.0.0.1:{port}/";\n}};\n'
                     "instance of CIM_IndicationSubscription {\n"
                     f"    Filter = $Filter; Handler = $Listener{number};\n}};\n")
    return "".join(parts)


class AlertHost(Host):
    """A cimhost whose provider raises alerts, with so many listeners at the port."""

    def __init__(self, build, source, folder, port, listeners):
        mof = folder / "subscriptions.mof"
        mof.write_text(subscriptions(port, listeners), encoding="ascii")
        base = source / "schema/base/base.mof"
        super().__init__(build, [
            "--namespace", "interop", "--schema", base, "--schema", mof,
            "--namespace", "root/bench", "--schema", base,
            "--schema", source / "schema/PYL_Indications.mof",
            "--schema", source / "bench/server/alerts.mof",
            "--registration", source / "bench/server/alerts.registration", "--log-level", "warning"])

    def raise_alerts(self, count):
        """The answer comes when all are handed over; most of them wait for their listener then."""
        body = ('<?xml version="1.0" encoding="utf-8"?>'
                '<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ>'
                '<METHODCALL NAME="Raise"><LOCALCLASSPATH><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/>'
                '<NAMESPACE NAME="bench"/></LOCALNAMESPACEPATH><CLASSNAME NAME="Bench_Alerts"/>'
                f'</LOCALCLASSPATH><PARAMVALUE NAME="Count" PARAMTYPE="uint32"><VALUE>{count}</VALUE>'
                "</PARAMVALUE></METHODCALL></SIMPLEREQ></MESSAGE></CIM>")
        connection = http.client.HTTPConnection("127.0.0.1", self.port)
        with contextlib.closing(connection):
            connection.request("POST", "/cimom", body, {
                "Content-Type": "application/xml; charset=utf-8", "CIMOperation": "MethodCall",
                "CIMMethod": "Raise", "CIMObject": "root/bench:Bench_Alerts"})
            answer = connection.getresponse().read()
        if b"<RETURNVALUE" not in answer:
            raise RuntimeError(f"the host raises nothing: {answer!r}")

    def rate(self, count, listeners):
        """Alerts built, handed over and answered by their listeners, a second."""
        begin = time.perf_counter()
        before = self._sent()
        self.raise_alerts(count)
        while self._sent() - before < count * listeners:
            if time.perf_counter() - begin > 60:
                raise RuntimeError("the alerts do not arrive")
            time.sleep(0.001)
        return count * listeners / (time.perf_counter() - begin)

    def _sent(self):
        with socket.create_connection(("127.0.0.1", self.port)) as connection:
            connection.sendall(SERVICE.replace(b"\r\nHost:", b"\r\nConnection: close\r\nHost:", 1))
            answer = b"".join(iter(lambda: connection.recv(65536), b""))
        if re.search(rb"[1-9]\d* dropped", answer):
            raise RuntimeError("alerts were dropped, so that their rate says nothing")
        return sum(map(int, re.findall(rb"(\d+) sent", answer)))


def stored_alert(build, source, folder):
    """The bytes of one alert as it reaches a listener."""
    with socket.create_server(("127.0.0.1", 0)) as listener:
        listener.settimeout(20)
        with running(AlertHost(build, source, folder, listener.getsockname()[1], 1)) as host:
            host.raise_alerts(1)
            connection, _ = listener.accept()
            with connection:
                connection.settimeout(20)
                message = b""
                while b"</CIM>" not in message:
                    message += connection.recv(65536)
                connection.sendall(REPLY)
    return message


def measure(build, source):
    """All rows of alerts in this build folder of the source folder."""
    rows = []
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        alert = stored_alert(build, source, folder)
        reply = folder / "reply"
        reply.write_bytes(REPLY)
        client = Client(build, folder)
        for listeners in LISTENERS:
            with running(Floor(build, reply)) as floor, \
                    running(AlertHost(build, source, folder, floor.port, listeners)) as host:
                ours, floors = [], []
                for _ in range(ROUNDS):
                    ours.append(host.rate(ALERTS, listeners))
                    floors.append(client.load(floor.port, alert, listeners, ALERTS)[2])
            rows.append(Row("h2", f"alerts built and delivered to {listeners} ({len(alert):,} B)",
                            f"{max(ours):,.0f}/s", f"{max(floors):,.0f}/s",
                            f"{max(ours) / max(floors):.2f}", "", None))
    return rows
