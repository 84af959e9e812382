"""Documents above 14,400 points: they stay whole and keep their size."""

from entry import blocks, page

PAGES = [
    page("fifteen-thousand", "Just above the format's limit", blocks(150), style="body{margin:0}", size=(612, 15000)),
    page("fifty-thousand", "Far above the format's limit", blocks(500), style="body{margin:0}", size=(612, 50000)),
]
