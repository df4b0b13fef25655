#!/usr/bin/env bash
# Checks the PDF that the information screen's print test printed against the layout it wrote:
# one page, banners along the top and bottom edges with white paper between them and the rest,
# the picture's five bands where the layout puts them (compared, loosely, with the picture
# scaled the same way), and the picture's name and description in the page's text.
# Usage: check-print.sh print-result.txt   (exit 77: nothing was printed, no printer was set up)
set -euo pipefail
result=$1
[ -f "$result" ] || { echo "no printed page to check (no printer in this run)"; exit 77; }
pdf=$(sed -n 's/^pdf //p' "$result" | tr -d '\r')
pages=$(pdfinfo "$pdf" | sed -n 's/^Pages: *//p')
[ "$pages" = 1 ] || { echo "expected one page, got '$pages'"; exit 1; }
read -r width height < <(sed -n 's/^page //p' "$result" | tr -d '\r')
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
pdftotext -layout "$pdf" "$work/text.txt"
pdftoppm -singlefile -r 300 -scale-to-x "$width" -scale-to-y "$height" "$pdf" "$work/page"
python3 - "$result" "$work/page.ppm" "$work/text.txt" <<'PY'
import struct, sys

result, ppm, text_file = sys.argv[1:4]
fields = {}
bands = []
for line in open(result, encoding="latin-1"):
    key, _, value = line.rstrip("\r\n").partition(" ")
    if key == "band":
        bands.append([int(v) for v in value.split()])
    else:
        fields[key] = value

def read_ppm(path):
    data = open(path, "rb").read()
    parts, at = [], 0
    while len(parts) < 4:
        while data[at:at + 1].isspace():
            at += 1
        start = at
        while not data[at:at + 1].isspace():
            at += 1
        parts.append(data[start:at])
    assert parts[0] == b"P6"
    return int(parts[1]), int(parts[2]), data[at + 1:]

W, H, page = read_ppm(ppm)
def pixel(x, y):
    i = (y * W + x) * 3
    return page[i], page[i + 1], page[i + 2]
def white(p):
    return min(p) > 235

failures = []
top = [int(v) for v in fields["top"].split()]
bottom = [int(v) for v in fields["bottom"].split()]
if top[2] != W or bottom[2] != W:
    failures.append("a portrait page must give full-width banners")

def row_ink(y, x0=0, x1=None):
    x1 = W if x1 is None else x1
    return sum(not white(pixel(x, y)) for x in range(x0, x1, 7)) / len(range(x0, x1, 7))

# Banners: ink within the first and last 2 % of the page, and over much of their rectangles.
if max(row_ink(y) for y in range(0, max(2, H // 50))) < 0.5:
    failures.append("no banner at the top edge")
if max(row_ink(y) for y in range(H - max(2, H // 50), H)) < 0.5:
    failures.append("no banner at the bottom edge")
for name, (x, y, w, h) in (("top", top), ("bottom", bottom)):
    ink = sum(row_ink(r) for r in range(y, y + h, 9)) / len(range(y, y + h, 9))
    if ink < 0.1:
        failures.append(f"the {name} banner's rectangle is blank ({ink:.2f})")
# White paper between the top banner and the picture (left of the title) and above the bottom one.
picture_top = min(b[1] for b in bands)
title_x = W * 3 // 5
for y0, y1, x1 in ((top[3] + 5, picture_top - 5, title_x - 5), (H * 4 // 5, bottom[1] - 5, W)):
    ink = max((row_ink(r, 0, x1) for r in range(y0, y1, 5)), default=0)
    if ink > 0.02:
        failures.append(f"ink on the paper between rows {y0} and {y1} ({ink:.2f})")

# The picture: 8-bit, bottom-up; band i holds the file's rows i*rows .. (i+1)*rows - 1.
bmp = open(fields["picture"], "rb").read()
offset = struct.unpack_from("<I", bmp, 10)[0]
pw, ph = struct.unpack_from("<ii", bmp, 18)
stride = (pw + 3) // 4 * 4
palette = [(bmp[54 + 4 * i + 2], bmp[54 + 4 * i + 1], bmp[54 + 4 * i]) for i in range(256)]
rows = int(fields["rows"])
def source(x, file_row):
    return palette[bmp[offset + file_row * stride + x]]

def mean(colours):
    n = len(colours)
    return [sum(c[k] for c in colours) / n for k in range(3)]

def band_difference(page_band, source_band):
    bx, by, bw, bh = bands[page_band]
    total, count = 0.0, 0
    for gy in range(1, 7):
        for gx in range(1, 13):
            px, py = bx + bw * gx // 13, by + bh * gy // 7
            seen = mean([pixel(px + dx, py + dy) for dx in range(-4, 5, 2) for dy in range(-4, 5, 2)])
            sx = (px - bx) * pw // bw
            sy = (source_band + 1) * rows - 1 - (py - by) * rows // bh
            want = mean([source(min(pw - 1, max(0, sx + dx)), min(ph - 1, max(0, sy + dy)))
                          for dx in range(-3, 4, 2) for dy in range(-3, 4, 2)])
            total += sum(abs(a - b) for a, b in zip(seen, want)) / 3
            count += 1
    return total / count

for i in range(5):
    right = band_difference(i, i)
    wrong = band_difference(i, 4 - i) if i != 2 else band_difference(i, (i + 1) % 5)
    print(f"band {i}: difference {right:.1f} (another band's rows: {wrong:.1f})")
    if right > 30 or right * 1.5 + 5 > wrong:
        failures.append(f"band {i} does not show its rows of the picture")

# The description under the picture is printed in an ink that reads on white paper.
picture_bottom = max(b[1] + b[3] for b in bands)
dark = sum(max(pixel(x, y)) < 170 for y in range(picture_bottom + 5, bottom[1] - 5, 3)
           for x in range(0, W, 3))
if dark < 20:
    failures.append(f"the description is too pale to read ({dark} dark pixels)")

text = " ".join(open(text_file, encoding="utf-8", errors="replace").read().split())
name = fields["name"]
opening = " ".join(fields["description"].split()[:6])
if not name.strip() or not opening:
    failures.append("the test gave no name or description to look for")
for wanted in (name, opening):
    if wanted not in text:
        failures.append(f"'{wanted}' is not in the page's text")

for f in failures:
    print("FAIL:", f)
sys.exit(1 if failures else 0)
PY
