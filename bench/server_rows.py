"""Measures a running cimhost: rows g1 to g12.

Times stand beside those of a floor: a server that does nothing but send the same bytes, asked by the same
client in the same run. The figures of established object managers come from another machine and only
say what is usual.
"""

import contextlib
import pathlib
import re
import select
import signal
import socket
import statistics
import subprocess
import tempfile
import threading
import time

from table import Row

ROUNDS = 9
READY = re.compile(r"ready at http://[^ ]*:(\d+)/")


# What is asked.

def call(method, parameters, name_space="root/bench"):
    """The bytes of a request of an intrinsic method."""
    names = "".join(f'<NAMESPACE NAME="{name}"/>' for name in name_space.split("/"))
    body = (
        '<?xml version="1.0" encoding="utf-8"?>'
        '<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ>'
        f'<IMETHODCALL NAME="{method}"><LOCALNAMESPACEPATH>{names}</LOCALNAMESPACEPATH>{parameters}'
        "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>").encode()
    head = (
        "POST /cimom HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/xml; charset=utf-8\r\n"
        f"Content-Length: {len(body)}\r\nCIMOperation: MethodCall\r\nCIMMethod: {method}\r\n"
        f"CIMObject: {name_space}\r\n\r\n").encode()
    return head + body


def instance_name(cim_class, key, value):
    return (f'<INSTANCENAME CLASSNAME="{cim_class}"><KEYBINDING NAME="{key}">'
            f'<KEYVALUE VALUETYPE="string">{value}</KEYVALUE></KEYBINDING></INSTANCENAME>')


GET = call("GetInstance", '<IPARAMVALUE NAME="InstanceName">' +
           instance_name("Bench_Device100", "DeviceID", "device-00000042") + "</IPARAMVALUE>")
ASSOCIATORS = call("Associators", '<IPARAMVALUE NAME="ObjectName">' +
                   instance_name("Bench_System", "Name", "server") + "</IPARAMVALUE>")


def enumerate_call(count, kind="Device"):
    return call("EnumerateInstances", '<IPARAMVALUE NAME="ClassName">'
                f'<CLASSNAME NAME="Bench_{kind}{count}"/></IPARAMVALUE>')


# What becomes of the objects of a provider that delivers many instances, and the class for that.
MANY = [("objects left to the broker", enumerate_call(10000)),
        ("objects marked and released", enumerate_call(10000, "MarkedDevice"))]


# Who is asked.

class Host:
    """A cimhost that serves a provider of the bench."""

    def __init__(self, build, arguments, runner=()):
        self.begin = time.perf_counter()
        self.process = subprocess.Popen(
            [*runner, build / "cimhost/cimhost", "serve", *arguments,
             "--provider-dir", build / "bench/server", "--port", "0", "--max-seconds", "600"],
            stdout=subprocess.PIPE, text=True)
        self.port = self._read_port()

    def _read_port(self):
        ready, _, _ = select.select([self.process.stdout], [], [], 20)
        found = READY.search(self.process.stdout.readline()) if ready else None
        if not found:
            self.stop()
            raise RuntimeError("cimhost did not start")
        return int(found[1])

    def memory(self, field):
        """A size of /proc/PID/status, in MiB."""
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text(encoding="ascii")
        return int(re.search(rf"^{field}:\s+(\d+) kB$", status, re.MULTILINE)[1]) / 1024

    def settle(self):
        """Waits until it has nothing to do but to send now and then."""
        spent, before = self._ticks(), None
        while before is None or spent - before > 2:
            time.sleep(0.5)
            spent, before = self._ticks(), spent

    def _ticks(self):
        stat = pathlib.Path(f"/proc/{self.process.pid}/stat").read_text(encoding="ascii")
        return sum(int(ticks) for ticks in stat.rpartition(")")[2].split()[11:13])

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait()
        self.process.stdout.close()


def device_host(build, source, *options, runner=()):
    return Host(build, ["--namespace", "root/bench",
                        "--schema", source / "schema/base/qualifiers.mof",
                        "--schema", source / "bench/server/bench.mof",
                        "--registration", source / "bench/server/bench.registration", *options],
                runner)


@contextlib.contextmanager
def running(server):
    try:
        yield server
    finally:
        server.stop()


class Floor:
    """The least that a server can do: it sends one stored reply."""

    def __init__(self, build, reply):
        self.process = subprocess.Popen([build / "bench/server/http_floor", reply],
                                        stdout=subprocess.PIPE, text=True)
        self.port = int(self.process.stdout.readline())

    def stop(self):
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()


class Client:
    """Runs the load client with requests and replies in a folder of its own."""

    def __init__(self, build, folder):
        self.program = build / "bench/server/load_client"
        self.build = build
        self.folder = folder

    def load(self, port, request, connections, requests, reply=None):
        """(p50, p99, requests a second, bytes of a reply); times in microseconds."""
        file = self.folder / "request"
        file.write_bytes(request)
        answer = subprocess.run(
            [self.program, str(port), file, str(connections), str(requests)] +
            ([reply] if reply else []), check=True, stdout=subprocess.PIPE, text=True)
        return tuple(float(word) for word in answer.stdout.split())

    def best_load(self, *job):
        """The best of several rounds, since what else the machine does only ever adds."""
        return best(self.load(*job) for _ in range(ROUNDS))

    def compare(self, host, request, connections, requests):
        """(the host's figures, the floor's), each the best of rounds that take turns."""
        reply = self.folder / "reply"
        self.load(host.port, request, 1, 1, reply)
        text = reply.read_bytes()
        if not text.startswith(b"HTTP/1.1 200") or b"<ERROR" in text:
            raise RuntimeError(f"the host refuses: {text[:600]!r}")
        ours, floors = [], []
        with running(Floor(self.build, reply)) as floor:
            for _ in range(ROUNDS):
                ours.append(self.load(host.port, request, connections, requests))
                floors.append(self.load(floor.port, request, connections, requests))
        return best(ours), best(floors)


def best(runs):
    p50s, p99s, rates, sizes = zip(*runs)
    return min(p50s), min(p99s), max(rates), sizes[0]


def in_units(microseconds):
    return f"{microseconds:.0f} us" if microseconds < 10000 else f"{microseconds / 1000:.1f} ms"


# The rows.

def get_rows(client, host):
    (p50, p99, _, _), (floor, _, _, _) = client.compare(host, GET, 1, 2000)
    yield Row("g1", "GetInstance p50", in_units(p50), in_units(floor), f"{p50 / floor:.2f}", "2.00",
              p50 <= 2 * floor)
    yield Row("g1", "GetInstance p99", in_units(p99), f"{in_units(p50)} (p50)", f"{p99 / p50:.2f}",
              "4.00", p99 <= 4 * p50)
    (_, _, rate, _), (_, _, floor, _) = client.compare(host, GET, 8, 1500)
    # 13 000 a second where the floor does 101 000.
    yield Row("g2", "GetInstance, 8 connections", f"{rate:,.0f}/s", f"{floor:,.0f}/s",
              f"{rate / floor:.3f}", "0.129", rate >= 0.129 * floor)


def hundred_rows(client, host):
    for what, request in (("EnumerateInstances 100", enumerate_call(100)),
                          ("Associators 100", ASSOCIATORS)):
        (p50, _, _, size), (floor, _, _, _) = client.compare(host, request, 1, 200)
        yield Row("g3", f"{what} ({size / 1000:.0f} kB)", in_units(p50), in_units(floor),
                  f"{p50 / floor:.2f}", "3.00 + 60 us", p50 <= 3 * floor + 60)


def large_rows(client, host):
    for objects, request in MANY:
        (p50, _, _, size), (floor, _, _, _) = client.compare(host, request, 1, 5)
        # 26 ms where the floor takes 3.3 ms.
        yield Row("g4", f"10 000 instances ({size / 1e6:.1f} MB), {objects}", in_units(p50),
                  in_units(floor), f"{p50 / floor:.2f}", "7.88", p50 <= 7.88 * floor)


def delay_row(client, host):
    slowest = max((client.best_load(host.port, enumerate_call(count), 1, 20)[0], count)
                  for count in (1, 10, 30, 100, 120, 300, 1000))
    return Row("g6", f"slowest p50, 1 kB to 1 MB ({slowest[1]} instances)", in_units(slowest[0]), "", "",
               "5 ms", slowest[0] <= 5000)


def memory_rows(client, build, source):
    for objects, request in MANY:
        with running(device_host(build, source)) as host:
            client.load(host.port, GET, 1, 1)
            idle = host.memory("VmRSS")
            client.load(host.port, request, 8, 1)
            peak = host.memory("VmHWM")
        yield Row("g5", f"peak after 8 x 10 000, {objects}", f"{peak:.1f} MiB",
                  f"{idle:.1f} MiB (idle)", f"+{peak - idle:.1f} MiB", "+64 MiB",
                  peak - idle <= 64)


def count_system_calls(client, host, requests):
    """All system calls of the host while it answers; None where nobody may look at another process."""
    log = client.folder / "calls"
    with subprocess.Popen(["strace", "-f", "-c", "-o", log, "-p", str(host.process.pid)],
                          stderr=subprocess.PIPE, text=True) as tracer:
        if "attached" not in tracer.stderr.readline():
            return None
        client.load(host.port, GET, 1, requests)
        tracer.send_signal(signal.SIGINT)
    total = re.search(r"^100\.00\s+[\d.]+\s+\d+\s+(\d+)", log.read_text(encoding="ascii"), re.MULTILINE)
    return int(total[1])


def system_call_row(client, host):
    requests = 1000
    total = count_system_calls(client, host, requests)
    if total is None:
        return Row("g7", "system calls a GetInstance", "strace may not attach", "", "", "8", False)
    each = total / (requests * 1.1 + 1)  # the client warms up with a tenth more
    return Row("g7", "system calls a GetInstance", f"{each:.1f}", "", "", "8", each <= 8)


def ask_once(port):
    with socket.create_connection(("127.0.0.1", port)) as connection:
        connection.sendall(GET)
        if b" 200 " not in connection.recv(65536):
            raise RuntimeError("the first answer is a refusal")


def start_rows(build, source):
    times, sizes = [], []
    for _ in range(5):
        with running(device_host(build, source)) as host:
            ask_once(host.port)
            times.append((time.perf_counter() - host.begin) * 1e6)
            sizes.append(host.memory("VmRSS"))
    first, size = statistics.median(times), statistics.median(sizes)
    yield Row("g8", "start to first answer", in_units(first), "", "", "100 ms", first <= 100_000)
    yield Row("g8", "memory when idle", f"{size:.1f} MiB", "", "", "20 MB", size * 1.048576 <= 20)


def crowd_host(build, source, connections):
    crowd = source / "tests/system/crowd"
    return Host(build, ["--namespace", "root/ktq",
                        "--schema", source / "schema/base/qualifiers.mof",
                        "--schema", crowd / "Crowd.mof",
                        "--registration", crowd / "crowd.registration",
                        "--max-connections", str(connections), "--reply-time", "600",
                        "--log-level", "warning"])


@contextlib.contextmanager
def hardly_reading(port, request, silent, trickling):
    """Clients that ask and never read, and some that read a kilobyte a second."""
    with contextlib.ExitStack() as stack:
        clients = []
        for _ in range(silent + trickling):
            client = stack.enter_context(socket.socket())
            client.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
            client.connect(("127.0.0.1", port))
            client.sendall(request)
            clients.append(client)
        is_over = threading.Event()

        def trickle():
            while not is_over.wait(1):
                for client in clients[silent:]:
                    client.recv(1024)

        trickler = threading.Thread(target=trickle)
        trickler.start()
        try:
            yield
        finally:
            is_over.set()
            trickler.join()


def slow_client_rows(client, build, source):
    get = call("GetInstance", '<IPARAMVALUE NAME="InstanceName">' +
               instance_name("TST_Member", "Name", "member-500") + "</IPARAMVALUE>", "root/ktq")
    everything = call("EnumerateInstances", '<IPARAMVALUE NAME="ClassName">'
                      '<CLASSNAME NAME="TST_Member"/></IPARAMVALUE>', "root/ktq")
    silent, trickling, spool = 128, 32, 32
    with running(crowd_host(build, source, silent + trickling + 8)) as host:
        free = client.best_load(host.port, get, 1, 300)
        idle = host.memory("VmRSS")
        with hardly_reading(host.port, everything, silent, trickling):
            host.settle()
            held = client.best_load(host.port, get, 1, 300)
            peak = host.memory("VmHWM")
    crowd = f"beside {silent} that never read and {trickling} at 1 kB/s"
    for name, ours, anchor in (("p50", held[0], free[0]), ("p99", held[1], free[1])):
        yield Row("g9", f"GetInstance {name} {crowd}", in_units(ours), f"{in_units(anchor)} (alone)",
                  f"{ours / anchor:.2f}", "2.00", ours <= 2 * anchor)
    yield Row("g9", "peak memory beside them", f"{peak:.1f} MiB", f"{idle:.1f} MiB (idle)",
              f"+{peak - idle:.1f} MiB", f"+{64 + spool} MiB", peak - idle <= 64 + spool)


def isolation_rows(client, build, source):
    """A module in a process of its own, beside one in the server's, in turns."""
    jobs = (("GetInstance p50", GET, 1000), ("10 000 instances", MANY[0][1], 5))
    with running(device_host(build, source)) as plain, \
            running(device_host(build, source, "--isolate")) as isolated:
        for what, request, requests in jobs:
            here, there = [], []
            for _ in range(ROUNDS):
                here.append(client.load(plain.port, request, 1, requests)[0])
                there.append(client.load(isolated.port, request, 1, requests)[0])
            ratio = min(there) / min(here)
            yield Row("g10", f"--isolate: {what}", in_units(min(there)), in_units(min(here)),
                      f"{ratio:.2f}", "-", True)


def total_instructions(client, build, source, options, request, requests, around=contextlib.nullcontext):
    """Those of a whole run of the host."""
    file = client.folder / "instructions"
    runner = ["valgrind", "--quiet", "--tool=callgrind", f"--callgrind-out-file={file}"]
    with running(device_host(build, source, *options, runner=runner)) as host, around(host):
        client.load(host.port, request, 1, requests)
    return int(re.search(r"^(?:totals|summary): (\d+)$", file.read_text(), re.MULTILINE)[1])


def instructions_each(client, build, source, options, request, requests, around=contextlib.nullcontext):
    """Those of one request. A second run leaves the host's start out."""
    twice, once = (total_instructions(client, build, source, options, request, count, around)
                   for count in (2 * requests, requests))
    return (twice - once) / (1.1 * requests)  # the client warms up with a tenth more


def judge_rows(client, build, source):
    for what, request, requests in (("GetInstance", GET, 1000),
                                    ("1 000 instances", enumerate_call(1000), 10)):
        judged, passed = (instructions_each(client, build, source, ("--results", policy), request, requests)
                          for policy in ("warn", "pass"))
        ratio = judged / passed
        yield Row("g11", f"{what}, results judged", f"{judged:,.0f} instr",
                  f"{passed:,.0f} instr (not judged)", f"{ratio:.3f}", "1.02", ratio <= 1.02)


@contextlib.contextmanager
def viewer(host):
    """Somebody who looks at the host's events, and reads all."""
    stream = socket.create_connection(("127.0.0.1", host.port))
    stream.sendall(b"GET /events HTTP/1.1\r\nHost: localhost\r\n\r\n")
    stream.recv(65536)
    reader = threading.Thread(target=lambda: [None for _ in iter(lambda: stream.recv(65536), b"")])
    reader.start()
    try:
        yield
    finally:
        stream.shutdown(socket.SHUT_RDWR)
        reader.join()
        stream.close()


def viewer_rows(client, build, source):
    """GetInstance with nobody who looks and with one, beside a server without a console."""
    alone, unseen, seen = (instructions_each(client, build, source, options, GET, 1000, around)
                           for options, around in ((("--no-console",), contextlib.nullcontext),
                                                   ((), contextlib.nullcontext), ((), viewer)))
    for what, count, goal in (("nobody looks", unseen, 1.02), ("one looks at the events", seen, None)):
        ratio = count / alone
        yield Row("g12", f"GetInstance, {what}", f"{count:,.0f} instr", f"{alone:,.0f} instr (no console)",
                  f"{ratio:.3f}", f"{goal:.2f}" if goal else "-", ratio <= goal if goal else None)


def measure(build, source):
    """All rows of the server in this build folder of the source folder."""
    with tempfile.TemporaryDirectory() as folder:
        client = Client(build, pathlib.Path(folder))
        with running(device_host(build, source)) as host:
            rows = [*get_rows(client, host), *hundred_rows(client, host),
                    *large_rows(client, host), delay_row(client, host),
                    system_call_row(client, host)]
        rows += memory_rows(client, build, source)
        rows += start_rows(build, source)
        rows += slow_client_rows(client, build, source)
        rows += isolation_rows(client, build, source)
        rows += judge_rows(client, build, source)
        rows += viewer_rows(client, build, source)
    return sorted(rows, key=lambda row: (len(row.name), row.name))
