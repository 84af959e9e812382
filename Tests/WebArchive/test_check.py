"""webarchive check: whether a file is a web archive, and what is wrong with it."""

import json

import samples
from program import FAILURE, SUCCESS, ProgramTestCase
from webarchive import Archive, Resource, dump, html_archive, malformed


def with_losses():
    """An archive of which parts are left out."""
    frame = html_archive("<p>Frame</p>").plist()
    frame["WebSubresources"] = [{"WebResourceMIMEType": "a/b", "WebResourceURL": "http://h/"}]
    root = html_archive("<p>Page</p>").plist()
    root["WebSubframeArchives"] = [{}, frame]
    root["WebMainResource"]["WebResourceTextEncodingName"] = 7
    return dump(root)


class CheckTests(ProgramTestCase):
    def check(self, archive, *options, status=SUCCESS):
        return self.run_program("check", *options, self.file(archive), status=status).text

    def json(self, archive, *options, status=SUCCESS):
        return json.loads(self.check(archive, "--json", *options, status=status))

    def test_good_archives(self):
        for archive in (samples.with_frames(), samples.with_duplicates(), html_archive("x")):
            for xml in (False, True):
                text = self.run_program("check", "--strict", self.file(archive, xml=xml)).text
                self.assertRegex(text, r"^\S+ is a web archive of \d+ resources? and \d+ frames?\n$")
        self.assertEqual(self.json(samples.with_frames()),
                         {"isArchive": True, "frames": 3, "resources": 8, "problemCount": 0, "problems": []})

    def test_files_that_are_none_say_why(self):
        for name, data in malformed().items():
            with self.subTest(name):
                verdict = self.json(data, status=FAILURE)
                self.assertIs(verdict["isArchive"], False)
                self.assertEqual({problem["lost"] for problem in verdict["problems"]}, {"archive"})
                self.assertRegex(self.check(data, status=FAILURE), r"^\S+ is no web archive\n(  \S+: .+\n)+$")

    def test_places(self):
        for name, place, reason in (
                ("main resource missing", "WebMainResource", "is missing"),
                ("main resource data is a string", "WebMainResource.WebResourceData", "is no data"),
                ("subresource is a string", "WebSubresources[1]", "is no dictionary"),
                ("sub-frames is a string", "WebSubframeArchives", "is no array"),
                ("root is an array", "", "is a property list, but no dictionary")):
            with self.subTest(name):
                self.assertEqual(self.json(malformed()[name], status=FAILURE)["problems"],
                                 [{"place": place, "reason": reason, "lost": "archive"}])
        broken = self.json(malformed()["offset table out of range"], status=FAILURE)["problems"]
        self.assertRegex(broken[0]["reason"], r" at byte \d+$")

    def test_what_is_left_out_is_told_and_no_failure(self):
        verdict = self.json(with_losses())
        self.assertEqual((verdict["isArchive"], verdict["frames"], verdict["resources"], verdict["problemCount"]),
                         (True, 1, 2, 3))
        self.assertEqual([(problem["place"], problem["lost"]) for problem in verdict["problems"]], [
            ("WebMainResource.WebResourceTextEncodingName", "field"),
            ("WebSubframeArchives[0].WebMainResource", "frame"),
            ("WebSubframeArchives[1].WebSubresources[0].WebResourceData", "resource")])
        self.assertIn("\n  WebSubframeArchives[0].WebMainResource: is missing; the frame is left out\n",
                      self.check(with_losses()))

    def test_strict_takes_it_for_a_failure(self):
        self.assertEqual(self.check(with_losses(), "--strict", status=FAILURE), self.check(with_losses()))
        self.assertEqual(self.json(with_losses(), "--strict", status=FAILURE)["problemCount"], 3)

    def test_limits(self):
        self.assertEqual(self.json(samples.many_resources(250_001))["problems"],
                         [{"place": "WebSubresources[250000]", "reason": "is beyond 250,000 resources",
                           "lost": "rest"}])
        deep = self.json(samples.nested(70))
        self.assertEqual((deep["frames"], deep["problemCount"]), (64, 1))
        self.assertEqual(deep["problems"][0]["reason"], "is nested more than 64 deep")

    def test_very_many_problems_are_counted(self):
        root = {**html_archive("x").plist(), "WebSubresources": [{}] * 100_000}
        self.assertEqual(self.json(dump(root))["problemCount"], 200_000)
        self.assertTrue(self.check(dump(root)).endswith("\n  and 199000 more problems\n"))

    def test_names_of_files_are_harmless(self):
        path = self.folder / samples.ESCAPES
        path.write_bytes(Archive(Resource("http://h/", "x")).bytes())
        text = self.run_program("check", path).text
        self.assertRegex(text, "^[^\x00-\x09\x0b-\x1f\x7f-\x9f\u202a-\u202e\u2066-\u2069]+\n$")

    def test_files_that_cannot_be_read(self):
        self.assert_fails("no such file", "check", "missing")
        self.assert_fails("", "check", self.folder)
