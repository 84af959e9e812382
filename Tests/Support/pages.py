"""Pages written for the tests. Each function returns an archive, unless its name says otherwise."""

from images import png, svg
from webarchive import HTML, Archive, Resource, html_archive, labelled

SITE = "http://site.example/"
RED, GREEN, BLUE, GOLD = (220, 30, 40), (20, 160, 70), (30, 60, 200), (250, 200, 60)


def css(colour):
    return f"rgb({colour[0]},{colour[1]},{colour[2]})"


def document(body, title="A page", head=""):
    """A standards-mode document."""
    name = f"<title>{title}</title>" if title is not None else ""
    return (f"<!DOCTYPE html><html><head>{name}"
            "<style>body{margin:20px;font:16px/24px 'DejaVu Sans',sans-serif}</style>"
            f"{head}</head><body>{body}</body></html>")


def page(body, url=SITE + "page.html", **more):
    return html_archive(document(body, **more), url)


def boxes(width=400, height=1500):
    """Coloured boxes at known places: the corners of a document of known size, and one in the middle."""
    def box(x, y, colour):
        return f'<div style="position:absolute;left:{x}px;top:{y}px;width:40px;height:40px;background:{css(colour)}"></div>'
    body = (box(0, 0, RED) + box(width - 40, 0, GREEN) + box(0, height - 40, BLUE)
            + box(width - 40, height - 40, GOLD) + box(width // 2, height // 2, RED))
    return html_archive("<!DOCTYPE html><title>Boxes</title><style>html,body{margin:0}"
                        f"#all{{position:relative;width:{width}px;height:{height}px}}</style>"
                        f"<div id=all>{body}</div>")


def paragraphs(count):
    """A page of numbered paragraphs, one word each, so that a lost or doubled line is seen in the text."""
    return page("".join(f"<p>Paragraph{number:04d}</p>" for number in range(count)))


def media_styles():
    return page('<p class="s">ForTheScreen</p><p class="p">ForThePrinter</p>',
                head="<style>.s,.p{display:none}@media screen{.s{display:block}}"
                     "@media print{.p{display:block}}</style>")


def with_images():
    """Three pictures: in the archive, twice in it (the last one counts), and missing from it."""
    body = ('<img src="here.png" style="position:absolute;left:20px;top:20px" width=60 height=60>'
            '<img src="twice.png" style="position:absolute;left:120px;top:20px" width=60 height=60>'
            '<img src="missing.png" style="position:absolute;left:220px;top:20px" width=60 height=60>'
            '<img src="drawn.svg" style="position:absolute;left:320px;top:20px" width=60 height=60>'
            '<p style="margin-top:120px">Below the pictures</p>')
    return page(body).add(
        Resource(SITE + "here.png", png(6, 6, GREEN), "image/png"),
        Resource(SITE + "twice.png", png(6, 6, RED), "image/png"),
        Resource(SITE + "twice.png", png(6, 6, BLUE), "image/png"),
        Resource(SITE + "drawn.svg", svg(60, 60, GOLD), "image/svg+xml"))


# Frames

def frame_archive(name, url, text, frames=(), body=""):
    """A sub-frame's archive; name is what the archive stores as the frame's name (None: nothing)."""
    html = document(f"<p>{text}</p>{body}", title=f"Title of {text}")
    return Archive(Resource(url, html, HTML, frame_name=name), frames=frames)


def three_levels_of_frames():
    inner = frame_archive("innermost", SITE + "third.html", "LevelThree")
    middle = frame_archive("<!--frame1-->", SITE + "second.html", "LevelTwo", [inner],
                           '<iframe name="innermost" src="third.html" width=300 height=100></iframe>')
    outer = page('<p>LevelOne</p><iframe src="second.html" width=400 height=300></iframe>')
    return outer.add_frame(middle)


def frameset(url=SITE + "frames.html"):
    html = ('<html><head><title>Frameset</title></head><frameset cols="50%,50%">'
            '<frame name="left" src="left.html"><frame name="right" src="right.html"></frameset></html>')
    archive = Archive(Resource(url, html))
    return archive.add_frame(frame_archive("left", SITE + "left.html", "LeftHalf"),
                             frame_archive("right", SITE + "right.html", "RightHalf"))


def blank_frame_with_content():
    """Frames without an address of their own whose content is stored all the same."""
    body = ('<p>Around</p><iframe name="filled" width=300 height=100></iframe>'
            '<iframe name="also" src="about:blank" width=300 height=100></iframe>')
    return page(body).add_frame(frame_archive("filled", "about:blank", "FilledByName"),
                                frame_archive("also", "about:blank", "FilledToo"))


# Character sets: name, text, and how it is labelled

CHARACTER_SETS = {
    "utf-8": "Grüße Ωmega Жизнь",
    "windows-1252": "Grüße “quoted” €uro",
    "iso-8859-1": "Grüße façade",
    "iso-8859-15": "Prix €uro œuvre",
    "windows-1251": "Жизнь прекрасна",
    "shift_jis": "日本語の文章",
    "euc-kr": "한국어 문장",
    "gb18030": "中文句子",
    "big5": "繁體中文",
}

PYTHON_NAMES = {"windows-1252": "cp1252", "windows-1251": "cp1251"}


def in_character_set(name, label=None, meta=None, mark=b""):
    """The text of a character set in its own bytes; label None means no label, meta None no <meta>."""
    declared = f'<meta charset="{meta}">' if meta else ""
    html = f"<!DOCTYPE html><html><head>{declared}<title>{CHARACTER_SETS[name]}</title></head>" \
           f"<body><p>{CHARACTER_SETS[name]}</p></body></html>"
    data = mark + html.encode(PYTHON_NAMES.get(name, name))
    return Archive(labelled(SITE + "text.html", data, label))


# Pages that act by themselves

def acting(script, body="<p>StillHere</p>", **more):
    """A page that runs a script when it has loaded."""
    return page(f"{body}<script>addEventListener('load', function() {{ {script} }});</script>", **more)


def destination(archive, name="next.html", text="Destination"):
    """Adds a page to go to."""
    return archive.add(Resource(SITE + name, document(f"<p>{text}</p>", title=text)))


def main_resource(url, data, mime, encoding="UTF-8"):
    resource = Resource(url, data, mime, encoding)
    return Archive(resource)
