#!/usr/bin/env python3
"""Looks for what is no number, or an absurd one, in all tables and files of designs drawn at random.

Usage: numbers_test.py PROGRAM [DESIGNS [FIRST SEED]]     a design that fails is left in the folder named
"""

import random
import re
import shutil
import sys
import tempfile
from pathlib import Path

from designs import odd_design, run

NO_NUMBER = re.compile(r"(?<![\w.])[-+]?(nan|inf|1\.#\w+)(?![\w.])|-?nan\b", re.IGNORECASE)
# Exponents come with weights of a million; beyond single precision nothing should.
HUGE = re.compile(r"\d[Ee]\+?(3[0-9]|[4-9]\d|\d{3})\b")
OUTPUTS = ["Anchorfile=anchors.txt", "Scorefile=scores.txt", "Residualfile=residuals.txt", "Graphfile=graph.txt",
           "Simulated=simulated.txt", "Seed=1"]


def fault(program, design, folder):
    """What is wrong with the run of a design; None if nothing."""
    status, shown = run(program, design.text(), folder)
    if status is None or status < 0:
        return f"ended by {status}"
    if status != 0 and not re.search(r"Error F\d+\b|Failure \(\d+\)!", shown):
        return f"status {status} without a message"
    for path in sorted(Path(folder).iterdir()):
        if path.name == "design.txt":
            continue
        for number, line in enumerate(path.read_text(errors="replace").splitlines(), 1):
            if NO_NUMBER.search(line) or HUGE.search(line):
                return f"{path.name}:{number}: {line}"
    return None


def main():
    program = str(Path(sys.argv[1]).resolve())
    designs = int(sys.argv[2]) if len(sys.argv) > 2 else 150
    first = int(sys.argv[3]) if len(sys.argv) > 3 else 1
    failed = 0
    for seed in range(first, first + designs):
        design = odd_design(random.Random(seed))
        design.outputs = OUTPUTS
        folder = tempfile.mkdtemp(prefix=f"design{seed}-")
        found = fault(program, design, folder)
        if found:
            failed += 1
            print(f"seed {seed}: {found}  [{folder}]")
        else:
            shutil.rmtree(folder)
    print(f"{designs} designs, {failed} with a fault")
    return failed > 0


sys.exit(main())
