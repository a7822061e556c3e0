"""Alerts of the base server's module while what they are made of, and the way to the enclosure, fail."""

import os
import pathlib
import re
import signal
import sys
import time
import unittest

from host import BASE_SERVER, BUILD, SOURCE, Host, long
from indications_test import SubscribedCase
from listeners import Listener

sys.path.insert(0, str(SOURCE / "tests/machine"))
from box.controller import Controller
from box.server import make_dumps

ALERTS = (
    "--namespace", "interop",
    "--schema", SOURCE / "schema/base/base.mof",
    *BASE_SERVER,
    "--schema", SOURCE / "schema/PYL_Indications.mof",
)

IS_ROOT = os.geteuid() == 0


class AlertCase(SubscribedCase):
    """A server with the base server's module and one subscriber of its alerts."""

    def start(self):
        self.files = pathlib.Path(self.folder.name)
        (self.files / "etc/cim").mkdir(parents=True)
        (self.files / "tmp").mkdir()
        self.told_tests = 0
        self.seen = 0  # of the log, until the last trigger
        self.listener = Listener()
        self.addCleanup(self.listener.close)
        self.prepare()
        self.host = Host(arguments=ALERTS, files=self.files)

    def prepare(self):
        """What is there before the server starts. The host's own controller is left alone."""
        self.controller_is("nobody's")

    def filter(self, name="f", query="SELECT * FROM KT_AlertIndication", language="WQL",
               source="root/ktq"):
        return super().filter(name, query, language, source)

    def subscribe_to_alerts(self):
        self.subscribe(self.listener.url, query="SELECT * FROM KT_AlertIndication")
        self.listener.wait_for(2)  # that the providers have started, and the operating system
        self.outcomes(2)

    def controller_is(self, text):
        way = self.files / "etc/cim/ipmi.conf"
        way.with_suffix(".new").write_text(text)
        way.with_suffix(".new").rename(way)

    def trigger(self):
        """Root's marker for the test events: a link to a file that root owns."""
        self.seen = len(self.host.log())
        (self.files / "tmp/PYL.test").symlink_to("/etc/passwd")

    def alerts(self):
        """Three test events, as they arrive at the listener after a trigger."""
        bodies = self.listener.wait_for(2 + self.told_tests + 3)[2 + self.told_tests:]
        summaries = [value_of(body, "Summary") for body in bodies]
        self.assertEqual([f"Test Event Id: {self.told_tests + number}" for number in (1, 2, 3)],
                         summaries)
        self.told_tests += 3
        return bodies

    def triggered(self):
        self.trigger()
        return self.alerts()

    def new_log(self):
        """What was logged since the last trigger."""
        return self.host.log()[self.seen:]

    def outcomes(self, count):
        """What became of so many alerts on their way to the enclosure, once they have ended: pairs of
        the event for which the command was run, or empty, and the reason why it was not."""
        self.wait_until(lambda: self.new_log().count(": CIMIndication dxtor()") >= count)
        return re.findall(r"information \S+: (?:calling ENCA_CLI_Exec with arg --PNAM \S+ --EID (\S+)"
                          r"|BMC_open\(\) failed: (.*))", self.new_log())

    def wait_until(self, is_so, seconds=60):
        deadline = time.monotonic() + seconds
        while not is_so():
            self.assertLess(time.monotonic(), deadline, self.new_log())
            time.sleep(0.01)


def value_of(body, name):
    """The value of a property in an export message, elements of an array with commas, or None."""
    found = re.search(rf'<PROPERTY(?:\.ARRAY)? NAME="{name}".*?</PROPERTY', body, re.DOTALL)
    values = re.findall(r"<VALUE>(.*?)</VALUE>", found.group(0)) if found else []
    return ",".join(values) if values else None


class EnclosureFaults(AlertCase):
    def setUp(self):
        super().setUp()
        self.simulator = Controller(self.files / "enclosure",
                                    BUILD / "tests/platform/ipmi/libenclosure_module.so")
        self.addCleanup(self.simulator.kill)

    def simulator_starts(self):
        self.simulator.start()
        self.controller_is(f"vm 127.0.0.1 {self.simulator.port}\n")

    def expect_commands(self):
        """Of each of three test alerts the enclosure was to be told."""
        self.assertEqual([("1", ""), ("2", ""), ("3", "")], self.outcomes(3), self.new_log())

    def expect_forwarding(self):
        """Three alerts at the listener and at the enclosure, and nothing to complain of."""
        before = len(self.simulator.lines())
        self.triggered()
        self.expect_commands()
        arrived = "\n".join(self.simulator.lines()[before:])
        self.assertEqual(["1", "2", "3"], re.findall("--PNAM KT_Test --EID (.) ", arrived))
        self.assertNotIn("interface error", self.new_log())

    def expect_refusals(self, reason):
        """Three alerts at the listener that went no further; why is told once, when it begins."""
        self.triggered()
        self.assertIn(self.outcomes(3), ([], [("", reason)]))
        self.assertEqual(reason, re.findall(r"BMC_open\(\) failed: (.*)", self.host.log())[-1])

    @unittest.skipUnless(IS_ROOT, "/etc/cim/ipmi.conf must belong to root")
    @long
    def test_a_controller_that_goes_and_comes_back_costs_the_forwarding_meanwhile(self):
        self.simulator_starts()
        self.subscribe_to_alerts()
        self.expect_forwarding()
        self.simulator.kill()
        self.expect_refusals("Connection refused")
        self.simulator_starts()
        self.expect_forwarding()

    @unittest.skipUnless(IS_ROOT, "/etc/cim/ipmi.conf must belong to root")
    @long
    def test_a_controller_that_dies_in_the_middle_of_a_command_is_a_line_in_the_log(self):
        self.simulator_starts()
        self.subscribe_to_alerts()
        self.expect_forwarding()
        before = len(self.simulator.lines())
        self.simulator.behave("output 200000")  # thousands of messages to and fro
        self.trigger()
        self.wait_until(lambda: len(self.simulator.lines()) > before)
        self.simulator.kill()
        self.alerts()
        self.assertEqual(("", "Connection refused"), self.outcomes(3)[-1])
        self.assertRegex(self.new_log(), r"information \S+: Unknown interface error\((68|20)\)\.")
        self.simulator.behave("completion 0")
        self.simulator_starts()
        self.expect_forwarding()

    @unittest.skipUnless(IS_ROOT, "/etc/cim/ipmi.conf must belong to root")
    @long
    def test_a_controller_that_answers_nothing_is_given_up_in_time(self):
        self.simulator_starts()
        self.subscribe_to_alerts()
        self.expect_forwarding()
        self.simulator.signal(signal.SIGSTOP)
        self.trigger()
        self.assertEqual(("", "Connection timed out"), self.outcomes(1)[0])
        self.simulator.signal(signal.SIGCONT)
        self.alerts()
        self.outcomes(3)
        self.expect_forwarding()

    @unittest.skipUnless(IS_ROOT, "/etc/cim/ipmi.conf must belong to root")
    @long
    def test_what_the_enclosure_refuses_is_said_in_words(self):
        self.simulator_starts()
        self.subscribe_to_alerts()
        rows = {
            "completion 1": "Provided command input data is not complete.",
            "completion 4": "Cli entries full - maximum number of outstanding ipmi cli entries has "
                            "been reached.",
            "completion 77": "Unknown response error.",
            "output 200001": "The size of stdout or stderr is not enough.",
        }
        for behaviour, words in rows.items():
            self.simulator.behave(behaviour)
            self.triggered()
            self.expect_commands()
            self.assertEqual(3, self.new_log().count(": " + words))
        self.simulator.behave("completion 0")
        self.expect_forwarding()

    def test_a_way_that_somebody_else_named_or_nobody_understands_is_not_taken(self):
        self.subscribe_to_alerts()
        self.expect_refusals("Invalid argument")
        self.controller_is("vm 127.0.0.1 1\n")
        if IS_ROOT:
            os.chown(self.files / "etc/cim/ipmi.conf", 65534, 65534)
        self.expect_refusals("Invalid argument")


BLADE = make_dumps.DUMPS["blade"]
ENTRY_SIZE = 24
ENTRY, TABLE = BLADE[:ENTRY_SIZE], BLADE[make_dumps.TABLE_OFFSET:]

# What only the firmware's tables tell.
TOLD_BY_TABLES = {
    "EnclosureName": "enc-7",
    "RackName": "rack-B",
    "RackUUID": "00112233-4455-6677-8899-aabbccddeeff",
    "SystemVirtualSerialNumber": "VKT000042",
    "SystemVirtualUUID": "0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0",
    "SolutionProductModel": "Private Cloud 20",
}

TABLES = "/sys/firmware/dmi/tables"


def link_loop(path):
    path.symlink_to(path.name)


def zeros(path):
    with open(path, "wb") as file:
        file.truncate(1 << 30)


# The entry point and the table, each bytes or a function that makes something else at its path, and
# what the log says of them.
HOSTILE_TABLES = {
    "none": (None, None, rf"cannot open {TABLES}/smbios_entry_point: No such file or directory"),
    "an empty entry point": (b"", TABLE, "the entry point has no SMBIOS anchor"),
    "a cut entry point": (ENTRY[:20], TABLE, "the entry point is cut short"),
    "an entry point of ones": (b"\xff" * ENTRY_SIZE, TABLE, "the entry point has no SMBIOS anchor"),
    "a wrong checksum": (ENTRY[:8] + b"\x63" + ENTRY[9:], TABLE,
                         "the checksum of the entry point is wrong"),
    "an entry point that lies about its length": (ENTRY[:6] + b"\xff" + ENTRY[7:], TABLE,
                                                  "the entry point gives its length as 255"),
    "a table without an entry point's file": (ENTRY, None,
                                              rf"cannot open {TABLES}/DMI: No such file or directory"),
    "an empty table": (ENTRY, b"", "the table ends after 0 structures without an end mark"),
    "half a table": (ENTRY, TABLE[:len(TABLE) // 2],
                     r"the structure at offset \d+ (runs past|has strings that run past) "
                     "the end of the table"),
    "a table without an end": (ENTRY, TABLE[:TABLE.rindex(b"\x7f\x04")],
                               r"the table ends after \d+ structures without an end mark"),
    "a table of ones": (ENTRY, b"\xff" * len(TABLE),
                        "the structure at offset 0 has strings that run past the end of the table"),
    "a structure shorter than its header": (ENTRY, TABLE[:1] + b"\x03" + TABLE[2:],
                                            "the structure at offset 0 gives its length as 3"),
    "a table that is longer than it says": (make_dumps.entry64((3, 3), 10), TABLE,
                                            "the structure at offset 0 runs past the end of the "
                                            "table"),
    "endless zeros": (make_dumps.entry64((3, 3), 0xFFFFFFFF), zeros,
                      "the structure at offset 0 gives its length as 0"),
    "a table that cannot be opened": (ENTRY, link_loop,
                                      rf"cannot open {TABLES}/DMI: Too many levels of symbolic links"),
    "a table that cannot be read": (ENTRY, lambda path: path.symlink_to("/proc/self/mem"),
                                    rf"cannot read {TABLES}/DMI: Input/output error"),
    "a table that is a pipe": (ENTRY, os.mkfifo, rf"cannot read {TABLES}/DMI: not a regular file"),
    "an entry point that is a folder": (pathlib.Path.mkdir, TABLE,
                                        rf"cannot read {TABLES}/smbios_entry_point: not a regular "
                                        "file"),
}


class FirmwareFaults(AlertCase):
    def prepare(self):
        super().prepare()
        self.versions = 0
        (self.files / "sys/firmware/dmi").mkdir(parents=True)
        self.tables_are(ENTRY, TABLE)

    def tables_are(self, entry, table):
        """Other tables from one moment to the next."""
        self.versions += 1
        folder = self.files / f"sys/firmware/dmi/tables{self.versions}"
        folder.mkdir()
        for name, content in (("smbios_entry_point", entry), ("DMI", table)):
            if callable(content):
                content(folder / name)
            elif content is not None:
                (folder / name).write_bytes(content)
        link = folder.with_suffix(".link")
        link.symlink_to(folder.name)
        link.rename(folder.with_name("tables"))

    def expect_a_blade(self):
        for body in self.triggered():
            told = {name: value_of(body, name) for name in TOLD_BY_TABLES}
            self.assertEqual((TOLD_BY_TABLES, "3"), (told, value_of(body, "ImpactedDomain")))
            self.assertEqual("K42 v1.20", value_of(body, "SystemFirmwareVersion"))
        self.assertEqual([], self.errors())

    def errors(self):
        return re.findall(r"PYL_BaseServer: (?:error|warning): (.*)", self.new_log())

    def expect_no_tables(self, words):
        for body in self.triggered():
            told = {name: value_of(body, name) for name in TOLD_BY_TABLES}
            self.assertEqual((dict.fromkeys(TOLD_BY_TABLES), "4"),
                             (told, value_of(body, "ImpactedDomain")))
            self.assertIsNotNone(value_of(body, "OSType"), "the host itself is there still")
        # Told once, when it begins: the server may have been without tables before.
        errors = self.errors()
        self.assertLessEqual(len(errors), 2, errors)
        self.assertIn("failed to _BladeMRA::getFirstData()", self.errors_so_far())
        # A line of a module in a process of its own may come after what that module answered.
        wanted = rf"^No SMBIOS data from {TABLES}: {words}$"
        self.wait_until(lambda: re.search(wanted, self.last_error_of_tables()))

    def errors_so_far(self):
        return re.findall(r"error PYL_BaseServer: (.*)", self.host.log())

    def last_error_of_tables(self):
        return [line for line in self.errors_so_far() if not line.startswith("failed to")][-1]

    @long
    def test_hostile_tables_cost_their_properties_and_one_clear_line(self):
        self.subscribe_to_alerts()
        self.expect_a_blade()
        for name, (entry, table, words) in HOSTILE_TABLES.items():
            with self.subTest(name):
                self.tables_are(entry, table)
                self.expect_no_tables(words)
        self.tables_are(ENTRY, TABLE)
        self.expect_a_blade()

    def test_tables_that_lie_about_nothing_that_matters_are_taken(self):
        self.subscribe_to_alerts()
        for entry, table in ((make_dumps.entry64((3, 3), 0xFFFFFFFF), TABLE),
                             (ENTRY, TABLE + b"\xff" * 1000),
                             (ENTRY + b"\xff" * 1000, TABLE)):
            self.tables_are(entry, table)
            self.expect_a_blade()

    def test_a_server_that_starts_without_tables_finds_them_when_they_come(self):
        self.tables_are(None, None)
        self.subscribe_to_alerts()
        self.expect_no_tables(HOSTILE_TABLES["none"][-1])
        self.tables_are(ENTRY, TABLE)
        self.expect_a_blade()


if __name__ == "__main__":
    unittest.main()
