#!/usr/bin/env python3
"""Looks for what is no number, or an absurd one, in all tables and files of designs drawn at random.

Usage: numbers_test.py PROGRAM [DESIGNS [FIRST SEED]]

A design that fails is left in the folder that is named.
"""

import re
import sys

from designs import odd_design, run, try_designs

NO_NUMBER = re.compile(r"(?<![\w.])[-+]?(nan|inf|1\.#\w+)(?![\w.])|-?nan\b", re.IGNORECASE)
# Weights may be large, but nothing is beyond single precision.
HUGE = re.compile(r"\d[Ee]\+?(39|[4-9]\d|\d{3})\b")
OUTPUTS = ["CSV=Tab", "QM=None", "Heading lines=Y", "Anchorfile=anchors.txt", "Scorefile=scores.txt",
           "Residualfile=residuals.txt", "Graphfile=graph.txt", "Simulated=simulated.txt", "Seed=1"]


# Least and greatest possible value of a field of score files.
BOUNDS = {"T.Count": (0, None), "S.E.": (0, None), "InfitMS": (0, None), "OutfitMS": (0, None), "InfitZ": (-10, 10),
          "OutfitZ": (-10, 10), "PtMea": (-1, 1), "PtMeExp": (-1, 1), "PtBis": (-1, 1), "PtBisI": (-1, 1),
          "Status": (-5, 1), "InfChiSqu": (0, None), "OutfChiSqu": (0, None), "InfPr2s": (0, 1), "OutfPr2s": (0, 1)}


def absurd_score(path):
    """The first score that cannot be; None if all can."""
    _, heading, *rows = path.read_text().splitlines()
    names = heading.split("\t")
    for row in rows:
        for name, text in zip(names, row.split("\t")):
            low, high = BOUNDS.get(name, (None, None))
            if text and "*" not in text and "?" not in text and (
                    (low is not None and float(text) < low) or (high is not None and float(text) > high)):
                return f"{path.name}: {name} {text}"
    return None


def fault(status, shown, folder):
    """What is wrong with a run in `folder`; None if nothing."""
    if status is None or status < 0:
        return f"ended by {status}"
    if status != 0 and not re.search(r"Error F\d+\b|Failure \(\d+\)!", shown):
        return f"status {status} without a message"
    for path in sorted(folder.iterdir()):
        if path.name == "design.txt":
            continue
        for number, line in enumerate(path.read_text(errors="replace").splitlines(), 1):
            if NO_NUMBER.search(line) or HUGE.search(line):
                return f"{path.name}:{number}: {line}"
        if path.name.startswith("scores") and (found := absurd_score(path)):
            return found
    return None


def attempt(program, random, folder):
    design = odd_design(random)
    design.outputs = OUTPUTS
    status, shown = run(program, design.text(), folder)
    return status == 0, fault(status, shown, folder)


sys.exit(try_designs(attempt, 150, "analysed to the end"))
