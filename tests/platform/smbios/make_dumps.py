#!/usr/bin/env python3
"""Writes SMBIOS dump files, in the form of dmidecode --dump-bin, into a directory."""

import argparse
import struct
import uuid
from pathlib import Path

TABLE_OFFSET = 32
UUID = uuid.UUID("4c4c4544-0035-5a10-8052-b4c04f4d3232")
RACK_UUID = uuid.UUID("00112233-4455-6677-8899-aabbccddeeff")
VIRTUAL_UUID = uuid.UUID("0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0")
BLADE, SL_SERVER = 1, 2
SIGNATURE = "KTQ"


class Record:
    """A structure: its fields after the header, and strings that are numbered as they are named."""

    def __init__(self, kind):
        self.kind = kind
        self.fields = b""
        self.texts = []

    def number(self, layout, *values):
        self.fields += struct.pack("<" + layout, *values)
        return self

    def text(self, text):
        if not text:
            return self.number("B", 0)
        if text not in self.texts:
            self.texts.append(text)
        return self.number("B", self.texts.index(text) + 1)

    def encode(self, handle):
        header = struct.pack("<BBH", self.kind, 4 + len(self.fields), handle)
        texts = b"".join(text.encode("utf-8") + b"\0" for text in self.texts) or b"\0"
        return header + self.fields + texts + b"\0"


def bios(vendor="KT", version="K42 v1.20", date="03/14/2024", marker=0):
    record = Record(0).text(vendor).text(version).number("H", 0xE000).text(date)
    record.number("B", 0xFF).number("Q", 0x0000000813099880 | marker << 48)
    return record.number("2s", b"\x03\x0d").number("BBBB", 2, 80, 2, 81)


def system(maker="KT", product="SERVER", serial="KTQ0012345", sku="P12345-B21", old=False, identity=UUID):
    identity = uuid.UUID(str(identity))
    record = Record(1).text(maker).text(product).text("1.0").text(serial)
    record.number("16s", identity.bytes if old else identity.bytes_le).number("B", 6)
    return record if old else record.text(sku).text("Wave")


def baseboard(maker="KT", serial="KTQB000777"):
    return Record(2).text(maker).text("Main board").text("A").text(serial).text("Asset-1")


def chassis(maker="KT", shape=0x97, serial="KTQC000888", asset="Asset-2"):
    record = Record(3).text(maker).number("B", shape).text("").text(serial).text(asset)
    return record.number("BBBB", 3, 3, 3, 2).number("I", 0).number("BBBB", 2, 2, 0, 0)


def processor(socket="CPU 1", maker="Example", version="Example processor 8", cores=8):
    record = Record(4).text(socket).number("BB", 3, 0xB3).text(maker).number("Q", 0).text(version)
    record.number("BHHHBBHHH", 0x8C, 100, 3600, 2400, 0x41, 1, 0xFFFF, 0xFFFF, 0xFFFF)
    return record.text("").text("").text("").number("BBBHH", cores, cores, 2 * cores, 0x04, 0xB3)


def memory_array():
    return Record(16).number("BBBIHH", 3, 3, 6, 0x8000000, 0xFFFE, 2)


def memory_device(locator="DIMM 1", serial="", megabytes=512):
    record = Record(17).number("HHHHHBB", 0x1000, 0xFFFE, 72, 64, megabytes, 9, 0).text(locator).text("")
    return record.number("BHH", 0x1A, 0x80, 3200).text("Example").text(serial).text("").text("")


def memory_range():
    return Record(19).number("IIHB", 0, 0x1FFFFFF, 0x1000, 1)


def memory():
    return [memory_array(), memory_range()]


def boot():
    return Record(32).number("6xB", 0)


def controller():
    """The management controller's KCS interface, where PCs have it."""
    return Record(38).number("BBBBQBB", 1, 0x20, 0x20, 0, 0xCA3, 1, 5)


def firmware(newer=0, signature=SIGNATURE):
    return Record(0xD8).text(signature).number("B", newer)


def server_system_id(identifier, signature=SIGNATURE):
    return Record(0xD9).text(signature).text(identifier)


def enclosure(flags, name="enc-7", rack="rack-B"):
    record = Record(0xDA).text(SIGNATURE).number("B", flags).text(name).text(rack)
    return record.number("16s", RACK_UUID.bytes_le)


def server_profile(serial="VKT000042", solution="Private Cloud 20"):
    record = Record(0xDB).text(SIGNATURE).text(serial).text(solution).number("B", 0)
    return record.number("16s", VIRTUAL_UUID.bytes_le)


def end():
    return Record(127)


def checksum(data, at):
    return data[:at] + bytes([-sum(data) & 0xFF]) + data[at + 1:]


def entry32(version, length, count, size=0x1F):
    second = b"_DMI_\0" + struct.pack("<HIHB", length, TABLE_OFFSET, count, version[0] << 4 | version[1])
    second = checksum(second, 5)
    first = b"_SM_\0" + struct.pack("<BBBHB5x", size, *version, 256, 0)
    return checksum((first + second)[:size], 4) + (first + second)[size:]


def entry64(version, length):
    return checksum(b"_SM3_\0" + struct.pack("<BBBBBBIQ", 24, *version, 0, 1, 0, length, TABLE_OFFSET), 5)


def dump(records, version):
    table = b"".join(record.encode(handle) for handle, record in enumerate(records))
    if version >= (3, 0):
        entry = entry64(version, len(table))
    else:
        entry = entry32(version, len(table), len(records), 0x1E if version == (2, 1) else 0x1F)
    return entry.ljust(TABLE_OFFSET, b"\0") + table


def machine(*own, marker=0, **names):
    return [bios(marker=marker), system(**names), baseboard(), chassis(), *memory(), *own, end()]


DUMPS = {
    # The maker's machines, known by their names or by their markers.
    "wavej": dump(machine(firmware(), server_system_id("KTQ-J-0001"),
                          product="Server Wave 300 J"), (2, 7)),
    "wavej-marker": dump(machine(firmware(), marker=0x4000), (2, 7)),
    "wavek": dump(machine(firmware(), server_system_id("KTQ-K-0002"), maker="kt",
                          product="Server WaveK 400"), (3, 3)),
    "wavek-marker": dump(machine(firmware(newer=1), server_system_id("KTQ-K-0003")), (3, 3)),
    # Servers in an enclosure: a blade with a profile, and a server of the SL line.
    "blade": dump(machine(firmware(), server_system_id("KTQ-B-0005"), enclosure(BLADE),
                          server_profile(), product="Server Blade 460"), (3, 3)),
    "sl-blade": dump(machine(firmware(), server_system_id("KTQ-S-0006"),
                             enclosure(BLADE | SL_SERVER, name="sl-chassis-2"),
                             product="Server SL 230"), (3, 3)),
    # Another maker, who uses the same bits and types for something else.
    "foreign": dump([bios(vendor="Example BIOS Company", marker=0x4000),
                     system(maker="Example", product="Workstation 9"),
                     firmware(newer=1, signature="Other"),
                     server_system_id("not ours", signature=""), end()], (3, 2)),
    # Firmware that tells nothing at all.
    "empty": dump([end()], (3, 0)),
    # The oldest and the newest form.
    "entry21": dump([bios(), system(old=True), chassis(), end()], (2, 1)),
    "entry30": dump(machine(firmware(), server_system_id("KTQ-30-0004")), (3, 0)),
}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("directory", type=Path)
    directory = parser.parse_args().directory
    directory.mkdir(parents=True, exist_ok=True)
    for name, data in DUMPS.items():
        (directory / f"{name}.bin").write_bytes(data)


if __name__ == "__main__":
    main()
