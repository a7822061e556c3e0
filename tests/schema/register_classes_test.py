#!/usr/bin/env python3
"""The registration that is made of a module's MOF and sources."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SOURCE = "// PYL_CMPI_PROVIDER(Other, make)\nPYL_CMPI_PROVIDER(DiskProvider, make)\n"
MOF = """// class ACME_Not : CIM_Not {};
[Abstract, Description ("class ACME_Base { uint32 f(); };")]
class ACME_Base : CIM_ManagedElement {
    [Key, ValueMap {"1", "2"}] string ID = "uint32 f()";
    uint16 Codes[] = {1, 2};
};
/* [Association] */ class ACME_Disk : ACME_Base {};
class ACME_Port : ACME_Base { [Override ("Reset")] uint32 Reset([IN] boolean Force); };
class ACME_FastPort : ACME_Port {};
[Association] class ACME_PortOfDisk : CIM_Dependency {
    [Key] ACME_Disk REF Antecedent; [Key] ACME_Port REF Dependent; };
class ACME_System : CIM_SystemDevice {};
class ACME_Alert : KT_AlertIndication { string Text; };
"""


class Registration(unittest.TestCase):
    def make(self, source=SOURCE, mof=MOF):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        folder = pathlib.Path(folder.name)
        (folder / "a.cpp").write_text(source, encoding="utf-8")
        (folder / "a.mof").write_text(mof, encoding="utf-8")
        result = subprocess.run(
            [sys.executable, "-B", ROOT / "schema/register_classes.py", folder / "acmeDisk.registration", "root/acme",
             ROOT / "schema", folder / "a.mof", folder / "a.cpp"], capture_output=True, text=True, check=False)
        if result.returncode != 0:
            return result.stderr
        text = (folder / "acmeDisk.registration").read_text(encoding="utf-8")
        return [line.replace(" root/acme DiskProvider acmeDisk", "") for line in text.splitlines()[1:]]

    def test_each_class_that_is_not_abstract_has_the_kinds_that_it_is_declared_for(self):
        self.assertEqual([
            "ACME_Disk instance",
            "ACME_Port instance method",
            "ACME_FastPort instance method",
            "ACME_PortOfDisk instance association",
            "ACME_System instance association",
            "ACME_Alert indication",
        ], self.make())

    def test_one_provider_is_wanted(self):
        self.assertIn("(there: none)", self.make(source="int x;"))
        self.assertIn("(there: DiskProvider, FanProvider)", self.make(SOURCE + "PYL_CMPI_PROVIDER(FanProvider, f)"))

    def test_a_file_without_classes_is_refused(self):
        self.assertIn("no class to register in ", self.make(mof="[Abstract] class ACME_Base {};"))

    def test_our_own_modules_registrations_are_the_same(self):
        source = ROOT / "providers/baseserver/Module.cpp"
        made = self.make(source.read_text(encoding="utf-8"),
                         (ROOT / "schema/PYL_BaseServer.mof").read_text(encoding="utf-8"))
        own = (ROOT / "schema/pylBaseServer.registration").read_text(encoding="utf-8").splitlines()[1:]
        kinds = [" ".join([line.split()[0], *line.split()[4:]]) for line in own if "Indication" not in line]
        self.assertEqual(sorted(kinds), sorted(line.replace(" root/acme PYL_BaseServerProvider acmeDisk", "")
                                               for line in made))


if __name__ == "__main__":
    unittest.main()
