"""Looks at a page in the engine just before the tool prints it.

The script stands between the tool and the engine. When the tool is about to apply its print style sheet, it
has the engine take a picture of the whole document, in the view that the tool has chosen, and writes down the
words on it with their places. What it saw lies in the folder then: page.png and page.json. Once before, when nothing
of the page has been changed yet, it takes a picture of the view alone: view.png.
"""

from engine import CHOSEN, between

# Runs in a world of its own. Everything is measured anew here: nothing is taken from the tool.
_LOOK = r"""(() => {
    const property = (name) => Object.getOwnPropertyDescriptor(Document.prototype, name).get.call(document);
    const root = property('documentElement');
    const seen = {viewWidth: innerWidth, viewHeight: innerHeight, width: innerWidth, height: innerHeight,
                  left: 0, words: []};
    if (!root) return seen;
    const scroller = property('scrollingElement') || root;
    const size = (name) => Object.getOwnPropertyDescriptor(Element.prototype, name).get.call(scroller);
    seen.width = Math.max(innerWidth, size('scrollWidth'));
    seen.height = Math.max(innerHeight, size('scrollHeight'));
    const visible = (element) => Element.prototype.checkVisibility.call(
        element, {checkOpacity: true, checkVisibilityCSS: true});
    const visit = (node) => {
        if (seen.words.length >= 5000) return;
        if (node.nodeType === 3) {
            const range = document.createRange();
            for (const found of node.data.matchAll(/\S+/g)) {
                range.setStart(node, found.index);
                range.setEnd(node, found.index + found[0].length);
                const boxes = range.getClientRects();
                if (boxes.length !== 1 || boxes[0].width === 0) continue;
                const box = boxes[0];
                seen.words.push([found[0], box.left, box.top, box.right, box.bottom]);
            }
        } else if (node instanceof Element) {
            if (!['SCRIPT', 'STYLE', 'TITLE', 'TEXTAREA', 'OPTION'].includes(node.tagName)
                && visible(node)) {
                const shadow = node instanceof HTMLElement && node.shadowRoot;
                for (const child of (shadow || node).childNodes) visit(child);
            }
        }
    };
    visit(root);
    scrollTo({left: -1e9, top: 0, behavior: 'instant'});
    seen.left = scrollX;
    scrollTo({left: 0, top: 0, behavior: 'instant'});
    return seen;
})()"""

_NOTE = r'''
import json

FOLDER, LOOK = %(folder)r, %(look)r
seen = False


def keep(name, data):
    with open(os.path.join(FOLDER, name), "wb") as file:
        file.write(data)


def photograph(session, name, **options):
    picture = ask(session, "Page.captureScreenshot", format="png", **options)
    keep(name, picture.get("data", b""))


def look(session):
    def evaluate(expression):
        return ask(session, "Runtime.evaluate", contextId=world, expression=expression,
                   returnByValue=True).get("result", {}).get("value")

    frame = ask(session, "Page.getFrameTree")["frameTree"]["frame"]["id"]
    world = ask(session, "Page.createIsolatedWorld", frameId=frame, worldName="witness")["executionContextId"]
    page = evaluate(LOOK)
    width, height = page["width"], page["height"]
    if not %(takes_picture)r:
        pass
    elif (width, height) == (page["viewWidth"], page["viewHeight"]):
        photograph(session, "page.png")
    elif width * height <= %(limit)d and max(width, height) <= 16000:
        # The engine counts the places in such a picture from where the view begins.
        evaluate("scrollTo({left: %%d, top: 0, behavior: 'instant'})" %% page["left"])
        photograph(session, "page.png", captureBeyondViewport=True,
                   clip={"x": 0, "y": 0, "width": width, "height": height, "scale": 1})
    evaluate("scrollTo({left: 0, top: 0, behavior: 'instant'})")
    keep("page.json", json.dumps(page).encode())


def take_note(call):
    global seen
    if seen or call.get("method") != "Runtime.callFunctionOn":
        return True
    script = call["params"]["functionDeclaration"]
    if %(first_sign)r in script and %(takes_picture)r:
        photograph(call["sessionId"], "view.png")
    if %(sign)r in script:
        seen = True
        look(call["sessionId"])
    return True
'''

# The names by which the engine knows the tool's scripts that change the page: the first, and the one that applies the
# style sheet.
_FIRST_SIGN = "sourceURL=web2pdf/unrollScrollers.js"
_SIGN = "sourceURL=web2pdf/applyPrintStyle.js"
_LARGEST_PICTURE = 40_000_000


def witness(folder, takes_picture=True):
    """A stand-in for the engine that writes what it saw into the folder, which anybody may write to."""
    return between(_NOTE % {"folder": str(folder), "look": _LOOK, "first_sign": _FIRST_SIGN, "sign": _SIGN, "limit": _LARGEST_PICTURE,
                            "takes_picture": takes_picture}, CHOSEN)
