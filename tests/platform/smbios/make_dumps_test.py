#!/usr/bin/env python3
"""Runs make_dumps.py with right and with wrong command lines."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TOOL = Path(__file__).resolve().with_name("make_dumps.py")


class MakeDumps(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def run_with(self, *arguments):
        return subprocess.run([sys.executable, TOOL, *arguments], cwd=self.folder,
                              capture_output=True, text=True, timeout=30)

    def test_writes_its_dumps_into_a_folder_that_it_makes(self):
        result = self.run_with("new/dumps")
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        written = sorted(path.name for path in (self.folder / "new/dumps").iterdir())
        self.assertIn("wavek.bin", written)

    def test_explains_itself_and_makes_nothing(self):
        for option in ("--help", "-h"):
            result = self.run_with(option)
            self.assertEqual((result.returncode, result.stderr), (0, ""))
            self.assertTrue(result.stdout.startswith("usage: make_dumps.py"), result.stdout)
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_refuses_a_wrong_command_line_and_makes_nothing(self):
        for arguments in ([], ["a", "b"], ["--halp"]):
            result = self.run_with(*arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""))
            self.assertTrue(result.stderr.startswith("usage: make_dumps.py"), result.stderr)
        self.assertEqual(list(self.folder.iterdir()), [])


if __name__ == "__main__":
    unittest.main()
