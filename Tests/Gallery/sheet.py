"""Makes of what the gallery's tests left in a folder a table, a contact sheet and a summary picture.

    sheet.py FOLDER     prints the table; writes FOLDER/index.html, FOLDER/gallery.png and FOLDER/gallery.md.
                        Fails when a page failed.
"""

import html
import json
import pathlib
import sys

from PIL import Image, ImageDraw, ImageFont

CELL = (66, 88)
COLUMNS = 10
STYLE = """
body { font: 12px/1.3 sans-serif; margin: 12px; background: #ddd }
main { display: grid; grid-template-columns: repeat(auto-fill, minmax(600px, 1fr)); gap: 6px }
section { display: flex; gap: 5px; padding: 5px; background: #fff; overflow: hidden }
section.failed { background: #fbb }
.about { flex: 0 0 150px } .about h2 { margin: 0; font-size: 13px } .about p { margin: 1px 0 }
figure { margin: 0; flex: none } figcaption { color: #666 }
img { height: 110px; max-width: 100px; object-fit: contain; object-position: top left; border: 1px solid #aaa }
"""


def read(folder):
    records = [json.loads(file.read_text(encoding="utf-8")) for file in sorted(folder.glob("*/*.json"))]
    if not records:
        sys.exit(f"sheet: nothing in {folder}")
    return records


def row(record):
    differing = "" if record["differing"] is None else f"{record['differing']:.3f}"
    width, height = record["size"]
    readers = f"{max(record['readers'].values()):.3f}" if record["readers"] else ""
    return [record["group"], record["name"], record["mode"], str(record["sheets"]), f"{width:g} x {height:g}",
            differing, readers, str(len(record["lost"])), str(len(record["outside"])), str(len(record["moved"])),
            "; ".join(record["problems"]) or "passed"]


HEAD = ["group", "page", "mode", "pages", "size (pt)", "differing %", "readers %", "lost", "outside", "moved", "verdict"]


def table(records):
    rows = [HEAD] + [row(record) for record in records]
    widths = [max(len(line[column]) for line in rows) for column in range(len(HEAD) - 1)]
    return "\n".join("  ".join([cell.ljust(width) for cell, width in zip(line, widths)] + line[-1:]) for line in rows)


def exceptions(records):
    """What is not compared in full, and why: each reason once, with the pages that it holds for."""
    pages = {}
    for record in records:
        if record["reason"]:
            pages.setdefault(record["reason"], []).append(f"{record['name']} ({record['mode']})")
    return "".join(f"- {', '.join(names)}: {reason}.\n" for reason, names in pages.items())


def markdown(records):
    lines = ["| " + " | ".join(HEAD) + " |", "|" + "---|" * len(HEAD)]
    lines += ["| " + " | ".join(row(record)) + " |" for record in records]
    return ("# The gallery\n\n"
            "Made by `script/gallery`; what the columns mean is said in [fidelity.md](fidelity.md#the-gallery).\n\n"
            f"## What still differs, or cannot be compared\n\n{exceptions(records)}\n"
            "## Every page in both modes\n\n" + "\n".join(lines) + "\n")


def figures(record):
    for kind, files in record["pictures"].items():
        for file in files:
            path = html.escape(f"{record['group']}/{file}")
            yield (f'<figure><a href="{path}"><img src="{path}" loading="lazy"></a>'
                   f"<figcaption>{kind}</figcaption></figure>")


def facts(record):
    yield f"{record['mode']}: {record['sheets']} page(s), {record['size'][0]:g} x {record['size'][1]:g} pt"
    if record["differing"] is not None:
        yield f"{record['differing']:.3f} % differ"
    for name, share in record["readers"].items():
        yield f"{name} draws {share:.3f} % differently"
    if record["reason"]:
        yield record["reason"]
    yield from record["problems"]


def card(records):
    """A page in all its modes, the screen's first."""
    records = sorted(records, key=lambda record: record["mode"], reverse=True)
    state = "failed" if any(record["problems"] for record in records) else "passed"
    told = [records[0]["trouble"]] + [fact for record in records for fact in facts(record)]
    about = "".join(f"<p>{html.escape(fact)}</p>" for fact in told)
    name = html.escape(f"{records[0]['group']}: {records[0]['name']}")
    pictures = "".join(figure for record in records for figure in figures(record))
    return f'<section class="{state}"><div class="about"><h2>{name}</h2>{about}</div>{pictures}</section>'


def contact_sheet(records):
    """Pages that failed come first."""
    pages = {}
    for record in records:
        pages.setdefault((record["group"], record["name"]), []).append(record)
    cards = sorted(map(card, pages.values()), key=lambda text: "failed" not in text[:30])
    failed = sum(bool(record["problems"]) for record in records)
    return (f"<!DOCTYPE html><meta charset=utf-8><title>Gallery</title><style>{STYLE}</style>"
            f"<h1>Gallery: {len(pages)} pages, {len(records)} runs, {failed} failed</h1><main>{''.join(cards)}</main>")


def thumbnail(path):
    with Image.open(path) as picture:
        picture = picture.convert("RGB")
        picture = picture.crop((0, 0, picture.width, min(picture.height, picture.width * CELL[1] // CELL[0])))
        picture.thumbnail(CELL)
        return picture


def summary(folder, records):
    """Each page that has pictures of both, as it was on the screen and, right of that, as its PDF draws it."""
    pairs = [record for record in records if {"seen", "drawn"} <= record["pictures"].keys() and record["pictures"]["seen"]]
    step = (2 * CELL[0] + 10, CELL[1] + 22)
    rows = -(-len(pairs) // COLUMNS)
    whole = Image.new("RGB", (COLUMNS * step[0] + 8, rows * step[1] + 8), (221, 221, 221))
    pen, font = ImageDraw.Draw(whole), ImageFont.truetype("DejaVuSans.ttf", 10)
    for number, record in enumerate(pairs):
        x, y = 8 + number % COLUMNS * step[0], 8 + number // COLUMNS * step[1]
        for side, kind in enumerate(("seen", "drawn")):
            picture = thumbnail(folder / record["group"] / record["pictures"][kind][0])
            whole.paste(picture, (x + side * (CELL[0] + 2), y))
        pen.text((x, y + CELL[1] + 2), record["name"], fill="black", font=font)
    return whole.quantize(128)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder = pathlib.Path(sys.argv[1])
    records = read(folder)
    (folder / "index.html").write_text(contact_sheet(records), encoding="utf-8")
    (folder / "gallery.md").write_text(markdown(records), encoding="utf-8")
    summary(folder, records).save(folder / "gallery.png", optimize=True)
    failed = sum(bool(record["problems"]) for record in records)
    pages = len({(record["group"], record["name"]) for record in records})
    print(table(records))
    print(f"\n{pages} pages, {len(records)} runs, {failed} failed. Contact sheet: {folder}/index.html")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
