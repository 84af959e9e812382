"""The programs that are compared, and how each is called."""

import contextlib
import dataclasses
import os
import pathlib
import plistlib
import shutil
import tempfile

from measure import measure
from tool import NOBODY, SETTINGS_DOMAIN, read_result

# Where the tool finds it first.
ENGINE = os.environ.get("WEB2PDF_ENGINE") or "/usr/lib/chromium/chromium-headless-shell"
NAMES = {"web2pdf": "web2pdf", "engine": "the engine alone", "wkhtmltopdf": "wkhtmltopdf", "weasyprint": "WeasyPrint"}


@dataclasses.dataclass
class Job:
    """A page that is to be converted, in a folder that every user can read."""
    folder: pathlib.Path
    archive: str
    address: str    # of the same page as files
    mode: str    # "screen" or "print", for the tool alone

    @property
    def output(self):
        return self.folder / "out" / "page.pdf"


@contextlib.contextmanager
def job(page, mode):
    with tempfile.TemporaryDirectory(prefix="web2pdf-benchmark-") as name:
        folder = pathlib.Path(name)
        for inner in ("", "out", "home", "config/preferences"):
            (folder / inner).mkdir(parents=True, exist_ok=True)
            (folder / inner).chmod(0o755)
        settings = folder / "config" / "preferences" / f"{SETTINGS_DOMAIN}.plist"
        settings.write_bytes(plistlib.dumps({"WebToolExtraLoadingTime": 0}))
        yield Job(folder, page.write_archive(folder / "page.webarchive"), page.write_files(folder / "files"), mode)


def command(program, one_job, tool):
    """The command line; the tool's path is needed for the tool alone."""
    output = str(one_job.output)
    return {
        "web2pdf": [str(tool), one_job.mode, one_job.archive, output, "benchmark"],
        "engine": [ENGINE, "--headless", f"--user-data-dir={one_job.folder / 'home' / 'profile'}",
                   f"--print-to-pdf={output}", one_job.address],
        "wkhtmltopdf": ["wkhtmltopdf", "--quiet", "--enable-local-file-access", one_job.address, output],
        "weasyprint": ["weasyprint", "--quiet", one_job.address, output],
    }[program]


def is_installed(program):
    return program == "web2pdf" or shutil.which(ENGINE if program == "engine" else program) is not None


def convert(program, one_job, tool, timeout, prefix=(), **options):
    """One run, and what went wrong with it; None when nothing did. The prefix is a command that runs the command."""
    _renew(one_job.folder / "home")
    _renew(one_job.folder / "out")
    with tempfile.TemporaryFile() as answer:
        run = measure([*prefix, *command(program, one_job, tool)], _environment(one_job), timeout, output=answer,
                      **_identity(program), **options)
        answer.seek(0)
        return run, _trouble(program, run, one_job.output, answer.read(), timeout)


def _environment(one_job):
    return {"PATH": "/usr/local/bin:/usr/bin:/bin", "LANG": "C.UTF-8", "TZ": "UTC", "PAPERSIZE": "letter",
            "HOME": str(one_job.folder / "home"), "TMPDIR": str(one_job.folder / "home"),
            "XDG_CONFIG_HOME": str(one_job.folder / "config"), "QT_QPA_PLATFORM": "offscreen"}


def _identity(program):
    """The engine builds its sandbox for anybody but root. The tool gives up root's rights for it, so the others do."""
    if program == "web2pdf" or os.getuid() != 0:
        return {}
    return {"user": NOBODY, "group": NOBODY, "extra_groups": []}


def _renew(folder):
    """Makes the folder empty: no run finds a profile, a cache or a PDF of another."""
    shutil.rmtree(folder)
    folder.mkdir()
    folder.chmod(0o777)


def _trouble(program, run, output, answer, timeout):
    if run.status is None:
        return f"not done in {timeout} s"
    if run.status != 0:
        return f"exit status {run.status}"
    if program == "web2pdf" and not (result := read_result(answer))["succeeded"]:
        return result["errorString"]
    with contextlib.suppress(OSError):
        if output.read_bytes()[:5] == b"%PDF-":
            return None
    return "no PDF"
