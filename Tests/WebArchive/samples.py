"""Archives that more than one command is tried on."""

from webarchive import Archive, Resource, dump, labelled

# What would move the cursor of a terminal, change its title or turn a line around.
ESCAPES = "\x1b[2J\x1b]0;title\x07\x9b1m\r\n\t\x7f\u202e\u2066"


def with_frames():
    inner = Archive(Resource(None, "<p>Inner</p>", frame_name="inner"))
    first = Archive(Resource("http://site.example/first.html", "<p>First</p>", frame_name="named"),
                    [Resource("http://site.example/a.css", "p { color: red }", "text/css")], [inner])
    second = Archive(Resource("http://site.example/second.html", "<p>Second</p>"))
    return Archive(Resource("http://site.example/", "<p>Page</p>"),
                   [Resource("http://site.example/a.css", "p { color: green }", "text/css"),
                    Resource("data:text/css,p%7B%7D", "p{}", "text/css"),
                    Resource("http://site.example/a b.png", b"\x89PNG\r\n\x00\xff", "image/png")], [first, second])


def with_duplicates():
    page = Archive(Resource("http://site.example/", "<p>Page</p>"))
    for text in ("one", "two"):
        page.add(Resource("http://site.example/twice", text, "text/plain"))
    return page


def hostile_texts():
    """Every text of the archive would do something to a terminal."""
    page = Archive(labelled(f"http://site.example/{ESCAPES}", b"x", f"UTF-8{ESCAPES}", f"text/html{ESCAPES}",
                            frame_name=f"top{ESCAPES}"))
    page.add(labelled("http://site.example/" + "long" * 5000, b"y", "e" * 5000, "t" * 5000))
    return page


def many_resources(count):
    one = {"WebResourceData": b"x", "WebResourceMIMEType": "text/plain", "WebResourceURL": "http://site.example/x"}
    main = Resource("http://site.example/", "<p>Page</p>").plist()
    return dump({"WebMainResource": main, "WebSubresources": [one] * count})


def nested(depth):
    page = Archive(Resource("http://site.example/0", "<p>Innermost</p>"))
    for level in range(1, depth + 1):
        page = Archive(Resource(f"http://site.example/{level}", "<iframe src='0'></iframe>"), [], [page])
    return page
