"""Inline frames: found by name, address and order, in several levels, with content of their own."""

import unittest

from images import png
from pages import SITE, blank_frame_with_content, frame_archive, page, three_levels_of_frames
from pdf import near
from tool import ToolTestCase
from webarchive import Resource


class FramesTests(ToolTestCase):
    def text(self, archive, mode="screen"):
        return self.convert(archive, mode=mode).pdf.text()

    def assert_order(self, text, *words):
        places = [text.find(word) for word in words]
        self.assertNotIn(-1, places, text)
        self.assertEqual(places, sorted(places), text)

    def test_three_levels(self):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                self.assert_order(self.text(three_levels_of_frames(), mode), "LevelOne", "LevelTwo", "LevelThree")

    def test_found_by_name_whatever_the_order(self):
        archive = page('<iframe name="one" src="x.html"></iframe><br><iframe name="two" src="x.html"></iframe>')
        archive.add_frame(frame_archive("two", SITE + "x.html", "SecondText"),
                          frame_archive("one", SITE + "x.html", "FirstText"))
        self.assert_order(self.text(archive), "FirstText", "SecondText")

    def test_found_by_address_whatever_the_order(self):
        archive = page('<iframe src="one.html"></iframe><br><iframe src="two.html"></iframe>')
        archive.add_frame(frame_archive(None, SITE + "two.html", "SecondText"),
                          frame_archive(None, SITE + "one.html", "FirstText"))
        self.assert_order(self.text(archive), "FirstText", "SecondText")

    def test_same_address_with_different_contents_in_order(self):
        archive = page('<iframe src="x.html"></iframe><br><iframe src="x.html"></iframe>')
        archive.add_frame(frame_archive(None, SITE + "x.html", "FirstText"),
                          frame_archive(None, SITE + "x.html", "SecondText"))
        self.assert_order(self.text(archive), "FirstText", "SecondText")

    def test_found_by_order_when_the_address_differs(self):
        archive = page('<iframe src="http://other.example/one"></iframe>')
        archive.add_frame(frame_archive("<!--frame1-->", "https://moved.example/one", "MovedText"))
        self.assertIn("MovedText", self.text(archive))

    def test_secure_archive_behind_a_plain_address(self):
        archive = page('<iframe src="http://other.example/x.html"></iframe>')
        archive.add_frame(frame_archive(None, "https://other.example/x.html", "SecureText"))
        self.assertIn("SecureText", self.text(archive))

    def test_plain_frame_in_a_secure_page(self):
        archive = page('<p>Around</p><iframe src="http://other.example/x.html"></iframe>', "https://site.example/")
        archive.add_frame(frame_archive(None, "http://other.example/x.html", "PlainText"))
        self.assert_order(self.text(archive), "Around", "PlainText")

    def test_blank_frames_with_stored_content(self):
        text = self.text(blank_frame_with_content())
        for word in ("Around", "FilledByName", "FilledToo"):
            self.assertIn(word, text)

    def test_frame_that_is_not_stored_stays_blank(self):
        text = self.text(page('<p>Around</p><iframe src="http://other.example/x.html"></iframe><p>Below</p>'))
        self.assertEqual(text.split(), ["Around", "Below"])

    def test_frame_written_into_the_page_itself(self):
        text = self.text(page('<iframe srcdoc="<p>Inside</p>"></iframe><p>Below</p>'))
        self.assert_order(text, "Inside", "Below")

    def test_frame_among_the_subresources(self):
        archive = page('<iframe src="inner.html"></iframe>')
        archive.add(Resource(SITE + "inner.html", "<p>FromTheList</p>"))
        self.assertIn("FromTheList", self.text(archive))

    def test_frame_looks_in_its_own_archive_first(self):
        style = "<style>body{margin:0}iframe{border:0;display:block}</style>"
        archive = page('<iframe src="inner.html" width=200 height=100></iframe>'
                       '<img src="a.png" width=200 height=100 style="display:block">', head=style)
        inner = frame_archive(None, SITE + "inner.html", "", body=
                              '<img src="a.png" style="position:absolute;left:0;top:0" width=200 height=100>')
        inner.add(Resource(SITE + "a.png", png(2, 2, (20, 160, 70)), "image/png"))
        archive.add_frame(inner).add(Resource(SITE + "a.png", png(2, 2, (30, 60, 200)), "image/png"))
        picture = self.convert(archive).pdf.picture()
        self.assertTrue(near(picture.pixel(100, 50), (20, 160, 70)), picture.pixel(100, 50))
        self.assertTrue(near(picture.pixel(100, 150), (30, 60, 200)), picture.pixel(100, 150))

    def test_resource_only_in_another_frames_archive(self):
        archive = page('<img src="a.png" style="position:absolute;left:0;top:0" width=100 height=100>'
                       '<iframe src="inner.html" style="margin-top:120px"></iframe>')
        inner = frame_archive(None, SITE + "inner.html", "Inner")
        archive.add_frame(inner.add(Resource(SITE + "a.png", png(2, 2, (20, 160, 70)), "image/png")))
        self.assertTrue(near(self.convert(archive).pdf.picture().pixel(50, 50), (20, 160, 70)))

    def test_frames_added_and_removed_by_a_script(self):
        body = ("<p>Around</p><div id=d></div><script>for (var i = 0; i < 20; i++) {"
                "var f = document.createElement('iframe'); f.src = 'inner.html?' + i; d.appendChild(f);"
                "if (i % 2) d.removeChild(f); }</script>")
        self.assertEqual(self.text(page(body)).split(), ["Around"])

    def test_frame_that_navigates_itself(self):
        archive = page('<iframe src="inner.html"></iframe>')
        archive.add_frame(frame_archive(None, SITE + "inner.html", "Inner", body=
                                        "<script>location.href = 'next.html'</script>"))
        archive.add(Resource(SITE + "next.html", "<p>NextInFrame</p>"))
        self.assertIn("NextInFrame", self.text(archive))

    def test_many_frames(self):
        count = 40
        archive = page("".join(f'<iframe src="f{number}.html" width=180 height=60></iframe>' for number in range(count)))
        archive.add_frame(*(frame_archive(None, f"{SITE}f{number}.html", f"Frame{number:02d}")
                            for number in range(count)))
        text = self.text(archive)
        self.assertEqual([number for number in range(count) if f"Frame{number:02d}" not in text], [])


if __name__ == "__main__":
    unittest.main()
