#!/usr/bin/env python3
"""Installs a build into an empty folder, builds modules against the installed package, with CMake and with
pkg-config, installs them, moves all of it to another folder, and asks the installed cimhost for the module's
instance with wbemcli. Nobody tells the loader where the library is.

    consumer_test.py BUILD_FOLDER SOURCE_FOLDER CXX SANITIZERS
"""

import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile


def run(*command, **options):
    result = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, text=True, timeout=240, **options)
    if result.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}\n{result.stdout}")
    return result.stdout


def build_with_cmake(source, prefix, build, compiler, flags):
    run("cmake", "-S", source, "-B", build, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={prefix}",
        f"-DCMAKE_INSTALL_PREFIX={prefix}", f"-DCMAKE_CXX_COMPILER={compiler}",
        f"-DCMAKE_CXX_FLAGS={flags}")
    run("cmake", "--build", build)
    run("cmake", "--install", build)


def pkg_config_environment(prefix):
    return dict(os.environ, PKG_CONFIG_PATH=str(next(prefix.rglob("pylcommon.pc")).parent))


def build_with_pkg_config(source, prefix, compiler, flags):
    def told(*words):
        return run("pkg-config", *words, "pylcommon", env=pkg_config_environment(prefix)).strip()

    module = pathlib.Path(told("--variable=providerdir")) / "libplain.so"
    run(compiler, *flags.split(), "-shared", "-fPIC", source / "UptimeProvider.cpp", "-o", module,
        *told("--cflags", "--libs").split(), f"-Wl,-rpath,{told('--variable=rpath')}")


def build_guest(source, prefix, build):
    """A provider in C, by either package, for the headers alone."""
    run("cmake", "-S", source, "-B", build, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={prefix}")
    run("cmake", "--build", build)
    words = run("pkg-config", "--cflags-only-I", "pylcommon", env=pkg_config_environment(prefix)).split()
    run("cc", "-std=c89", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only", *words,
        source.parent.parent / "cmpi/Guest.c")


def ask(source, prefix, module):
    """The instance of the module as wbemcli shows it."""
    mof = next(prefix.rglob("base.mof"))
    registration = prefix / f"{module}.registration"
    registration.write_text((source / "uptime.registration").read_text(encoding="utf-8").replace(
        " uptime ", f" {module} "), encoding="utf-8")
    command = [prefix / "bin/cimhost", "serve", "--port", "0", "--max-seconds", "60",
               "--namespace", "root/ktq", "--schema", mof, "--schema", source / "Uptime.mof",
               "--registration", registration,
               "--provider-dir", next(prefix.rglob(f"lib{module}.so")).parent]
    environment = {name: value for name, value in os.environ.items() if name != "LD_LIBRARY_PATH"}
    with subprocess.Popen([str(word) for word in command], stdout=subprocess.PIPE, text=True,
                          stderr=subprocess.DEVNULL, env=environment) as host:
        try:
            url = re.search(r"http://\S+?(?=/cimom)", host.stdout.readline()).group()
            return run("wbemcli", "ei", f"{url}/root/ktq:PYL_Uptime")
        finally:
            host.send_signal(signal.SIGTERM)
            if host.wait(timeout=30) != 0:
                sys.exit(f"cimhost ended with {host.returncode}")


def main():
    build, source, compiler, sanitizers = sys.argv[1:5]
    guest = pathlib.Path(source) / "guest"
    source = pathlib.Path(source) / "uptime"
    flags = f"-fsanitize={sanitizers}" if sanitizers else ""
    with tempfile.TemporaryDirectory() as scratch:
        scratch = pathlib.Path(scratch)
        prefix = scratch / "prefix"
        run("cmake", "--install", build, "--prefix", prefix)
        build_with_cmake(source, prefix, scratch / "cmake", compiler, flags)
        build_with_pkg_config(source, prefix, compiler, flags)
        build_guest(guest, prefix, scratch / "guest")
        prefix = prefix.rename(scratch / "moved")
        for module in ("uptime", "plain"):
            answer = ask(source, prefix, module)
            if not re.search(r'PYL_Uptime\.InstanceID="KTQ:Uptime".*Seconds=\d+', answer, re.DOTALL):
                sys.exit(f"unexpected answer: {answer}")


if __name__ == "__main__":
    main()
