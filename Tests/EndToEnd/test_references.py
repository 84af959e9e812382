"""What resources refer to in their turn: sheets, drawings, modules, workers, frames in frames."""

import pathlib
import unittest

from images import png, svg
from pages import BLUE, GREEN, RED, SITE, css, document, frame_archive, page
from pdf import near
from tool import ToolTestCase
from webarchive import HTML, Archive, Resource, labelled

FONT = pathlib.Path("/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf")
OTHER = "https://other.example/"
PLAIN = "<style>body{margin:0}img,iframe,svg,object{display:block;border:0}</style>"


def picture(url, colour=GREEN):
    return Resource(url, png(5, 5, colour), "image/png")


def sheet(url, text):
    return Resource(url, text, "text/css")


def script(url, text):
    return Resource(url, text, "text/javascript")


class ReferenceTestCase(ToolTestCase):
    def assert_green(self, archive, place=(50, 50)):
        run = self.convert(archive)
        pixel = run.pdf.picture().pixel(*place)
        self.assertTrue(near(pixel, GREEN), f"{pixel} at {place}\n{run.log.text}")
        self.assertEqual(run.log.notes, [])

    def words(self, archive):
        run = self.convert(archive)
        self.assertEqual(run.log.notes, [])
        return run.pdf.text().split()


class StyleTests(ReferenceTestCase):
    def test_chain_of_imports_across_sites(self):
        archive = page("<div></div>", head='<link rel="stylesheet" href="one.css">')
        self.assert_green(archive.add(
            sheet(SITE + "one.css", '@import url("//cdn.example/two.css");'),
            sheet("http://cdn.example/two.css", "@import 'sub/three.css' screen;"),
            sheet("http://cdn.example/sub/three.css",
                  "body{margin:0} div{height:100px;background:url(../a.png?x=1&y=2#z)}"),
            picture("http://cdn.example/a.png?x=1&y=2")))

    def test_each_sheet_has_its_own_character_set(self):
        archive = page("<p class=a></p><p class=b></p><p class=c></p>",
                       head='<link rel="stylesheet" href="a.css">')
        archive.add(labelled(SITE + "a.css", "@import 'b.css'; .a::before{content:'Жизнь'}".encode("cp1251"),
                             "windows-1251", "text/css"),
                    labelled(SITE + "b.css", '@charset "shift_jis"; @import "c.css"; .b::before{content:"日本"}'
                             .encode("shift_jis"), None, "text/css"),
                    labelled(SITE + "c.css", ".c::before{content:'Größe'}".encode(), "utf-8", "text/css"))
        self.assertEqual(self.words(archive), ["Жизнь", "日本", "Größe"])

    def test_style_of_a_sheet_with_integrity(self):
        archive = page('<link rel="stylesheet" href="https://other.example/s.css" crossorigin><div></div>')
        self.assert_green(archive.add(
            sheet(OTHER + "s.css", f"body{{margin:0}}div{{height:100px;background:{css(GREEN)}}}")))

    def test_first_font_of_the_list_that_is_stored(self):
        archive = page('<p>Letters</p>', head="<style>@font-face{font-family:F;src:url(a.woff2)format('woff2'),"
                       f"url({OTHER}b.ttf)format('truetype')}}p{{font-family:F}}</style>")
        archive.add(Resource(OTHER + "b.ttf", FONT.read_bytes(), "application/octet-stream"))
        run = self.convert(archive)
        self.assertIn("Letters", run.pdf.text())
        self.assertEqual(run.log.notes, ["the archive does not hold 1 resource that the page asked for: "
                                         f"font {SITE}a.woff2"])

    def test_fonts_added_by_a_script(self):
        archive = page("<p id=p>Before</p><script>new FontFace('F', 'url(f.ttf)').load().then(() =>"
                       "{ p.textContent = 'Loaded' }, () => { p.textContent = 'Refused' });</script>")
        self.assertEqual(self.words(archive.add(Resource(SITE + "f.ttf", FONT.read_bytes(), "font/ttf"))), ["Loaded"])


class DrawingTests(ReferenceTestCase):
    SYMBOL = (f'<svg xmlns="http://www.w3.org/2000/svg"><symbol id="s" viewBox="0 0 10 10">'
              f'<rect width="10" height="10" fill="{css(GREEN)}"/></symbol></svg>')

    def test_use_of_another_file(self):
        archive = page(PLAIN + '<svg width="100" height="100"><use href="icons.svg#s"/></svg>')
        self.assert_green(archive.add(Resource(SITE + "icons.svg", self.SYMBOL, "image/svg+xml")))

    def test_picture_in_a_drawing(self):
        archive = page(PLAIN + '<svg width="100" height="100"><image xlink:href="a.png" width="100" height="100" '
                               'preserveAspectRatio="none"/></svg>')
        self.assert_green(archive.add(picture(SITE + "a.png")))

    def test_drawing_as_an_object(self):
        archive = page(PLAIN + '<object data="a.svg" type="image/svg+xml"></object>')
        self.assert_green(archive.add(Resource(SITE + "a.svg", svg(100, 100, GREEN), "image/svg+xml")))

    def test_picture_as_an_object(self):
        archive = page(PLAIN + '<object data="a.png" width="100" height="100"></object>')
        self.assert_green(archive.add(picture(SITE + "a.png")))

    def test_fallback_of_an_object_that_is_not_stored(self):
        archive = page(PLAIN + '<object data="missing.png" width="100" height="100"><p>Instead</p></object>')
        self.assertIn("Instead", self.convert(archive).pdf.text())

    def test_mask_and_filter_of_another_file(self):
        mask = ('<svg xmlns="http://www.w3.org/2000/svg"><clipPath id="c" clipPathUnits="objectBoundingBox">'
                '<rect width="1" height="0.5"/></clipPath></svg>')
        archive = page(PLAIN + f'<div style="width:100px;height:100px;background:{css(GREEN)};'
                               'clip-path:url(mask.svg#c)"></div>')
        archive.add(Resource(SITE + "mask.svg", mask, "image/svg+xml"))
        self.assert_green(archive, (50, 25))


class ScriptTests(ReferenceTestCase):
    def test_modules_import_modules(self):
        archive = page('<p id=p>Before</p><script type="importmap">{"imports":{"lib":"https://other.example/lib.mjs"}}'
                       '</script><script type="module" src="m.mjs"></script>')
        archive.add(script(SITE + "m.mjs", "import {word} from 'lib'; const late = await import('./late.mjs');"
                                           "p.textContent = word + late.word;"),
                    script(OTHER + "lib.mjs", "export const word = 'Imported';"),
                    script(SITE + "late.mjs", "export const word = 'Late';"))
        self.assertEqual(self.words(archive), ["ImportedLate"])

    def test_stored_data_of_another_site(self):
        for options in ("", ", {mode: 'cors', credentials: 'include'}", ", {headers: {'X-Own': '1'}}"):
            with self.subTest(options):
                archive = page(f"<p id=p>Before</p><script>fetch('{OTHER}d.json'{options}).then(r => r.json())"
                               ".then(j => { p.textContent = j.word }, e => { p.textContent = e })</script>")
                archive.add(Resource(OTHER + "d.json", '{"word":"Fetched"}', "application/json"))
                self.assertEqual(self.words(archive), ["Fetched"])

    def test_old_style_request(self):
        archive = page("<p id=p>Before</p><script>const r = new XMLHttpRequest(); r.open('GET', 'd.xml');"
                       "r.onload = () => { p.textContent = r.responseXML.documentElement.textContent }; r.send();"
                       "</script>")
        self.assertEqual(self.words(archive.add(Resource(SITE + "d.xml", "<d>Requested</d>", "application/xml"))),
                         ["Requested"])

    def test_script_of_another_site_in_its_character_set(self):
        archive = page('<p id=p></p><script src="https://other.example/s.js"></script>')
        archive.add(labelled(OTHER + "s.js", "p.textContent = 'Жизнь'".encode("koi8-r"), "koi8-r", "text/javascript"))
        self.assertEqual(self.words(archive), ["Жизнь"])


class NestedFrameTests(ReferenceTestCase):
    def test_frames_in_many_levels(self):
        depth = 12
        archive = None
        for level in range(depth, 0, -1):
            body = f'<iframe src="{level + 1}.html" width=580 height=800></iframe>' if archive else ""
            around = frame_archive(None, f"{SITE}{level}.html", f"Level{level:02d}", [archive] if archive else [], body)
            archive = around
        text = self.convert(archive).pdf.text()
        self.assertEqual([level for level in range(1, depth + 1) if f"Level{level:02d}" not in text], [])

    def test_resources_of_a_page_in_an_attribute(self):
        inner = "<style>body{margin:0}</style><img src='a.png' width=100 height=100>"
        self.assert_green(page(PLAIN + f'<iframe srcdoc="{inner}"></iframe>').add(picture(SITE + "a.png")))

    def test_frame_in_a_page_in_an_attribute(self):
        archive = page('<iframe srcdoc="<iframe src=f.html></iframe>"></iframe>')
        archive.add(Resource(SITE + "f.html", document("<p>Deep</p>"), HTML))
        self.assertEqual(self.words(archive), ["Deep"])

    def test_resources_of_a_page_written_by_a_script(self):
        body = (PLAIN + "<iframe id=f></iframe><script>const d = f.contentDocument; d.open();"
                "d.write('<style>body{margin:0}</style><img src=a.png width=100 height=100>'); d.close();</script>")
        self.assert_green(page(body).add(picture(SITE + "a.png")))

    def test_resources_of_blank_frames_with_stored_content(self):
        blank = Archive(Resource("about:blank", "<style>body{margin:0}</style><img src='a.png' width=100 height=100>"
                                                f"<img src='{SITE}b.png' width=100 height=100>", HTML,
                                 frame_name="n"), [picture(SITE + "a.png"), picture(SITE + "b.png", BLUE)])
        archive = page(PLAIN + '<iframe name="n" width=300 height=250></iframe>').add_frame(blank)
        self.assert_green(archive)

    def test_frame_of_another_site_has_its_own_base(self):
        archive = page(PLAIN + '<iframe src="https://other.example/dir/f.html"></iframe>')
        inner = frame_archive(None, OTHER + "dir/f.html", "", body=
                              '<img src="a.png" width=100 height=100 style="position:absolute;left:0;top:0">')
        self.assert_green(archive.add_frame(inner.add(picture(OTHER + "dir/a.png"), picture(SITE + "a.png", RED))))

    def test_frame_that_a_script_adds_late(self):
        archive = page("<script>onload = () => setTimeout(() => { const f = document.createElement('iframe');"
                       "f.src = 'f.html'; document.body.append(f); }, 20);</script>")
        archive.add_frame(frame_archive(None, SITE + "f.html", "Late"))
        self.set_preferences({"WebToolExtraLoadingTime": 1})
        self.assertIn("Late", self.convert(archive, quick=False).pdf.text())


if __name__ == "__main__":
    unittest.main()
