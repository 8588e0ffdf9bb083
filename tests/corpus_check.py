#!/usr/bin/env python3
"""corpus_check.py VEKAD FOLDER [NAME...] - runs the program over a folder of real drawings.

Beside the drawings lies oracle.json, what independent readers count in each. Every drawing that is sound has to load;
what `vekad info` counts has to be what the oracle counts; a copy in the same version must hold the same, and a copy of the
copy must be the same file; commands that are taken back must leave nothing behind; ezdxf has to read the copy without
finding faults. Broken drawings (bad_*) must end with a status, not with a crash. Where the folder has ../tools/dxf_loss.py, it must find nothing lost. Status 77 without a folder."""

import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path

SKIPPED = 77
WRITTEN_AS_2000 = {"AC1004", "AC1006", "AC1009", "AC1012", "AC1014"}


def run(*arguments):
    return subprocess.run([str(a) for a in arguments], text=True, capture_output=True, timeout=300, errors="replace")


# Types of old releases, by what they are read as.
SUCCESSORS = {"3DLINE": "LINE"}


def count_faults(info, raw):
    """Where what the program counts is not what the oracle counts."""
    paper = {}
    for counts in info["entities"]["paper"].values():
        for kind, n in counts.items():
            paper[kind] = paper.get(kind, 0) + n
    model = info["entities"]["model"]
    together = {kind: model.get(kind, 0) + paper.get(kind, 0) for kind in model.keys() | paper.keys()}
    expected = {}
    for counts in (raw["modelspace"], raw["paperspace_flag67"]):
        for kind, n in counts.items():
            kind = SUCCESSORS.get(kind, kind)
            expected[kind] = expected.get(kind, 0) + n
    for kind in sorted(together.keys() | expected.keys()):
        if together.get(kind, 0) < expected.get(kind, 0):
            yield f"{kind}: {together.get(kind, 0)}, the oracle counts {expected.get(kind, 0)}"
    for key, table in (("layers", "LAYER"), ("styles", "STYLE"), ("dimstyles", "DIMSTYLE"), ("linetypes", "LTYPE")):
        if len(info[key]) < raw["table_records"].get(table, 0):
            yield f"{key}: {len(info[key])}, the oracle counts {raw['table_records'][table]}"


def independent_faults(path):
    try:
        import ezdxf
        from ezdxf import recover
    except ImportError:
        return
    is_binary = path.read_bytes().startswith(b"\x41\x75\x74\x6f\x43\x41\x44 Binary DXF")  # which recovery does not take
    try:
        auditor = ezdxf.readfile(path).audit() if is_binary else recover.readfile(path)[1]
    except Exception as error:  # whatever it is, the copy could not be read
        if "\\U+" not in str(error):  # in binary files it does not decode these in names, and takes them for wrong
            yield f"ezdxf cannot read it: {error!r}"
        return
    for error in auditor.errors:
        yield f"ezdxf: {error.message}"


def losses(vekad, loss, path, copy):
    """What the copy lacks or has otherwise, but for objects that the audit names: those were broken and are mended."""
    compared = run(sys.executable, loss, path, copy)
    if not compared.returncode:
        return
    told = run(vekad, "audit", path).stdout
    mended = set(re.findall(r"object ([0-9A-F]+)", told))
    for line in compared.stdout.splitlines()[2:]:
        named = re.match(r"\s*\S+ ([0-9A-F]+): missing \[\] changed", line)
        # The end of a block goes with its beginning, which is the one that is named.
        with_block = line.lstrip().startswith("ENDBLK ") and "the owner of block" in told
        if not (named and (named[1] in mended or with_block)):
            yield "lost: " + line.strip()[:200]


# Commands over everything, each taken back at once.
ALL = "\nALL\n\n"
TAKEN_BACK = "".join(command + "\nU\n" for command in (
    "MTEXP" + ALL, "TXTULINE" + ALL, "EXPLODE" + ALL, "ERASE" + ALL, f"MOVE{ALL}0,0\n5,5", f"SCALE{ALL}0,0\n2",
    f"ROTATE{ALL}0,0\n33", f"MIRROR{ALL}0,0\n1,1\nY", f"COPY{ALL}0,0\n1,1\n"))
# What every save or every new object may change.
PASSING = ("$HANDSEED", "$TDUPDATE", "$TDUUPDATE", "$TDCREATE", "$TDUCREATE", "$TDINDWG", "$TDUSRTIMER", "$FINGERPRINTGUID",
           "$VERSIONGUID")


def lasting_lines(path):
    lines = path.read_text(encoding="utf-8", errors="surrogateescape").splitlines()
    return [line for i, line in enumerate(lines) if i < 2 or lines[i - 2] not in PASSING]


def undo_faults(vekad, path, copy, folder):
    if b"\0" in copy.read_bytes()[:64]:  # binary: no lines to compare
        return
    script, after = folder / "taken-back.scr", folder / f"undone_{path.name}"
    script.write_text(TAKEN_BACK)
    done = run(vekad, "run", path, "-s", script, "-o", after, "--profile", folder / "profile")
    if done.returncode not in (0, 1):
        yield f"commands end with {done.returncode}: {done.stderr.strip()[-300:]}"
    elif lasting_lines(copy) != lasting_lines(after):
        yield "undo does not bring the drawing back"


def check_sound(vekad, path, raw, loss, folder):
    info = run(vekad, "info", path, "--json")
    if info.returncode:
        yield f"info ends with {info.returncode}: {info.stderr.strip()[:300]}"
        return
    if raw:
        yield from count_faults(json.loads(info.stdout), raw)
    first, second = folder / path.name, folder / f"again_{path.name}"
    for source, copy in ((path, first), (first, second)):
        done = run(vekad, "convert", source, copy)
        if done.returncode:
            yield f"convert ends with {done.returncode}: {done.stderr.strip()[-300:]}"
            return
    if first.read_bytes() != second.read_bytes():
        yield "the second save is not the first"
    known = set(independent_faults(path))
    yield from [fault for fault in independent_faults(first) if fault not in known][:5]
    yield from undo_faults(vekad, path, first, folder)
    if loss and not (raw and raw.get("acadver") in WRITTEN_AS_2000):
        yield from losses(vekad, loss, path, first)


def check_broken(vekad, path, folder):
    for arguments in (["info", path], ["info", path, "--recover"], ["audit", path],
                      ["convert", path, folder / path.name, "--recover"]):
        done = run(vekad, *arguments)
        if not 0 <= done.returncode <= 4:
            yield f"{arguments[0]} ends with {done.returncode}"


def main():
    if len(sys.argv) < 3 or not (Path(sys.argv[2]) / "oracle.json").is_file():
        print("corpus: there is no folder of drawings here")
        return SKIPPED
    vekad, corpus, names = sys.argv[1], Path(sys.argv[2]), sys.argv[3:]
    oracle = json.loads((corpus / "oracle.json").read_text())["files"]
    loss = corpus.parent / "tools" / "dxf_loss.py"
    loss = loss if loss.is_file() else None
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        for path in sorted(corpus.glob("*.dxf")):
            if names and path.name not in names:
                continue
            raw = oracle.get(path.name, {}).get("raw")
            faults = (check_broken(vekad, path, Path(folder)) if path.name.startswith("bad_")
                      else check_sound(vekad, path, raw, loss, Path(folder)))
            faults = list(faults)
            failed += bool(faults)
            print(f"{path.name}: {'ok' if not faults else ''}")
            for fault in faults:
                print(f"    {fault}")
    print(f"corpus: {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
