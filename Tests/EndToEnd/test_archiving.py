"""What archivists wish for: XMP metadata in the PDF, and the archive attached to it."""

import hashlib
import os
import pathlib
import plistlib
import random
import re
import resource
import subprocess
import unittest
import xml.etree.ElementTree as ElementTree

from pages import SITE, page
from test_stored_pdf import stored, two_pages
from tool import ToolTestCase, tool_path
from webarchive import Resource, html_archive

EPOCH = "1709210096"
DATE = "2024-02-29T12:34:56Z"
NAMESPACES = {"rdf": "http://www.w3.org/1999/02/22-rdf-syntax-ns#", "dc": "http://purl.org/dc/elements/1.1/",
              "xmp": "http://ns.adobe.com/xap/1.0/", "pdf": "http://ns.adobe.com/pdf/1.3/",
              "web2pdf": "http://ns.quillvane.org/web2pdf/1.0/"}
XMP = {"WEB2PDF_XMP": "1"}
ATTACH = {"WEB2PDF_ATTACH_ARCHIVE": "1"}
BOTH = {**XMP, **ATTACH}
AS_IT_IS = ["the PDF stays as it is, without the page's attributes: it cannot be read, or not be written",
            "nor does it have the metadata or the attachment that were wished for"]


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, timeout=60).stdout


def properties(path):
    """The metadata by name, as an XML parser reads them; of several values the first."""
    root = ElementTree.fromstring(output("pdfinfo", "-meta", path).decode())
    (description,) = root.iter(f"{{{NAMESPACES['rdf']}}}Description")
    found = {}
    for prefix, uri in NAMESPACES.items():
        for element in description.iterfind(f"./{{{uri}}}*"):
            item = element.find(".//rdf:li", NAMESPACES)
            found[f"{prefix}:{element.tag.partition('}')[2]}"] = (element if item is None else item).text
    return found


def files_of_at_most(size):
    return lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))


class ArchivingTestCase(ToolTestCase):
    def with_wishes(self, archive, wishes, **options):
        more = options.pop("more", {})
        return self.convert(archive, environment=self.environment(**wishes, **more), **options)

    def stored_archive(self, name="page.webarchive"):
        return (self.folder / name).read_bytes()

    def attachments(self, run):
        """The names of the embedded files."""
        listed = output("pdfdetach", "-list", "-enc", "UTF-8", run.output).decode()
        return re.findall(r"^\d+: (.*)$", listed, re.MULTILINE)

    def assert_attached(self, run, data, name="page.webarchive"):
        """Two readers give the same bytes back."""
        saved = self.folder / "saved"
        number = self.attachments(run).index(name) + 1
        output("pdfdetach", "-save", str(number), "-o", saved, run.output)
        self.assertTrue(saved.read_bytes() == data, "poppler")
        self.assertTrue(output("qpdf", f"--show-attachment={name}", run.output) == data, "qpdf")


class XMPTests(ArchivingTestCase):
    def test_both_modes(self):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                run = self.with_wishes(page("<p>x</p>", "http://www.site.example/a?b=c&d#e"), XMP, mode=mode,
                                       more={"SOURCE_DATE_EPOCH": EPOCH})
                found = properties(run.output)
                engine = found.pop("web2pdf:Engine")
                self.assertRegex(engine, r"^\w*Chrome/\d+\.[\d.]+$")
                self.assertEqual(found, {
                    "dc:format": "application/pdf", "dc:title": "A page", "dc:creator": "site.example",
                    "dc:description": "http://www.site.example/a?b=c&d#e",
                    "dc:source": "http://www.site.example/a?b=c&d#e",
                    "pdf:Producer": run.pdf.attribute("Producer"), "xmp:CreatorTool": "Quillvane",
                    "xmp:CreateDate": DATE, "xmp:ModifyDate": DATE, "xmp:MetadataDate": DATE,
                    "web2pdf:ArchiveSHA256": hashlib.sha256(self.stored_archive()).hexdigest()})
                self.assertEqual(self.attachments(run), [])

    def test_by_a_setting(self):
        self.set_preferences({"WebToolExtraLoadingTime": 0, "Web2PDFWritesXMP": True})
        run = self.convert(page("<p>x</p>"), quick=False)
        self.assertEqual(properties(run.output)["dc:title"], "A page")

    def test_dates_are_those_of_the_attributes(self):
        run = self.with_wishes(page("<p>x</p>"), XMP)
        found = properties(run.output)
        information = output("pdfinfo", "-isodates", run.output).decode()
        for name, attribute in (("xmp:CreateDate", "CreationDate"), ("xmp:ModifyDate", "ModDate")):
            told = re.search(rf"^{attribute}: +(.*)$", information, re.MULTILINE).group(1)
            self.assertEqual(found[name], re.sub(r"[+]00(:00)?$", "Z", told))
        self.assertGreaterEqual(found["xmp:MetadataDate"], found["xmp:CreateDate"])

    def test_odd_titles(self):
        for title, seen in (("a &lt;b> &amp; \"c\" ]]&gt; '", "a <b> & \"c\" ]]> '"),
                            ("Žluťoučký “kůň” العربية 漢字 😀", "Žluťoučký “kůň” العربية 漢字 😀"),
                            ("<script>document.title = 'a\\u0001\\ud800b\\uffff'</script>", "a \N{REPLACEMENT CHARACTER}b\N{REPLACEMENT CHARACTER}"),
                            ("", None)):
            with self.subTest(title):
                text = title if title.startswith("<") else f"<title>{title}</title>"
                run = self.with_wishes(html_archive(text + "<p>x"), XMP)
                self.assertEqual(properties(run.output).get("dc:title"), seen)

    def test_huge_title(self):
        run = self.with_wishes(html_archive("<script>document.title = '<&'.repeat(1e6)</script><p>x"), XMP)
        self.assertEqual(properties(run.output)["dc:title"].rstrip("\N{REPLACEMENT CHARACTER}")[:1000], "<&" * 500)
        self.assertEqual(properties(run.output)["dc:title"], run.pdf.attribute("Title"))


class AttachmentTests(ArchivingTestCase):
    def test_both_modes(self):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                run = self.with_wishes(page("<p>Text</p>"), ATTACH, mode=mode)
                self.assertEqual(self.attachments(run), ["page.webarchive"])
                self.assert_attached(run, self.stored_archive())
                self.assertIn("Text", run.pdf.text())
                self.assertEqual(run.pdf.attribute("Metadata Stream"), "no")

    def test_by_a_setting(self):
        self.set_preferences({"WebToolExtraLoadingTime": 0, "Web2PDFAttachesArchive": True})
        run = self.convert(page("<p>x</p>"), quick=False)
        self.assert_attached(run, self.stored_archive())

    def test_what_is_known_of_it(self):
        run = self.with_wishes(page("<p>x</p>"), BOTH)
        told = output("qpdf", "--list-attachments", "--verbose", run.output).decode()
        self.assertIn("mime type: application/x-webarchive", told)
        self.assertIn("checksum: " + hashlib.md5(self.stored_archive()).hexdigest(), told)
        self.assertIn("description: The web archive that this document was made of", told)
        self.assertRegex(told, r"modification date: D:\d{14}Z")
        self.assertRegex(output("mutool", "show", run.output, "trailer/Root/AF/1").decode(),
                         r"/AFRelationship /Source")

    def test_what_is_attached_makes_the_same_pdf(self):
        dated = {"SOURCE_DATE_EPOCH": EPOCH}
        first = self.with_wishes(page("<p>x</p>"), BOTH, name="first.pdf", more=dated)
        attached = output("qpdf", "--show-attachment=page.webarchive", first.output)
        again = self.with_wishes(attached, BOTH, name="again.pdf", more=dated)
        self.assertEqual(pathlib.Path(first.output).read_bytes(), pathlib.Path(again.output).read_bytes())

    def test_odd_names(self):
        for name, seen in ((b"Gr\xc3\xbc\xc3\x9fe \xe6\xbc\xa2 (1).webarchive", "Grüße 漢 (1).webarchive"),
                           (b"latin-\xe9.webarchive", "latin-\N{REPLACEMENT CHARACTER}.webarchive"),
                           (b"a \\ b) >> endobj", "a \\ b) >> endobj"), (b"x", "x")):
            with self.subTest(name):
                path = os.path.join(os.fsencode(self.folder), name)
                archive = page("<p>x</p>").bytes()
                with open(path, "wb") as file:
                    file.write(archive)
                self.set_preferences({"WebToolExtraLoadingTime": 0})
                destination = str(self.folder / "out" / "odd.pdf")
                run = self.run_named(path, destination)
                self.assertEqual(self.attachments(run), [seen])
                self.assert_attached(run, archive, seen)

    def run_named(self, path, destination):
        child = subprocess.run([tool_path(), "print", path, destination, "1"], capture_output=True, timeout=90,
                               env=self.environment(**BOTH), cwd=self.folder)
        self.assertTrue(plistlib.loads(child.stdout)["succeeded"], child.stderr.decode())

        class Converted:
            output = destination
        return Converted

    def test_large_archive(self):
        noise = random.Random(1).randbytes(48 << 20)
        archive = page("<p>Large</p>")
        archive.add(Resource(SITE + "noise.bin", noise, "application/octet-stream", None))
        run = self.with_wishes(archive, BOTH)
        data = self.stored_archive()
        self.assertGreater(len(data), len(noise))
        self.assert_attached(run, data)
        self.assertEqual(properties(run.output)["web2pdf:ArchiveSHA256"], hashlib.sha256(data).hexdigest())


class StoredPDFWishesTests(ArchivingTestCase):
    def test_has_both_and_no_engine(self):
        data = two_pages()
        for mode in ("screen", "print"):
            with self.subTest(mode):
                run = self.with_wishes(stored(data), BOTH, mode=mode)
                found = properties(run.output)
                self.assertEqual(found["dc:source"], "https://www.site.example/file.pdf")
                self.assertNotIn("web2pdf:Engine", found)
                self.assert_attached(run, self.stored_archive())
                self.assertTrue(pathlib.Path(run.output).read_bytes().startswith(data))

    def test_what_was_made_with_wishes_is_stored_and_converted_again(self):
        first = self.with_wishes(page("<p>Text</p>"), BOTH, name="first.pdf")
        inner = self.stored_archive()
        again = self.with_wishes(stored(pathlib.Path(first.output).read_bytes()), BOTH, name="again.pdf")
        self.assertEqual(sorted(self.attachments(again)), ["page.webarchive", "page.webarchive (2)"])
        self.assert_attached(again, inner)
        self.assert_attached(again, self.stored_archive(), "page.webarchive (2)")
        self.assertEqual(properties(again.output)["web2pdf:ArchiveSHA256"],
                         hashlib.sha256(self.stored_archive()).hexdigest())

    def test_what_is_damaged_or_locked_stays_as_it_is(self):
        damaged = re.sub(rb"startxref\n\d+", b"startxref\n7", two_pages())
        key = b"k" * 32
        locked = two_pages().replace(b"/Root", b"/ID[(0123456789abcdef)(0123456789abcdef)]/Encrypt"
                                     b"<</Filter/Standard/V 1/R 2/P -4/O(" + key + b")/U(" + key + b")>>/Root")
        for data in (damaged, locked):
            run = self.with_wishes(stored(data), BOTH, expect_success=False)
            self.assert_answers_success(run)
            self.assertEqual(pathlib.Path(run.output).read_bytes(), data)
            self.assertEqual(run.log.notes, AS_IT_IS)


class DefaultTests(ArchivingTestCase):
    def test_nothing_is_there_unasked(self):
        for wishes in ({}, {"WEB2PDF_XMP": "0", "WEB2PDF_ATTACH_ARCHIVE": ""}):
            run = self.with_wishes(page("<p>x</p>"), wishes)
            self.assertEqual(run.pdf.attribute("Metadata Stream"), "no")
            self.assertEqual(self.attachments(run), [])

    def test_wishes_follow_the_bytes_that_are_there_without_them(self):
        dated = {"SOURCE_DATE_EPOCH": EPOCH}
        bare = self.with_wishes(page("<p>x</p>"), {}, name="bare.pdf", more=dated)
        rich = self.with_wishes(page("<p>x</p>"), BOTH, name="rich.pdf", more=dated)
        bare, rich = (pathlib.Path(run.output).read_bytes() for run in (bare, rich))
        engines = bare.index(b"%%EOF\n") + len(b"%%EOF\n")
        self.assertEqual(rich[:engines], bare[:engines])

    def test_the_same_bytes_each_time(self):
        dated = {"SOURCE_DATE_EPOCH": EPOCH}
        for mode in ("screen", "print"):
            for wishes in (XMP, ATTACH, BOTH):
                with self.subTest(mode, wishes=wishes):
                    first, second = (pathlib.Path(self.with_wishes(page("<p>x</p>"), wishes, mode=mode, name=name,
                                                                   more=dated).output).read_bytes()
                                     for name in ("1.pdf", "2.pdf"))
                    self.assertEqual(first, second)

    def test_no_room_for_them_is_an_error(self):
        noise = random.Random(1).randbytes(3 << 20)
        archive = page("<p>x</p>")
        archive.add(Resource(SITE + "noise.bin", noise, "application/octet-stream", None))
        run = self.with_wishes(archive, ATTACH, expect_success=False, preexec_fn=files_of_at_most(2 << 20))
        self.assert_failure(run, "NSCocoaErrorDomain", 512, {"NSFilePath": run.output})
        self.assertEqual(run.log.notes, AS_IT_IS)


if __name__ == "__main__":
    unittest.main()
