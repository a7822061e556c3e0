#!/usr/bin/env python3
"""The registrations that are made from ours say the same, and bad sources are refused by line."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SCRIPT = ROOT / "schema/make_registrations.py"
SOURCE = """# a comment
ACME_Disk  root/acme   DiskProvider  acmeDisk  instance association  # and another

ACME_Event root/events DiskProvider  acmeDisk  indication method
"""


class Registrations(unittest.TestCase):
    def make(self, text):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        source = pathlib.Path(folder.name) / "acmeDisk.registration"
        source.write_text(text, encoding="utf-8")
        result = subprocess.run([sys.executable, "-B", SCRIPT, source, folder.name, "1.2.3"],
                                capture_output=True, text=True, check=False)
        return result, pathlib.Path(folder.name)

    def test_sfcb_gets_a_block_a_class(self):
        _, folder = self.make(SOURCE)
        self.assertEqual(
            "[ACME_Disk]\n   provider: DiskProvider\n   location: acmeDisk\n"
            "   type: instance association\n   namespace: root/acme\n\n"
            "[ACME_Event]\n   provider: DiskProvider\n   location: acmeDisk\n"
            "   type: indication method\n   namespace: root/events\n",
            (folder / "acmeDisk.reg").read_text(encoding="utf-8"))

    def test_openpegasus_gets_one_module_one_provider_and_a_capability_a_class(self):
        _, folder = self.make(SOURCE)
        mof = (folder / "acmeDiskRegistration.mof").read_text(encoding="utf-8")
        self.assertEqual(["PG_ProviderModule", "PG_Provider", "PG_ProviderCapabilities",
                          "PG_ProviderCapabilities"], re.findall(r"instance of (\w+)", mof))
        self.assertIn('Location = "acmeDisk";', mof)
        self.assertIn('Version = "1.2.3";', mof)
        self.assertEqual(["2, 3", "4, 5"], re.findall(r"ProviderType = \{([^}]*)\};", mof))
        self.assertEqual(['"1"', '"2"'], re.findall(r"CapabilityID = (\S+);", mof))

    def test_a_class_in_several_namespaces_is_one_entry_and_interop_is_the_hosts_own(self):
        _, folder = self.make("ACME_Link  interop    DiskProvider  acmeDisk  association\n"
                              "ACME_Disk  root/acme  DiskProvider  acmeDisk  instance\n"
                              "ACME_Link  root/acme  DiskProvider  acmeDisk  association\n")
        sfcb = (folder / "acmeDisk.reg").read_text(encoding="utf-8")
        self.assertEqual(["root/interop root/acme", "root/acme"],
                         re.findall(r"namespace: (.*)", sfcb))
        self.assertEqual(["ACME_Link", "ACME_Disk"], re.findall(r"^\[(\w+)\]$", sfcb, re.MULTILINE))
        pegasus = (folder / "acmeDiskRegistration.mof").read_text(encoding="utf-8")
        self.assertEqual(['"root/PG_InterOp", "root/acme"', '"root/acme"'],
                         re.findall(r"Namespaces = \{([^}]*)\};", pegasus))

    def test_a_class_with_two_providers_is_refused(self):
        first = "ACME_Disk root/acme DiskProvider acmeDisk instance\n"
        for line in ("ACME_Disk root/acme DiskMethods acmeDisk method",
                     "ACME_Disk root/acme DiskProvider acmeMore method",
                     "ACME_Disk root/more DiskProvider acmeDisk instance method"):
            result, _ = self.make(first + line + "\n")
            self.assertNotEqual(0, result.returncode)
            self.assertIn("acmeDisk.registration:2: ACME_Disk has one provider", result.stderr)

    def test_no_class_of_a_namespace_is_registered_for_two_modules(self):
        # sfcb takes the first registration of a class and overlooks the others.
        modules = {}
        for source in (ROOT / "schema").glob("*.registration"):
            for line in source.read_text(encoding="utf-8").splitlines():
                words = line.split("#")[0].split()
                if words:
                    modules.setdefault(words[0].lower(), set()).add((words[2], words[3]))
        self.assertIn("pyl_computersystem", modules)
        self.assertEqual({}, {name: found for name, found in modules.items() if len(found) > 1})

    def test_a_line_that_is_wrong_is_named(self):
        for line in ("ACME_Disk root/acme DiskProvider acmeDisk",
                     "ACME_Disk root/acme DiskProvider acmeDisk telepathy"):
            result, _ = self.make("# first\n" + line + "\n")
            self.assertNotEqual(0, result.returncode)
            self.assertIn("acmeDisk.registration:2:", result.stderr)

    def test_every_class_of_the_schema_is_registered_or_has_a_subclass_that_is(self):
        for mof in (ROOT / "schema").glob("PYL_*.mof"):
            declared = re.findall(r"^class (\w+)\s*:\s*(\w+)", mof.read_text(encoding="utf-8"),
                                  re.MULTILINE)
            self.assertNotEqual([], declared, mof.name)
            classes = {name for name, _ in declared} - {parent for _, parent in declared}
            registered = set()
            for source in (ROOT / "schema").glob("*.registration"):
                registered |= set(re.findall(r"^(\w+)", source.read_text(encoding="utf-8"),
                                             re.MULTILINE))
            self.assertEqual(set(), classes - registered, mof.name)


if __name__ == "__main__":
    unittest.main()
