"""What cimhost says when code of a module brings it down, keeps it or lies."""

import re
import signal
import subprocess
import threading
import time
import unittest

from host import BUILD, SOURCE, Host, long

FOLDER = SOURCE / "tests/system/sins"
ARGUMENTS = (
    "--namespace", "root/test", "--schema", SOURCE / "schema/base/qualifiers.mof",
    "--schema", FOLDER / "Sins.mof", "--registration", FOLDER / "sins.registration",
    "--provider-dir", BUILD / "tests/system/sins")
GET = ('cimhost: crash: module sins, provider SinProvider, operation getInstance, path '
       'root/test:TST_Sin.Name="{}": ')


def sanitizer():
    symbols = subprocess.run(["nm", "-D", BUILD / "cimhost/cimhost"], stdout=subprocess.PIPE,
                             text=True, check=True).stdout
    return "__tsan_" in symbols or "__asan_" in symbols


@unittest.skipIf(sanitizer(), "the sanitizer's own handlers end the process in their own way")
class Crash(unittest.TestCase):
    def crash(self, *words):
        """The host's exit status and its log after a request that it does not survive."""
        host = Host(arguments=ARGUMENTS)
        host.ask(*words, namespace="root/test")
        try:
            host.process.wait(timeout=30)
        except subprocess.TimeoutExpired:
            host.stop()
            self.fail(host.log())
        return host.stop(), host.log()

    def expect(self, sin, ending, number, frame=None):
        status, log = self.crash("gi", f':TST_Sin.Name="{sin}"')
        self.assertEqual(-number, status, log)
        lines = log.splitlines()
        words = [line for line in lines if line.startswith("cimhost: crash: ")]
        self.assertEqual(1, len(words), log)
        self.assertRegex(words[0], "^" + re.escape(GET.format(sin)) + ending + "$")
        frames = lines[lines.index(words[0]) + 1:]
        self.assertGreater(len(frames), 1, log)
        if frame:
            self.assertIn(frame, frames[0], log)

    def test_a_write_through_null(self):
        self.expect("null", "SIGSEGV at 0x0", signal.SIGSEGV, "libsins.so")

    def test_a_call_through_null(self):
        self.expect("call", "SIGSEGV at 0x0", signal.SIGSEGV)

    def test_an_abort(self):
        self.expect("abort", "SIGABRT", signal.SIGABRT)

    def test_a_division_by_zero(self):
        self.expect("division", "SIGFPE at 0x[0-9a-f]+", signal.SIGFPE, "libsins.so")

    def test_a_stack_that_is_used_up(self):
        self.expect("overflow", "SIGSEGV at 0x[0-9a-f]+", signal.SIGSEGV, "libsins.so")

    def test_a_method_is_named(self):
        status, log = self.crash("cm", ":TST_Sin", "Commit.Sin=null")
        self.assertEqual(-signal.SIGSEGV, status, log)
        self.assertIn("cimhost: crash: module sins, provider SinProvider, operation invokeMethod "
                      "Commit, path root/test:TST_Sin: SIGSEGV at 0x0\n", log)

    def test_a_thread_of_the_module_runs_no_call(self):
        status, log = self.crash("gi", ':TST_Sin.Name="thread"')
        self.assertEqual(-signal.SIGSEGV, status, log)
        self.assertRegex(log, r"cimhost: crash: outside of any provider's call: SIGSEGV at 0x0\n"
                              r".*libsins\.so")

    def test_a_second_crash_does_not_cut_the_words_of_the_first(self):
        status, log = self.crash("gi", ':TST_Sin.Name="twice"')
        self.assertEqual(-signal.SIGSEGV, status, log)
        self.assertRegex(log, r"cimhost: crash: outside of any provider's call: SIGSEGV at 0x0\n"
                              r".*libsins\.so.*\n(.*\n)*.*libc\.so.*\n$")

    def test_a_thread_that_hangs_in_the_loader_does_not_keep_the_process(self):
        status, log = self.crash("gi", ':TST_Sin.Name="load"')
        self.assertEqual(-signal.SIGSEGV, status, log)
        self.assertIn(GET.format("load") + "SIGSEGV at 0x0\n", log)

    def test_a_handler_that_the_module_has_set_is_the_one_that_runs(self):
        status, log = self.crash("gi", ':TST_Sin.Name="handled"')
        self.assertEqual(3, status, log)
        self.assertIn("the module's own handler\n", log)
        self.assertNotIn("crash", log)


class Hang(unittest.TestCase):
    @long
    def test_a_call_that_does_not_return_is_named_at_the_end(self):
        host = Host(arguments=ARGUMENTS)
        asked = threading.Thread(target=host.ask, args=("gi", ':TST_Sin.Name="hang"'),
                                 kwargs={"namespace": "root/test"})
        asked.start()
        self.addCleanup(asked.join)
        deadline = time.monotonic() + 60
        while "it hangs\n" not in host.log() and time.monotonic() < deadline:
            time.sleep(0.01)
        self.assertEqual(1, host.stop(), host.log())
        self.assertRegex(host.log(), "error cimhost: module sins, provider SinProvider, operation "
                         'getInstance, path root/test:TST_Sin.Name="hang": does not return\n')


class Lie(unittest.TestCase):
    WORDS = "provider SinProvider delivered TST_Sin.Colour as uint32, which the class does not declare"

    def ask(self, *options):
        """The answer to two requests for the same lie, and the log."""
        with Host(*options, arguments=ARGUMENTS) as host:
            host.ask("gi", ':TST_Sin.Name="lie"', namespace="root/test")
            answer = host.ask("gi", ':TST_Sin.Name="lie"', namespace="root/test")
        return answer, host.log()

    def test_is_left_out_and_told_once(self):
        answer, log = self.ask()
        self.assertIn('Name="lie"', answer.text)
        self.assertNotIn("Colour", answer.text)
        self.assertEqual(1, log.count(f"warning SinProvider: {self.WORDS}; the property is left out\n"))

    def test_fails_the_request_when_results_are_refused(self):
        answer, _ = self.ask("--results", "refuse")
        self.assertEqual(1, answer.cim_error, answer.text)
        self.assertIn(self.WORDS, answer.text)

    def test_passes_when_results_pass(self):
        answer, log = self.ask("--results", "pass")
        self.assertIn("Colour=7", answer.text)
        self.assertNotIn("delivered", log)


if __name__ == "__main__":
    unittest.main()
