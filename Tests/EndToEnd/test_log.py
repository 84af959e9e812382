"""The log of a run: the loader's lines with the default settings, in their order."""

import re
import unittest
from datetime import datetime

from images import png
from pages import RED, SITE, frame_archive, page
from tool import LINE, TOOL_DOMAIN, ToolTestCase
from webarchive import Resource

FRAME = re.compile(r"    (<.+?>): dataSource (\S+) \((\S+)\); provisionalDataSource: (\S+) \((\S+)\)")

# One letter for each kind of line, so that the order of a run reads as a word.
KINDS = {
    "S": r"didStartProvisionalLoadForFrame: <.+> \S+",
    "n": r"Loading 0 objects:",
    "L": r"Loading [1-9]\d* objects:",
    "f": FRAME.pattern,
    "F": r"didFinishLoadForFrame: <.+>",
    "P": r"Progress finished",
    "x": r"Extra wait in loop for WebView to finish loading: \(null\)",
    "X": r"Extra wait in loop for WebView to finish loading: \d{4}-\d\d-\d\d .+",
    "D": r"done loading: \(\s*\)",
    "E": r"finish with error: \(null\)",
}


def word(messages):
    letters = ""
    for message in messages:
        kinds = [letter for letter, pattern in KINDS.items() if re.fullmatch(pattern, message, re.DOTALL)]
        letters += kinds[0] if len(kinds) == 1 else "?"
    return letters


class LogTests(ToolTestCase):
    def setUp(self):
        super().setUp()
        self.archive = page("<p>Text</p>")

    def test_default_run(self):
        run = self.convert(self.archive, quick=False)
        letters = word(run.log.messages)
        self.assertRegex(letters, r"^S(Lf)+(FP|PF)?x(nX)+DE$|^S(Lf)+F(P?)x(P?)(nX)+DE$", run.log.text)
        self.assertEqual(letters.count("P"), 1)
        self.assertEqual([entry for entry in run.log.entries if not entry.startswith("[LogWeb2PDF] ")], [])

    def test_extra_time_is_two_seconds_by_default(self):
        run = self.convert(self.archive, quick=False)
        times = [(datetime.strptime(line[:23], "%Y-%m-%d %H:%M:%S.%f"), LINE.match(line).group(1))
                 for line in run.log.text.splitlines() if LINE.match(line)]
        begin = next(time for time, text in times if "(null)" in text)
        end = next(time for time, text in times if "done loading" in text)
        self.assertGreaterEqual((end - begin).total_seconds(), 2.0)
        self.assertLess((end - begin).total_seconds(), 5.0)
        self.assertGreaterEqual(word(run.log.messages).count("X"), 8)

    def test_frame_is_told_by_the_same_text_throughout(self):
        run = self.convert(self.archive)
        messages = run.log.messages
        started = re.fullmatch(r"didStartProvisionalLoadForFrame: (<.+>) (\S+)", messages[0])
        self.assertEqual(started.group(2), SITE + "page.html")
        listed = next(found for message in messages if (found := FRAME.fullmatch(message)))
        finished = next(message for message in messages if message.startswith("didFinishLoadForFrame: "))
        self.assertEqual(listed.group(1), started.group(1))
        self.assertEqual(finished, "didFinishLoadForFrame: " + started.group(1))

    def test_first_pass_lists_the_frame_with_its_provisional_source(self):
        messages = self.convert(self.archive).log.messages
        listed = FRAME.fullmatch(messages[2])
        self.assertTrue(listed, messages[2])
        self.assertEqual(listed.group(4), SITE + "page.html")

    def test_no_extra_time_ends_in_the_first_empty_pass(self):
        letters = word(self.convert(self.archive).log.messages)
        self.assertEqual((letters.count("x"), letters.count("X"), letters.count("n")), (1, 0, 0), letters)

    def test_extra_time_from_the_settings(self):
        self.set_preferences({"WebToolExtraLoadingTime": 4})
        letters = word(self.convert(self.archive, quick=False).log.messages)
        self.assertGreaterEqual(letters.count("X"), 14)

    def test_sub_frames_are_told_apart(self):
        archive = page('<iframe src="one.html"></iframe><iframe src="two.html"></iframe>')
        archive.add_frame(frame_archive(None, SITE + "one.html", "One"), frame_archive(None, SITE + "two.html", "Two"))
        messages = self.convert(archive).log.messages
        started = dict(reversed(re.fullmatch(r"didStartProvisionalLoadForFrame: (<.+>) (\S+)", message).groups())
                       for message in messages if message.startswith("didStart"))
        self.assertEqual(set(started), {SITE + "page.html", SITE + "one.html", SITE + "two.html"})
        self.assertEqual(len(set(started.values())), 3)
        finished = [message[len("didFinishLoadForFrame: "):] for message in messages
                    if message.startswith("didFinishLoadForFrame: ")]
        self.assertEqual(sorted(finished), sorted(started.values()))
        self.assertEqual(finished[-1], started[SITE + "page.html"])

    def test_blank_frames_are_started_and_never_waited_for(self):
        messages = self.convert(page('<iframe src="about:blank"></iframe>')).log.messages
        frame = [found.group(1) for message in messages
                 if (found := re.fullmatch(r"didStartProvisionalLoadForFrame: (<.+>) about:blank", message))]
        self.assertEqual(len(frame), 1, messages)
        self.assertEqual([message for message in messages if message.startswith("    " + frame[0])], [])

    def test_frame_that_fails_is_logged_and_costs_nothing(self):
        archive = page('<p>Around</p><iframe src="http://other.example/missing.html"></iframe>')
        run = self.convert(archive)
        self.assertTrue([message for message in run.log.messages
                         if re.match(r"didFail(Provisional)?LoadWithError: <NSError Domain=NSURLErrorDomain", message)],
                        run.log.text)
        self.assertIn("Around", run.pdf.text())

    def test_failure_names_domain_and_code(self):
        message = self.run_tool("screen").log.messages[-1]
        self.assertRegex(message, rf"^finish with error: .*{re.escape(TOOL_DOMAIN)}.*1")

    def test_line_for_the_journal_alone_changes_nothing_here(self):
        plain = word(self.convert(self.archive).log.messages)
        marked = word(self.convert(self.archive, environment=self.environment(QRVIsInXcode=1)).log.messages)
        self.assertEqual(plain.replace("Lf", ""), marked.replace("Lf", ""))


class MissingResourcesTests(ToolTestCase):
    """One line of the platform says what the page asked for and the archive did not hold."""

    def missing(self, archive, **options):
        run = self.convert(archive, **options)
        notes = [note for note in run.log.notes if note.startswith("the archive does not hold ")]
        self.assertLessEqual(len(notes), 1)
        self.assertEqual(notes, run.log.notes)
        self.assertNotIn("?", word(run.log.messages), run.log.text)
        if not notes:
            return None
        count, names = re.fullmatch(r"the archive does not hold (\d+) resources? that the page asked for: (.+)",
                                    notes[0]).groups()
        return int(count), names.split(", ")

    def test_nothing_missing_is_no_line(self):
        archive = page('<img src="a.png"><a href="http://other.example/">Not asked for</a>')
        self.assertIsNone(self.missing(archive.add(Resource(SITE + "a.png", png(2, 2, RED), "image/png"))))

    def test_each_once_with_its_kind(self):
        archive = page('<img src="a.png"><img src="a.png"><script src="b.js"></script>'
                       '<p style="font-family:F;background:url(d.png)">x</p><video poster="e.png"></video>'
                       "<script>fetch('g.json').catch(() => 0)</script>",
                       head='<link rel="stylesheet" href="c.css">'
                            "<style>@font-face{font-family:F;src:url(f.woff2)}</style>")
        for mode in ("screen", "print"):
            with self.subTest(mode):
                count, names = self.missing(archive, mode=mode)
                self.assertEqual(sorted(names), sorted(
                    f"{kind} {SITE}{name}" for kind, name in
                    (("image", "a.png"), ("script", "b.js"), ("style sheet", "c.css"), ("image", "d.png"),
                     ("image", "e.png"), ("font", "f.woff2"), ("data", "g.json"))))
                self.assertEqual(count, 7)

    def test_stored_address_is_named(self):
        self.assertEqual(self.missing(page('<img src="a.png">', "feed-reader://site.example/item/7")),
                         (1, ["image feed-reader://site.example/item/a.png"]))

    def test_many_are_counted_and_some_named(self):
        body = "".join(f'<img src="{number}.png">' for number in range(300))
        count, names = self.missing(page(body))
        self.assertEqual((count, len(names), names[-1]), (300, 21, "and more"))

    def test_hostile_addresses_stay_on_the_line(self):
        url = "feed-reader://site.example/a\n2026-11-21 00:00:00.000 [org.quillvane.web2pdf] [LogWeb2PDF] forged/"
        count, names = self.missing(page(f'<img src="b%0Ac{"d" * 5000}"><img src="%s%n">', url))
        self.assertEqual(count, 2)
        self.assertEqual([name for name in names if len(name) > 250], [])


class SettingsTests(ToolTestCase):
    """Where settings come from, told by the number of passes that the extra time takes."""

    def passes(self, **options):
        run = self.convert(page("<p>Text</p>"), quick=False, **options)
        return word(run.log.messages).count("X")

    def test_both_forms_of_the_file(self):
        for binary in (False, True):
            with self.subTest(binary=binary):
                self.set_preferences({"WebToolExtraLoadingTime": 0}, binary=binary)
                self.assertEqual(self.passes(), 0)

    def test_settings_of_the_machine(self):
        self.set_preferences({"WebToolExtraLoadingTime": 0}, root="config-of-the-machine")
        self.assertEqual(self.passes(), 0)

    def test_ones_own_come_before_those_of_the_machine(self):
        self.set_preferences({"WebToolExtraLoadingTime": 5}, root="config-of-the-machine")
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        self.assertEqual(self.passes(), 0)

    def test_settings_for_all_programs(self):
        self.set_preferences({"WebToolExtraLoadingTime": 0}, domain=".GlobalPreferences")
        self.assertEqual(self.passes(), 0)

    def test_folder_in_the_home(self):
        self.set_preferences({"WebToolExtraLoadingTime": 0}, root="other/.config")
        environment = self.environment(XDG_CONFIG_HOME=None, HOME=self.folder / "other")
        self.assertEqual(self.passes(environment=environment), 0)

    def test_number_written_as_text(self):
        self.set_preferences({"WebToolExtraLoadingTime": "0"})
        self.assertEqual(self.passes(), 0)

    def test_value_of_a_wrong_kind_is_the_default(self):
        self.set_preferences({"WebToolExtraLoadingTime": [0], "Web2PDFPageMargin": {}})
        self.assertGreaterEqual(self.passes(mode="print"), 8)

    def test_unreadable_file_counts_as_empty(self):
        folder = self.folder / "config" / "preferences"
        folder.mkdir()
        (folder / "org.quillvane.Quillvane.plist").write_bytes(b"bplist00 nothing of the kind")
        self.assertGreaterEqual(self.passes(), 8)


if __name__ == "__main__":
    unittest.main()
