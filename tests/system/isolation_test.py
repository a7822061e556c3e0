"""Modules in processes of their own: what a crash, a silence and an end cost, and whom."""

import os
import pathlib
import re
import signal
import subprocess
import threading
import time
import unittest

from host import BUILD, SOURCE, Host, long
from indications_test import SubscribedCase
from listeners import Listener
from wbemcli_test import WIDGET

SINS = SOURCE / "tests/system/sins"
ARGUMENTS = (
    "--namespace", "root/test",
    "--schema", SOURCE / "schema/base/base.mof",
    "--schema", WIDGET / "Widget.mof",
    "--registration", WIDGET / "widget.registration",
    "--provider-dir", BUILD / "tests/system/widget",
    "--schema", SINS / "Sins.mof",
    "--registration", SINS / "sins.registration",
    "--provider-dir", BUILD / "tests/system/sins",
    "--namespace", "root/cimhost",
    "--schema", SOURCE / "schema/base/base.mof",
    "--schema", SOURCE / "schema/CIMHOST_ModuleProcess.mof",
    "--isolate",
)
IN_SINS = "module sins, provider SinProvider, operation invokeMethod Commit, path root/test:TST_Sin: "


def children(parent):
    """{module: process number} of the processes that a server started."""
    found = {}
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            status = (folder / "stat").read_text().rsplit(")", 1)[1].split()
            words = (folder / "cmdline").read_bytes().split(b"\0")
        except OSError:
            continue
        # One that is being started has no words yet, or those of its parent.
        if int(status[1]) == parent and status[0] != "Z" and b"module-host" in words:
            found[words[-2].decode()] = int(folder.name)
    return found


def is_running(process):
    try:
        return pathlib.Path(f"/proc/{process}/stat").read_text().rsplit(")", 1)[1].split()[0] != "Z"
    except OSError:
        return False


def eventually(condition, seconds=30):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if condition():
            return True
        time.sleep(0.05)
    return False


class IsolationCase(unittest.TestCase):
    options = ()
    # Sanitizers take a crash for themselves and end the process in their own way.
    ends = r"its process ended (by SIGSEGV|with 1|with 66)"

    def setUp(self):
        self.host = Host(*self.options, arguments=ARGUMENTS)
        self.addCleanup(self._stop)

    def _stop(self):
        self.assertEqual(0, self.host.stop(), self.host.log())

    def commit(self, sin):
        return self.host.ask("cm", ":TST_Sin", f"Commit.Sin={sin}", namespace="root/test")

    def works(self):
        answer = self.commit("none")
        self.assertEqual((0, None), (answer.status, answer.cim_error), answer.text + self.host.log())

    def fails(self, sin, words):
        answer = self.commit(sin)
        self.assertEqual(1, answer.cim_error, answer.text + self.host.log())
        self.assertRegex(answer.text, words)

    def states(self, class_name="CIMHOST_ModuleProcess"):
        """{module: {property: text}} as the class of the server tells it."""
        answer = self.host.ask("ei", f":{class_name}", options=["-nl"], namespace="root/cimhost")
        found, current = {}, {}
        for line in answer.lines:
            if line.startswith("-"):
                name, _, value = line[1:].partition("=")
                current[name] = value.strip('"')
                if name == "Module":
                    found[current[name]] = current
            else:
                current = {}
        return found


class Processes(IsolationCase):
    def test_each_module_has_one_with_nothing_but_its_own_descriptors(self):
        self.assertEqual({}, children(self.host.process.pid))
        self.works()
        self.assertEqual({"sins"}, set(children(self.host.process.pid)))
        self.host.ask("ein", ":TST_Widget", namespace="root/test")
        processes = children(self.host.process.pid)
        self.assertEqual({"sins", "widget"}, set(processes))
        for number in processes.values():
            targets = [os.readlink(each) for each in pathlib.Path(f"/proc/{number}/fd").iterdir()]
            kinds = sorted(each.split(":")[0] for each in targets)
            self.assertLessEqual(set(kinds), {"/dev/null", "pipe", "socket"}, targets)
            self.assertLessEqual(kinds.count("socket"), 2, targets)

    def test_a_crash_costs_the_request_and_says_so_in_words(self):
        self.host.ask("ein", ":TST_Widget", namespace="root/test")
        self.works()
        before = children(self.host.process.pid)
        self.fails("null", IN_SINS + self.ends)
        self.assertIn("error sins: the module's process ended", self.host.log())
        if "SIGSEGV" in self.host.log():
            self.assertRegex(self.states()["sins"]["LastWords"],
                             r"ended (by SIGSEGV|with 66): module sins, provider SinProvider, operation "
                             r"invokeMethod Commit, path root/test:TST_Sin: SIGSEGV at 0x0")
        self.works()
        after = children(self.host.process.pid)
        self.assertEqual(before["widget"], after["widget"])
        self.assertNotEqual(before["sins"], after["sins"])

    def test_an_end_is_told_with_its_status(self):
        self.fails("leave", IN_SINS + "its process ended with 7")
        self.works()

    def test_one_that_keeps_dying_is_left_alone_for_a_while(self):
        for _ in range(8):  # the pauses grow, so that one of them is longer than a request takes
            answer = self.commit("leave")
            self.assertEqual(1, answer.cim_error, answer.text)
            if self.states()["sins"]["State"] == "paused":
                answer = self.commit("none")
            if "not started again" in answer.text:
                break
        self.assertRegex(answer.text, r"module sins is not started again for another \d+ s: its process died "
                                      r"\d times in a row, at last: ended with 7")
        self.assertTrue(eventually(lambda: self.commit("none").cim_error is None))
        self.assertLessEqual(3, int(self.states()["sins"]["Starts"]))

    def test_their_state_can_be_read(self):
        state = self.states()["sins"]
        self.assertEqual(("not running", "0", "0"),
                         (state["State"], state["Starts"], state["Crashes"]))
        self.works()
        state = self.states()["sins"]
        self.assertEqual(str(children(self.host.process.pid)["sins"]), state["ProcessID"])
        self.fails("leave", "ended with 7")
        state = self.states()["sins"]
        self.assertEqual(("not running", "1", "1"),
                         (state["State"], state["Starts"], state["Crashes"]))
        self.assertIn("ended with 7", state["LastWords"])
        one = self.host.ask("gi", ':CIMHOST_ModuleProcess.Module="sins"', namespace="root/cimhost")
        self.assertIn("LastWords", one.text)
        other = self.host.ask("gi", ':CIMHOST_ModuleProcess.Module="x"', namespace="root/cimhost")
        self.assertEqual(6, other.cim_error)

    def test_their_modules_tell_of_them_and_of_what_is_wrong(self):
        module = self.states("CIMHOST_Module")["sins"]
        self.assertEqual(("true", "false", "not running", "0", ""),
                         tuple(module[name] for name in ("Isolated", "Loaded", "State", "Starts", "Findings")))
        self.assertEqual(str(BUILD / "tests/system/sins/libsins.so"), module["File"])
        self.works()
        module = self.states("CIMHOST_Module")["sins"]
        self.assertEqual(("true", "running", str(children(self.host.process.pid)["sins"])),
                         tuple(module[name] for name in ("Loaded", "State", "ProcessID")))
        self.fails("leave", "ended with 7")
        module = self.states("CIMHOST_Module")["sins"]
        self.assertEqual(("false", "1", ""),
                         tuple(module[name] for name in ("Loaded", "Crashes", "ProcessID")))
        self.assertIn("ended with 7", module["LastWords"])
        self.host.ask("ein", ":TST_Missing", namespace="root/test")
        self.assertRegex(self.states("CIMHOST_Module")["notthere"]["Findings"],
                         r'module notthere: libnotthere.so was not found.*'
                         r'"module notthere cannot be loaded: libnotthere.so was not found')

    def test_they_end_with_a_server_that_is_killed(self):
        host = Host(arguments=ARGUMENTS)
        host.ask("cm", ":TST_Sin", "Commit.Sin=none", namespace="root/test")
        process = children(host.process.pid)["sins"]
        host.process.kill()
        host.stop()
        self.assertTrue(eventually(lambda: not is_running(process)))


class Sins(unittest.TestCase):
    """Each costs the request that commits it, which says so; nobody beside notices."""

    ENDS = {
        "null": "by SIGSEGV", "call": "by SIGSEGV", "abort": "by SIGABRT",
        "division": "by SIGFPE", "overflow": "by SIGSEGV", "corrupt": "by SIGABRT",
        "thread": "by SIGSEGV", "handled": "with 3", "leave": "with 7",
    }

    def _commit(self, sin, end):
        failures, is_over = [], threading.Event()

        def ask_beside(host, expected):
            while not is_over.is_set():
                answer = host.ask("ein", ":TST_Widget", namespace="root/test")
                if answer.text != expected:
                    failures.append(answer.text)

        with Host(arguments=ARGUMENTS) as host:
            # The thread sanitizer has memory freed twice without a word.
            if sin == "corrupt" and "libtsan" in pathlib.Path(f"/proc/{host.process.pid}/maps").read_text():
                return
            expected = host.ask("ein", ":TST_Widget", namespace="root/test").text
            beside = threading.Thread(target=ask_beside, args=(host, expected))
            beside.start()
            try:
                answer = host.ask("cm", ":TST_Sin", f"Commit.Sin={sin}", namespace="root/test")
                again = host.ask("cm", ":TST_Sin", "Commit.Sin=none", namespace="root/test")
            finally:
                is_over.set()
                beside.join()
            self.assertEqual(1, answer.cim_error, answer.text + host.log())
            # Sanitizers take a crash for themselves and end the process in their own way.
            self.assertRegex(answer.text, IN_SINS + f"its process ended ({end}|with 1|with 66)")
            self.assertIsNone(again.cim_error, again.text + host.log())
            self.assertEqual([], failures)

    def test_each_costs_its_own_request_and_is_named(self):
        for sin, end in self.ENDS.items():
            with self.subTest(sin):
                self._commit(sin, end)


class Silence(IsolationCase):
    options = ("--provider-time", "1")

    def test_a_process_that_does_not_answer_is_killed(self):
        self.fails("hang", IN_SINS + "its process killed: it has not answered for 1 s")
        self.works()
        self.assertIn("killed: it has not answered for 1 s", self.states()["sins"]["LastWords"])


class End(unittest.TestCase):
    @long
    def test_a_request_that_does_not_end_keeps_no_other_module_from_its_clean_up(self):
        host = Host(arguments=ARGUMENTS)
        host.ask("ein", ":TST_Widget", namespace="root/test")
        asked = threading.Thread(target=host.ask, args=("gi", ':TST_Sin.Name="hang"'),
                                 kwargs={"namespace": "root/test"})
        asked.start()
        self.addCleanup(asked.join)
        self.assertTrue(eventually(lambda: "it hangs\n" in host.log()))
        self.assertEqual(1, host.stop(), host.log())
        self.assertIn("killed: a request did not end with the server", host.log())
        self.assertNotIn("leaving without unloading", host.log())


class Alarms(SubscribedCase):
    options = ("--isolate",)

    def test_a_process_that_starts_anew_by_itself_knows_its_filters(self):
        with Listener() as listener:
            self.subscribe(listener.url)
            process = children(self.host.process.pid)["alarm"]
            os.kill(process, signal.SIGKILL)
            self.assertTrue(eventually(
                lambda: children(self.host.process.pid).get("alarm", process) != process))
            self.assertIn("ended by SIGKILL", self.host.log())
            self.ring()
            self.assertTrue(eventually(lambda: len(listener.bodies) == 1), self.host.log())
            self.assertEqual(["activate TST_Alarm first", "enable"], self.told())


class User(unittest.TestCase):
    @unittest.skipUnless(os.geteuid() == 0, "needs the rights of root")
    def test_a_module_runs_as_another_user_without_further_rights(self):
        with Host("--isolate-user", "nobody", arguments=ARGUMENTS) as host:
            answer = host.ask("cm", ":TST_Sin", "Commit.Sin=none", namespace="root/test")
            self.assertEqual((0, None), (answer.status, answer.cim_error), answer.text + host.log())
            process = children(host.process.pid)["sins"]
            status = pathlib.Path(f"/proc/{process}/status").read_text()
        user = subprocess.run(["id", "-u", "nobody"], stdout=subprocess.PIPE, text=True, check=True)
        group = subprocess.run(["id", "-g", "nobody"], stdout=subprocess.PIPE, text=True, check=True)
        groups = subprocess.run(["id", "-G", "nobody"], stdout=subprocess.PIPE, text=True, check=True)
        self.assertEqual([user.stdout.strip()] * 4, re.search(r"Uid:\s+(.*)", status)[1].split())
        self.assertEqual([group.stdout.strip()] * 4, re.search(r"Gid:\s+(.*)", status)[1].split())
        self.assertEqual(sorted(groups.stdout.split()),
                         sorted(re.search(r"Groups:[ \t]*(.*)", status)[1].split()))
        self.assertIn("NoNewPrivs:\t1", status)
        self.assertEqual("0000000000000000", re.search(r"CapEff:\s+(\w+)", status)[1])

    def test_an_unknown_user_keeps_the_server_from_starting(self):
        done = subprocess.run([BUILD / "cimhost/cimhost", "serve", *map(str, ARGUMENTS),
                               "--isolate-user", "no such user"],
                              stderr=subprocess.PIPE, text=True, timeout=60, check=False)
        self.assertEqual(2, done.returncode)
        self.assertIn("--isolate-user", done.stderr)


if __name__ == "__main__":
    unittest.main()
