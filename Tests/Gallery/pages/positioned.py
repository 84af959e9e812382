"""Boxes placed by the view or by the document: bars, overlays, dialogs."""

from entry import blocks, page, paragraphs

RED, BLUE, WHITE = (204, 51, 51), (51, 51, 204), (255, 255, 255)

PAGES = [
    page("fixed-bottom", "A bar at the view's bottom slides to the document's end",
         "<div id=f>fixed</div><div id=a>absolute</div>" + blocks(15),
         style="body{margin:0}#f{position:fixed;bottom:0;left:0;right:0;height:40px;background:#c33}"
               "#a{position:absolute;bottom:0;right:0;width:100px;height:60px;background:#33c}",
         pixels=[(300, 770, RED), (590, 740, BLUE)], sheet_pixels=[(1, 306, 745, RED), (2, 306, 745, WHITE)]),
    page("fixed-top", "A bar at the view's top", "<div id=f>header</div><main>" + paragraphs(25) + "</main>",
         style="#f{position:fixed;top:0;left:0;right:0;height:50px;background:#c33}main{margin-top:60px}",
         pixels=[(300, 45, RED)], sheet_pixels=[(1, 570, 45, RED), (2, 570, 45, WHITE)]),
    page("fixed-side", "A side bar as high as the view", "<nav>menu</nav><main>" + paragraphs(25) + "</main>",
         style="nav{position:fixed;inset:0 auto 0 0;width:100px;background:#cdf}main{margin-left:110px}",
         pixels=[(50, 780, (204, 221, 255)), (50, 800, (255, 255, 255))]),
    page("overlay", "An overlay over the whole view", "<div id=o>overlay</div>" + blocks(12),
         style="body{margin:0}#o{position:fixed;inset:0;background:rgba(0,0,0,.5);color:#fff}",
         sheet_pixels=[(2, 306, 600, WHITE)]),
    page("sticky-top", "A sticky header", "<div class=t>header</div>" + blocks(12),
         style="body{margin:0}.t{position:sticky;top:0;background:#fcc}"),
    page("sticky-bottom", "A sticky footer shows at the view's bottom", blocks(12) + "<div class=b>footer</div>",
         style="body{margin:0}.b{position:sticky;bottom:0;background:#cfc}",
         sheet_pixels=[(1, 500, 45, (214, 92, 92))], shifts_words="it stands where it is in the flow"),
    page("absolute-beyond", "A box far below and right of everything else", "<div id=a>beyond</div><p>short",
         style="#a{position:absolute;top:1500px;left:700px;width:200px;height:100px;background:#33c}",
         size=(900, 1600), pixels=[(890, 1590, BLUE)]),
    page("negative-place", "A box that begins above and left of the page", "<div id=a>reaching</div>" + paragraphs(4),
         style="#a{position:absolute;top:-50px;left:-50px;width:200px;height:100px;padding:70px 0 0 70px;background:#9cf}",
         shifts_words="a box that begins above the first sheet is broken there"),
    page("fixed-in-transform", "A fixed box inside a transformed one", "<div id=t><div id=f>held</div></div>" + blocks(12),
         style="body{margin:0}#t{transform:translateX(0);height:300px;background:#eee}"
               "#f{position:fixed;bottom:0;left:0;width:100px;height:40px;background:#c33}", pixels=[(50, 280, RED)]),
    page("fixed-in-root", "A fixed box on a page whose root is positioned",
         "<div id=f>bar</div>" + blocks(12),
         style="html{position:relative}body{margin:0}#f{position:fixed;bottom:0;left:0;right:0;height:40px;background:#c33}",
         pixels=[(300, 770, RED)]),
    page("percent-of-view", "Absolute boxes in per cent of the view", "<div id=a>middle</div>" + blocks(12),
         style="body{margin:0}#a{position:absolute;top:50%;left:25%;width:50%;height:25%;background:#33c;color:#fff}",
         pixels=[(300, 500, BLUE), (300, 590, BLUE)]),
    page("dialog", "An open modal dialog with its backdrop", "<dialog id=d>question</dialog>" + blocks(12) +
         "<script>d.showModal()</script>", style="body{margin:0}", sheet_pixels=[(2, 306, 396, WHITE)]),
    page("popover", "An open popover", "<div popover id=d>popped</div>" + blocks(12) + "<script>d.showPopover()</script>",
         style="body{margin:0}#d{background:#fc8;padding:20px}",
         sheet_pixels=[(1, 306, 378, (255, 204, 136)), (2, 306, 378, WHITE)]),
    page("focused-below", "A field far below has the focus and scrolled the page",
         blocks(15) + "<input id=i value=typed>" + "<script>i.focus()</script>", style="body{margin:0}",
         pixels=[(300, 50, (214, 92, 92))]),
    page("scrolled-by-script", "A script has scrolled the page", blocks(15) + "<script>scrollTo(0, 700)</script>",
         style="body{margin:0}", pixels=[(300, 50, (214, 92, 92))]),
    page("scrolled-smoothly", "Scrolling back is animated", blocks(15) + "<script>scrollTo(0, 700)</script>",
         style="html{scroll-behavior:smooth}body{margin:0}"),
    page("scroller-inside", "A scrolling box with its content scrolled", "<div id=s>" + blocks(10) + "</div><p>after" +
         "<script>s.scrollTop = 350</script>", style="body{margin:0}#s{height:300px;overflow:auto}",
         words=["after", "block4"], shifts_words="the box grows and shows what was scrolled away"),
    page("anchored", "A box placed by an anchor", "<div id=a>anchor</div><div id=b>tip</div>" + blocks(6),
         style="body{margin:0}#a{anchor-name:--a;width:120px;margin:60px;background:#fc8}"
               "#b{position:absolute;position-anchor:--a;top:anchor(bottom);left:anchor(left);background:#8cf}"),
]
