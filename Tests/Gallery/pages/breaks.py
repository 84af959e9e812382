"""What the document says of pages: in screen mode there is one, and in print mode the sheet is ours."""

from entry import blocks, page, paragraphs

TABLE = ("<table><thead><tr><th></thead><tfoot><tr><td></tfoot>" + "".join(f"<tr><td>row{n}" for n in range(150)) + "</table>")
HEADS = ("table{width:300px;border-spacing:0}th,td{height:20px;line-height:20px;padding:0;background:#cfc}"
         "thead th{background:#00f}tfoot td{background:#f00}")

PAGES = [
    page("page-rule", "The document's page size, margins and margin boxes", "<p>ruled</p>" + paragraphs(20),
         style="@page{size:A5 landscape;margin:3cm;@top-center{content:'MARGINBOX'}}@page:first{margin:5cm}",
         absent=["MARGINBOX"]),
    page("page-rule-important", "The same, important, and in layers", paragraphs(20),
         style="@page{size:A4!important;margin:1in!important}@layer a{html{margin:10px!important}}"
               "html{width:auto!important;margin:0!important;contain:none!important;page:other!important}"),
    page("named-pages", "Named pages of other sizes", "<p class=n>named</p><p>between</p><p class=m>other</p>" + paragraphs(10),
         style=".n{page:wide}.m{page:tall}@page wide{size:1000px 300px}@page tall{size:300px 1000px}",
         shifts_words="a page of another name begins on a new sheet"),
    page("forced-breaks", "Breaks before and after", "".join(f"<p class=b>break{n}</p><p>text{n}</p>" for n in range(6)),
         style=".b{break-before:page;page-break-after:always}", size=(612, 792), shifts_words="the breaks move the text"),
    page("avoided-breaks", "Blocks that may not be broken", "".join(f"<section>section{n}<br>{'line<br>' * 8}</section>" for n in range(12)),
         style="section{break-inside:avoid;border:1px solid;margin:10px 0}"),
    page("forced-in-grid", "Breaks inside grids, tables and columns",
         "<div class=g><p class=b>one</p><p class=b>two</p></div><table><tr class=b><td>three<tr class=b><td>four</table>" + paragraphs(6),
         style=".g{display:grid}.b{break-after:page}", shifts_words="the breaks move the text"),
    page("column-breaks", "Breaks between columns", "<div class=c><p>left</p><p class=b>right</p></div>" + paragraphs(8),
         style=".c{columns:2;height:200px;column-fill:auto}.b{break-before:column}"),
    page("table-head", "A table over several sheets keeps every row",
         "<table><thead><tr><th>heading</thead>" + "".join(f"<tr><td>row{n}" for n in range(60)) + "</table>",
         style="thead{background:#ddf}"),
    page("table-head-repeated", "The head and the foot of a table are on each of its sheets", TABLE, style=HEADS, modes=("print",),
         sheet_pixels=[(1, 100, 55, (0, 0, 255)), (2, 100, 40, (0, 0, 255)), (2, 100, 746, (255, 0, 0))],
         shifts_words="head and foot take room on each sheet"),
    page("table-head-once", "A head that its author has made an ordinary row", TABLE,
         style=HEADS + "thead,tfoot{display:table-row-group}", modes=("print",),
         sheet_pixels=[(1, 100, 55, (0, 0, 255)), (2, 100, 40, (204, 255, 204)), (2, 100, 746, (204, 255, 204))]),
    page("unbreakable-block", "A block higher than a sheet that may not be broken",
         "<div class=u>" + paragraphs(25) + "</div>", style=".u{break-inside:avoid;background:#efe}",
         shifts_words="it moves to a sheet of its own"),
    page("orphans", "Orphans and widows of many lines", paragraphs(12, length=40), style="p{orphans:20;widows:20}",
         shifts_words="paragraphs move as a whole"),
    page("tall-image", "An image higher than a sheet", "<div class=i>tall</div><p>after",
         style=".i{height:2000px;width:300px;background:linear-gradient(red,blue)}"),
    page("running-elements", "Fixed header and footer that print themes add", "<div class=h>header</div>" + blocks(12),
         style="body{margin:0}.h{position:fixed;top:0;height:30px;background:#ccc}@media print{.h{position:static}}"),
]
