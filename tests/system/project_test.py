"""cimhost without its options: what is installed, and project files."""

import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

from host import BUILD, SOURCE, Host

SCHEMA = SOURCE / "schema"


class Installed(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.prefix = pathlib.Path(folder.name).resolve()
        self.program = self.prefix / "bin/cimhost"
        self.program.parent.mkdir()
        shutil.copy(BUILD / "cimhost/cimhost", self.program)
        text = self.run_program("serve", "--help").stdout
        self.modules = self.prefix / "bin" / re.search(r"--provider-dir DIR=(\S+)", text).group(1)

    def run_program(self, *words):
        return subprocess.run([self.program, *words], capture_output=True, text=True, timeout=60,
                              check=False)

    def test_all_of_a_prefix_is_served_without_any_option(self):
        data = self.prefix / "share/pylcommon"
        shutil.copytree(SCHEMA, data / "mof")
        self.modules.resolve().mkdir(parents=True)
        for module in ("baseserver/libpylBaseServer", "fan/libpylFan", "profiles/libpylProfiles",
                       "consolidatedstatus/libpylConsolidatedStatus"):
            file = BUILD / f"providers/{module}.so"
            (self.modules / file.name).symlink_to(file)
        vendor = data / "acme"
        vendor.mkdir()
        (vendor / "acme.mof").write_text("class ACME_Fan : PYL_Fan {};")
        (vendor / "acme.registration").write_text("ACME_Fan root/acme P acme instance\n")
        with Host(arguments=(), program=self.program) as host:
            self.assertEqual(host.ask("ein", ":PYL_BaseServerWorker").status, 0)
            self.assertGreater(len(host.ask("ein", ":PYL_RegisteredProfile", namespace="interop").lines), 5)
            self.assertIn("libacme.so was not found", host.ask("ein", ":ACME_Fan", namespace="root/acme").text)
            self.assertNotIn("does not exist", host.log())

    def test_nothing_installed_is_told_with_what_to_do(self):
        result = self.run_program("serve")
        self.assertEqual(result.returncode, 2)
        self.assertIn(f"nothing is installed: there is no registration below {self.prefix}",
                      result.stderr)
        self.assertIn("--project", result.stderr)


class Project(unittest.TestCase):
    def test_the_project_of_the_tree_serves_its_modules(self):
        with Host(arguments=("--project", BUILD / "cimhost.toml")) as host:
            self.assertEqual(host.ask("ein", ":PYL_BaseServerWorker").status, 0)
            self.assertGreater(len(host.ask("ein", ":PYL_RegisteredProfile", namespace="interop").lines), 5)

    def test_it_is_checked_as_it_is_served(self):
        command = [BUILD / "cimhost/cimhost", "check", "--project", BUILD / "cimhost.toml"]
        result = subprocess.run(command, capture_output=True, text=True, timeout=60, check=False)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder) / "cimhost.toml"
            file.write_text("port = 1\nprot = 2\n")
            result = subprocess.run([*command[:3], file], capture_output=True, text=True,
                                    timeout=60, check=False)
        self.assertEqual(result.returncode, 2)
        self.assertIn(f"{file}:2: unknown key 'prot'", result.stderr)


if __name__ == "__main__":
    unittest.main()
