"""The file itself: size, pictures, sameness, what is said of it."""

import pathlib
import re
import subprocess
import unittest

from engine import own_pdf
from images import jpeg, png
from pages import SITE, boxes, document, page
from tool import ToolTestCase
from webarchive import Resource, html_archive

MODES = ("screen", "print")


class SizeTests(ToolTestCase):
    PAGES = {
        "few words": document("<h1>Head</h1><p>Some words.</p>"),
        "article": document("".join(f"<h2>Part {number}</h2>" + "<p>Some words of a long text, and more of it.</p>" * 9
                                    for number in range(40))),
        "table": document("<table>" + "".join(f"<tr><td>{number}</td><td>Name</td><td>{number * 7}</td></tr>"
                                              for number in range(200)) + "</table>"),
        "boxes": boxes(700, 1500).main.data.decode(),
        "scripts": document("<p>Žluťoučký 日本語の文章 العربية हिन्दी ไทย 😀</p>" * 20),
        "gradients": document("<div style='height:80px;background:linear-gradient(90deg,red,blue)'></div>" * 20),
    }

    def test_not_larger_than_the_engines_own(self):
        for name, html in self.PAGES.items():
            own = len(own_pdf(html, self.folder))
            for mode in MODES:
                with self.subTest(name, mode=mode):
                    run = self.convert(html_archive(html), mode=mode)
                    self.assertLessEqual(pathlib.Path(run.output).stat().st_size, 1.3 * own)


class PictureTests(ToolTestCase):
    def streams(self, pdf):
        """The pictures of the file: how they are compressed, and their bytes as they are stored."""
        listing = subprocess.run(["pdfimages", "-list", pdf.path], capture_output=True, text=True, check=True).stdout
        rows = [line.split() for line in listing.splitlines()[2:]]
        return [(row[8], subprocess.run(["mutool", "show", "-b", "-e", pdf.path, row[10]], capture_output=True,
                                        check=True).stdout) for row in rows]

    def test_photograph_is_not_compressed_again(self):
        data = jpeg(640, 480, 90)
        for mode in MODES:
            with self.subTest(mode):
                archive = page('<img src="a.jpg" width=200>').add(Resource(SITE + "a.jpg", data, "image/jpeg"))
                self.assertEqual(self.streams(self.convert(archive, mode=mode).pdf), [("jpeg", data)])

    def test_drawing_keeps_every_pixel(self):
        colour = lambda x, y: (x * 37 % 256, y * 53 % 256, (x * y) % 256)
        archive = page('<img src="a.png" width=50>').add(
            Resource(SITE + "a.png", png(90, 70, pixels=colour), "image/png"))
        [(kind, _)] = self.streams(pdf := self.convert(archive).pdf)
        self.assertEqual(kind, "image")
        subprocess.run(["pdfimages", pdf.path, str(self.folder / "out" / "kept")], check=True)
        [kept] = self.folder.glob("out/kept*.ppm")
        data = kept.read_bytes()
        self.assertEqual(data[-90 * 70 * 3:], bytes(part for y in range(70) for x in range(90) for part in colour(x, y)))
        kept.unlink()


class SamenessTests(ToolTestCase):
    def test_same_file_but_for_the_time(self):
        body = "<h1>Head</h1><p>Text <a href='a.html'>link</a> 日本語</p><div style='background:linear-gradient(red,blue)'>x</div>"
        for mode in MODES:
            with self.subTest(mode):
                files = [re.sub(r"/(CreationDate|ModDate) \(.*\)|/ID \[.*\]", "",
                                self.convert(page(body), mode=mode, name=f"{number}.pdf").pdf.uncompressed())
                         for number in (1, 2)]
                self.assertIn("/Title", files[0])
                self.assertEqual(*files)

    def test_attributes_are_said_in_one_place(self):
        """A metadata stream would say them a second time, in the engine's words."""
        self.assertEqual(self.convert(page("<p>Text</p>")).pdf.catalog("Metadata"), "null")


if __name__ == "__main__":
    unittest.main()
