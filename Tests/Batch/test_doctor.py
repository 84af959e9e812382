"""web2pdf-batch --doctor: what it finds on this machine, and on one that refuses this or that."""

import json
import os
import pty
import shutil
import signal
import subprocess

import confinement
import engine
import processes
from tool import ToolTestCase, tool_path

SOME_FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"
FONT_CONFIGURATION = "<?xml version='1.0'?><fontconfig><dir>%s</dir></fontconfig>"


class DoctorTestCase(ToolTestCase):
    def setUp(self):
        super().setUp()
        self.set_preferences({"WebToolExtraLoadingTime": 0})

    def run_doctor(self, *arguments, status=0, environment=None, **options):
        """What the program wrote, after the exit status that is expected."""
        done = subprocess.run([os.environ["WEB2PDF_BATCH"], "--doctor", *arguments], stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, env=environment or self.environment(), cwd=self.folder,
                              timeout=200, check=False, **options)
        self.assertEqual((done.returncode, done.stderr), (status, ""), done.stdout)
        self.assert_nothing_left()
        return done.stdout

    def examine(self, *arguments, status=0, **options):
        """The findings, by area and check; of several the last."""
        answer = json.loads(self.run_doctor("--json", *arguments, status=status, **options))
        found = {(one["area"], one["check"]): one for one in answer["findings"]}
        marks = [one["mark"] for one in answer["findings"]]
        self.assertEqual(answer["fit"], status == 0)
        self.assertEqual((answer["problems"], answer["notes"]), (marks.count("problem"), marks.count("note")))
        return found

    def assert_marks(self, found, area, mark, besides=()):
        for (other, check), finding in found.items():
            if other == area and check not in besides:
                self.assertEqual(finding["mark"], mark, finding)


class MachineTests(DoctorTestCase):
    def assert_confined(self, found):
        self.assert_marks(found, "isolation", "ok", besides=("remark",))
        self.assertEqual(found["isolation", "network"]["tried"], 7)
        self.assertFalse(found["isolation", "network"]["called"])
        self.assertEqual(found["isolation", "interfaces"]["interfaces"], "")
        self.assertLessEqual({"ipc", "mnt", "net", "pid"},
                             set(found["isolation", "namespaces"]["own"].split(", ")))
        self.assertTrue(found["isolation", "engine's own sandbox"]["works"])

    def test_as_it_is(self):
        found = self.examine()
        self.assert_marks(found, "engine", "ok")
        self.assert_confined(found)
        self.assertRegex(found["engine", "version"]["version"], r"^\d+(\.\d+){3}$")
        self.assertEqual(found["engine", "tool"]["path"], os.path.realpath(tool_path()))
        self.assertEqual(found["paper", "default"]["name"], "letter")
        self.assertEqual(found["paper", "default"]["source"], "PAPERSIZE")
        self.assertGreater(found["machine", "processors"]["jobs"], 0)
        self.assertEqual(found["machine", "temporary files"]["folder"], str(self.folder / "tmp"))

    def test_fonts_that_the_project_names_cover_all_samples(self):
        found = self.examine()
        self.assert_marks(found, "fonts", "ok")
        self.assertIn("NotoSansThai", found["fonts", "Thai"]["fonts"])
        self.assertIn("CJK", found["fonts", "Japanese"]["fonts"])
        self.assertIn("Emoji", found["fonts", "Emoji"]["fonts"])

    def test_as_an_ordinary_user(self):
        options = self.as_nobody()
        tool = options.pop("executable", tool_path())
        batch = self.folder / "web2pdf-batch"
        shutil.copy(os.environ["WEB2PDF_BATCH"], batch)
        found = self.examine("--tool", tool, executable=str(batch), **options)
        self.assert_confined(found)
        self.assertIn("user", found["isolation", "namespaces"]["own"].split(", "))

    def test_text_is_for_people_and_without_colours_in_a_file(self):
        text = self.run_doctor()
        self.assertIn("\nisolation\n  ok       network ", text)
        self.assertIn("Conversions work here: 0 problems, ", text)
        self.assertNotIn("\033", text)

    def test_colours_are_for_terminals_and_not_for_all(self):
        for environment, is_coloured in (({}, True), ({"NO_COLOR": "1"}, False)):
            terminal, end = pty.openpty()
            self.addCleanup(os.close, terminal)
            child = subprocess.Popen([os.environ["WEB2PDF_BATCH"], "--doctor", "--tool", "/nonexistent"], stdout=end,
                                     env=self.environment(**environment))
            os.close(end)
            text = b""
            try:
                while part := os.read(terminal, 65536):
                    text += part
            except OSError:    # how the end of a terminal is told
                pass
            self.assertEqual(child.wait(), 1)
            self.assertIn(b"problem", text)
            self.assertEqual(b"\033[1;31mproblem" in text, is_coloured)


class TroubleTests(DoctorTestCase):
    def assert_no_conversion(self, found):
        self.assertEqual(found["engine", "conversion"]["mark"], "problem")
        self.assertEqual(found["fonts", "all"]["mark"], "note")

    def test_no_engine(self):
        found = self.examine(status=1, environment=self.environment(WEB2PDF_ENGINE="/nonexistent\033[2J"))
        self.assertEqual(found["engine", "program"]["mark"], "problem")
        self.assertIn("/nonexistent", found["engine", "program"]["text"])
        self.assertIn("unset it", found["engine", "program"]["advice"])
        self.assert_no_conversion(found)
        text = self.run_doctor(status=1, environment=self.environment(WEB2PDF_ENGINE="/nonexistent\033[2J"))
        self.assertNotIn("\033", text)
        self.assertIn("Conversions do not work here as they must", text)

    def test_engine_that_dies(self):
        script = self.script("engine", engine.DIES_AT_ONCE)
        found = self.examine(status=1, environment=self.environment(WEB2PDF_ENGINE=script))
        self.assertEqual(found["engine", "program"]["found"], "variable")
        self.assert_no_conversion(found)
        self.assertIn("exited with status 1", found["engine", "conversion"]["text"])

    def test_no_tool(self):
        found = self.examine("--tool", "/nonexistent", status=1)
        self.assertEqual(found["engine", "tool"]["mark"], "problem")
        self.assert_no_conversion(found)

    def test_tool_that_does_not_answer(self):
        found = self.examine("--tool", self.script("tool", "#!/bin/sh\nexit 0\n"), status=1)
        self.assertIn("without an answer", found["engine", "conversion"]["text"])

    def test_end_by_a_signal(self):
        self.set_preferences({"WebToolExtraLoadingTime": 600})
        child = subprocess.Popen([os.environ["WEB2PDF_BATCH"], "--doctor"], stdout=subprocess.PIPE,
                                 env=self.environment())
        self.assertIsNotNone(processes.wait_for(lambda: len(processes.descendants()) > 3, 30), "no engine was started")
        child.send_signal(signal.SIGINT)
        output, _ = child.communicate(timeout=30)
        self.assertEqual((child.returncode, output), (130, b""))
        self.assert_nothing_left()


# In the tool's place: does something to the archive, or by what is in it, and then what the tool does.
BEFORE_THE_TOOL = """#!/usr/bin/python3
import os, plistlib, re, socket, sys
with open(sys.argv[2], "rb") as file:
    archive = plistlib.load(file)
page = archive["WebMainResource"]["WebResourceData"].decode()
%s
with open(sys.argv[2], "wb") as file:
    plistlib.dump(archive, file)
os.execv("%s", sys.argv)
"""
CALLS = "socket.create_connection(('127.0.0.1', int(re.search('127.0.0.1:([0-9]+)', page)[1]))).close()"
ANSWERS = """archive["WebSubresources"] = [
    {"WebResourceURL": "http://192.0.2.1/", "WebResourceMIMEType": "text/plain", "WebResourceData": b"reached"}]"""


class NetworkTests(DoctorTestCase):
    def examine_after(self, action):
        tool = self.script("tool", BEFORE_THE_TOOL % (action, tool_path()))
        finding = self.examine("--tool", tool, status=1)["isolation", "network"]
        self.assertEqual(finding["mark"], "problem")
        self.assertTrue(finding["text"].startswith("a page reached the network"), finding)
        return finding

    def test_call_is_noticed(self):
        self.assertTrue(self.examine_after(CALLS)["called"])

    def test_answer_is_noticed(self):
        finding = self.examine_after(ANSWERS)
        self.assertFalse(finding["called"])
        self.assertTrue(finding["text"].endswith(": http://192.0.2.1/"), finding)


class RefusalTests(DoctorTestCase):
    def test_namespaces(self):
        found = self.examine(preexec_fn=confinement.refuse_namespaces)
        for check in ("namespaces", "engine's own sandbox"):
            self.assertEqual(found["isolation", check]["mark"], "note")
            self.assertIn("has to allow user namespaces", found["isolation", check]["advice"])
        self.assertEqual(found["isolation", "namespaces"]["own"], "")
        for check in ("network", "system calls", "privileges"):
            self.assertEqual(found["isolation", check]["mark"], "ok", found["isolation", check])

    def test_namespaces_where_the_sandbox_is_required(self):
        found = self.examine(status=1, preexec_fn=confinement.refuse_namespaces,
                             environment=self.environment(WEB2PDF_REQUIRE_SANDBOX=1))
        self.assertIn("WEB2PDF_REQUIRE_SANDBOX is set", found["engine", "conversion"]["text"])
        self.assertIn("has to allow user namespaces", found["engine", "conversion"]["advice"])

    def test_root_folder_of_the_engines_sandbox(self):
        found = self.examine(preexec_fn=confinement.refuse_chroot)
        self.assert_marks(found, "isolation", "ok", besides=("engine's own sandbox", "remark"))
        self.assertEqual(found["isolation", "engine's own sandbox"]["mark"], "note")
        self.assertIn("has to allow chroot", found["isolation", "engine's own sandbox"]["advice"])

    def test_mounts(self):
        found = self.examine(preexec_fn=confinement.refuse_mounts)
        self.assertEqual(found["isolation", "remark"]["mark"], "note")
        self.assertEqual(found["isolation", "network"]["mark"], "ok")

    def test_file_rules(self):
        found = self.examine(preexec_fn=confinement.refuse_landlock)
        self.assertEqual(found["isolation", "file rules"]["mark"], "note")
        self.assertEqual(found["isolation", "file rules"]["landlock"], 0)


class SurroundingsTests(DoctorTestCase):
    def test_one_font(self):
        fonts = self.folder / "fonts"
        fonts.mkdir()
        shutil.copy(SOME_FONT, fonts)
        configuration = self.folder / "fonts.conf"
        configuration.write_text(FONT_CONFIGURATION % fonts, encoding="utf-8")
        found = self.examine(environment=self.environment(FONTCONFIG_FILE=configuration, FONTCONFIG_PATH=fonts))
        for name in ("Latin", "Greek", "Cyrillic"):
            self.assertEqual((found["fonts", name]["mark"], found["fonts", name]["fonts"]), ("ok", "DejaVuSans"))
        for name, package in (("Thai", "fonts-noto-core"), ("Japanese", "fonts-noto-cjk"),
                              ("Emoji", "fonts-noto-color-emoji")):
            self.assertEqual(found["fonts", name]["mark"], "note")
            self.assertFalse(found["fonts", name]["covered"])
            self.assertEqual(found["fonts", name]["advice"], f"Install the package {package}.")

    def test_no_font(self):
        configuration = self.folder / "fonts.conf"
        configuration.write_text(FONT_CONFIGURATION % "/nonexistent", encoding="utf-8")
        found = self.examine(status=1, environment=self.environment(FONTCONFIG_FILE=configuration))
        self.assertEqual(found["fonts", "Latin"]["mark"], "problem")

    def test_settings_of_several_files(self):
        self.set_preferences({"WebToolExtraLoadingTime": 1, "Web2PDFPageMargin": "wide"})
        self.set_preferences({"WebToolExtraLoadingTime": 9, "Web2PDFWritesXMP": True}, root="config-of-the-machine")
        (self.folder / "config" / "preferences" / ".GlobalPreferences.plist").write_text("none", encoding="utf-8")
        found = self.examine()
        first, second = (str(self.folder / root / "preferences" / "org.quillvane.Quillvane.plist")
                         for root in ("config", "config-of-the-machine"))
        self.assertEqual([found["settings", "WebToolExtraLoadingTime"][key] for key in ("value", "file")], [1, first])
        self.assertEqual([found["settings", "Web2PDFWritesXMP"][key] for key in ("value", "file")], [True, second])
        self.assertEqual([found["settings", "Web2PDFPageMargin"][key] for key in ("mark", "value")], ["note", 36])
        self.assertIn("cannot be read", found["settings", "file"]["text"])

    def test_variables(self):
        found = self.examine(environment=self.environment(WEB2PDF_DEADLINE="abc", WEB2PDF_MEMORY_LIMIT="much",
                                                          SOURCE_DATE_EPOCH="never", XDG_CONFIG_DIRS="relative"))
        for name, value in (("WEB2PDF_DEADLINE", "abc"), ("WEB2PDF_MEMORY_LIMIT", "much"),
                            ("SOURCE_DATE_EPOCH", "never"), ("XDG_CONFIG_DIRS", "relative")):
            finding = found["environment", name]
            self.assertEqual((finding["mark"], finding["value"], finding["counts"]), ("note", value, False))
        self.assertEqual(found["environment", "PAPERSIZE"]["counts"], True)

    def test_programs_that_are_missing(self):
        found = self.examine(environment=self.environment(PATH="/nonexistent"))
        for name in ("pdfinfo", "pdftotext"):
            self.assertEqual(found["programs", name]["advice"], "Install the package poppler-utils.")
