"""A machine that runs: QEMU with a server's hardware, its controller beside it, and the way to its inside."""

import base64
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import tempfile
import threading
import time

from .channel import Monitor, ShellChannel
from .controller import Controller
from .initramfs import make_initramfs
from .kernel import cache_folder, find_kernel
from .processes import end_with_us
from .words import BoxError, program, require

INIT = pathlib.Path(__file__).resolve().parents[1] / "guest/init"
GUEST_PORT = 5988
TOOLS = ("qemu-system-x86_64", "busybox", "depmod")
# The ways to this host, in one device.
OWN_DEVICES = (
    "virtio-9p-pci,fsdev=host,mount_tag=host,addr=1d.0,multifunction=on",
    "virtio-serial-pci,addr=1d.1",
    "virtserialport,chardev=shell,name=box",
    "virtio-net-pci,netdev=net,romfile=,addr=1d.2",
)
FIRST_WORD = "box: the kernel runs"
PATIENCE = 180  # seconds: an emulated guest beside others on a busy host takes its time
KVM_SECONDS = 20  # a guest under KVM says its first word in one or two, where others run too in more


def starter():
    """The number of the user who started the box, by sudo or not."""
    return os.getuid() or os.environ.get("SUDO_UID", 0)


class Machine:
    """Use with `with`: leaving it ends everything that was started and removes its files."""

    def __init__(self, server, port=0, memory=None, drives=(), enclosure_module=None):
        """`port`: of this host, for the object manager inside; 0 takes a free one. `drives`: images, as /dev/vda and so
        on. `enclosure_module`: the controller's; without it there is no enclosure."""
        require(TOOLS + (("ipmi_sim",) if server.controller is not None else ())
                + (("i2cset",) if server.chips else ()) + (("openssl",) if server.users else ()))
        self.server = server
        self.console = []
        self.ready_seconds = None
        self.on_line = None
        self._drives = drives
        self._memory = memory or server.memory
        self._wanted_port = port
        self._news = threading.Condition()
        self._kernel = find_kernel()
        self._scratch = pathlib.Path(tempfile.mkdtemp(prefix="pylbox-"))
        self._process = None
        self._reader = None
        self._shell = None
        self.monitor = None
        self.controller = None
        if server.controller is not None:
            self.controller = Controller(self._scratch / "controller", enclosure_module, **server.controller)

    def __enter__(self):
        try:
            self.start()
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *_):
        self.close()

    # Life

    def start(self):
        began = time.monotonic()
        if self.controller:
            self.controller.start()
        self._write_parts()
        self._boot()
        self._shell = ShellChannel(self._scratch / "shell")
        self.wait_for_line("box: waits for commands")
        self._equip()
        self.ready_seconds = time.monotonic() - began

    def close(self):
        for part in (self._shell, self.monitor):
            if part:
                part.close()
        if self._process:
            self._process.kill()
            self._process.wait()
            self._reader.join()
        if self.controller:
            self.controller.kill()
        shutil.rmtree(self._scratch, ignore_errors=True)

    def cut_power(self):
        """From one moment to the next; nothing that the guest holds in memory is written."""
        self.monitor.ask("quit")
        self._process.wait(timeout=30)

    def is_running(self):
        return self._process.poll() is None

    # Inside

    def run(self, command, seconds=PATIENCE):
        """A shell's command in the guest: its status and its output."""
        return self._shell.run(command, seconds)

    def ask(self, command, seconds=PATIENCE):
        """The output of a command that is to succeed."""
        result = self.run(command, seconds)
        if result.status != 0:
            raise BoxError(f"In the guest, {command} ended with {result.status}:\n{result.text}")
        return result.text

    def read(self, path):
        """The bytes of a file of the guest's."""
        return base64.b64decode(self.ask(f"base64 {shlex.quote(path)}"))

    def serve(self, command, seconds=PATIENCE):
        """Starts an object manager, whose words go to the console, and waits until it is ready."""
        seen = len(self.console)
        words = shlex.join(map(str, [*command, *self._protection(command[0])]))
        self.ask(f"setsid {words} >/dev/console 2>&1 & echo $! >/run/cimhost.pid")
        self.wait_for_line("cimhost is ready at", seconds, seen)

    def stop_serving(self, seconds=PATIENCE):
        self.ask("kill $(cat /run/cimhost.pid); while kill -0 $(cat /run/cimhost.pid) 2>/dev/null; do sleep 0.1; done",
                 seconds)

    def change(self, name):
        """What the server's description calls so: other values in the registers of its sensors."""
        writes = self.server.changes[name]
        self.ask("; ".join(self._set_register(*write) for write in writes))

    # Outside

    @property
    def address(self):
        """Of what is served inside, for clients, as its first user where it has users."""
        user = next((f"{name}:{password}@" for name, password in self.server.users.items()), "")
        return f"http{'s' if user else ''}://{user}localhost:{self.port}"

    @property
    def client_options(self):
        """What wbemcli needs to trust it."""
        return ("-cacert", str(self._scratch / "certificate")) if self.server.users else ()

    def wait_for_line(self, pattern, seconds=PATIENCE, seen=0):
        """The first line of the console, from the number `seen` on, that has this."""
        deadline = time.monotonic() + seconds
        with self._news:
            while True:
                for line in self.console[seen:]:
                    if re.search(pattern, line):
                        return line
                seen = len(self.console)
                left = deadline - time.monotonic()
                if left <= 0 or self._process.poll() is not None:
                    text = "\n".join(self.console[-20:])
                    raise BoxError(f"The guest did not say \"{pattern}\" in {seconds} s. Its last words:\n{text}")
                self._news.wait(min(left, 0.5))

    def plug(self, device):
        """A device, as behind -device; its id unplugs it."""
        driver, *options = device.split(",")
        self.monitor.ask("device_add", driver=driver, **dict(option.split("=", 1) for option in options))

    def unplug(self, name):
        """Presses the slot's button, and waits until the guest has let go."""
        self.monitor.ask("device_del", id=name)
        self.monitor.wait_for("DEVICE_DELETED", name)

    # Parts

    def _write_parts(self):
        (self._scratch / "initramfs").write_bytes(make_initramfs(self._kernel, INIT))
        for number, record in enumerate(self.server.records):
            (self._scratch / f"record{number}").write_bytes(record)

    def _command(self, accelerator):
        scratch = self._scratch
        machine = f"q35,accel={accelerator},smbios-entry-point-type={self.server.entry_point}"
        words = ["-machine", machine, "-m", str(self._memory), "-nodefaults", "-no-user-config", "-no-reboot",
                 "-display", "none", "-serial", "stdio", "-cpu", "host" if accelerator == "kvm" else "qemu64,+rdrand",
                 "-kernel", self._kernel.image, "-initrd", scratch / "initramfs",
                 "-append", f"console=ttyS0 quiet panic=-1 box.name={self.server.host_name} "
                            f"box.modules={self._kernel.modules} box.user={starter()}",
                 # Slots are the port's own, as on a server, and not the firmware's.
                 "-global", "ICH9-LPC.acpi-pci-hotplug-with-bridge-support=off",
                 "-qmp", f"unix:{scratch}/monitor,server=on,wait=off",
                 "-fsdev", "local,path=/,id=host,security_model=none,readonly=on,multidevs=remap",
                 "-chardev", f"socket,path={scratch}/shell,server=on,wait=off,id=shell", "-netdev", "user,id=net",
                 *(word for device in OWN_DEVICES for word in ("-device", device))]
        for number in range(len(self.server.records)):
            words += ["-smbios", f"file={scratch}/record{number}"]
        for number, image in enumerate(self._drives):
            words += ["-drive", f"file={image},format=raw,if=none,id=drive{number},cache=writethrough",
                      "-device", f"virtio-blk-pci,drive=drive{number}"]
        for device in self.server.devices:
            words += ["-device", device]
        if self.controller:
            words += ["-chardev", f"socket,id=ipmi,host=127.0.0.1,port={self.controller.port},reconnect=1",
                      "-device", "ipmi-bmc-extern,id=bmc,chardev=ipmi", "-device", "isa-ipmi-kcs,bmc=bmc"]
        return [program("qemu-system-x86_64"), *map(str, words)]

    def _boot(self):
        verdict = _KvmVerdict()
        if verdict.may_work():
            self._launch("kvm")
            try:
                self.wait_for_line(FIRST_WORD, KVM_SECONDS)
                return
            except BoxError:
                verdict.does_not_work()
                self._process.kill()
                self._process.wait()
                self._reader.join()
                self.monitor = None
        self._launch("tcg")
        self.wait_for_line(FIRST_WORD, 300)

    def _launch(self, accelerator):
        self.console.clear()
        with open(self._scratch / "errors", "wb") as errors:
            self._process = subprocess.Popen(self._command(accelerator), stdin=subprocess.DEVNULL,
                                             stdout=subprocess.PIPE, stderr=errors, preexec_fn=end_with_us)
        self._reader = threading.Thread(target=self._read_console, args=(self._process.stdout,), daemon=True)
        self._reader.start()
        deadline = time.monotonic() + 30
        while not (self._scratch / "monitor").exists() or not (self._scratch / "shell").exists():
            if self._process.poll() is not None or time.monotonic() > deadline:
                raise BoxError(f"QEMU did not start:\n{(self._scratch / 'errors').read_text()}")
            time.sleep(0.02)

    def _read_console(self, stream):
        with stream:
            for line in stream:
                text = line.decode(errors="replace").rstrip("\r\n")
                # The firmware clears a screen that is not there.
                text = re.sub(r"\x1b(\[[0-9;?]*[a-zA-Z]|c)", "", text)
                # Shown before anyone who waits for it goes on, and has something to say.
                if self.on_line and text.strip():
                    self.on_line(text)
                with self._news:
                    self.console.append(text)
                    self._news.notify_all()
        with self._news:
            self._news.notify_all()

    def _equip(self):
        """Drivers, sensors and network, and the way in from outside."""
        commands = [f"modprobe {name}" for name in self.server.modules]
        if self.controller:
            commands += ["modprobe ipmi_si", "modprobe ipmi_devintf"]
        commands += self._sensors()
        commands += self._network()
        for path, content in self.server.files.items():
            commands.append(f"printf %s {shlex.quote(content)} >{shlex.quote(path)}")
        self.ask("set -e\n" + "\n".join(commands), 120)
        self.monitor = Monitor(self._scratch / "monitor")
        self.port = self._forward()

    def _protection(self, cimhost):
        """The options by which it asks for TLS and a password, where the server has users."""
        if not self.server.users:
            return []
        certificate, key = self._scratch / "certificate", self._scratch / "key"
        if not key.exists():
            subprocess.run([program("openssl"), "req", "-x509", "-newkey", "ec", "-pkeyopt",
                            "ec_paramgen_curve:prime256v1", "-nodes", "-keyout", key, "-out", certificate, "-days", "30",
                            "-subj", "/CN=localhost", "-addext", "subjectAltName=DNS:localhost"],
                           check=True, capture_output=True)
        home = "/etc/cimhost"  # of the guest's root, as the files must be
        users = [f"printf '%s\\n' {shlex.quote(password)} | {shlex.quote(str(cimhost))} passwd {home}/users "
                 f"{shlex.quote(name)}" for name, password in self.server.users.items()]
        self.ask("\n".join(["set -e; umask 077", f"mkdir -p {home}", f"cat {certificate} >{home}/certificate",
                            f"cat {key} >{home}/key", *users]))
        return ["--tls-cert", f"{home}/certificate", "--tls-key", f"{home}/key", "--password-file", f"{home}/users"]

    def _network(self):
        """The object manager listens at loopback, as on a desk; what comes from outside goes there."""
        return ["modprobe virtio_net",
                "for each in /sys/bus/virtio/drivers/virtio_net/virtio*/net/*; do link=${each##*/}; done",
                "echo 1 >/proc/sys/net/ipv4/conf/$link/route_localnet",
                "busybox ifconfig $link 10.0.2.15 netmask 255.255.255.0 up",
                "busybox route add default gw 10.0.2.2"]

    def _forward(self):
        said = self.monitor.human(f"hostfwd_add net tcp:127.0.0.1:{self._wanted_port}-127.0.0.1:{GUEST_PORT}")
        if said.strip():
            raise BoxError(f"Port {self._wanted_port} cannot be taken: {said.strip()}")
        table = self.monitor.human("info usernet")
        found = re.search(rf"HOST_FORWARD\S*\s+\S+\s+\S+\s+(\d+)\s+\S+\s+{GUEST_PORT}\b", table)
        if not found:
            raise BoxError(f"QEMU has forwarded no port:\n{table}")
        return int(found.group(1))

    def _sensors(self):
        if not self.server.chips:
            return []
        addresses = ",".join(hex(chip.address) for chip in self.server.chips)
        commands = ["modprobe i2c-dev", f"modprobe i2c-stub chip_addr={addresses}",
                    "bus=$(grep -l 'SMBus stub' /sys/class/i2c-dev/*/name); bus=${bus%/name}; bus=${bus##*-}",
                    "echo $bus >/run/bus"]
        for chip in self.server.chips:
            commands += [self._set_register(chip.address, *each) for each in chip.registers.items()]
            # Some drivers find their chip themselves.
            place = "/sys/bus/i2c/devices"
            commands += [f"modprobe {chip.driver}",
                         f"[ -e {place}/$bus-00{chip.address:02x} ] || "
                         f"echo {chip.driver} {chip.address:#x} >{place}/i2c-$bus/new_device"]
        return commands

    def _set_register(self, chip, register, value):
        return f"i2cset -f -y $(cat /run/bus) {chip:#x} {register:#x} {value:#x}"


class _KvmVerdict:
    """Whether KVM works here, remembered until this host starts again."""

    def __init__(self):
        self._file = cache_folder() / "kvm-does-not-work"
        self._boot = pathlib.Path("/proc/sys/kernel/random/boot_id").read_text()

    def may_work(self):
        if not os.access("/dev/kvm", os.R_OK | os.W_OK):
            return False
        return not self._file.exists() or self._file.read_text() != self._boot

    def does_not_work(self):
        self._file.write_text(self._boot)
