#!/usr/bin/env python3
"""versions_check.py VEKAD FOLDER [NAME...] - saves every drawing of a folder as every version, ASCII and binary.

Saving the copy again as the same version and form must give the same bytes, and ezdxf has to read the copy without finding
faults that it does not find in the original. Drawings that are broken (bad_*) are left out. Takes minutes; status 1 when
anything is wrong."""

import logging
import subprocess
import sys
import tempfile
from pathlib import Path

from corpus_check import independent_faults

VERSIONS = ("R12", "2000", "2004", "2007", "2010", "2013", "2018")


def convert(vekad, source, copy, version, form):
    return subprocess.run([vekad, "convert", source, copy, "--as", version, "--allow-loss", *form], text=True,
                          capture_output=True, timeout=120, errors="replace")


def faults(vekad, path, version, form, known, folder):
    first, second = folder / f"first_{path.name}", folder / f"second_{path.name}"
    for source, copy in ((path, first), (first, second)):
        done = convert(vekad, source, copy, version, form)
        if done.returncode:
            yield f"convert ends with {done.returncode}: {done.stderr.strip()[-300:]}"
            return
    if first.read_bytes() != second.read_bytes():
        yield "the second save is not the first"
    yield from [fault for fault in independent_faults(first) if fault not in known][:5]


def main():
    if len(sys.argv) < 3:
        print(__doc__.splitlines()[0])
        return 2
    logging.disable(logging.CRITICAL)
    vekad, corpus, names = sys.argv[1], Path(sys.argv[2]), sys.argv[3:]
    checked = failed = 0
    with tempfile.TemporaryDirectory() as folder:
        for path in sorted(corpus.glob("*.dxf")):
            if path.name.startswith("bad_") or (names and path.name not in names):
                continue
            known = set(independent_faults(path))
            for version in VERSIONS:
                for form in ((), ("--binary",)):
                    found = list(faults(vekad, path, version, form, known, Path(folder)))
                    checked += 1
                    failed += bool(found)
                    for fault in found:
                        print(f"{path.name} as {version}{' binary' if form else ''}: {fault}", flush=True)
    print(f"versions: {checked} copies, {failed} with faults")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
