"""What somebody types in a project beside an installed pylcommon, line by line."""

import contextlib
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile

READY = re.compile(r"^cimhost (?:is ready|listens) at http://\S+?:(\d+)/", re.MULTILINE)


class Session:
    """A folder of its own, and an installation of the build, whose programs are found. `cimhost serve` and `cimhost
    listen` go to a free port in place of 5988 and 5990, and on while other lines run; all that was started ends with the
    session."""

    def __init__(self, build, compiler, sanitizers):
        self._scratch = tempfile.TemporaryDirectory()
        scratch = pathlib.Path(self._scratch.name)
        self.prefix, self.folder = scratch / "prefix", scratch / "home"
        self.folder.mkdir()
        subprocess.run(["cmake", "--install", build, "--prefix", self.prefix], check=True, stdout=subprocess.DEVNULL)
        flags = f"-fsanitize={sanitizers}" if sanitizers else ""
        self.environment = {name: value for name, value in os.environ.items() if name != "LD_LIBRARY_PATH"}
        self.environment.update(PATH=f"{self.prefix}/bin:{os.environ['PATH']}", CMAKE_GENERATOR="Ninja", CXX=compiler,
                                CXXFLAGS=flags)
        self._ports = {}
        self._servers = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for server in self._servers:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(server.pid, signal.SIGTERM)
            server.communicate(timeout=60)
        self._scratch.cleanup()

    def type(self, line):
        """Types the line; what it said, when it ended well."""
        if line.startswith("cd "):
            self.folder = self.folder / line[3:]
            return ""
        if line.startswith(("cimhost serve", "cimhost listen")):
            return self._serve(line.removesuffix("&"))
        for usual, port in self._ports.items():
            line = line.replace(f":{usual}", f":{port}")
        result = subprocess.run(["bash", "-c", line], cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, timeout=240)
        if result.returncode != 0:
            sys.exit(f"$ {line}\n{result.stdout}")
        return self._with_usual_ports(result.stdout)

    def _serve(self, line):
        server = subprocess.Popen(["bash", "-c", f"exec {line} --port 0 --max-seconds 300"], cwd=self.folder,
                                  env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                                  start_new_session=True)
        self._servers.append(server)
        said = server.stdout.readline()
        if not (found := READY.search(said)):
            sys.exit(f"$ {line}\n{said}")
        self._ports["5988" if "serve" in line else "5990"] = found[1]
        return self._with_usual_ports(said)

    def _with_usual_ports(self, said):
        for usual, port in self._ports.items():
            said = said.replace(f":{port}/", f":{usual}/")
        return said


def expect(pattern, text):
    if not re.search(pattern, text, re.DOTALL):
        sys.exit(f"expected {pattern} in:\n{text}")


def commands_of(page):
    """The lines of its indented blocks."""
    return [line.strip() for line in page.splitlines() if line.startswith("    ")]
