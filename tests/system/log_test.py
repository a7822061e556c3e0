"""The log of the server: what lines of modules tell."""

import json
import re
import unittest

from host import Host

STARTED = "provider cxtor()"


class Log(unittest.TestCase):
    def lines(self, *options):
        with Host(*options) as host:
            host.ask("ei", ":PYL_BaseServerWorker")
            host.ask("ein", ":PYL_ComputerSystem")
            answer = host.ask("ein", ":PYL_ComputerSystem")
            self.assertEqual(0, answer.status, host.log())
        return host.log().splitlines()

    def check_text(self, *options):
        started = [line for line in self.lines(*options) if f": {STARTED}" in line]
        self.assertEqual(1, len(started), started)
        self.assertRegex(started[0], r"^\d{4}-\d\d-\d\dT[0-9:.]+Z "
                                     r"\[2 EnumerateInstanceNames\] information PYL_BaseServer: ")

    def check_json(self, *options):
        lines = [json.loads(line) for line in self.lines("--log-format", "json", *options)]
        started = [line for line in lines if line["text"].startswith(STARTED)]
        self.assertEqual(1, len(started), lines)
        self.assertEqual(("information", 2, "EnumerateInstanceNames", "PYL_BaseServer"),
                         tuple(started[0][key]
                               for key in ("level", "request", "operation", "component")))

    def test_lines_of_modules_tell_time_request_and_operation(self):
        self.check_text()

    def test_so_they_do_from_a_process_of_their_own(self):
        self.check_text("--isolate")

    def test_each_line_is_an_object_for_machines(self):
        self.check_json()
        self.check_json("--isolate")

    def test_the_level_holds_for_modules_too(self):
        for options in ((), ("--isolate",)):
            lines = self.lines("--log-level", "warning", *options)
            self.assertFalse([line for line in lines if re.search(r" information ", line)], lines)


if __name__ == "__main__":
    unittest.main()
