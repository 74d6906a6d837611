#!/usr/bin/env python3
"""Faults: system calls and allocations that fail, one at a time and from one on, in a small analysis.

Each run must end with all files as they would have been, or with a message, another exit status and nothing left over.

Usage: faults_test.py PROGRAM SHIM [--all] [--no-malloc]
"""

import argparse
import concurrent.futures
import errno
import os
import re
import subprocess
import sys
import tempfile
from dataclasses import dataclass
from pathlib import Path

LONGEST_RUN = 60
SELECTED_MALLOCS = 400
NO_MEMORY = "memory|Too many elements"
# What an analysis does without, and says so on standard error and in the report.
DONE_WITHOUT = "Interrater=0 ; not enough allocatable memory", "settings.ini is not used: "


@dataclass(frozen=True)
class Fault:
    call: str = ""
    at: int = 0
    error: int = 0
    sticky: bool = False

    def __str__(self):
        what = os.strerror(self.error) if self.error else "in part"
        return f"{self.call} {self.at}{' and later' if self.sticky else ''}: {what}"


# In part: error 0. Standard error may fail too, so later calls are left alone there.
ERRORS = {"open": [errno.EIO, errno.ENOSPC, errno.EMFILE, errno.EINTR], "read": [errno.EIO, errno.EINTR, 0],
          "write": [errno.EIO, errno.ENOSPC, errno.EINTR, 0], "print": [errno.EIO, errno.ENOSPC, errno.EINTR, 0],
          "close": [errno.EIO, errno.ENOSPC, errno.EINTR], "rename": [errno.EIO, errno.ENOSPC],
          "thread": [errno.EAGAIN], "malloc": [errno.ENOMEM]}
STICKY = {"open": errno.EMFILE, "read": errno.EIO, "write": errno.ENOSPC, "malloc": errno.ENOMEM}


def data_lines(persons, items):
    """Spread so that no score is extreme."""
    for person in range(1, persons + 1):
        responses = ((person * 7919 + item * 104729) // 13 % 5 for item in range(items))
        yield f"{person},1-{items}," + ",".join(map(str, responses))


class Analysis:
    """An analysis in a folder of its own for each run."""

    def __init__(self, persons, items, settings, requests):
        labels = ["Labels=", "1,Person", f"1-{persons}", "*", "2,Item", f"1-{items}", "*"]
        specification = ["Facets=2", "Title=Faults", "Data=data.txt", *settings, "%.\\labels.txt"]
        self.inputs = {name: ("\n".join(lines) + "\n").encode() for name, lines in (
            ("spec.txt", specification), ("labels.txt", labels), ("data.txt", data_lines(persons, items)))}
        self.inputs["settings.ini"] = b"IterationBars = N\n"
        self.words = ["spec.txt", "Batch=Y", *(word for request in requests for word in ("--request", request))]

    def run(self, program, shim, fault=Fault()):
        with tempfile.TemporaryDirectory() as folder:
            return Run(self, Path(folder), program, shim, fault)


class Run:
    """What a run left."""

    def __init__(self, analysis, folder, program, shim, fault):
        temporary = folder / "tmp"
        temporary.mkdir()
        for name, content in analysis.inputs.items():
            (folder / name).write_bytes(content)
        counts, theirs = os.pipe()
        environment = {"PATH": os.environ["PATH"], "TMPDIR": str(temporary), "SOURCE_DATE_EPOCH": "0",
                       "TESSALY_SETTINGS": str(folder / "settings.ini"),
                       "LD_PRELOAD": " ".join([*os.environ.get("FAULT_PRELOAD", "").split(), shim]),
                       "ASAN_OPTIONS": "detect_leaks=0:exitcode=99", "UBSAN_OPTIONS": "exitcode=99",
                       "FAULT_CALL": fault.call, "FAULT_AT": str(fault.at), "FAULT_ERROR": str(fault.error),
                       "FAULT_STICKY": str(int(fault.sticky)), "FAULT_COUNTS": str(theirs)}
        try:
            done = subprocess.run([program, *analysis.words], cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                                  capture_output=True, pass_fds=[theirs], timeout=LONGEST_RUN, check=False)
            self.status, self.output, self.errors = done.returncode, done.stdout, done.stderr.decode()
        except subprocess.TimeoutExpired:
            self.status, self.output, self.errors = None, b"", ""
        os.close(theirs)
        with os.fdopen(counts) as lines:
            self.counts = {name: int(count) for name, count in map(str.split, lines)}
        self.temporary = sorted(path.name for path in temporary.iterdir())
        self.files = {path.name: without_time(path.read_bytes()) for path in folder.iterdir() if path.is_file()}
        self.output = without_time(self.output.replace(bytes(folder), b"."))


def without_time(content):
    """Also without the names of temporary files, which are told."""
    return re.sub(rb"Analyzed in time of[ :\d]*|tmp/.*", b"", content)


def problem(run, fault, whole, inputs):
    """What is wrong with a run; empty if nothing is."""
    if run.status is None:
        return "it does not end"
    if run.status not in (0, 1):
        return f"exit status {run.status}: {run.errors[-300:]}"
    if run.temporary:
        return f"left over: {run.temporary}"
    if extra := run.files.keys() - whole.files.keys():
        return f"left over: {extra}"
    for name, content in inputs.items():
        if run.files.get(name) not in (content, whole.files[name]):
            return f"{name} is damaged"
    if run.status == 0:
        if any(text in run.errors for text in DONE_WITHOUT):
            return ""
        missing = sorted(name for name in whole.files if run.files.get(name) != whole.files[name])
        if missing:
            return f"claims success, but not the same: {missing}; {run.errors[-300:]}"
        if run.output != whole.output and fault.call != "print":
            return "claims success, but says something else"
        return ""
    reason = NO_MEMORY if fault.call == "malloc" else re.escape(os.strerror(fault.error))
    if fault.call != "print" and not re.search(reason, run.errors):
        return f"no reason told: {run.errors[-300:]}"
    named = [name for name in whole.files if name in run.errors] or "Temporary folder" in run.errors
    if fault.call not in ("print", "malloc") and "/tmp/" not in run.errors and not named:
        return f"no file named: {run.errors[-300:]}"
    return ""


def points(count, most):
    """At most `most` numbers from 1 to `count`, spread evenly."""
    step = max(1, -(-count // most))
    return range(1, count + 1, step)


def faults_of(whole, kinds, most):
    for call in kinds:
        for error in ERRORS[call]:
            for at in points(whole.counts[call], most[call]):
                yield Fault(call, at, error)
        if call in STICKY:
            for at in points(whole.counts[call], most[call]):
                yield Fault(call, at, STICKY[call], True)


def try_all(analysis, program, shim, kinds, most):
    """Gives the number of faults tried and of those that went wrong."""
    whole = analysis.run(program, shim)
    if whole.status != 0 or not whole.counts:
        sys.exit(f"The run without fault fails: {whole.errors}")
    faults = list(faults_of(whole, kinds, most))
    wrong = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        runs = pool.map(lambda fault: (fault, analysis.run(program, shim, fault)), faults)
        for fault, run in runs:
            if text := problem(run, fault, whole, analysis.inputs):
                wrong += 1
                print(f"{fault}: {text}", flush=True)
    tried = {call: sum(fault.call == call for fault in faults) for call in kinds}
    print("Tried", ", ".join(f"{count} {call}" for call, count in tried.items()), f"- {wrong} went wrong", flush=True)
    return wrong


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program", type=os.path.abspath)
    parser.add_argument("shim", type=os.path.abspath)
    parser.add_argument("--all", action="store_true", help="every call, not a selection")
    parser.add_argument("--no-malloc", action="store_true", help="for programs with an allocator of their own")
    options = parser.parse_args()
    every = dict.fromkeys(ERRORS, 10**9)
    selected = dict.fromkeys(ERRORS, 12) | {"malloc": SELECTED_MALLOCS}
    kinds = [call for call in ERRORS if call != "malloc" or not options.no_malloc]
    files = ["Anchorfile=a.txt", "Residualfile=r.txt", "Scorefile=s.txt", "Graphfile=g.txt,Comma",
             "Simulated=sim.txt", "Seed=1"]
    small = Analysis(6, 4, ["Models=?B,?B,R4", "Interrater=2", "Ptbiserial=Y", *files],
                     ["table7 to=screen", "scorefile to=temporary", "table8 file=t8.txt",
                      "scorefile fields=Measure default=yes"])
    wrong = try_all(small, options.program, options.shim, kinds, every if options.all else selected)
    # Large enough for a second thread.
    large = Analysis(1100, 20, ["Models=?,?,R4", "Iterations=3", "Residualfile=r.txt"], ["curves empirical=yes"])
    few = dict.fromkeys(ERRORS, 40 if options.all else 3)
    kinds = [call for call in kinds if call in ("thread", "malloc", "write")]
    wrong += try_all(large, options.program, options.shim, kinds, few)
    sys.exit(wrong != 0)


if __name__ == "__main__":
    main()
