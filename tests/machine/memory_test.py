"""Little memory."""

import re
import unittest

from hardware_cases import SubscribedCase as Subscribed


class LittleMemory(Subscribed):
    """Debian's kernel keeps half of this for itself, and does not start with 80."""

    server = "foreign"
    memory = 96

    def test_the_object_manager_and_its_modules_do_with_less_than_16_mebibytes_in_a_guest_that_has_48(self):
        self.assertLess(self.kilobytes("MemTotal", "/proc/meminfo"), 64 * 1024)
        for class_name in ("PYL_ComputerSystem", "PYL_PCIDevice", "PYL_Fan", "PYL_ConsolidatedStatus"):
            self.instances(class_name)
        self.instances("PYL_RegisteredProfile", namespace="interop")
        self.work()
        self.machine.ask("touch /tmp/PYL.test")
        self.wait_until(lambda: self.alerts().count("Test Event Id:") >= 3)
        self.assertLess(self.kilobytes("VmHWM", "/proc/$(cat /run/cimhost.pid)/status"), 16 * 1024)
        self.assertNotIn("Out of memory", self.machine.ask("dmesg"))

    def kilobytes(self, name, file):
        return int(re.search(rf"{name}:\s+(\d+) kB", self.machine.ask(f"cat {file}")).group(1))


if __name__ == "__main__":
    unittest.main()
