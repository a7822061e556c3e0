"""Little memory, a clock that jumps, a name that changes."""

import re
import unittest

from hardware_test import SubscribedCase as Subscribed
from machine_case import MachineCase


class LittleMemory(MachineCase):
    """Debian's kernel alone takes half of this."""

    server = "foreign"
    memory = 128

    def test_the_object_manager_and_its_modules_need_less_than_64_mebibytes(self):
        for class_name in ("PYL_ComputerSystem", "PYL_PCIDevice", "PYL_Fan", "PYL_ConsolidatedStatus"):
            self.instances(class_name)
        self.instances("PYL_RegisteredProfile", namespace="interop")
        status = self.machine.ask("cat /proc/$(cat /run/cimhost.pid)/status")
        self.assertLess(int(re.search(r"VmHWM:\s+(\d+) kB", status).group(1)), 64 * 1024)
        self.assertNotIn("Out of memory", self.machine.ask("dmesg"))


class Jumps(Subscribed):
    server = "slblade"

    def expect_alert(self):
        heard = self.alerts().count("Test Event Id:")
        self.machine.ask("touch /tmp/PYL.test")
        self.wait_until(lambda: self.alerts().count("Test Event Id:") >= heard + 3)

    def test_a_clock_that_jumps_costs_no_request_and_no_alert(self):
        self.expect_alert()
        for year in ("2037", "2001"):
            self.machine.ask(f"date -s {year}-06-01")
            self.assertEqual(1, len(self.instances("PYL_ComputerSystem")))
            self.expect_alert()
            self.assertRegex(self.alerts(), f"(?m)^{year}-06-01")

    def test_a_host_name_that_changes_is_the_systems_name_after_a_restart(self):
        self.machine.ask("hostname renamed")
        self.assertEqual(1, len(self.instances("PYL_ComputerSystem")))
        self.machine.stop_serving()
        self.serve()
        self.assertEqual("renamed", self.instance("PYL_ComputerSystem")["Name"])
        self.machine.ask(f"hostname {self.server}")


if __name__ == "__main__":
    unittest.main()
