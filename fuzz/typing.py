#!/usr/bin/env python3
"""typing.py VEKAD SECONDS DRAWING... - types at the program without sense, and looks whether it stands that.

Each round runs random commands with random answers on one of the drawings, cancels what still waits, and goes back to
the mark that it set first. The program must neither crash nor hang, and the drawing must then be the one it was, to the
line. A round that fails is printed with its seed and the steps that it takes, and their script is kept in the current folder;
`--seed N` plays the round again.
The drawings are ASCII files."""

import argparse
import random
import subprocess
import sys
import tempfile
import time
from pathlib import Path

COMMANDS = """-ARRAY -ATTDEF -BLOCK -COLOR -DIMSTYLE -GROUP -INSERT -LAYER -LAYMCH -LAYOUT -LINETYPE -MTEXT -PAN -PURGE -RENAME
-STYLE -UNITS -VIEW -VPORTS -XREF 3DFACE ARC AREA ARRAY BASE BREAK CHAMFER CHANGE CHGTHEI CHPROP CIRCLE COPY CURSTYLE DELULINE
DIMALIGNED DIMANGULAR DIMBASELINE DIMCONTINUE DIMDIAMETER DIMEDIT DIMLINEAR DIMORDINATE DIMOVERRIDE DIMRADIUS DIMTEDIT DIST DONUT
DRAWORDER ELEV ELLIPSE ERASE EXPLODE EXTEND FILLET GRID ID INSERT JOIN LAYCUR LAYCUR1 LAYLCK LAYMCH LAYOFF LAYON LAYTHW LAYULK
LEADER LENGTHEN LIMITS LINE LIST MATCHPROP MINSERT MIRROR MOVE MSPACE MTEXP MVIEW OFFSET OOPS ORTHO PLAN PLINE POINT POLYGON
PSPACE QLEADER RAY RECTANG REDRAW REGEN ROTATE SCALE SELECT SNAP SOLID SPLINE STRETCH TCASE TEXT TOLERANCE TRIM TXT2MTXT
TXTULINE U UCS WIPEOUT XLINE ZOOM REDO SYSVDLG SETVAR DIMEX DIMIM SCALELISTEDIT -SCALELISTEDIT""".split()
ANSWERS = """ALL L P A B C D E F G H I J K M N O R S T U V W X Y Z 0 1 2 -1 7 0.5 1e9 1e-9 45 -30 1e300 STANDARD 0,0 10,10 5,-3 @3,4 @5<30
(entlast) (entnext) ? * ALL 1,2,3 Add Undo Close Erase Multiple Reference Copy LA Color BYLAYER red CONTINUOUS new-name Through
Fence Crossing W WP CP AUTO BOX Previous Last (ssget) nil 'ZOOM abc %%u <45""".split()


def line(chance):
    kind = chance.random()
    if kind < 0.3:
        return ""
    if kind < 0.6:
        return f"{chance.uniform(-100, 500):.4g},{chance.uniform(-100, 500):.4g}"
    return chance.choice(ANSWERS)


def steps_of(seed):
    """Commands, each with what is typed at it."""
    chance = random.Random(seed)
    return [[chance.choice(COMMANDS), *(line(chance) for _ in range(chance.randint(0, 10)))] for _ in range(chance.randint(1, 12))]


def script(steps):
    typed = [one for step in steps for one in (*step, "(cancel)", "(cancel)")]
    return "\n".join(["UNDO", "Mark", *typed, "UNDO", "Back", "Y", ""])


PASSING = ("$HANDSEED", "$TDUPDATE", "$TDUUPDATE", "$TDCREATE", "$TDUCREATE", "$TDINDWG", "$TDUSRTIMER", "$FINGERPRINTGUID",
           "$VERSIONGUID")


def lasting_lines(path):
    lines = path.read_text(encoding="utf-8", errors="surrogateescape").splitlines()
    passing = {j for i, one in enumerate(lines) if one in PASSING for j in range(i - 1, i + 3)}
    return [one for i, one in enumerate(lines) if i not in passing]


def differences(before, after):
    for i, (a, b) in enumerate(zip(before, after)):
        if a != b:
            return f"line {i + 1}: {a!r} was, {b!r} is; after {before[max(0, i - 6):i]}"
    return "" if len(before) == len(after) else f"{len(before)} lines were, {len(after)} are"


def play(vekad, drawing, text, folder):
    """What went wrong, or nothing."""
    typed, after = folder / "typed.scr", folder / "after.dxf"
    typed.write_text(text)
    after.unlink(missing_ok=True)
    command = [vekad, "run", drawing, "-s", typed, "-o", after, "--profile", folder / "profile", "--timeout", "60"]
    try:
        done = subprocess.run(command, capture_output=True, text=True, errors="replace", timeout=90)
    except subprocess.TimeoutExpired:
        return "hangs"
    if done.returncode < 0 or done.returncode > 4:
        return f"ends with {done.returncode}: {done.stderr[-300:]}"
    if not after.exists():
        return f"saves nothing, status {done.returncode}: {done.stderr[-300:]}"
    return differences(lasting_lines(folder / drawing.name), lasting_lines(after))


def shortened(steps, fails):
    """The steps without those, and without the answers, that the failure does not need."""
    for i in range(len(steps) - 1, -1, -1):
        rest = steps[:i] + steps[i + 1:]
        if fails(rest):
            steps = rest
    for i, step in enumerate(steps):
        while len(step) > 1 and fails([*steps[:i], step[:-1], *steps[i + 1:]]):
            step = step[:-1]
            steps = [*steps[:i], step, *steps[i + 1:]]
    return steps


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("vekad", type=Path)
    parser.add_argument("seconds", type=float)
    parser.add_argument("drawings", nargs="+", type=Path)
    parser.add_argument("--seed", type=int)
    options = parser.parse_args()
    failed = rounds = 0
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        plain = []
        for drawing in options.drawings:
            subprocess.run([options.vekad, "convert", drawing, folder / drawing.name], capture_output=True, check=False)
            if (folder / drawing.name).exists() and b"\0" not in (folder / drawing.name).read_bytes()[:64]:
                plain.append(drawing)
        end = time.monotonic() + options.seconds
        seed = options.seed if options.seed is not None else random.randrange(10**6)
        while plain and time.monotonic() < end:
            drawing, steps = plain[seed % len(plain)], steps_of(seed)
            fault = play(options.vekad, drawing, script(steps), folder)
            rounds += 1
            if fault:
                failed += 1
                steps = shortened(steps, lambda some: play(options.vekad, drawing, script(some), folder))
                Path(f"typed-{seed}.scr").write_text(script(steps))
                print(f"seed {seed}, {drawing}: {play(options.vekad, drawing, script(steps), folder)}\n    {steps}", flush=True)
            if options.seed is not None:
                break
            seed += 1
    print(f"{rounds} rounds, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
