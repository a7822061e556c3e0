"""Servers as data: a folder with server.toml, docs/machines.md."""

import dataclasses
import pathlib
import re
import sys
import tomllib

from .words import BoxError

HERE = pathlib.Path(__file__).resolve().parent
for _place in (HERE, HERE.parents[1] / "platform/smbios"):
    if (_place / "make_dumps.py").exists():
        sys.path.append(str(_place))
import make_dumps  # noqa: E402, the same records as in the dumps of the firmware

SERVERS = HERE.parent / "servers"
KINDS = ("bios", "system", "baseboard", "chassis", "processor", "memory_array", "memory_device", "memory_range", "boot",
         "controller", "firmware", "server_system_id", "enclosure", "server_profile", "raw")


@dataclasses.dataclass
class Chip:
    """A sensor chip on the SMBus: a driver of the kernel's, and the registers that it reads."""
    driver: str
    address: int
    registers: dict

    @classmethod
    def from_table(cls, table):
        registers = {_number(register): value for register, value in table.get("registers", {}).items()}
        return cls(table["driver"], table["address"], registers)


@dataclasses.dataclass
class Server:
    name: str
    title: str
    host_name: str
    records: list  # SMBIOS structures, encoded
    devices: list  # of QEMU, as behind -device
    chips: list = dataclasses.field(default_factory=list)
    changes: dict = dataclasses.field(default_factory=dict)  # name -> (chip, register, value) each
    modules: list = dataclasses.field(default_factory=list)  # drivers that are loaded
    controller: dict | None = None
    files: dict = dataclasses.field(default_factory=dict)
    users: dict = dataclasses.field(default_factory=dict)  # of cimhost, with their passwords: it asks for them, by TLS
    notes: list = dataclasses.field(default_factory=list)
    memory: int = 512
    entry_point: int = 64

    @property
    def table(self):
        """The DMI table that the guest is to have: QEMU adds the end."""
        return b"".join(self.records) + make_dumps.end().encode(0x7F00)


def server_names():
    return sorted(folder.name for folder in SERVERS.iterdir() if (folder / "server.toml").exists())


def read_server(name):
    """By the name of one that is here, or the path of a folder of one's own."""
    folder = pathlib.Path(name) if "/" in name else SERVERS / name
    file = folder / "server.toml"
    if not file.exists():
        raise BoxError(f"There is no server {name}. There are: {', '.join(server_names())}; or a folder with a "
                       "server.toml, such as ./mine.")
    try:
        with open(file, "rb") as stream:
            return _from_table(folder.resolve().name, tomllib.load(stream))
    except (tomllib.TOMLDecodeError, KeyError, TypeError, ValueError) as error:
        raise BoxError(f"{file}: {type(error).__name__}: {error}") from error


def _from_table(name, table):
    known = {field.name for field in dataclasses.fields(Server)} - {"name", "records", "table"} | {"record", "chip"}
    unknown = set(table) - known
    if unknown:
        raise ValueError(f"nobody knows {', '.join(sorted(unknown))}")
    records = [_record(entry).encode(handle) for handle, entry in enumerate(table.pop("record"))]
    chips = [Chip.from_table(entry) for entry in table.pop("chip", [])]
    server = Server(name=name, records=records, chips=chips,
                    **{"host_name": name, "devices": [], **table})
    if not re.fullmatch(r"[A-Za-z0-9-]+(\.[A-Za-z0-9-]+)*", server.host_name):
        raise ValueError(f"{server.host_name} is no host name")
    return server


class RawRecord:
    """Bytes as they stand, whatever they say."""

    def __init__(self, text):
        self._bytes = bytes.fromhex(text)

    def encode(self, _handle):
        return self._bytes


def _record(entry):
    entry = dict(entry)
    kind = entry.pop("kind")
    if kind not in KINDS:
        raise ValueError(f"{kind} is no kind of record: {', '.join(KINDS)}")
    return RawRecord(entry["hex"]) if kind == "raw" else getattr(make_dumps, kind)(**entry)


def _number(text):
    return int(text, 0)
