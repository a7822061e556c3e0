"""What happens to a server while it runs, as a WBEM client, a listener and the enclosure learn it; in servers_test.py, on
the servers that have what it takes."""

import re

from box.alerts import Listener, subscribe
from box.answers import Client
from machine_case import PROGRAM, MachineCase

UNKNOWN, OK, DEGRADED, ERROR, STOPPED = "0", "2", "3", "6", "10"


class SubscribedCase(MachineCase):
    """A listener inside, subscribed to all alerts from outside."""

    listener = None

    @classmethod
    def serve(cls, *options):
        super().serve(*options)
        heard = ""
        if cls.listener:
            heard = cls.listener.text()
        else:
            cls.listener = Listener(cls.machine, PROGRAM, "alerts")
        subscribe(Client(cls.machine.address, cls.machine.client_options), cls.machine.server.host_name)
        cls("alerts").wait_until(lambda: "WBEM Providers started" in cls.listener.text()[len(heard):])

    def alerts(self):
        """What the listener printed."""
        return self.listener.text()

    def told_after(self, happens, pattern):
        """What it printed of an alert whose text has this, that came after this happened."""
        before = len(self.alerts())
        happens()
        self.wait_until(lambda: re.search(pattern, self.alerts()[before:]))
        return self.alerts()[before:]


class FanCase(SubscribedCase):
    def change(self, name):
        self.addCleanup(self.recover)
        return lambda: self.machine.change(name)

    def recover(self):
        self.machine.change("fan1-comes-back")
        self.wait_until(lambda: self.status() == OK and self.consolidated() == OK)

    def fan(self, channel="fan1"):
        return next(fan for fan in self.instances("PYL_Fan") if fan["DeviceID"].endswith(channel))

    def status(self):
        return self.fan()["OperationalStatus"]

    def consolidated(self):
        for each in self.instances("PYL_ConsolidatedStatus"):
            if each.get("ReportingClass") == "PYL_FanGroup":
                return each["OperationalStatus"]
        return None


class FanOfABladeCase(FanCase):
    def enclosure_was_told(self, event, since):
        lines = self.machine.controller.lines
        self.wait_until(lambda: any(f"--EID {event} " in f"{line} " for line in lines()[since:]))

    def test_a_fan_that_fails_is_told_to_client_listener_and_enclosure_and_its_repair_to_the_first_two(self):
        before = len(self.machine.controller.lines())
        told = self.told_after(self.change("fan1-fails"), r"Fan failed")
        self.assertRegex(told, 'EnclosureName = "enc-7"')
        self.assertRegex(told, 'RackName = "rack-B"')
        self.assertEqual(ERROR, self.status())
        self.wait_until(lambda: self.consolidated() == ERROR)
        self.enclosure_was_told(3, before)
        self.told_after(self.change("fan1-comes-back"), r"Fan repaired")
        self.assertEqual((OK, "1875"), (self.status(), self.fan()["CurrentSpeed"]))

    def test_heart_beats_reach_the_listener_while_they_are_on(self):
        # A trigger of five seconds' beats, taken before the first one is due.
        self.told_after(lambda: self.machine.ask("touch /tmp/PYL.EVConf; touch /tmp/PYL.heartbeats"), r"Heart Beat indication Id: ?2\b")
        self.machine.ask("[ ! -e /tmp/PYL.EVConf ]; rm /tmp/PYL.heartbeats")

    def test_a_fan_that_stands_still_is_stopped(self):
        self.change("fan1-stops")()
        self.wait_until(lambda: self.status() == STOPPED)
        self.assertEqual("0", self.fan()["CurrentSpeed"])
        self.wait_until(lambda: self.consolidated() == STOPPED)

    def test_a_fan_that_turns_slower_has_that_speed(self):
        self.change("fan1-slows")()
        self.wait_until(lambda: self.fan()["CurrentSpeed"] == "625")
        self.assertEqual(OK, self.status())

    def test_fans_that_are_pulled_and_put_back_are_told(self):
        driver = "echo $(cat /run/bus)-002c >/sys/bus/i2c/drivers/max6639/"
        told = self.told_after(lambda: self.machine.ask(f"{driver}unbind"), "fan2")
        self.assertRegex(told, "Fan removed")
        self.assertEqual([], self.instances("PYL_Fan"))
        told = self.told_after(lambda: self.machine.ask(f"{driver}bind"), "fan2")
        self.assertRegex(told, "Fan inserted")
        self.assertEqual(2, len(self.instances("PYL_Fan")))


class FanWithLimitsCase(FanCase):
    def test_a_fan_below_its_least_speed_is_degraded_and_told(self):
        told = self.told_after(self.change("fan1-slows"), "fan1")
        self.assertEqual((DEGRADED, "3068", "3375"),
                         (self.status(), self.fan()["CurrentSpeed"], self.fan()["MinimumSpeed"]))
        self.assertNotRegex(told, "fan2|EnclosureName|RackName")  # it is no blade
        self.wait_until(lambda: self.consolidated() == DEGRADED)

    def test_a_fan_with_a_least_speed_that_stands_still_has_failed_and_is_told(self):
        self.told_after(self.change("fan1-stops"), "Fan failed")
        self.assertEqual((ERROR, "0"), (self.status(), self.fan()["CurrentSpeed"]))
        self.wait_until(lambda: self.consolidated() == ERROR)

    def test_a_reading_that_a_driver_calls_impossible_is_no_speed(self):
        self.change("fan1-has-no-reading")()
        self.wait_until(lambda: "-1" in self.machine.ask("cat /sys/class/hwmon/hwmon*/fan1_input"))
        self.wait_until(lambda: self.status() == UNKNOWN)
        self.assertNotIn("CurrentSpeed", self.fan())


class ControllerCase(SubscribedCase):
    def triggered(self):
        """How much the enclosure was told before three test alerts that the listener has now."""
        told, heard = len(self.machine.controller.lines()), self.alerts().count("Test Event Id:")
        self.machine.ask("touch /tmp/PYL.test")
        self.wait_until(lambda: self.alerts().count("Test Event Id:") >= heard + 3)
        return told

    def expect_forwarding(self):
        before = self.triggered()
        self.wait_until(lambda: len(self.machine.controller.lines()) >= before + 3)
        self.assertEqual(["1", "2", "3"],
                         re.findall(r"--EID (\d)\b", "\n".join(self.machine.controller.lines()[before:])))

    def test_alerts_reach_their_listener_without_the_controller_and_the_enclosure_when_it_is_back(self):
        self.expect_forwarding()
        self.machine.controller.kill()
        self.assertEqual(len(self.machine.controller.lines()), self.triggered())
        self.machine.controller.start()
        self.expect_forwarding_again()

    def expect_forwarding_again(self):
        """QEMU and the kernel need their time until they have noticed."""
        for _ in range(10):
            before = self.triggered()
            try:
                self.wait_until(lambda: len(self.machine.controller.lines()) >= before + 3, 12)
                return
            except AssertionError:
                continue
        self.fail(self.log())

    def test_drivers_of_the_controller_that_are_unloaded_cost_no_alert(self):
        self.expect_forwarding_again()
        self.machine.ask("modprobe -r ipmi_devintf ipmi_si")
        self.triggered()
        self.machine.ask("modprobe ipmi_si; modprobe ipmi_devintf")
        self.expect_forwarding_again()

    def test_a_mute_controller_costs_no_alert(self):
        self.expect_forwarding_again()
        self.machine.controller.freeze()
        self.triggered()
        self.machine.controller.thaw()
        self.expect_forwarding_again()


class SlotCase(MachineCase):
    def in_slot(self, slot):
        return [each for each in self.instances("PYL_PCIDevice") if each.get("PhysicalSlot") == slot]

    def has(self, count):
        self.work()
        return len(self.in_slot("2")) == count

    def test_a_device_that_is_plugged_in_and_out_comes_and_goes(self):
        self.assertEqual([], self.in_slot("2"))
        self.machine.plug("nvme,id=late,bus=slot2,serial=KTQN0002")
        self.wait_until(lambda: self.has(1))
        self.assertIn("Non-volatile memory controller", self.in_slot("2")[0]["ElementName"])
        self.assertIn("SystemPCIDevice", self.ask("rin", f":{self.in_slot('2')[0].path}"))
        self.machine.unplug("late")
        self.wait_until(lambda: self.has(0))
        self.machine.plug("e1000e,id=later,bus=slot2")
        self.wait_until(lambda: self.has(1))
        self.assertIn("Ethernet controller", self.in_slot("2")[0]["ElementName"])


class JumpCase(SubscribedCase):
    """A clock that jumps, a name that changes."""

    def expect_alert(self):
        heard = self.alerts().count("Test Event Id:")
        self.machine.ask("touch /tmp/PYL.test")
        self.wait_until(lambda: self.alerts().count("Test Event Id:") >= heard + 3)

    def test_a_clock_that_jumps_costs_no_request_and_no_alert(self):
        self.addCleanup(self.machine.ask, f"date -s @{self.machine.ask('date +%s').strip()}")
        self.expect_alert()
        for year in ("2037", "2001"):
            self.machine.ask(f"date -s {year}-06-01")
            self.assertEqual(1, len(self.instances("PYL_ComputerSystem")))
            self.expect_alert()
            self.assertRegex(self.alerts(), f"(?m)^{year}-06-01")

    def test_a_host_name_that_changes_is_the_systems_name_after_a_restart(self):
        self.addCleanup(self.rename, self.server)
        self.machine.ask("hostname renamed")
        self.assertEqual(1, len(self.instances("PYL_ComputerSystem")))
        self.rename("renamed")
        self.assertEqual("renamed", self.instance("PYL_ComputerSystem")["Name"])

    def rename(self, name):
        self.machine.stop_serving()
        self.machine.ask(f"hostname {name}")
        self.serve()
