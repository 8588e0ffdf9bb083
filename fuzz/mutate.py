#!/usr/bin/env python3
"""mutate.py PROGRAM FOLDER... [--seconds N] [--seed N] [--keep FOLDER] - a fuzzer where there is no clang.

Makes damaged copies of the drawings in the folders and hands them to PROGRAM: one of the replay_... programs, which takes
many at once, or vekad, whose info and convert are run on each. A copy with which it crashes, takes too long, or more memory
than it may, is kept. Status 1 when any was."""

import argparse
import random
import resource
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

BATCH, SECONDS_A_BATCH, SECONDS_A_DRAWING, BYTES_AT_MOST = 40, 60, 20, 3 << 30
VEKAD_STATUSES = range(5)  # what the program ends with when it has dealt with its input, sound or not
SENTINEL = b"\x41\x75\x74\x6f\x43\x41\x44 Binary DXF"
HOSTILE = [b"-1", b"0", b"1", b"255", b"32767", b"-32768", b"65536", b"2147483647", b"-2147483648", b"99999999999999999999",
           b"1e308", b"-1e308", b"1e-320", b"nan", b"inf", b"", b"FFFFFFFFFFFFFFFF", b"1F", b"{", b"}", b"{ACAD_REACTORS",
           b"*Model_Space", b"SECTION", b"ENDSEC", b"ENDBLK", b"SEQEND", b"INSERT", b"POLYLINE", b"VERTEX", b"AcDbEntity"]


def flip_bytes(data, rnd):
    for _ in range(rnd.randint(1, 8)):
        data[rnd.randrange(len(data))] = rnd.randrange(256)


def move_piece(data, rnd):
    start = rnd.randrange(len(data))
    piece = data[start:start + rnd.randint(1, 600)]
    if rnd.random() < 0.5:
        del data[start:start + len(piece)]
    at = rnd.randint(0, len(data))
    data[at:at] = piece * (1 if rnd.random() < 0.9 else rnd.randint(2, 50))


def cut(data, rnd):
    del data[rnd.randrange(len(data)):]


def line_bounds(data, rnd):
    at = rnd.randrange(len(data))
    start = data.rfind(b"\n", 0, at) + 1
    end = data.find(b"\n", at)
    return start, len(data) if end < 0 else max(start, end)


def hostile_line(data, rnd):
    start, end = line_bounds(data, rnd)
    data[start:end] = rnd.choice(HOSTILE)


def exchange_lines(data, rnd):
    (a, b), (c, d) = sorted([line_bounds(data, rnd), line_bounds(data, rnd)])
    if b <= c:
        data[a:b], data[c:d] = data[c:d], data[a:b]


def number_of_eight_bytes(data, rnd):
    at = rnd.randrange(len(data))
    data[at:at + 8] = rnd.choice([b"\0" * 8, b"\xff" * 8, b"\0\0\0\0\0\0\xf0\x7f", b"\xff" * 7 + b"\x7f", b"\x7f" + b"\0" * 7])


def mutated(original, rnd):
    data = bytearray(original)
    ways = [flip_bytes, move_piece, cut, number_of_eight_bytes]
    if not original.startswith(SENTINEL):
        ways += [hostile_line] * 4 + [exchange_lines, move_piece]
    for _ in range(rnd.choice([1, 1, 2, 3, 6])):
        if data:
            rnd.choice(ways)(data, rnd)
    return bytes(data)


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (BYTES_AT_MOST, BYTES_AT_MOST))


def fault_of(command, seconds, good=(0,)):
    try:
        done = subprocess.run(command, capture_output=True, timeout=seconds, preexec_fn=limit_memory)
    except subprocess.TimeoutExpired:
        return "takes too long"
    if done.returncode not in good:
        return f"ends with {done.returncode}: {done.stderr.decode(errors='replace')[-400:]}"
    return None


def faults_by_replay(replay, files):
    if fault_of([replay, *files], SECONDS_A_BATCH):
        for file in files:
            if fault := fault_of([replay, file], SECONDS_A_DRAWING):
                yield file, fault


def faults_by_vekad(vekad, files):
    for file in files:
        copy = file.with_suffix(".copy.dxf")
        for arguments in (["info", file, "--json"], ["convert", file, copy, "--recover", "--allow-loss"]):
            if fault := fault_of([vekad, *arguments], SECONDS_A_DRAWING, VEKAD_STATUSES):
                yield file, f"{arguments[0]} {fault}"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program")
    parser.add_argument("folders", nargs="+", type=Path)
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--keep", type=Path, default=Path("found"))
    options = parser.parse_args()
    rnd = random.Random(options.seed)
    faults_of = faults_by_vekad if Path(options.program).name == "vekad" else faults_by_replay
    originals = [p.read_bytes() for folder in options.folders for p in sorted(folder.glob("*.dxf")) if p.stat().st_size]
    end, tried, kept = time.monotonic() + options.seconds, 0, 0
    with tempfile.TemporaryDirectory() as folder:
        while time.monotonic() < end:
            files = [Path(folder) / f"{tried + i}.dxf" for i in range(BATCH)]
            for file in files:
                file.write_bytes(mutated(rnd.choice(originals), rnd))
            tried += BATCH
            for file, fault in faults_of(options.program, files):
                kept += 1
                options.keep.mkdir(parents=True, exist_ok=True)
                shutil.copy(file, options.keep / f"{options.seed}_{file.name}")
                print(f"{options.keep}/{options.seed}_{file.name}: {fault}", flush=True)
    print(f"{tried} drawings, {kept} kept")
    return 1 if kept else 0


if __name__ == "__main__":
    sys.exit(main())
