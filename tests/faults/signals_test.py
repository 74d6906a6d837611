#!/usr/bin/env python3
"""Signals at random moments of a run with all its outputs.

Each run must end in good order: soon, with the status of its signal, or as if nothing had been; nothing is left over.

Usage: signals_test.py PROGRAM [--tries N] [--seed N] [--persons N]
"""

import argparse
import os
import random
import re
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

LONGEST_STOP = 1.0  # of processor time: other programs may be running
LONGEST_RUN = 600
RATERS = 30
ITEMS = 4
SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)
REQUESTS = ("table7 to=screen", "scorefile to=temporary", "residualfile file=r2.txt", "curves empirical=yes")


def write_analysis(folder, persons):
    """Persons are rated on all items by three raters each."""
    lines = ["Facets=3", "Models=?B,?B,?,R4", "Data=data.txt", "Interrater=2", "Ptbiserial=Y", "Unexpected=0",
             "T4maximum=1000000", "Usort=(u,1)", "Anchorfile=a.txt", "Residualfile=r.txt", "Scorefile=s.txt",
             "Graphfile=g.txt", "Simulated=sim.txt", "Seed=1", "Labels=", "1,Person", f"1-{persons}", "*", "2,Rater",
             f"1-{RATERS}", "*", "3,Item", f"1-{ITEMS}", "*"]
    (folder / "spec.txt").write_text("\n".join(lines) + "\n")
    draw = random.Random(1)
    with (folder / "data.txt").open("w") as data:
        for person in range(1, persons + 1):
            for rater in draw.sample(range(1, RATERS + 1), 3):
                responses = (draw.randrange(5) for _ in range(ITEMS))
                print(person, rater, f"1-{ITEMS}", *responses, sep=",", file=data)


def processor_seconds(process):
    fields = Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


class Try:
    """One run, and the signal that it got after `delay` seconds; 0 for none."""

    def __init__(self, program, folder, number, delay):
        self.folder = folder
        temporary = folder / "tmp"
        for path in folder.iterdir():
            if path.is_file() and path.name not in ("spec.txt", "data.txt"):
                path.unlink()
        temporary.mkdir(exist_ok=True)
        environment = {"PATH": os.environ["PATH"], "TMPDIR": str(temporary), "SOURCE_DATE_EPOCH": "0",
                       "TESSALY_SETTINGS": os.devnull}
        words = [word for request in REQUESTS for word in ("--request", request)]
        with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
            began = time.monotonic()
            process = subprocess.Popen([program, "spec.txt", "Batch=Y", *words], cwd=folder, env=environment,
                                       stdin=subprocess.DEVNULL, stdout=output, stderr=errors)
            before = self.signal(process, number, delay) if number else 0
            try:
                _, status, usage = wait(process, LONGEST_RUN)
            except TimeoutError:
                process.kill()
                raise
            self.seconds = time.monotonic() - began
            self.status = os.waitstatus_to_exitcode(status)
            self.stopped_in = usage.ru_utime + usage.ru_stime - before
            self.output, self.errors = (stream.seek(0) or stream.read().decode() for stream in (output, errors))
        self.left = [path.name for path in temporary.iterdir()]
        self.files = {path.name: re.sub(rb"Analyzed in time of[ :\d]*", b"", path.read_bytes())
                      for path in folder.iterdir() if path.is_file()}

    def signal(self, process, number, delay):
        end = time.monotonic() + delay
        while time.monotonic() < end:
            time.sleep(min(0.01, max(0, end - time.monotonic())))
        try:
            before = processor_seconds(process)
            os.kill(process.pid, number)
            return before
        except (IndexError, ProcessLookupError, FileNotFoundError):
            return 0

    def problem(self, number, whole):
        """What is wrong; empty if nothing is."""
        if self.left:
            return f"left over: {self.left}"
        if extra := self.files.keys() - whole.files.keys():
            return f"left over: {extra}"
        if self.status == 0:
            return "" if self.files == whole.files else "claims success, but the files are not the same"
        if self.status == -number and not self.output:
            return ""  # it came before the program had begun
        if self.status != 128 + number:
            return f"exit status {self.status}"
        if self.stopped_in > LONGEST_STOP:
            return f"stopped after {self.stopped_in:.2f} s"
        return ""


def wait(process, seconds):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        pid, status, usage = os.wait4(process.pid, os.WNOHANG)
        if pid:
            process.returncode = status
            return pid, status, usage
        time.sleep(0.005)
    raise TimeoutError(f"still running after {seconds} s")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program", type=os.path.abspath)
    parser.add_argument("--tries", type=int, default=25)
    parser.add_argument("--seed", type=int, default=random.randrange(10**6))
    parser.add_argument("--persons", type=int, default=1500)
    options = parser.parse_args()
    draw = random.Random(options.seed)
    print("Seed", options.seed)
    wrong = 0
    slowest = 0
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        write_analysis(folder, options.persons)
        whole = Try(options.program, folder, 0, 0)
        if whole.status != 0 or whole.left:
            sys.exit(f"The run without signal fails: {whole.errors} {whole.left}")
        for _ in range(options.tries):
            number = draw.choice(SIGNALS)
            delay = draw.uniform(0, whole.seconds)
            tried = Try(options.program, folder, number, delay)
            if tried.status > 0:
                slowest = max(slowest, tried.stopped_in)
            if text := tried.problem(number, whole):
                wrong += 1
                print(f"{number.name} after {delay:.2f} of {whole.seconds:.2f} s: {text}; last line: "
                      f"{tried.output.rstrip().rpartition(chr(10))[2]}", flush=True)
    print(f"{options.tries} tries, {wrong} went wrong; slowest stop {slowest:.2f} s of processor time")
    sys.exit(wrong != 0)


if __name__ == "__main__":
    main()
