"""Each server as a WBEM client sees it, against what dmidecode, lspci and the kernel say inside; and what happens to
its hardware then, in the same machine."""

import re
import subprocess
import unittest

from box.server import read_server
from hardware_cases import ControllerCase, FanOfABladeCase, FanWithLimitsCase, JumpCase, SlotCase
from machine_case import MachineCase

# dmidecode's words for CIM_Chassis.ChassisPackageType; both number the shapes as DSP0134 does.
SHAPES = {"Desktop": 3, "Rack Mount Chassis": 23, "Blade": 28, None: 0}


def bracketed(text):
    """The number behind a name of lspci's."""
    return int(re.search(r"\[([0-9a-f]{4})\]$", text).group(1), 16)


def present(values):
    """Without what is not known."""
    return {name: value for name, value in values.items() if value is not None}


class ServerCase(MachineCase):
    agentless = False
    identifier = None

    def test_the_kernel_has_the_firmware_table_that_was_meant(self):
        self.assertEqual(read_server(self.server).table.hex(), self.machine.read("/sys/firmware/dmi/tables/DMI").hex())

    def test_the_computer_system_is_what_dmidecode_tells(self):
        system, bios = self.firmware(1), self.firmware(0)
        uuid = system.get("UUID")
        name = self.machine.ask("hostname").strip()
        release = dict(re.findall(r'^(\w+)="?([^"\n]*)"?$', self.machine.ask("cat /etc/os-release"), re.MULTILINE))
        identifying = present({"System UUID": uuid, "Serial number": system.get("Serial Number"),
                               "Server system identifier": self.identifier})
        expected = present({
            "CreationClassName": "PYL_ComputerSystem", "Name": name, "ElementName": name,
            "Caption": "Host computer system", "EnabledState": "2", "RequestedState": "12", "Dedicated": "0",
            "OtherIdentifyingInfo": list(identifying.values()), "IdentifyingDescriptions": list(identifying),
            "Description": system.get("Product Name"), "Manufacturer": system.get("Manufacturer"),
            "Model": system.get("Product Name"), "SerialNumber": system.get("Serial Number"), "UUID": uuid,
            "BIOSVendor": bios.get("Vendor"), "BIOSVersion": bios.get("Version"),
            "OperatingSystem": f"{release['NAME']} {release['VERSION_ID']}",
            "ServerSystemID": self.identifier, "AgentlessOnly": str(self.agentless).lower(),
        })
        self.assertEqual(expected, self.instance("PYL_ComputerSystem"))

    def test_the_chassis_is_what_dmidecode_tells(self):
        system, chassis = self.firmware(1), self.firmware(3)
        name = self.machine.ask("hostname").strip()
        expected = present({
            "CreationClassName": "PYL_ComputerSystemChassis", "Tag": self.instance("PYL_ComputerSystemChassis")["Tag"],
            "ElementName": f"{name} chassis", "Caption": "Server chassis",
            "Manufacturer": chassis.get("Manufacturer", system.get("Manufacturer")),
            "Model": system.get("Product Name"), "PartNumber": system.get("SKU Number"),
            "SerialNumber": chassis.get("Serial Number", system.get("Serial Number")),
            "UserTracking": chassis.get("Asset Tag"),
            "ChassisPackageType": str(SHAPES[chassis.get("Type")]),
        })
        self.assertEqual(expected, self.instance("PYL_ComputerSystemChassis"))

    def test_the_pci_devices_are_those_of_lspci(self):
        found = {device["DeviceID"]: device for device in self.instances("PYL_PCIDevice")}
        expected = {self.device_id(address): self.described(address, fields)
                    for address, fields in self.devices().items()}
        self.assertEqual(sorted(expected), sorted(found))
        for name, properties in expected.items():
            told = dict(found[name])
            for each in ("OperationalStatus", "HealthState"):
                del told[each]
            self.assertEqual(properties, told)

    @staticmethod
    def device_id(address):
        domain, bus, device, function = (int(field, 16) for field in re.split("[:.]", address))
        return f"KTQ:PYL_PCIDevice:{domain:04}:{bus:02}:{device:02}.{function}"

    def described(self, address, fields):
        _, bus, device, function = (int(field, 16) for field in re.split("[:.]", address))
        described = self.told_name(fields)
        subsystem = present({"SubsystemVendorID": fields.get("SVendor"), "SubsystemID": fields.get("SDevice")})
        return present({
            "CreationClassName": "PYL_PCIDevice", "SystemCreationClassName": "PYL_ComputerSystem",
            "SystemName": self.machine.ask("hostname").strip(), "DeviceID": self.device_id(address),
            "ElementName": described, "Description": described, "Caption": "PCI device",
            "BusNumber": str(bus), "DeviceNumber": str(device), "FunctionNumber": str(function),
            "ClassCode": str(bracketed(fields["Class"]) >> 8),
            "VendorID": str(bracketed(fields["Vendor"])), "PCIDeviceID": str(bracketed(fields["Device"])),
            # lspci leaves out the subsystem of all zeros.
            "SubsystemVendorID": "0", "SubsystemID": "0",
            **{name: str(bracketed(value)) for name, value in subsystem.items()},
            "RevisionID": str(int(fields.get("Rev", "0"), 16)),
            "PhysicalSlot": fields.get("PhySlot"), "DriverName": fields.get("Driver"),
        })

    CLASS_NAMES = {
        "Audio device": "Multimedia device",
        "Communication controller": "Simple communication controller",
        "Non-Volatile memory controller": "Non-volatile memory controller",
        "PCI bridge": "PCI-to-PCI bridge",
        "SATA controller": "Serial ATA controller",
        "SMBus": "SMBus controller",
        "Unclassified device": "Device without class",
    }

    def told_name(self, fields):
        """The class as it is called here, and the device as in the host's list, or its numbers."""
        class_name, vendor, device = (re.sub(r" \[[0-9a-f]{4}\]$", "", fields[name])
                                      for name in ("Class", "Vendor", "Device"))
        class_name = self.CLASS_NAMES.get(class_name, class_name)
        if "Device" not in (vendor, device) and vendor != "Vendor":
            return f"{class_name}: {vendor} {device}"
        return f"{class_name} {bracketed(fields['Vendor']):04x}:{bracketed(fields['Device']):04x}"

    def test_the_state_of_the_devices_is_posted_where_agents_manage_the_server(self):
        self.work()
        posted = {each.get("ReportingClass") for each in self.instances("PYL_ConsolidatedStatus")}
        self.assertEqual(not self.agentless, "PYL_PCIDeviceGroup" in posted, posted)

    def test_every_fan_of_the_kernel_has_its_speed(self):
        # A fan that another test has slowed may still be on its way back, and the kernel asks each at its own time.
        self.wait_until(lambda: self.kernel_speeds() == sorted(fan["CurrentSpeed"] for fan in self.instances("PYL_Fan")))
        self.assertEqual(2 if read_server(self.server).chips else 0, len(self.kernel_speeds()))

    def kernel_speeds(self):
        text = self.machine.run("grep . /sys/class/hwmon/*/fan*_input").text
        return sorted(re.findall(r"fan\d+_input:(\d+)$", text, re.MULTILINE))


class WaveJ(ServerCase, FanWithLimitsCase):
    server = "wavej"
    identifier = "KTQ-J-0001"

    def test_every_user_is_answered_with_their_password_and_nobody_else(self):
        options = self.machine.client_options
        for user in ("operator:wave-300", "auditor:reads"):
            self.assertIn("PYL_ComputerSystem.", self.said(f"https://{user}@", options))
        for user in ("operator:wave-400", "auditor:wave-300", "nobody:wave-300"):
            self.assertIn("Invalid username/password", self.said(f"https://{user}@", options))
        self.assertIn("Username/password required", self.said("https://", options))

    def test_who_does_not_trust_its_certificate_or_asks_in_the_clear_learns_nothing(self):
        for scheme in ("https", "http"):
            said = self.said(f"{scheme}://operator:wave-300@", ())
            self.assertIn("wbemcli: Http Exception", said)
            self.assertNotIn("PYL_ComputerSystem.", said)

    def said(self, scheme, options):
        """What wbemcli prints of the names of computer systems."""
        address = f"{scheme}localhost:{self.machine.port}/root/ktq:PYL_ComputerSystem"
        return subprocess.run(["wbemcli", "ein", *options, address], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, timeout=60, check=False).stdout

    def test_requests_are_timed_in_the_log(self):
        self.instance("PYL_ComputerSystem")
        self.wait_until(lambda: any(re.search(r":perfmon.*enumInstances completed in \d", line)
                                    for line in self.machine.console))


class WaveK(ServerCase, SlotCase):
    server = "wavek"
    agentless = True
    identifier = "KTQ-K-0002"


class Blade(ServerCase, FanOfABladeCase):
    server = "blade"
    identifier = "KTQ-B-0005"


class SlBlade(ServerCase, ControllerCase, JumpCase):
    server = "slblade"
    identifier = "KTQ-S-0006"


class Foreign(ServerCase):
    server = "foreign"


class Broken(ServerCase):
    server = "broken"

    def test_the_log_says_at_which_record_the_table_lies(self):
        self.instance("PYL_ComputerSystem")
        self.wait_until(lambda: any("runs past the end of the table" in line for line in self.machine.console))


# They are no tests of their own.
del ServerCase, MachineCase, ControllerCase, FanOfABladeCase, FanWithLimitsCase, JumpCase, SlotCase

if __name__ == "__main__":
    unittest.main()
