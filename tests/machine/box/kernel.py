"""Debian's kernel, taken from its package without installing it, and kept in a cache."""

import contextlib
import dataclasses
import fcntl
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

from .words import BoxError, program

META_PACKAGE = "linux-image-amd64"  # the one for the cloud has no hardware monitors

# Half of the package, of which no server here has anything.
LEFT_OUT = ("sound", "drivers/gpu", "drivers/media", "drivers/staging", "drivers/infiniband", "drivers/iio",
            "drivers/net/wireless", "drivers/isdn", "drivers/comedi", "drivers/bluetooth")


@dataclasses.dataclass
class Kernel:
    version: str
    folder: pathlib.Path

    @property
    def image(self):
        return self.folder / "boot" / f"vmlinuz-{self.version}"

    @property
    def modules(self):
        return self.folder / "lib/modules" / self.version

    def files_of(self, names):
        """The files of these modules and of all that they need, in the order in which they load."""
        needs = {}
        for line in (self.modules / "modules.dep").read_text().splitlines():
            file, _, needed = line.partition(":")
            needs[_name(file)] = [file, *needed.split()]
        built_in = {_name(line) for line in (self.modules / "modules.builtin").read_text().splitlines()}
        wanted = []
        for name in (_name(each) for each in names):
            if name in needs:
                wanted += reversed(needs[name])
            elif name not in built_in:
                raise BoxError(f"The kernel {self.version} has no module {name}.")
        return [self.modules / file for file in dict.fromkeys(wanted)]


def cache_folder():
    """$PYL_BOX_CACHE, or box of pylcommon in the user's cache."""
    own = os.environ.get("PYL_BOX_CACHE")
    home = os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache"
    return pathlib.Path(own or pathlib.Path(home) / "pylcommon/box").absolute()


def find_kernel():
    """Debian's current kernel; downloads its package when the cache has it not."""
    cache = cache_folder()
    package = _current_package()
    with only_one(cache):
        folder = cache / (package or _newest(cache))
        if not folder.exists():
            _fetch(package, folder)
    return Kernel(folder.name.removeprefix("linux-image-"), folder)


@contextlib.contextmanager
def only_one(cache):
    """Several boxes may start at once; the cache is filled by one."""
    cache.mkdir(parents=True, exist_ok=True)
    with open(cache / "lock", "w", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        yield


def _name(file):
    return pathlib.PurePath(file).name.removesuffix(".ko").replace("-", "_")


def _current_package():
    answer = subprocess.run(["apt-cache", "depends", META_PACKAGE], capture_output=True, text=True, check=False)
    found = re.search(r"Depends: (linux-image-\S+)", answer.stdout)
    return found.group(1) if found else None


def _newest(cache):
    kept = sorted(cache.glob("linux-image-*"), key=lambda folder: folder.stat().st_mtime)
    if not kept:
        raise BoxError(f"apt knows no package {META_PACKAGE}, whose kernel the box boots: apt-get update, on Debian.")
    return kept[-1].name


def _fetch(package, folder):
    print(f"Downloading {package} ({folder} keeps it; nothing is installed) ...", flush=True)
    with tempfile.TemporaryDirectory(dir=folder.parent) as scratch:
        scratch = pathlib.Path(scratch)
        # As the user that asks: apt's own user may not write here.
        command = ["apt-get", "download", "-q", "-o", "APT::Sandbox::User=root", package]
        answer = subprocess.run(command, cwd=scratch, capture_output=True, text=True, check=False)
        if answer.returncode != 0:
            raise BoxError(f"{package} could not be downloaded; apt-get update may help. It said:\n"
                           f"{answer.stderr.strip()}")
        unpacked = scratch / "unpacked"
        _unpack(next(scratch.glob("*.deb")), unpacked)
        version = package.removeprefix("linux-image-")
        subprocess.run([program("depmod"), "-b", unpacked, version], check=True)
        shutil.rmtree(folder, ignore_errors=True)
        unpacked.rename(folder)


def _unpack(package, folder):
    folder.mkdir()
    left_out = [f"--exclude=*/kernel/{name}" for name in LEFT_OUT]
    with subprocess.Popen(["dpkg-deb", "--fsys-tarfile", package], stdout=subprocess.PIPE) as archive:
        subprocess.run(["tar", "-x", "-C", folder, "--no-same-owner", *left_out, "./boot", "./lib/modules"],
                       stdin=archive.stdout, check=True)
