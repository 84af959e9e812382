"""Makes archives with the program webarchive, and reads them with Python's own reader of property lists.

    class SomeTests(CreationTestCase):
        def test_something(self):
            self.write("page.html", "<img src=a.png>")
            archive = self.create("page.html").archive
"""

import os
import pathlib
import plistlib
import subprocess
from dataclasses import dataclass

from tool import ToolTestCase


def colours(pdf):
    """The colours that the first page of a PDF has."""
    drawn = pdf.picture()
    return {tuple(drawn.rgb[at:at + 3]) for at in range(0, len(drawn.rgb), 3)}


class StoredArchive:
    """What an archive's file says."""

    def __init__(self, root):
        main = root["WebMainResource"]
        self.url = main.get("WebResourceURL")
        self.data = main["WebResourceData"]
        self.mime = main["WebResourceMIMEType"]
        self.encoding = main.get("WebResourceTextEncodingName")
        self.name = main.get("WebResourceFrameName")
        self.resources = [(one["WebResourceURL"], one["WebResourceMIMEType"], one["WebResourceData"])
                          for one in root.get("WebSubresources", [])]
        self.frames = [StoredArchive(one) for one in root.get("WebSubframeArchives", [])]

    @property
    def urls(self):
        """The addresses of the resources, without those of the frames, in order."""
        return [url for url, _, _ in self.resources]

    def all_resources(self):
        """Every resource with its bytes, by its address: those of all frames, and the pages."""
        found = {self.url: self.data, **{url: data for url, _, data in self.resources}}
        for frame in self.frames:
            found.update(frame.all_resources())
        return found

    def types(self):
        found = {self.url: self.mime, **{url: mime for url, mime, _ in self.resources}}
        for frame in self.frames:
            found.update(frame.types())
        return found


@dataclass
class Creation:
    status: int
    errors: str
    path: pathlib.Path

    @property
    def archive(self):
        return StoredArchive(plistlib.loads(self.path.read_bytes()))


class CreationTestCase(ToolTestCase):
    def setUp(self):
        super().setUp()
        self.disk = self.folder / "disk"
        self.disk.mkdir()

    def write(self, name, contents):
        """A file below the test's folder of files: its name may be bytes."""
        path = os.path.join(os.fsencode(self.disk), os.fsencode(name))
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(contents.encode() if isinstance(contents, str) else contents)
        return path

    def program(self, *arguments, environment=None):
        """Runs webarchive in the folder of files."""
        run = subprocess.run([os.environ["WEBARCHIVE"], *arguments], cwd=self.disk, stdin=subprocess.DEVNULL,
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=120, check=False,
                             env=environment or self.environment())
        self.assert_nothing_left()
        return run

    def create(self, page, *options, succeeds=True, name="made.webarchive", environment=None):
        path = self.folder / name
        run = self.program("create", *options, page, str(path), environment=environment)
        errors = run.stderr.decode(errors="replace")
        self.assertEqual(run.returncode == 0, succeeds, errors)
        if succeeds:
            self.assertEqual([one for one in os.listdir(self.folder) if one.startswith(".")], [])
        return Creation(run.returncode, errors, path)

    def address(self, name):
        """The address of a file, as the engine writes it."""
        return (pathlib.Path(self.disk).as_uri() + "/" + name)

    def convert_made(self, creation, mode="screen"):
        return self.convert(creation.path.read_bytes(), mode=mode).pdf
