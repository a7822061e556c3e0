"""Object managers of others, as somebody has installed them: what they are made of, how they get our modules as
docs/deploying.md tells, and how they are started in a guest. What they write stays in the guest."""

import pathlib
import shlex
import shutil
import subprocess

from .words import BoxError

PORT = 5988
LOG = "/run/manager.log"


class ObjectManager:
    """A kind of them, installed below a prefix, which host and guest see at the same place."""

    kind = None  # as pylcommon-register calls it
    name = None
    interop = None
    server = None
    tools = ()

    def __init__(self, prefix, provider_dir=None, cim_schema=None, state=None):
        self.prefix = pathlib.Path(prefix).absolute()
        self._provider_dir = provider_dir and provider_dir.absolute()
        self._cim_schema = cim_schema and cim_schema.absolute()
        self._state = state and state.absolute()
        if not self.prefix.is_dir():
            raise BoxError(f"There is no {self.prefix}.")
        for given in (provider_dir, cim_schema, state):
            if given and not given.exists():
                raise BoxError(f"There is no {given}.")
        self._path = [folder for folder in (self.prefix / "sbin", self.prefix / "bin") if folder.is_dir()]
        absent = [tool for tool in (self.server, *self.tools) if not self._find(tool)]
        if absent:
            raise BoxError(f"{self.prefix} has no {self.name}: {', '.join(absent)} not in its bin or sbin.")
        self._expect_libraries()

    def _find(self, tool):
        return shutil.which(tool, path=":".join(map(str, self._path)))

    def _own_folder(self, what, option, *names):
        """The first of these that is there; when the prefix is /usr, below the root."""
        home = pathlib.Path("/") if self.prefix == pathlib.Path("/usr") else self.prefix
        found = next((home / name for name in names if (home / name).exists()), None)
        if not found:
            raise BoxError(f"{home / names[0]}, {what}, is not there; {option} says where it is.")
        return found

    def _expect_libraries(self):
        server = self._find(self.server)
        said = subprocess.run(["ldd", server], capture_output=True, text=True, check=False,
                              env={**self._environment(), "LC_ALL": "C"}).stdout
        lacking = [line.split()[0] for line in said.splitlines() if line.endswith("=> not found")]
        if lacking:
            raise BoxError(f"{server} misses libraries: {', '.join(dict.fromkeys(lacking))}. Install what it needs on "
                           "this host, whose files the guest sees.")

    def _environment(self, libraries=()):
        own = [folder for folder in (self.prefix / "lib64", self.prefix / "lib") if folder.is_dir()]
        return {"PATH": ":".join([*map(str, self._path), "/usr/sbin", "/usr/bin", "/sbin", "/bin"]),
                "LD_LIBRARY_PATH": ":".join(map(str, [*own, *libraries]))}

    # In the guest

    def set_up(self, machine, installation):
        """With the modules of this installation of ours in it, and running; prints what pylcommon-register does."""
        raise NotImplementedError

    def _command(self, words, installation):
        environment = [f"{name}={value}" for name, value in self._environment(installation.libraries).items()]
        return shlex.join(["env", *environment, *map(str, words)])

    def _register(self, machine, installation, *options):
        words = [installation.prefix / "bin/pylcommon-register", "--host", self.kind, *options]
        if self._cim_schema:
            words += ["--cim-schema", self._cim_schema]
        result = machine.run(self._command(words, installation), 1800)
        print("\n".join(f"  {line}" for line in result.text.splitlines()), flush=True)
        if result.status != 0:
            raise BoxError(f"{self.name} could not be given the modules: see above.")

    def start(self, machine, words, installation, seconds=120):
        """Until it listens. What it says, and what it has for the system log, are its last words otherwise."""
        listens = f"grep -qi ':{PORT:04X} [0-9A-F:]* 0A ' /proc/net/tcp /proc/net/tcp6"
        result = machine.run(
            f"[ -e /dev/log ] || busybox syslogd -O {LOG}; rm -f /run/manager.status\n"
            f"while {listens}; do sleep 0.2; done\n"
            f"(setsid {self._command(words, installation)} >>{LOG} 2>&1; echo $? >/run/manager.status) &\n"
            f"tries={seconds * 5}\n"
            f"until {listens}; do\n"
            "    status=$(cat /run/manager.status 2>/dev/null) || status=0\n"
            "    tries=$((tries - 1))\n"
            '    if [ "$status" != 0 ]; then echo "It ended with status $status."; exit 1; fi\n'
            f'    if [ $tries = 0 ]; then echo "It does not listen at port {PORT} after {seconds} s."; exit 1; fi\n'
            "    sleep 0.2\n"
            "done", seconds + 60)
        if result.status != 0:
            last = machine.run(f"tail -n 20 {LOG}").text.strip() or "(nothing)"
            raise BoxError(f"{self.name} did not start. {result.text.strip()} Its last words:\n{last}")


class Sfcb(ObjectManager):
    kind, name, interop = "sfcb", "sfcb", "root/interop"
    server, tools = "sfcbd", ("sfcbstage", "sfcbunstage", "sfcbrepos")

    def __init__(self, *words):
        super().__init__(*words)
        self._state = self._state or self._own_folder("its data", "--state", "var/lib/sfcb")
        self._configuration = self._own_folder("its configuration", "--prefix", "etc/sfcb/sfcb.cfg")

    def set_up(self, machine, installation):
        links = ["--provider-dir", self._provider_dir] if self._provider_dir else []
        self._register(machine, installation, "--state", self._state, *links)
        settings = {"httpPort": PORT, "enableHttp": "true", "enableHttps": "false", "doBasicAuth": "false",
                    "registrationDir": self._state / "registration"}
        folders = self._provider_dir or installation.modules
        machine.ask(f"sed -E '/^ *({'|'.join(settings)}) *:/d; s|^ *providerDirs *:.*|& {folders}|' "
                    f"{shlex.quote(str(self._configuration))} >/run/sfcb.cfg\n"
                    f"grep -q '^ *providerDirs' /run/sfcb.cfg || echo 'providerDirs: {folders}' >>/run/sfcb.cfg\n"
                    + "\n".join(f"echo '{name}: {value}' >>/run/sfcb.cfg" for name, value in settings.items()))
        self.start(machine, [self.server, "-c", "/run/sfcb.cfg"], installation)


class OpenPegasus(ObjectManager):
    kind, name, interop = "openpegasus", "OpenPegasus", "root/PG_InterOp"
    server, tools = "cimserver", ("cimmof", "cimprovider")
    settings = (f"httpPort={PORT}", "enableHttpConnection=true", "enableHttpsConnection=false",
                "enableAuthentication=false")

    def _environment(self, libraries=()):
        home = {"PEGASUS_HOME": str(self.prefix)} if (self.prefix / "repository").is_dir() else {}
        return {**super()._environment(libraries), **home}

    def __init__(self, *words):
        super().__init__(*words)
        self._provider_dir = self._provider_dir or self._own_folder(
            "its folder of providers", "--provider-dir", "lib64/Pegasus/providers", "usr/lib64/Pegasus/providers",
            "lib/Pegasus/providers", "usr/lib/Pegasus/providers", "lib")

    def set_up(self, machine, installation):
        start = [self.server, *self.settings]
        self.start(machine, start, installation)
        self._register(machine, installation, "--provider-dir", self._provider_dir)
        stopped = machine.run(self._command([self.server, "-s"], installation), 120)
        if stopped.status != 0:
            raise BoxError(f"{self.name} did not stop:\n{stopped.text.strip()}")
        self.start(machine, start, installation)


KINDS = {each.kind: each for each in (Sfcb, OpenPegasus)}


class Installation:
    """Ours: what a program of cimhost's belongs to; a build is installed into the folder `scratch` first."""

    def __init__(self, program, scratch):
        build = program.parents[1]
        self.prefix = build
        if (build / "cimhost.toml").exists():
            self.prefix = pathlib.Path(scratch)
            for component in ("runtime", "common", "providers"):
                result = subprocess.run(["cmake", "--install", build, "--prefix", scratch, "--component", component],
                                        capture_output=True, text=True, check=False)
                if result.returncode != 0:
                    raise BoxError(f"{build} could not be installed:\n{result.stderr.strip()}")
        self.data = self.prefix / "share/pylcommon/mof"
        modules = sorted(self.prefix.glob("lib/**/cmpi/*.so"))
        if not modules or not list(self.data.glob("*.registration")):
            raise BoxError(f"There are no modules below {self.prefix}: install the providers' package.")
        self.modules = modules[0].parent
        self.libraries = [self.modules.parent]
