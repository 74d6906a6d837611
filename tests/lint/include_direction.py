#!/usr/bin/env python3
"""An include may only point left in the order of the folders of src/. So no folders depend on each other in a circle.

Usage: include_direction.py ROOT
"""

import re
import sys
from pathlib import Path

ORDER = ["support", "state", "model", "spec", "data", "estimate", "interaction", "reports", "output", "graphs", "run",
         "requests", "shell"]
INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]*)"|<([^>]*/[^>]*)>)')


def includes(source):
    """Line number and path of every include of a file of ours."""
    for number, line in enumerate(source.read_text(encoding="latin-1").split("\n"), 1):
        found = INCLUDE.match(line)
        if found and (found[1] or found[2].split("/")[0] in ORDER):
            yield number, found[1] or found[2]


def circle(edges):
    """Folders that include each other in a circle, the first one repeated at the end; empty if there are none."""
    def walk(path):
        for target in edges.get(path[-1], {}):
            if target in path:
                return path[path.index(target):] + [target]
            if found := walk(path + [target]):
                return found
        return []
    return next(filter(None, (walk([folder]) for folder in edges)), [])


def main():
    src = Path(sys.argv[1]) / "src"
    sources = sorted(path for path in src.rglob("*") if path.suffix in (".h", ".cpp"))
    problems, edges = [], {}
    for source in sources:
        folder = source.relative_to(src).parts[0]
        if folder not in ORDER:
            problems.append(f"{source}: not in a folder of the order {' '.join(ORDER)}")
            continue
        for number, path in includes(source):
            target = path.split("/")[0]
            place = f"{source}:{number}"
            if target not in ORDER or "/" not in path:
                problems.append(f'{place}: include "{path}" does not begin with a folder of src/')
                continue
            if target != folder:
                edges.setdefault(folder, {}).setdefault(target, place)
            if ORDER.index(target) > ORDER.index(folder):
                problems.append(f"{place}: {folder}/ may not include {target}/, which stands to its right")
    if found := circle(edges):
        problems.append("folders in a circle: " + " -> ".join(found))
        problems += [f"  {edges[one][other]}: {one}/ includes {other}/" for one, other in zip(found, found[1:])]
    if not sources:
        problems.append(f"no sources below {src}")
    print("\n".join(problems) if problems else f"{len(sources)} sources include to the left only")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
