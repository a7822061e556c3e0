"""cimhost as a program: how it starts, refuses to start, and stops."""

import http.client
import os
import pathlib
import shutil
import socket
import subprocess
import tempfile
import time
import unittest

from host import BASE_SERVER, BUILD, SOURCE, Host, long
from loaded_stop import LoadedStop

REQUEST = (
    '<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0">'
    '<MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ><IMETHODCALL NAME="EnumerateInstances">'
    '<LOCALNAMESPACEPATH><NAMESPACE NAME="root"/><NAMESPACE NAME="ktq"/></LOCALNAMESPACEPATH>'
    '<IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="PYL_PCIDevice"/></IPARAMVALUE>'
    '</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>').encode()
HEADERS = {"Content-Type": "application/xml", "CIMOperation": "MethodCall",
           "CIMMethod": "EnumerateInstances", "CIMObject": "root%2Fktq"}


def serve(*words):
    command = [str(word) for word in (BUILD / "cimhost/cimhost", "serve", *words)]
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          timeout=30, check=False)


class Start(unittest.TestCase):
    def test_an_open_address_without_tls_and_passwords_is_refused(self):
        result = serve("--listen", "0.0.0.0", "--port", "0", "--max-seconds", "5", *BASE_SERVER)
        self.assertEqual(2, result.returncode, result.stdout)
        self.assertIn("0.0.0.0", result.stdout)

    def test_mof_with_an_error_is_told_by_file_line_and_column(self):
        with tempfile.TemporaryDirectory() as folder:
            mof = pathlib.Path(folder) / "broken.mof"
            mof.write_text("class A {\n   uint32 B\n};\n")
            result = serve("--port", "0", "--namespace", "root/x", "--schema", mof)
        self.assertEqual(1, result.returncode, result.stdout)
        self.assertRegex(result.stdout, r"broken\.mof:3:1: .*';'")

    def test_a_port_in_use_is_told(self):
        with socket.socket() as taken:
            taken.bind(("127.0.0.1", 0))
            taken.listen()
            port = taken.getsockname()[1]
            result = serve("--port", port, "--max-seconds", "5", *BASE_SERVER)
        self.assertEqual(1, result.returncode, result.stdout)
        self.assertIn(str(port), result.stdout)

    def test_files_that_others_have_a_hand_in_are_told(self):
        with tempfile.TemporaryDirectory() as folder:
            for option, mode, more in (("--password-file", 0o604, ()), ("--tls-key", 0o604, ("--tls-cert", "absent")),
                                       ("--state", 0o602, ())):
                file = pathlib.Path(folder) / option.strip("-")
                file.touch()
                file.chmod(mode)
                result = serve("--port", "0", "--max-seconds", "5", option, file, *more, *BASE_SERVER)
                self.assertEqual(1, result.returncode, result.stdout)
                self.assertRegex(result.stdout, rf"(?m)^cimhost: the .* {file} may be read or changed by others")

    @unittest.skipUnless(os.geteuid() == 0, "needs the rights of root")
    def test_the_tree_of_the_program_is_trusted_whosever_it_is(self):
        with tempfile.TemporaryDirectory() as folder:
            tree = pathlib.Path(folder) / "tree"
            tree.mkdir()
            program, registration = tree / "cimhost", tree / "registration"
            shutil.copy(BUILD / "cimhost/cimhost", program)
            registration.touch()
            os.chown(registration, 65534, 65534)
            arguments = ("serve", "--port", "0", "--max-seconds", "1", *map(str, BASE_SERVER),
                         "--registration", str(registration))
            for owner, status in ((0, 1), (65534, 0)):
                os.chown(tree, owner, owner)
                done = subprocess.run([program, *arguments], stdout=subprocess.PIPE,
                                      stderr=subprocess.STDOUT, text=True)
                self.assertEqual(status, done.returncode, done.stdout)

    def test_help_is_enough_to_begin(self):
        result = serve("--help")
        self.assertEqual(0, result.returncode)
        for word in ("--port", "--schema", "--namespace", "--registration", "--provider-dir",
                     "--tls-cert", "--password-file"):
            self.assertIn(word, result.stdout)

    def test_it_ends_by_itself_after_the_seconds_given(self):
        started = time.monotonic()
        result = serve("--port", "0", "--max-seconds", "1", *BASE_SERVER)
        self.assertEqual(0, result.returncode, result.stdout)
        self.assertGreaterEqual(time.monotonic() - started, 0.9)


class Stop(unittest.TestCase):
    @long
    def test_a_hundred_stops_with_requests_running_end_in_order(self):
        for number in range(100):
            # Every other one beside clients that never read.
            stop = LoadedStop(number, silent=8 * (number % 2))
            self.assertEqual(0, stop.status, f"stop {number}: {stop.log}")
            self.assertEqual([], stop.faults)

    @long
    def test_a_module_whose_clean_up_never_returns_does_not_keep_the_server(self):
        folder = SOURCE / "tests/system/stuck"
        host = Host(arguments=(
            "--namespace", "root/test", "--schema", SOURCE / "schema/base/qualifiers.mof",
            "--schema", folder / "Stuck.mof", "--registration", folder / "stuck.registration",
            "--provider-dir", BUILD / "tests/system/stuck"))
        host.ask("cm", ":TST_Stuck", "Load", namespace="root/test")
        self.assertEqual(1, host.stop(), host.log())
        self.assertIn("clean-up does not return", host.log())

    def test_nothing_is_left_open_after_many_requests(self):
        with Host() as host:
            descriptors = f"/proc/{host.process.pid}/fd"
            self._one_request(host.port)
            before = len(os.listdir(descriptors))
            for _ in range(50):
                self._one_request(host.port)
            for _ in range(100):
                if len(os.listdir(descriptors)) <= before:
                    break
                time.sleep(0.05)
            self.assertLessEqual(len(os.listdir(descriptors)), before)

    @staticmethod
    def _one_request(port):
        connection = http.client.HTTPConnection("127.0.0.1", port, timeout=20)
        connection.request("POST", "/cimom", REQUEST, HEADERS)
        assert connection.getresponse().read().rstrip().endswith(b"</CIM>")
        connection.close()


class Access(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def _passwords(self):
        file = self.folder / "users"
        subprocess.run([BUILD / "cimhost/cimhost", "passwd", file, "fred"], input="open sesame\n",
                       text=True, timeout=30, check=True)
        return file

    def _certificate(self):
        certificate, key = self.folder / "cert.pem", self.folder / "key.pem"
        subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                        "ec_paramgen_curve:P-256", "-nodes", "-days", "2", "-subj", "/CN=localhost",
                        "-addext", "subjectAltName=DNS:localhost,IP:127.0.0.1", "-keyout", key,
                        "-out", certificate], stderr=subprocess.DEVNULL, timeout=60, check=True)
        return certificate, key

    @staticmethod
    def _ask(host, user, *options):
        url = host.url(":PYL_ComputerSystem", host="localhost", user=user)
        return subprocess.run(["wbemcli", "ein", *options, url], stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, timeout=60, check=False)

    def test_only_users_of_the_password_file_come_in_over_tls(self):
        certificate, key = self._certificate()
        with Host("--tls-cert", certificate, "--tls-key", key,
                  "--password-file", self._passwords()) as host:
            trusting = ("-cacert", certificate)
            good = self._ask(host, "fred:open sesame", *trusting)
            self.assertEqual(0, good.returncode, good.stdout)
            self.assertIn("PYL_ComputerSystem", good.stdout)
            for user in ("fred:sesame", "fred:", "george:open sesame", None):
                answer = self._ask(host, user, *trusting)
                self.assertEqual(16, answer.returncode, answer.stdout)
                self.assertIn("password", answer.stdout)
            self.assertEqual(16, self._ask(host, "fred:open sesame").returncode,
                             "nobody vouches for this certificate")

    def test_the_access_log_tells_who_asked_for_what_and_how_it_ended(self):
        file = self.folder / "access"
        with Host("--password-file", self._passwords(), "--access-log", file) as host:
            self._ask(host, "fred:open sesame")
            self._ask(host, "fred:wrong")
            url = host.url(":PYL_Unheard", user="fred:open sesame")
            subprocess.run(["wbemcli", "gc", url], stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL, timeout=60, check=False)
        patterns = ("fred EnumerateInstanceNames root%2Fktq 200 -", "- POST /cimom 401 -",
                    "fred GetClass root%2Fktq 200 6")
        lines = file.read_text().splitlines()
        self.assertEqual(len(patterns), len(lines), lines)
        for pattern, line in zip(patterns, lines):
            self.assertRegex(line, rf"^\S+Z 127\.0\.0\.1:\d+ {pattern} \d+B \d+us$")


if __name__ == "__main__":
    unittest.main()
