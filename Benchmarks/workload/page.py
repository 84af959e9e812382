"""A page with all that belongs to it, which can be written as a web archive and as plain files.

    page = Page("<img src='a.png'>", resources={"a.png": (data, "image/png")})
    page.write_archive("page.webarchive")
    page.write_files(folder)    # page.html, a.png; what programs other than ours are given
"""

import dataclasses
import pathlib

from webarchive import HTML, Archive, Resource

SITE = "http://benchmark.example/"
NAME = "page.html"


@dataclasses.dataclass
class Page:
    html: str
    resources: dict = dataclasses.field(default_factory=dict)    # names, mapped to bytes and type
    frames: dict = dataclasses.field(default_factory=dict)    # names, mapped to HTML

    def write_archive(self, path):
        archive = Archive(Resource(SITE + NAME, self.html))
        archive.add(*(Resource(SITE + name, data, mime) for name, (data, mime) in self.resources.items()))
        archive.add_frame(*(Archive(Resource(SITE + name, html, HTML)) for name, html in self.frames.items()))
        return archive.write(path)

    def write_files(self, folder):
        """Returns the address of the page."""
        folder = pathlib.Path(folder)
        folder.mkdir()
        for name, html in {NAME: self.html, **self.frames}.items():
            (folder / name).write_text(html, encoding="utf-8")
        for name, (data, _) in self.resources.items():
            (folder / name).write_bytes(data)
        return (folder / NAME).as_uri()
