"""Builds web archives (property lists that hold a page with its resources and sub-frames).

    page = Archive(Resource("http://site.example/", "<img src='a.png'>"))
    page.add(Resource("http://site.example/a.png", png(...), "image/png"))
    page.write("page.webarchive")

Text is encoded with the resource's label unless bytes are given, so a test that wants a label to
disagree with the bytes passes bytes.
"""

import plistlib

HTML = "text/html"


class Resource:
    """One stored resource. A field that is None is left out of the property list."""

    def __init__(self, url, data=b"", mime=HTML, encoding="UTF-8", frame_name=None):
        text = isinstance(data, str)
        self.url = url
        self.data = data.encode(encoding or "utf-8") if text else data
        self.mime = mime
        self.encoding = encoding if text or (mime or "").startswith("text/") else None
        self.frame_name = frame_name

    def plist(self):
        fields = {
            "WebResourceData": self.data,
            "WebResourceMIMEType": self.mime,
            "WebResourceURL": self.url,
            "WebResourceTextEncodingName": self.encoding,
            "WebResourceFrameName": self.frame_name,
        }
        return {key: value for key, value in fields.items() if value is not None}


def labelled(url, data, label, mime=HTML, frame_name=None):
    """A resource whose bytes are given and whose encoding label (None: no label) says what it likes."""
    resource = Resource(url, data, mime, frame_name=frame_name)
    resource.encoding = label
    return resource


class Archive:
    """A main resource, its subresources, and the archives of its sub-frames in tag order."""

    def __init__(self, main, subresources=(), frames=()):
        self.main = main
        self.subresources = list(subresources)
        self.frames = list(frames)

    def add(self, *resources):
        self.subresources.extend(resources)
        return self

    def add_frame(self, *archives):
        self.frames.extend(archives)
        return self

    def plist(self):
        root = {"WebMainResource": self.main.plist()}
        if self.subresources:
            root["WebSubresources"] = [resource.plist() for resource in self.subresources]
        if self.frames:
            root["WebSubframeArchives"] = [frame.plist() for frame in self.frames]
        return root

    def bytes(self, xml=False):
        return dump(self.plist(), xml)

    def write(self, path, xml=False):
        with open(path, "wb") as file:
            file.write(self.bytes(xml))
        return str(path)


def dump(root, xml=False):
    """The bytes of a property list: for archives whose structure is wrong on purpose."""
    return plistlib.dumps(root, fmt=plistlib.FMT_XML if xml else plistlib.FMT_BINARY, sort_keys=False)


def html_archive(html, url="http://site.example/page.html", encoding="UTF-8"):
    """An archive of one HTML page and nothing else."""
    return Archive(Resource(url, html, HTML, encoding))


def malformed():
    """Files that are no web archive, by the rule that each of them breaks."""
    good = html_archive("<p>Unharmed</p>").plist()
    main = good["WebMainResource"]
    without = lambda key: {name: value for name, value in main.items() if name != key}
    return {
        "empty": b"",
        "text": b"<html><body>No property list</body></html>",
        "zeros": bytes(4096),
        "truncated binary": dump(good)[:-40],
        "truncated in the header": dump(good)[:10],
        "truncated xml": dump(good, xml=True)[:-60],
        "xml that is no property list": b'<?xml version="1.0"?><page><title>x</title></page>',
        "offset table out of range": broken_offsets(dump(good)),
        "root is an array": dump([good]),
        "root is a string": dump("WebMainResource"),
        "main resource missing": dump({"WebSubresources": []}),
        "main resource is a string": dump({"WebMainResource": "text"}),
        "main resource without data": dump({"WebMainResource": without("WebResourceData")}),
        "main resource data is a string": dump({"WebMainResource": {**main, "WebResourceData": "text"}}),
        "main resource without type": dump({"WebMainResource": without("WebResourceMIMEType")}),
        "main resource type is a number": dump({"WebMainResource": {**main, "WebResourceMIMEType": 7}}),
        "subresources is a dictionary": dump({**good, "WebSubresources": {}}),
        "subresource is a string": dump({**good, "WebSubresources": [main, "text"]}),
        "sub-frames is a string": dump({**good, "WebSubframeArchives": "text"}),
        "sub-frame is a number": dump({**good, "WebSubframeArchives": [7]}),
    }


def broken_offsets(data):
    """A binary property list whose trailer points its offset table beyond the end of the file."""
    return data[:-8] + (len(data) * 1000).to_bytes(8, "big")
