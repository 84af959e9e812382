"""The page's scripts stand still while it is printed, and nothing of the page tells."""

from entry import SITE, document, page
from webarchive import Archive, HTML, Resource

OTHER = "http://other.example/"
UNSEEN = "<noscript><p>unscripted</p></noscript>"


def answering(name):
    """Style that says which answer the media query got."""
    return (f"<style>@media (scripting: enabled) {{ .{name}::after {{ content: ' {name}-on' }} }}"
            f"@media not (scripting) {{ .{name}::after {{ content: ' {name}-off' }} }}</style>"
            f"<p class={name}>{name}</p>")


def stands_still(name, trouble, body, words, absent=("unscripted",), **more):
    return page(name, trouble, body, words=words, absent=list(absent), **more)


def frame(url, body, frames=()):
    return Archive(Resource(url, document(body), HTML), frames=frames)


PAGES = [
    stands_still("noscript", "What is shown without scripts only", UNSEEN + "<p>around", ["around"]),
    stands_still("noscript-styled", "Such a part that has a display of its own",
                 "<style>noscript{display:block!important}</style>" + UNSEEN + "<p>around", ["around"]),
    stands_still("noscript-made", "Such a part that a script has made",
                 "<p>around<script>const part = document.createElement('noscript'); part.append('unscripted');"
                 "document.body.append(part)</script>", ["around"]),
    stands_still("noscript-shadow", "Such a part in a shadow tree",
                 f"<div><template shadowrootmode=open>{UNSEEN}<p>shade</template></div>", ["shade"]),
    stands_still("noscript-frames", "Such parts in frames of the same origin and of others, and in frames of those",
                 "<iframe src=same.html width=500 height=100></iframe>"
                 f"<iframe src={OTHER}frame.html width=500 height=300></iframe>"
                 f"<iframe srcdoc='{UNSEEN}<p>within'></iframe>", ["same", "other", "deep", "within"],
                 frames=[frame(SITE + "same.html", UNSEEN + "<p>same"),
                         frame(OTHER + "frame.html", UNSEEN + "<p>other<iframe src=deep.html></iframe>",
                               [frame(OTHER + "deep.html", UNSEEN + "<p>deep")])]),
    page("noscript-sandbox", "A frame in which no script ever ran keeps what it shows without",
         f"<iframe sandbox srcdoc='{UNSEEN}<p>within'></iframe>", words=["unscripted", "within"]),
    stands_still("scripting", "A media query asks whether there are scripts",
                 answering("inner") + "<link rel=stylesheet href=a.css><p class=linked>linked</p>"
                 "<link rel=stylesheet href=b.css media='(scripting: none)'><p>around",
                 ["inner-on", "linked-on", "nested-on", "around"],
                 ["inner-off", "linked-off"],
                 resources=[Resource(SITE + "a.css", "@import 'c.css' (scripting: none); @supports (color: red) {"
                                     "@media screen and (scripting: enabled) { .linked::after { content: ' linked-on' } } }"
                                     ".linked { &::before { @media (scripting) { content: 'nested-on ' } } }", "text/css"),
                            Resource(SITE + "b.css", ".linked::before { content: 'linked-off ' }", "text/css"),
                            Resource(SITE + "c.css", ".linked::after { content: ' linked-off' }", "text/css")]),
    stands_still("scripting-trees", "Such a query in a shadow tree, a constructed sheet and frames",
                 f"<div><template shadowrootmode=open>{answering('shade')}</template></div><p class=made>made</p>"
                 "<script>const sheet = new CSSStyleSheet(); sheet.replaceSync("
                 "\"@media (scripting: none) { .made::after { content: ' made-off' } }\");"
                 "document.adoptedStyleSheets = [sheet]</script>"
                 f"<iframe src={OTHER}frame.html width=500 height=300></iframe>", ["shade-on", "made", "other-on"],
                 ["shade-off", "made-off", "other-off"], frames=[frame(OTHER + "frame.html", answering("other"))]),
]
