#!/usr/bin/env python3
"""Makes the Debian packages of a build, has lintian look at them, installs them into an empty Debian system, and
builds, serves and asks a provider there. Wants root, debootstrap, and the mirror that apt is configured with; ends
with 77 where one of them is missing.

    debs_test.py BUILD_FOLDER SOURCE_FOLDER
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import urllib.request

SUITE = "bookworm"
TOOLS = "cmake g++ ninja-build sblim-wbemcli"
INSIDE = """
set -eu
mount -t proc proc /proc
export DEBIAN_FRONTEND=noninteractive LC_ALL=C
# It is thrown away: no waiting for the disk, no pages that nobody reads.
printf '%s\\n' force-unsafe-io 'path-exclude=/usr/share/doc/*' 'path-exclude=/usr/share/locale/*' \\
    >/etc/dpkg/dpkg.cfg.d/test
printf '#!/bin/sh\\nexit 101\\n' >/usr/sbin/policy-rc.d
chmod +x /usr/sbin/policy-rc.d
step() { echo "== $*"; "$@" >/tmp/log 2>&1 || { cat /tmp/log; exit 1; }; }
step apt-get update
step apt-get install -y --no-install-recommends /debs/*.deb TOOLS
test ! -e /etc/systemd/system/multi-user.target.wants/cimhost.service
step cmake -S /uptime -B /build -G Ninja
step cmake --build /build
step cmake --install /build --prefix /usr
: >/tmp/said
cimhost serve --port 0 --max-seconds 60 >/tmp/said 2>/tmp/log &
host=$!
until grep -q ready /tmp/said; do kill -0 $host || { cat /tmp/log; exit 1; }; sleep 0.1; done
url=$(sed -n 's|.* \\(http:.*\\)/cimom|\\1|p' /tmp/said)
wbemcli ei "$url/root/ktq:PYL_Uptime"
wbemcli ein "$url/root/ktq:PYL_ComputerSystem"
python3 -c 'import http.client, sys
server = http.client.HTTPConnection(sys.argv[1])
server.request("GET", "/")
print(server.getresponse().read().decode())' "${url#http://}"
kill $host
wait $host
step apt-get purge -y cimhost pylcommon-providers libpylcommon-dev libpylcommon1 pylcommon-common
left=$(find / -xdev -path '*pyl*' -not -path '/build/*' -not -path '/debs/*' -not -iname '*uptime*' -type f)
test -z "$left" || { echo "left behind: $left"; exit 1; }
"""


def skip(why):
    print(f"skipped: {why}")
    sys.exit(77)


def mirror():
    """Where apt gets this suite from."""
    targets = subprocess.run(
        ["apt-get", "indextargets", "--format", "$(RELEASE) $(COMPONENT) $(REPO_URI)", "Created-By: Packages"],
        stdout=subprocess.PIPE, text=True, check=True).stdout.splitlines()
    for words in map(str.split, targets):
        if words[:2] == [SUITE, "main"] and words[2].startswith("http:"):
            try:
                with urllib.request.urlopen(f"{words[2].rstrip('/')}/dists/{SUITE}/Release", timeout=20):
                    return words[2]
            except OSError as error:
                skip(f"{words[2]} cannot be reached: {error}")
    return skip(f"apt is not configured with a mirror of {SUITE} that speaks plain HTTP")


def tried(*words):
    """How it ended. All that it says is shown with the test's failure."""
    result = subprocess.run([str(word) for word in words], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            text=True, check=False)
    print(result.stdout, flush=True)
    return result


def run(*words):
    """What it says; the end of the test where it fails."""
    result = tried(*words)
    if result.returncode != 0:
        sys.exit(f"{words[0]} ended with {result.returncode}")
    return result.stdout


def main():
    build, source = map(pathlib.Path, sys.argv[1:])
    if os.geteuid() != 0:
        skip("it needs root")
    for tool in ("debootstrap", "unshare", "lintian"):
        if not shutil.which(tool):
            skip(f"{tool} is not installed")
    # Mounts and processes end with the namespaces that they are in.
    apart = ("unshare", "--mount", "--pid", "--fork", "--kill-child", "--propagation", "private")
    if subprocess.run([*apart, "true"], check=False).returncode != 0:
        skip("unshare is not allowed here")
    where = mirror()
    with tempfile.TemporaryDirectory(dir=build) as scratch:
        debs, root = pathlib.Path(scratch) / "debs", pathlib.Path(scratch) / "root"
        run("cpack", "--config", build / "CPackConfig.cmake", "-B", debs)
        run("lintian", "--allow-root", "--fail-on", "error", *debs.glob("*.deb"))
        if tried(*apart, "debootstrap", "--variant=minbase", SUITE, root, where).returncode != 0:
            skip("debootstrap cannot make a root here")
        (root / "debs").mkdir()
        for deb in debs.glob("*.deb"):
            shutil.copy(deb, root / "debs")
        shutil.copytree(source / "examples/smallest", root / "uptime")
        said = run(*apart, "chroot", root, "sh", "-c", INSIDE.replace("TOOLS", TOOLS))
    # The page is in the packages where it is in the build.
    page = "console.js" if (build / "console/BuiltConsole.cpp").exists() else "built without its page"
    for wanted in (page, r'PYL_Uptime\.InstanceID="KTQ:Uptime".*Seconds=\d+', "PYL_ComputerSystem"):
        if not re.search(wanted, said):
            sys.exit(f"no answer has {wanted}")


if __name__ == "__main__":
    main()
