"""The page that a browser gets, as bytes."""

import gzip
import hashlib
import http.client
import re
import unittest

from host import BUILD, Host

BUILT = (BUILD / "console/BuiltConsole.cpp").exists()
FILES = {"/": "index.html", "/console.js": "console.js", "/console.css": "console.css"}


def built(path):
    return (BUILD / "console/page" / FILES[path]).read_bytes()


class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.host = Host()

    @classmethod
    def tearDownClass(cls):
        cls.host.stop()

    def ask(self, path, method="GET", body=None, **headers):
        """The reply with its body, as http.client has it."""
        connection = http.client.HTTPConnection("127.0.0.1", self.host.port, timeout=60)
        self.addCleanup(connection.close)
        connection.putrequest(method, path, skip_accept_encoding=True)
        for name, value in headers.items():
            connection.putheader(name.replace("_", "-"), value)
        connection.endheaders(body)
        reply = connection.getresponse()
        return reply, reply.read()

    def test_its_address_is_printed_behind_that_of_the_server(self):
        self.assertEqual(f"http://127.0.0.1:{self.host.port}/", self.host.console)

    @unittest.skipUnless(BUILT, "built without the page")
    def test_each_of_its_files_is_served_whole_packed_or_not(self):
        for path in FILES:
            with self.subTest(path):
                reply, plain = self.ask(path)
                self.assertEqual((200, None), (reply.status, reply.getheader("Content-Encoding")))
                self.assertEqual(built(path), plain)
                reply, packed = self.ask(path, Accept_Encoding="br, gzip")
                self.assertEqual("gzip", reply.getheader("Content-Encoding"))
                self.assertEqual(built(path), gzip.decompress(packed))
                self.assertIn(hashlib.sha256(packed).hexdigest(), reply.getheader("ETag"))
                self.assertIn("charset=utf-8", reply.getheader("Content-Type"))

    @unittest.skipUnless(BUILT, "built without the page")
    def test_nothing_is_sent_that_the_browser_has(self):
        for path in FILES:
            tag = self.ask(path)[0].getheader("ETag")
            reply, body = self.ask(path, If_None_Match=f'"other", {tag}')
            self.assertEqual((304, b"", None), (reply.status, body, reply.getheader("Content-Length")))

    @unittest.skipUnless(BUILT, "built without the page")
    def test_it_holds_to_its_own_policy(self):
        """No script and no style within the page, and nothing from elsewhere."""
        reply, page = self.ask("/")
        policy = reply.getheader("Content-Security-Policy")
        self.assertNotIn("unsafe", policy)
        self.assertIn("frame-ancestors 'none'", policy)
        self.assertEqual([], re.findall(rb"<style|<script(?![^>]*\bsrc=)|\bstyle=|\bon\w+=|javascript:", page))
        for url in re.findall(rb'(?:src|href)="([^"]*)"', page):
            self.assertRegex(url, rb"^(console\.(js|css)|data:.*)$")

    def test_head_has_the_head_of_get(self):
        for path in (*FILES, "/nothing"):
            (whole, _), (part, body) = self.ask(path), self.ask(path, "HEAD")
            self.assertEqual(b"", body)
            without_date = [[header for header in reply.getheaders() if header[0] != "Date"] for reply in (whole, part)]
            self.assertEqual(whole.status, part.status)
            self.assertEqual(*without_date)

    def test_other_paths_methods_and_bodies_are_refused_in_words(self):
        reply, body = self.ask("/cimom")
        self.assertEqual(404, reply.status)
        self.assertIn(b"The console is at /", body)
        reply, _ = self.ask("/", "PUT")
        self.assertEqual((405, "GET, HEAD, POST"), (reply.status, reply.getheader("Allow")))
        self.assertEqual(400, self.ask("/", body=b"x", Content_Length="1")[0].status)

    def test_there_is_none_where_none_is_wanted(self):
        with Host("--no-console") as host:
            self.assertIsNone(host.console)
            connection = http.client.HTTPConnection("127.0.0.1", host.port, timeout=60)
            for path in (*FILES, "/events"):
                connection.request("GET", path)
                reply = connection.getresponse()
                self.assertIn(b"by POST", reply.read())
                self.assertEqual((405, "POST"), (reply.status, reply.getheader("Allow")))
            connection.close()


if __name__ == "__main__":
    unittest.main()
