"""The Debian packages: what they hold and ask for, what lintian says, and that the tool works as they have it.

With PACKAGES naming a folder, its packages are looked at. Else they are made of the build that BUILD names, which takes
less than a minute; they differ from the real ones in the compiler's options and the prefix.
"""

import os
import pathlib
import plistlib
import re
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
VERSION = re.search(r"^project\(web2pdf VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text(encoding="utf-8"),
                    re.MULTILINE).group(1)
MINOR = VERSION.rpartition(".")[0]
LIBRARY = f"libqrvfoundation{MINOR}"
NAMES = {"web2pdf", "web2pdf-tools", LIBRARY, "libqrvfoundation-dev"}
# It waits to be chosen.
NO_LICENCE = {"W: web2pdf source: no-debian-copyright-in-source"}
# What lintian says of a build whose prefix is not /usr.
OTHER_PREFIX = {
    f"E: {LIBRARY}: arch-dependent-file-not-in-arch-specific-directory",
    "E: libqrvfoundation-dev: arch-dependent-file-not-in-arch-specific-directory",
    "W: libqrvfoundation-dev: pkg-config-unavailable-for-cross-compilation",
    "W: web2pdf-tools: desktop-command-not-in-package",
}


def run(*command, **options):
    """The finished command's output; it must succeed."""
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                          timeout=240, check=False, **options)
    if done.returncode:
        raise AssertionError(f"{command} failed:\n{done.stdout}{done.stderr}")
    return done.stdout


def make_packages(folder):
    """Packages of the build, in the folder."""
    source = folder / "source"
    source.mkdir()
    shutil.copytree(ROOT / "debian", source / "debian")
    for listing in (source / "debian").glob("*.docs"):
        for name in listing.read_text(encoding="utf-8").split():
            (source / name).parent.mkdir(exist_ok=True)
            shutil.copy(ROOT / name, source / name)
    run("dpkg-buildpackage", "-b", "-us", "-uc", "-d", cwd=source,
        env={**os.environ, "WEB2PDF_BUILD": os.environ["BUILD"], "DEB_BUILD_OPTIONS": "nocheck noautodbgsym"})


def lintian_on(file):
    """What it says, without the files that it says it of."""
    said = run("lintian", "--fail-on", "none", file).splitlines()
    return {match.group() for line in said if (match := re.match(r"[EW]: [^:]+: \S+", line))}


def field(package, name):
    return run("dpkg-deb", "--field", package, name).strip()


def words(text):
    """The entries of a list of packages, with their versions."""
    return [entry.strip() for entry in text.split(",") if entry.strip()]


class SourceTests(unittest.TestCase):
    def test_lintian_finds_nothing_but_that_there_is_no_licence(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory(prefix="debian-source-")))
        shutil.copytree(ROOT, folder / "source", symlinks=True,
                        ignore=shutil.ignore_patterns(".git", "build", "node_modules", "__pycache__"))
        run("dpkg-source", "--build", "source", cwd=folder)
        source, = folder.glob("*.dsc")
        self.assertEqual(lintian_on(source), NO_LICENCE)


class PackagesTests(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="debian-tests-")
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.packages_folder = pathlib.Path(os.environ.get("PACKAGES", cls.folder))
        if "PACKAGES" not in os.environ:
            make_packages(cls.folder)
        cls.packages = {path.name.partition("_")[0]: path for path in cls.packages_folder.glob("*.deb")
                        if "-dbgsym_" not in path.name}
        cls.contents = {}
        for name, package in cls.packages.items():
            root = cls.folder / "unpacked" / name
            root.mkdir(parents=True)
            run("dpkg-deb", "--extract", package, root)
            cls.contents[name] = {str(path.relative_to(root)) for path in root.rglob("*") if not path.is_dir()}

    def test_there_are_four_of_this_version(self):
        self.assertEqual(set(self.packages), NAMES)
        for package in self.packages.values():
            self.assertEqual(field(package, "Version"), VERSION)

    def test_lintian_misses_the_copyright_file_only(self):
        changes, = self.packages_folder.glob("*.changes")
        found = lintian_on(changes)
        expected = {f"E: {name}: no-copyright-file" for name in NAMES}
        if "PACKAGES" in os.environ:
            expected |= NO_LICENCE
        else:
            found -= OTHER_PREFIX
        self.assertEqual(found, expected)

    def test_each_file_is_in_one_package(self):
        files = [path for paths in self.contents.values() for path in paths]
        self.assertEqual(len(files), len(set(files)))
        self.assertEqual([path for path in files if not path.startswith("usr/")], [])

    def test_programs_and_entries_are_where_they_are_looked_for(self):
        self.assertIn("usr/bin/web2pdf", self.contents["web2pdf"])
        self.assertLessEqual({"usr/bin/webarchive", "usr/share/applications/web2pdf.desktop",
                              "usr/share/mime/packages/web2pdf.xml"},
                             self.contents["web2pdf-tools"])

    def test_the_library_s_packages_divide_it(self):
        def names(package):
            return {pathlib.PurePath(path).name for path in self.contents[package]}
        libraries = {f"libQRVFoundation.so.{MINOR}", f"libQRVFoundation.so.{VERSION}"}
        self.assertLessEqual(libraries, names(LIBRARY))
        self.assertEqual({path for path in self.contents[LIBRARY] if not path.startswith("usr/share/doc/")},
                         {path for path in self.contents[LIBRARY] if pathlib.PurePath(path).name in libraries})
        self.assertLessEqual({"libQRVFoundation.a", "libQRVFoundation.so", "QRVFoundation.pc",
                              "QRVFoundationConfig.cmake", "QRVLogger.h"}, names("libqrvfoundation-dev"))

    def test_the_tool_asks_for_an_engine_and_the_fonts_of_the_tests(self):
        depends = words(field(self.packages["web2pdf"], "Depends"))
        self.assertIn("chromium-headless-shell | chromium", depends)
        libraries = {re.split(r"\d|t64", entry.partition(" ")[0])[0] for entry in depends}
        self.assertLessEqual({"libqpdf", "libicu", "libexpat", "libseccomp"}, libraries)
        self.assertNotIn("libqrvfoundation", libraries)
        fonts = re.findall(r"\bfonts-[a-z-]+", (ROOT / "script" / "bootstrap").read_text(encoding="utf-8"))
        self.assertCountEqual(words(field(self.packages["web2pdf"], "Recommends")), fonts)
        self.assertEqual(words(field(self.packages["web2pdf"], "Suggests")), ["web2pdf-tools"])

    def test_whoever_builds_with_the_library_gets_what_that_takes(self):
        depends = words(field(self.packages["libqrvfoundation-dev"], "Depends"))
        self.assertLessEqual({f"{LIBRARY} (= {VERSION})", "libicu-dev", "libexpat1-dev"}, set(depends))
        shlibs = run("dpkg-deb", "--info", self.packages[LIBRARY], "shlibs")
        self.assertRegex(shlibs, rf"(?m)^libQRVFoundation {re.escape(MINOR)} {re.escape(LIBRARY)} \(>= {VERSION}\)$")

    def test_nothing_runs_on_installation(self):
        """So that nothing has to be undone: dpkg itself removes what it has put in place."""
        for name, package in self.packages.items():
            control = self.folder / "control" / name
            control.mkdir(parents=True)
            run("dpkg-deb", "--control", package, control)
            files = {path.name for path in control.iterdir()}
            self.assertLessEqual(files, {"control", "md5sums", "shlibs", "triggers"}, name)

    def test_the_unpacked_tool_converts(self):
        archive = self.folder / "example.webarchive"
        document = self.folder / "example.pdf"
        run(ROOT / "script" / "make-example", archive)
        tool = self.folder / "unpacked" / "web2pdf" / "usr" / "bin" / "web2pdf"
        answer = plistlib.loads(run(tool, "screen", archive, document, "1").encode())
        self.assertEqual(answer, {"succeeded": True, "path": str(document)})
        self.assertEqual(document.read_bytes()[:5], b"%PDF-")
