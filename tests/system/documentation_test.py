"""Manual pages and completion, as the build makes them from the definitions of the options."""

import pathlib
import subprocess
import tempfile
import unittest

from host import BUILD

PROGRAM = BUILD / "cimhost/cimhost"
COMMANDS = ("serve", "check", "console", "listen", "manners", "passwd")


def run(*words):
    return subprocess.run([str(word) for word in words], capture_output=True, text=True, timeout=60,
                          check=False)


class Documentation(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        result = run(PROGRAM, "documentation", "--date", "2026-01-01", self.folder)
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def complete(self, *words):
        line = " ".join(f"'{word}'" for word in ("cimhost", *words))
        script = (f"source {self.folder}/cimhost.bash; compopt() {{ :; }}; COMP_WORDS=({line}); "
                  f"COMP_CWORD={len(words)}; _cimhost; printf '%s\\n' \"${{COMPREPLY[@]}}\"")
        result = run("bash", "-c", script)
        self.assertEqual(result.stderr, "")
        return result.stdout.split()

    def test_there_is_a_page_for_the_program_each_command_and_the_project_file(self):
        names = {file.name for file in self.folder.iterdir()}
        for command in COMMANDS:
            self.assertIn(f"cimhost-{command}.1", names)
        self.assertLessEqual({"cimhost.1", "cimhost.toml.5", "cimhost.bash"}, names)
        self.assertNotIn("cimhost-module-host.1", names)

    def test_readers_of_pages_find_nothing_to_complain_of(self):
        pages = [*self.folder.glob("*.[157]"), *BUILD.glob("packaging/*.7")]
        self.assertGreater(len(pages), len(COMMANDS) + 2)
        for page in pages:
            lint = run("mandoc", "-T", "lint", "-W", "style", page)
            # Where pages of the same name are installed mandoc looks for those they refer to.
            words = [line for line in lint.stdout.splitlines()
                     if "referenced manual not found" not in line]
            self.assertEqual([], words, page)
            self.assertEqual("", run("man", "--warnings", "-l", "-E", "UTF-8", page).stderr, page)

    def test_a_page_tells_every_option_of_the_help(self):
        page = run("man", "-l", "-P", "cat", self.folder / "cimhost-serve.1").stdout
        words = run(PROGRAM, "serve", "--help").stdout
        for line in words.splitlines():
            if line.startswith("  --"):
                self.assertIn(line.split()[0], page)
        self.assertIn("port = NUMBER",
                      run("man", "-l", "-P", "cat", self.folder / "cimhost.toml.5").stdout)

    def test_bash_completes_commands_options_values_and_files(self):
        self.assertEqual(["serve"], self.complete("se"))
        self.assertNotIn("module-host", self.complete(""))
        self.assertEqual(["--log-level"], self.complete("serve", "--log-l"))
        self.assertEqual(["warn"], self.complete("serve", "--results", "w"))
        self.assertEqual(["debug"], self.complete("serve", "--log-level", "d"))
        self.assertIn(f"{self.folder}/cimhost.1",
                      self.complete("serve", "--schema", f"{self.folder}/cim"))


if __name__ == "__main__":
    unittest.main()
