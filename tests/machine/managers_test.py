"""Other object managers in the box, as far as stand-ins go: they show that what is staged and compiled is what is
served, and that a difference is seen."""

import contextlib
import io
import os
import pathlib
import subprocess
import tempfile
import unittest

import stand_ins
from box.__main__ import serve_command
from box.compare import compare
from box.manager import KINDS, Installation
from box.words import BoxError
from machine_case import PROGRAM, MachineCase


class InstalledManagers(MachineCase):
    server = "wavek"
    serves = False

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="box")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def install(self, kind, **files):
        return KINDS[kind](stand_ins.install(kind, self.folder / kind, **files))

    def test_openpegasus_gets_the_modules_and_is_asked_what_cimhost_was(self):
        manager = self.install("openpegasus")
        before = sorted(self.folder.rglob("*"))
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            found = compare(self.machine, PROGRAM, serve_command(PROGRAM), manager,
                            Installation(PROGRAM, self.folder / "ours"))
        self.assertEqual([], found.different, printed.getvalue())
        self.assertGreater(found.equal, 30)
        self.assertIn("An association operation that a provider does not support is an empty answer.", found.explained)
        self.assertIn("$ cimmof -n root/PG_InterOp", printed.getvalue())
        self.assertIn("different for a reason, 0 different.\n", printed.getvalue())
        ours = {self.folder / "ours", *(self.folder / "ours").rglob("*")}
        self.assertEqual(before, sorted(set(self.folder.rglob("*")) - ours), "all that is written is the guest's")

    def test_one_that_does_not_start_is_told_with_its_last_words(self):
        manager = self.install("openpegasus", last_words="my repository is gone")
        with self.assertRaisesRegex(BoxError, r"(?s)OpenPegasus did not start\. It ended with status 1\. Its last words:"
                                              ".*my repository is gone"):
            manager.set_up(self.machine, Installation(PROGRAM, self.folder / "ours"))


class ComparedManagers(unittest.TestCase):
    def test_sfcb_that_serves_a_class_less_differs_there_and_nowhere_else(self):
        with tempfile.TemporaryDirectory(prefix="box") as folder:
            prefix = stand_ins.install("sfcb", pathlib.Path(folder) / "sfcb", forgets="PYL_FanGroup")
            result = subprocess.run([PROGRAM, "box", "--server", "wavek", "--object-manager", "sfcb", "--prefix", prefix],
                                    capture_output=True, text=True, timeout=500, check=False,
                                    env={**os.environ, "TMPDIR": folder})
            self.assertEqual(["sfcb"], os.listdir(folder))
        self.assertEqual((1, ""), (result.returncode, result.stderr), result.stdout)
        self.assertIn("$ sfcbrepos -s ", result.stdout)
        self.assertRegex(result.stdout, r"\d+ questions: \d+ answers equal, \d+ different for a reason, [1-9]\d* different")
        different = [line for line in result.stdout.splitlines() if line.startswith("Different: ")]
        self.assertIn("Different: ein root/ktq:PYL_FanGroup", different)
        self.assertEqual([], [line for line in different if "PYL_FanGroup" not in line], result.stdout)
        self.assertIn("sfcb answers otherwise than cimhost, for no reason that is known.", result.stdout)


if __name__ == "__main__":
    unittest.main()
