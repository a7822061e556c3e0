#!/usr/bin/env python3
"""Lets cimhost deliver indications for a while, to eight subscribers of which one is dead and one is slow.

    soak.py BUILD_FOLDER [MINUTES]

Prints memory, descriptors and threads as time goes by, and at the end what each subscriber was sent. Fails when
the counts do not add up, or when memory, descriptors or threads grow after the first minute. Not part of the
suite: ten minutes are what it is meant for.
"""

import os
import pathlib
import sys
import time

GOOD, SLOW, DEAD = [f"good{number}" for number in range(6)], "slow", "dead"
AT_ONCE, PAUSE = 20, 0.2
MOST_GROWTH_KIB = 1024


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


def soak(minutes):
    # Only now: they look for the build folder when they are loaded.
    import socket
    import unittest

    import indications_test
    from host import Host
    from listeners import Listener, good

    class Soak(indications_test.SubscribedCase):
        def start(self):
            self.host = Host("--delivery-queue", "2000", arguments=indications_test.ALARMS,
                             seconds=int(minutes * 60) + 120)

        def runTest(self):
            ended = []
            listeners = {name: Listener() for name in GOOD}
            listeners[SLOW] = Listener(lambda number, body: (listeners[SLOW].ended.wait(0.2), good())[1])
            with socket.create_server(("127.0.0.1", 0)) as taken:
                dead_url = f"http://127.0.0.1:{taken.getsockname()[1]}/"
            for name, listener in listeners.items():
                self.addCleanup(listener.close)
                self.subscribe(listener.url, name)
            self.subscribe(dead_url, DEAD)
            raised = self.ring_for(minutes * 60, ended)
            self.wait_for_status(rf"good0: {raised} raised, \d+ sent, \d+ dropped, 0 waiting")
            self.assertEqual(0, self.host.stop(), self.host.log())
            self.judge(raised, listeners, ended)

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
                    next_sample += 30
            return raised

        def judge(self, raised, listeners, samples):
            counts = indications_test.counts_in(self.host.log())
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
            warm = samples[min(2, len(samples) - 1):]
            for what, allowed in ((0, MOST_GROWTH_KIB), (1, 2), (2, 1)):
                self.assertLessEqual(warm[-1][what] - warm[0][what], allowed, "grew")

    result = unittest.TextTestRunner(verbosity=0).run(Soak())
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    main()
