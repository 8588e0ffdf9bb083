#!/usr/bin/env python3
"""Checks who includes whom. A floor of the host uses only what stands under it; the sdk includes nothing of the host;
modules see the sdk alone; nothing below the user interface knows about widgets."""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent

GROUND = ["base", "geom", "text", "db", "io", "edit"]
# What each floor may include beside itself. The three above the editor do not see each other.
MAY_INCLUDE = {floor: set(GROUND[:i]) for i, floor in enumerate(GROUND)}
for floor in ("commands", "lisp", "render"):
    MAY_INCLUDE[floor] = set(GROUND)
MAY_INCLUDE["ui"] = set(GROUND) | {"commands", "lisp", "render"}
MAY_INCLUDE["app"] = MAY_INCLUDE["ui"] | {"ui"}

INCLUDE = re.compile(r'^\s*#\s*include\s*["<]([^">]+)[">]', re.M)
WIDGETS = re.compile(r"^(Qt(Widgets|Gui)/|Q[A-Z]\w*$)")
SOURCES = {".h", ".cpp", ".inc"}


def sources(folder):
    return sorted(p for p in (ROOT / folder).rglob("*") if p.suffix in SOURCES)


def included(path):
    return INCLUDE.findall(path.read_text(encoding="utf-8", errors="replace"))


def host_faults():
    for path in sources("host"):
        floor = path.relative_to(ROOT / "host").parts[0]
        if floor not in MAY_INCLUDE:
            yield path, f"host/{floor} is no floor"
            continue
        for name in included(path):
            other = re.match(r"host/(\w+)/", name)
            if other and other[1] != floor and other[1] not in MAY_INCLUDE[floor]:
                yield path, f"host/{floor} may not include {name}"
            if re.match(r"(extend|layermanager|tests)/", name):
                yield path, f"the host may not include {name}"
            if floor in GROUND and WIDGETS.match(name):
                yield path, f"host/{floor} may not include {name}"


def sdk_faults():
    for path in sources("sdk"):
        for name in included(path):
            if re.match(r"(host|extend|layermanager|tests)/", name):
                yield path, f"the sdk may not include {name}"


def module_faults():
    for folder in ("extend", "layermanager"):
        for path in sources(folder):
            for name in included(path):
                if name.startswith("host/") or re.match(r"\.\./.*host/", name):
                    yield path, f"a module may include the sdk alone, not {name}"


def main():
    faults = [*host_faults(), *sdk_faults(), *module_faults()]
    for path, fault in faults:
        print(f"{path.relative_to(ROOT)}: {fault}", file=sys.stderr)
    if faults:
        print(f"floors: {len(faults)} broken", file=sys.stderr)
        return 1
    print("floors: ok")
    return 0


if __name__ == "__main__":
    sys.exit(main())
