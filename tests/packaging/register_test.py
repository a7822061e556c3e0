#!/usr/bin/env python3
"""pylcommon-register against stand-ins of the object managers' tools, with the modules of the build in
$PYL_BUILD_FOLDER."""

import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import textwrap
import unittest

BUILD = pathlib.Path(os.environ["PYL_BUILD_FOLDER"])
STAND_IN = pathlib.Path(__file__).with_name("stand_in.py")
MODULES = ("pylBaseServer", "pylConsolidatedStatus", "pylFan", "pylProfiles")


class EveryHost:
    """What holds for each host; the classes below say which."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.prefix = pathlib.Path(folder.name)
        for component in ("common", "providers"):
            subprocess.run(["cmake", "--install", BUILD, "--prefix", cls.prefix, "--component", component],
                           check=True, capture_output=True)
        cls.data = cls.prefix / "share/pylcommon/mof"

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)
        self.providers = self.home / "providers"
        for name in ("providers", "bin", "stage/regs"):
            (self.home / name).mkdir(parents=True)
        for tool in self.tools:
            (self.home / "bin" / tool).symlink_to(STAND_IN)

    def run_it(self, *words, status=0, own=True, libraries=BUILD / "packaging"):
        """What the program prints."""
        own_words = ("--host", self.host, "--provider-dir", self.providers) if own else ()
        result = subprocess.run(
            [str(word) for word in (self.prefix / "bin/pylcommon-register", *own_words, *words)],
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, timeout=60,
            env={"PATH": f"{self.home}/bin:/usr/bin:/bin", "STAND_IN": str(self.home),
                 "LD_LIBRARY_PATH": str(libraries)})
        self.assertEqual(status, result.returncode, result.stdout)
        return result.stdout

    def lines(self, name):
        file = self.home / name
        return file.read_text(encoding="utf-8").splitlines() if file.exists() else []

    def calls(self):
        """The tools' calls since the last time, without folders."""
        calls = [re.sub(r"(?<= )/\S*/(?=[\w.]+$|[\w.]+ )", "", line) for line in self.lines("calls")]
        (self.home / "calls").unlink(missing_ok=True)
        return calls

    def changes(self):
        """What the calls left behind."""
        links = {file.name: file.readlink() for file in self.providers.iterdir()}
        files = {str(file.relative_to(self.home)): file.read_text(encoding="utf-8")
                 for folder in ("stage", "registration") for file in (self.home / folder).rglob("*")
                 if file.is_file()}
        return links, files, self.lines("classes"), self.lines("modules")


    def test_the_modules_are_linked_into_the_hosts_folder(self):
        self.run_it()
        for module in MODULES:
            link = self.providers / f"lib{module}.so"
            self.assertTrue(link.is_symlink() and link.exists(), link)
        self.assertEqual(len(MODULES), len(list(self.providers.iterdir())))

    def test_the_page_on_deployment_shows_what_is_printed(self):
        page = (STAND_IN.parents[2] / "docs/deploying.md").read_text(encoding="utf-8")
        folder, shown = re.search(
            rf"^ +\$ pylcommon-register --host {self.host} --provider-dir (\S+) pylProfiles\n(.*?)\n\n",
            page, re.MULTILINE | re.DOTALL).groups()
        printed = self.run_it("pylProfiles")
        for pattern, text in ((rf"{self.prefix}/share/pylcommon/mof", "..."),
                              (rf"{self.prefix}/lib\S*?/cmpi", "/usr/lib/x86_64-linux-gnu/cmpi"),
                              (rf" -s {self.home}/stage| -r {self.home}/registration", ""),
                              (rf"{self.providers}", folder), (rf"{self.home}", "/var/lib/sfcb")):
            printed = re.sub(pattern, text, printed)
        self.assertEqual(textwrap.dedent(shown), printed.rstrip("\n"))

    def test_modules_may_stay_where_they_are(self):
        printed = self.run_it("--host", self.host, "pylFan", own=False)
        self.assertIn("must load providers from there", printed)
        self.assertEqual([], list(self.providers.iterdir()))

    def test_a_second_time_leaves_the_same(self):
        self.run_it("pylFan")
        before = self.changes()
        printed = self.run_it("pylFan")
        self.assertEqual(before, self.changes())
        self.assertIn("libpylFan.so: there already", printed)

    def test_the_hosts_folder_may_be_below_the_same_prefix(self):
        folder = self.prefix / "lib99/cmpi"
        folder.mkdir(parents=True)
        self.addCleanup(shutil.rmtree, folder.parent)
        for words, state in (((), "linked"), ((), "there already"), (("--remove",), "removed")):
            self.assertIn(f"{folder}/libpylFan.so: {state}",
                          self.run_it("--provider-dir", folder, *words, "pylFan"))

    def test_check_tells_what_is_in_place_and_what_is_not(self):
        printed = self.run_it("--check", "pylFan", status=1)
        self.assertIn(f"  no   there is no {self.providers}/libpylFan.so\n", printed)
        self.assertRegex(printed, r"Not in place: \d+ of the above\.\n$")
        before = self.changes()
        self.run_it("--check", "pylFan", status=1)
        self.assertEqual(before, self.changes())
        self.run_it("pylFan")
        printed = self.run_it("--check", "pylFan")
        self.assertNotIn("  no  ", printed)
        self.assertTrue(printed.endswith("All is in place.\n"), printed)
        (self.providers / "libpylFan.so").unlink()
        self.assertEqual([f"  no   there is no {self.providers}/libpylFan.so"],
                         re.findall("^  no .*", self.run_it("--check", "pylFan", status=1), re.MULTILINE))

    def test_check_tells_of_a_library_that_is_not_found(self):
        self.run_it("pylFan")
        printed = self.run_it("--check", "pylFan", status=1, libraries="/none")
        self.assertIn("  no   not found by the loader: libpylcommon.so.1 (", printed)

    def test_remove_leaves_nothing_that_is_served(self):
        self.run_it("pylFan")
        self.run_it("--remove", "pylFan")
        self.assertEqual([], list(self.providers.iterdir()))
        self.assertIn("not registered" if self.host == "openpegasus" else "not staged",
                      self.run_it("--remove", "pylFan"))

    def test_what_a_modules_classes_derive_from_is_given_first(self):
        texts = {"ACME.mof": "class ACME_Alert : ACME_Alerts {\n};\n",
                 "Base.mof": "class ACME_Alerts: KT_AlertIndication {\n};\n",
                 "acme.registration": "ACME_Alert root/ktq AcmeProvider acme indication\n",
                 "acme.reg": "[ACME_Alert]\n   location: acme\n",
                 "acmeRegistration.mof": 'instance of PG_ProviderModule {\n   Name = "acme";\n};\n'}
        library = next(self.prefix.rglob("libpylFan.so")).with_name("libacme.so")
        shutil.copy(library.with_name("libpylFan.so"), library)
        for name, text in texts.items():
            (self.data / name).write_text(text, encoding="utf-8")
        for file in (library, *(self.data / name for name in texts)):
            self.addCleanup(file.unlink)
        self.run_it("acme")
        call = next(line for line in self.calls() if "PYL_Indications.mof" in line)
        self.assertTrue(call.endswith(" PYL_Indications.mof Base.mof ACME.mof"), call)
        self.assertIn("All is in place.", self.run_it("--check", "acme"))

    def test_a_missing_tool_is_named_before_anything_is_changed(self):
        (self.home / "bin" / self.tools[0]).unlink()
        printed = self.run_it("pylFan", status=1)
        self.assertIn(f"{self.tools[0]} is not in the PATH", printed)
        self.assertEqual([], list(self.providers.iterdir()))

    def test_a_file_of_somebody_else_is_left_alone(self):
        mine = self.providers / "libpylFan.so"
        mine.write_text("mine", encoding="utf-8")
        self.assertIn("no link of ours; take it away first", self.run_it("pylFan", status=1))
        self.run_it("--remove", "pylFan")
        self.assertEqual("mine", mine.read_text(encoding="utf-8"))

    def test_what_is_asked_wrongly_is_refused(self):
        for words, reason in ((("--host", "other"), "unknown host other"), ((), "--host says"),
                              (("--host",), "--host wants a value"), (("--hurry",), "unknown option")):
            self.assertIn(reason, self.run_it(*words, own=False, status=2))
        for words, reason in ((("pylNone",), "no module pylNone"),
                              (("--provider-dir", "/none"), "no folder /none"),
                              (("--prefix", "/none"), "no pylcommon in /none"),
                              (("--cim-schema", "/none"), "there is no /none")):
            self.assertIn(reason, self.run_it(*words, status=1))
        self.assertEqual([], self.calls())


class OpenPegasus(EveryHost, unittest.TestCase):
    host = "openpegasus"
    tools = ("cimmof", "cimprovider", "cimserver", "cimcli")

    def setUp(self):
        super().setUp()
        (self.home / "cim-schema").write_text("root/ktq\nroot/PG_InterOp\n", encoding="utf-8")

    def test_a_first_time_calls_the_tools_in_this_order(self):
        self.run_it()
        self.assertEqual(
            ["cimprovider -l -s",
             "cimmof -n root/PG_InterOp PYL_Profiles.mof",
             "cimmof -n root/ktq PYL_BaseServer.mof PYL_Indications.mof PYL_ConsolidatedStatus.mof "
             "PYL_Fan.mof PYL_Profiles.mof",
             *(f"cimmof -n root/PG_InterOp {module}Registration.mof" for module in MODULES)],
            self.calls())
        self.assertEqual(list(MODULES), self.lines("modules"))

    def test_every_registered_class_is_there_in_its_namespace(self):
        self.run_it()
        classes = self.lines("classes")
        text = "".join(file.read_text(encoding="utf-8") for file in self.data.glob("*Registration.mof"))
        served = re.findall(r'ClassName = "(\w+)";\s*Namespaces = \{([^}]*)\}', text)
        self.assertEqual(17, len(served))
        for name, namespaces in served:
            for namespace in re.findall(r'"([^"]*)"', namespaces):
                self.assertIn(f"{namespace} {name}", classes)

    def test_a_repeated_registration_replaces_the_first(self):
        self.run_it("pylFan")
        self.calls()
        self.run_it("pylFan")
        self.assertEqual(["cimprovider -l -s",
                          "cimmof -n root/ktq -uc -aV PYL_Fan.mof PYL_Indications.mof",
                          "cimprovider -r -m pylFan",
                          "cimmof -n root/PG_InterOp pylFanRegistration.mof"], self.calls())

    def test_a_namespace_without_the_cim_schema_stops_with_what_to_do(self):
        (self.home / "cim-schema").unlink()
        printed = self.run_it(status=1)
        self.assertIn("    Could not find declaration for Qualifier named Version\n", printed)
        self.assertIn("cimmof failed with status 1", printed)
        self.assertIn("--cim-schema loads it", printed)
        self.assertEqual([], self.lines("modules"))

    def test_the_cim_schema_goes_into_each_namespace_first(self):
        (self.home / "cim-schema").unlink()
        schema = self.home / "cim_schema.mof"
        schema.write_text("Qualifier Key : boolean;\n", encoding="utf-8")
        self.run_it("--cim-schema", schema, "pylProfiles")
        self.assertEqual([f"cimmof -w -uc -aEV -I {self.home} -n {space} {schema}"
                          for space in ("root/PG_InterOp", "root/ktq")],
                         [call for call in self.lines("calls") if "-aEV" in call])
        self.assertEqual(["pylProfiles"], self.lines("modules"))

    def test_a_server_that_does_not_run_is_said_so(self):
        (self.home / "fail-cimprovider").write_text("Cannot connect", encoding="utf-8")
        for words in ((), ("--remove",), ("--check",)):
            printed = self.run_it(*words, status=1)
            self.assertIn("Cannot connect", printed)
            self.assertIn("cimserver starts it", printed)

    def test_check_tells_of_classes_that_are_missing(self):
        self.run_it("pylFan")
        (self.home / "classes").write_text(
            "".join(f"{line}\n" for line in self.lines("classes") if line != "root/ktq PYL_Fan"),
            encoding="utf-8")
        self.assertIn("  no   no PYL_Fan in root/ktq\n", self.run_it("--check", "pylFan", status=1))

    def test_check_tells_of_a_second_interop_namespace(self):
        self.run_it("pylProfiles")
        self.assertIn("its classes are in their namespaces", self.run_it("--check", "pylProfiles"))
        with open(self.home / "classes", "a", encoding="utf-8") as classes:
            classes.write("interop PYL_RegisteredProfile\n")
        self.assertIn("  no   a second namespace of the kind of root/PG_InterOp",
                      self.run_it("--check", "pylProfiles", status=1))

    def test_remove_takes_the_registrations_back(self):
        self.run_it()
        self.run_it("--remove", "pylFan")
        self.assertEqual([module for module in MODULES if module != "pylFan"], self.lines("modules"))

    def test_a_restart_is_done_when_asked_for(self):
        self.assertIn("cimserver -s, then cimserver", self.run_it("pylFan"))
        self.assertNotIn("cimserver", self.calls())
        self.run_it("--restart", "pylFan")
        self.assertEqual(["cimserver -s", "cimserver"], self.calls()[-2:])


class Sfcb(EveryHost, unittest.TestCase):
    host = "sfcb"
    tools = ("sfcbstage", "sfcbunstage", "sfcbrepos", "systemctl")

    def run_it(self, *words, **options):
        state = ("--state", self.home) if "--state" not in words else ()
        return super().run_it(*state, *words, **options)

    def test_a_first_time_calls_the_tools_in_this_order(self):
        self.run_it()
        staged = {
            "pylBaseServer": (("root/ktq", "PYL_BaseServer.mof PYL_Indications.mof"),),
            "pylConsolidatedStatus": (("root/ktq", "PYL_ConsolidatedStatus.mof"),),
            "pylFan": (("root/ktq", "PYL_Fan.mof PYL_Indications.mof"),),
            "pylProfiles": (("root/interop", "PYL_Profiles.mof"), ("root/ktq", "PYL_Profiles.mof"))}
        expected = []
        for module, spaces in staged.items():
            registration = f"-r {module}.reg "
            for space, files in spaces:
                expected.append(f"sfcbstage -s stage -n {space} {registration}{files}")
                registration = ""
        self.assertEqual([*expected, "sfcbrepos -s stage -f -r registration"], self.calls())

    def test_every_registered_class_is_there_in_its_namespaces(self):
        self.run_it()
        register = (self.home / "registration/providerRegister").read_text(encoding="utf-8")
        served = re.findall(r"^\[(\w+)\]$.*?namespace: (.*?)$", register, re.MULTILINE | re.DOTALL)
        self.assertEqual(17, len(dict(served)))
        for name, namespaces in served:
            for namespace in namespaces.split():
                text = "".join(file.read_text(encoding="utf-8")
                               for file in (self.home / "stage/mofs" / namespace).glob("*.mof"))
                self.assertRegex(text, rf"(?m)^class {name}\b")

    def test_remove_keeps_the_classes_that_another_module_needs(self):
        self.run_it()
        self.run_it("--remove", "pylFan")
        staged = {file.name for file in (self.home / "stage/mofs/root/ktq").iterdir()}
        self.assertNotIn("PYL_Fan.mof", staged)
        self.assertIn("PYL_Indications.mof", staged)
        self.assertNotIn("pylFan", (self.home / "registration/providerRegister").read_text("utf-8"))
        self.run_it("--remove")
        self.assertEqual([], [file for file in (self.home / "stage").rglob("*") if file.is_file()])

    def test_the_cim_schemas_folder_is_handed_on(self):
        self.run_it("--cim-schema", self.home, "pylFan")
        self.assertIn(f"-c {self.home}", self.lines("calls")[-1])

    def test_a_tool_that_fails_stops_with_its_words_and_what_to_do(self):
        (self.home / "fail-sfcbrepos").write_text("no CIM_Schema.mof", encoding="utf-8")
        printed = self.run_it("pylFan", status=1)
        self.assertIn("    no CIM_Schema.mof\n", printed)
        self.assertIn("--cim-schema names another folder", printed)

    def test_check_tells_what_is_staged_only_and_what_is_of_another_version(self):
        self.run_it("pylFan")
        register = self.home / "registration/providerRegister"
        os.utime(register, (1, 1))
        (self.home / "stage/mofs/root/ktq/PYL_Fan.mof").write_text("older", encoding="utf-8")
        printed = self.run_it("--check", "pylFan", status=1)
        self.assertIn("  no   PYL_Fan.mof is not staged for root/ktq, or another version of it\n", printed)
        self.assertIn("  no   the repository was made before something was staged", printed)
        register.unlink()
        self.assertIn("sfcb's register does not name it", self.run_it("--check", "pylFan", status=1))

    def test_a_restart_is_done_when_asked_for(self):
        self.assertIn("systemctl restart sfcb", self.run_it("pylFan"))
        self.assertNotIn("systemctl restart sfcb", self.calls())
        self.run_it("--restart", "pylFan")
        self.assertEqual("systemctl restart sfcb", self.calls()[-1])


if __name__ == "__main__":
    unittest.main()
