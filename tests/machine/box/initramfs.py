"""The small file system that the kernel starts with: it mounts the host's, and is left."""

import gzip
import pathlib
import stat

from .words import program

# The host's file system, read-only, with a layer for what is written; the way for commands; the network.
FIRST_MODULES = ("virtio_pci", "9pnet_virtio", "9p", "overlay", "virtio_console")


class Archive:
    """A cpio archive of the kind "newc", which the kernel unpacks (kernel documentation, initramfs)."""

    def __init__(self):
        self._bytes = bytearray()
        self._number = 0

    def folder(self, name):
        self._entry(name, stat.S_IFDIR | 0o755, b"")

    def file(self, name, content, mode=0o644):
        self._entry(name, stat.S_IFREG | mode, content)

    def end(self):
        self._entry("TRAILER!!!", 0, b"")
        return bytes(self._bytes)

    def _entry(self, name, mode, content):
        self._number += 1
        text = name.encode() + b"\0"
        # inode, mode, user, group, links, time, size, device, device of a node, length of the name, checksum
        fields = (self._number, mode, 0, 0, 1, 0, len(content), 0, 0, 0, 0, len(text), 0)
        self._add(b"070701" + b"".join(b"%08X" % field for field in fields) + text)
        self._add(content)

    def _add(self, content):
        self._bytes += content
        self._bytes += bytes(-len(self._bytes) % 4)


def make_initramfs(kernel, init):
    """The archive, packed. `init` is the script that is run first."""
    archive = Archive()
    for folder in ("bin", "dev", "proc", "sys", "modules", "host", "layer", "root"):
        archive.folder(folder)
    archive.file("init", pathlib.Path(init).read_bytes(), 0o755)
    archive.file("bin/busybox", pathlib.Path(program("busybox")).read_bytes(), 0o755)
    for number, file in enumerate(kernel.files_of(FIRST_MODULES)):
        archive.file(f"modules/{number:02}.ko", file.read_bytes())
    # The fastest level: the guest unpacks it once.
    return gzip.compress(archive.end(), 1, mtime=0)
