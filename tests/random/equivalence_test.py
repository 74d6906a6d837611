#!/usr/bin/env python3
"""One design written in many ways gives the same measures, errors and fit.

Usage: equivalence_test.py PROGRAM [DESIGNS [FIRST SEED]]

The runs of a design that fails are left in the folder that is named.
"""

import re
import sys

from designs import pick, run, try_designs

RESIDUAL = 0.0005
SETTINGS = ["Iterations=500", f"Convergence={RESIDUAL},.000005", "Umean=0,1,4", "CSV=Tab", "Tables=0",
            "Scorefile=scores.txt"]
LAST_RESIDUAL = re.compile(r".*\| JMLE *\d+ +-?([\d.]+)", re.DOTALL)
COMPARED = ["Measure", "S.E.", "InfitMS", "OutfitMS", "T.Score", "T.Count", "FairMAvge", "Status"]
# What the criteria leave to chance, in score points; a measure moves by that over the information.
LEFT = 0.002


class Ratings:
    """Raters (facet 2) rate persons (facet 1, of one of two groups, dummy facet 3) on items (facet 4)."""

    def __init__(self, random):
        self.random = random
        self.sizes = [random.randint(5, 12), random.randint(2, 4), 2, random.randint(3, 6)]
        self.top = pick(random, 1, 2, 4)
        self.group = [0] + [random.randint(1, 2) for _ in range(self.sizes[0])]
        levels = [[random.gauss(0, 1) for _ in range(size + 1)] for size in self.sizes]
        # Cells are drawn with repetition: equal lines are what replications stand for.
        cells = [(person, rater, self.group[person], item) for person in range(1, self.sizes[0] + 1)
                 for rater in range(1, self.sizes[1] + 1) for item in range(1, self.sizes[3] + 1)
                 for _ in range(pick(random, 1, 1, 2)) if random.random() < 0.8]
        self.rows = []
        for cell in cells:
            level = levels[0][cell[0]] - sum(levels[facet][cell[facet]] for facet in (1, 3))
            score = round(self.top / 2 + level + random.gauss(0, 1))
            self.rows.append((cell, max(0, min(self.top, score))))

    def label(self, facet, element):
        """The group of a person is the last character of its label."""
        return f"Person {element:02} {'ab'[self.group[element] - 1]}" if facet == 1 else f"F{facet} e{element:02}"

    def labels(self, number=lambda facet, element: element):
        lines = []
        for facet, size in enumerate(self.sizes, 1):
            lines.append(f"{facet},Facet {facet}" + (",D" if facet == 3 else ""))
            elements = sorted(range(1, size + 1), key=lambda element: number(facet, element))
            lines += [f"{number(facet, element)},{self.label(facet, element)}" for element in elements]
            lines.append("*")
        return lines

    def text(self, lines, settings=(), labels=None, data="Data="):
        head = ["Facets=4", f"Models=?,?,?,?,R{self.top}", *SETTINGS, *settings, "Labels=", *(labels or self.labels())]
        return "\n".join([*head, data, *lines]) + "\n"

    def lines(self, separator=",", quote=""):
        return [separator.join(f"{quote}{value}{quote}" for value in (*cell, score)) for cell, score in self.rows]


def plain(ratings, _):
    return ratings.text(ratings.lines())


def reordered(ratings, _):
    return ratings.text(ratings.random.sample(ratings.lines(), len(ratings.rows)))


def renumbered(ratings, _):
    numbers = [[]] + [ratings.random.sample(range(1, 2000000000), size) for size in ratings.sizes]
    number = lambda facet, element: numbers[facet][element - 1]
    rows = [",".join(str(number(facet, element)) for facet, element in enumerate(cell, 1)) + f",{score}"
            for cell, score in ratings.rows]
    return ratings.text(rows, labels=ratings.labels(number))


def by_label(ratings, _):
    rows = [",".join(ratings.label(facet, element) for facet, element in enumerate(cell, 1)) + f",{score}"
            for cell, score in ratings.rows]
    return ratings.text(rows, ["Delements=L"])


def split_over_files(ratings, folder):
    lines = ratings.lines()
    parts = [lines[0::3], lines[1::3], lines[2::3]]
    for number, part in enumerate(parts):
        (folder / f"part {number}.txt").write_text("\r\n".join(part) + "\r\n*\r\nnot, read, any, more\r\n")
    return ratings.text([], data="Data=part 0.txt+part 1.txt+part 2.txt")


def with_tabs(ratings, _):
    return ratings.text(ratings.lines("\t"))


def with_blanks(ratings, _):
    return ratings.text(["  " + line + " ; a comment" for line in ratings.lines("   ")])


def with_quotes(ratings, _):
    return ratings.text(ratings.lines(", ", '"'))


def group_from_label(ratings, _):
    """The third column is a piece of the label of the element in the first one."""
    labels = [line.replace("F3 e01", "a").replace("F3 e02", "b") for line in ratings.labels()]
    rows = [",".join(map(str, (*cell[:2], cell[3], score))) for cell, score in ratings.rows]
    return ratings.text(rows, ["Dvalues=", "3,1,11,1", "*", "Delements=3L"], labels)


def with_replications(ratings, _):
    counts = {}
    for row in ratings.rows:
        counts[row] = counts.get(row, 0) + 1
    return ratings.text([f"R{count}," + ",".join(map(str, (*cell, score))) for (cell, score), count in counts.items()])


def with_ranges(ratings, _):
    """Items of one person and rater side by side; an item that was not rated is an empty response."""
    lines = []
    left = list(ratings.rows)
    while left:
        first = left[0][0]
        responses = [""] * ratings.sizes[3]
        for row in list(left):
            if row[0][:3] == first[:3] and responses[row[0][3] - 1] == "":
                responses[row[0][3] - 1] = str(row[1])
                left.remove(row)
        lines.append(",".join([*map(str, first[:3]), f"1-{ratings.sizes[3]}", *responses]))
    return ratings.text(lines)


FORMS = [plain, reordered, renumbered, by_label, split_over_files, with_tabs, with_blanks, with_quotes,
         group_from_label, with_replications, with_ranges]


def scores(folder):
    """What is compared, by facet and place of the element's label in the alphabet."""
    found = {}
    for facet in range(1, 5):
        _, heading, *rows = (folder / f"scores{facet}.txt").read_text().splitlines()
        names = heading.split("\t")
        elements = [dict(zip(names, row.split("\t"))) for row in rows]
        elements.sort(key=lambda element: element[f"Facet {facet}"])
        found[facet] = [[float(element[name] or 0) for name in COMPARED] for element in elements]
    return found


def difference(expected, got, form):
    for facet, elements in expected.items():
        if len(elements) != len(got[facet]):
            return f"facet {facet} has {len(got[facet])} elements, not {len(elements)}"
        for place, (own, other) in enumerate(zip(elements, got[facet]), 1):
            # An extreme score is moved inward by a share of the smallest weight.
            if form is with_replications and own[COMPARED.index("Status")] != -1:
                continue
            for name, a, b in zip(COMPARED, own, other):
                error = own[COMPARED.index("S.E.")]
                rounding = 0.0101 if name in ("InfitMS", "OutfitMS", "FairMAvge") else 0.0003
                if abs(a - b) > rounding + LEFT * error * error * max(1, error):
                    return f"facet {facet}, element {place}: {name} {a} or {b}"
    return None


def settled(shown):
    """Otherwise raters or items are all but apart, and rounding decides where they come to rest."""
    return float(LAST_RESIDUAL.match(shown)[1]) <= RESIDUAL


def separable(found):
    """Whether elements run away from the others, as far as the criteria let them."""
    measure, error, status = (COMPARED.index(name) for name in ("Measure", "S.E.", "Status"))
    return any(abs(element[measure]) > 6 or element[error] > 2
               for elements in found.values() for element in elements if element[status] == -1)


def attempt(program, random, folder):
    ratings = Ratings(random)
    expected = None
    for form in FORMS:
        place = folder / form.__name__
        place.mkdir()
        status, shown = run(program, form(ratings, place), place)
        if expected is None and "Error F36" in shown:
            return False, ""  # Extreme scores alone have nothing to compare.
        if status != 0:
            return True, f"{form.__name__} ended by {status}: {shown.splitlines()[-4:]}"
        if expected is None:
            expected = scores(place)
            if separable(expected) or not settled(shown):
                return False, ""
        elif settled(shown) and (found := difference(expected, scores(place), form)):
            return True, f"{form.__name__}: {found}"
    return True, ""


sys.exit(try_designs(attempt, 8, f"compared in {len(FORMS)} forms"))
