"""Arguments, help, version and exit status."""

import subprocess

import webarchive
from program import BAD_USAGE, FAILURE, PROGRAM, ProgramTestCase

COMMANDS = ("list", "cat", "check", "extract", "create")


class CommandLineTests(ProgramTestCase):
    def test_help_names_every_command(self):
        text = self.run_program("--help").text
        for command in COMMANDS:
            self.assertIn(f"\n  {command} ", text)
            self.assertIn(f"webarchive {command} ", self.run_program(command, "--help").text)

    def test_version(self):
        self.assertRegex(self.run_program("--version").text, r"^webarchive \d+\.\d+\.\d+\n$")

    def test_wrong_arguments_are_told_apart_from_files_that_are_not_right(self):
        for arguments in ((), ("unknown",), ("list",), ("list", "--unknown", "x"), ("list", "a", "b"), ("cat",),
                          ("extract", "a")):
            with self.subTest(arguments):
                self.assertEqual(self.run_program(*arguments, status=BAD_USAGE).output, b"")
        self.assertEqual(self.run_program("list", "missing", status=FAILURE).output, b"")

    def test_any_name_of_a_file_can_be_given(self):
        archive = webarchive.html_archive("<p>Here</p>")
        for name in (b"a b", b"[a,b]", b"{a}", b"a\nb", b"list", b"--help", b"a\xff\xfe", b"-", "größe 日本".encode(),
                     b"%s", b"@a", b"a=b"):
            with self.subTest(name):
                (self.folder / name.decode("utf-8", "surrogateescape")).write_bytes(archive.bytes())
                self.assertEqual(self.run_program("cat", "--", name).output, b"<p>Here</p>")

    def test_arguments_bring_no_escape_sequences_to_the_terminal(self):
        for arguments in ((b"\x1b[31m",), (b"list", b"--\x1b]0;x\x07"), (b"list", b"a", b"\x9b1m"),
                          (b"list", b"\x1b[2J"), (b"cat", b"\x1b[2J\n\xff")):
            done = subprocess.run([PROGRAM, *arguments], capture_output=True, check=False, cwd=self.folder, timeout=60)
            self.assertNotEqual(done.returncode, 0)
            self.assertRegex(done.stderr.decode(), "^webarchive: [^\x00-\x1f\x7f-\x9f]+\n$")
            self.assertEqual(done.stdout, b"")

    def test_output_that_cannot_be_written_is_a_failure(self):
        path = self.file(webarchive.html_archive("<p>Here</p>"))
        with open("/dev/full", "wb") as full:
            for command in ("list", "cat", "check"):
                done = subprocess.run([PROGRAM, command, path], stdout=full, stderr=subprocess.PIPE, check=False,
                                      timeout=60)
                self.assertEqual((done.returncode, done.stderr),
                                 (FAILURE, b"webarchive: standard output cannot be written\n"))
