#!/usr/bin/env python3
"""Lets cimhost work for a while: it delivers indications to eight subscribers, of which one is dead and one is slow,
while one comes and goes, and eight clients make, get, list, ask and delete instances.

    soak.py BUILD_FOLDER [MINUTES]

Prints memory, descriptors and threads as time goes by, and at the end what each subscriber was sent. Fails when
the counts do not add up, when a client got another answer than the right one, or when memory, descriptors or
threads grow after the first three minutes. Not part of the suite: ten minutes are what it is meant for.
"""

import os
import pathlib
import sys
import time

GOOD, SLOW, DEAD, PASSING = [f"good{number}" for number in range(6)], "slow", "dead", "passing"
AT_ONCE, PAUSE = 20, 0.2
SAMPLE_SECONDS, WARM_SAMPLES = 30, 6
MOST_GROWTH_KIB = 1024
CLIENTS = 8


def usage(pid):
    """Memory in KiB, descriptors and threads of the process."""
    status = pathlib.Path(f"/proc/{pid}/status").read_text()
    fields = dict(line.split(":", 1) for line in status.splitlines() if ":" in line)
    return (int(fields["VmRSS"].split()[0]), len(os.listdir(f"/proc/{pid}/fd")),
            int(fields["Threads"]))


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    os.environ["PYL_BUILD_FOLDER"] = str(pathlib.Path(sys.argv[1]).resolve())
    minutes = float(sys.argv[2]) if len(sys.argv) == 3 else 10
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
    sys.exit(soak(minutes))


def widget_path(name):
    return (f'<INSTANCENAME CLASSNAME="TST_Widget"><KEYBINDING NAME="Name"><KEYVALUE VALUETYPE="string">{name}'
            "</KEYVALUE></KEYBINDING></INSTANCENAME>")


def round_of(name):
    """(operation, parameters, what its answer has in it) of one client's round, in order."""
    path = f'<IPARAMVALUE NAME="InstanceName">{widget_path(name)}</IPARAMVALUE>'
    instance = ('<IPARAMVALUE NAME="NewInstance"><INSTANCE CLASSNAME="TST_Widget"><PROPERTY NAME="Name" TYPE="string">'
                f"<VALUE>{name}</VALUE></PROPERTY></INSTANCE></IPARAMVALUE>")
    widgets = '<IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="TST_Widget"/></IPARAMVALUE>'
    return (("CreateInstance", instance, f">{name}</KEYVALUE>"),
            ("GetInstance", path, f"<VALUE>{name}</VALUE>"),
            ("EnumerateInstances", widgets, f"<VALUE>{name}</VALUE>"),
            ("EnumerateInstanceNames", widgets, f">{name}</KEYVALUE>"),
            ("GetClass", widgets, '<CLASS NAME="TST_Widget"'),
            ("DeleteInstance", path, "<IMETHODRESPONSE"),
            ("GetInstance", path, 'CODE="6"'))


def work(port, name, is_over, wrong):
    """One client, with a connection for each request, until it is told or an answer is wrong. Its requests."""
    from wire import Wire, call, post
    requests = 0
    while not is_over.is_set() and not wrong:
        for operation, parameters, expected in round_of(name):
            with Wire(port) as wire:
                status, _, body = wire.exchange(post(call(parameters, "root/test", operation),
                                                     operation=operation, target="root/test"))
            requests += 1
            if status != 200 or expected not in body.decode():
                wrong.append(f"{operation}: {status} {body.decode()}")
                break
    return requests


def soak(minutes):
    # Only now: they look for the build folder when they are loaded.
    import concurrent.futures
    import contextlib
    import threading
    import unittest

    import indications_test
    from wbemcli_test import WIDGET
    from host import BUILD, Host
    from listeners import DeadListener, Listener, good

    class Soak(indications_test.SubscribedCase):
        def start(self):
            arguments = (*indications_test.ALARMS, "--schema", WIDGET / "Widget.mof", "--registration",
                         WIDGET / "widget.registration", "--provider-dir", BUILD / "tests/system/widget")
            self.host = Host("--delivery-queue", "2000", arguments=arguments, seconds=int(minutes * 60) + 120)

        def runTest(self):
            ended = []
            listeners = {name: Listener() for name in GOOD}
            listeners[SLOW] = Listener(lambda number, body: (listeners[SLOW].ended.wait(0.2), good())[1])
            dead = DeadListener()
            self.addCleanup(dead.close)
            for name, listener in listeners.items():
                self.addCleanup(listener.close)
                self.subscribe(listener.url, name)
            self.subscribe(dead.url, DEAD)
            with self.clients():
                raised = self.ring_for(minutes * 60, ended)
            self.wait_for_status(rf"good0: {raised} raised, \d+ sent, \d+ dropped, 0 waiting")
            self.assertEqual(0, self.host.stop(), self.host.log())
            self.judge(raised, listeners, ended)

        @contextlib.contextmanager
        def clients(self):
            is_over, wrong = threading.Event(), []
            with concurrent.futures.ThreadPoolExecutor(CLIENTS + 1) as pool:
                running = [pool.submit(work, self.host.port, f"widget-{number}", is_over, wrong)
                           for number in range(CLIENTS)]
                passing = pool.submit(self.come_and_go, is_over)
                try:
                    yield
                finally:
                    is_over.set()
                print(f"{sum(each.result() for each in running)} requests of {CLIENTS} clients, "
                      f"{passing.result()} subscriptions that came and went", flush=True)
            self.assertEqual([], wrong)

        def come_and_go(self, is_over):
            """A subscriber whose listener nobody rings for: another class is what it wants."""
            self.filter(PASSING, "SELECT * FROM TST_Alarm WHERE Number = 4711")
            self.destination("http://localhost:1/", PASSING)
            times = 0
            while not is_over.wait(1):
                answer = self.subscription(PASSING, PASSING)
                self.assertEqual((0, None), (answer.status, answer.cim_error), answer.text)
                self.unsubscribe(PASSING)
                times += 1
            return times

        def ring_for(self, seconds, samples):
            end, raised, next_sample = time.monotonic() + seconds, 0, 0
            begin = time.monotonic()
            while time.monotonic() < end:
                self.ring(AT_ONCE)
                raised += AT_ONCE
                time.sleep(PAUSE)
                if time.monotonic() - begin >= next_sample:
                    samples.append(usage(self.host.process.pid))
                    print(f"{next_sample:5d} s: {raised} raised, %d KiB, %d descriptors, %d threads"
                          % samples[-1], flush=True)
                    next_sample += SAMPLE_SECONDS
            return raised

        def judge(self, raised, listeners, samples):
            counts = indications_test.counts_in(self.host.log())
            self.assertEqual((0, 0, 0), counts.pop(PASSING, (0, 0, 0)))
            for name, (told, sent, dropped) in sorted(counts.items()):
                taken = len(listeners[name].bodies) if name in listeners else 0
                print(f"{name}: {told} raised, {sent} sent, {dropped} dropped, {taken} taken")
                self.assertEqual((raised, raised), (told, sent + dropped), name)
                # One may have been taken when the end broke its answer off.
                self.assertLessEqual(sent, taken, name)
                self.assertLessEqual(taken, sent + 1, name)
            self.assertEqual(set(listeners) | {DEAD}, set(counts))
            for name in GOOD:
                self.assertEqual((raised, 0), counts[name][1:], name)
            self.assertEqual(0, counts[DEAD][1])
            warm = samples[min(WARM_SAMPLES, len(samples) - 1):]
            for what, allowed in ((0, MOST_GROWTH_KIB), (1, 2), (2, 1)):
                self.assertLessEqual(warm[-1][what] - warm[0][what], allowed, "grew")

    result = unittest.TextTestRunner(verbosity=0).run(Soak())
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    main()
