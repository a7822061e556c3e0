"""What somebody types in a project beside an installed pylcommon, line by line."""

import contextlib
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile


class Session:
    """A folder of its own, in whose shell the installed programs are found. `cimhost serve` goes to a free port in place
    of 5988, and on while other lines run; all that was started ends with the session."""

    def __init__(self, prefix, compiler, sanitizers):
        self._scratch = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self._scratch.name)
        flags = f"-fsanitize={sanitizers}" if sanitizers else ""
        self.environment = {name: value for name, value in os.environ.items() if name != "LD_LIBRARY_PATH"}
        self.environment.update(PATH=f"{prefix}/bin:{os.environ['PATH']}", CMAKE_GENERATOR="Ninja", CXX=compiler,
                                CXXFLAGS=flags)
        self._port = None
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
        if line.startswith("cimhost serve"):
            return self._serve(line)
        if self._port:
            line = line.replace(":5988", f":{self._port}")
        result = subprocess.run(["bash", "-c", line], cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, timeout=240)
        if result.returncode != 0:
            sys.exit(f"$ {line}\n{result.stdout}")
        return result.stdout

    def _serve(self, line):
        server = subprocess.Popen(["bash", "-c", f"exec {line} --port 0 --max-seconds 120"], cwd=self.folder,
                                  env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                  start_new_session=True)
        self._servers.append(server)
        said = []
        for output in server.stdout:
            said.append(output)
            if found := re.search(r"ready at http://\S+?:(\d+)/cimom", output):
                self._port = found[1]
                return "".join(said)
        sys.exit(f"$ {line}\n{''.join(said)}")


def expect(pattern, text):
    if not re.search(pattern, text, re.DOTALL):
        sys.exit(f"expected {pattern} in:\n{text}")


def commands_of(page):
    """The lines of its indented blocks."""
    return [line.strip() for line in page.splitlines() if line.startswith("    ")]
