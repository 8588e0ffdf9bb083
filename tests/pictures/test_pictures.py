#!/usr/bin/env python3
"""test_pictures.py VEKAD [--update] - pictures against those that were looked at and kept, with tolerance.

The pictures of docs/pictures are made anew by their own script; gallery.dxf beside this file holds one of each thing that is
drawn in a way of its own, sheet.dxf what viewports do to that. --update keeps what is drawn now.
"""

import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib
from pathlib import Path

VEKAD = ""
HERE = Path(__file__).resolve().parent
DOCS = HERE.parent.parent / "docs" / "pictures"
UPDATE = False


def unfilter(kind, row, above, step):
    """One line of a PNG from what was left of it after its prediction."""
    for i, value in enumerate(row):
        left = row[i - step] if i >= step else 0
        up, corner = above[i], above[i - step] if i >= step else 0
        if kind == 4:
            near = left + up - corner
            guess = min((left, up, corner), key=lambda c: abs(near - c))
        else:
            guess = (0, left, up, (left + up) // 2)[kind]
        row[i] = value + guess & 255
    return row


def pixels(path):
    """Width, height and the bytes of red, green and blue."""
    data, at, packed = path.read_bytes(), 8, b""
    while at < len(data):
        length, kind = struct.unpack(">I4s", data[at:at + 8])
        chunk = data[at + 8:at + 8 + length]
        if kind == b"IHDR":
            width, height, depth, colours = struct.unpack(">IIBB", chunk[:10])
        elif kind == b"IDAT":
            packed += chunk
        at += 12 + length
    step = {2: 3, 6: 4}[colours]
    assert depth == 8
    raw, out, above = zlib.decompress(packed), bytearray(), bytearray(width * step)
    for y in range(height):
        start = y * (width * step + 1)
        above = unfilter(raw[start], bytearray(raw[start + 1:start + 1 + width * step]), above, step)
        out += above if step == 3 else bytes(b for i, b in enumerate(above) if i % 4 != 3)
    return width, height, out


class Pictures(unittest.TestCase):
    FAR = 96          # of 255, between colours that are not the same thing smoothed otherwise
    FEW = 0.002       # of all values

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def check(self, kept, drawn):
        if UPDATE:
            shutil.copy(drawn, kept)
        if kept.read_bytes() == drawn.read_bytes():
            return
        a, b = pixels(kept), pixels(drawn)
        self.assertEqual(a[:2], b[:2], "size")
        far = sum(abs(x - y) > self.FAR for x, y in zip(a[2], b[2]))
        self.assertLessEqual(far, self.FEW * len(a[2]), f"{far} of {len(a[2])} values are far off")

    def test_documentation(self):
        subprocess.run([DOCS / "make.sh", VEKAD, self.folder], check=True, timeout=300, capture_output=True)
        drawn = sorted(self.folder.glob("*.png"))
        self.assertEqual([p.name for p in drawn], [p.name for p in sorted(DOCS.glob("*.png"))])
        for path in drawn:
            with self.subTest(path.name):
                self.check(DOCS / path.name, path)

    def test_gallery(self):
        drawn = self.folder / "gallery.png"
        for background in ("white", "black"):
            with self.subTest(background):
                subprocess.run([VEKAD, "render", HERE / "gallery.dxf", drawn, "--size", "600x400", "--background", background],
                               check=True, timeout=60, capture_output=True)
                self.check(HERE / f"gallery-{background}.png", drawn)

    def test_sheet(self):
        drawn = self.folder / "sheet.png"
        subprocess.run([VEKAD, "render", HERE / "sheet.dxf", drawn, "--layout", "Layout1", "--size", "900x600"], check=True, timeout=60,
                       capture_output=True)
        self.check(HERE / "sheet.png", drawn)

    def test_a_difference_is_found(self):
        drawn = self.folder / "gallery.png"
        subprocess.run([VEKAD, "render", HERE / "gallery.dxf", drawn, "--size", "600x400", "--background", "grey"], check=True,
                       timeout=60, capture_output=True)
        if not UPDATE:
            with self.assertRaises(AssertionError):
                self.check(HERE / "gallery-white.png", drawn)


if __name__ == "__main__":
    UPDATE = "--update" in sys.argv
    VEKAD = str(Path(sys.argv[1]).resolve())
    unittest.main(argv=sys.argv[:1])
