"""webarchive list: the table and the JSON."""

import hashlib
import json

import samples
from program import ProgramTestCase
from webarchive import dump, html_archive, malformed


class ListTests(ProgramTestCase):
    def json(self, archive):
        return json.loads(self.run_program("list", "--json", self.file(archive)).text)

    def test_json_has_everything(self):
        found = self.json(samples.with_frames())
        self.assertEqual(found[0], {
            "index": 0, "frame": "", "kind": "main", "type": "text/html", "size": 11, "encoding": "UTF-8",
            "sha256": hashlib.sha256(b"<p>Page</p>").hexdigest(), "address": "http://site.example/", "frameName": None})
        self.assertEqual([(line["index"], line["frame"], line["kind"], line["address"]) for line in found], [
            (0, "", "main", "http://site.example/"),
            (1, "", "sub", "http://site.example/a.css"),
            (2, "", "sub", "data:text/css,p%7B%7D"),
            (3, "", "sub", "http://site.example/a%20b.png"),
            (4, "1", "main", "http://site.example/first.html"),
            (5, "1", "sub", "http://site.example/a.css"),
            (6, "1.1", "main", None),
            (7, "2", "main", "http://site.example/second.html")])
        self.assertEqual([line["frameName"] for line in found], [None] * 4 + ["named", None, "inner", None])
        self.assertEqual((found[3]["size"], found[3]["encoding"], found[3]["sha256"]),
                         (8, None, hashlib.sha256(b"\x89PNG\r\n\x00\xff").hexdigest()))

    def test_the_table_has_a_line_for_each(self):
        text = self.run_program("list", self.file(samples.with_frames())).text
        sha = hashlib.sha256(b"<p>First</p>").hexdigest()[:12]
        lines = text.splitlines()
        self.assertEqual(len(lines), 9)
        self.assertEqual(lines[0].split(), ["INDEX", "FRAME", "KIND", "TYPE", "SIZE", "ENCODING", "SHA-256", "ADDRESS"])
        self.assertEqual(lines[5].split(), ["4", "1", "named", "main", "text/html", "12", "UTF-8", sha,
                                            "http://site.example/first.html"])
        self.assertEqual({line.index(word) for line, word in zip(lines[1:], ["main", *["sub"] * 3, "main", "sub"])},
                         {lines[0].index("KIND")})

    def test_xml_archives_are_listed_alike(self):
        archive = samples.with_frames()
        binary = self.run_program("list", self.file(archive)).text
        self.assertEqual(self.run_program("list", self.file(archive, xml=True)).text, binary)

    def test_duplicates_are_all_there(self):
        self.assertEqual([line["address"] for line in self.json(samples.with_duplicates())][1:],
                         ["http://site.example/twice"] * 2)

    def test_nothing_reaches_the_terminal_but_text(self):
        for options in ((), ("--json",)):
            text = self.run_program("list", *options, self.file(samples.hostile_texts())).text
            self.assertRegex(text, "^[^\x00-\x09\x0b-\x1f\x7f-\x9f\u202a-\u202e\u2066-\u2069]+$")
        found = self.json(samples.hostile_texts())
        self.assertEqual((len(found), found[0]["type"]), (2, f"text/html{samples.ESCAPES}"))

    def test_lines_of_the_table_stay_short(self):
        lines = self.run_program("list", self.file(samples.hostile_texts())).text.splitlines()
        self.assertEqual(len(lines), 3)
        self.assertLess(max(map(len, lines)), 400)

    def test_as_many_resources_as_an_archive_may_have(self):
        self.assertEqual(len(self.json(samples.many_resources(250_000))), 250_001)

    def test_nested_frames(self):
        self.assertEqual(self.json(samples.nested(60))[-1]["frame"], ".".join(["1"] * 60))

    def test_files_that_are_no_archive_are_refused(self):
        for name, data in malformed().items():
            with self.subTest(name):
                self.assert_fails("is no web archive", "list", self.file(data))
        self.assert_fails("no such file", "list", "missing")
        self.assert_fails("couldn", "list", self.folder)

    def test_shared_bytes_are_hashed_once(self):
        """1,000 times 20 MB would take minutes."""
        page = html_archive("x")
        shared = {"WebResourceData": bytes(20_000_000), "WebResourceMIMEType": "a/b"}
        root = {**page.plist(), "WebSubresources": [{**shared, "WebResourceURL": f"http://h/{i}"} for i in range(1000)]}
        run = self.run_program("list", "--json", self.file(dump(root)), timeout=30)
        self.assertEqual(len(json.loads(run.text)), 1001)
