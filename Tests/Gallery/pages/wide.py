"""Documents wider than the view, to the right and to the left."""

from entry import page, paragraphs

COLUMNS = "".join(f"<td style='background:hsl({n * 30},70%,75%)'>column{n}" for n in range(12))
TABLE = f"<table style='width:1500px;border-spacing:0'><tr>{COLUMNS}</table>"
RAINBOW = "height:60px;background:linear-gradient(90deg,#d33,#3d3,#33d)"

PAGES = [
    page("wide-table", "A table wider than the sheet is cut", TABLE + paragraphs(6), style="body{margin:0}"),
    page("unbreakable", "A word that cannot be broken", "<p>" + "W" * 200 + "</p>" + paragraphs(6)),
    page("preformatted", "Long preformatted lines", "<pre>" + "\n".join(f"start{n} {'=' * 150} end{n}" for n in range(20)) + "</pre>"),
    page("double-width", "200vw", f"<div style='width:200vw;{RAINBOW}'>double</div><div style='width:100vw;{RAINBOW}'>single</div>" + paragraphs(6),
         style="body{margin:0}"),
    page("pulled-right", "Content pulled out by negative margins",
         f"<div style='margin:0 -400px 0 300px;text-align:right;{RAINBOW}'>pulled</div>" + paragraphs(6)),
    page("placed-right", "Content placed to the right of the view", "<div id=a>placed</div>" + paragraphs(6),
         style="#a{position:absolute;left:1000px;top:100px;width:200px;height:80px;background:#fc8}"),
    page("cut-across", "A body that hides what is too wide", f"<div style='width:200vw;{RAINBOW}'>hiding</div>" + paragraphs(10),
         style="body{margin:0;overflow-x:hidden}"),
    page("narrow-minimum", "A root with a least width", "<div id=r>right</div>" + paragraphs(15),
         style="html{min-width:980px;background:#eef}#r{position:absolute;right:0;top:0;width:50px;height:50px;background:#c33}"),
    page("ten-thousand", "10,000 px across", f"<div style='width:10000px;{RAINBOW}'>start</div>"
         "<div style='width:10000px;text-align:right'>end</div>" + paragraphs(4), style="body{margin:0}"),
    page("rtl-narrow", "Right to left, within the view", "<p>first</p>" + paragraphs(8), root="dir=rtl",
         style="body{width:300px;background:#eee}"),
    page("rtl-tall", "Right to left, higher than the view", "<p>first</p>" + paragraphs(25), root="dir=rtl"),
    page("rtl-wide", "Right to left, wider than the view", TABLE + paragraphs(15), root="dir=rtl"),
    page("rtl-wide-margins", "The same with margins and a background", TABLE + paragraphs(6), root="dir=rtl",
         style="body{margin:20px 30px 10px 70px;background:linear-gradient(90deg,#fee,#eef)}"),
    page("rtl-body", "Only the body runs from right to left", "<body dir=rtl>" + TABLE + paragraphs(6),
         style="body{margin:10px 40px 5px 20px}"),
    page("rtl-root-ltr-body", "The root runs from the right, the body from the left", "<body dir=ltr>" + TABLE + paragraphs(6),
         root="dir=rtl", style="body{margin:10px 40px 5px 20px;width:300px;background:#eee}"),
    page("rtl-body-pushed", "A root with margins on a page whose body runs from the right",
         "<body style='direction:rtl'>" + paragraphs(8), style="html{width:400px;margin:50px}"),
    page("rtl-ten-thousand", "Right to left, 10,000 px", f"<div style='width:10000px;{RAINBOW}'>start</div>"
         "<div style='width:10000px;text-align:left'>end</div>" + paragraphs(4), root="dir=rtl", style="body{margin:0}"),
    page("rtl-zoomed", "Right to left with zoom", f"<div style='width:1200px;{RAINBOW}'>zoomed</div>" + paragraphs(5), root="dir=rtl",
         style="html{zoom:1.25}body{zoom:.9;margin:10px 40px 10px 20px;background:#eef}"),
]
