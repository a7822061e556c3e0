#!/usr/bin/env python3
"""Runs smbios-dump on the dumps and on what is none.

usage: smbios_dump_test.py SMBIOS-DUMP DUMP-DIRECTORY
"""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TOOL, DUMPS = Path(sys.argv[1]), Path(sys.argv[2])

SYSTEM = """\
Handle 0x0001, type 1, 27 bytes
    Manufacturer: kt
    Product Name: Server WaveK 400
    Version: 1.0
    Serial Number: KTQ0012345
    UUID: 4c4c4544-0035-5a10-8052-b4c04f4d3232
    Wake-up Type: 0x06
    SKU Number: P12345-B21
    Family: Wave
    String 1: kt
    String 2: Server WaveK 400
    String 3: 1.0
    String 4: KTQ0012345
    String 5: P12345-B21
    String 6: Wave
"""


def run(*arguments, **options):
    return subprocess.run([TOOL, *arguments], capture_output=True, text=True, timeout=30, **options)


class SmbiosDump(unittest.TestCase):
    def fails_with(self, message, *arguments):
        result = run(*arguments)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout, "")
        self.assertIn(message, result.stderr)

    def test_prints_the_structures_of_a_dump(self):
        result = run(DUMPS / "wavek.bin")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        blocks = result.stdout.split("\n\n")
        self.assertEqual(blocks[0], "SMBIOS 3.3, 9 structures\nServer System Identifier: KTQ-K-0002")
        self.assertEqual(len(blocks), 10)
        self.assertEqual(blocks[2] + "\n", SYSTEM)

    def test_prints_the_markers(self):
        self.assertIn("    BIOS Marker: 0x4000\n", run(DUMPS / "wavej-marker.bin").stdout)
        self.assertIn("    Newer Generation: 0x01\n", run(DUMPS / "wavek-marker.bin").stdout)

    def test_prints_the_enclosure_and_the_profile(self):
        facts = run(DUMPS / "blade.bin").stdout.split("\n\n")[0].splitlines()[2:]
        self.assertEqual(facts, ["Blade: yes", "SL Server: no", "Enclosure Name: enc-7",
                                 "Rack Name: rack-B",
                                 "Rack UUID: 00112233-4455-6677-8899-aabbccddeeff",
                                 "Virtual Serial Number: VKT000042",
                                 "Virtual UUID: 0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0",
                                 "Solution Name: Private Cloud 20"])

    def test_prints_every_dump(self):
        for dump in DUMPS.glob("*.bin"):
            self.assertEqual(run(dump).returncode, 0, dump)

    def test_explains_itself(self):
        result = run("--help")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertTrue(result.stdout.startswith("usage: smbios-dump [FILE]"))

    def test_refuses_a_wrong_command_line(self):
        for arguments in (["-x"], ["a", "b"], [""], ["--help", "x"]):
            self.fails_with("usage: smbios-dump", *arguments)

    def test_says_what_is_wrong_with_a_file(self):
        self.fails_with("No such file or directory", DUMPS / "none.bin")
        self.fails_with("the entry point has no SMBIOS anchor", __file__)
        with tempfile.NamedTemporaryFile() as cut:
            cut.write((DUMPS / "wavek.bin").read_bytes()[:-3])
            cut.flush()
            self.fails_with("is cut short in its header", cut.name)

    def test_fails_when_its_output_cannot_be_written(self):
        with open("/dev/full", "w") as full:
            result = subprocess.run([TOOL, DUMPS / "wavek.bin"], stdout=full, timeout=30)
        self.assertEqual(result.returncode, 1)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
