"""The mistakes of docs/mistakes.md: each is made here, and the page's words must be what a user then reads."""

import os
import pathlib
import re
import socket
import subprocess
import tempfile
import unittest

from host import BUILD, SOURCE, Host
from wire import Wire, envelope, post

PAGE = SOURCE / "docs/mistakes.md"
FOLDER = SOURCE / "tests/system/mistakes"
MODULES = BUILD / "tests/system/mistakes"
CIMHOST = BUILD / "cimhost/cimhost"
ROW = "TST_Board root/test Boards boards instance method"
QUALIFIERS = ("--namespace", "root/test", "--schema", SOURCE / "schema/base/qualifiers.mof")
SCHEMA = (*QUALIFIERS, "--schema", FOLDER / "Mistakes.mof")


def page():
    """The words of each section: {"mof-include": [line, ...]}."""
    words, name = {}, None
    for line in PAGE.read_text(encoding="utf-8").splitlines():
        if line.startswith("### "):
            name = line[4:].strip()
            words[name] = []
        elif line.startswith("    ") and name:
            words[name].append(line[4:])
    return words


class Scene:
    """A folder for the files of one mistake, and what is done with them."""

    def __init__(self, mistake):
        self.mistake = mistake
        self._folder = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self._folder.name)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._folder.cleanup()

    def file(self, name, text):
        path = self.folder / name
        path.write_text(text)
        return path

    def run(self, *words):
        """All that cimhost prints."""
        result = subprocess.run([str(word) for word in (CIMHOST, *words)], text=True, timeout=100,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                                env={**os.environ, "MISTAKE": self.mistake})
        return self.plain(result.stdout)

    def plain(self, text):
        """Without what differs from run to run."""
        text = text.replace(f"{self.folder}/", "").replace(str(MODULES), "build")
        return re.sub(r"^\S+Z (\[\d+ \w+\] )?", "", text, flags=re.MULTILINE)

    def mof(self, text):
        return self.run("check", *SCHEMA, "--schema", self.file("boards.mof", text))

    def registration(self, text, *words):
        return self.run("check", *SCHEMA, "--registration", self.file("boards.registration", text),
                        *words)

    def module(self, text=ROW):
        return self.registration(text, "--provider-dir", MODULES)

    def ask(self):
        return self.registration(ROW, "--provider-dir", MODULES, "--ask")

    def serve(self, *words, options=(), namespace="root/test"):
        """What a client is answered, and the server's log."""
        os.environ["MISTAKE"] = self.mistake
        try:
            with Host(arguments=(*SCHEMA, "--registration",
                                 self.file("boards.registration", ROW), "--provider-dir", MODULES),
                      manner="standard") as host:
                answer = host.ask(*words, options=options, namespace=namespace).text
                log = host.log()
        finally:
            del os.environ["MISTAKE"]
        return self.plain(answer + log)

    def http(self, request, schema=QUALIFIERS):
        with Host(arguments=schema, manner="standard") as host, Wire(host.port) as wire:
            wire.send(request)
            wire.end()
            return wire.read_all().decode()

    def call_with(self, argument):
        """The reply to a method call, an element a line: wbemcli sends no argument that it does not know."""
        call = envelope(
            '<SIMPLEREQ><METHODCALL NAME="Press"><LOCALINSTANCEPATH><LOCALNAMESPACEPATH>'
            '<NAMESPACE NAME="root"/><NAMESPACE NAME="test"/></LOCALNAMESPACEPATH>'
            '<INSTANCENAME CLASSNAME="TST_Board"><KEYBINDING NAME="Name"><KEYVALUE>one</KEYVALUE>'
            f'</KEYBINDING></INSTANCENAME></LOCALINSTANCEPATH><PARAMVALUE NAME="{argument}">'
            '<VALUE>1</VALUE></PARAMVALUE></METHODCALL></SIMPLEREQ>')
        reply = self.http(post(call, "Connection: close", operation="Press",
                               target='root/test:TST_Board.Name="one"'), SCHEMA)
        return reply.replace("><", ">\n<")

    def taken_port(self):
        with socket.create_server(("127.0.0.1", 0)) as taken:
            port = taken.getsockname()[1]
            text = self.run("serve", "--port", port, "--max-seconds", "5", *SCHEMA)
        return text.replace(str(port), "5988")

    def strangers_key(self):
        for name in ("cert", "key"):
            subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                            "ec_paramgen_curve:prime256v1", "-nodes", "-subj", "/CN=localhost",
                            "-keyout", self.folder / f"{name}.key", "-out", self.folder / f"{name}.pem"],
                           check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return self.run("serve", "--port", "0", "--max-seconds", "5", *SCHEMA, "--tls-cert",
                        self.folder / "cert.pem", "--tls-key", self.folder / "key.key")


BOARD = ':TST_Board.Name="one"'

MISTAKES = {
    # MOF.
    "mof-file-missing": lambda scene: scene.run("check", *QUALIFIERS, "--schema",
                                                scene.folder / "bords.mof"),
    "mof-include-missing": lambda scene: scene.mof('#pragma include ("bords.mof")\n'),
    "mof-semicolon-missing": lambda scene: scene.mof("class TST_Disk {\n   uint32 Size\n};\n"),
    "mof-type-unknown": lambda scene: scene.mof("class TST_Disk {\n   uint23 Size;\n};\n"),
    "mof-superclass-unknown": lambda scene: scene.mof("class TST_Disk : TST_Bord { };\n"),
    "mof-class-twice": lambda scene: scene.mof("class TST_Board { };\n"),
    "mof-qualifier-unknown": lambda scene: scene.mof("class TST_Disk {\n   [Kye] string Name;\n};\n"),
    "mof-value-out-of-range": lambda scene: scene.mof(
        'instance of TST_Board {\n   Name = "a";\n   Slots = 65536;\n};\n'),
    "mof-value-of-other-type": lambda scene: scene.mof(
        'instance of TST_Board {\n   Name = "a";\n   Slots = "four";\n};\n'),
    "mof-property-unknown": lambda scene: scene.mof(
        'instance of TST_Board {\n   Name = "a";\n   Slotz = 4;\n};\n'),
    "mof-key-without-value": lambda scene: scene.mof("instance of TST_Board {\n   Slots = 4;\n};\n"),
    "mof-instance-twice": lambda scene: scene.mof('instance of TST_Board { Name = "a"; };\n' * 2),
    "mof-class-of-instance-unknown": lambda scene: scene.mof("instance of TST_Bord { };\n"),
    # Registrations.
    "registration-class-unknown": lambda scene: scene.registration(
        "TST_Bord root/test Boards boards instance\n"),
    "registration-namespace-unknown": lambda scene: scene.registration(
        "TST_Board root/tset Boards boards instance\n"),
    "registration-type-unknown": lambda scene: scene.registration(
        "TST_Board root/test Boards boards instanse\n"),
    "registration-field-missing": lambda scene: scene.registration("TST_Board root/test Boards\n"),
    "registration-served-twice": lambda scene: scene.registration(
        "TST_Board root/test Boards boards instance\nTST_Board root/test Disks disks instance\n"),
    "registration-association-as-instance": lambda scene: scene.registration(
        "TST_Holds root/test Boards boards instance\n"),
    "registration-instance-as-association": lambda scene: scene.registration(
        "TST_Board root/test Boards boards association\n"),
    "registration-indication-as-instance": lambda scene: scene.registration(
        "TST_Alert root/test Boards boards instance\n"),
    "registration-abstract-class": lambda scene: scene.registration(
        "TST_Unit root/test Boards boards instance\n"),
    "registration-class-without-key": lambda scene: scene.registration(
        "TST_Keyless root/test Boards boards instance\n"),
    # Modules.
    "module-missing": lambda scene: scene.module("TST_Board root/test Boards bords instance\n"),
    "module-symbol-undefined": lambda scene: scene.module(
        "TST_Board root/test Undefined undefined instance\n"),
    "module-entry-point-missing": lambda scene: scene.module(
        "TST_Board root/test Bords boards instance\n"),
    "module-kind-not-offered": lambda scene: scene.module(
        "TST_Alert root/test Boards boards indication\n"),
    "module-crash": lambda scene: scene.module(),
    "constructor-throws": lambda scene: scene.module(),
    "broker-forgotten": lambda scene: scene.serve("ein", ":TST_Board"),
    # Answers of providers.
    "key-misnamed": lambda scene: scene.serve("ein", ":TST_Board"),
    "property-unknown": lambda scene: scene.serve("ei", ":TST_Board"),
    "property-type-wrong": lambda scene: scene.serve("ei", ":TST_Board"),
    "path-class-misspelt": lambda scene: scene.serve("ein", ":TST_Board"),
    "class-name-misspelt": lambda scene: scene.ask(),
    "path-namespace-wrong": lambda scene: scene.ask(),
    "host-forgotten": lambda scene: scene.serve("gi", BOARD),
    "operation-throws": lambda scene: scene.serve("gi", BOARD),
    "argument-misspelt-by-provider": lambda scene: scene.serve("cm", BOARD, "Press.Force=1"),
    "output-misspelt": lambda scene: scene.serve("cm", BOARD, "Press.Force=1"),
    # Clients.
    "argument-misspelt": lambda scene: scene.call_with("Forse"),
    "method-misspelt": lambda scene: scene.serve("cm", BOARD, "Pres.Force=1"),
    "class-misspelt": lambda scene: scene.serve("ein", ":TST_Bord"),
    "namespace-misspelt": lambda scene: scene.serve("ein", ":TST_Board", namespace="root/tets"),
    "browser": lambda scene: scene.http(
        b"GET /cimom HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n"),
    "headers-missing": lambda scene: scene.http(
        b"POST /cimom HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\nContent-Length: 6\r\n\r\n<CIM/>"),
    # Command lines.
    "command-misspelt": lambda scene: scene.run("srve"),
    "option-misspelt": lambda scene: scene.run("serve", "--provider-dri", "build"),
    "schema-forgotten": lambda scene: scene.run("serve", "--registration", scene.file("boards.registration", ROW)),
    "port-in-use": lambda scene: scene.taken_port(),
    "key-of-another-certificate": lambda scene: scene.strangers_key(),
}


class Mistakes(unittest.TestCase):
    maxDiff = None

    def test_each_is_told_in_the_words_of_the_page(self):
        words = page()
        for mistake, make in MISTAKES.items():
            with self.subTest(mistake), Scene(mistake) as scene:
                said = make(scene).splitlines()
                for line in words.get(mistake, []):
                    self.assertIn(line, said)

    def test_the_page_has_each_with_its_words_and_no_other(self):
        words = page()
        self.assertEqual(sorted(MISTAKES), sorted(words))
        self.assertEqual([], [name for name, lines in words.items() if not lines])

    def test_check_tells_all_of_a_run_and_a_machine_the_same(self):
        with Scene("none") as scene:
            mof = scene.file("broken.mof", "class TST_Disk {\n   uint32 Size\n};\nclass TST_Fan : Nobody { };\n")
            rows = scene.file("rows", "TST_Bord root/test Boards boards instance\nTST_Disk root/test D\n")
            options = (*SCHEMA, "--schema", mof, "--registration", rows)
            said = scene.run("check", *options)
            self.assertEqual(4, len(said.splitlines()), said)
            for place in ("broken.mof:3:1: ", "broken.mof:4:17: ", "rows:1: ", "rows:2: "):
                self.assertIn(f"cimhost: {place}", said)
            self.assertIn('{"file": "rows", "line": 2, "text": "the module is missing',
                          scene.run("check", "--json", *options))

    def test_serve_warns_of_the_same_at_its_start_unless_told_not_to(self):
        with Scene("none") as scene:
            rows = scene.file("rows", "TST_Bord root/test Boards bords instance\n")
            options = ("--port", "0", "--max-seconds", "0", *SCHEMA, "--registration", rows,
                       "--provider-dir", MODULES)
            said = scene.run("serve", *options)
            self.assertIn("warning cimhost: rows:1: provider Boards is registered for root/test:TST_Bord, "
                          "which does not exist; did you mean 'TST_Board'?\n", said)
            self.assertIn("warning cimhost: rows:1: module bords: libbords.so was not found in ", said)
            self.assertNotIn("warning", scene.run("serve", "--no-check", *options))


def generate():
    """Prints what each mistake says now: for the page's author."""
    for mistake, make in MISTAKES.items():
        with Scene(mistake) as scene:
            print(f"### {mistake}\n{make(scene)}\n")


if __name__ == "__main__":
    generate()
