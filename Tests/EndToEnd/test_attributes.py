"""The document attributes: Creator, Title, Subject and Author, to the letter."""

import unittest

from pages import SITE, frame_archive, page
from tool import ToolTestCase
from webarchive import Archive, Resource, html_archive


class AttributesTests(ToolTestCase):
    def attributes(self, archive, **options):
        pdf = self.convert(archive, **options).pdf
        return tuple(pdf.attribute(name) for name in ("Creator", "Title", "Subject", "Author"))

    def assert_author(self, url, author, subject=None):
        self.assertEqual(self.attributes(html_archive("<title>T</title><p>x</p>", url)),
                         ("Quillvane", "T", subject or url, author))

    def test_both_modes(self):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                self.assertEqual(self.attributes(page("<p>x</p>", "http://www.site.example/a?b=c#d"), mode=mode),
                                 ("Quillvane", "A page", "http://www.site.example/a?b=c#d", "site.example"))

    def test_entries_of_the_renderer_are_kept(self):
        pdf = self.convert(page("<p>x</p>")).pdf
        self.assertTrue(pdf.attribute("Producer"))
        self.assertTrue(pdf.attribute("CreationDate"))

    def test_host_without_www(self):
        self.assert_author("https://site.example/a/b.html", "site.example")

    def test_www_is_removed_once(self):
        self.assert_author("http://www.www.site.example/", "www.site.example")

    def test_www_in_capitals_stays(self):
        self.assert_author("http://WWW.site.example/", "WWW.site.example")

    def test_host_that_only_begins_like_it(self):
        self.assert_author("http://wwwsite.example/", "wwwsite.example")

    def test_port_is_no_part_of_the_host(self):
        self.assert_author("http://www.site.example:8080/", "site.example")

    def test_file_address_has_no_host(self):
        self.assert_author("file:///home/me/page.html", "")

    def test_unknown_scheme(self):
        self.assert_author("feed-reader://www.site.example/item/7", "site.example")

    def test_about_blank(self):
        self.assert_author("about:blank", "")

    def test_no_address_at_all(self):
        archive = Archive(Resource(None, "<title>T</title><p>Text</p>"))
        self.assertEqual(self.attributes(archive), ("Quillvane", "T", "", ""))

    def test_untitled_page(self):
        self.assertEqual(self.attributes(page("<p>x</p>", title=None))[1], "")

    def test_title_of_a_sub_frame_is_no_title(self):
        archive = page('<iframe src="inner.html"></iframe>', title=None)
        archive.add_frame(frame_archive(None, SITE + "inner.html", "Inner"))
        self.assertEqual(self.attributes(archive)[1], "")

    def test_title_in_many_scripts(self):
        title = "Žluťoučký “kůň” Ω Ж العربية 漢字 😀"
        self.assertEqual(self.attributes(page("<p>x</p>", title=title))[1], title)

    def test_title_with_characters_of_the_format(self):
        self.assertEqual(self.attributes(page("<p>x</p>", title="a (b) \\ c) /d"))[1], "a (b) \\ c) /d")

    def test_title_set_by_a_script(self):
        archive = page("<p>x</p><script>document.title = 'From the script'</script>")
        self.assertEqual(self.attributes(archive)[1], "From the script")

    def test_page_cannot_name_the_creator(self):
        archive = page("<p>x</p>", head='<meta name="generator" content="Forged"><meta name="author" content="Forged">')
        self.assertEqual(self.attributes(archive), ("Quillvane", "A page", SITE + "page.html", "site.example"))




if __name__ == "__main__":
    unittest.main()
