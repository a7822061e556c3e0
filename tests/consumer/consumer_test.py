#!/usr/bin/env python3
"""Installs a build into an empty folder, and does there what a user would: builds a module with CMake as README says,
serves it with its own target, asks it with wbemcli, installs it. Then all of it is moved to another folder, and the
installed cimhost asked there. The same with make, as the page on building says. Nobody tells the loader where the
library is.

    consumer_test.py BUILD_FOLDER SOURCE_FOLDER CXX SANITIZERS
"""

import contextlib
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import textwrap

ENVIRONMENT = {name: value for name, value in os.environ.items() if name != "LD_LIBRARY_PATH"}
INSTANCE = r'PYL_Uptime\.InstanceID="KTQ:Uptime".*Seconds=\d+'


def attempt(*command, **options):
    return subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, check=False, timeout=240, **options)


def run(*command, **options):
    result = attempt(*command, **options)
    if result.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}\n{result.stdout}")
    return result.stdout


def expect(pattern, text):
    if not re.search(pattern, text, re.DOTALL):
        sys.exit(f"expected {pattern} in:\n{text}")


class Consumer:
    def __init__(self, scratch, source, compiler, sanitizers):
        self.scratch, self.source, self.compiler = scratch, source, compiler
        self.smallest = source.parent.parent / "examples/smallest"
        self.prefix = scratch / "prefix"
        self.flags = f"-fsanitize={sanitizers}" if sanitizers else ""

    def configure(self, source, build, *options, how=run):
        return how("cmake", "-S", source, "-B", build, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={self.prefix}",
                   f"-DCMAKE_INSTALL_PREFIX={self.prefix}", f"-DCMAKE_CXX_COMPILER={self.compiler}",
                   f"-DCMAKE_CXX_FLAGS={self.flags}", *options)

    def pkg_config_folder(self):
        return next(self.prefix.rglob("pylcommon.pc")).parent

    def build_with_cmake(self):
        build = self.scratch / "cmake"
        self.configure(self.smallest, build, "-DPYLCOMMON_SERVE_OPTIONS=--port;0;--max-seconds;60")
        run("cmake", "--build", build)
        expect(r"100% tests passed, 0 tests failed out of 1", run("ctest", "--test-dir", build))
        with asked("cmake", "--build", build, "--target", "uptime_serve") as answer:
            expect(INSTANCE, answer)
        run("cmake", "--install", build)
        for name in ("Uptime.mof", "uptime.registration", "uptime.reg", "uptimeRegistration.mof"):
            (self.prefix / "share/pylcommon/mof" / name).read_text(encoding="utf-8")
        symbols = run("nm", "-D", "--defined-only", next(self.prefix.rglob("libuptime.so")))
        strong = [line.split()[2] for line in symbols.splitlines() if line.split()[1] not in "WVu"]
        if self.flags == "" and sorted(strong) != [f"UptimeProvider_Create_{kind}MI" for kind in (
                "Association", "Indication", "Instance", "Method")]:
            sys.exit(f"the module exports {strong}")

    def build_with_make(self):
        """By the Makefile that the page shows."""
        project = self.scratch / "make"
        shutil.copytree(self.smallest, project)
        page = (self.source.parent.parent / "docs/building-a-provider.md").read_text(encoding="utf-8")
        makefile = textwrap.dedent(re.search(r"^## make\n\n(.*?)(?=^\S)", page, re.DOTALL | re.MULTILINE)[1])
        (project / "Makefile").write_text(makefile, encoding="utf-8")
        run("make", "-C", project, f"CXX={self.compiler} {self.flags}", "install",
            env=dict(os.environ, PKG_CONFIG_PATH=str(self.pkg_config_folder())))

    def build_guest(self):
        """A provider in C, by either package, for the headers alone."""
        build = self.scratch / "guest"
        run("cmake", "-S", self.source / "guest", "-B", build, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={self.prefix}")
        run("cmake", "--build", build)
        includes = run("pkg-config", "--cflags-only-I", "pylcommon",
                       env=dict(os.environ, PKG_CONFIG_PATH=str(self.pkg_config_folder())))
        run("cc", "-std=c89", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only", *includes.split(),
            self.source.parent / "cmpi/Guest.c")

    def make_mistakes(self):
        """What is told before anything runs."""
        project, build = self.scratch / "mistakes", self.scratch / "mistakes/build"
        shutil.copytree(self.smallest, project)
        cmake, mof = project / "CMakeLists.txt", project / "Uptime.mof"
        head = cmake.read_text(encoding="utf-8").partition("pylcommon_add_provider")[0]

        def configure(arguments):
            cmake.write_text(f"{head}pylcommon_add_provider(uptime CLASSES Uptime.mof SOURCES UptimeProvider.cpp "
                             f"{arguments})\n", encoding="utf-8")
            return self.configure(project, build, "-DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON", how=attempt).stdout

        def register():
            return attempt("cmake", "--build", build, "--target", "uptime_registration").stdout

        expect(r"\(uptime\): +expected +CLASSES.*understood: +'SORCES;a.cpp'", configure("NAMESPACE root/ktq SORCES a.cpp"))
        expect(r"uptime_test +is +not +built", configure("TESTS Uptime_test.cpp"))
        registration = project / "my.registration"
        registration.write_text("PYL_Uptim root/ktq UptimeProvider uptime instance\n", encoding="utf-8")
        configure("REGISTRATION my.registration")
        expect(r"root/ktq:PYL_Uptim\b", register())
        if not self.flags:
            registration.write_text("PYL_Uptime root/ktq UptimProvider uptime instance\n", encoding="utf-8")
            expect(r"UptimProvider_Create_InstanceMI", attempt("cmake", "--build", build).stdout)
        configure("NAMESPACE root/other")
        mof.write_text(mof.read_text(encoding="utf-8").replace("ManagedElement", "ManagedElemen"), encoding="utf-8")
        expect(r"Uptime\.mof:\d+.*CIM_ManagedElemen", register())

    def ask_where_it_was_moved_to(self):
        moved = self.prefix.rename(self.scratch / "moved")
        schema = moved / "share/pylcommon/mof"
        module = next(moved.rglob("libuptime.so"))
        with asked(moved / "bin/cimhost", "serve", "--port", "0", "--max-seconds", "60", "--namespace", "root/ktq",
                   "--schema", schema / "base/base.mof", "--schema", schema / "Uptime.mof",
                   "--registration", schema / "uptime.registration", "--provider-dir", module.parent) as answer:
            expect(INSTANCE, answer)
        module.unlink()
        moved.rename(self.prefix)


@contextlib.contextmanager
def asked(*command):
    """What wbemcli gets from a server that the command starts; the server's group of processes ends at the end."""
    with subprocess.Popen([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          env=ENVIRONMENT, start_new_session=True) as host:
        try:
            said = []
            for line in host.stdout:
                said.append(line)
                if found := re.search(r"ready at (http://\S+?)/cimom", line):
                    yield run("wbemcli", "ei", f"{found[1]}/root/ktq:PYL_Uptime")
                    break
            else:
                sys.exit(f"it did not start:\n{''.join(said)}")
        finally:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(host.pid, signal.SIGTERM)
            host.communicate(timeout=60)


def readme_says_the_same(source):
    """The lines that README shows are those of the project."""
    shown = (source.parent.parent / "README.md").read_text(encoding="utf-8")
    for line in (source.parent.parent / "examples/smallest/CMakeLists.txt").read_text(encoding="utf-8").splitlines()[3:]:
        if f"    {line}\n" not in shown:
            sys.exit(f"README does not show: {line}")
    expect(f"    localhost:5988/root/ktq:{INSTANCE}", shown)


def main():
    build, source, compiler, sanitizers = sys.argv[1:5]
    source = pathlib.Path(source)
    readme_says_the_same(source)
    with tempfile.TemporaryDirectory() as scratch:
        consumer = Consumer(pathlib.Path(scratch), source, compiler, sanitizers)
        run("cmake", "--install", build, "--prefix", consumer.prefix)
        for build in (consumer.build_with_cmake, consumer.build_with_make):
            build()
            consumer.ask_where_it_was_moved_to()
        consumer.build_guest()
        consumer.make_mistakes()


if __name__ == "__main__":
    main()
