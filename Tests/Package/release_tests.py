"""script/release in a project of a few files, whose script/packages makes none."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
FILES = {
    "CMakeLists.txt": "project(web2pdf VERSION 1.2.3 LANGUAGES CXX)\n",
    "CHANGELOG.md": "# Changelog\n\n## [Unreleased]\n\n## [1.2.3] - 2026-01-31\n",
    "debian/changelog": "web2pdf (1.2.3) unstable; urgency=medium\n\n  * New.\n\n"
                        " -- Nobody <nobody@web2pdf.invalid>  Sat, 31 Jan 2026 12:00:00 +0000\n",
    ".gitignore": "/build/\n",
    "script/packages": '#!/bin/sh\necho package >"$1/web2pdf_1.2.3_all.deb"\n',
}


class ReleaseTests(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="release-tests-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.project = self.folder / "project"
        for name, text in FILES.items():
            self.write(name, text)
        shutil.copy(ROOT / "script" / "release", self.project / "script")
        (self.project / "script" / "packages").chmod(0o755)
        self.git("init", "--quiet")
        self.commit()

    def write(self, name, text):
        path = self.project / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def git(self, *words):
        identity = {f"GIT_{who}_{what}": value for who in ("AUTHOR", "COMMITTER")
                    for what, value in (("NAME", "Nobody"), ("EMAIL", "nobody@web2pdf.invalid"))}
        subprocess.run(["git", *words], cwd=self.project, check=True, timeout=60, env={**os.environ, **identity})

    def commit(self):
        self.git("add", "--all")
        self.git("commit", "--quiet", "--allow-empty", "--message", "Change")

    def release(self, *words):
        """What it says when it succeeds."""
        done = subprocess.run([self.project / "script" / "release", *words], capture_output=True, text=True, timeout=60,
                              check=False)
        self.assertIn(done.returncode, (0, 1, 2), done.stderr)
        return done.stdout if done.returncode == 0 else None, done.stderr

    def assert_refused(self, why, version="1.2.3"):
        said, errors = self.release("--dry-run", version)
        self.assertIsNone(said)
        self.assertIn(why, errors)

    def test_a_release_has_sources_packages_and_sums(self):
        target = self.folder / "release"
        said, errors = self.release("1.2.3", str(target))
        self.assertIsNotNone(said, errors)
        self.assertEqual({path.name for path in target.iterdir()},
                         {"web2pdf-1.2.3.tar.gz", "web2pdf_1.2.3_all.deb", "SHA256SUMS"})
        subprocess.run(["sha256sum", "--check", "--strict", "--quiet", "SHA256SUMS"], cwd=target, check=True, timeout=60)
        self.assertEqual(len((target / "SHA256SUMS").read_text(encoding="utf-8").splitlines()), 2)
        held = subprocess.run(["tar", "--list", "--file", target / "web2pdf-1.2.3.tar.gz"], capture_output=True, text=True,
                              check=True, timeout=60).stdout.split()
        self.assertLessEqual({f"web2pdf-1.2.3/{name}" for name in FILES}, set(held))
        self.assertIsNone(self.release("1.2.3", str(target))[0], "what is there is kept")

    def test_the_sources_are_the_same_from_another_copy(self):
        archives = []
        for project in (self.project, self.folder / "copy"):
            if project != self.project:
                self.git("clone", "--quiet", ".", str(project))
                self.project = project
            target = self.folder / f"release of {project.name}"
            said, errors = self.release("1.2.3", str(target))
            self.assertIsNotNone(said, errors)
            archive = target / "web2pdf-1.2.3.tar.gz"
            archives.append(archive.read_bytes())
            self.assertEqual(archives[-1][4:8], bytes(4), "the time of the compression")
        self.assertEqual(archives[0], archives[1])

    def test_a_dry_run_makes_nothing(self):
        said, _ = self.release("--dry-run", "1.2.3")
        self.assertIn("1.2.3 is ready", said)
        self.assertFalse((self.project / "build").exists())

    def test_refuses_what_is_not_committed(self):
        self.write("new", "text")
        self.assert_refused("not committed")

    def test_refuses_another_version(self):
        for version in ("1.2", "1.2.4", "1x2.3"):
            self.assert_refused("CMakeLists.txt has another version", version)

    def test_refuses_without_a_section_that_has_a_date(self):
        for line in ("## [1.2.3]", "## [1.2.30] - 2026-01-31"):
            self.write("CHANGELOG.md", line + "\n")
            self.commit()
            self.assert_refused("CHANGELOG.md has no section for 1.2.3")

    def test_refuses_another_section_of_the_packages(self):
        for old, new, why in (("(1.2.3)", "(1.2.2)", "has another version"), ("unstable", "UNRELEASED", "says UNRELEASED")):
            self.write("debian/changelog", FILES["debian/changelog"].replace(old, new))
            self.commit()
            self.assert_refused(f"debian/changelog {why}")
