"""The same archive makes the same file, wherever and whenever it is converted."""

import hashlib
import os
import pathlib
import re
import unittest

from pages import document, page, three_levels_of_frames, with_images
from tool import ToolTestCase
from webarchive import html_archive

EPOCH = "1709210096"
DATE = b"(D:20240229123456Z)"
TABLE = document("""<h1>Table</h1><table><thead><tr><th id=a>One<th id=b>Two</thead>
    <tbody><tr><td headers=a>x<td headers=b>y<tr><th scope=row>r<td headers="a b">z</table>
    <p><a href="#a">here</a> <a href="http://other.example/">there</a>""")
# Dates, whose length differs with their form, and what is made of the contents, which holds them.
VARYING = re.compile(r"/(CreationDate|ModDate) *\([^)]*\)|/ID *\[ *<[0-9a-f]*> *<[0-9a-f]*> *\]")


class SameBytesTests(ToolTestCase):
    ARCHIVES = {"table": html_archive(TABLE), "frames": three_levels_of_frames(), "pictures": with_images(),
                "plain": page("<p>Text</p>")}

    def for_each(self, check):
        for name, archive in self.ARCHIVES.items():
            for mode in ("screen", "print"):
                with self.subTest(name, mode=mode):
                    check(archive, mode)

    def bytes_of(self, archive, mode, **options):
        return pathlib.Path(self.convert(archive, mode=mode, **options).output).read_bytes()

    def uncompressed(self, archive, mode):
        return self.convert(archive, mode=mode).pdf.uncompressed()

    def with_epoch(self, value=EPOCH, **more):
        return self.environment(SOURCE_DATE_EPOCH=value, **more)

    def test_with_a_date_of_its_own(self):
        self.for_each(self.assert_same_elsewhere)

    def assert_same_elsewhere(self, archive, mode):
        (self.folder / "out").chmod(0o1777)
        hashes = set()
        for number, more in enumerate(({}, {"TZ": "Asia/Kolkata", "USER": "other"}, {"LANG": "C", "HOME": "/"})):
            folder = self.folder / f"{mode} {number} elsewhere"
            folder.mkdir(exist_ok=True)
            folder.chmod(0o1777)
            data = self.bytes_of(archive, mode, name=f"{number}.pdf", uid=f"record-{number}",
                                 environment=self.with_epoch(TMPDIR=folder, **more),
                                 **(self.as_nobody() if number == 1 else {}))
            self.assertEqual(os.listdir(folder), [])
            self.assertIn(DATE, data)
            hashes.add(hashlib.sha256(data).hexdigest())
            (self.folder / "out" / f"{number}.pdf").unlink()
        self.assertEqual(len(hashes), 1)

    def test_without_one_only_dates_and_identifier_differ(self):
        self.for_each(self.assert_same_but_for_what_varies)

    def assert_same_but_for_what_varies(self, archive, mode):
        first, second = (self.uncompressed(archive, mode) for _ in range(2))
        self.assertEqual(len(VARYING.findall(first)), 3)
        self.assertEqual(VARYING.sub("", first), VARYING.sub("", second))

    def test_identifier_is_that_of_the_contents(self):
        first, same, other = (self.identifier(page(f"<p>{text}</p>")) for text in ("a", "a", "b"))
        self.assertEqual(first, same)
        self.assertNotEqual(first, other)

    def identifier(self, archive):
        data = self.bytes_of(archive, "screen", environment=self.with_epoch())
        return re.findall(rb"/ID *\[[^]]*\]", data)[-1]

    def test_table_headers_are_counted_from_one(self):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                names = re.findall(r"/ID \((node\d+)\)", self.uncompressed(self.ARCHIVES["table"], mode))
                self.assertEqual(sorted(names), ["node00000001", "node00000002", "node00000003"])

    def test_a_date_that_is_none(self):
        run = self.convert(page("<p>x</p>"), environment=self.with_epoch("yesterday"))
        self.assertIn("SOURCE_DATE_EPOCH is no number of seconds since 1970 and does not count: yesterday",
                      run.log.notes)
        self.assertNotIn(DATE, pathlib.Path(run.output).read_bytes())


if __name__ == "__main__":
    unittest.main()
