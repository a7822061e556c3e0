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
