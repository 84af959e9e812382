"""Archives whose main resource is a PDF file: that file is the result, in both modes."""

import os
import re
import signal
import unittest

from pages import SITE, main_resource, page
from pdf import PDF
from tool import ToolTestCase

COCOA = "NSCocoaErrorDomain"
AS_IT_IS = "the PDF stays as it is, without the page's attributes: it cannot be read, or not be written"


def two_pages():
    """A file with pages of two sizes, one of them turned and cropped, a link, and attributes of its own."""
    stream = "BT /F1 24 Tf 40 40 Td ({}) Tj ET"
    objects = [
        "<</Type/Catalog/Pages 2 0 R>>",
        "<</Type/Pages/Kids[3 0 R 4 0 R]/Count 2>>",
        "<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 400]/Contents 5 0 R/Resources<</Font<</F1 7 0 R>>>>"
        "/Annots[<</Type/Annot/Subtype/Link/Rect[10 10 90 90]/Border[0 0 0]"
        "/A<</S/URI/URI(https://other.example/x)>>>>]>>",
        "<</Type/Page/Parent 2 0 R/MediaBox[0 0 500 200]/CropBox[10 10 490 190]/Rotate 90/Contents 6 0 R"
        "/Resources<</Font<</F1 7 0 R>>>>>>",
        *(f"<</Length {len(text)}>>\nstream\n{text}\nendstream"
          for text in (stream.format("FirstPage"), stream.format("SecondPage"))),
        "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>",
        "<</Title(Title of the file)/Author(Somebody)/Producer(Writer 1)/Keywords(kept)>>",
    ]
    file, table = "%PDF-1.4\n", "0000000000 65535 f \n"
    for number, text in enumerate(objects, 1):
        table += f"{len(file):010d} 00000 n \n"
        file += f"{number} 0 obj\n{text}\nendobj\n"
    return (f"{file}xref\n0 {len(objects) + 1}\n{table}trailer\n<</Size {len(objects) + 1}/Root 1 0 R/Info 8 0 R>>\n"
            f"startxref\n{len(file)}\n%%EOF\n").encode("latin-1")


def stored(data, mime="application/pdf", url="https://www.site.example/file.pdf"):
    return main_resource(url, data, mime, None)


class StoredPDFTests(ToolTestCase):
    def both_modes(self, archive, **options):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                yield self.convert(archive, mode=mode, name=mode + ".pdf", **options)

    def test_pages_boxes_and_links_are_as_they_were(self):
        for run in self.both_modes(stored(two_pages())):
            pdf = run.pdf
            self.assertEqual(pdf.page_count, 2)
            self.assertEqual(pdf.size(1), (300, 400))
            self.assertEqual(pdf.size(2), (500, 200))
            self.assertEqual(pdf.box("CropBox", 2), (10, 10, 490, 190))
            self.assertEqual(pdf.links(), ["https://other.example/x"])
            self.assertIn("FirstPage", pdf.text(1))
            self.assertIn("SecondPage", pdf.text(2))

    def test_attributes(self):
        for run in self.both_modes(stored(two_pages())):
            self.assertEqual(run.pdf.information(), {
                "Title": "", "Subject": "https://www.site.example/file.pdf", "Author": "site.example",
                "Creator": "Quillvane", "Producer": "Writer 1", "Keywords": "kept"})

    def test_log_is_that_of_any_page(self):
        messages = self.convert(stored(two_pages())).log.messages
        self.assertRegex(messages[0], r"^didStartProvisionalLoadForFrame: <.+> https://www\.site\.example/file\.pdf$")
        self.assertRegex("\n".join(messages), r"(?s)didFinishLoadForFrame: <.+>\nProgress finished\nExtra wait.*"
                                              r"done loading: \(\s*\)\nfinish with error: \(null\)$")

    def test_needs_no_engine(self):
        environment = self.environment(WEB2PDF_ENGINE=self.folder / "missing")
        self.assertEqual(self.convert(stored(two_pages()), environment=environment).pdf.page_count, 2)

    def test_address_that_is_not_waited_for(self):
        for run in self.both_modes(stored(two_pages(), url="about:blank")):
            self.assertEqual(run.pdf.page_count, 2)

    def test_extra_time_changes_nothing(self):
        run = self.convert(stored(two_pages()), quick=False)
        self.assertEqual(run.pdf.page_count, 2)

    def test_page_printed_before_and_stored_again(self):
        first = self.convert(page("<p>Printed</p>"), name="first.pdf")
        with open(first.output, "rb") as file:
            data = file.read()
        again = self.convert(stored(data, url=SITE + "first.pdf"), name="again.pdf").pdf
        self.assertEqual(again.size(), first.pdf.size())
        self.assertIn("Printed", again.text())

    def test_what_is_no_pdf_gives_none(self):
        for data in (b"", b"<html><p>No PDF</p>", two_pages()[:200], b"%PDF-1.4\n%%EOF\n", bytes(5000)):
            for mode in ("screen", "print"):
                with self.subTest(f"{mode} {data[:20]}"):
                    run = self.convert(stored(data), mode=mode, expect_success=False)
                    self.assert_failure(run, COCOA, 512, {"NSFilePath": run.output})
                    self.assertFalse(os.path.exists(run.output))

    def test_damage_that_readers_mend_is_handed_on(self):
        damaged = re.sub(rb"startxref\n\d+", b"startxref\n7", two_pages())
        run = self.convert(stored(damaged), expect_success=False)
        self.assert_answers_success(run)
        self.assertIn("FirstPage", PDF(run.output).text(1))
        self.assertEqual(run.log.notes, [AS_IT_IS])

    def test_file_with_a_password_is_handed_on(self):
        key = b"k" * 32
        locked = two_pages().replace(b"/Info 8 0 R", b"/ID[(0123456789abcdef)(0123456789abcdef)]/Encrypt"
                                     b"<</Filter/Standard/V 1/R 2/P -4/O(" + key + b")/U(" + key + b")>>")
        run = self.convert(stored(locked), expect_success=False)
        self.assert_answers_success(run)
        with open(run.output, "rb") as file:
            self.assertEqual(file.read(), locked)
        self.assertEqual(run.log.notes, [AS_IT_IS])

    def test_caller_that_ignores_how_its_children_end(self):
        run = self.convert(stored(two_pages()), preexec_fn=lambda: signal.signal(signal.SIGCHLD, signal.SIG_IGN))
        self.assertEqual(run.pdf.information()["Creator"], "Quillvane")
        self.assertEqual(run.log.notes, [])


if __name__ == "__main__":
    unittest.main()
