"""Which archives are converted, and where their PDFs go."""

import os
import subprocess

import fake_tool
from batch import ENDED, FAILURE, BatchTestCase

LONG = "l" * 244    # 255 bytes with ".webarchive"
NAMES = ["with space", "line\nbreak", "'quotes' \"all\" `of` them", "-leading", "--help", "back\\slash", "a\x1b[41mred",
         "\u202eturned", "größe 日本", b"no\xff\xfeutf8", "[a,b]", "{}", "%s%%", "*", "$HOME", "@x", "~", "a=b",
         ".hidden", "tab\tbed", "bell\x07", "c1\x9b1m", LONG, "dots..", "new.web2pdf-batch-"]


def pdf_of(name):
    return os.fsdecode(os.fsencode(name)) + ".pdf"


class FolderTests(BatchTestCase):
    def test_tree_below_the_folder_is_kept(self):
        self.archives("a", "one/b", "one/two/c", "one/two/a")
        (self.sources / "one" / "page.html").write_text("no archive")
        self.run_batch("in")
        self.assert_converted("a.pdf", "one/b.pdf", "one/two/c.pdf", "one/two/a.pdf")

    def test_files_of_any_name_are_converted(self):
        self.archives(*NAMES)
        self.run_batch("in")
        self.assert_converted(*map(pdf_of, NAMES))
        archives = {self.path_in(record, "archive") for record in self.records().values()}
        self.assertEqual(archives, {"in/" + os.fsdecode(os.fsencode(name)) + ".webarchive" for name in NAMES})

    def test_folders_of_any_name_are_searched(self):
        names = [name if name != LONG else "l" * 255 for name in NAMES]
        for name in names:
            self.archive(os.fsencode(name) + b"/page")
        self.run_batch("in")
        self.assert_converted(*(os.fsdecode(os.fsencode(name)) + "/page.pdf" for name in names))

    def test_extension_in_any_case_and_nothing_else(self):
        for name in ("A.WEBARCHIVE", "B.WebArchive", "webarchive", "c.webarchive.txt", "d.mhtml"):
            (self.sources / name).write_text(fake_tool.CONVERTS)
        self.run_batch("in")
        self.assert_converted("A.pdf", "B.pdf")

    def test_folder_is_given_in_any_way(self):
        self.archive("one/a")
        inside = self.sources / "one"
        for source in ("in", "in/", "./in", "in/../in", "in/one/..", self.sources, "in//"):
            with self.subTest(source):
                run = self.run_batch("-n", source)
                self.assertTrue(run.output.endswith(" -> one/a.pdf\n"), run.output)
        run = subprocess.run(self.command("-n", ".", output="../../out"), cwd=inside, capture_output=True, check=True,
                             env=self.environment())
        self.assertEqual(run.stdout, b"convert   ./a.webarchive -> a.pdf\n")

    def test_links_to_files_are_followed_and_links_to_folders_are_not(self):
        self.archive("there", folder="elsewhere")
        self.archive("real")
        (self.sources / "linked.webarchive").symlink_to(self.folder / "elsewhere" / "there.webarchive")
        (self.sources / "folder").symlink_to(self.folder / "elsewhere")
        (self.sources / "folder.webarchive").symlink_to(self.folder / "elsewhere")
        (self.sources / "loop").symlink_to(".")
        self.run_batch("in")
        self.assert_converted("linked.pdf", "real.pdf")

    def test_links_that_lead_nowhere_fail(self):
        self.archive("a")
        (self.sources / "dangling.webarchive").symlink_to("nowhere")
        (self.sources / "circle.webarchive").symlink_to("circle.webarchive")
        self.run_batch("in", "--retries", 0, status=FAILURE)
        self.assert_converted("a.pdf")
        for name in ("dangling.pdf", "circle.pdf"):
            self.assert_failed(name, ENDED)

    def test_folder_that_is_a_link_is_searched_when_it_is_the_source(self):
        self.archive("a")
        (self.folder / "link").symlink_to("in")
        self.run_batch("link")
        self.assert_converted("a.pdf")

    def test_folder_named_like_an_archive_is_searched(self):
        self.archive("page.webarchive/inner")
        self.run_batch("in")
        self.assert_converted("page.webarchive/inner.pdf")

    def test_what_is_neither_file_nor_folder_fails(self):
        os.mkfifo(self.sources / "pipe.webarchive")
        self.archive("a")
        self.run_batch("in", "--retries", 0, status=FAILURE)
        self.assert_converted("a.pdf")
        self.assert_failed("pipe.pdf", ENDED)

    def test_folder_without_archives(self):
        run = self.run_batch("in")
        self.assertEqual(run.summary, {"total": 0, "converted": 0})
        self.assertEqual(self.lines_of(), [])

    def test_folder_that_cannot_be_read_fails_and_the_others_are_converted(self):
        self.archives("a", "closed/b", "closed")
        (self.sources / "closed").chmod(0)
        self.addCleanup((self.sources / "closed").chmod, 0o755)
        run = self.run_batch("in", "--retries", 0, status=FAILURE, **self.as_nobody())
        self.assert_converted("a.pdf", "closed.pdf")
        self.assert_failed("closed/.pdf", ENDED)
        self.assertEqual(run.summary, {"total": 3, "converted": 2, "failed": 1})
        self.assertEqual(self.records()["closed/.pdf"]["archive"], "in/closed")

    def test_source_that_cannot_be_read_fails(self):
        self.sources.chmod(0)
        for source in ("in", "in/"):
            with self.subTest(source):
                self.run_batch(source, "--retries", 0, status=FAILURE, **self.as_nobody())
                self.assertEqual(list(self.records()), ["in/.pdf"])

    def test_archive_that_cannot_be_read_fails_and_is_tried_again(self):
        self.archive("a").chmod(0)
        options = self.as_nobody()
        for _ in range(2):
            self.run_batch("in", "--retries", 0, status=FAILURE, **options)
            self.assert_failed("a.pdf", ENDED)
            self.assertEqual(self.records()["a.pdf"]["sha256"], "")
            self.calls.write_text("")
        (self.sources / "a.webarchive").chmod(0o644)
        self.run_batch("in", **options)
        self.assert_converted("a.pdf")

    def test_output_inside_of_the_source(self):
        self.archives("a", "b/c")
        self.output = self.sources / "pdfs"
        for _ in range(2):
            self.run_batch("in", output="in/pdfs")
            self.assert_converted("a.pdf", "b/c.pdf")
        self.assertEqual(self.called(), 2)

    def test_deep_trees(self):
        deep = "/".join(["d" * 10] * 200)
        self.archive(deep + "/a")
        self.run_batch("in")
        self.assert_converted(deep + "/a.pdf")


class FileTests(BatchTestCase):
    def test_pdf_has_the_name_of_the_file(self):
        self.archives("one/a", "two/b")
        (self.sources / "page").write_text(fake_tool.CONVERTS)
        self.run_batch("in/one/a.webarchive", self.sources / "two" / "b.webarchive", "in/page")
        self.assert_converted("a.pdf", "b.pdf", "page.pdf")

    def test_any_name_can_be_given(self):
        for name in NAMES:
            with self.subTest(name):
                self.archive(name, folder=".")
                file = os.fsencode(name) + b".webarchive"
                run = self.run_batch("--no-resume", "--", file)
                self.assertEqual(run.summary, {"total": 1, "converted": 1})
        self.assert_converted(*map(pdf_of, NAMES))

    def test_names_are_no_lists_and_no_separators(self):
        names = [b"[a,b]", b"[]", b"{}", b"%%", b"a,b", b"++", b"[x", b"[[y]]"]
        for name in names:
            (self.folder / os.fsdecode(name)).write_text(fake_tool.CONVERTS)
            self.run_batch("--no-resume", name)
        self.run_batch("--no-resume", *names)
        self.assert_converted(*(os.fsdecode(name) + ".pdf" for name in names))

    def test_two_that_would_become_the_same_pdf_are_refused(self):
        self.archives("one/a", "two/a")
        run = self.assert_refused("would both become a.pdf", "in/one/a.webarchive", "in/two/a.webarchive")
        self.assertIn("in/one/a.webarchive and in/two/a.webarchive", run.errors)
        self.assert_refused("would both become a.pdf", "in/one", "in/two")
        (self.sources / "one" / "a.WEBARCHIVE").write_text(fake_tool.CONVERTS)
        self.assert_refused("would both become a.pdf", "in/one")
        self.assert_refused("would both become one/a.pdf", "in")

    def test_one_that_is_given_twice_is_converted_once(self):
        self.archives("a", "b")
        self.run_batch("in", "in/a.webarchive", "in")
        self.assertEqual(self.called(), 2)
        self.assert_converted("a.pdf", "b.pdf")

    def test_source_that_is_missing_is_refused(self):
        self.archive("a")
        (self.folder / "dangling").symlink_to("nowhere")
        for source in ("missing", "in/missing.webarchive", "in/a.webarchive/x", "", "dangling", "x" * 300):
            with self.subTest(source):
                self.assert_refused("", "in", source)
        self.assert_refused("SOURCE says what is converted")


class ListTests(BatchTestCase):
    def test_pdfs_go_where_the_list_says(self):
        self.archives("a", "one/b")
        self.archive("c", folder="elsewhere")
        inside = self.archive("d", folder="inside/here")
        self.run_batch("-", given=f"in/a.webarchive\n./in/one/../one/b.webarchive\n\n{inside}\nelsewhere//c.webarchive")
        self.assert_converted("in/a.pdf", "in/one/b.pdf", "elsewhere/c.pdf", str(inside)[1:-len("webarchive")] + "pdf")

    def test_paths_above_the_working_folder_go_below_the_output(self):
        self.archive("a")
        run = subprocess.run(self.command("-", output="../out"), cwd=self.sources, input=b"../in/a.webarchive\n",
                             capture_output=True, check=True, env=self.environment())
        self.assertIn(b"1 converted", run.stdout)
        self.assert_converted(str(self.sources)[1:] + "/a.pdf")

    def test_base(self):
        self.archives("a", "one/b")
        for base in ("in", "in/", "./in/one/..", str(self.sources)):
            with self.subTest(base):
                self.run_batch("-", "--base", base, "--no-resume",
                               given=f"in/a.webarchive\n{self.sources}/one/b.webarchive\n")
                self.assert_converted("a.pdf", "one/b.pdf")
                self.called()
        for path in ("out/x", "in/../x", "/x", "/", "in2/a.webarchive", "."):
            with self.subTest(path):
                self.assert_refused(" is not below in", "-", "--base", "in", given=f"in/a.webarchive\n{path}\n")

    def test_names_by_lines(self):
        names = [name for name in NAMES if b"\n" not in os.fsencode(name)]
        self.archives(*names)
        self.run_batch("-", "--base", "in",
                       given=b"".join(b"in/" + os.fsencode(name) + b".webarchive\n" for name in names))
        self.assert_converted(*map(pdf_of, names))

    def test_names_that_end_with_nul(self):
        self.archives(*NAMES, folder=".")
        for option in ("-0", "--null"):
            self.run_batch("-", option, "--no-resume",
                           given=b"".join(os.fsencode(name) + b".webarchive\0" for name in NAMES))
            self.assert_converted(*map(pdf_of, NAMES))

    def test_list_with_nul_is_not_taken_for_lines(self):
        self.archives("a", "b")
        self.assert_refused("--null", "-", given=b"in/a.webarchive\0in/b.webarchive\0")

    def test_what_is_listed_and_missing_fails(self):
        self.archive("a")
        run = self.run_batch("-", "--retries", 0, given="in/a.webarchive\nin/missing.webarchive\n", status=FAILURE)
        self.assert_converted("in/a.pdf")
        self.assert_failed("in/missing.pdf", ENDED)
        self.assertEqual(run.summary, {"total": 2, "converted": 1, "failed": 1})

    def test_folders_that_are_listed_are_searched(self):
        self.archives("one/a", "two/b", "three/c")
        self.run_batch("-", given="in/one\nin/two/\n")
        self.assert_converted("in/one/a.pdf", "in/two/b.pdf")
        self.run_batch("-", "--base", "in", "--no-resume", given="in/three/\n", output="other")
        self.assertTrue((self.folder / "other" / "three" / "c.pdf").is_file())
        run = self.run_batch("-n", "-", "--base", "in", given="in\n")
        self.assertEqual([line.partition(" -> ")[2] for line in run.lines],
                         ["one/a.pdf", "three/c.pdf", "two/b.pdf"])

    def test_folder_that_is_listed_and_cannot_be_read(self):
        (self.sources / "closed").mkdir(mode=0)
        self.addCleanup((self.sources / "closed").chmod, 0o755)
        self.run_batch("-", "--retries", 0, given="in/closed/\n", status=FAILURE, **self.as_nobody())
        self.assertEqual(list(self.records()), ["in/closed/.pdf"])

    def test_list_beside_other_sources(self):
        self.archives("a", "b")
        self.archive("c", folder="elsewhere")
        self.run_batch("elsewhere", "-", "--base", "in", given="in/a.webarchive\n")
        self.assert_converted("a.pdf", "c.pdf")

    def test_two_that_are_listed_for_the_same_pdf_are_refused(self):
        self.archive("a")
        (self.sources / "a").write_text(fake_tool.CONVERTS)
        self.assert_refused("would both become in/a.pdf", "-", given="in/a.webarchive\nin/a\n")

    def test_empty_list(self):
        self.assertEqual(self.run_batch("-", given="").summary, {"total": 0, "converted": 0})
        self.assertEqual(self.run_batch("-", given="\n\n").summary, {"total": 0, "converted": 0})

    def test_list_that_cannot_be_read_is_no_empty_one(self):
        folder = os.open(self.sources, os.O_RDONLY | os.O_DIRECTORY)
        self.addCleanup(os.close, folder)
        self.assert_refused("the list", "-", stdin=folder)

    def test_path_that_is_too_long_fails_alone(self):
        self.archive("a")
        given = "in/a.webarchive\nin/" + "x" * 300 + ".webarchive\n" + "y" * 252 + "\n"
        run = self.run_batch("-", "--retries", 0, given=given, status=FAILURE)
        self.assert_converted("in/a.pdf")
        self.assertEqual(run.summary, {"total": 3, "converted": 1, "failed": 2})

