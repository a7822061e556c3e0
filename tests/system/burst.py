#!/usr/bin/env python3
"""Lets a module raise a burst of indications for three subscribers at once: a lively, a slow and a dead one.

    burst.py BUILD_FOLDER [EVENTS]

One call of the alarm module raises all of them, a million unless told otherwise. Prints what became of them for
each subscriber and the server's peak memory before and after. Fails when the counts do not add up, or when the
peak grows by more than the queues may hold and a margin. Not part of the suite: it wants the machine for itself.
"""

import os
import pathlib
import sys
import time

LIVELY, SLOW, DEAD = "lively", "slow", "dead"
QUEUE = 2000
# Beside its message each indication that waits has a row in a queue and the allocator's own bytes.
BESIDE_A_MESSAGE = 256
# For the call that raises them, its thread, and what the allocator keeps of objects that came and went.
MARGIN_KIB = 8 * 1024


class Tally(list):
    """What a listener has taken, without keeping it: how many, and the longest."""

    def __init__(self):
        super().__init__()
        self.count = self.longest = 0

    def append(self, body):
        self.count += 1
        self.longest = max(self.longest, len(body))

    def __len__(self):
        return self.count


def peak_kib(pid):
    """The most memory that the process ever had in use."""
    status = pathlib.Path(f"/proc/{pid}/status").read_text()
    return next(int(line.split()[1]) for line in status.splitlines() if line.startswith("VmHWM:"))


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    os.environ["PYL_BUILD_FOLDER"] = str(pathlib.Path(sys.argv[1]).resolve())
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
    sys.exit(burst(int(sys.argv[2]) if len(sys.argv) == 3 else 1_000_000))


def burst(events):
    # Only now: they look for the build folder when they are loaded.
    import subprocess
    import unittest

    import indications_test
    from host import Host
    from listeners import DeadListener, Listener, good

    class Burst(indications_test.SubscribedCase):
        def start(self):
            self.host = Host("--delivery-queue", str(QUEUE), arguments=indications_test.ALARMS,
                             seconds=3600)

        def runTest(self):
            def slowly(number, body):
                self.listeners[SLOW].ended.wait(0.05)
                return good()

            self.listeners = {LIVELY: Listener(), SLOW: Listener(slowly)}
            dead = DeadListener()
            self.addCleanup(dead.close)
            for name, listener in self.listeners.items():
                listener.bodies = Tally()
                self.addCleanup(listener.close)
                self.subscribe(listener.url, name)
            self.subscribe(dead.url, DEAD)
            self.ring(1)  # every connection and thread is there
            self.wait_for_status(f"{LIVELY}: 1 raised, 1 sent")
            before = peak_kib(self.host.process.pid)
            self.raise_all()
            raised = events + 1
            self.wait_for_status(rf"{LIVELY}: {raised} raised, \d+ sent, \d+ dropped, 0 waiting", 600)
            after = peak_kib(self.host.process.pid)
            self.assertEqual(0, self.host.stop(), self.host.log())
            self.judge(raised)
            self.judge_memory(before, after)

        def raise_all(self):
            """In one call, however long it takes."""
            begin = time.monotonic()
            command = ["wbemcli", "cm", self.host.url(":TST_Bell", "root/test"),
                       f'Ring.ClassName="TST_Alarm",Count={events}']
            result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                    text=True, check=False)
            self.assertRegex(result.stdout, r" 0\s*$", result.stdout + self.host.log())
            seconds = time.monotonic() - begin
            print(f"{events} raised in {seconds:.1f} s, {events / seconds:.0f} a second", flush=True)

        def judge(self, raised):
            counts = indications_test.counts_in(self.host.log())
            for name, (told, sent, dropped) in sorted(counts.items()):
                taken = len(self.listeners[name].bodies) if name in self.listeners else 0
                print(f"{name}: {told} raised, {sent} sent, {dropped} dropped, {taken} taken", flush=True)
                self.assertEqual((raised, raised), (told, sent + dropped), name)
                # One may have been taken when the end broke its answer off.
                self.assertLessEqual(sent, taken, name)
                self.assertLessEqual(taken, sent + 1, name)
            self.assertEqual({LIVELY, SLOW, DEAD}, set(counts))
            self.assertLess(0, counts[SLOW][1])
            self.assertLess(counts[SLOW][1], counts[LIVELY][1])
            self.assertEqual(0, counts[DEAD][1])
            drops = self.host.log().count("dropped so far")
            print(f"{drops} lines in the log say that some were dropped", flush=True)

        def judge_memory(self, before, after):
            message = max(listener.bodies.longest for listener in self.listeners.values())
            queues = 3 * QUEUE * (message + BESIDE_A_MESSAGE) // 1024
            print(f"peak memory: {before} KiB before, {after} KiB after; three queues of {QUEUE} messages "
                  f"of {message} bytes may hold {queues} KiB, the margin is {MARGIN_KIB} KiB",
                  flush=True)
            self.assertLessEqual(after - before, queues + MARGIN_KIB)

    result = unittest.TextTestRunner(verbosity=0).run(Burst())
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    main()
