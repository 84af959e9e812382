"""web2pdf-batch --report: the page in the real engine, by mouse, keyboard and screen reader, without network."""

import base64
import json
import os
import re
import signal
import subprocess
import time
import urllib.parse

import hostile_pdfs
import processes
from pdf import PDF
from reports import CONTRASTS, HEADINGS, ReportTestCase, choice, converted, failed, heading
from webarchive import html_archive

EVIL = "\"'><script>evil()</script><img src=x onerror=evil()>"


class TableTests(ReportTestCase):
    def test_it_begins_in_the_order_of_paths(self):
        self.some()
        self.assertEqual(self.names(), ["b.webarchive", "c.webarchive", "a10.webarchive", "a9.webarchive"])
        self.assertEqual(self.sorting(), [])

    def test_sorting_by_click(self):
        self.some()
        for name, ascending, descending in (
                ("Archive", ["b", "c", "news/a9", "news/a10"], ["news/a10", "news/a9", "c", "b"]),
                ("Outcome", ["Complete", "Complete", "Failed", "Incomplete"],
                 ["Incomplete", "Failed", "Complete", "Complete"]),
                ("Missing", ["0", "0", "0", "3"], ["3", "0", "0", "0"]),
                ("Pages", ["9", "10", "", ""], ["10", "9", "", ""]),
                ("Size", ["1000", "1000", "2000000", ""], ["2000000", "1000", "1000", ""]),
                ("Time", ["20", "100", "100", "3000"], ["3000", "100", "100", "20"]),
                ("Attempts", ["1", "1", "2", "3"], ["3", "2", "1", "1"])):
            for direction, values in (("ascending", ascending), ("descending", descending)):
                with self.subTest(name, direction=direction):
                    self.click(heading(name))
                    self.assertEqual(self.sorting(), [[name, direction]])
                    self.assertEqual(self.column(1 + HEADINGS.index(name)), values)
        self.assert_quiet()

    def test_sorting_by_keyboard(self):
        self.some()
        self.evaluate(heading("Pages") + ".focus()")
        self.press("Enter")
        self.assertEqual(self.sorting(), [["Pages", "ascending"]])
        self.press(" ")
        self.assertEqual(self.sorting(), [["Pages", "descending"]])
        self.assertEqual(self.focused(), "Pages")
        self.press("Tab")
        self.assertEqual(self.focused(), "Size")

    def test_links_lead_to_the_files(self):
        names = [b"a b.pdf", b"javascript:alert(1).pdf", b"d/q?x#y%41&\"'<.pdf", b"\xff\n.pdf", "日本.pdf".encode()]
        for name in names:
            self.pdf(name)
        self.pdf(b"d/t.txt")
        self.show(*(converted(f"{number}", name.decode(errors="replace"), text="d/t.txt",
                              pdf_bytes=base64.b64encode(name).decode()) for number, name in enumerate(names)))
        links = self.evaluate("[...document.querySelectorAll('tbody a')].map(link => [link.textContent, link.href])")
        self.assertEqual([text for text, _ in links],
                         [text for number in range(5) for text in (f"PDF of {number}", f"Text of {number}")])
        paths = [urllib.parse.unquote_to_bytes(address.removeprefix("file://")) for _, address in links]
        out = os.fsencode(self.folder / "out") + b"/"
        self.assertEqual(paths, [path for name in names for path in (out + name, out + b"d/t.txt")])

    def test_pictures_of_first_pages(self):
        self.pdf("good.pdf")
        self.pdf("bad.pdf", b"%PDF-1.7 bad")
        self.show(converted("bad", "bad.pdf"), converted("good", "good.pdf"))
        self.assertEqual(self.evaluate("[...document.images].map(i => [i.alt, i.naturalWidth])"),
                         [["First page of good", 192]])
        self.assertEqual(self.evaluate("document.querySelector('.picture').textContent"), "No picture")

    def test_every_resource_that_is_known_to_be_missing_can_be_read(self):
        self.some()
        details = "document.querySelector('details')"
        self.assertEqual(self.evaluate(details + ".textContent"),
                         "3 resources missingimage: https://site.example/Lost.pngscript: javascript:alert(1)and 1 more")
        self.assertEqual(self.evaluate(details + ".querySelector('li').checkVisibility()"), False)
        self.click(details + ".querySelector('summary')")
        self.assertEqual(self.evaluate(details + ".querySelector('li').checkVisibility()"), True)


class ChoiceTests(ReportTestCase):
    def test_searching(self):
        self.some()
        self.assertEqual(self.found(), "4 of 4 archives")
        for text, names in (("A10", ["a10.webarchive"]), ("news", ["a10.webarchive", "a9.webarchive"]),
                            ("broken some.domain", ["c.webarchive"]), ("LOST.PNG", ["a10.webarchive"]),
                            ("  ", ["b.webarchive", "c.webarchive", "a10.webarchive", "a9.webarchive"]),
                            ("<script>", []), (".*", [])):
            with self.subTest(text):
                self.search(text)
                self.assertEqual(self.names(), names)
                self.assertEqual(self.found(), f"{len(names)} of 4 archives")
        self.assert_quiet()

    def test_searching_ignores_how_letters_are_composed(self):
        self.show(converted("Gro\u0308ße", "a.pdf"))
        self.search("GRÖ")
        self.assertEqual(len(self.names()), 1)

    def test_filtering(self):
        self.some()
        self.assertEqual(self.evaluate("[...document.querySelectorAll('fieldset label')].map(l => l.textContent)"),
                         ["All 4", "Complete 2", "Incomplete 1", "Failed 1"])
        for name, names in (("Failed", ["c.webarchive"]), ("Incomplete", ["a10.webarchive"]),
                            ("Complete", ["b.webarchive", "a9.webarchive"])):
            self.click(choice(name))
            self.assertEqual(self.names(), names)
            self.assertEqual(self.evaluate("[...document.querySelectorAll('tr')].filter(row => row.checkVisibility())"
                                           ".length"), 1 + len(names))
        self.search("a9")
        self.assertEqual(self.names(), ["a9.webarchive"])
        self.click(heading("Archive"))
        self.assertEqual(self.names(), ["a9.webarchive"])
        self.assertEqual(self.found(), "1 of 4 archives")

    def test_enter_in_the_search_field_keeps_the_page(self):
        self.some()
        self.search("a9")
        self.press("Enter")
        self.assertEqual(self.names(), ["a9.webarchive"])
        self.assert_quiet()

    def test_without_scripts_all_is_there_but_what_needs_them(self):
        self.some()
        self.page.call("Emulation.setScriptExecutionDisabled", value=True)
        self.page.call("Page.navigate", url="about:blank")
        self.page.call("Page.navigate", url=self.report.as_uri())
        while self.evaluate("document.readyState + document.links.length") != "complete1":
            pass
        self.assertEqual(len(self.names()), 4)
        self.assertEqual(self.evaluate("document.querySelector('form').checkVisibility()"), False)
        self.assertEqual(self.evaluate("document.querySelectorAll('button').length"), 0)
        self.assertEqual(self.evaluate("[...document.querySelectorAll('thead th')].map(th => th.textContent)"),
                         ["First page"] + HEADINGS)


class AccessTests(ReportTestCase):
    def tree(self):
        """Role and name of all that a screen reader is told of."""
        nodes = self.page.call("Accessibility.getFullAXTree")["nodes"]
        return [(node["role"]["value"], node.get("name", {}).get("value", "")) for node in nodes if not node["ignored"]]

    def test_what_a_screen_reader_is_told(self):
        self.pdf("b.pdf")
        self.some()
        tree = self.tree()

        def of(role):
            return [name for found, name in tree if found == role]

        self.assertEqual(of("table"), ["Archives"])
        self.assertEqual(of("columnheader"), ["First page"] + HEADINGS)
        self.assertEqual(of("button"), HEADINGS)
        self.assertEqual(of("rowheader"), ["b.webarchive PDF of b.webarchive", "c.webarchive", "news/a10.webarchive",
                                           "news/a9.webarchive"])
        self.assertEqual(len(of("row")), 5)
        self.assertEqual(of("searchbox"), ["Search in names and reasons"])
        self.assertEqual(of("search"), [""])
        self.assertIn("Show", of("group"))
        self.assertEqual(of("radio"), ["All 4", "Complete 2", "Incomplete 1", "Failed 1"])
        self.assertEqual(of("status"), [""])
        self.assertEqual(of("image"), ["First page of b.webarchive"])
        self.assertEqual(of("link"), ["Skip to the list of archives", "PDF of b.webarchive"])
        self.assertEqual(of("heading"), ["Web archives to PDF"])
        self.assertEqual(of("banner") + of("main"), ["", ""])

    def test_cards_are_still_a_table(self):
        self.some()
        self.look(width=400)
        roles = [role for role, _ in self.tree()]
        self.assertEqual([roles.count(role) for role in ("table", "row", "columnheader", "rowheader", "cell")],
                         [1, 5, 8, 4, 28])

    def test_the_keyboard_reaches_all_and_shows_where_it_is(self):
        self.pdf("b.pdf")
        self.some()
        reached = []
        for _ in range(12):
            self.press("Tab")
            reached.append(self.focused())
            self.assertTrue(self.evaluate(
                "(() => { const element = document.activeElement; const box = element.getBoundingClientRect();"
                "const shown = element.type === 'radio' ? element.nextElementSibling : element;"
                "return element.matches(':focus-visible') && getComputedStyle(shown).outlineStyle === 'solid'"
                "    && parseFloat(getComputedStyle(shown).outlineWidth) >= 2"
                "    && box.width > 10 && box.top >= 0 && box.bottom <= innerHeight; })()"), reached)
        self.assertEqual(reached[0], "Skip to the list of archives")
        self.assertEqual(reached[1], "search")
        self.assertEqual(reached[3:10], HEADINGS)
        self.assertEqual(reached[10:12], ["PDF of b.webarchive", "3 resources missing"])

    def test_the_skip_link_leads_to_the_table(self):
        self.some()
        self.press("Tab")
        self.press("Enter")
        self.assertEqual(self.focused()[:8], "Archives")

    def test_contrast(self):
        self.pdf("b.pdf")
        self.some()
        self.evaluate("document.querySelector('details').open = true")
        for scheme in ("light", "dark"):
            for width in (1280, 400):
                self.look(scheme, width)
                contrasts = self.evaluate(CONTRASTS)
                self.assertGreater(len(contrasts), 70)
                with self.subTest(scheme, width=width):
                    self.assertEqual([one for one in contrasts if one[1] < one[2]], [])

    def test_the_schemes_differ(self):
        self.some()
        grounds = []
        for scheme in ("light", "dark"):
            self.look(scheme)
            grounds.append(self.page.colour("body", "backgroundColor"))
        light, dark = (sum(map(int, re.findall(r"\d+", ground))) for ground in grounds)
        self.assertGreater(light, 600)
        self.assertLess(dark, 100)

    def test_nothing_moves(self):
        self.some()
        self.click(choice("Failed"))
        self.click(heading("Pages"))
        self.assertEqual(self.evaluate("document.getAnimations().length"), 0)
        self.assertEqual(self.evaluate("[...new Set([...document.querySelectorAll('*')].flatMap(element => {"
                                       "const style = getComputedStyle(element);"
                                       "return [style.transitionDuration, style.scrollBehavior]; }))]"), ["0s", "auto"])

    def test_narrow_pages_need_no_scrolling_sideways(self):
        self.show(converted("folder/" + "long" * 60, "a.pdf", missing_count=1, missing=[
            {"kind": "image", "address": "https://site.example/" + "a" * 400}]), failed("x", "Word" * 100))
        self.evaluate("document.querySelector('details').open = true")
        for width in (320, 600, 900, 1280):
            self.look(width=width)
            self.assertLessEqual(self.evaluate("document.documentElement.scrollWidth"), width)
            self.assertEqual(self.evaluate("[...document.querySelectorAll('tbody *')].filter(e => e.checkVisibility()"
                                           f" && e.getBoundingClientRect().right > {width}).length"), 0)

    def test_on_paper_all_is_there_but_the_controls(self):
        self.some()
        self.look("dark")
        printed = self.folder / "printed.pdf"
        printed.write_bytes(base64.b64decode(self.page.call("Page.printToPDF", printBackground=True)["data"]))
        text = PDF(printed).text()
        for part in ("a10.webarchive", "It is broken.", "Some.Domain 7", "https://site.example/Lost.png"):
            self.assertIn(part, text)
        self.assertNotIn("Search", text)


class HostileTests(ReportTestCase):
    def test_records_are_text(self):
        self.pdf("a.pdf")
        turning = "\u202egpj.\u2066exe\u0007\u001b[31m\n"
        self.show(converted(EVIL, "a.pdf", missing_count=1, missing=[{"kind": EVIL, "address": "javascript:evil()"}]),
                  failed(turning + EVIL, EVIL + turning, error_domain=EVIL, finished="9" + EVIL))
        self.assertEqual(self.evaluate("[document.scripts.length, document.images.length, document.links.length,"
                                       "document.querySelectorAll('a[href^=javascript], [onerror]').length]"),
                         [1, 1, 2, 0])
        self.assertEqual(self.evaluate("document.body.textContent.search(/[\\u0000-\\u0009\\u000b-\\u001f\\u202a-\\u202e"
                                       "\\u2066-\\u2069]/)"), -1)
        self.assertEqual(self.names(), ["script><img src=x onerror=evil()>"] * 2)
        self.search("<script>evil()")
        self.assertEqual(len(self.names()), 2)
        self.assert_quiet()

    def test_injected_scripts_and_styles_would_not_run(self):
        """The policy holds even if something slipped through."""
        self.some()
        self.page.evaluate("document.body.insertAdjacentHTML('beforeend', '<img src=https://site.example/x.png "
                           "onerror=\"document.title=1\"><b id=b style=\"color:red\">x</b>'); new Promise(setTimeout)")
        self.assertEqual(self.evaluate("document.title"), "3 of 4 converted – web archives to PDF")
        self.assertEqual(self.page.colour("#b"), self.page.colour("body"))
        self.assertEqual([request for request in self.page.told("Network.requestWillBeSent")
                          if "site.example" in request["request"]["url"] and
                          not any(failure["requestId"] == request["requestId"] and failure.get("blockedReason") == "csp"
                                  for failure in self.page.told("Network.loadingFailed"))], [])

    def test_damaged_numbers(self):
        large = 2**63 - 1
        self.show(converted("a", "a.pdf", pages=large, pdf_size=large, milliseconds=large, missing_count=large,
                            attempts=large), converted("b", "b.pdf", pages=-1, pdf_size=-1, milliseconds=-1,
                                                       missing_count=-1, attempts=-1))
        self.click(heading("Pages"))
        self.assertEqual(self.names(), ["b", "a"])

    def test_paths_outside_the_folder_are_not_looked_at(self):
        (self.folder / "secret.pdf").write_bytes(hostile_pdfs.plain())
        self.show(converted("a", "../secret.pdf"), converted("b", str(self.folder / "secret.pdf")))
        self.assertEqual(self.evaluate("[...document.images, ...document.querySelectorAll('tbody a')].length"), 0)

    def test_hostile_documents(self):
        cases = {name: hostile_pdfs.CASES[name]() for name in list(hostile_pdfs.CASES)[:6]}
        for name, data in cases.items():
            self.pdf(name + ".pdf", data)
        self.pdf("z.pdf")
        self.show(*(converted(name, name + ".pdf") for name in [*cases, "z"]))
        self.assertEqual(len(self.names()), 7)
        self.assertIn("First page of z", self.evaluate("[...document.images].map(image => image.alt)"))


class ManyTests(ReportTestCase):
    def test_ten_thousand(self):
        self.show(*(converted(f"site/{number * 7919 % 10000}.webarchive", f"{number}.pdf", pages=number % 97)
                    if number % 10 else failed(f"site/{number * 7919 % 10000}.webarchive") for number in range(10000)))
        self.assertEqual(self.found(), "10,000 of 10,000 archives")
        last = "document.querySelector('tbody tr:last-child')"
        shown = last + ".querySelector('b').checkVisibility({ contentVisibilityAuto: true })"
        # What is out of sight costs nothing, until it is looked at.
        self.assertEqual(self.evaluate(shown), False)
        self.evaluate(last + ".scrollIntoView()")
        while not self.evaluate(shown):
            self.page.picture()
        self.assertTrue(self.evaluate(f"(() => {{ const box = {last}.getBoundingClientRect();"
                                      "return box.top >= 0 && box.bottom <= innerHeight; })()"))
        self.click(heading("Archive"))
        self.assertEqual(self.names(), [f"{number}.webarchive" for number in range(10000)])
        self.click(heading("Archive"))
        self.assertEqual(self.names()[0], "9999.webarchive")
        self.click(choice("Failed"))
        self.assertEqual(self.found(), "1,000 of 10,000 archives")
        self.search("123")
        self.assertEqual(self.found(), "1 of 10,000 archives")
        self.assert_quiet()


class FolderTests(ReportTestCase):
    def test_the_last_result_of_each_pdf_counts(self):
        self.show(failed("a", pdf="a.pdf"), converted("a", "a.pdf", finished="2026-11-24T00:00:00Z"), failed("b"))
        self.assertEqual(self.evaluate("[...document.querySelectorAll('tbody strong')].map(s => s.textContent)"),
                         ["Complete", "Failed"])

    def test_without_results_there_is_no_report(self):
        self.assertIn("there are no results in", self.make(status=1))
        self.assertFalse(self.report.exists())

    def test_a_report_that_cannot_be_written_is_refused_before_anything_is_done(self):
        self.report.mkdir()
        self.assertIn("Is a directory", self.make(converted("a", "a.pdf"), status=2))

    def test_a_run_reports_on_its_own_archives(self):
        self.make(failed("elsewhere"))
        source = self.folder / "in"
        source.mkdir()
        html_archive("<p>Text").write(source / "good.webarchive")
        (source / "bad.webarchive").write_text("bad")
        done = subprocess.run([os.environ["WEB2PDF_BATCH"], "-q", "-o", self.folder / "out", "--text",
                               "--tool", os.environ["WEB2PDF_TOOL"], "--report", self.report, source],
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=300)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (1, b"", b""))
        self.page = self.browser.open(self.report)
        self.assertEqual(self.names(), ["bad.webarchive", "good.webarchive"])
        self.assertEqual(self.evaluate("[...document.querySelectorAll('tbody a')].map(a => a.firstChild.data)"),
                         ["PDF", "Text"])
        self.assertEqual(len(self.evaluate("[...document.images].map(image => image.alt)")), 1)
        self.assert_quiet()

    def test_a_signal_ends_it_without_a_report(self):
        self.pdf("a.pdf")
        (self.folder / "out" / "web2pdf-batch.jsonl").write_text(json.dumps(converted("a", "a.pdf")) + "\n")
        stand_in = self.folder / "bin" / "pdftoppm"
        stand_in.parent.mkdir()
        stand_in.write_text("#!/bin/sh\nexec sleep 600\n")
        stand_in.chmod(0o755)
        run = subprocess.Popen([os.environ["WEB2PDF_BATCH"], "-o", self.folder / "out", "--report", self.report],
                               env={**os.environ, "PATH": f"{stand_in.parent}:{os.environ['PATH']}",
                                    "OF_THIS_TEST": str(self.folder)})
        while "sleep" not in processes.descendants(run.pid).values():
            self.assertIsNone(run.poll())
            time.sleep(0.01)
        run.send_signal(signal.SIGTERM)
        self.assertEqual(run.wait(60), 130)
        self.assertFalse(self.report.exists())
        self.assertEqual(processes.carrying("OF_THIS_TEST", str(self.folder)), {})
