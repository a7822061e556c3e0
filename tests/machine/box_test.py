"""What the box is made of, without a machine."""

import os
import pathlib
import subprocess
import tempfile
import unittest

from box import initramfs, kernel, words
from box.answers import REASONS, Answer, Comparison, Question
from box.server import Server, make_dumps, read_server, server_names
from box.words import BoxError, require
import stand_ins


class Servers(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name) / "mine"
        self.folder.mkdir()

    def read(self, text):
        (self.folder / "server.toml").write_text(text)
        return read_server(str(self.folder))

    def refuses(self, words, text):
        with self.assertRaisesRegex(BoxError, words):
            self.read(text)

    def test_all_that_are_here_can_be_read(self):
        self.assertEqual(["blade", "broken", "foreign", "slblade", "wavej", "wavek"], server_names())
        for name in server_names():
            with self.subTest(name):
                each = read_server(name)
                self.assertIsInstance(each, Server)
                self.assertTrue(each.title and each.notes and each.records)

    def test_tables_are_whole_but_for_the_one_that_lies(self):
        for name in server_names():
            table = read_server(name).table
            self.assertTrue(table.endswith(b"\x7f\x04\x00\x7f\x00\x00"))
            self.assertEqual(name == "broken", self.lies(table), name)

    @staticmethod
    def lies(table):
        while table:
            end = table.find(b"\0\0", table[1])
            if table[1] < 4 or end < 0:
                return True
            table = table[end + 2:]
        return False

    def test_records_are_those_of_the_dumps(self):
        own = self.read('title = "mine"\n[[record]]\nkind = "firmware"\nnewer = 1\n')
        self.assertEqual([make_dumps.firmware(newer=1).encode(0)], own.records)
        self.assertEqual(("mine", "mine"), (own.name, own.host_name))

    def test_changes_name_chip_register_and_value(self):
        for name in server_names():
            each = read_server(name)
            addresses = {chip.address for chip in each.chips}
            for writes in each.changes.values():
                for chip, register, value in writes:
                    self.assertIn(chip, addresses)
                    self.assertTrue(0 <= register <= 255 and 0 <= value <= 255)

    def test_what_is_wrong_is_said_with_its_file(self):
        self.refuses("server.toml: .*nobody knows colour", 'title = "t"\ncolour = 1\nrecord = []\n')
        self.refuses("server.toml: .*no kind of record", 'title = "t"\n[[record]]\nkind = "engine"\n')
        self.refuses("server.toml: .*unexpected keyword", 'title = "t"\n[[record]]\nkind = "bios"\nx = 1\n')
        self.refuses("server.toml: .*is no host name", 'title = "t"\nhost_name = "a b"\nrecord = []\n')
        self.refuses("server.toml: ", "title =")
        with self.assertRaisesRegex(BoxError, "There is no server nosuch. There are: blade, "):
            read_server("nosuch")


class Parts(unittest.TestCase):
    def test_the_archive_has_names_modes_and_contents_in_the_kernels_form(self):
        archive = initramfs.Archive()
        archive.folder("bin")
        archive.file("init", b"hello", 0o755)
        content = archive.end()
        self.assertEqual(b"070701" + b"00000001" + b"000041ED", content[:22])
        self.assertEqual(0, len(content) % 4)
        at = content.index(b"init\0") - 110
        self.assertEqual((b"070701", b"000081ED", b"00000005"),
                         (content[at:at + 6], content[at + 14:at + 22], content[at + 54:at + 62]))
        self.assertIn(b"TRAILER!!!\0", content)

    def test_modules_load_after_what_they_need(self):
        with tempfile.TemporaryDirectory() as folder:
            own = kernel.Kernel("1", pathlib.Path(folder))
            own.modules.mkdir(parents=True)
            (own.modules / "modules.dep").write_text("a/b-c.ko: a/d.ko a/e.ko\na/d.ko: a/e.ko\na/e.ko:\n")
            (own.modules / "modules.builtin").write_text("kernel/f.ko\n")
            self.assertEqual([own.modules / name for name in ("a/e.ko", "a/d.ko", "a/b-c.ko")],
                             own.files_of(["b_c", "f", "d"]))
            with self.assertRaisesRegex(BoxError, "has no module nosuch"):
                own.files_of(["nosuch"])

    def test_a_program_that_is_missing_is_named_with_its_package(self):
        words.PROGRAMS["nosuch-program"] = "nosuch-package"
        self.addCleanup(words.PROGRAMS.pop, "nosuch-program")
        with self.assertRaisesRegex(BoxError, "nosuch-program: not on this host.*apt-get install nosuch-package"):
            require(["nosuch-program"])


class Command(unittest.TestCase):
    def run_box(self, *words, **environment):
        program = pathlib.Path(os.environ["PYL_BUILD_FOLDER"]) / "cimhost/cimhost"
        return subprocess.run([program, "box", *words], capture_output=True, text=True, timeout=60, check=False,
                              env={**os.environ, **environment})

    def test_tells_the_servers_that_there_are(self):
        result = self.run_box("--list")
        self.assertEqual((0, ""), (result.returncode, result.stderr))
        self.assertRegex(result.stdout, "(?m)^blade: a blade in the enclosure")

    def test_says_what_is_missing(self):
        result = self.run_box("--server", "nosuch")
        self.assertEqual(1, result.returncode)
        self.assertRegex(result.stderr, "^cimhost: There is no server nosuch. There are: blade")
        result = self.run_box("--list", PATH="/nosuch")
        self.assertEqual((1, "cimhost: there is no python3: apt-get install python3\n"),
                         (result.returncode, result.stderr))
        result = self.run_box("--port", "many")
        self.assertEqual(2, result.returncode)

    def says(self, reason, *words):
        result = self.run_box("--object-manager", "sfcb", *map(str, words))
        self.assertEqual((1, f"cimhost: {reason}\n"), (result.returncode, result.stderr))

    def test_says_what_is_wrong_with_an_object_manager_before_anything_is_started(self):
        with tempfile.TemporaryDirectory() as folder:
            folder = pathlib.Path(folder)
            self.says(f"There is no {folder}/none.", "--prefix", folder / "none")
            self.says(f"{folder} has no sfcb: sfcbd, sfcbstage, sfcbunstage, sfcbrepos not in its bin or sbin.",
                      "--prefix", folder)
            prefix = stand_ins.install("sfcb", folder / "sfcb")
            self.says("There is no /nosuch.", "--prefix", prefix, "--cim-schema", "/nosuch")
            (prefix / "var/lib/sfcb").rename(prefix / "state")
            self.says(f"{prefix}/var/lib/sfcb, its data, is not there; --state says where it is.", "--prefix", prefix)
            (prefix / "etc/sfcb/sfcb.cfg").unlink()
            self.says(f"{prefix}/etc/sfcb/sfcb.cfg, its configuration, is not there; --prefix says where it is.",
                      "--prefix", prefix, "--state", prefix / "state")
            self.make_server_without_its_library(prefix / "sbin/sfcbd")
            self.says(f"{prefix}/sbin/sfcbd misses libraries: libgone.so. Install what it needs on this host, whose "
                      "files the guest sees.", "--prefix", prefix)

    @staticmethod
    def make_server_without_its_library(server):
        server.unlink()
        for command in ("cc -shared -x c /dev/null -o libgone.so",
                        f"echo 'int main(void) {{ return 0; }}' | cc -x c - -Wl,--no-as-needed -L. -lgone -o {server}",
                        "rm libgone.so"):
            subprocess.run(command, shell=True, check=True, cwd=server.parent)

    def test_an_object_manager_is_compared_with_what_is_installed(self):
        result = self.run_box("--object-manager", "sfcb", "--project", "mine.toml")
        self.assertEqual(2, result.returncode)
        self.assertEqual(2, self.run_box("--object-manager", "other").returncode)
        self.assertEqual(2, self.run_box("--prefix", "/opt").returncode)


class Answers(unittest.TestCase):
    """What is equal, what differs for a reason, and what differs."""

    FAN = ("root/ktq:PYL_Fan.DeviceID=\"a\",SystemName=\"s\"", "-DeviceID=\"a\"", "-CurrentSpeed=1500")

    def compare(self, kind, ours, theirs, operation="ei"):
        comparison = Comparison(kind, kind)
        comparison.add(Question(operation, "root/ktq", "PYL_Fan"), self.answer(operation, ours),
                       self.answer(operation, theirs))
        return "\n".join(comparison.lines())

    @staticmethod
    def answer(operation, blocks):
        if isinstance(blocks, int):
            return Answer(refusal=f"words {os.urandom(4).hex()}", status=blocks, operation=operation)
        return Answer(tuple(map(tuple, blocks)), operation=operation)

    def expect(self, counts, *words, **options):
        told = self.compare(*words, **options)
        self.assertTrue(told.startswith(f"1 questions: {counts}."), told)
        return told

    def test_equal_answers_are_equal(self):
        self.expect("1 answers equal, 0 different for a reason, 0 different", "sfcb", [self.FAN], [self.FAN])

    def expect_reason(self, reason, *words, **options):
        told = self.expect("0 answers equal, 1 different for a reason, 0 different", *words, **options)
        self.assertEqual([f"    1  {reason}"], told.splitlines()[1:])

    def test_what_an_object_manager_may_do_otherwise_is_told_with_its_reason(self):
        fan, two = self.FAN, ("root/ktq:PYL_Fan.DeviceID=\"b\"",)
        self.expect_reason("Properties without a value are listed.", "sfcb", [fan], [(*fan, "-Caption=")])
        self.expect_reason("Instances, properties and keys come in an order of their own, and one that is found on two "
                           "ways comes once or twice.", "sfcb", [fan, two],
                           [two, ("root/ktq:PYL_Fan.SystemName=\"s\",DeviceID=\"a\"", fan[2], fan[1]), two])
        self.expect_reason("The text of a refusal is each one's own, its status is the same.", "sfcb", 7, 7)
        self.expect_reason("An association operation that a provider does not support is an empty answer.",
                           "openpegasus", 7, [], operation="ain")
        self.expect_reason("Each has a name of its own for the interop namespace.", "openpegasus",
                           [["interop:PYL_A.B=\"c\""]], [["root/PG_InterOp:PYL_A.B=\"c\""]])
        self.expect_reason("Properties have the values that their class declares until a provider sets them.",
                           "openpegasus", [fan], [(*fan, "-EnabledState=5")])
        self.expect_reason("References name the host.", "sfcb", [(*fan, "-A=root/ktqPYL_B.C=\"d\"")],
                           [(*fan, "-A=vm/root/ktqPYL_B.C=\"d\"")])

    def test_the_page_on_machines_has_all_reasons(self):
        page = (stand_ins.TREE / "docs/machines.md").read_text(encoding="utf-8")
        names = {("openpegasus", "sfcb"): "both", ("openpegasus",): "OpenPegasus"}
        self.assertEqual([f"| {each.text} | {names[each.of]} |" for each in REASONS],
                         [line for line in page.splitlines() if line.endswith((" | both |", " | OpenPegasus |"))])

    def test_all_else_is_a_difference_and_is_shown(self):
        fan = self.FAN
        for theirs in ([], [(*fan[:2], "-CurrentSpeed=1")], [fan, ("root/ktq:PYL_Fan.DeviceID=\"b\"",)], 1,
                       [(*fan, "-EnabledState=5")]):
            told = self.expect("0 answers equal, 0 different for a reason, 1 different", "sfcb", [fan], theirs)
            self.assertIn("Different: ei root/ktq:PYL_Fan\n  cimhost: ", told)
            self.assertIn("\n  sfcb: ", told)
        self.expect("0 answers equal, 0 different for a reason, 1 different", "openpegasus", 6, 7)
        self.expect("0 answers equal, 0 different for a reason, 1 different", "openpegasus", 7, [])
        self.expect("0 answers equal, 0 different for a reason, 1 different", "sfcb", 7, [], operation="ain")


if __name__ == "__main__":
    unittest.main()
