"""What a print sets on the root and the body, inherited by whoever says so: each must get the page's own value."""

from entry import page, paragraphs

CONTENTS = ("<div class=a><div class=b>first</div><div class=b>second</div></div>" + paragraphs(30)
            + "<div class=a><div class=b>third</div></div>")
BOXES = ".a{padding:10px;border:2px solid #36c}.b{width:50%;padding:5px;background:#cdf}"
MOVES = "margins are inherited, and broken at the sheets' edges"


def inherited(name, root="", body="", who="*", **expected):
    """A property that everybody inherits, and the root's own value."""
    return page(name, f"Everybody inherits {name} from the root", CONTENTS,
                style=f"{BOXES}html{{{root}}}body{{{body}}}{who}{{{name}:inherit}}", **expected)


def from_body(name, body, root="", **expected):
    """The children alone inherit a property that the body has of its own."""
    return page(f"{name}-of-body", f"The body's children inherit {name} from it", CONTENTS,
                style=f"{BOXES}html{{{root}}}body{{{body}}}body>*{{{name}:inherit}}", **expected)


PAGES = [
    inherited("box-sizing", "box-sizing:border-box", who="*,::before,::after"),
    page("box-sizing-of-columns", "Columns of a common style sheet: box-sizing by inheritance",
         "<div class=row>" + "".join(f"<div class=column>column{n}</div>" for n in range(6)) + "</div>" + paragraphs(20),
         style="html{box-sizing:border-box}*,*::before,*::after{box-sizing:inherit}body::before{content:'above';display:block;"
               "width:50%;padding:10px;border:5px solid #c33}.row{overflow:hidden}"
               ".column{float:left;width:33.3333%;padding:10px;border:1px solid #36c}"),
    page("box-sizing-right-to-left", "Columns from the right: box-sizing by inheritance",
         "<div class=row>" + "".join(f"<div class=column>column{n}</div>" for n in range(6)) + "</div>" + paragraphs(20),
         style="html{box-sizing:border-box;direction:rtl}*{box-sizing:inherit}.row{overflow:hidden}"
               ".column{float:right;width:33.3333%;padding:10px;border:1px solid #36c}"),
    page("pseudo-elements", "A root's and a body's generated boxes inherit", CONTENTS,
         style=BOXES + "html{box-sizing:border-box;background:#eef}html::before,body::after{content:'generated';display:block;"
                       "box-sizing:inherit;background:inherit;width:60%;padding:20px;border:5px solid #c33}"),
    inherited("width"),
    inherited("min-width"),
    inherited("max-width"),
    inherited("height"),
    inherited("min-height"),
    inherited("max-height"),
    inherited("position"),
    inherited("inset"),
    inherited("float"),
    inherited("overflow"),
    inherited("contain"),
    inherited("page"),
    inherited("direction"),
    inherited("writing-mode"),
    inherited("transition", "transition:all 1s"),
    inherited("zoom", "zoom:1.1"),
    inherited("margin", "margin:3px", shifts_words=MOVES),
    inherited("padding", "padding:3px"),
    inherited("border", "border:2px solid #c33"),
    inherited("background", "background:#eef"),
    inherited("background-image", "background:linear-gradient(#fee,#eef)"),
    inherited("background-position", "background:linear-gradient(90deg,#fee 50%,#eef 50%) 10px 10px/40px 40px"),
    inherited("background-size", "background:linear-gradient(90deg,#fee 50%,#eef 50%) 10px 10px/40px 40px"),
    inherited("background-origin", "background:linear-gradient(#fee,#eef);padding:10px;background-origin:content-box"),
    inherited("display", "display:table", who="body,.a"),
    from_body("background", "background:#efe"),
    from_body("background-image", "background:linear-gradient(#efe,#eef)"),
    from_body("overflow", "overflow:auto"),
    from_body("width", "width:500px", "direction:rtl"),
    from_body("min-width", "min-width:100px", "direction:rtl"),
    from_body("box-sizing", "box-sizing:border-box;padding:20px", "direction:rtl"),
    from_body("margin-left", "margin:0 30px 0 40px", "direction:rtl"),
    from_body("height", "height:50%", "height:100%"),
    from_body("min-height", "min-height:50%", "height:100%"),
    from_body("zoom", "zoom:1.2", "zoom:1.1", allowance=0.2, allowance_reason="glyphs of fractional sizes stand between pixels"),
    from_body("direction", "direction:rtl"),
    from_body("transition", "background:#efe;transition:all 1s"),
]
