"""Modules and MOF that change while they are served."""

import os
import pathlib
import re
import shutil
import signal
import socket
import tempfile
import threading
import time
import unittest

from host import BUILD, SOURCE, Host
from indications_test import ALARM, SubscribedCase
from listeners import Listener
from wire import Wire, call, post

EDITIONS = BUILD / "tests/system/edition"
CHANGES = 20
CLIENTS = 4
MOF = """class TST_Edition { [Key] uint32 Begun; [Key] uint32 Ended; };
class TST_SlowEdition { [Key] uint32 Begun; [Key] uint32 Ended; };
"""


def await_true(condition, what, seconds=60):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(f"that did not come: {what()}")
        time.sleep(0.02)


class ReloadCase(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)
        self.mof = self.folder / "edition.mof"
        self.mof.write_text(MOF)
        self.registration = self.folder / "edition.registration"
        self.registration.write_text("TST_Edition root/test Edition edition instance\n"
                                     "TST_SlowEdition root/test Edition edition instance\n")
        self.module = self.folder / "libedition.so"
        self.put(1)
        self.gate = self.folder / "gate"
        os.environ["EDITION_WAITS_FOR"] = str(self.gate)

    def put(self, number):
        """Takes the place of the file at once, as linkers do."""
        shutil.copy(EDITIONS / f"libedition{number}.so", self.folder / "next")
        os.replace(self.folder / "next", self.module)

    def overwrite(self, number):
        """Writes over it, as cp does."""
        shutil.copyfile(EDITIONS / f"libedition{number}.so", self.module)

    def start(self, *options):
        host = Host(*options, arguments=(
            "--namespace", "root/test", "--schema", SOURCE / "schema/base/base.mof",
            "--schema", self.mof, "--registration", self.registration,
            "--provider-dir", self.folder))
        self.addCleanup(lambda: self.assertEqual(0, host.stop(), host.log()))
        return host

    def editions(self, host, name="TST_Edition"):
        """(edition at the begin, at the end) of what answered."""
        parameter = f'<IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="{name}"/></IPARAMVALUE>'
        operation = "EnumerateInstanceNames"
        with Wire(host.port) as wire:
            status, _, body = wire.exchange(post(
                call(parameter, "root/test", operation), operation=operation, target="root%2Ftest"))
        found = re.search(r'"Begun">.*?>(\d)</KEYVALUE>.*"Ended">.*?>(\d)</KEYVALUE>',
                          body.decode(), re.DOTALL)
        if status != 200 or not found:
            raise AssertionError((status, body))
        return int(found.group(1)), int(found.group(2))

    def await_edition(self, host, number):
        await_true(lambda: self.editions(host) == (number, number), host.log)

    def await_line(self, host, words):
        await_true(lambda: words in host.log(), host.log)

    def module_text(self, host, name):
        """What the server says of a module, a property a line."""
        return host.ask("gi", f':CIMHOST_Module.Module="{name}"', options=["-nl"],
                        namespace="root/cimhost").text.strip()

    def loaded(self, host):
        """How many builds of the module are in the server."""
        lines = pathlib.Path(f"/proc/{host.process.pid}/maps").read_text().splitlines()
        return len({line.split()[4] for line in lines if "libedition" in line})


class Reload(ReloadCase):
    def under_load(self, change, *options):
        host = self.start(*options)
        failures, answers, ends = [], [0] * CLIENTS, threading.Event()

        def client(number):
            while not ends.is_set() and not failures:
                try:
                    begun, ended = self.editions(host)
                    if begun != ended:
                        failures.append(f"begun by {begun}, ended by {ended}")
                except (AssertionError, OSError) as failure:
                    failures.append(failure)
                answers[number] += 1

        threads = [threading.Thread(target=client, args=(number,)) for number in range(CLIENTS)]
        for thread in threads:
            thread.start()
        try:
            await_true(lambda: failures or min(answers) > 0, host.log)  # a file is whole when it is first loaded
            for turn in range(CHANGES):
                change(host, turn % 2 + 1)
                self.await_edition(host, turn % 2 + 1)
        finally:
            ends.set()
            for thread in threads:
                thread.join()
        self.assertEqual([], failures, host.log())
        self.assertGreater(min(answers), CHANGES)
        return host

    def signalled(self, host, number):
        self.put(number)
        host.process.send_signal(signal.SIGHUP)

    def test_a_module_changes_twenty_times_under_load_and_no_request_fails(self):
        host = self.under_load(lambda host, number: self.put(number), "--watch")
        if not os.environ.get("PYL_ISOLATE"):
            await_true(lambda: self.loaded(host) == 1, host.log)

    def test_a_module_is_written_over_twenty_times_under_load_and_no_request_fails(self):
        self.under_load(lambda host, number: self.overwrite(number), "--watch")

    def test_each_signal_takes_the_changed_module(self):
        host = self.under_load(self.signalled)
        if not os.environ.get("PYL_ISOLATE"):
            await_true(lambda: self.loaded(host) == 1, host.log)

    def test_processes_of_modules_are_replaced_under_load_and_no_request_fails(self):
        self.under_load(lambda host, number: self.put(number), "--watch", "--isolate")

    def test_a_request_that_runs_ends_in_the_module_it_began_in(self):
        host = self.start("--watch")
        found = []
        slow = threading.Thread(target=lambda: found.append(self.editions(host, "TST_SlowEdition")))
        slow.start()
        self.await_edition(host, 1)
        time.sleep(0.3)  # for the slow one to begin
        self.put(2)
        self.await_edition(host, 2)
        self.assertEqual([], found)
        self.gate.touch()
        slow.join()
        self.assertEqual([(1, 1)], found)

    def test_a_module_that_cannot_be_loaded_leaves_the_one_before(self):
        host = self.start("--watch")
        if os.environ.get("PYL_ISOLATE"):
            self.skipTest("a new process tells it when it is asked")
        self.await_edition(host, 1)
        self.module.with_name("next").write_text("no module")
        os.replace(self.module.with_name("next"), self.module)
        self.await_line(host, "error edition: the module stays as it was: ")
        self.assertEqual((1, 1), self.editions(host))
        self.assertIn("the module stays as it was: ", self.module_text(host, "edition"))
        self.put(2)
        self.await_edition(host, 2)
        self.assertIn("Findings=\n", self.module_text(host, "edition") + "\n")

    def test_a_mof_and_a_registration_that_change_are_served(self):
        host = self.start("--watch")
        self.await_edition(host, 1)
        self.mof.write_text(MOF + "class TST_NewEdition { [Key] string Words; };")
        with open(self.registration, "a", encoding="utf-8") as file:
            file.write("TST_NewEdition root/test NewEdition newedition instance\n")
        self.await_line(host, "reload: the schema")
        answer = host.ask("gc", ":TST_NewEdition", namespace="root/test")
        self.assertIn("Words", answer.text)
        self.await_edition(host, 1)
        answer = host.ask("ein", ":TST_NewEdition", namespace="root/test")
        self.assertIn("libnewedition.so was not found", answer.text)
        self.assertIn("libnewedition.so was not found", self.module_text(host, "newedition"))
        providers = host.paths("ein", ":CIMHOST_Provider", namespace="root/cimhost")
        self.assertIn('CIMHOST_Provider.ClassName="TST_NewEdition",NameSpace="root/test",Provider="NewEdition"',
                      providers)

    def test_a_mof_that_does_not_compile_leaves_the_one_before(self):
        host = self.start()
        self.await_edition(host, 1)
        self.mof.write_text(MOF + "class {")
        host.process.send_signal(signal.SIGHUP)
        self.await_line(host, "reload: the schema stays as it was: ")
        self.assertIn(f"{self.mof}:3:7: ", host.log())
        self.assertEqual((1, 1), self.editions(host))

    @unittest.skipUnless(os.geteuid() == 0, "asked by root alone")
    def test_a_module_that_others_may_change_leaves_the_one_before(self):
        host = self.start()
        self.await_edition(host, 1)
        self.put(2)
        self.module.chmod(0o757)
        host.process.send_signal(signal.SIGHUP)
        self.await_line(host, "error cimhost: reload: all stays as it was: the module "
                              f"{self.module} may be changed by others")
        self.assertEqual((1, 1), self.editions(host))
        self.module.chmod(0o755)
        host.process.send_signal(signal.SIGHUP)
        self.await_edition(host, 2)

    @unittest.skipUnless(os.geteuid() == 0, "asked by root alone")
    def test_a_registration_of_another_user_leaves_the_one_before_until_it_is_given_back(self):
        host = self.start("--watch")
        self.await_edition(host, 1)
        os.chown(self.registration, 65534, 65534)
        with open(self.registration, "a", encoding="utf-8") as file:
            file.write("TST_NewEdition root/test NewEdition newedition instance\n")
        self.mof.write_text(MOF + "class TST_NewEdition { [Key] string Words; };")
        self.await_line(host, "reload: all stays as it was: the registration file "
                              f"{self.registration} belongs to user 65534")
        self.assertEqual(6, host.ask("gc", ":TST_NewEdition", namespace="root/test").cim_error)
        os.chown(self.registration, 0, 0)
        self.await_line(host, "reload: the schema")
        self.assertIn("Words", host.ask("gc", ":TST_NewEdition", namespace="root/test").text)

    def test_a_signal_without_a_change_says_so(self):
        host = self.start()
        host.process.send_signal(signal.SIGHUP)
        self.await_line(host, "reload: no file has changed")


class End(ReloadCase):
    def test_files_that_are_written_all_the_time_do_not_delay_it(self):
        host = self.start("--watch")
        ends = threading.Event()

        def write():
            while not ends.is_set():
                self.mof.write_text(MOF)
                time.sleep(0.01)

        writer = threading.Thread(target=write)
        writer.start()
        time.sleep(0.5)  # for the reload to wait that they are done
        host.process.send_signal(signal.SIGTERM)
        host.process.wait(timeout=30)
        ends.set()
        writer.join()
        self.assertNotIn("reload:", host.log())

    def test_nobody_is_let_in_while_a_replaced_module_cleans_up(self):
        stuck = SOURCE / "tests/system/stuck"
        module = self.folder / "libstuck.so"
        shutil.copy(BUILD / "tests/system/stuck/libstuck.so", module)
        host = Host(arguments=(
            "--namespace", "root/test", "--schema", SOURCE / "schema/base/qualifiers.mof",
            "--schema", stuck / "Stuck.mof", "--registration", stuck / "stuck.registration",
            "--provider-dir", self.folder))
        self.addCleanup(host.stop)
        self.addCleanup(host.process.kill)  # first: its end would take long
        host.ask("cm", ":TST_Stuck", "Load", namespace="root/test")
        shutil.copy(module, self.folder / "next")
        os.replace(self.folder / "next", module)
        host.process.send_signal(signal.SIGHUP)
        self.await_line(host, "reload: modules stuck")
        host.process.send_signal(signal.SIGTERM)
        await_true(lambda: not self.lets_in(host), host.log)
        self.assertIsNone(host.process.poll(), host.log())

    @staticmethod
    def lets_in(host):
        try:
            socket.create_connection((host.address, host.port), timeout=20).close()
        except ConnectionRefusedError:
            return False
        return True


class WatchedCase(SubscribedCase):
    options = ("--watch",)

    def start(self):
        self.modules = pathlib.Path(self.folder.name) / "modules"
        self.modules.mkdir()
        self.put()
        self.host = Host(*self.options, arguments=(
            "--namespace", "interop", "--schema", SOURCE / "schema/base/base.mof",
            "--namespace", "root/test", "--schema", SOURCE / "schema/base/base.mof",
            "--schema", ALARM / "Alarm.mof", "--registration", ALARM / "alarm.registration",
            "--provider-dir", self.modules))

    def put(self):
        shutil.copy(BUILD / "tests/system/alarm/libalarm.so", self.modules / "next")
        os.replace(self.modules / "next", self.modules / "libalarm.so")

    def replace_and_ring(self):
        with Listener() as listener:
            self.subscribe(listener.url)
            self.ring()
            listener.wait_for(1)
            for count in range(2, 5):
                known = self.host.log().count("reload: modules alarm")
                self.put()
                await_true(lambda: self.host.log().count("reload: modules alarm") > known,
                           self.host.log)
                self.assertIn("enable", self.told())
                self.ring()
                listener.wait_for(count)


class Subscriptions(WatchedCase):
    def test_they_stay_when_their_module_is_replaced(self):
        self.replace_and_ring()


class IsolatedSubscriptions(WatchedCase):
    options = ("--watch", "--isolate")

    def test_they_stay_when_the_process_of_their_module_is_replaced(self):
        self.replace_and_ring()


if __name__ == "__main__":
    unittest.main()
