"""Tests of the helpers themselves: what they build and what they would overlook."""

import fcntl
import importlib.machinery
import importlib.util
import os
import pathlib
import plistlib
import signal
import subprocess
import sys
import tempfile
import unittest
import unittest.mock

import cbor
import engine
import images
import keyedarchive
import pages
import pdf
import processes
import traces
import webarchive
from pdfjs import PDFJS
from tool import SANITIZERS, Log, ToolTestCase, read_result


class TraceTests(unittest.TestCase):
    def test_call_that_another_interrupts_keeps_its_arguments(self):
        first, second, third = traces.calls(
            '7 openat(AT_FDCWD</>, "/lib"..., O_RDONLY|O_PATH <unfinished ...>\n'
            '8 close(3</a (b)>)   = 0\n'
            '7 <... openat resumed>) = 5</lib>\n'
            '8 +++ exited with 0 +++\n'
            '8 openat(AT_FDCWD</>, "/x"..., O_RDONLY) = -1 ENOENT (No such file or directory)\n')
        self.assertEqual((first.process, first.name, first.result), ("8", "close", 0))
        self.assertEqual(second, traces.Call("7", "openat", 'AT_FDCWD</>, "/lib"..., O_RDONLY|O_PATH', 5, "/lib"))
        self.assertEqual((third.result, third.file), (-1, None))


class ArchiveTests(unittest.TestCase):
    def test_nested_archive_survives_both_forms(self):
        archive = pages.three_levels_of_frames()
        for xml in (False, True):
            root = plistlib.loads(archive.bytes(xml))
            inner = root["WebSubframeArchives"][0]["WebSubframeArchives"][0]
            self.assertEqual(inner["WebMainResource"]["WebResourceFrameName"], "innermost")
            self.assertIn(b"LevelThree", inner["WebMainResource"]["WebResourceData"])

    def test_label_does_not_touch_the_bytes(self):
        resource = pages.in_character_set("shift_jis", label="UTF-8").plist()["WebMainResource"]
        self.assertEqual(resource["WebResourceTextEncodingName"], "UTF-8")
        self.assertIn("日本語".encode("shift_jis"), resource["WebResourceData"])

    def test_fields_of_none_are_left_out(self):
        resource = webarchive.Resource(None, b"x", "image/png")
        self.assertEqual(resource.plist(), {"WebResourceData": b"x", "WebResourceMIMEType": "image/png"})

    def test_malformed_files_break_the_rule_they_name(self):
        files = webarchive.malformed()
        for name in ("empty", "text", "zeros", "truncated binary", "truncated in the header", "truncated xml",
                     "offset table out of range"):
            with self.subTest(name), self.assertRaises(Exception):
                plistlib.loads(files.pop(name))
        for name, data in files.items():
            with self.subTest(name):
                plistlib.loads(data)


class ImageTests(unittest.TestCase):
    def test_gif_and_png_have_their_size(self):
        self.assertEqual(images.gif(20, 10, (1, 2, 3))[6:10], b"\x14\0\x0a\0")
        self.assertEqual(images.png(20, 10, (1, 2, 3))[16:24], b"\0\0\0\x14\0\0\0\x0a")


    def test_jpeg_has_its_size_and_both_ends(self):
        data = images.jpeg(64, 48, 200)
        self.assertTrue(data.startswith(b"\xff\xd8") and data.endswith(b"\xff\xd9"))
        self.assertIn(b"\x08\0\x30\0\x40", data)


class ValidityTests(unittest.TestCase):
    PARTS = ("<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
             "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Contents 4 0 R>>")

    def judge(self, contents):
        data, places = b"%PDF-1.4\n", []
        for number, part in enumerate((*self.PARTS, contents), 1):
            places.append(len(data))
            data += f"{number} 0 obj\n{part}\nendobj\n".encode()
        rows = "".join(f"{place:010d} 00000 n \n" for place in places)
        table = f"xref\n0 5\n0000000000 65535 f \n{rows}trailer\n<</Size 5/Root 1 0 R>>\nstartxref\n{len(data)}\n%%EOF\n"
        with tempfile.NamedTemporaryFile(suffix=".pdf") as file:
            file.write(data + table.encode())
            file.flush()
            pdf.PDF(file.name).assert_valid()

    def test_sound_file(self):
        self.judge("<</Length 3>>\nstream\n0 g\nendstream")

    def test_what_programs_only_warn_of(self):
        for contents in ("<</Length 0/Filter/FlateDecode>>\nstream\n\nendstream",
                         "<</Length 3/Filter/FlateDecode>>\nstream\n0 g\nendstream",
                         "<</Length 9>>\nstream\n0 g\nendstream"):
            with self.subTest(contents), self.assertRaises(AssertionError):
                self.judge(contents)


class PictureTests(unittest.TestCase):
    def test_pixels_are_found_by_column_and_row(self):
        picture = pdf.read_ppm(b"P6\n2 2\n255\n" + bytes([1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12]))
        self.assertEqual(picture.pixel(1, 0), (4, 5, 6))
        self.assertEqual(picture.pixel(0, 1), (7, 8, 9))

    def test_near_tells_colours_apart(self):
        self.assertTrue(pdf.near((250, 10, 10), (255, 0, 0)))
        self.assertFalse(pdf.near((230, 10, 10), (255, 0, 0)))


class ThirdReaderTests(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        processes.adopt_orphans()

    def tearDown(self):
        self.assertEqual(processes.wait_until_none(10), {})
        processes.reap()

    def test_files_are_drawn_one_after_the_other(self):
        with tempfile.TemporaryDirectory(prefix="web2pdf-test-") as folder, PDFJS() as reader:
            for colour in ((255, 0, 0), (0, 0, 255)):
                engine.own_pdf(f"<style>@page{{size:50pt 100pt;margin:0}}</style><body style='background:rgb{colour}'>",
                               pathlib.Path(folder))
                picture = reader.picture(os.path.join(folder, "own.pdf"), (20, 40))
                self.assertEqual(picture.size, (20, 40))
                self.assertTrue(pdf.near(picture.getpixel((10, 20)), colour), picture.getpixel((10, 20)))

    def test_what_is_no_file_of_the_kind_is_refused(self):
        with PDFJS() as reader, self.assertRaisesRegex(AssertionError, "InvalidPDF"):
            reader.picture(__file__, (20, 40))


class LogTests(unittest.TestCase):
    def test_lines_continuations_and_strangers(self):
        start = "2026-01-02 03:04:05.678 [org.quillvane.web2pdf] "
        log = Log(f"{start}[LogWeb2PDF] done loading: (\n)\n{start} no area\nTrouble\n")
        self.assertEqual(log.messages, ["done loading: (\n)"])
        self.assertEqual(log.unnamed, "no area")
        self.assertEqual(log.strangers, ["Trouble"])

    def test_answer_must_be_an_xml_property_list(self):
        with self.assertRaises(AssertionError):
            read_result(b"chatter\n" + plistlib.dumps({"succeeded": True}))


class SanitizerReportTests(unittest.TestCase):
    """A report of a sanitizer fails the test, whatever becomes of the process that wrote it."""

    @staticmethod
    def outcome(script):
        class Test(ToolTestCase):
            def runTest(self):
                self.start("-c", script).communicate(timeout=30)

        with unittest.mock.patch.dict(os.environ, WEB2PDF_TOOL="/bin/sh", TSAN_OPTIONS="halt_on_error=1"):
            return Test().run()

    def test_report_of_any_sanitizer(self):
        for name in SANITIZERS:
            with self.subTest(name):
                result = self.outcome(f"echo Trouble >${{{name}##*log_path=}}.1")
                self.assertEqual(len(result.failures), 1, result)
                self.assertIn("Trouble", result.failures[0][1])

    def test_no_report(self):
        self.assertTrue(self.outcome("exit 0").wasSuccessful())

    def test_options_from_outside_are_kept(self):
        self.assertTrue(self.outcome('case $TSAN_OPTIONS in halt_on_error=1:*) exit ;; esac; '
                                     'echo Lost >${TSAN_OPTIONS##*log_path=}').wasSuccessful())


class KeyedArchiveTests(unittest.TestCase):
    @staticmethod
    def archive(error_class):
        uid = plistlib.UID
        return plistlib.dumps({
            "$version": 100000, "$archiver": "NSKeyedArchiver", "$top": {"root": uid(1)},
            "$objects": ["$null",
                         {"$class": uid(7), "NSDomain": uid(2), "NSCode": -999, "NSUserInfo": uid(3)},
                         "NSURLErrorDomain",
                         {"$class": uid(8), "NS.keys": [uid(4)], "NS.objects": [uid(5)]},
                         "NSURL",
                         {"$class": uid(9), "NS.base": uid(0), "NS.relative": uid(6)},
                         "http://a.example/",
                         {"$classname": error_class, "$classes": [error_class, "NSObject"]},
                         {"$classname": "NSDictionary", "$classes": ["NSDictionary", "NSObject"]},
                         {"$classname": "NSURL", "$classes": ["NSURL", "NSObject"]}]},
            fmt=plistlib.FMT_BINARY)

    def test_error_with_an_address(self):
        error = keyedarchive.read_error(self.archive("NSError"))
        self.assertEqual((error.domain, error.code), ("NSURLErrorDomain", -999))
        self.assertEqual(error.user_info, {"NSURL": "http://a.example/"})

    def test_another_class_is_refused(self):
        with self.assertRaises(AssertionError):
            keyedarchive.read_error(self.archive("NSString"))


class SourceCheckTests(unittest.TestCase):
    """The check of the sources finds what it is there for."""

    @classmethod
    def setUpClass(cls):
        path = pathlib.Path(__file__).resolve().parents[2] / "script" / "check-sources"
        loader = importlib.machinery.SourceFileLoader("check_sources", str(path))
        cls.check = importlib.util.module_from_spec(importlib.util.spec_from_loader("check_sources", loader))
        loader.exec_module(cls.check)

    def found(self, path, text):
        return list(self.check.problems_of(path, text))

    def assert_found(self, expected, path, text):
        """Exactly one problem, whose text has the expected words."""
        problems = self.found(path, text)
        self.assertEqual(len(problems), 1, problems)
        self.assertIn(expected, problems[0])

    @staticmethod
    def including(*names):
        return "#pragma once\n\n// For a test.\n\n" + "".join(f"#include {name}\n" for name in names)

    def test_arrows_may_be_followed(self):
        for path, *names in (
                ("Source/Tools/loader.cpp", '"Platform/WebKit/WebView.h"', '"QRVFoundation/Source/QRVLogger.h"', "<vector>"),
                ("Platform/WebKit/WebView.cpp", '"Platform/Engine/Page.h"', '"Platform/Foundation/NSString.h"'),
                ("Platform/Engine/EnginePage.cpp", '"Platform/Engine/Print/PageRenderer.h"', "<boost/json.hpp>"),
                ("Platform/Foundation/PropertyList/XMLReader.cpp", '"Platform/Logging/NSLog.h"', "<expat.h>"),
                ("Tests/Platform/Engine/Print/RootBoxTests.cpp", '"Platform/Engine/Print/RootBox.h"', "<gtest/gtest.h>")):
            with self.subTest(path):
                self.assertEqual(self.found(path, self.including(*names)), [])

    def test_against_the_arrows(self):
        for path, name in (("Platform/Foundation/NSData.cpp", '"QRVFoundation/Source/QRVLogger.h"'),
                           ("Platform/Foundation/NSData.cpp", '"Platform/WebKit/WebView.h"'),
                           ("QRVFoundation/Source/QRVLogger.cpp", '"Source/Tools/loader.h"'),
                           ("Platform/Logging/UnifiedLog.h", '"Platform/AppKit/NSWindow.h"'),
                           ("Platform/WebKit/WebView.cpp", '"Platform/Engine/Print/PageRenderer.h"'),
                           ("Platform/Engine/Loading/FrameTracker.h", '"Platform/Engine/Page.h"'),
                           ("Platform/Engine/Scripts/PageScripts.h", '"Platform/Engine/DevTools/Json.h"'),
                           ("Source/Tools/loader.cpp", '"Platform/Engine/Page.h"'),
                           ("Tests/Tools/LoaderTests.cpp", '"Platform/Engine/Page.h"')):
            with self.subTest(path=path, name=name):
                self.assert_found("must not include", path, self.including(name))

    def test_path_that_does_not_begin_at_the_root(self):
        self.assert_found("not the path from the root", "Source/Tools/loader.cpp", self.including('"loader.h"'))

    def test_new_folder_needs_its_arrows(self):
        self.assert_found("table of folders", "Platform/Engine/Cellar/Wine.h", self.including())

    def test_library_in_a_wrong_place(self):
        self.assert_found(".cpp file", "Platform/Engine/Page.h", self.including("<boost/json.hpp>"))
        self.assert_found("to the tests", "QRVFoundation/Source/QRVLogger.cpp", self.including("<gtest/gtest.h>"))

    def test_circle(self):
        files = {"Platform/Engine/EnginePage.cpp": '#include "Platform/Engine/Print/PageRenderer.h"',
                 "Platform/Engine/Print/PageRenderer.cpp": '#include "Platform/Engine/PDF/PDFOutline.h"',
                 "Platform/Engine/PDF/PDFOutline.h": '#include "Platform/PDFKit/PDFFile.h"'}
        self.assertEqual(list(self.check.circle_problems(files)), [])
        files["Platform/Engine/PDF/PDFOutline.h"] += '\n#include "Platform/Engine/Print/PrintLayout.h"'
        self.assertEqual(list(self.check.circle_problems(files)),
                         ["folders that include each other in a circle: Platform/Engine/PDF, Platform/Engine/Print"])

    def test_basis_is_no_circle(self):
        files = {"Platform/Foundation/NSData.cpp": '#include "Platform/Logging/NSLog.h"',
                 "Platform/Logging/NSLog.h": '#include "Platform/Foundation/NSString.h"'}
        self.assertEqual(list(self.check.circle_problems(files)), [])

    def test_picture_counts_units_and_arrows(self):
        files = {"Platform/Engine/PDF/PDFOutline.h": '#include "Platform/PDFKit/PDFFile.h"',
                 "Platform/Engine/PDF/PDFOutline.cpp": '#include "Platform/PDFKit/PDFFile.h"',
                 "Platform/PDFKit/PDFFile.h": "", "Platform/Engine/Scripts/one.js": ""}
        self.assertEqual(list(self.check.picture(files)),
                         ["Platform/Engine/PDF: 1 unit → Platform/PDFKit (2)", "Platform/Engine/Scripts: 1 unit",
                          "Platform/PDFKit: 1 unit"])

    def test_large_folder(self):
        def units(folder, count):
            return [f"{folder}/{number}{kind}" for number in range(count) for kind in (".h", ".cpp")]
        self.assertEqual(list(self.check.size_problems(units("Platform/Engine/Print", 12))), [])
        self.assertEqual(len(list(self.check.size_problems(units("Platform/Engine/Print", 13)))), 1)
        self.assertEqual(list(self.check.size_problems(units("Platform/Foundation", 99))), [])

    def test_header_without_guard(self):
        self.assert_found("no #pragma once", "Platform/AppKit/NSWindow.h", "// A window.\n\nint x;\n")

    def test_header_that_does_not_say_what_it_is_for(self):
        for text in ("#pragma once\n\n#include <vector>\n\n// Late.\n\nint x;\n",
                     "#pragma once\n\n/// Of x alone.\nint x;\n"):
            with self.subTest(text):
                self.assert_found("what it is for", "Platform/AppKit/NSWindow.h", text)

    def in_header(self, text):
        return self.found("Platform/AppKit/NSWindow.h", "#pragma once\n\n// A window.\n\nnamespace qrv {\n" + text + "}\n")

    def test_declaration_with_a_plain_comment(self):
        for text in ("// Opens it.\nvoid open();\n", "struct S {\n    // Opens it,\n    // and more.\n    int x = 0;\n};\n",
                     "enum class E {\n    // The first.\n    one,\n};\n",
                     "// - open\n// Opens it.\nvoid open(const W& self);\n", "// - open: it:\nvoid open(int x);\n",
                     "// - open\n/// Opens it.\n// Before others.\nvoid open(const W& self);\n"):
            with self.subTest(text):
                problems = self.in_header(text)
                self.assertEqual(len(problems), 1, problems)
                self.assertIn("in the place of ///", problems[0])

    def test_comments_that_a_header_may_have(self):
        for text in ("// - open\n/// Opens it.\nvoid open(const W& self);\n", "// + window\nvoid window();\n",
                     "// Of the section below.\n\nvoid open();\n", "int x = 0; // Behind it.\n",
                     "struct S {\n    int x() {\n        // Why so.\n        return 1;\n    }\n};\n",
                     "inline constexpr int x[] = {\n    // The first.\n    1,\n};\n",
                     'inline const char* x = "{";\n/// Shut.\nint y;\n'):
            with self.subTest(text):
                self.assertEqual(self.in_header(text), [])

    def test_selector_that_does_not_fit_its_declaration(self):
        for expected, text in (
                ("declared as run", "// - runFast\nvoid run(const Car& self);\n"),
                ("declared as setGear", "// - setGear:forCar:\n/// Of it.\nvoid setGear(const Car& self, int gear);\n"),
                ("declared as nothing", "// - run\nextern int run;\n"),
                ("declared as Car", "struct Car {\n    // - start\n    Car();\n};\n"),
                ("parameters do not fit", "// - setGear\nvoid setGear(const Car& self, int gear);\n"),
                ("parameters do not fit", "// - setGear:\nvoid setGear(const Car& self);\n"),
                ("has no receiver", "// - drive:\nvoid drive(const Car& other);\n"),
                ("has a receiver", "// + drive\nvoid drive(const Car& self);\n"),
                ("is not static", "class QRV_EXPORT Car : public Thing {\n    // + car\n    Car car();\n};\n"),
                ("is static", "class Car : public Thing {\n    // - run\n    static void run();\n};\n")):
            with self.subTest(text):
                problems = self.in_header(text)
                self.assertEqual(len(problems), 1, problems)
                self.assertIn(expected, problems[0])

    def test_selectors_that_fit(self):
        for text in ("// - setGear:forCar:\n/// Of it: f(x).\nvoid setGear_forCar(\n    const Driver& self, int gear,\n"
                     "    std::function<void(int, int)> done);\n",
                     "// + initial\nCar initial();\n", "// + carWithName:\nCar carWithName(const char* name);\n",
                     "struct Car {\n    // - init\n    Car();\n    // - dealloc\n    ~Car();\n"
                     "    // - initWithName:\n    explicit Car(const char* name);\n"
                     "    // - initWithNumber:error:\n    static Car initWithNumber_error(int number, int* error);\n"
                     "    // + log:\n    template <class... Ts>\n    [[noreturn]] static void log(const Ts&... ts) {}\n};\n",
                     "// + 1 is no selector: it has a blank.\n\nvoid f();\n"):
            with self.subTest(text):
                self.assertEqual(self.in_header(text), [])

    def test_table_of_selectors(self):
        headers = {"A/Car.h": "class Car;\nclass Car : public Thing {\npublic:\n    // - run\n    void run();\n};\n",
                   "A/Car+Radio.h": "// + car\nCar car();\n// - playSong:\n/// Plays it.\n"
                                    "void playSong(const Car& self, int song);\n"}
        self.assertEqual(list(self.check.selector_table.rows(headers)), [
            "| `+ car` | [car](@ref qrv::car) | `Car` | `A/Car+Radio.h` |",
            "| `- playSong:` | [playSong](@ref qrv::playSong) | `Car` | `A/Car+Radio.h` |",
            "| `- run` | [run](@ref qrv::Car::run) | `Car` | `A/Car.h` |"])

    def test_script_in_a_literal(self):
        for text in ('"document.title"', 'R"js(1)js"', 'R"(x => x)"', '"(function () {})()"', '"window.close = 1"',
                     '"Object.defineProperty(window, \'close\', {})"', '"location.replace(" + url + ")"',
                     'R"(const x = 1;)"'):
            with self.subTest(text):
                self.assert_found("a script belongs", "Platform/Engine/EnginePage.cpp", f"auto x = {text};\n")

    def test_literals_that_are_no_script(self):
        for text in ('"the document ends"', '"--window-size=1,1"', '"A function of the engine"', "'\"'", '"Page.enable"',
                     '1; // window.close() => 2', '1\'000 + 1\'000; f("x"); /* document.title */'):
            with self.subTest(text):
                self.assertEqual(self.found("Platform/Engine/EnginePage.cpp", f"auto x = {text};\n"), [])

    def test_property_of_the_document_in_a_script(self):
        for text in ("() => document.title", "() => document?.title", "() => document['title']", "() => document\n.title"):
            with self.subTest(text):
                self.assert_found("the page's own", "Platform/Engine/Scripts/title.js", text)

    def test_the_document_itself_in_a_script(self):
        for text in ("() => property(document, 'title')", "() => frame.document.title // document.title",
                     "() => 'document.title'", "() => documents.all", "/* document.title */ () => 1"):
            with self.subTest(text):
                self.assertEqual(self.found("Platform/Engine/Scripts/title.js", text), [])

    def test_class_that_would_not_be_run(self):
        text = "class {}(ToolTestCase):\n    def test_it(self):\n        pass\n"
        self.assertEqual(self.found("Tests/EndToEnd/test_x.py", text.format("SomeTests")), [])
        self.assert_found("ends in Tests", "Tests/EndToEnd/test_x.py", text.format("SomeTestCase"))


class ProcessTests(unittest.TestCase):
    def test_orphan_of_a_dead_child_is_found(self):
        processes.adopt_orphans()
        child = subprocess.Popen([sys.executable, "-c",
                                  "import subprocess as s\n"
                                  "p = s.Popen(['sleep', '600'], stdout=s.DEVNULL, stderr=s.DEVNULL)\n"
                                  "print(p.pid)"],
                                 stdout=subprocess.PIPE, start_new_session=True,
                                 env={**os.environ, "WEB2PDF_TEST_RUN": "orphan-of-a-dead-child"})
        orphan = int(child.communicate(timeout=30)[0])
        try:
            self.assertEqual(processes.wait_until_none(1), {orphan: "sleep"})
            self.assertEqual(processes.carrying("WEB2PDF_TEST_RUN", "orphan-of-a-dead-child"),
                             {orphan: "sleep"})
        finally:
            os.kill(orphan, signal.SIGKILL)
            os.waitpid(orphan, 0)
        self.assertEqual(processes.wait_until_none(5), {})


class BinaryMessageTests(unittest.TestCase):
    def test_message_survives(self):
        message = {"id": 7, "x": [True, None, -3, 1.5, 1 << 40, "\u00fc\U0001f600", {}], "data": b"\0\xff" * 200}
        self.assertEqual(cbor.take(cbor.encode(message) + b"next"), (message, b"next"))
        self.assertIsNone(cbor.take(cbor.encode(message)[:-1]))

    def test_engine_writes_text_in_utf_16(self):
        content = b"\xbf\x61x\x44=\xd8\x00\xde\xff"
        self.assertEqual(cbor.take(cbor.ENVELOPE + len(content).to_bytes(4, "big") + content),
                         ({"x": "\U0001f600"}, b""))

    def test_other_bytes_are_refused(self):
        with self.assertRaises(ValueError):
            cbor.take(b'{"id":7}')


class EngineProxyTests(unittest.TestCase):
    """The stand-in engines answer over file descriptors 3 and 4."""

    QUESTION = {"id": 7, "method": "Browser.getVersion"}

    @staticmethod
    def high_pipe():
        """A pipe whose numbers do not get in the way of 3 and 4."""
        ends = os.pipe()
        moved = tuple(fcntl.fcntl(end, fcntl.F_DUPFD_CLOEXEC, 20) for end in ends)
        for end in ends:
            os.close(end)
        return moved

    def exchange(self, text, message):
        """The first answer (None: the engine died) and, after the pipe is closed, the exit status."""
        with tempfile.TemporaryDirectory(prefix="web2pdf-test-") as folder:
            path = os.path.join(folder, "engine")
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)
            os.chmod(path, 0o755)
            to_engine, from_engine = self.high_pipe(), self.high_pipe()
            shell = f'exec "$0" "$@" 3<&{to_engine[0]} 4>&{from_engine[1]} {to_engine[1]}>&- {from_engine[0]}<&-'
            child = subprocess.Popen(
                ["/bin/bash", "-c", shell, path, "--remote-debugging-pipe=cbor", "--no-sandbox", "--disable-gpu"],
                pass_fds=(*to_engine, *from_engine), stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            os.close(to_engine[0])
            os.close(from_engine[1])
            os.write(to_engine[1], cbor.encode(message))
            answer = b""
            while not (answer and cbor.take(answer)) and (data := os.read(from_engine[0], 65536)):
                answer += data
            os.close(to_engine[1])
            os.close(from_engine[0])
            return cbor.take(answer)[0] if answer else None, child.wait(timeout=30)

    def setUp(self):
        processes.adopt_orphans()

    def tearDown(self):
        self.assertEqual(processes.wait_until_none(10), {})
        processes.reap()

    def test_other_calls_pass(self):
        answer, _ = self.exchange(engine.proxy("Page.printToPDF", "die"), self.QUESTION)
        self.assertEqual(answer["id"], 7)
        self.assertIn("product", answer["result"])

    def test_named_call_is_refused(self):
        answer, _ = self.exchange(engine.proxy("Browser.getVersion", "refuse"), self.QUESTION)
        self.assertEqual(answer["error"]["message"], "Refused by the test")

    def test_named_call_kills(self):
        answer, status = self.exchange(engine.proxy("Browser.getVersion", "die"), self.QUESTION)
        self.assertEqual((answer, status), (None, 9))


if __name__ == "__main__":
    unittest.main()
