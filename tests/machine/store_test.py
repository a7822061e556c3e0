"""The providers' store on real file systems: full, read-only, gone, and with the power cut in the middle of writes.
docs/data-store.md says what may be lost."""

import contextlib
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import unittest

from box.words import PROGRAMS, require
from machine_case import MachineCase

PROGRAMS.update({"mke2fs": "e2fsprogs", "e2fsck": "e2fsprogs", "debugfs": "e2fsprogs"})
FILE = "/etc/cim/baseserver.txt"


def make_disk(folder, kilobytes):
    require(["mke2fs", "e2fsck", "debugfs"])
    image = pathlib.Path(folder) / f"disk{kilobytes}"
    subprocess.run(["/usr/sbin/mke2fs", "-q", "-t", "ext4", image, f"{kilobytes}k"], check=True, capture_output=True)
    return image


class DiskCase(MachineCase):
    """A disk of the server's for /etc/cim."""

    server = "foreign"
    kilobytes = 1024
    options = "noatime"  # as it is mounted

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.image = make_disk(cls.folder.name, cls.kilobytes)
        cls.drives = (cls.image,)
        cls.boot()

    @classmethod
    def boot(cls):
        super().setUpClass()
        cls.mounting = f"mkdir -p /etc/cim; mount -o {cls.options} /dev/vda /etc/cim"
        cls.machine.ask(f"modprobe virtio_blk; modprobe ext4; {cls.mounting}")
        super().serve()

    @classmethod
    def serve(cls, *options):
        """Once the disk is there."""

    def count(self):
        """The work's count after one more."""
        return int(re.search(r"WorkCount \(uint64\): (\d+)", self.work()).group(1))

    def restart(self, meanwhile=""):
        """The count lives on in the store alone. `meanwhile`: commands between end and start."""
        self.machine.stop_serving()
        if meanwhile:
            self.machine.run(meanwhile)
        super().serve()

    def kept(self):
        return self.machine.run(f"cat {FILE}").text

    def said(self, words):
        return any(words in line for line in self.machine.console)


class TroubledStore(DiskCase):
    fill = "dd if=/dev/zero of=/etc/cim/fill bs=1k; sync"

    def setUp(self):
        self.machine.run("mount -o remount,rw /etc/cim; rm -f /etc/cim/fill")

    def answers(self):
        """Three counts that follow each other, and an instance."""
        counts = [self.count() for _ in range(3)]
        self.assertEqual([counts[0], counts[0] + 1, counts[0] + 2], counts)
        self.assertEqual(1, len(self.instances("PYL_ComputerSystem")))
        return counts[-1]

    def expect_kept(self, count):
        """That the next start goes on from there."""
        self.assertRegex(self.kept(), rf"(?m)^WorkCount {count:020}\r?$")
        self.restart()
        self.assertEqual(count + 1, self.count())

    def test_a_full_disk_costs_what_is_stored_and_no_answer(self):
        self.restart(f"rm {FILE}; {self.fill}")
        self.assertEqual(3, self.answers())
        self.assertTrue(self.said("No space left on device"), self.log())
        self.machine.ask("rm /etc/cim/fill; sync")
        self.expect_kept(self.count())

    def test_a_value_that_is_there_is_replaced_on_a_full_disk_too(self):
        self.count()
        self.machine.run(self.fill)
        self.expect_kept(self.answers())

    def test_a_disk_that_turns_read_only_costs_what_is_stored_and_no_answer(self):
        self.count()
        self.machine.ask("sync; echo u >/proc/sysrq-trigger; while ! touch /etc/cim/probe 2>&1 | grep -q Read-only; do "
                         "sleep 0.1; done")
        self.answers()
        self.restart()
        self.answers()
        self.machine.ask("mount -o remount,rw /etc/cim")
        self.restart()
        self.expect_kept(self.answers())

    def test_a_folder_that_is_gone_costs_the_store_and_no_answer(self):
        self.restart("umount /etc/cim; rmdir /etc/cim")
        self.assertEqual(3, self.answers())
        self.restart(self.mounting)
        self.expect_kept(self.answers())


class PowerCuts(DiskCase):
    kilobytes = 8192
    options = "commit=1"  # the file system's journal, each second
    cuts = 30
    quits = int(os.environ.get("PYL_POWER_CUTS", "1"))  # each more is a boot

    def test_what_a_power_cut_leaves_is_a_whole_file_with_an_earlier_count(self):
        last = self.count()
        with self.writing(last):
            counts = [self.cut() for _ in range(self.cuts)]
        done = self.count()
        self.assertGreater(done, last + self.cuts, "it wrote meanwhile")
        self.assertEqual(sorted(counts), counts, "no count is later than one that comes after it")
        self.assertTrue(all(count <= done for count in counts), counts)
        self.assertGreater(counts[-1], counts[0], "the disk had later counts, too")
        kept = self.quit_while_it_writes(done, counts[-1])
        for _ in range(self.quits - 1):
            self.boot()  # its own kernel repairs the disk
            self.assertEqual(kept, self.count_of(self.kept()))
            self.assertEqual(kept + 1, self.count())
            kept = self.quit_while_it_writes(kept + 1, kept)

    def quit_while_it_writes(self, before, on_disk):
        """The count that the disk has then."""
        # What is written goes to the disk at once, or nearly.
        self.machine.ask("cd /proc/sys/vm; echo 20 >dirty_writeback_centisecs; echo 20 >dirty_expire_centisecs")
        with self.writing(before) as answered:
            time.sleep(random.uniform(0.5, 2.5))
            self.is_quitting = True
            self.machine.cut_power()
        image = shutil.copy(self.image, self.image.with_suffix(".cut"))
        count = self.count_in(image)
        last = answered[-1]
        print(f"quit {last - before} counts later: lost: {max(last - count, 0)}", file=sys.stderr)
        self.assertTrue(on_disk <= count <= last + 1, (on_disk, count, last))  # one was not answered
        return count

    @contextlib.contextmanager
    def writing(self, before):
        """Count upon count meanwhile. Gives those that were answered, after the one before."""
        answered, failures = [before], []
        ended = threading.Event()
        self.is_quitting = False
        writer = threading.Thread(target=self.write_until, args=(ended, answered, failures))
        writer.start()
        try:
            yield answered
        finally:
            ended.set()
            writer.join()
        self.assertEqual([], failures)

    def write_until(self, ended, answered, failures):
        while not ended.is_set():
            try:
                answered.append(self.count())
            except AssertionError as error:
                if not self.is_quitting:
                    failures.append(error)
                return

    def cut(self):
        """What a disk has that loses the machine now: the guest stands still, and nothing of its memory is written."""
        image = self.image.with_suffix(".cut")
        self.machine.monitor.ask("stop")
        try:
            shutil.copy(self.image, image)
        finally:
            self.machine.monitor.ask("cont")
        ended = threading.Event()
        ended.wait(0.4)  # between one and the next commit of the file system's journal
        return self.count_in(image)

    def count_in(self, image):
        """That of the store's file, once the journal is done; 0 when it has none yet."""
        subprocess.run(["/usr/sbin/e2fsck", "-fy", image], check=False, capture_output=True)
        return self.count_of(subprocess.run(["/usr/sbin/debugfs", "-R", "cat /baseserver.txt", image], check=True,
                                            capture_output=True).stdout.decode())

    def count_of(self, text):
        """The count in a store's text."""
        self.assertRegex(text, r"\A(BootId [0-9a-f-]{36}\r\n)?(WorkCount \d{20}\r\n)?(BootId [0-9a-f-]{36}\r\n)?\Z")
        found = re.search(r"WorkCount (\d{20})", text)
        return int(found.group(1)) if found else 0


if __name__ == "__main__":
    unittest.main()
