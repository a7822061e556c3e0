"""cimhost box as people use it: what it says, what it takes, and what it leaves behind."""

import os
import pathlib
import re
import signal
import subprocess
import tempfile
import time
import unittest

PROGRAM = pathlib.Path(os.environ["PYL_BUILD_FOLDER"]) / "cimhost/cimhost"


class BoxCommand(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="box")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def start(self, *words):
        self.box = subprocess.Popen([PROGRAM, "box", *words], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                    stderr=subprocess.STDOUT, text=True, env={**os.environ, "TMPDIR": str(self.folder)})
        self.addCleanup(self.end)

    def end(self):
        if self.box.poll() is None:
            self.box.kill()
        self.box.communicate()

    def read_until(self, pattern):
        """The first line that has this; what came before it is gone."""
        seen = []
        for line in self.box.stdout:
            seen.append(line)
            found = re.search(pattern, line)
            if found:
                return found
        return self.fail(f"no line {pattern!r} in:\n{''.join(seen)}")

    def type(self, line):
        self.box.stdin.write(f"{line}\n")
        self.box.stdin.flush()

    def processes(self):
        """Those that were started for this box: each names its folder."""
        found = []
        for each in pathlib.Path("/proc").glob("[0-9]*/cmdline"):
            try:
                if str(self.folder).encode() in each.read_bytes():
                    found.append(each)
            except OSError:
                continue  # it has ended
        return found

    def expect_no_process(self):
        deadline = time.monotonic() + 30
        while self.processes():
            self.assertLess(time.monotonic(), deadline, self.processes())
            time.sleep(0.1)

    def test_is_asked_from_outside_obeys_what_is_typed_and_leaves_nothing(self):
        self.start("--server", "wavek")
        port = self.read_until(r"http://localhost:(\d+)/root/ktq:PYL_ComputerSystem").group(1)
        self.assertNotEqual([], self.processes())
        answer = subprocess.run(["wbemcli", "ein", f"http://localhost:{port}/root/ktq:PYL_ComputerSystem"],
                                capture_output=True, text=True, check=True).stdout
        self.assertIn('Name="wavek"', answer)
        self.type("!uname -n; exit 3")
        self.read_until("^wavek$")
        self.read_until(r"\(status 3\)")
        self.type("!echo for $SUDO_UID")  # whose files root trusts inside
        self.read_until(f"^for {os.getuid() or os.environ.get('SUDO_UID', 0)}$")
        self.type("fan1-stops")
        self.read_until("^fan1-stops: done$")
        self.type("dance")
        self.read_until('Nobody knows "dance"')
        self.box.send_signal(signal.SIGTERM)
        self.assertEqual(0, self.box.wait(timeout=60))
        self.expect_no_process()
        self.assertEqual([], list(self.folder.iterdir()))

    def test_ends_by_itself(self):
        self.start("--server", "foreign", "--max-seconds", "1", "--console")
        self.read_until("cimhost is ready at")  # inside
        self.read_until("^foreign: another maker's workstation")
        self.assertEqual(0, self.box.wait(timeout=60))
        self.expect_no_process()
        self.assertEqual([], list(self.folder.iterdir()))

    def test_no_process_outlives_one_that_was_killed(self):
        self.start("--server", "blade")
        while len(self.processes()) < 2:  # the controller and the machine
            self.assertIsNone(self.box.poll())
            time.sleep(0.1)
        self.box.kill()
        self.box.wait()
        self.expect_no_process()


if __name__ == "__main__":
    unittest.main()
