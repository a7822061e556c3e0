"""The reference modules together: start on first use, timing, posted status, and what a restart leaves."""

import pathlib
import re
import tempfile
import unittest

from host import Host, first_path

STARTED = "information PYL_BaseServer: provider cxtor()"
OVERALL = ':PYL_ConsolidatedStatus.InstanceID="KTQ:PYL_ConsolidatedStatus"'
OF_DEVICES = ':PYL_ConsolidatedStatus.InstanceID="KTQ:PYL_ConsolidatedStatus:PYL_PCIDeviceGroup"'


class Modules(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.files = pathlib.Path(scratch.name)

    def host(self):
        return Host(files=self.files)

    def good(self, host, *words, **options):
        answer = host.ask(*words, **options)
        self.assertEqual((0, None), (answer.status, answer.cim_error), answer.text + host.log())
        return answer

    def work(self, host):
        answer = self.good(host, "cm", f":{first_path(host, 'PYL_BaseServerWorker')}", "PerformWork")
        return int(re.search(r"WorkCount \(uint64\): (\d+)", answer.text).group(1))

    def test_the_worker_instance_is_served_before_the_provider_starts(self):
        with self.host() as host:
            worker = first_path(host, "PYL_BaseServerWorker")
            self.good(host, "ei", ":PYL_BaseServerWorker")
            self.assertIn("Base server worker", self.good(host, "gi", f":{worker}").text)
            self.assertNotIn(STARTED, host.log())
            self.good(host, "ein", ":PYL_ComputerSystem")
            self.assertEqual(1, host.log().count(STARTED))
            self.good(host, "ein", ":PYL_PCIDevice")
            self.assertEqual(1, host.log().count(STARTED))

    def test_a_server_whose_provider_never_started_ends_in_order(self):
        with self.host() as host:
            self.good(host, "ein", ":PYL_BaseServerWorker")
        self.assertNotIn(STARTED, host.log())

    def test_requests_are_timed_while_the_marker_of_root_is_there(self):
        with self.host() as host:
            self.good(host, "ein", ":PYL_ComputerSystem")
        self.assertNotIn(":perfmon", host.log())
        (self.files / "tmp/PYLPerfmon").symlink_to("/etc/passwd")  # a file that root owns
        with self.host() as host:
            self.good(host, "ein", ":PYL_ComputerSystem")
        for operation in ("constructor", "enumInstanceNames", "destructor"):
            self.assertRegex(host.log(), rf"information PYL_BaseServer:perfmon: {operation} "
                                         r"completed in \d+\.\d\ds\n")

    def test_a_posted_status_arrives_at_the_consolidated_status(self):
        with self.host() as host:
            self.assertEqual(["PYL_ConsolidatedStatus.InstanceID=\"KTQ:PYL_ConsolidatedStatus\""],
                             host.paths("ein", ":PYL_ConsolidatedStatus"))
            self.work(host)
            posted = self.good(host, "gi", OF_DEVICES, options=["-nl"]).text
            self.assertIn('-ReportingClass="PYL_PCIDeviceGroup"', posted)
            self.assertIn("-PostCount=1\n", posted)
            self.assertIn("-PostCount=1\n", self.good(host, "gi", OVERALL, options=["-nl"]).text)

    def test_a_client_may_post_too_and_is_told_what_is_wrong(self):
        with self.host() as host:
            system = ":" + first_path(host, "PYL_ComputerSystem")
            self.good(host, "cm", system, 'PostStatus.ClassName="PYL_Fan",Status=6')
            overall = self.good(host, "gi", OVERALL, options=["-nl"]).text
            self.assertIn("-OperationalStatus=6\n", overall)
            self.assertIn('-StatusDescriptions="Error"', overall)
            answer = host.ask("cm", system, 'PostStatus.ClassName="not a class",Status=6')
            self.assertEqual(4, answer.cim_error, answer.text)

    def test_the_work_count_survives_a_restart(self):
        with self.host() as host:
            self.assertEqual([1, 2], [self.work(host), self.work(host)])
        with self.host() as host:
            self.assertEqual(3, self.work(host))
        store = self.files / "etc/cim/baseserver.txt"
        self.assertEqual(b"WorkCount 00000000000000000003\r\n", store.read_bytes())
        self.assertEqual(0o1600, store.stat().st_mode & 0o7777)

    def test_a_lost_store_costs_the_count_and_nothing_else(self):
        (self.files / "etc/cim/baseserver.txt").mkdir(parents=True)
        with self.host() as host:
            self.assertEqual([1, 2], [self.work(host), self.work(host)])
            self.assertIn("warning PYL_BaseServer: the work count does not survive a restart",
                          host.log())


if __name__ == "__main__":
    unittest.main()
