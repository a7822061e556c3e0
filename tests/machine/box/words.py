"""What the box says when it cannot do what was asked."""

import shutil


class BoxError(Exception):
    """Its text is fit for the user."""


# What the box runs, and the Debian package that has it.
PROGRAMS = {
    "qemu-system-x86_64": "qemu-system-x86",
    "ipmi_sim": "openipmi",
    "busybox": "busybox-static",
    "depmod": "kmod",
    "i2cset": "i2c-tools",
    "lspci": "pciutils",
    "dmidecode": "dmidecode",
    "wbemcli": "sblim-wbemcli",
    "openssl": "openssl",
}
FOLDERS = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"


def program(name):
    """Where it is. Programs of administrators are found without their PATH."""
    found = shutil.which(name) or shutil.which(name, path=FOLDERS)
    if not found:
        raise BoxError(missing([name]))
    return found


def missing(names):
    packages = " ".join(sorted({PROGRAMS[name] for name in names}))
    return f"{', '.join(names)}: not on this host. They come with: apt-get install {packages}"


def require(names):
    """Names all that is missing at once."""
    absent = [name for name in names if not (shutil.which(name) or shutil.which(name, path=FOLDERS))]
    if absent:
        raise BoxError(missing(absent))
