"""What the engine does to the machine while it converts a page, as the kernel sees it."""

import subprocess
import unittest

import confinement
import engine
import traces
from pages import acting, main_resource, page
from tool import ToolTestCase, tool_path

# Besides its temporary folder and shared memory: where the engine's own files, libraries, fonts, languages and time zones are, and
# what the kernel tells.
OPEN_TO_THE_ENGINE = ("/usr/lib", "/lib", "/etc/ld.so.cache", "/etc/fonts", "/usr/share/fontconfig",
                      "/usr/share/fonts", "/usr/local/share/fonts", "/var/cache/fontconfig", "/usr/share/locale",
                      "/usr/share/zoneinfo", "/etc/locale.alias", "/etc/localtime", "/sys/devices/system/cpu",
                      "/dev/null", "/dev/zero", "/dev/random", "/dev/urandom", "/proc", "/memfd:")
BUSY_PAGE = """
    new Worker(URL.createObjectURL(new Blob(["fetch('http://127.0.0.1/')"])));
    new WebSocket('ws://127.0.0.1/');
    new RTCPeerConnection({iceServers: [{urls: 'stun:127.0.0.1'}]}).createDataChannel('x');
    document.createElement('canvas').getContext('webgl');
    fetch('file:///etc/passwd');
"""
# Dies while it has mounts of its own, which it has only where the tool was not confined yet.
AGAIN = """#!/bin/sh
case $TMPDIR in /dev/shm) exit 1 ;; esac
exec %(engine)s "$@"
"""


class TraceTestCase(ToolTestCase):
    def trace(self, calls, executable=None, environment=None, archive=None, **options):
        """Converts a page, a busy one unless given, and returns the process that is the tool and the calls that came back without an error."""
        record = self.folder / "record"
        record.mkdir()
        record.chmod(0o777)
        (self.folder / "out").chmod(0o777)
        self.set_preferences({"WebToolExtraLoadingTime": 1})
        path = self.archive_file(archive or acting(BUSY_PAGE, "<p>Text</p>"))
        output = self.folder / "out" / "page.pdf"
        done = subprocess.run(["strace", "-f", "-y", "-s", "0", "-e", "trace=" + calls, "-o", str(record / "calls"),
                               executable or tool_path(), "screen", path, str(output), "uid"],
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              env=environment or self.environment(), cwd=self.folder, timeout=300, check=False,
                              **options)
        self.assertIn(b"<true/>", done.stdout, done.stderr)
        self.assert_nothing_left()
        text = (record / "calls").read_text(encoding="utf-8")
        return text.split(maxsplit=1)[0], [call for call in traces.calls(text) if call.result >= 0]


class ChildrenTests(TraceTestCase):
    def children(self, archive):
        tool, calls = self.trace("clone,clone3,fork,vfork", archive=archive)
        return [call for call in calls if call.process == tool and "CLONE_THREAD" not in call.arguments]

    def test_page_needs_one_child_besides_the_engine(self):
        self.assertEqual(len(self.children(page("<h1>One</h1><p><a href='https://a.example/'>Two</a>"))), 2)

    def test_stored_pdf_needs_one_child_besides_the_engine(self):
        first = self.convert(page("<p>Text</p>"), name="first.pdf")
        with open(first.output, "rb") as file:
            data = file.read()
        archive = main_resource("https://www.site.example/file.pdf", data, "application/pdf", None)
        self.assertEqual(len(self.children(archive)), 2)


class ConfinementTests(TraceTestCase):
    def assert_keeps_to_itself(self, temporary=("/dev/shm",), **options):
        tool, calls = self.trace("open,openat,openat2,socket,connect,execve", **options)
        calls = [call for call in calls if call.process != tool]
        self.assertIn("execve", {call.name for call in calls}, "no engine was traced")
        self.assertEqual([call for call in calls if call.name in ("socket", "connect")], [])
        opened = {call.file for call in calls if call.name.startswith("open") and "O_PATH" not in call.arguments}
        self.assertGreater(len(opened), 50)
        allowed = OPEN_TO_THE_ENGINE + temporary
        self.assertEqual([file for file in sorted(opened) if not file.startswith(allowed)], [])

    def test_as_it_is_started(self):
        self.assert_keeps_to_itself()

    def test_of_an_ordinary_user(self):
        self.assert_keeps_to_itself(**self.as_nobody())

    def test_without_namespaces(self):
        self.assert_keeps_to_itself(preexec_fn=confinement.refuse_namespaces,
                                    temporary=(str(self.folder / "tmp" / "web2pdf-"),))

    def test_where_its_sandbox_gets_no_root_folder(self):
        for number in range(4):
            for options in ({}, self.as_nobody()):
                (self.folder / "out").chmod(0o777)
                run = self.convert(page("<p>Text</p>"), name=f"{number}{len(options)}.pdf",
                                   preexec_fn=confinement.refuse_chroot, **options)
                self.assertIn("Text", run.pdf.text())
                self.assertIn("A container's seccomp profile has to allow chroot.", run.log.text)
                self.assertIn("the engine's own sandbox can not work here", run.log.text)

    def test_engine_whose_sandbox_is_required_says_what_it_lacks(self):
        run = self.convert(page("<p>Text</p>"), expect_success=False, preexec_fn=confinement.refuse_chroot,
                           environment=self.environment(WEB2PDF_REQUIRE_SANDBOX=1))
        self.assert_failure(run, "NSURLErrorDomain", -1005)
        self.assertIn("and WEB2PDF_REQUIRE_SANDBOX is set", run.result["errorString"])
        self.assertIn("gets no root folder of its own", run.log.text)

    def test_profile_for_containers_takes_no_protection_away(self):
        for options in ({}, self.as_nobody()):
            (self.folder / "out").chmod(0o777)
            run = self.convert(page("<p>Text</p>"), preexec_fn=confinement.apply_profile, **options)
            self.assertIn("Text", run.pdf.text())
            self.assertEqual(run.log.notes, [])

    def test_profile_for_containers_refuses_what_gives_power(self):
        attempts = ("import ctypes, platform, socket, sys\n"
                    "call = ctypes.CDLL(None, use_errno=True).syscall\n"
                    "for number in (321, 298, 250) if platform.machine() == 'x86_64' else (280, 241, 219):\n"
                    "    assert call(number, -1, -1, -1, -1, -1) == -1 and ctypes.get_errno() == 1, number\n"
                    "for family, kind, protocol in ((16, 3, 12), (17, 2, 0), (38, 5, 0), (40, 1, 0)):\n"
                    "    try: socket.socket(family, kind, protocol)\n"
                    "    except PermissionError: continue\n"
                    "    sys.exit(f'a socket of the family {family}')\n"
                    "socket.socket(2, 1, 0)\n"
                    "socket.socket(16, 3, 0)\n")
        subprocess.run(["python3", "-c", attempts], preexec_fn=confinement.apply_profile, check=True, timeout=30)

    def test_engine_whose_sandbox_is_required_does_not_run_without_it(self):
        run = self.convert(page("<p>Text</p>"), expect_success=False, preexec_fn=confinement.refuse_namespaces,
                           environment=self.environment(WEB2PDF_REQUIRE_SANDBOX=1))
        self.assert_failure(run, "NSURLErrorDomain", -1005)
        self.assertTrue(run.result["errorString"].startswith(
            "The web engine ended unexpectedly: the engine's own sandbox can not work here, and "
            "WEB2PDF_REQUIRE_SANDBOX is set (Operation not permitted)"), run.result)
        self.assertFalse((self.folder / "out" / "page.pdf").exists())


class ToolTests(TraceTestCase):
    def test_tool_confines_itself_before_it_opens_the_archive(self):
        tool, calls = self.trace("openat,landlock_restrict_self,execve")
        own = [call for call in calls if call.process == tool]
        names = [call.name for call in own]
        self.assertIn("landlock_restrict_self", names)
        archive = [at for at, call in enumerate(own) if call.file and call.file.endswith("page.webarchive")]
        self.assertGreater(archive[0], names.index("landlock_restrict_self"))

    def test_kernel_without_rules_is_no_reason_not_to_convert(self):
        run = self.convert(page("<p>Text</p>"), preexec_fn=confinement.refuse_landlock)
        self.assertIn("no file rules for the tool; it can write what its user can (Operation not permitted)",
                      run.log.notes)

    def test_engine_that_the_confined_tool_starts_again_has_its_own_sandbox(self):
        text = AGAIN % {"engine": engine.HEADLESS_SHELL}
        for options in ({}, self.as_nobody()):
            (self.folder / "out").chmod(0o777)
            run = self.convert(page("<p>Text</p>"), **options,
                               environment=self.environment(WEB2PDF_ENGINE=self.script("engine", text)))
            self.assertIn("Text", run.pdf.text())
            self.assertIn("is started again", run.log.text)
            self.assertNotIn("sandbox can not work", run.log.text)


if __name__ == "__main__":
    unittest.main()
