"""What a hostile page is: an archive that means harm, and what must hold for its conversion.

    PAGES = [
        acting("form-data", "A form to a data: address", "f.submit()", "<form id=f action='data:,x'></form>"),
    ]

Every page says the marker, and it must be in the PDF of a conversion that succeeded. In whatever a page holds, PORT
stands for a port of this machine on which nobody may call, and SECRET for the path of a file that nobody may show.
"""

from dataclasses import dataclass

from webarchive import HTML, Archive, Resource, html_archive

BOMB = 750      # MiB; the engine may take a little more before it is seen
LONG_LINE = "the engine's time to print a line grows with the square of its length"
SITE = "http://site.example/"
MARKER = "StillHere"
PORT = "65432109876"            # no port can have this number
SECRET = "/secret-of-the-machine"
SECRET_TEXT = "SecretOfTheMachine"


@dataclass
class Page:
    name: str
    harm: str
    archive: object             # an Archive, or a function that makes it: for those that are large
    says: tuple = (MARKER,)     # each of these words is in the PDF
    silent: tuple = ()          # none of these is
    may_fail: str = ""          # why a failure is a good answer, too
    linger: int = 0             # seconds that the tool waits when the page has loaded
    quick: bool = False         # belongs to the choice that every run of the tests takes
    never_ends: str = ""        # why the tool may wait for ever: it is given a deadline
    memory_limit: int = 0       # MiB that the engine is given; without it what the tool gives by itself
    mode: str = "screen"

    def bytes(self, port, secret):
        archive = self.archive() if callable(self.archive) else self.archive
        for part in every_archive(archive):
            for resource in [part.main, *part.subresources]:
                resource.data = resource.data.replace(PORT.encode(), str(port).encode()) \
                                             .replace(SECRET.encode(), secret.encode())
        return archive.bytes()


def every_archive(archive):
    yield archive
    for frame in archive.frames:
        yield from every_archive(frame)


def document(body, head=""):
    return f"<!DOCTYPE html><html><head><meta charset=utf-8><title>Hostile</title>{head}</head><body><p>{MARKER}</p>{body}</body></html>"


def page(name, harm, body="", *, head="", resources=(), url=SITE + "page.html", **expected):
    """A page whose body is given."""
    archive = html_archive(document(body, head), url).add(*resources)
    return Page(name, harm, archive, **expected)


def acting(name, harm, script, body="", *, when="load", **more):
    """A page that runs a script: while it is parsed ("now"), when it has loaded, or some time later ("later")."""
    begun = {"now": script, "ready": f"addEventListener('DOMContentLoaded', () => {{ {script} }})",
             "load": f"addEventListener('load', () => {{ {script} }})",
             "later": f"setTimeout(() => {{ {script} }}, 300)"}[when]
    if when == "later":
        more.setdefault("linger", 1)
    return page(name, harm, f"{body}<script>{begun}</script>", **more)


def html(name, text):
    """A further page of the site."""
    return Resource(SITE + name, text, HTML)


def typed(name, harm, data, mime, encoding=None, url=SITE + "page.html", **expected):
    """A main resource of any type."""
    resource = Resource(url, data, mime)
    resource.encoding = encoding
    return Page(name, harm, Archive(resource), **expected)
