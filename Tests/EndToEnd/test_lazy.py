"""Contents that a page shows only when it is looked at, and contents that are still on their way."""

import unittest

from images import png
from pages import GREEN, RED, SITE, css, frame_archive, page
from pdf import near
from tool import ToolTestCase
from webarchive import Resource

FAR = '<div style="height:3000px"></div>'
PLAIN = "<style>body{margin:0}img,video,iframe{display:block;border:0}</style>"


def picture(name="a.png", colour=GREEN):
    return Resource(SITE + name, png(5, 5, colour), "image/png")


class ShownTestCase(ToolTestCase):
    def shown(self, body, *resources, head="", mode="screen"):
        return self.convert(page(PLAIN + body, head=head).add(*resources), mode=mode).pdf

    def assert_colours(self, pdf, expected, number=1):
        pixels = pdf.picture(number)
        for place, colour in expected.items():
            self.assertTrue(near(pixels.pixel(*place), colour),
                            f"{pixels.pixel(*place)} instead of {colour} at {place}")


class LazyTests(ShownTestCase):
    OBSERVER = ("<script>const o = new IntersectionObserver((entries) => { for (const e of entries) {"
                "if (!e.isIntersecting) continue; o.unobserve(e.target); e.target.src = e.target.dataset.src; } });"
                "for (const i of document.images) o.observe(i);</script>")
    WAITING = '<img data-src="a.png" width=100 height=100>'

    def test_native(self):
        self.assert_colours(self.shown(FAR + '<img src="a.png" loading="lazy" width=100 height=100>', picture()),
                            {(50, 3050): GREEN})

    def test_native_frame(self):
        archive = page(PLAIN + FAR + '<iframe src="f.html" loading="lazy"></iframe>')
        archive.add_frame(frame_archive(None, SITE + "f.html", "FarBelow"))
        self.assertIn("FarBelow", self.convert(archive).pdf.text())

    def test_observed(self):
        for mode, number, place in (("screen", 1, (50, 3050)), ("print", 4, None)):
            with self.subTest(mode):
                pdf = self.shown(FAR + self.WAITING + self.OBSERVER, picture(), mode=mode)
                if place:
                    self.assert_colours(pdf, {place: GREEN})
                else:
                    pixels = pdf.picture(pdf.page_count)
                    self.assertTrue(any(near(pixels.pixel(60, y), GREEN) for y in range(40, pixels.height)))

    def test_observed_in_very_tall_pages(self):
        count = 12
        body = ("".join(f'<div style="height:19900px"></div><p id=p{number}>x</p>' for number in range(count)) +
                "<script>const o = new IntersectionObserver((entries) => { for (const e of entries)"
                "if (e.isIntersecting) e.target.textContent = 'Seen-' + e.target.id; });"
                "for (const p of document.querySelectorAll('p')) o.observe(p);</script>")
        self.assertEqual(self.shown(body).text().split(), [f"Seen-p{number}" for number in range(count)])

    def test_observed_between_parts_as_tall_as_the_view(self):
        body = ('<div style="height:100vh"></div>' + self.WAITING) * 4 + self.OBSERVER
        pdf = self.shown(body, picture())
        self.assertEqual(pdf.size(), (612, 4 * (792 + 100)))
        self.assert_colours(pdf, {(50, number * 892 - 50): GREEN for number in range(1, 5)})

    def test_observed_in_a_frame(self):
        archive = page(PLAIN + FAR + '<iframe src="f.html" width=200 height=200></iframe>')
        archive.add_frame(frame_archive(None, SITE + "f.html", "Inner", body=self.WAITING + self.OBSERVER)
                          .add(picture()))
        pixels = self.convert(archive).pdf.picture()
        self.assertTrue(any(near(pixels.pixel(40, y), GREEN) for y in range(3000, 3200, 5)))

    def test_shown_while_looked_at_only(self):
        body = (FAR + f'<div id=d style="height:100px;background:{css(RED)}"></div>'
                "<script>new IntersectionObserver(([e]) => {"
                f"d.style.background = e.isIntersecting ? '{css(GREEN)}' : '{css(RED)}' }}).observe(d);</script>")
        self.assert_colours(self.shown(body), {(50, 3050): GREEN})

    def test_transition_into_view_has_ended(self):
        body = (FAR + f'<div id=d style="height:100px;background:{css(GREEN)}" class=out></div>'
                "<style>#d{opacity:1;transition:opacity 20s}.out#d{opacity:0}</style>"
                "<script>new IntersectionObserver(([e]) => { if (e.isIntersecting) d.className = '' })"
                ".observe(d);</script>")
        self.assert_colours(self.shown(body), {(50, 3050): GREEN})

    def test_animation_on_coming_into_view(self):
        body = (FAR + f'<div style="height:100px;background:{css(GREEN)}" class=c></div>' + FAR +
                "<style>@keyframes appear{from{opacity:0}to{opacity:1}}"
                ".c{animation:appear linear both;animation-timeline:view();animation-range:entry}</style>")
        self.assert_colours(self.shown(body), {(50, 3050): GREEN})

    def test_animation_that_a_script_begins(self):
        body = (FAR + f'<div id=d style="height:100px;background:{css(GREEN)}"></div>'
                "<style>@keyframes appear{from{opacity:0}to{opacity:1}}#d{opacity:0}#d.on{animation:appear 20s both}"
                "</style><script>new IntersectionObserver(([e]) => { if (e.isIntersecting) d.className = 'on' })"
                ".observe(d);</script>")
        self.assert_colours(self.shown(body), {(50, 3050): GREEN})

    def test_address_that_has_to_be_fetched_first(self):
        body = (FAR + "<img id=i width=100 height=100><script>new IntersectionObserver(async ([e]) => {"
                "if (e.isIntersecting) i.src = (await (await fetch('where.json')).json()).src }).observe(i);</script>")
        pdf = self.shown(body, picture(), Resource(SITE + "where.json", '{"src":"a.png"}', "application/json"))
        self.assert_colours(pdf, {(50, 3050): GREEN})

    SCROLLED = ("<script>function look() { for (const i of document.images) {"
                "if (i.dataset.src && i.getBoundingClientRect().top < innerHeight) {"
                "i.src = i.dataset.src; delete i.dataset.src; } } } %s</script>")

    def test_loaded_on_scrolling(self):
        for target in ("window", "document"):
            with self.subTest(target):
                script = self.SCROLLED % f"{target}.addEventListener('scroll', look); look();"
                self.assert_colours(self.shown(FAR + self.WAITING + script, picture()), {(50, 3050): GREEN})

    def test_loaded_a_little_after_scrolling(self):
        script = self.SCROLLED % "let t; onscroll = () => { clearTimeout(t); t = setTimeout(look, 100); };"
        self.assert_colours(self.shown(FAR + self.WAITING + script, picture()), {(50, 3050): GREEN})

    def test_page_does_not_notice(self):
        body = (FAR + "<p id=p>Calm</p><script>setTimeout(() => { for (const target of [window, visualViewport, document])"
                "for (const type of ['resize', 'scroll', 'scrollend'])"
                "target.addEventListener(type, () => { if (innerHeight > 800 || scrollY) p.textContent = 'Noticed' }) });"
                "</script>")
        self.assertIn("Calm", self.shown(body).text())

    def test_page_knows_its_size_from_the_start_and_is_told_of_no_other(self):
        body = (FAR + "<p id=p></p><script>const tell = () => { p.textContent += 'Size' + innerWidth + 'x' + innerHeight };"
                "tell(); addEventListener('load', () => { onresize = tell; });</script>")
        for mode, size in (("screen", "612x792"), ("print", "720x960")):
            with self.subTest(mode):
                self.assertEqual(self.shown(body, mode=mode).text().split(), ["Size" + size])

    def test_page_without_end(self):
        body = ('<div id=d></div><script>const more = () => { const p = document.createElement("p");'
                'p.style.height = "500px"; p.textContent = "Part"; d.append(p); };'
                "for (let i = 0; i < 4; ++i) more();"
                "const end = document.createElement('div'); end.style.height = '1px'; document.body.append(end);"
                "new IntersectionObserver(([e]) => { if (e.isIntersecting) for (let i = 0; i < 50; ++i) more(); },"
                "{rootMargin: '400px'}).observe(end);</script>")
        run = self.convert(page(body))
        self.assertEqual(run.pdf.page_count, 1)
        self.assertLess(run.pdf.size()[1], 1_000_000)

    def test_skipped_contents_have_their_pictures_and_their_size(self):
        body = ("".join('<div style="content-visibility:auto;contain-intrinsic-size:100px 100px">'
                        f'<div style="height:900px;background:url(a.png)">Part{number}</div></div>'
                        for number in range(5)))
        pdf = self.shown(body, picture())
        self.assertEqual(pdf.size(), (612, 4500))
        self.assert_colours(pdf, {(50, 900 * number + 450): GREEN for number in range(5)})

    def test_what_is_missing_is_not_waited_for(self):
        body = FAR + self.WAITING * 3 + self.OBSERVER
        self.assertEqual(self.shown(body).size(), (612, 3300))


class LateTests(ShownTestCase):
    """What a page asks for in the very moment in which it is about to be drawn. That it is, it can tell by its end
    being seen."""

    def late(self, script, body="", *resources):
        return self.shown(FAR + body + "<p id=end>end</p><script>new IntersectionObserver(([entry], observer) => {"
                          f"if (entry.isIntersecting) {{ observer.disconnect(); {script} }} }}).observe(end);</script>",
                          *resources)

    def assert_green(self, pdf):
        self.assert_colours(pdf, {(50, 3050): GREEN})

    def in_html(self, html):
        return self.late(f"d.innerHTML = `{html}`", "<div id=d></div>", picture())

    def test_picture(self):
        self.assert_green(self.in_html('<img src="a.png" width=100 height=100>'))

    def test_picture_with_sources(self):
        self.assert_green(self.in_html('<picture><source srcset="a.png"><img width=100 height=100></picture>'))

    def test_background(self):
        self.assert_green(self.in_html('<p style="margin:0;height:100px;background:url(a.png)"></p>'))

    def test_poster(self):
        self.assert_green(self.in_html('<video poster="a.png" width=100 height=100 style="object-fit:fill"></video>'))

    def test_picture_in_a_drawing(self):
        self.assert_green(self.in_html('<svg width=100 height=100 style="display:block">'
                                       '<image href="a.png" width=100 height=100 /></svg>'))

    def test_picture_in_a_shadow_tree(self):
        for mode in ("open", "closed"):
            with self.subTest(mode):
                self.assert_green(self.late(
                    f"d.attachShadow({{mode: '{mode}'}}).innerHTML ="
                    "'<img src=a.png width=100 height=100 style=display:block>'", "<div id=d></div>", picture()))

    def test_picture_in_a_frame(self):
        self.assert_green(self.late("f.contentDocument.body.innerHTML = '<img src=a.png width=100 height=100>';"
                                    "f.contentDocument.body.style.margin = 0", "<iframe id=f></iframe>", picture()))

    def test_picture_in_a_shadow_tree_in_a_frame(self):
        self.assert_green(self.late("f.contentDocument.body.attachShadow({mode: 'open'}).innerHTML ="
                                    "'<img src=a.png width=100 height=100>'; f.contentDocument.body.style.margin = 0",
                                    "<iframe id=f></iframe>", picture()))

    def test_elements_named_like_properties_are_no_obstacle(self):
        names = "".join(f'<form name="{name}"></form><img name="{name}" hidden>' for name in
                        ("fonts", "querySelectorAll", "nodeType", "getAnimations", "timeline", "scrollingElement",
                         "documentElement", "dispatchEvent", "document", "body", "images"))
        names += '<form><input name="shadowRoot"><input name="localName"><input name="children"><img></form>'
        self.assert_green(self.late("d.innerHTML = '<img src=a.png width=100 height=100>'",
                                    "<div id=d></div>" + names, picture()))

    def test_style_sheet_and_what_it_asks_for(self):
        pdf = self.late("document.head.insertAdjacentHTML('beforeend', '<link rel=stylesheet href=one.css>')",
                        "<div id=d></div>", picture(),
                        Resource(SITE + "one.css", '@import "two.css";', "text/css"),
                        Resource(SITE + "two.css", "#d{height:100px;background:url(a.png)}", "text/css"))
        self.assert_green(pdf)

    def test_chain_of_requests(self):
        pdf = self.late("fetch('1.json').then(r => r.json()).then(j => fetch(j.next)).then(r => r.json())"
                        ".then(j => { i.src = j.next })", "<img id=i width=100 height=100>", picture(),
                        Resource(SITE + "1.json", '{"next":"2.json"}', "application/json"),
                        Resource(SITE + "2.json", '{"next":"a.png"}', "application/json"))
        self.assert_green(pdf)

    def test_page_that_asks_again_and_again(self):
        pdf = self.late("const ask = () => fetch('a.json?' + Math.random()).catch(() => setTimeout(ask, 1)); ask();",
                        "<p>Text</p>")
        self.assertIn("Text", pdf.text())


if __name__ == "__main__":
    unittest.main()
