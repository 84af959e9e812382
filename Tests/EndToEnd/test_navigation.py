"""Pages that act: navigation refused and allowed, dialogs, new windows, downloads."""

import unittest

from pages import SITE, acting, destination, document, page
from tool import ToolTestCase
from webarchive import HTML, Archive, Resource


class NavigationTestCase(ToolTestCase):
    def words(self, archive, **options):
        return self.convert(archive, **options).pdf.text().split()


class RefusedTests(NavigationTestCase):
    """What a person would do to leave the page is refused, whoever does it."""

    def assert_stays(self, archive):
        destination(archive, "next.html?")
        self.assertEqual(self.words(destination(archive)), ["StillHere"])

    def test_link_clicked_by_a_script(self):
        self.assert_stays(acting("document.querySelector('a').click()",
                                 '<a href="next.html">StillHere</a>'))

    def test_link_to_the_whole_window_from_a_frame(self):
        archive = page('<p>StillHere</p><iframe src="inner.html" style="border:0"></iframe>')
        inner = '<a href="next.html" target="_top"></a><script>onload = () => document.querySelector("a").click()</script>'
        self.assert_stays(archive.add(Resource(SITE + "inner.html", inner)))

    def test_link_within_a_frame(self):
        archive = page('<p>StillHere</p><iframe src="inner.html" style="border:0"></iframe>')
        inner = '<a href="next.html"></a><script>onload = () => document.querySelector("a").click()</script>'
        self.assert_stays(archive.add(Resource(SITE + "inner.html", inner)))

    def test_form_sent_by_a_script(self):
        for method in ("get", "post"):
            with self.subTest(method):
                self.assert_stays(acting("document.forms[0].submit()",
                                         f'<form action="next.html" method="{method}"></form><p>StillHere</p>'))

    def test_reload(self):
        run = self.convert(acting("location.reload()"))
        self.assertEqual(run.pdf.text().split(), ["StillHere"])
        self.assertEqual(sum(line.startswith("didFinishLoadForFrame") for line in run.log.messages), 1)

    def test_history(self):
        self.assert_stays(acting("history.back(); history.forward(); history.go(-1)"))

    def test_link_to_a_new_window(self):
        self.assert_stays(acting("document.querySelector('a').click()",
                                 '<a href="next.html" target="_blank">StillHere</a>'))

    def test_new_windows(self):
        self.assert_stays(acting("for (var i = 0; i < 5; i++) window.open('next.html'); window.open()"))

    def test_download(self):
        archive = acting("document.querySelector('a').click()", '<a href="file.bin" download>StillHere</a>')
        archive.add(Resource(SITE + "file.bin", b"x" * 1000, "application/octet-stream", None))
        self.assert_stays(archive)

    def test_frame_that_is_a_download(self):
        archive = page('<p>StillHere</p><iframe src="file.bin"></iframe>')
        archive.add(Resource(SITE + "file.bin", b"x" * 1000, "application/octet-stream", None))
        self.assert_stays(archive)


class AllowedTests(NavigationTestCase):
    """What the page does by itself goes through, within the archive."""

    def assert_goes(self, archive):
        run = self.convert(destination(archive))
        self.assertEqual(run.pdf.text().split(), ["Destination"])
        self.assertEqual(run.pdf.attribute("Title"), "Destination")
        self.assertEqual(run.pdf.attribute("Subject"), SITE + "page.html")

    def test_script_sets_the_address(self):
        self.assert_goes(page("<p>First</p><script>location.href = 'next.html'</script>"))

    def test_script_replaces_the_address(self):
        self.assert_goes(page("<p>First</p><script>location.replace('next.html')</script>"))

    def test_refresh_at_once(self):
        self.assert_goes(page("<p>First</p>", head='<meta http-equiv="refresh" content="0; url=next.html">'))

    def test_fragment_changes_nothing(self):
        self.assertEqual(self.words(acting("location.hash = 'part'; history.pushState(1, '', 'elsewhere.html')")),
                         ["StillHere"])

    def test_fragment_click_changes_nothing(self):
        self.assertEqual(self.words(acting("document.querySelector('a').click()", '<a href="#part">StillHere</a>')),
                         ["StillHere"])


class DialogTests(NavigationTestCase):
    """Nobody is there to answer: dialogs are dismissed and the page goes on."""

    def test_alert(self):
        self.assertEqual(self.words(page("<script>alert('Stop!'); document.write('<p>After</p>')</script>")), ["After"])

    def test_confirm_is_declined(self):
        self.assertEqual(self.words(page("<script>document.write('<p>' + confirm('Yes?') + '</p>')</script>")),
                         ["false"])

    def test_prompt_has_no_answer(self):
        self.assertEqual(self.words(page("<script>document.write('<p>' + prompt('Name?', 'x') + '</p>')</script>")),
                         ["null"])

    def test_many_alerts(self):
        body = "<p>Before</p><script>for (var i = 0; i < 50; i++) alert(i)</script><p>After</p>"
        self.assertEqual(self.words(page(body)), ["Before", "After"])

    def test_alert_in_a_frame(self):
        archive = page('<p>Around</p><iframe src="inner.html" style="border:0"></iframe>')
        archive.add(Resource(SITE + "inner.html", "<script>alert(1)</script><p>Inside</p>"))
        self.assertEqual(self.words(archive), ["Around", "Inside"])

    def test_leaving_is_not_questioned(self):
        body = "<p>First</p><script>onbeforeunload = e => { e.preventDefault(); return 'Stay?' };" \
               "location.href = 'next.html'</script>"
        self.assertEqual(self.words(destination(page(body))), ["Destination"])

    def test_printing_by_the_page(self):
        self.assertEqual(self.words(acting("print()")), ["StillHere"])


class HostileTests(NavigationTestCase):
    def test_script_that_never_ends_after_the_load(self):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                self.assertEqual(self.words(acting("setTimeout(() => { for (;;); }, 0)"), mode=mode), ["StillHere"])

    def test_page_that_closes_itself(self):
        self.assertEqual(self.words(acting("window.close()")), ["StillHere"])

    def test_page_that_replaces_the_built_in_functions(self):
        script = ("Promise.prototype.then = null; Array.prototype.map = null; Object.defineProperty = null;"
                  "window.requestAnimationFrame = null; document.querySelectorAll = null;"
                  "window.getComputedStyle = null; Math.max = () => 1; JSON.stringify = null;")
        self.assertEqual(self.words(page(f"<script>{script}</script><p>StillHere</p>")), ["StillHere"])

    def test_policy_of_the_page_is_no_obstacle(self):
        head = '<meta http-equiv="Content-Security-Policy" content="default-src \'none\'">'
        for mode in ("screen", "print"):
            with self.subTest(mode):
                self.assertEqual(self.words(page("<p>StillHere</p>", head=head), mode=mode), ["StillHere"])

    def test_timers_and_animations_that_never_stop(self):
        script = ("setInterval(() => document.body.dataset.x = Math.random(), 1);"
                  "(function f() { requestAnimationFrame(f); })();")
        self.assertEqual(self.words(acting(script)), ["StillHere"])

    def test_document_that_the_engine_cannot_show(self):
        archive = Archive(Resource(SITE + "file.bin", b"\x00\x01" * 500, "application/octet-stream", None))
        run = self.convert(archive, expect_success=False)
        self.assertFalse(run.result["succeeded"])
        self.assertFalse((self.folder / "out" / "page.pdf").exists())

    def test_service_worker_is_no_obstacle(self):
        archive = page("<p>StillHere</p><script>navigator.serviceWorker.register('sw.js').catch(() => 0)</script>",
                       "https://site.example/")
        archive.add(Resource("https://site.example/sw.js", "onfetch = e => e.respondWith(new Response('x'))",
                             "text/javascript"))
        self.assertEqual(self.words(archive), ["StillHere"])

    def test_deep_nesting(self):
        html = document("<div>" * 5000 + "Bottom" + "</div>" * 5000)
        self.assertEqual(self.words(Archive(Resource(SITE, html, HTML))), ["Bottom"])


if __name__ == "__main__":
    unittest.main()
