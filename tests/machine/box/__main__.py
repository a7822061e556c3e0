"""cimhost box: a server in a virtual machine with an object manager inside.

    python3 -m box --program CIMHOST --server NAME [--project FILE] [--port N] [--max-seconds N] [--console]
    python3 -m box --program CIMHOST --server NAME --object-manager KIND --prefix DIR [--provider-dir DIR] ...
"""

import argparse
import os
import pathlib
import select
import shlex
import signal
import sys
import tempfile
import time

from .compare import compare
from .machine import Machine
from .manager import KINDS, Installation
from .server import read_server, server_names
from .words import BoxError


def read_options():
    parser = argparse.ArgumentParser(prog="cimhost box")
    parser.add_argument("--program", type=pathlib.Path, required=True)
    parser.add_argument("--server", default="wavek")
    parser.add_argument("--project", type=pathlib.Path)
    parser.add_argument("--port", type=int, default=0)
    parser.add_argument("--max-seconds", type=float)
    parser.add_argument("--console", action="store_true")
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--object-manager", choices=sorted(KINDS))
    parser.add_argument("--prefix", type=pathlib.Path, default=pathlib.Path("/usr"))
    parser.add_argument("--provider-dir", type=pathlib.Path)
    parser.add_argument("--cim-schema", type=pathlib.Path)
    parser.add_argument("--state", type=pathlib.Path)
    return parser.parse_args()


def enclosure_module(program):
    """The simulator's module, in the build or the installation that the program belongs to; or None."""
    name = "libenclosure_module.so"
    home = program.parents[1]
    places = [home / "tests/platform/ipmi" / name, home / "lib/pylcommon" / name, *home.glob(f"lib/*/pylcommon/{name}")]
    return next((place for place in places if place.exists()), None)


def serve_command(program, project=None):
    """An object manager with the project, by default that of the build; an installed one serves all that is
    installed."""
    of_build = program.parents[1] / "cimhost.toml"
    project = project or (of_build if of_build.exists() else None)
    return [program, "serve", *(["--project", project.absolute()] if project else [])]


def tell(machine):
    server = machine.server
    address = machine.address
    command = shlex.join(["wbemcli", *machine.client_options])
    print(f"\n{server.name}: {server.title}.")
    for note in server.notes:
        print(f"  {note}")
    print(f"Up in {machine.ready_seconds:.0f} s. Ask it from here:\n"
          f"  {command} ei {address}/root/ktq:PYL_ComputerSystem\n"
          f"  {command} ein {address}/root/ktq:PYL_PCIDevice")
    if server.changes:
        print(f"Type what is to happen: {', '.join(server.changes)}.")
    print("A line that begins with ! is a command in the guest, such as !lspci. Ctrl-C ends it all.\n", flush=True)


def obey(machine, line):
    """A line that was typed."""
    if line.startswith("!"):
        result = machine.run(line[1:])
        print(result.text + (f"(status {result.status})" if result.status else ""), flush=True)
    elif line in machine.server.changes:
        machine.change(line)
        print(f"{line}: done", flush=True)
    elif line:
        print(f"Nobody knows \"{line}\".", flush=True)


def typed_lines(seconds):
    """What was typed in this time, line by line; None after the end."""
    if not select.select([0], [], [], seconds)[0]:
        return []
    return os.read(0, 1 << 16).decode(errors="replace").splitlines() or None


def stay(machine, seconds):
    """Until the time is over, the machine is off, or a signal comes; shows what the enclosure is told."""
    deadline = time.monotonic() + seconds if seconds is not None else None
    shown = 0
    lines = []
    while machine.is_running() and (deadline is None or time.monotonic() < deadline):
        if lines is None:
            time.sleep(0.5)
        else:
            lines = typed_lines(0.5)
        for line in lines or []:
            obey(machine, line.strip())
        shown = show_enclosure(machine, shown)


def show_enclosure(machine, shown):
    """What it was told since; returns how much that is in all."""
    lines = machine.controller.lines() if machine.controller else []
    for line in lines[shown:]:
        print(f"The enclosure was told: {line}", flush=True)
    return len(lines)


def end(*_):
    raise SystemExit(0)


def make_machine(options, program):
    machine = Machine(read_server(options.server), port=options.port, enclosure_module=enclosure_module(program))
    if options.console:
        machine.on_line = lambda line: print(line, flush=True)
    print(f"Starting the server {machine.server.name} ...", flush=True)
    return machine


def run(options):
    program = options.program.resolve()
    if options.project and not options.project.exists():
        raise BoxError(f"There is no {options.project}.")
    with make_machine(options, program) as machine:
        machine.serve(serve_command(program, options.project))
        tell(machine)
        stay(machine, options.max_seconds)
    return 0


def give_up(*_):
    raise BoxError("It took longer than --max-seconds.")


def run_comparison(options):
    signal.signal(signal.SIGALRM, give_up)
    signal.setitimer(signal.ITIMER_REAL, options.max_seconds or 0)
    program = options.program.resolve()
    manager = KINDS[options.object_manager](options.prefix, options.provider_dir, options.cim_schema, options.state)
    with tempfile.TemporaryDirectory(prefix="pylbox-") as scratch:
        installation = Installation(program, scratch)
        with make_machine(options, program) as machine:
            different = compare(machine, program, serve_command(program), manager, installation).different
    print(f"{manager.name} answers otherwise than cimhost, for no reason that is known." if different else
          f"{manager.name} answers as cimhost does.")
    return 1 if different else 0


def main():
    signal.signal(signal.SIGTERM, end)
    signal.signal(signal.SIGINT, end)
    signal.signal(signal.SIGHUP, end)
    options = read_options()
    try:
        if options.list:
            for name in server_names():
                print(f"{name}: {read_server(name).title}")
            return 0
        return run_comparison(options) if options.object_manager else run(options)
    except BoxError as error:
        print(f"cimhost: {error}", file=sys.stderr)
        return 1


if __name__ == "__main__":
    sys.exit(main())
