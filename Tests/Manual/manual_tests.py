"""The manual pages and completions: well formed, and in step with the programs and the manual."""

import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

from tool import tool_path

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGES = sorted((ROOT / "Documentation" / "man").iterdir())
COMPLETIONS = ROOT / "Completions"
COMMANDS = ["list", "cat", "check", "extract", "create"]


def run(*command, **options):
    return subprocess.run(list(map(str, command)), capture_output=True, text=True, check=True, timeout=60, **options)


def page_text(name):
    """As a terminal shows it, without its attributes and breaks of words."""
    path = ROOT / "Documentation" / "man" / name
    return re.sub(".\b", "", run("mandoc", "-Tutf8", "-Owidth=1000", path).stdout)



def manual_table(heading):
    """The names in the first column of a table of the manual."""
    text = (ROOT / "Documentation" / "manual.md").read_text(encoding="utf-8")
    section = text.partition(f"\n## {heading}\n")[2].partition("\n## ")[0]
    cells = re.findall(r"^\| (`[^|]*`) \|", section, re.MULTILINE)
    return {name for cell in cells for name in re.findall("`([^`]*)`", cell)}


def options_of(*command, program="webarchive"):
    """Those that the program's own help lists."""
    path = pathlib.Path(tool_path()).with_name(program)
    told = run(path, *command, "--help").stdout.partition("Options:")[2]
    return set(re.findall(r"^ +(?:-\w,)?(--[a-z-]+)", told, re.MULTILINE))


class PageTests(unittest.TestCase):
    def test_are_well_formed(self):
        for page in PAGES:
            with self.subTest(page.name):
                self.assertEqual(run("mandoc", "-Tlint", "-W", "warning", page).stdout, "")
                done = run("man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", page,
                           env={**os.environ, "LC_ALL": "C.UTF-8", "MANWIDTH": "80"})
                self.assertEqual(done.stderr, "")

    def test_name_each_other_only_where_they_exist(self):
        names = {page.name for page in PAGES}
        for page in PAGES:
            others = re.findall(r"^\.BR (\S+) \((\d)\)", page.read_text(encoding="utf-8"), re.MULTILINE)
            self.assertNotEqual(others, [], page.name)
            for name, section in others:
                self.assertIn(f"{name}.{section}".replace("\\-", "-"), names, page.name)

    def test_have_every_variable(self):
        text = page_text("web2pdf.1")
        self.assertGreater(len(manual_table("Environment")), 10)
        for name in manual_table("Environment"):
            self.assertIn(name, text)

    def test_have_every_setting(self):
        text = page_text("web2pdf-settings.5")
        self.assertGreater(len(manual_table("Settings")), 5)
        for name in manual_table("Settings"):
            self.assertIn(name, text)
        keys = set(re.findall(r"^ +(\w+) \((?:integer|boolean), ", text, re.MULTILINE))
        self.assertEqual(keys, manual_table("Settings") | {"ErrorShortLogging"})

    def test_have_every_option(self):
        program = pathlib.Path(tool_path()).with_name("webarchive")
        told = run(program, "--help").stdout.partition("Subcommands:")[2]
        self.assertEqual(re.findall(r"^  (\w+)", told, re.MULTILINE), COMMANDS)
        text = page_text("webarchive.1")
        options = options_of().union(*(options_of(command) for command in COMMANDS))
        shown = set(re.findall(r"^ +(?:-\w, )?(--[a-z]+)", text.partition("\nOPTIONS\n")[2], re.MULTILINE))
        self.assertEqual(shown, options)
        for command in COMMANDS:
            with self.subTest(command):
                usage = re.search(rf"^ +webarchive {command} .*$", text, re.MULTILINE).group()
                self.assertEqual(set(re.findall("--[a-z]+", usage)), options_of(command) - {"--help"})

    def test_have_every_option_of_the_batch(self):
        program = pathlib.Path(tool_path()).with_name("web2pdf-batch")
        told = run(program, "--help").stdout.partition("Options:")[2]
        names = set(re.findall(r"^ +((?:-\w,)?--[a-z-]+)", told, re.MULTILINE))
        self.assertGreater(len(names), 20)
        options = page_text("web2pdf-batch.1").partition("\nOPTIONS\n")[2].partition("\nEXIT STATUS\n")[0]
        shown = re.findall(r"^ +((?:-\w, )?--[a-z-]+)", options, re.MULTILINE)
        self.assertEqual({name.replace(" ", "") for name in shown}, names)


class CompletionTests(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="web2pdf-test-"))
        self.addCleanup(shutil.rmtree, self.folder)
        for name in ("a page.webarchive", "b.pdf", "c.txt"):
            (self.folder / name).touch()
        (self.folder / "folder").mkdir()

    def in_bash(self, *words):
        script = ("compopt() { :; }; source \"$1\"; shift; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); "
                  "_\"$1\"; printf '%s\\n' \"${COMPREPLY[@]}\"")
        done = run("bash", "-c", script, "bash", COMPLETIONS / f"{words[0]}.bash", *words, cwd=self.folder)
        self.assertEqual(done.stderr, "")
        return set(done.stdout.split("\n")) - {""}

    def in_fish(self, *words):
        line = " ".join(words)
        done = run("fish", "--no-config", "-c", f"source {COMPLETIONS / words[0]}.fish; complete -C '{line}'",
                   cwd=self.folder, env={**os.environ, "HOME": str(self.folder)})
        self.assertEqual(done.stderr, "")
        return {row.partition("\t")[0] for row in done.stdout.splitlines()}

    def test_are_well_formed(self):
        for program in ("web2pdf", "web2pdf-batch", "webarchive"):
            run("bash", "-n", COMPLETIONS / f"{program}.bash")
            run("zsh", "-n", COMPLETIONS / f"_{program}")
            run("fish", "-n", COMPLETIONS / f"{program}.fish")

    def test_modes(self):
        self.assertEqual(self.in_bash("web2pdf", ""), {"screen", "print"})
        self.assertEqual(self.in_bash("web2pdf", "s"), {"screen"})
        self.assertEqual(self.in_fish("web2pdf", "s"), {"screen"})

    def test_files(self):
        self.assertEqual(self.in_bash("web2pdf", "print", ""), {"a page.webarchive", "folder"})
        self.assertEqual(self.in_bash("web2pdf", "print", "x", ""), {"b.pdf", "folder"})
        self.assertEqual(self.in_bash("web2pdf", "print", "x", "y", ""), set())
        self.assertIn("a page.webarchive", self.in_fish("web2pdf", "print", "a"))

    def test_commands(self):
        self.assertEqual(self.in_bash("webarchive", ""), {*COMMANDS, *options_of()})
        self.assertEqual(self.in_bash("webarchive", "c"), {"cat", "check", "create"})
        self.assertEqual(self.in_fish("webarchive", "c"), {"cat", "check", "create"})

    def test_options(self):
        for command in COMMANDS:
            with self.subTest(command):
                self.assertEqual(self.in_bash("webarchive", command, "--"), options_of(command))
                self.assertEqual(self.in_fish("webarchive", command, "--"), options_of(command))
                zsh = (COMPLETIONS / "_webarchive").read_text(encoding="utf-8")
                part = re.search(rf"^        {command}\) (.*?);;", zsh, re.MULTILINE | re.DOTALL).group(1)
                self.assertEqual(set(re.findall(r"['\"](--[a-z]+)\[", part)), options_of(command))

    def test_options_of_the_batch(self):
        options = options_of(program="web2pdf-batch")
        self.assertEqual(self.in_bash("web2pdf-batch", "--"), options)
        self.assertEqual(self.in_bash("web2pdf-batch", "x", "--re"), {"--report", "--retries", "--retry-failed"})
        self.assertEqual(self.in_fish("web2pdf-batch", "--"), options)
        zsh = (COMPLETIONS / "_web2pdf-batch").read_text(encoding="utf-8")
        self.assertEqual(set(re.findall(r"^    '(?:\(.*\)'\{-\w,)?(--[a-z-]+)", zsh, re.MULTILINE)), options)

    def test_values_of_the_batch(self):
        self.assertEqual(self.in_bash("web2pdf-batch", "-m", ""), {"print", "screen"})
        self.assertEqual(self.in_bash("web2pdf-batch", "-o", ""), {"folder"})
        self.assertEqual(self.in_bash("web2pdf-batch", "--jobs", ""), set())
        self.assertEqual(self.in_bash("web2pdf-batch", "--report", "c"), {"c.txt"})
        self.assertEqual(self.in_bash("web2pdf-batch", "-q", ""), {"a page.webarchive", "folder"})
        # This shell makes folders of its own there.
        self.assertEqual(self.in_fish("web2pdf-batch", "--mode", "s"), {"screen"})
        self.assertEqual(self.in_fish("web2pdf-batch", "-o", "f"), {"folder/"})
        self.assertIn("a page.webarchive", self.in_fish("web2pdf-batch", "a"))

    def test_archives(self):
        self.assertEqual(self.in_bash("webarchive", "list", ""), {"a page.webarchive", "folder"})
        self.assertIn("c.txt", self.in_bash("webarchive", "create", ""))
        self.assertEqual(self.in_bash("webarchive", "create", "--root", ""), {"folder"})
        self.assertEqual(self.in_bash("webarchive", "cat", "--frame", ""), set())


if __name__ == "__main__":
    unittest.main()
