#!/usr/bin/env python3
"""What tests/run.py makes of the reports of CTest."""

import pathlib
import sys
import unittest
import xml.etree.ElementTree as xml

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))
import run

ONE_OF_EACH = """[==========] Running 4 tests from 1 test suite.
[ RUN      ] Fan.Turns
a line of the log
[       OK ] Fan.Turns (0 ms)
[ RUN      ] Fan.Stops
Fan_test.cpp:3: Failure
[  FAILED  ] Fan.Stops (0 ms)
[ RUN      ] Every/Fan.Hums/0
[  FAILED  ] Every/Fan.Hums/0, where GetParam() = 3 (1 ms)
[ RUN      ] Fan.IsRoots
[  SKIPPED ] Fan.IsRoots (0 ms)
[==========] 4 tests from 1 test suite ran. (1 ms total)
[  PASSED  ] 1 test.
[  SKIPPED ] 1 test, listed below:
[  SKIPPED ] Fan.IsRoots
[  FAILED  ] 2 tests, listed below:
[  FAILED  ] Fan.Stops
[  FAILED  ] Every/Fan.Hums/0, where GetParam() = 3
"""


def outcome(status, output="", reason=None):
    test = xml.Element("testcase", name="it", status=status)
    xml.SubElement(test, "system-out").text = output
    if reason is not None:
        xml.SubElement(test, "skipped", message=reason)
    return run.outcome_of(test)


class Outcomes(unittest.TestCase):
    def test_a_test_counts_once(self):
        self.assertEqual(([1, 0, 0], [], ""), outcome("run", "done"))
        self.assertEqual(([0, 1, 0], [], "it broke"), outcome("fail", "it broke"))

    def test_one_that_says_why_it_is_skipped_is_no_failure_and_is_named(self):
        self.assertEqual(([0, 0, 1], ["it"], ""), outcome("notrun", ONE_OF_EACH, "SKIP_REGULAR_EXPRESSION_MATCHED"))

    def test_one_that_cannot_be_started_has_failed(self):
        self.assertEqual(([0, 1, 0], [], "Unable to find executable"),
                         outcome("notrun", reason="Unable to find executable"))

    def test_a_program_counts_by_its_cases_and_shows_those_that_failed(self):
        numbers, skipped, words = outcome("fail", ONE_OF_EACH)
        self.assertEqual(([1, 2, 1], ["Fan.IsRoots"]), (numbers, skipped))
        self.assertIn("Fan_test.cpp:3: Failure", words)
        self.assertNotIn("a line of the log", words)

    def test_a_program_that_crashes_has_failed_where_it_was(self):
        numbers, _, words = outcome("fail", ONE_OF_EACH.partition("Fan_test.cpp")[0] + "Segmentation fault\n")
        self.assertEqual([0, 1, 0], numbers)
        self.assertIn("[ RUN      ] Fan.Stops\nSegmentation fault", words)

    def test_a_program_whose_cases_are_all_left_out_passes(self):
        self.assertEqual([1, 0, 0], outcome("run", "[==========] Running 0 tests.\n[  PASSED  ] 0 tests.\n")[0])


if __name__ == "__main__":
    unittest.main()
