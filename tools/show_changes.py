#!/usr/bin/env python3
"""show_changes.py BEFORE AFTER REPORT - prints what a run has changed: each object that its report names, and of each
that was modified the groups that differ. Both drawings are ASCII DXF files."""

import json
import sys
from collections import Counter


def groups_of(path):
    lines = open(path, encoding="utf-8", errors="surrogateescape").read().splitlines()
    return [(int(code), value.strip("\r")) for code, value in zip(lines[::2], lines[1::2])]


def objects_of(path):
    """The groups of each object by its handle."""
    objects, current = {}, []
    for code, value in [*groups_of(path), (0, "EOF")]:
        if code != 0:
            current.append((code, value))
            continue
        handle = next((v for c, v in current if c in (5, 105)), None)
        if handle:
            objects[handle.upper()] = current
        current = [(code, value)]
    return objects


def value_of(group):
    code, value = group
    return f"{code}: {value.strip()}"


def described(groups):
    """The text of an object that has one, else its layer."""
    found = dict(reversed(groups or []))
    words = [repr(found[1]) if 1 in found else "", f"on {found[8]}" if 8 in found else ""]
    return " ".join(w for w in words if w)


def show_modified(before, after):
    gone, come = Counter(before), Counter(after)
    for group in before:
        if gone[group] > come[group]:
            print(f"      - {value_of(group)}")
            gone[group] -= 1
    gone = Counter(before)
    for group in after:
        if come[group] > gone[group]:
            print(f"      + {value_of(group)}")
            come[group] -= 1


def main(before_path, after_path, report_path):
    before, after = objects_of(before_path), objects_of(after_path)
    report = json.loads(open(report_path, encoding="utf-8").read())
    for command in report["commands"]:
        print(f"  {command['name']:<12}{command['status']}")
    for change in ("added", "modified", "erased"):
        for kind, handles in sorted(report[change].items()):
            print(f"  {change} {kind} ({len(handles)})")
            for handle in handles:
                print(f"    {handle:>5}  {described(after.get(handle) or before.get(handle))}")
                if change == "modified":
                    show_modified(before.get(handle, []), after.get(handle, []))
    for message in report["messages"]:
        print(f"  {message}")


if __name__ == "__main__":
    main(*sys.argv[1:])
