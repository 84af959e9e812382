"""Installs the library into a folder of its own, moves that, and builds and runs the example against it."""

import os
import pathlib
import plistlib
import re
import shlex
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
EXAMPLES = ROOT / "Examples"
EXAMPLE = EXAMPLES / "Greeter"
CMAKE = os.environ["CMAKE"]
CXX = os.environ["CXX"]
FLAGS = shlex.split(os.environ.get("CXXFLAGS", ""))
BUILD = os.environ["BUILD"]
LINE = r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \[org\.quillvane\.Greeter\] "
VERSION = re.search(r"^project\(web2pdf VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text(encoding="utf-8"),
                    re.MULTILINE).group(1)
SONAME = "libQRVFoundation.so." + VERSION.rpartition(".")[0]


def run(*command, **options):
    """The finished command, which must succeed."""
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, timeout=240,
                          check=False, **options)
    if done.returncode:
        raise AssertionError(f"{command} failed:\n{done.stdout}{done.stderr}")
    return done


def files_in(folder):
    """Of everything below the folder the path in it."""
    return {str(path.relative_to(folder)) for path in folder.rglob("*") if not path.is_dir()}


def libraries_of(program):
    """The shared libraries that it asks for by itself."""
    return set(re.findall(r"\(NEEDED\).*\[(.+)\]", run("readelf", "-d", program).stdout))


class PackageTestCase(unittest.TestCase):
    COMPONENTS = ()  # those to install; without any, all

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="package-tests-")
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        for choice in [("--component", name) for name in cls.COMPONENTS] or [()]:
            run(CMAKE, "--install", BUILD, "--prefix", cls.folder / "first", *choice)
        # A copy that works elsewhere names neither the build nor the place it was installed to.
        cls.prefix = cls.folder / "usr"
        (cls.folder / "first").rename(cls.prefix)

    def library_folder(self):
        return next(self.prefix.rglob("libQRVFoundation.a")).parent


class ProjectTestCase(PackageTestCase):
    """For those that configure CMake projects against the package."""

    @classmethod
    def configure(cls, source, build):
        run(CMAKE, "-G", "Ninja", "-S", source, "-B", build, f"-DCMAKE_PREFIX_PATH={cls.prefix}",
            "-DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF")

    @classmethod
    def configure_lines(cls, *lines):
        """A project of these lines; gives its folder, which is its build's, too."""
        folder = pathlib.Path(tempfile.mkdtemp(dir=cls.folder))
        (folder / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.25)\nproject(Consumer LANGUAGES CXX)\n" + "\n".join(lines) + "\n",
            encoding="utf-8")
        cls.configure(folder, folder)
        return folder


class GreeterTests:
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
                                  check=False, env={**os.environ, "XDG_CONFIG_HOME": str(home),
                                                    "LD_LIBRARY_PATH": str(self.library_folder())})

    def test_greets(self):
        done = self.greet(b"J\xc3\xbcrgen\n")
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("Hello, Jürgen!\n", "", 0))

        done = self.greet(b"Ada", {"Greeting": "Salut", "Times": 2, "LogGreeter": True, "QRVLoggerIncludeFile": True})
        self.assertEqual((done.stdout, done.returncode), ("Salut, Ada!\nSalut, Ada!\n", 0))
        self.assertRegex(done.stderr, rf"\A{LINE}\[LogGreeter\] Greeter greeting Ada, times: 2\n\Z")

    def test_fails_with_the_whole_error(self):
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

    def test_the_examples_need_no_other_headers(self):
        for example in sorted(EXAMPLES.glob("*/*.cpp")):
            with self.subTest(example.name):
                run(CXX, *FLAGS, "-std=c++20", "-fsyntax-only", f"-I{self.prefix / 'include'}", example)

    def test_nothing_names_the_build_or_the_sources(self):
        for path in self.library_folder().rglob("*"):
            if path.suffix in (".cmake", ".pc"):
                text = path.read_text(encoding="utf-8")
                self.assertNotIn(str(BUILD), text, path)
                self.assertNotIn(str(ROOT), text, path)

    def test_the_shared_library_s_name_is_that_of_the_minor_version(self):
        folder = self.library_folder()
        self.assertIn(f"[{SONAME}]", run("readelf", "-d", folder / "libQRVFoundation.so").stdout)
        self.assertEqual((folder / "libQRVFoundation.so").resolve(), folder.resolve() / f"libQRVFoundation.so.{VERSION}")
        self.assertTrue((folder / SONAME).samefile(folder / "libQRVFoundation.so"))


class ComponentTests(PackageTestCase):
    def test_each_file_is_of_one_component(self):
        found = {}
        for name in ("tool", "tools", "library", "development"):
            run(CMAKE, "--install", BUILD, "--prefix", self.folder / name, "--component", name)
            found[name] = files_in(self.folder / name)
        self.assertIn("bin/web2pdf", found["tool"])
        self.assertIn("share/web2pdf/seccomp.json", found["tool"])
        self.assertLessEqual({f"share/web2pdf/scaling/{path.name}" for path in (ROOT / "Documentation" / "scaling").iterdir()},
                             found["tools"])
        self.assertEqual({path for path in found["tool"] | found["tools"] if "QRVFoundation" in path}, set())
        libraries = self.library_folder().relative_to(self.prefix)
        self.assertEqual(found["library"], {f"{libraries}/{name}" for name in (SONAME, f"libQRVFoundation.so.{VERSION}")})
        self.assertEqual(sorted(path for files in found.values() for path in files), sorted(files_in(self.prefix)))


class ToolFolderTests(unittest.TestCase):
    def test_the_tool_goes_where_the_build_was_told(self):
        with tempfile.TemporaryDirectory(prefix="tool-folder-") as folder:
            folder = pathlib.Path(folder)
            run(CMAKE, "-G", "Ninja", "-S", ROOT, "-B", folder / "build", f"-DCMAKE_CXX_COMPILER={CXX}",
                "-DWEB2PDF_BUILD_TESTS=OFF", "-DWEB2PDF_TOOL_DIR=libexec/somewhere", "-DCMAKE_INSTALL_PREFIX=/prefix")
            # A program that takes no minutes to build.
            (folder / "build" / "bin").mkdir(exist_ok=True)
            shutil.copy("/bin/true", folder / "build" / "bin" / "web2pdf")
            run(CMAKE, "--install", folder / "build", "--component", "tool", env={**os.environ, "DESTDIR": str(folder)})
            self.assertTrue((folder / "prefix" / "libexec" / "somewhere" / "web2pdf").exists())
            self.assertFalse((folder / "prefix" / "bin").exists())
            started = (folder / "build" / "Desktop" / "convert-to-pdf").read_text(encoding="utf-8")
            self.assertIn("/prefix/libexec/somewhere/web2pdf", started)


class ExportedSymbolsTests(PackageTestCase):
    COMPONENTS = ("library", "development")
    INTERNAL = ("Gestalt(", "LogSocket::", "NSURLCache::", "mapFile(", "readProcessTable(", "replaceFile(",
                "sysctlByName", "unicode::", "writeStandardErrorLine(")

    def symbols(self, library, *options):
        names = run("nm", "--defined-only", "--demangle", "--format=just-symbols", *options,
                    self.library_folder() / library).stdout
        return {re.sub(r"^(typeinfo|typeinfo name|vtable|VTT|guard variable) for ", "", name)
                for name in names.splitlines()}

    def test_all_are_in_the_namespace(self):
        exported = self.symbols("libQRVFoundation.so", "--dynamic")
        self.assertIn("qrv::NSString::utf8[abi:cxx11]() const", exported)
        self.assertEqual([name for name in exported if not name.startswith("qrv::")], [])

    def test_internals_are_not_among_them(self):
        exported = self.symbols("libQRVFoundation.so", "--dynamic")
        there = self.symbols("libQRVFoundation.a")
        for name in self.INTERNAL:
            self.assertTrue(any(symbol.startswith("qrv::" + name) for symbol in there), f"{name} is not in the library")
            self.assertEqual([symbol for symbol in exported if symbol.startswith("qrv::" + name)], [])

    def test_every_declaration_of_the_headers_is_marked(self):
        """Else programs that use it could be linked with the archive only."""
        declared = re.compile(r"^(?:(?:class|struct) (?!std::)\w+[^;{]*\{"
                              r"|(?!inline|using|friend|extern)[A-Za-z[][\w:&*<>\[\] ]* [&*]*(?P<function>\w+)"
                              r"\((?:[^;{]|\{\})*\);)", re.MULTILINE)
        defined = {re.split(r"[(\[]", symbol)[0].rpartition("::")[2] for symbol in self.symbols("libQRVFoundation.a")}
        marked = 0
        for header in (self.prefix / "include").rglob("*.h"):
            for match in declared.finditer(header.read_text(encoding="utf-8")):
                function = match["function"]
                if "QRV_EXPORT" in match.group():
                    marked += 1
                # What is never defined is called by faulty constant expressions only.
                elif not function or function in defined:
                    self.assertRegex(function or match.group(), r"ForTesting\Z", header.name)
        self.assertGreater(marked, 100)


class LibraryAloneTests(unittest.TestCase):
    """The library without the tool, where the packages that only the tool needs are not found."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="library-alone-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def configure(self, *options):
        run(CMAKE, "-G", "Ninja", "-S", ROOT, "-B", self.folder, f"-DCMAKE_CXX_COMPILER={CXX}",
            "-DPKG_CONFIG_EXECUTABLE=/nowhere/pkg-config",
            *[f"-DCMAKE_DISABLE_FIND_PACKAGE_{name}=ON" for name in ("boost_json", "GTest")], *options)

    def test_configures(self):
        self.configure("-DWEB2PDF_BUILD_TOOL=OFF")
        built = run(CMAKE, "--build", self.folder, "--target", "help").stdout
        self.assertIn("libQRVFoundation.a:", built)
        self.assertIn("libQRVFoundation.so:", built)
        self.assertNotIn("web2pdf:", built)
        cache = (self.folder / "CMakeCache.txt").read_text(encoding="utf-8")
        self.assertNotRegex(cache, r"(?m)^(PAPER|QPDF|SECCOMP|boost_json|GTest|DOXYGEN)_")

    def test_the_tool_needs_those_packages(self):
        with self.assertRaisesRegex(AssertionError, "PkgConfig"):
            self.configure()


class CMakeStaticTests(GreeterTests, ProjectTestCase):
    COMPONENTS = ("development",)

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.configure(EXAMPLE, cls.folder / "build")
        run(CMAKE, "--build", cls.folder / "build")
        cls.greeter = cls.folder / "build" / "Greeter"

    def test_needs_what_the_library_is_built_on(self):
        libraries = " ".join(libraries_of(self.greeter))
        self.assertNotIn("QRVFoundation", libraries)
        self.assertIn("libicuuc", libraries)

    def test_another_minor_version_is_not_taken(self):
        major, minor, _ = VERSION.split(".")
        for version in ("0.99", f"{int(major) + 1}.{minor}"):
            with self.assertRaisesRegex(AssertionError, "compatible with requested version"):
                self.configure_lines(f"find_package(QRVFoundation {version} REQUIRED)")

    def test_unknown_components_are_refused(self):
        with self.assertRaisesRegex(AssertionError, '"static" here, and not "tool"'):
            self.configure_lines("find_package(QRVFoundation REQUIRED COMPONENTS tool)")

    def test_a_project_has_one_kind_of_library(self):
        with self.assertRaisesRegex(AssertionError, 'is "shared" here, and not "static"'):
            self.configure_lines("find_package(QRVFoundation REQUIRED COMPONENTS static shared)")
        with self.assertRaisesRegex(AssertionError, 'is "static" here, and not "shared"'):
            self.configure_lines("find_package(QRVFoundation REQUIRED)",
                                 "find_package(QRVFoundation REQUIRED COMPONENTS shared)")

    def test_who_names_no_component_takes_what_is_there(self):
        self.configure_lines("find_package(QRVFoundation REQUIRED COMPONENTS static)",
                             "find_package(QRVFoundation REQUIRED)")


class CMakeSharedTests(GreeterTests, ProjectTestCase):
    COMPONENTS = ("library", "development")

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        folder = cls.configure_lines("find_package(QRVFoundation 0.1 REQUIRED COMPONENTS shared)",
                                     f"add_executable(Greeter {EXAMPLE / 'Greeter.cpp'})",
                                     "target_link_libraries(Greeter PRIVATE QRVFoundation::QRVFoundation)")
        run(CMAKE, "--build", folder)
        cls.greeter = folder / "Greeter"

    def test_types_mean_the_same_on_both_sides(self):
        self.configure(pathlib.Path(__file__).parent / "Boundary", self.folder / "boundary")
        run(CMAKE, "--build", self.folder / "boundary")
        self.assertEqual(run(self.folder / "boundary" / "Boundary").stdout, "")

    def test_needs_the_library_only(self):
        libraries = libraries_of(self.greeter)
        self.assertIn(SONAME, libraries)
        self.assertNotRegex(" ".join(libraries), "icu|expat")


class PkgConfigTestCase(PackageTestCase):
    COMPONENTS = ("library", "development")

    @classmethod
    def pkg_config(cls, *options):
        folder = next(cls.prefix.rglob("QRVFoundation.pc")).parent
        return run("pkg-config", *options, "QRVFoundation", env={**os.environ, "PKG_CONFIG_PATH": str(folder)}).stdout

    @classmethod
    def compile(cls, words):
        cls.greeter = cls.folder / "greeter" / "Greeter"
        cls.greeter.parent.mkdir()
        run(CXX, *FLAGS, "-std=c++20", EXAMPLE / "Greeter.cpp", "-o", cls.greeter, *shlex.split(words), cwd=cls.folder)


class PkgConfigSharedTests(GreeterTests, PkgConfigTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.compile(cls.pkg_config("--cflags", "--libs"))

    def test_needs_the_library_only(self):
        libraries = libraries_of(self.greeter)
        self.assertIn(SONAME, libraries)
        self.assertNotRegex(" ".join(libraries), "icu|expat")

    def test_the_version_is_the_package_s(self):
        self.assertEqual(self.pkg_config("--modversion").strip(), VERSION)
        text = next(self.prefix.rglob("QRVFoundationConfigVersion.cmake")).read_text(encoding="utf-8")
        self.assertIn(f'set(PACKAGE_VERSION "{VERSION}")', text)


class PkgConfigStaticTests(GreeterTests, PkgConfigTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        # Where both are installed, the linker prefers the shared library unless the archive is named.
        words = cls.pkg_config("--static", "--cflags", "--libs")
        cls.compile(words.replace("-lQRVFoundation", "-l:libQRVFoundation.a"))

    def test_needs_what_the_library_is_built_on(self):
        libraries = " ".join(libraries_of(self.greeter))
        self.assertNotIn("QRVFoundation", libraries)
        self.assertIn("libicuuc", libraries)
