"""The type of web archives, and the entry that converts them, as the desktop's own programs see them."""

import os
import pathlib
import plistlib
import shutil
import subprocess
import tempfile
import unittest

from pages import page, three_levels_of_frames
from tool import ToolTestCase, tool_path
from webarchive import Archive, Resource, dump

SOURCE = pathlib.Path(__file__).resolve().parents[2] / "Desktop"
TYPE = "application/x-webarchive"


class TypeTests(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.data = pathlib.Path(tempfile.mkdtemp(prefix="web2pdf-test-"))
        cls.addClassCleanup(shutil.rmtree, cls.data)
        packages = cls.data / "mime" / "packages"
        packages.mkdir(parents=True)
        shutil.copy(SOURCE / "web2pdf.xml", packages)
        environment = cls.environment()
        subprocess.run(["update-mime-database", cls.data / "mime"], check=True, env=environment)

    @classmethod
    def environment(cls):
        return {**os.environ, "XDG_DATA_HOME": str(cls.data), "LC_ALL": "C.UTF-8"}

    def type_of(self, data, name="file"):
        path = self.data / name
        path.write_bytes(data)
        told = subprocess.run(["gio", "info", "--attributes=standard::content-type", str(path)], check=True,
                              env=self.environment(), capture_output=True, text=True).stdout
        path.unlink()
        return told.rpartition("standard::content-type: ")[2].strip()

    def test_by_name(self):
        self.assertEqual(self.type_of(b"anything", "page.webarchive"), TYPE)

    def test_by_contents(self):
        for archive in (page("<p>x</p>"), three_levels_of_frames()):
            for xml in (False, True):
                with self.subTest(xml=xml):
                    self.assertEqual(self.type_of(archive.bytes(xml)), TYPE)

    def test_many_resources_before_the_page(self):
        archive = Archive(Resource("http://site.example/", b"<p>x</p>"),
                          [Resource(f"http://site.example/{number}", b"x") for number in range(1000)])
        self.assertEqual(self.type_of(archive.bytes()), TYPE)

    def test_other_property_lists_are_none(self):
        for xml in (False, True):
            for root in ({"Name": "x"}, ["Resource"], {"Main": "Web resource"}):
                with self.subTest(root, xml=xml):
                    self.assertNotEqual(self.type_of(dump(root, xml)), TYPE)

    def test_has_a_name_for_people(self):
        description = subprocess.run(["gio", "mime", TYPE], env=self.environment(), capture_output=True, text=True,
                                     check=True).stdout
        self.assertIn(TYPE, description)
        self.assertIn("<comment>Web archive</comment>", (self.data / "mime" / TYPE).with_suffix(".xml").read_text())


class EntryTests(ToolTestCase):
    def setUp(self):
        super().setUp()
        self.programs = self.folder / "programs"
        self.programs.mkdir()
        (self.folder / "shelf").mkdir()
        self.shown = self.folder / "shown"
        self.script("programs/notify-send", f"""#!/bin/sh
            while [ "$1" != -- ]; do case $1 in --urgency=*) printf '%s|' "${{1#*=}}" ;; esac; shift; done >>'{self.shown}'
            shift
            printf '%s|%s\\n' "$@" >>'{self.shown}'
            """)
        text = (SOURCE / "convert-to-pdf.in").read_text(encoding="utf-8")
        self.script("programs/convert-to-pdf", text.replace("@web2pdf_program@", tool_path()))
        self.set_preferences({"WebToolExtraLoadingTime": 0})

    def start_entry(self, *files, **more):
        path = f"{self.programs}:/usr/bin:/bin"
        done = subprocess.run([self.programs / "convert-to-pdf", *files], capture_output=True, timeout=120, check=False,
                              env=self.environment(**{"PATH": path, **more}), cwd=self.folder)
        self.assert_nothing_left()
        return done

    def notes(self):
        return self.shown.read_bytes().decode("utf-8", "surrogateescape").splitlines()

    def test_is_valid(self):
        entry = self.folder / "web2pdf.desktop"
        text = (SOURCE / "web2pdf.desktop.in").read_text(encoding="utf-8")
        entry.write_text(text.replace("@convert_to_pdf@", "/usr/libexec/web2pdf/convert-to-pdf"), encoding="utf-8")
        told = subprocess.run(["desktop-file-validate", entry], capture_output=True, text=True, check=False)
        self.assertEqual((told.returncode, told.stdout), (0, ""))
        self.assertIn(f"MimeType={TYPE};", text)

    def test_makes_a_pdf_beside_the_archive_and_says_so(self):
        archive = self.archive_file(page("<p>Text</p>"), "shelf/my page.webarchive")
        self.assertEqual(self.start_entry(archive).returncode, 0)
        pdf = self.folder / "shelf" / "my page.pdf"
        self.assertTrue(pdf.read_bytes().startswith(b"%PDF-"))
        self.assertEqual(self.notes(), [f"normal|The PDF is ready|{pdf}"])

    def test_overwrites_nothing(self):
        archive = self.archive_file(page("<p>Text</p>"), "shelf/page.webarchive")
        (self.folder / "shelf" / "page.pdf").write_bytes(b"mine")
        (self.folder / "shelf" / "page 2.pdf").symlink_to("nowhere")
        self.start_entry(archive, OutPath=str(self.folder / "elsewhere"))
        self.assertEqual((self.folder / "shelf" / "page.pdf").read_bytes(), b"mine")
        self.assertTrue((self.folder / "shelf" / "page 2.pdf").is_symlink())
        self.assertTrue((self.folder / "shelf" / "page 3.pdf").is_file())
        self.assertFalse((self.folder / "elsewhere").exists())

    def test_says_why_there_is_none(self):
        good = self.archive_file(page("<p>Text</p>"), "shelf/good.webarchive")
        bad = self.archive_file(b"no archive", "shelf/bad.webarchive")
        done = self.start_entry(bad, good)
        self.assertEqual(done.returncode, 1)
        failed, why, ready = self.notes()
        self.assertEqual(failed, f"critical|No PDF could be made|{bad}")
        answer = plistlib.loads(self.run_tool("print", bad, self.folder / "out" / "x.pdf", "1").answer)
        self.assertEqual(why, answer["errorString"])
        self.assertEqual(ready, f"normal|The PDF is ready|{self.folder / 'shelf' / 'good.pdf'}")

    def test_names_of_any_bytes(self):
        archive = os.fsencode(self.archive_file(page("<p>Text</p>"), "shelf/page.webarchive"))
        for name in (b"-n.webarchive", b"new\nline.webarchive", b"\xff.webarchive", b"$(x) `y` 'z'.webarchive"):
            with self.subTest(name):
                path = os.path.join(os.path.dirname(archive), name)
                os.rename(archive, path)
                self.assertEqual(self.start_entry(path).returncode, 0)
                os.rename(path, archive)
                pdf = path.removesuffix(b".webarchive") + b".pdf"
                self.assertTrue(os.path.isfile(pdf))
                os.unlink(pdf)

    def test_without_anything_to_show_it(self):
        self.script("programs/notify-send", "#!/bin/sh\nexit 1\n")
        bad = self.archive_file(b"no archive", "shelf/bad.webarchive")
        self.assertIn(b"No PDF could be made", self.start_entry(bad, DISPLAY=None).stderr)


if __name__ == "__main__":
    unittest.main()
