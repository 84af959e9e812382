"""Installs the library into a folder of its own, moves that, and builds and runs the example against it."""

import os
import pathlib
import plistlib
import re
import shlex
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
EXAMPLE = ROOT / "Examples" / "Greeter"
CMAKE = os.environ["CMAKE"]
CXX = os.environ["CXX"]
FLAGS = shlex.split(os.environ.get("CXXFLAGS", ""))
BUILD = os.environ["BUILD"]
LINE = r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \[org\.quillvane\.Greeter\] "


def run(*command, **options):
    """The finished command, which must succeed."""
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, timeout=240,
                          check=False, **options)
    if done.returncode:
        raise AssertionError(f"{command} failed:\n{done.stdout}{done.stderr}")
    return done


class PackageTestCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="package-tests-")
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        run(CMAKE, "--install", BUILD, "--prefix", cls.folder / "first")
        # A copy that works elsewhere names neither the build nor the place it was installed to.
        cls.prefix = cls.folder / "usr"
        (cls.folder / "first").rename(cls.prefix)

    def library_folder(self):
        return next(self.prefix.rglob("libQRVFoundation.a")).parent


class GreeterTestCase(PackageTestCase):
    """For those that have a Greeter, in whatever way it was built."""

    def greet(self, name=None, settings=None):
        """The example's run with a file that holds the name (or none) and these settings."""
        with tempfile.TemporaryDirectory(prefix="greeter-") as home:
            home = pathlib.Path(home)
            (home / "preferences").mkdir()
            if settings is not None:
                with open(home / "preferences" / "org.example.Greeter.plist", "wb") as file:
                    plistlib.dump(settings, file)
            if name is not None:
                (home / "name").write_bytes(name)
            return subprocess.run([self.greeter, "name"], cwd=home, capture_output=True, text=True, timeout=60,
                                  check=False, env={**os.environ, "XDG_CONFIG_HOME": str(home)})

    def check_greetings(self):
        done = self.greet(b"J\xc3\xbcrgen\n")
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("Hello, Jürgen!\n", "", 0))

        done = self.greet(b"Ada", {"Greeting": "Salut", "Times": 2, "LogGreeter": True, "QRVLoggerIncludeFile": True})
        self.assertEqual((done.stdout, done.returncode), ("Salut, Ada!\nSalut, Ada!\n", 0))
        self.assertRegex(done.stderr, rf"\A{LINE}\[LogGreeter\] Greeter greeting Ada, times: 2\n\Z")

    def check_failures(self):
        done = self.greet()
        self.assertEqual((done.stdout, done.returncode), ("", 1))
        self.assertRegex(done.stderr, r'\A<NSError Domain=NSCocoaErrorDomain Code=260 UserInfo={\n')
        self.assertRegex(done.stderr, r'NSFilePath = "name"')
        self.assertRegex(done.stderr, r"NSPOSIXErrorDomain Code=2 ")

        done = self.greet(b"\xff\xfe\xfd")
        self.assertEqual((done.stdout, done.returncode), ("", 1))
        self.assertRegex(done.stderr, r'\A<NSError Domain=QRVErrorDomain Code=500 UserInfo={\n')
        self.assertRegex(done.stderr, r'"readName \(\d+\)"')


class InstalledFilesTests(PackageTestCase):
    def test_the_tool_answers(self):
        done = run(self.prefix / "bin" / "web2pdf")
        self.assertIn("succeeded", str(plistlib.loads(done.stdout.encode())))

    def test_the_headers_need_nothing_but_themselves(self):
        include = self.prefix / "include"
        for header in include.rglob("*.h"):
            for name in re.findall(r'^#include "(.+)"', header.read_text(encoding="utf-8"), re.MULTILINE):
                self.assertTrue((include / name).is_file(), f"{header} includes {name}")

    def test_every_public_header_of_the_library_is_there(self):
        there = {str(path.relative_to(self.prefix / "include"))
                 for path in (self.prefix / "include" / "QRVFoundation").rglob("*.h")}
        self.assertEqual(there, {str(path.relative_to(ROOT)) for path in (ROOT / "QRVFoundation").rglob("*.h")})

    def test_the_headers_compile_together(self):
        include = self.prefix / "include"
        names = sorted(str(path.relative_to(include)) for path in include.rglob("*.h"))
        self.assertGreater(len(names), 40)
        run(CXX, *FLAGS, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Werror", f"-I{include}",
            "-x", "c++", "-", input="".join(f'#include "{name}"\n' for name in names))

    def test_nothing_names_the_build_or_the_sources(self):
        for path in self.library_folder().rglob("*"):
            if path.suffix in (".cmake", ".pc"):
                text = path.read_text(encoding="utf-8")
                self.assertNotIn(str(BUILD), text, path)
                self.assertNotIn(str(ROOT), text, path)


class CMakePackageTests(GreeterTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.greeter = cls.folder / "build" / "Greeter"
        run(CMAKE, "-G", "Ninja", "-S", EXAMPLE, "-B", cls.folder / "build", f"-DCMAKE_PREFIX_PATH={cls.prefix}",
            "-DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF")
        run(CMAKE, "--build", cls.folder / "build")

    def test_greets(self):
        self.check_greetings()

    def test_fails_with_the_whole_error(self):
        self.check_failures()

    def test_another_minor_version_is_not_taken(self):
        project = self.folder / "newer"
        project.mkdir()
        (project / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.25)\nproject(Newer LANGUAGES CXX)\n"
            "find_package(QRVFoundation 0.99 REQUIRED)\n", encoding="utf-8")
        with self.assertRaisesRegex(AssertionError, "compatible with requested version"):
            run(CMAKE, "-G", "Ninja", "-S", project, "-B", project / "build",
                f"-DCMAKE_PREFIX_PATH={self.prefix}")


class PkgConfigTests(GreeterTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.greeter = cls.folder / "greeter" / "Greeter"
        cls.greeter.parent.mkdir()
        folder = next(cls.prefix.rglob("QRVFoundation.pc")).parent
        cls.environment = {**os.environ, "PKG_CONFIG_PATH": str(folder)}
        words = shlex.split(run("pkg-config", "--cflags", "--libs", "QRVFoundation", env=cls.environment).stdout)
        run(CXX, *FLAGS, "-std=c++20", EXAMPLE / "Greeter.cpp", "-o", cls.greeter, *words, cwd=cls.folder)

    def test_greets(self):
        self.check_greetings()

    def test_fails_with_the_whole_error(self):
        self.check_failures()

    def test_the_version_is_the_package_s(self):
        version = run("pkg-config", "--modversion", "QRVFoundation", env=self.environment).stdout.strip()
        text = next(self.prefix.rglob("QRVFoundationConfigVersion.cmake")).read_text(encoding="utf-8")
        self.assertIn(f'set(PACKAGE_VERSION "{version}")', text)
