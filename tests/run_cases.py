#!/usr/bin/env python3
"""Runs case files through the real program: input, command and expected output side by side in one readable file.

Usage: run_cases.py PROGRAM [--update] [FILE_OR_FOLDER]...     (default: all *.case in the folder cases beside this)

A case file begins with comment lines (#) that say what it shows and which figures were checked by hand. Then come
sections, carried out from top to bottom in a fresh folder:

  == NAME                        a file with the lines that follow, each ended by LF; the name has a point in it
  == NAME base64                 the same for contents that are no plain lines
  == run tessaly ARGS -> STATUS  runs the program there; what follows is expected of this run
  == stdout                      all lines of standard output; likewise "stderr"
  == report [NAME]               all lines of an output file, without CR at their ends (default: the report of the run)
  == stdout contains             these whole lines occur, in this order; likewise "stderr" and "report [NAME]"
  == absent NAME                 there is no such file
  == end                         the last line

In a section with all lines, a line "..." stands for any number of lines. A content line loses a backslash at its start,
so that "\\== x", "\\..." and "\\\\x" give "== x", "..." and "\\x". In all output the folder of the case is shown as
{folder} and the folder for temporary files as {tmp}. The latter must be empty after each run. `--update` writes what
the program gave into sections with all lines; review the difference like code.

Files are taken as bytes: any encoding passes through unchanged.
"""

import argparse
import base64
import difflib
import os
import shlex
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass, field
from pathlib import Path

TIMEOUT_SECONDS = 60
THREADS = 2
BYTES = "latin-1"  # one character a byte, both ways
ANY_LINES = object()  # "..." in an expectation


class CaseError(Exception):
    """The case file itself is wrong, or the program did not do what the case expects."""


@dataclass
class Section:
    line: int  # of its heading, from 1
    words: list
    body: list = field(default_factory=list)  # as written, escapes and all

    def content(self):
        return [text[1:] if text.startswith("\\") else text for text in self.body]

    def expected(self):
        return [ANY_LINES if text == "..." else text.removeprefix("\\") for text in self.body]


def as_written(line):
    if line is ANY_LINES:
        return "..."
    return "\\" + line if line.startswith(("==", "\\")) or line == "..." else line


def parse(text):
    """The comment lines and the sections of a case file, without "== end"."""
    lines = text.split("\n")
    if lines.pop() != "":
        raise CaseError("the last line has no line end")
    comments, sections = [], []
    for number, line in enumerate(lines, 1):
        if line.startswith("== "):
            if sections and sections[-1].words == ["end"]:
                raise CaseError(f"line {number}: text after == end")
            sections.append(Section(number, line[3:].split(" ")))
        elif sections:
            sections[-1].body.append(line)
        elif line.startswith("#") or line == "":
            comments.append(line)
        else:
            raise CaseError(f"line {number}: a comment (#) or a section (==) expected")
    if not sections or sections[-1].words != ["end"] or sections[-1].body:
        raise CaseError("the last line is not == end")
    return comments, sections[:-1]


def aligned(expected, actual):
    """`actual` as `expected` would have been written: with ANY_LINES where only that stood against its lines."""
    result = []
    for kind, e1, e2, a1, a2 in difflib.SequenceMatcher(None, expected, actual, autojunk=False).get_opcodes():
        skipped = kind != "equal" and expected[e1:e2] == [ANY_LINES]
        result += [ANY_LINES] if skipped else actual[a1:a2]
    return result


def matches(expected, actual):
    """Whether `actual` is `expected`, with any number of lines for each ANY_LINES."""
    blocks = [[]]
    for line in expected:
        if line is ANY_LINES:
            blocks.append([])
        else:
            blocks[-1].append(line)
    first, *rest = blocks
    if not rest:
        return actual == first
    *middle, last = rest
    position, end = len(first), len(actual) - len(last)
    if position > end or actual[:position] != first or actual[end:] != last:
        return False
    for block in middle:
        while position + len(block) <= end and actual[position:position + len(block)] != block:
            position += 1
        position += len(block)
        if position > end:
            return False
    return True


class Case:
    """One case file on its way through its sections."""

    def __init__(self, path, program, update):
        self.path, self.program, self.update = path, program, update
        self.problems = []
        self.changed = False
        self.run = None  # the finished process
        self.arguments = []

    def play(self):
        """The problems found, as text; none means that the case passed."""
        try:
            comments, sections = parse(self.path.read_bytes().decode(BYTES))
            with tempfile.TemporaryDirectory() as folder, tempfile.TemporaryDirectory() as temporary:
                self.folder, self.temporary = Path(folder), Path(temporary)
                for section in sections:
                    try:
                        self.carry_out(section)
                    except (CaseError, ValueError) as error:  # ValueError: base64 and quotation marks
                        self.problems.append(f"line {section.line}: {error}")
                        if section.words[0] == "run":
                            break
            if self.run is None and not self.problems:
                raise CaseError("nothing is run")
        except CaseError as error:
            self.problems.append(str(error))
        if self.changed:
            self.rewrite(comments, sections)
        return self.problems

    def carry_out(self, section):
        match section.words:
            case ["run", "tessaly", *arguments, "->", status] if status.isdigit():
                self.expect_no_lines(section)
                self.start(shlex.split(" ".join(arguments)), int(status))
            case ["run", *_]:
                raise CaseError("expected: == run tessaly ARGS -> STATUS")
            case ["stdout" | "stderr" as channel, *how]:
                output = getattr(self.finished(), channel)
                self.compare(section, self.lines(output), how)
            case ["report", "contains" as how]:
                self.compare(section, self.report_lines(self.report_name()), [how])
            case ["report", *how]:
                contains = how[1:]
                self.compare(section, self.report_lines(how[0] if how else self.report_name()), contains)
            case ["absent", name]:
                self.expect_no_lines(section)
                self.finished()
                if self.inside(name).exists():
                    raise CaseError(f"there is a file {name}")
            case [*name, "base64"] if "." in " ".join(name):
                self.write_file(" ".join(name), base64.b64decode("".join(section.body), validate=True))
            case name if "." in " ".join(name):
                text = "".join(line + "\n" for line in section.content())
                self.write_file(" ".join(name), text.encode(BYTES))
            case _:
                raise CaseError("unknown section: " + " ".join(section.words))

    def inside(self, name):
        path = self.folder / name
        if not name or Path(name).is_absolute() or ".." in Path(name).parts:
            raise CaseError(f"not a file name in the folder of the case: {name}")
        return path

    def write_file(self, name, contents):
        path = self.inside(name)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(contents)

    def expect_no_lines(self, section):
        if any(section.body):
            raise CaseError("no lines may follow here")

    def start(self, arguments, status):
        environment = {"PATH": os.environ.get("PATH", os.defpath), "LC_ALL": "C", "SOURCE_DATE_EPOCH": "1000000000",
                       "TMPDIR": str(self.temporary), "TESSALY_SETTINGS": os.devnull}
        self.arguments = arguments
        try:
            self.run = subprocess.run([self.program, *arguments], cwd=self.folder, env=environment, check=False,
                                      stdin=subprocess.DEVNULL, capture_output=True, timeout=TIMEOUT_SECONDS)
        except subprocess.TimeoutExpired:
            raise CaseError(f"still running after {TIMEOUT_SECONDS} seconds") from None
        if self.run.returncode != status:
            shown = self.run.stderr.decode(BYTES)[-4000:] or self.run.stdout.decode(BYTES)[-4000:]
            raise CaseError(f"exit status {self.run.returncode}, expected {status}\n{shown}".rstrip())
        left = sorted(path.name for path in self.temporary.iterdir())
        if left:
            raise CaseError("left in the folder for temporary files: " + ", ".join(left))

    def finished(self):
        if self.run is None:
            raise CaseError("an expectation before any run")
        return self.run

    def report_name(self):
        """The second file name of the command line, or what the program makes of the first."""
        names = [word for word in self.arguments if "=" not in word]
        if not names:
            raise CaseError("the run has no report: name the file")
        stem, point, _ = names[0].rpartition(".")
        return names[1] if len(names) > 1 else (stem if point else names[0]) + ".out.txt"

    def report_lines(self, name):
        self.finished()
        path = self.inside(name)
        if not path.is_file():
            raise CaseError(f"there is no file {name}")
        return [line.removesuffix("\r") for line in self.lines(path.read_bytes())]

    def lines(self, output):
        text = output.decode(BYTES).replace(str(self.folder), "{folder}").replace(str(self.temporary), "{tmp}")
        lines = text.split("\n")
        if lines.pop() != "":
            raise CaseError("the last line of the output has no line end")
        return lines

    def compare(self, section, actual, how):
        if how == ["contains"]:
            position = 0
            for line in section.content():
                if line not in actual[position:]:
                    raise CaseError(f"missing{' behind the lines before' if line in actual else ''}: {line}")
                position = actual.index(line, position) + 1
        elif how:
            raise CaseError("unknown section")
        elif not matches(section.expected(), actual):
            given = [as_written(line) for line in aligned(section.expected(), actual)]
            if self.update:
                section.body = given
                self.changed = True
            else:
                difference = difflib.unified_diff(section.body, given, "expected", "given", lineterm="")
                raise CaseError("\n".join([" ".join(section.words) + " differs", *difference]))

    def rewrite(self, comments, sections):
        lines = list(comments)
        for section in sections:
            lines += ["== " + " ".join(section.words), *section.body]
        self.path.write_bytes("".join(line + "\n" for line in [*lines, "== end"]).encode(BYTES))


def find_cases(places):
    cases = []
    for place in places:
        cases += sorted(place.rglob("*.case")) if place.is_dir() else [place]
    return cases


def main():
    options = argparse.ArgumentParser(usage="%(prog)s PROGRAM [--update] [FILE_OR_FOLDER]...")
    options.add_argument("program", type=Path)
    options.add_argument("--update", action="store_true", help="write what the program gives into the case files")
    options.add_argument("places", type=Path, nargs="*", default=[Path(__file__).parent / "cases"])
    chosen = options.parse_intermixed_args()
    for path in [chosen.program, *chosen.places]:
        if not path.exists():
            options.error(f"there is no {path}")

    cases = [Case(path, str(chosen.program.resolve()), chosen.update) for path in find_cases(chosen.places)]
    failed = 0
    with ThreadPoolExecutor(THREADS) as pool:
        for case, problems in zip(cases, pool.map(Case.play, cases)):
            if problems:
                failed += 1
                sys.stdout.buffer.write("\n".join([f"FAILED {case.path}:", *problems, ""]).encode(BYTES, "replace"))
            elif case.changed:
                print(f"updated {case.path}")
            sys.stdout.flush()
    print(f"{len(cases)} cases, {failed} failed")
    return 0 if cases and not failed else 1


if __name__ == "__main__":
    sys.exit(main())
