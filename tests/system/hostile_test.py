"""Requests that no client of good will sends, against the program itself."""

import os
import select
import socket
import struct
import time
import unittest

from host import Host
from wire import Wire, call, envelope, head, post

MEBIBYTE = 1 << 20
ROUNDS = 10


def rss(process):
    """Bytes of memory that the process has."""
    with open(f"/proc/{process.pid}/statm", encoding="ascii") as statm:
        return int(statm.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")


def keeps_freed_memory(process):
    """True under a sanitizer, which holds on to freed memory on purpose."""
    with open(f"/proc/{process.pid}/maps", encoding="ascii", errors="replace") as maps:
        return "san.so" in maps.read()


def descriptors(process):
    return len(os.listdir(f"/proc/{process.pid}/fd"))


def await_equal(expected, measure):
    """What was measured in the end: as expected, or after a minute of waiting for it."""
    end = time.monotonic() + 60
    while (found := measure()) != expected and time.monotonic() < end:
        time.sleep(0.02)
    return found


def nested(depth):
    step = "<INSTANCENAME CLASSNAME='a'><KEYBINDING NAME='b'><VALUE.REFERENCE>"
    return envelope("<SIMPLEREQ><IMETHODCALL NAME='x'>" + step * depth)


def chunks(*lines):
    return head("Transfer-Encoding: chunked") + b"\r\n" + b"".join(lines)


def attributes(count):
    return "<CIM " + " ".join(f"a{number}='1'" for number in range(count)) + "/>"


LENGTH = "Content-Length: {}".format
SYNTAX, CONTENT = "request-not-well-formed", "request-not-valid"

# What is sent; its status; the CIMError header or the CIM status that the reply must hold.
HOSTILE = {
    # HTTP
    "half a request line": (b"POST /ci", 400, ""),
    "half a head": (head(), 400, ""),
    "half a body": (head(LENGTH(100)) + b"\r\nhalf", 400, ""),
    "half a chunk": (chunks(b"64\r\nhalf"), 400, ""),
    "a line of 9 KB": (head("N: " + "a" * 9000) + b"\r\n", 431, ""),
    "a head of 72 KB": (head(*["N: " + "a" * 8000] * 9) + b"\r\n", 431, ""),
    "a hundred fields more": (head(*["N: v"] * 100) + b"\r\n", 431, ""),
    "a target of 9 KB": (b"POST /" + b"a" * 9000 + b" HTTP/1.1\r\n\r\n", 414, ""),
    "a negative length": (head(LENGTH(-1)) + b"\r\n", 400, ""),
    "a length beyond 64 bits": (head(LENGTH(1 << 65)) + b"\r\n", 400, ""),
    "a length of 1 TB": (head(LENGTH(1 << 40)) + b"\r\n", 413, ""),
    "two lengths": (head(LENGTH(1), LENGTH(2)) + b"\r\nab", 400, ""),
    "a length beside chunks": (head(LENGTH(3), "Transfer-Encoding: chunked") + b"\r\n0\r\n\r\n",
                               400, ""),
    "no length": (head() + b"\r\n", 411, ""),
    "a chunk of 2^64 bytes": (chunks(b"FFFFFFFFFFFFFFFF\r\n"), 413, ""),
    "a negative chunk": (chunks(b"-1\r\na\r\n"), 400, ""),
    "folded lines": (head("N: v", " folded") + b"\r\n", 400, ""),
    "a bare line feed": (b"POST / HTTP/1.1\nHost: a\n\n", 400, ""),
    "a NUL in the head": (head("N: \0") + b"\r\n", 400, ""),
    "every byte": (bytes(range(256)), 400, ""),
    "a TLS greeting": (b"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03" + bytes(500), 400, ""),
    "the start of HTTP/2": (b"PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", 505, ""),
    "no host": (b"POST / HTTP/1.1\r\nContent-Length: 0\r\n\r\n", 400, ""),
    "another method": (b"TRACE / HTTP/1.1\r\nHost: localhost\r\n\r\n", 405, ""),
    "another expectation": (head(LENGTH(1), "Expect: 200-ok") + b"\r\n", 417, ""),
    # What CIM operations over HTTP ask for
    "no CIM headers": (b"POST / HTTP/1.1\r\nHost: localhost\r\nContent-Length: 0\r\n\r\n", 400, ""),
    "another method in the header": (post(call(), operation="GetClass"), 400, "header-mismatch"),
    "another namespace in the header": (post(call(), target="root%2Fx"), 400, "header-mismatch"),
    "another media type": (post(call(), "Content-Type: text/html"), 415, ""),
    "another character set": (post(call(), "Content-Type: text/xml; charset=utf-16"), 415, ""),
    # XML
    "no XML": (post("hello"), 400, SYNTAX),
    "nothing": (post(""), 400, SYNTAX),
    "binary": (post(bytes(range(256)) * 16), 400, SYNTAX),
    "half the XML": (post(call()[:-20]), 400, SYNTAX),
    "UTF-16": (post(call().encode("utf-16")), 400, SYNTAX),
    "ISO 8859-1": (post(call(namespace="root/ktq").replace("ktq", "\xe9").encode("latin-1")),
                   400, SYNTAX),
    "a key that is not escaped": (post(call("<IPARAMVALUE NAME='a&b'/>")), 400, SYNTAX),
    "a DTD": (post("<!DOCTYPE CIM SYSTEM '/etc/passwd'><CIM/>"), 400, CONTENT),
    "an entity bomb": (post("<!DOCTYPE a [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;&a;&a;'>]><a>&b;</a>"),
                       400, CONTENT),
    "elements 3000 deep": (post(nested(1000)), 400, CONTENT),
    "100 000 attributes": (post(attributes(100000)), 400, CONTENT),
    "a million elements": (post("<CIM>" + "<a/>" * 1000000 + "</CIM>"), 400, CONTENT),
    "a name of 1 MB": (post("<" + "C" * MEBIBYTE + "/>"), 400, CONTENT),
    # CIM
    "no element of ours": (post("<html/>"), 400, CONTENT),
    "another CIM version": (post(call().replace('CIMVERSION="2.0"', 'CIMVERSION="3.0"')), 501,
                            "unsupported-cim-version"),
    "several calls": (post(envelope("<MULTIREQ></MULTIREQ>")), 501, "multiple-requests-unsupported"),
    "an unknown operation": (post(call(operation="Explode"), operation="Explode"), 200, 'CODE="7"'),
    "an unknown namespace": (post(call(namespace="no"), target="no"), 200, 'CODE="3"'),
    "an unknown parameter": (post(call("<IPARAMVALUE NAME='Fuse'/>")), 200, 'CODE="4"'),
    "a parameter of another kind": (
        post(call("<IPARAMVALUE NAME='ClassName'><VALUE>A</VALUE></IPARAMVALUE>")), 200, 'CODE="4"'),
}


class Hostile(unittest.TestCase):
    def test_each_request_is_answered_and_the_next_client_is_served(self):
        with Host() as host:
            open_before = descriptors(host.process)
            self._ask_all(host)
            memory_before = rss(host.process)
            for _ in range(ROUNDS):
                self._ask_all(host)
            if not keeps_freed_memory(host.process):
                self.assertLessEqual(rss(host.process), memory_before + 16 * MEBIBYTE)
            self.assertEqual(open_before,
                             await_equal(open_before, lambda: descriptors(host.process)))

    def _ask_all(self, host):
        for name, (data, status, word) in HOSTILE.items():
            with self.subTest(name), Wire(host.port) as wire:
                found, reply_head, body = wire.exchange(data)
                self.assertEqual(status, found, reply_head)
                self.assertIn(word, body.decode() if status == 200 else reply_head)
                self.assertEqual("CIMError" in reply_head, status != 200 and bool(word))
            with Wire(host.port) as wire:
                self.assertEqual(200, wire.exchange(post(call()))[0], f"after {name}")

    def test_clients_that_vanish_at_any_place_leave_nothing_behind(self):
        whole = post(call())
        abort = struct.pack("ii", 1, 0)  # closing sends a reset
        with Host() as host:
            before = descriptors(host.process)
            for length in range(0, len(whole) + 1, 7):
                with Wire(host.port) as wire:
                    wire.send(whole[:length])
                    wire.socket.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, abort)
            with Wire(host.port) as wire:
                self.assertEqual(200, wire.exchange(whole)[0])
            self.assertEqual(before, await_equal(before, lambda: descriptors(host.process)))


def field_of(size):
    return "N: " + "a" * (size - 3)


def head_of(size):
    """A request of ours whose head has so many bytes."""
    fields = [field_of(8000)] * 8
    rest = size - len(post(call(), *fields)) + len(call()) - 2
    return post(call(), *fields, field_of(rest))


def fields_of(count):
    given = post(call()).count(b"\r\n") - 2
    return post(call(), *["N: v"] * (count - given))


def target_of(size):
    line = b"POST /" + b"a" * (size - len("POST / HTTP/1.1")) + b" HTTP/1.1"
    return post(call()).replace(b"POST /cimom HTTP/1.1", line)


def body_of(size):
    """Blanks between elements mean nothing."""
    return post(call().replace("</CIM>", " " * (size - len(call())) + "</CIM>"))


def depth_of(depth):
    """Four elements and a parameter hold three more for each step, and a path with one or two."""
    inner = {256: "<KEYVALUE>c</KEYVALUE>",
             257: "<KEYBINDING NAME='b'><KEYVALUE>c</KEYVALUE></KEYBINDING>"}[depth]
    begin, end = "<INSTANCENAME CLASSNAME='a'>", "</INSTANCENAME>"
    step, back = "<KEYBINDING NAME='b'><VALUE.REFERENCE>", "</VALUE.REFERENCE></KEYBINDING>"
    path = (begin + step) * 83 + begin + inner + end + (back + end) * 83
    return post(call(f"<IPARAMVALUE NAME='X'>{path}</IPARAMVALUE>"))


def elements_of(count):
    nulls = "<VALUE.NULL/>" * (count - 9)
    return post(call(f"<IPARAMVALUE NAME='X'><VALUE.ARRAY>{nulls}</VALUE.ARRAY></IPARAMVALUE>"))


def attributes_of(count):
    more = " ".join(f"a{number}='1'" for number in range(count - 1))
    return post(call(f"<IPARAMVALUE NAME='X' {more}/>"))


def name_of(size):
    return post(call(f"<IPARAMVALUE NAME='X' {'a' * size}='1'/>"))


class Limits(unittest.TestCase):
    """What stands at a limit is answered, what is one beyond it is refused."""

    LIMITS = ((field_of, 8 * 1024, 431), (head_of, 64 * 1024, 431), (fields_of, 100, 431),
              (target_of, 8 * 1024, 414), (body_of, 10 * MEBIBYTE, 413), (depth_of, 256, 400),
              (elements_of, 1 << 18, 400), (attributes_of, 64, 400), (name_of, 1024, 400))

    def test_each_is_exact(self):
        with Host() as host:
            for make, limit, status in self.LIMITS:
                for size, expected in ((limit, 200), (limit + 1, status)):
                    made = make(size)
                    data = made if isinstance(made, bytes) else post(call(), made)
                    with self.subTest(make.__name__, size=size), Wire(host.port) as wire:
                        self.assertEqual(expected, wire.exchange(data)[0])


class SlowClients(unittest.TestCase):
    """256 clients that send a byte now and then and never come to an end."""

    COUNT = 256

    def test_all_are_answered_408_at_their_deadline_and_others_are_served_meanwhile(self):
        with Host("--request-time", "2", "--max-connections", "300") as host:
            before = descriptors(host.process)
            slow = self._begin(host)
            held = lambda: descriptors(host.process) - before
            self.assertEqual(self.COUNT, await_equal(self.COUNT, held), "all are held at once")
            replies, others = self._trickle(host, slow)
            self.assertEqual({b" 408 "}, {reply[8:13] for reply in replies})
            self.assertEqual({200}, others)
            self.assertEqual(0, await_equal(0, held))

    def test_more_of_them_than_connections_do_not_lock_others_out(self):
        with Host("--request-time", "2", "--max-connections", "16") as host:
            before = descriptors(host.process)
            replies, others = self._trickle(host, self._begin(host))
            # Some make room, some find none, and some are not even told.
            self.assertLessEqual({reply[8:13] for reply in replies}, {b" 408 ", b" 503 ", b""})
            self.assertIn(200, others)
            self.assertLessEqual(others, {200, 503, None})
            self.assertEqual(before, await_equal(before, lambda: descriptors(host.process)))

    def _begin(self, host):
        slow = [Wire(host.port) for _ in range(self.COUNT)]
        for wire in slow:
            wire.send(b"P")
        return slow

    def _trickle(self, host, slow):
        """Sends a byte on each connection until the server has had enough of all of them, and asks
        something in between: what the slow ones were told, and the statuses that others got."""
        replies, others = [], set()
        while slow:
            with Wire(host.port) as other:
                others.add(other.exchange(post(call()))[0])
            told, _, _ = select.select([wire.socket for wire in slow], [], [], 0.05)
            for wire in [wire for wire in slow if wire.socket in told]:
                replies.append(wire.read_all())
                wire.socket.close()
                slow.remove(wire)
            for wire in slow:
                wire.send(b"x")
        return replies, others


if __name__ == "__main__":
    unittest.main()
