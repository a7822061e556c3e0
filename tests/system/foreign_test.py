"""Pages of other sites, and host names that were made to stand for this machine."""

import re
import socket
import subprocess
import unittest

from host import BUILD, Host
from wbemcli_test import WIDGETS
from wire import Wire, envelope

CALL = envelope("<SIMPLEREQ><METHODCALL NAME='Greet'><LOCALCLASSPATH><LOCALNAMESPACEPATH>"
                "<NAMESPACE NAME='root'/><NAMESPACE NAME='test'/></LOCALNAMESPACEPATH>"
                "<CLASSNAME NAME='TST_Widget'/></LOCALCLASSPATH></METHODCALL></SIMPLEREQ>")
FIELDS = ("CIMOperation: MethodCall", "CIMMethod: Greet", "CIMObject: root/test:TST_Widget")


def request(host, *lines, start="POST /cimom HTTP/1.1", fields=FIELDS, body=CALL):
    """One whole request; `host` stands in its Host header, if it is not None."""
    lines = (start, *(() if host is None else (f"Host: {host}",)), *fields, *lines, f"Content-Length: {len(body)}")
    return "".join(f"{line}\r\n" for line in lines).encode() + b"\r\n" + body.encode()


class Foreign(unittest.TestCase):
    """Each test invokes a method of a provider, or tries to."""

    @classmethod
    def setUpClass(cls):
        cls.host = Host("--access-log", "-", "--host-name", "cim.example", arguments=WIDGETS)
        cls.own = f"localhost:{cls.host.port}"

    @classmethod
    def tearDownClass(cls):
        cls.host.stop()

    def ask(self, *arguments, **options):
        with Wire(self.host.port) as wire:
            return wire.exchange(request(*arguments, **options))

    def assert_served(self, *arguments, **options):
        status, _, body = self.ask(*arguments, **options)
        self.assertEqual(200, status, body)
        self.assertIn(b"hello", body)

    def assert_refused(self, status, words, *arguments, **options):
        found, head, body = self.ask(*arguments, **options)
        self.assertEqual(status, found, arguments)
        self.assertIn(words, body)
        self.assertNotIn(b"hello", body)
        self.assertNotIn("Access-Control", head)
        self.assertNotIn("CIMOperation", head)

    def test_a_client_that_is_no_browser_is_served(self):
        self.assert_served(self.own)
        self.assert_served(None, start="POST /cimom HTTP/1.0")

    def test_a_page_of_the_server_itself_is_served(self):
        for host in (self.own, f"127.0.0.1:{self.host.port}", f"cim.example:{self.host.port}"):
            self.assert_served(host, f"Origin: http://{host}", "Sec-Fetch-Site: same-origin")
        self.assert_served(self.own, "Sec-Fetch-Site: none")

    def test_a_page_of_another_site_invokes_nothing(self):
        for lines in (("Origin: http://evil.example",), ("Origin: null",), ("Origin: http://localhost:3000",),
                      (f"Origin: https://{self.own}",), ("Sec-Fetch-Site: cross-site",),
                      ("Sec-Fetch-Site: same-site",), (f"Origin: http://{self.own}", "Sec-Fetch-Site: cross-site"),
                      (f"Origin: http://{self.own}", "Origin: http://evil.example")):
            with self.subTest(lines):
                self.assert_refused(403, b"page of another site", self.own, *lines)

    def test_a_page_whose_host_name_was_lent_this_machines_address_invokes_nothing(self):
        """To the browser the server is then a part of the page's site: the origin is the same."""
        for name in ("evil.example", "localhost.evil.example", "127.0.0.1.evil.example", "xlocalhost"):
            host = f"{name}:{self.host.port}"
            with self.subTest(name):
                self.assert_refused(421, b"--host-name NAME", host, f"Origin: http://{host}",
                                    "Sec-Fetch-Site: same-origin")
                self.assert_refused(421, b"--host-name NAME", host)
                self.assert_refused(421, b"--host-name NAME", self.own, start=f"POST http://{host}/cimom HTTP/1.1")

    def test_a_page_is_promised_nothing_when_it_asks_beforehand(self):
        self.assert_refused(405, b"", self.own, "Origin: http://evil.example", "Access-Control-Request-Method: POST",
                            "Access-Control-Request-Headers: cimmethod,cimobject,cimoperation",
                            start="OPTIONS /cimom HTTP/1.1", fields=(), body="")

    def test_a_form_of_another_site_invokes_nothing(self):
        """It needs to ask nobody beforehand, and cannot send CIM headers."""
        self.assert_refused(403, b"page of another site", self.own, "Origin: http://evil.example",
                            "Content-Type: text/plain", fields=())

    def test_a_page_of_another_site_may_link_to_the_console_and_load_nothing_of_it(self):
        get = {"fields": (), "body": ""}
        foreign = "Sec-Fetch-Site: cross-site"
        status, _, _ = self.ask(self.own, foreign, start="GET / HTTP/1.1", **get)
        self.assertIn(status, (200, 404), "404 says how to get the page")
        for path in ("/events", "/console.js", "/console.css", "/nothing"):
            for line in (foreign, "Origin: http://evil.example"):
                with self.subTest(path, line=line):
                    self.assert_refused(403, b"page of another site", self.own, line,
                                        start=f"GET {path} HTTP/1.1", **get)
        for path in ("/", "/events"):
            with self.subTest(path):
                self.assert_refused(421, b"--host-name NAME", "evil.example", start=f"GET {path} HTTP/1.1", **get)

    def test_this_machines_own_names_are_served(self):
        names = {socket.gethostname(), socket.getfqdn(), "localhost", "127.0.0.1", "[::1]", "cim.localhost"}
        for name in names:
            with self.subTest(name):
                self.assert_served(f"{name}:{self.host.port}")

    def test_the_log_tells_of_refusals_and_names_no_operation(self):
        with Host("--access-log", "-", arguments=WIDGETS) as host:
            for data in (request("evil.example"), request("localhost", "Origin: null")):
                with Wire(host.port) as wire:
                    wire.exchange(data)
            lines = [host.process.stdout.readline() for _ in range(2)]
        self.assertRegex(lines[0], r" - POST /cimom 421 ")
        self.assertRegex(lines[1], r" - POST /cimom 403 ")


class ForeignAlerts(unittest.TestCase):
    def test_listener_prints_nothing_for_a_page_of_another_site(self):
        with subprocess.Popen([BUILD / "cimhost/cimhost", "listen", "--port", "0", "--max-seconds", "60",
                               "--host-name", "alerts.example"], stdout=subprocess.PIPE, text=True) as listener:
            port = int(re.search(r":(\d+)/", listener.stdout.readline())[1])
            export = {"fields": ("CIMExport: MethodRequest", "CIMExportMethod: ExportIndication"), "body": "<CIM/>"}
            for status, host, lines in ((403, "localhost", ("Origin: http://evil.example",)),
                                        (421, "evil.example", ()), (406, "alerts.example", ())):
                with self.subTest(host), Wire(port) as wire:
                    self.assertEqual(status, wire.exchange(request(host, *lines, **export))[0])
            listener.terminate()
            self.assertEqual("cimhost received 0 indications\n", listener.stdout.read())


if __name__ == "__main__":
    unittest.main()
