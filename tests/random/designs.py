"""Small rating designs drawn at random, and how they are written as files."""

import random
import shutil
import subprocess
import sys
import tempfile
from dataclasses import dataclass, field
from pathlib import Path
from typing import NamedTuple


@dataclass
class Design:
    """Specification lines in front of Labels=, the lines of Labels=, data lines, and lines that rule over the first."""

    settings: list
    labels: list
    lines: list
    outputs: list = field(default_factory=list)

    def text(self):
        return "\n".join([*self.outputs, *self.settings, "Labels=", *self.labels, "Data=", *self.lines]) + "\n"


def run(program, design_text, folder, words=(), seconds=60):
    """Runs the text as `design.txt` in `folder`; gives exit status and what was shown, None for a run without end."""
    folder = Path(folder)
    (folder / "design.txt").write_text(design_text)
    environment = {"PATH": "/usr/bin:/bin", "TMPDIR": str(folder), "TESSALY_SETTINGS": "/dev/null"}
    try:
        done = subprocess.run([program, "design.txt", "report.txt", "Batch=Y", *words], cwd=folder, env=environment,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              timeout=seconds, check=False)
    except subprocess.TimeoutExpired:
        return None, "no end"
    return done.returncode, done.stdout.decode(errors="replace")


def try_designs(attempt, usual, counted):
    """For PROGRAM [DESIGNS [FIRST SEED]] of the command line: `attempt(program, random, folder)` of each seed gives
    whether the design counts as `counted`, and its fault, empty if there is none. The exit status: whether any failed,
    or fewer than a third counted. The folder of a design that fails is left and named."""
    program = str(Path(sys.argv[1]).resolve())
    designs = int(sys.argv[2]) if len(sys.argv) > 2 else usual
    first = int(sys.argv[3]) if len(sys.argv) > 3 else 1
    failed = count = 0
    for seed in range(first, first + designs):
        folder = Path(tempfile.mkdtemp(prefix=f"design{seed}-"))
        counts, fault = attempt(program, random.Random(seed), folder)
        count += counts
        if fault:
            failed += 1
            print(f"seed {seed}: {fault}  [{folder}]")
        else:
            shutil.rmtree(folder)
    print(f"{designs} designs, {count} {counted}, {failed} with a fault")
    return failed > 0 or count < designs // 3


class Often(NamedTuple):
    """A choice that counts `times` times."""

    times: int
    value: object


def pick(random, *choices):
    """One of the choices."""
    weights = [choice.times if isinstance(choice, Often) else 1 for choice in choices]
    values = [choice.value if isinstance(choice, Often) else choice for choice in choices]
    return random.choices(values, weights)[0]


def odd_design(random):
    """Anything that a specification may say, the odd with preference: extreme scores, single observations, weights of
    0 and of millions, anchors far out, facets without a link, scales of one category."""
    facets = random.randint(1, 4)
    sizes = [pick(random, 1, 2, Often(3, random.randint(2, 6)), Often(2, random.randint(5, 15))) for _ in range(facets)]
    far = pick(random, Often(4, False), True)
    scales = [odd_scale(random) for _ in range(pick(random, Often(3, 1), 2))]
    settings = ["Facets=" + str(facets), *odd_settings(random, facets)]
    settings += odd_models(random, facets, scales)
    labels = [line for facet, size in enumerate(sizes, 1) for line in odd_facet(random, facet, size, far)]
    return Design(settings, labels, odd_lines(random, sizes, max(top for _, top in scales)))


def odd_scale(random):
    top = pick(random, 1, 2, Often(3, random.randint(2, 5)), 9)
    return pick(random, ("D", 1), Often(3, (f"R{top}", top)), (f"R{top}K", top), (f"B{top}", top), ("P", 6), ("D2", 3),
                ("M", 1))


def odd_models(random, facets, scales):
    def position(bias):
        place = pick(random, Often(8, "?"), "#", "", "-?", "1", "2-3", "X")
        return place + pick(random, Often(2, ""), "B" if bias else "")

    lines = ["Models="]
    for code, _ in scales:
        bias = random.random() < 0.3
        places = [position(bias) for _ in range(facets)]
        weight = pick(random, Often(8, ""), ",0", ",.5", ",1000000", ",.000001", ",3", ",1E+20")
        lines.append(",".join([*places, code]) + weight)
    lines.append(",".join(["?"] * facets + [scales[0][0]]))
    return [*lines, "*"]


def odd_facet(random, number, size, far):
    kind = pick(random, Often(6, ""), Often(2, "A"), "D", "G", "X")
    lines = [f"{number},Facet {number},{kind}" + pick(random, Often(6, ""), ",1", ",2", ",0")]
    for element in range(1, size + 1):
        anchor = pick(random, Often(2, ""), round(random.gauss(0, 1.5), 2), *((4, -30) if far else ()))
        group = pick(random, Often(5, ""), 0, 1, 2, 7)
        weight = pick(random, Often(12, ""), 0, 0.5, 3, *((1e6, 1e-6, "1E+20") if far else ()))
        lines.append(f"{element},E{number}.{element},{anchor},{group},{weight}")
    return [*lines, "*"]


def odd_lines(random, sizes, top):
    kind = pick(random, Often(3, "mixed"), "same", "ends", "split", "one")
    share = pick(random, 0.1, 0.4, Often(2, 0.9))
    able = [[random.gauss(0, 1) for _ in range(size)] for size in sizes]
    lines = []
    for _ in range(1 if kind == "one" else pick(random, random.randint(1, 20), Often(3, random.randint(30, 200)))):
        cell = [random.randint(1, size) for size in sizes]
        if kind == "split" and len({element % 2 for element in cell}) > 1:
            continue
        if random.random() > share:
            cell[random.randrange(len(cell))] = pick(random, Often(6, 1), 0, 99)
        level = sum(able[facet][(element - 1) % sizes[facet]] for facet, element in enumerate(cell))
        score = {"same": top, "ends": top if level > 0 else 0}.get(kind, round(top / 2 + level + random.gauss(0, 1)))
        response = pick(random, Often(15, max(0, min(top, score))), top + 1, "", "x")
        prefix = pick(random, Often(12, ""), "R2,", "R0.5,", "R0,", "R1000000000,")
        lines.append(prefix + ",".join(map(str, cell)) + f",{response}")
    return lines or [",".join(["1"] * len(sizes)) + ",1"]


def odd_settings(random, facets):
    """Some keywords with odd values. Iterations are bounded: the figures of an estimation without end are not looked
    for here."""
    facet = random.randint(1, facets)
    possible = [
        f"Noncenter={facet}", "Noncenter=0", f"Center={facet}Z", f"Positive={facet}", "Positive=N", "Negative=N",
        "Newton=0.5", "Newton=Y", "Xtreme=0.01,0.01", "Xtreme=0.99,-0.9", "Hardware=5", "Hardware=700",
        "Umean=50,10,1", "Umean=0,-1,4", "Umean=500,100,0", "Udecimals=9", "Uscale=.001", "Pt-biserial=Y",
        "Pt-biserial=I", "Standard errors=Real", "Totalscore=N", "Fair=Zero", "Whexact=N", "Subsets=Report",
        "Subsets=No", "Unexpected=0", "Unexpected=1", "T4MAX=5", "Usort=(U)(1,z,e)", "Barcharts=A", "Vertical=1A,2*,S",
        "Yardstick=0,3,-2,2,Measure",
        f"Inter-rater={facet}", "Arrange=fN,pN", "Arrange=M", "Convergence=.001,.00001", "Convergence=0,0,.5,.001",
        "Zscore=1,1", "Bias=minus", "Write=Y", "ASCII=W", "ASCII=N", "Omit-unobserved=N", "Missing=0", "Juxtapose=2",
        "Null=1", "Left-hand=Y", "Udecimals=0", "QM=Double", "CSV=Tab", "CSV=Comma", "Heading lines=N",
    ]
    chosen = random.sample(possible, random.randint(0, 8))
    return [f"Iterations={pick(random, 1, Often(4, 60), 300)}", *chosen]
