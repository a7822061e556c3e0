"""The stream of events: requests, log lines and alerts as they happen."""

import contextlib
import http.client
import json
import pathlib
import tempfile
import unittest

from host import BUILD, SOURCE, Host
from indications_test import INVALID_NAMESPACE, SubscribedCase

SINS = SOURCE / "tests/system/sins"


class Stream:
    """Someone who looks. Use with `with`; after that there was a hello."""

    def __init__(self, host):
        self._connection = http.client.HTTPConnection(host.address, host.port, timeout=60)
        self._connection.request("GET", "/events")
        self.reply = self._connection.getresponse()
        name, self.hello = self.next()
        if name != "hello":
            raise AssertionError(name)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.reply.close()
        self._connection.close()

    def next(self):
        """The name and the data of the next event, or (None, None) at the end."""
        name = data = None
        while line := self.reply.readline().decode():
            field, _, value = line.rstrip("\n").partition(": ")
            if field == "event":
                name = value
            elif field == "data":
                data = json.loads(value)
            elif name and not line.strip():
                return name, data
        return None, None

    def until(self, wanted, **values):
        """The data of the next event of this name that has these values."""
        while True:
            name, data = self.next()
            if name is None:
                raise AssertionError(f"no {wanted} {values}")
            if name == wanted and values.items() <= data.items():
                return data


class EventsCase(SubscribedCase):
    def setUp(self):
        super().setUp()
        self.streams = contextlib.ExitStack()
        self.addCleanup(self.streams.close)

    def start(self):
        registration = pathlib.Path(self.folder.name) / "gone.registration"
        registration.write_text("CIM_IndicationFilter root/test GoneProvider gone instance\n")
        super().start("--registration", registration)

    def stream(self):
        return self.streams.enter_context(Stream(self.host))

    def check_lines(self, providers):
        stream = self.stream()
        self.ask("ein", ":CIM_IndicationFilter", namespace="root/test")
        line = stream.until("log")
        self.assertEqual(("error", "GoneProvider", "EnumerateInstanceNames"),
                         tuple(line[key] for key in ("level", "component", "operation")))
        self.assertIn("module gone cannot be loaded: libgone.so was not found", line["text"])
        request = stream.until("request", number=line["request"])
        self.assertEqual(providers, request["providers"])

    def check_alerts(self):
        stream = self.stream()
        self.subscribe("console:", name="page")
        self.ring()
        alert = stream.until("alert", filter="page")
        self.assertTrue(alert["instance"].startswith('<INSTANCE CLASSNAME="TST_Alarm">'), alert)
        self.wait_for_status("page: 1 raised, 1 sent, 0 dropped, 0 waiting")
        self.streams.close()
        for count in range(2, 1000):  # until it is known that nobody looks
            self.ring()
            status = self.wait_for_status(f"page: {count} raised")
            if "0 dropped" not in status:
                break
        self.assertRegex(status, rf"page: {count} raised, {count - 1} sent, 1 dropped")
        self.unsubscribe("page")


class Events(EventsCase):
    def test_they_begin_with_a_hello(self):
        stream = self.stream()
        self.assertEqual(("text/event-stream", "no-store"),
                         (stream.reply.getheader("Content-Type"), stream.reply.getheader("Cache-Control")))
        version = stream.hello.pop("version")
        self.assertRegex(version, r"^\d+\.\d+\.\d+$")
        self.assertEqual({"program": "cimhost", "target": None, "destination": "console:", "logs": True},
                         stream.hello)

    def test_each_request_is_one_with_what_is_known_of_it(self):
        stream = self.stream()
        self.good("cm", ":TST_Bell", "Told", namespace="root/test")
        told = stream.until("request", operation="Told")
        self.assertEqual(("Told", "TST_Bell", ["BellProvider"], 200, "", ""),
                         tuple(told[key] for key in ("operation", "className", "providers", "status",
                                                     "outcome", "user")))
        self.assertRegex(told["time"], r"^\d{4}-\d\d-\d\dT[0-9:.]+Z$")
        self.assertTrue(told["object"].startswith("root/test:TST_Bell"), told)
        self.assertTrue(told["peer"].startswith("127.0.0.1:"), told)
        self.assertLess(0, told["bytes"])
        self.assertLess(0, told["micros"])
        self.ask("gc", ":TST_Bell", namespace="root/nowhere")
        refused = stream.until("request")
        self.assertEqual(("GetClass", "TST_Bell", [], str(INVALID_NAMESPACE), told["number"] + 1),
                         tuple(refused[key] for key in ("operation", "className", "providers", "outcome",
                                                        "number")))

    def test_each_log_line_is_one_with_the_number_of_its_request(self):
        self.check_lines([])

    def test_each_indication_for_the_console_is_one(self):
        self.check_alerts()

    def test_they_end_with_the_server(self):
        stream = self.stream()
        self.assertEqual(0, self.host.stop(), self.host.log())
        while stream.next() != (None, None):
            pass


class IsolatedEvents(EventsCase):
    options = ("--isolate",)

    def test_lines_from_the_process_of_a_module_are_events_too(self):
        self.check_lines(["GoneProvider"])

    def test_indications_from_the_process_of_a_module_are_events_too(self):
        self.check_alerts()


class EventsOfACrash(unittest.TestCase):
    def test_its_words_are_lines_of_the_module(self):
        with Host("--isolate", arguments=(
                "--namespace", "root/test", "--schema", SOURCE / "schema/base/base.mof",
                "--schema", SINS / "Sins.mof", "--registration", SINS / "sins.registration",
                "--provider-dir", BUILD / "tests/system/sins")) as host, Stream(host) as stream:
            host.ask("cm", ":TST_Sin", "Commit.Sin=leave", namespace="root/test")
            line = stream.until("log", component="sins", level="error")
            self.assertIn("the module's process ended with 7", line["text"])
            self.assertEqual("1", stream.until("request")["outcome"])


class NoConsole(unittest.TestCase):
    def test_there_are_none_and_no_namespace_of_its_own(self):
        with Host("--no-console") as host:
            connection = http.client.HTTPConnection(host.address, host.port, timeout=60)
            connection.request("GET", "/events")
            self.assertEqual(405, connection.getresponse().status)
            connection.close()
            answer = host.ask("ei", ":CIMHOST_Module", namespace="root/cimhost")
            self.assertEqual(INVALID_NAMESPACE, answer.cim_error, answer.text)


if __name__ == "__main__":
    unittest.main()
