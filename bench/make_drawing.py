#!/usr/bin/env python3
"""make_drawing.py COUNT OUT.dxf - a drawing of COUNT entities for the benchmarks, the same at each call.

It is a sheet of storeys: walls as lines and polylines, round columns, door swings, tags as blocks with attributes, names
and notes as texts. A third of the coordinates stand on a grid, the others have every digit, as in drawings that were
turned or traced. An insertion counts once; its two attributes come on top."""

import math
import random
import sys

LAYERS, BLOCKS, COLOURS = 150, 30, 24
WORDS = "north south store office stair shaft duct lobby plant riser bench slab lintel parapet gutter hatch".split()


class Drawing:
    def __init__(self, out, count):
        self.out, self.count = out, count
        self.random = random.Random(count)
        self.last_handle = 0x40
        self.layers = ["0"] + [f"LAYER-{i:03}" for i in range(1, LAYERS)]
        self.blocks = {f"TAG{i:02}": self.handle() for i in range(BLOCKS)}
        self.model = self.blocks["*Model_Space"] = self.handle()
        self.blocks["*Paper_Space"] = self.handle()

    def handle(self):
        self.last_handle += 1
        return f"{self.last_handle:X}"

    def put(self, *groups):
        lines = [f"{code:>3}\n{value}\n" for code, value in zip(groups[::2], groups[1::2])]
        self.out.write("".join(lines))

    def length(self, extent):
        value = self.random.uniform(0, extent)
        return round(value * 4) / 4 if self.random.random() < 1 / 3 else value

    def point(self, code, x, y):
        return code, x, code + 10, y, code + 20, 0.0

    def head(self, kind, owner, subclass):
        r = self.random
        handle = self.handle()
        groups = [0, kind, 5, handle, 330, owner, 100, "AcDbEntity", 8, self.layers[r.randrange(LAYERS)]]
        if r.random() < 0.1:
            groups += [6, "DASHED"]
        if r.random() < 0.15:
            groups += [62, f"{1 + r.randrange(COLOURS):6}"]
        self.put(*groups, 100, subclass)
        return handle

    def words(self, most):
        return " ".join(self.random.choice(WORDS) for _ in range(self.random.randint(1, most)))

    def wall(self, owner, extent):
        x, y, run = self.length(extent), self.length(extent), self.length(extent / 50)
        along = self.random.random() < 0.5
        self.head("LINE", owner, "AcDbLine")
        self.put(*self.point(10, x, y), *self.point(11, x + run * along, y + run * (not along)))

    def outline(self, owner, extent):
        x, y = self.length(extent), self.length(extent)
        corners = self.random.randint(4, 14)
        self.head("LWPOLYLINE", owner, "AcDbPolyline")
        self.put(90, f"{corners:9}", 70, "     1", 43, 0.0)
        for i in range(corners):
            turn = 2 * math.pi * i / corners
            self.put(10, x + 4 * math.cos(turn), 20, y + self.length(6) * math.sin(turn))
            if self.random.random() < 0.05:
                self.put(42, 0.41421356237309503)

    def column(self, owner, extent):
        self.head("CIRCLE", owner, "AcDbCircle")
        self.put(*self.point(10, self.length(extent), self.length(extent)), 40, 0.15 + self.length(10))

    def swing(self, owner, extent):
        start = self.random.choice([0.0, 90.0, 180.0, 270.0])
        self.head("ARC", owner, "AcDbCircle")
        self.put(*self.point(10, self.length(extent), self.length(extent)), 40, 0.9)
        self.put(100, "AcDbArc", 50, start, 51, start + self.length(90))

    def name(self, owner, extent):
        self.head("TEXT", owner, "AcDbText")
        self.put(*self.point(10, self.length(extent), self.length(extent)), 40, 2.5, 1, self.words(3))
        self.put(100, "AcDbText")

    def note(self, owner, extent):
        self.head("MTEXT", owner, "AcDbMText")
        self.put(*self.point(10, self.length(extent), self.length(extent)), 40, 2.5, 41, 60.0, 71, "     1", 72, "     5")
        self.put(1, self.words(8) + "\\P" + self.words(4))

    def tag(self, owner, extent):
        x, y = self.length(extent), self.length(extent)
        insert = self.head("INSERT", owner, "AcDbBlockReference")
        self.put(66, "     1", 2, f"TAG{self.random.randrange(BLOCKS):02}", *self.point(10, x, y))
        for key in ("NUMBER", "FINISH"):
            self.head("ATTRIB", insert, "AcDbText")
            self.put(*self.point(10, x + 1, y + 1), 40, 2.5, 1, f"{self.random.choice(WORDS)} {self.random.randrange(900)}")
            self.put(100, "AcDbAttribute", 2, key, 70, "     0")
        self.put(0, "SEQEND", 5, self.handle(), 330, insert, 100, "AcDbEntity", 8, "0")

    def record(self, kind, table, subclass, *groups, code=5, handle=None):
        self.put(0, kind, code, handle or self.handle(), 330, table, 100, "AcDbSymbolTableRecord", 100, subclass, *groups)

    def table(self, kind, handle, records):
        self.put(0, "TABLE", 2, kind, 5, handle, 330, 0, 100, "AcDbSymbolTable", 70, f"{len(records):6}")
        for write in records:
            write()
        self.put(0, "ENDTAB")

    def tables(self):
        linetype = lambda n: lambda: self.record("LTYPE", 5, "AcDbLinetypeTableRecord", 2, n, 70, 0, 3, "", 72, 65,
                                                 *((73, 2, 40, 3.0, 49, 2.0, 74, 0, 49, -1.0, 74, 0) if n == "DASHED" else (73, 0, 40, 0.0)))
        layer = lambda n: lambda: self.record("LAYER", 2, "AcDbLayerTableRecord", 2, n, 70, 0, 62, 7, 6, "Continuous")
        style = lambda: self.record("STYLE", 3, "AcDbTextStyleTableRecord", 2, "Standard", 70, 0, 40, 0.0, 41, 1.0, 50, 0.0,
                                    71, 0, 42, 2.5, 3, "txt", 4, "")
        application = lambda: self.record("APPID", 9, "AcDbRegAppTableRecord", 2, "ACAD", 70, 0)
        block = lambda n: lambda: self.record("BLOCK_RECORD", 1, "AcDbBlockTableRecord", 2, n, handle=self.blocks[n])
        self.put(0, "SECTION", 2, "TABLES")
        self.table("LTYPE", 5, [linetype(n) for n in ("ByBlock", "ByLayer", "Continuous", "DASHED")])
        self.table("LAYER", 2, [layer(n) for n in self.layers])
        self.table("STYLE", 3, [style])
        self.table("APPID", 9, [application])
        self.table("BLOCK_RECORD", 1, [block(n) for n in self.blocks])
        self.put(0, "ENDSEC")

    def definitions(self):
        self.put(0, "SECTION", 2, "BLOCKS")
        for name, record in self.blocks.items():
            self.put(0, "BLOCK", 5, self.handle(), 330, record, 100, "AcDbEntity", 8, 0, 100, "AcDbBlockBegin", 2, name, 70, 0,
                     *self.point(10, 0.0, 0.0), 3, name, 1, "")
            if not name.startswith("*"):
                for write in (self.wall, self.wall, self.column, self.swing):
                    write(record, 10.0)
            self.put(0, "ENDBLK", 5, self.handle(), 330, record, 100, "AcDbEntity", 8, 0, 100, "AcDbBlockEnd")
        self.put(0, "ENDSEC")

    def entities(self):
        mix = [self.wall] * 42 + [self.outline] * 14 + [self.name] * 12 + [self.column] * 10 + [self.swing] * 10 \
            + [self.tag] * 8 + [self.note] * 4
        self.put(0, "SECTION", 2, "ENTITIES")
        for _ in range(self.count):
            self.random.choice(mix)(self.model, 5000.0)
        self.put(0, "ENDSEC")

    def write(self):
        seed = self.last_handle + 1000 + LAYERS + BLOCKS * 8 + self.count * 5
        self.put(0, "SECTION", 2, "HEADER", 9, "$ACADVER", 1, "AC1015", 9, "$DWGCODEPAGE", 3, "ANSI_1252",
                 9, "$HANDSEED", 5, f"{seed:X}", 0, "ENDSEC")
        self.tables()
        self.definitions()
        self.entities()
        self.put(0, "EOF")


def main():
    if len(sys.argv) != 3 or not sys.argv[1].isdigit():
        print(__doc__.splitlines()[0], file=sys.stderr)
        return 2
    with open(sys.argv[2], "w", encoding="ascii", buffering=1 << 20) as out:
        Drawing(out, int(sys.argv[1])).write()
    return 0


if __name__ == "__main__":
    sys.exit(main())
