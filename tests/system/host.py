"""A cimhost for system tests: started on a free loopback port, asked with wbemcli, stopped in order."""

import os
import pathlib
import re
import signal
import subprocess
import tempfile

BUILD = pathlib.Path(os.environ["PYL_BUILD_FOLDER"])
SOURCE = pathlib.Path(__file__).resolve().parents[2]

BASE_SERVER = (
    "--namespace", "root/ktq",
    "--schema", SOURCE / "schema/base/base.mof",
    "--schema", SOURCE / "schema/PYL_BaseServer.mof",
    "--registration", SOURCE / "schema/pylBaseServer.registration",
    "--provider-dir", BUILD / "providers/baseserver",
    "--schema", SOURCE / "schema/PYL_ConsolidatedStatus.mof",
    "--registration", SOURCE / "schema/pylConsolidatedStatus.registration",
    "--provider-dir", BUILD / "providers/consolidatedstatus",
)


def long(test):
    """Marks a test that takes more than a few seconds: ./check leaves it out unless told --long."""
    return test


class Answer:
    """What wbemcli printed. Its exit status does not tell every failure, its words do."""

    def __init__(self, result):
        self.text = result.stdout
        self.status = result.returncode
        self.lines = [line for line in result.stdout.splitlines() if line.strip()]

    @property
    def cim_error(self):
        """The CIM status code that the server answered, or None."""
        found = re.search(r"Cim: \((\d+)\)", self.text)
        return int(found.group(1)) if found else None


class Host:
    """Use with `with`: leaving it stops the server and checks that it ended well."""

    def __init__(self, *options, arguments=BASE_SERVER, files=None, seconds=170,
                 program=BUILD / "cimhost/cimhost",
                 manner=os.environ.get("PYL_MANNER", "standard")):
        """`files`: a folder that stands before the library's own paths, /etc/cim and /tmp/PYL..."""
        self._ended_log = None
        self._scratch = tempfile.TemporaryDirectory()
        self._files = pathlib.Path(files or self._scratch.name)
        for folder in ("etc/cim", "tmp"):
            (self._files / folder).mkdir(parents=True, exist_ok=True)
        self.log_file = pathlib.Path(self._scratch.name) / "log"
        command = [program, "serve", "--port", "0", "--max-seconds", str(seconds),
                   "--manner", manner, *arguments, *options]
        if os.environ.get("PYL_ISOLATE") and "--isolate" not in command:
            command.append("--isolate")
        with open(self.log_file, "wb") as log:
            self.process = subprocess.Popen([str(word) for word in command], stderr=log,
                                            stdout=subprocess.PIPE, text=True,
                                            env=self._environment())
        ready = self.process.stdout.readline()
        found = re.search(r"(https?)://(\S+?):(\d+)/cimom", ready)
        if not found:
            self.process.kill()
            self.process.wait()
            raise RuntimeError(f"cimhost did not start: {ready}{self.log()}")
        self.scheme, self.address, self.port = found.group(1), found.group(2), int(found.group(3))
        self.console = None
        if "--no-console" not in command:
            self.console = self.process.stdout.readline().removeprefix("Its console: ").strip()

    def _environment(self):
        return {**os.environ,
                "PYL_TEST_FILES": str(self._files),
                "LD_PRELOAD": str(BUILD / "tests/system/redirect/libredirect.so"),
                # A preloaded library comes before the sanitizer's own, which it must not forbid.
                "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0"}

    def __enter__(self):
        return self

    def __exit__(self, *_):
        status = self.stop()
        if status != 0:
            raise RuntimeError(f"cimhost ended with {status}")

    def url(self, target="", namespace="root/ktq", host=None, user=None):
        credentials = f"{user}@" if user else ""
        return f"{self.scheme}://{credentials}{host or self.address}:{self.port}/{namespace}{target}"

    def stop(self):
        """The server's exit status. Its log can be read afterwards still."""
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        status = self.process.wait(timeout=30)
        self.process.stdout.close()
        self._ended_log = self.log()
        self._scratch.cleanup()
        return status

    def log(self):
        if self._ended_log is not None:
            return self._ended_log
        return self.log_file.read_text(errors="replace")

    def ask(self, *words, options=(), namespace="root/ktq", host=None):
        """wbemcli OPERATION [OPTIONS] URL [DATA]: words are the operation, the target after the
        namespace (":Class.Key=..."), and data."""
        operation, target, *data = words
        command = ["wbemcli", operation, *options, self.url(target, namespace, host), *data]
        answer = Answer(subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                       text=True, timeout=60, check=False))
        self._record(words, namespace, answer)
        return answer

    def _record(self, words, namespace, answer):
        """For same_answers.py: what was asked and answered, but for the port."""
        file = os.environ.get("PYL_ANSWERS")
        if file:
            with open(file, "a", encoding="utf-8") as answers:
                text = answer.text.replace(f":{self.port}/", ":PORT/")
                answers.write(f"== {namespace} {' '.join(map(str, words))}\n{answer.status}\n{text}\n")

    def paths(self, *words, **options):
        """The paths that a names operation answers, without server and namespace: "Class.Key=..."."""
        answer = self.ask(*words, **options)
        if answer.status != 0:
            raise AssertionError(answer.text)
        return [line.split(":", 2)[2] for line in answer.lines]


def first_path(host, class_name):
    return host.paths("ein", f":{class_name}")[0]
