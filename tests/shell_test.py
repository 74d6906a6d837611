#!/usr/bin/env python3
"""Signals, terminals, full disks: how the program behaves towards the system.

Usage: shell_test.py PROGRAM
"""

import fcntl
import os
import pty
import re
import resource
import select
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest
from pathlib import Path

PROGRAM = os.path.abspath(sys.argv.pop(1))
VERDICT = "Subset connection O.K."


def specification(persons, *settings):
    """Persons by 20 items; the responses are spread so that no score is extreme."""
    lines = ["Facets=2", "Models=?,?,R4", *settings, "Labels=", "1,Person", f"1-{persons}", "*", "2,Item", "1-20", "*"]
    lines.append("Data=")
    for person in range(1, persons + 1):
        responses = ((person * 7919 + item * 104729) // 13 % 5 for item in range(20))
        lines.append(f"{person},1-20," + ",".join(map(str, responses)))
    return "\n".join(lines) + "\n"


class Terminal:
    """The program on a terminal of its own, in the folder of a test."""

    def __init__(self, test, *words):
        self.child, self.terminal = pty.fork()
        if self.child == 0:
            os.chdir(test.folder)
            os.execve(PROGRAM, [PROGRAM, *words], test.environment)
        self.test = test
        self.shown = ""
        self.seen = 0
        test.addCleanup(os.close, self.terminal)

    def read(self, seconds):
        """Takes what is shown into `shown`; False when the program has ended."""
        if not select.select([self.terminal], [], [], seconds)[0]:
            os.kill(self.child, signal.SIGKILL)
            self.test.fail("Nothing more is shown behind: " + self.shown)
        try:
            self.shown += os.read(self.terminal, 65536).decode()
        except OSError:  # the terminal's other end is closed
            return False
        return True

    def answer(self, question, keys):
        """Waits for `question` behind what was waited for before, then types `keys`."""
        while (at := self.shown.find(question, self.seen)) < 0:
            self.test.assertTrue(self.read(30), f"No {question!r} in: {self.shown}")
        self.seen = at + len(question)
        os.write(self.terminal, keys.encode())

    def status(self):
        while self.read(30):
            pass
        return os.waitstatus_to_exitcode(os.waitpid(self.child, 0)[1])


def handles(process, number):
    """Whether the program has begun to listen to a signal."""
    status = Path(f"/proc/{process.pid}/status").read_text()
    return int(re.search(r"SigCgt:\s*(\w+)", status)[1], 16) >> (number - 1) & 1


def await_full(pipe):
    """Waits until nothing more goes into a pipe."""
    before, waiting = -1, 0
    while before != waiting or waiting < 1 << 15:
        time.sleep(0.3)
        before, waiting = waiting, struct.unpack("i", fcntl.ioctl(pipe, termios.FIONREAD, bytes(4)))[0]


class Shell(unittest.TestCase):
    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.temporary = self.folder / "tmp"
        self.temporary.mkdir()
        self.environment = {"PATH": os.environ["PATH"], "TMPDIR": str(self.temporary),
                            "TESSALY_SETTINGS": os.devnull, "SOURCE_DATE_EPOCH": "0"}

    def start(self, *words, **options):
        return subprocess.Popen([PROGRAM, *words], cwd=self.folder, env=self.environment, text=True,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options)

    def run_program(self, *words, **options):
        process = self.start(*words, **options)
        output, errors = process.communicate(timeout=120)
        return process.returncode, output, errors

    def start_long_run(self):
        """An analysis that iterates until it is told otherwise."""
        (self.folder / "long.txt").write_text(specification(3000, "Convergence=0,0,0,0"))
        process = self.start("long.txt", "Batch=Y")
        for line in process.stdout:
            if "JMLE" in line:
                return process
        self.fail("no iteration: " + process.stderr.read())

    def assert_nothing_left(self):
        self.assertEqual(list(self.temporary.iterdir()), [])

    def test_stop_signals_end_the_run_in_good_order(self):
        for number, status in ((signal.SIGINT, 130), (signal.SIGTERM, 143)):
            process = self.start_long_run()
            process.send_signal(number)
            output, errors = process.communicate(timeout=60)
            self.assertEqual(process.returncode, status)
            self.assertEqual(errors, "")
            self.assertNotIn("Analyzed in time of", output)
            self.assert_nothing_left()

    def test_stop_signals_end_a_run_that_waits_for_its_files(self):
        (self.folder / "spec.txt").write_text("Facets=1\nModels=?,D\nData=pipe\nLabels=\n1,a\n1-2\n")
        os.mkfifo(self.folder / "pipe")
        for words in (["spec.txt", "Batch=Y"], ["pipe", "Batch=Y"]):
            for writer in (False, True):
                # Nobody opens the pipe, or nothing comes out of it.
                held = os.open(self.folder / "pipe", os.O_RDWR) if writer else None
                process = self.start(*words)
                while process.poll() is None and not handles(process, signal.SIGTERM):
                    time.sleep(0.05)
                time.sleep(0.3)
                process.send_signal(signal.SIGTERM)
                process.communicate(timeout=60)
                if writer:
                    os.close(held)
                self.assertEqual(process.returncode, 143)
                self.assert_nothing_left()

    def test_an_output_file_may_be_a_pipe(self):
        (self.folder / "spec.txt").write_text(specification(20))
        os.mkfifo(self.folder / "pipe")
        with subprocess.Popen(["cat", "pipe"], cwd=self.folder, stdout=subprocess.PIPE, text=True) as reader:
            self.assertEqual(self.run_program("spec.txt", "Batch=Y", "Residualfile=pipe.txt")[0], 0)
            self.assertEqual(self.run_program("spec.txt", "Batch=Y", "Scorefile=", "Residualfile=./pipe")[0], 0)
            self.assertEqual(reader.stdout.read(), (self.folder / "pipe.txt").read_text())

    def test_stop_signals_end_a_run_whose_report_nobody_reads(self):
        (self.folder / "spec.txt").write_text(specification(3000))
        os.mkfifo(self.folder / "pipe")
        process = self.start("spec.txt", "pipe", "Batch=Y")
        while process.poll() is None and not handles(process, signal.SIGTERM):
            time.sleep(0.05)
        time.sleep(0.3)
        process.send_signal(signal.SIGTERM)
        process.communicate(timeout=60)
        self.assertEqual(process.returncode, 143)
        # Somebody opens the pipe, and does not empty it.
        held = os.open(self.folder / "pipe", os.O_RDWR)
        process = self.start("spec.txt", "pipe", "Batch=Y")
        await_full(held)
        process.send_signal(signal.SIGTERM)
        process.communicate(timeout=60)
        os.close(held)
        self.assertEqual(process.returncode, 143)
        self.assert_nothing_left()

    def test_finish_signal_ends_the_iterations_and_the_report_is_written(self):
        process = self.start_long_run()
        process.send_signal(signal.SIGUSR1)
        output, _ = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 0)
        self.assertIn("Output to long.out.txt", output)
        self.assertIn("Table 7.2.3", (self.folder / "long.out.txt").read_text())
        self.assert_nothing_left()

    def start_bias_pairs(self, **options):
        """Two million pairs of bias terms, which do not fit into one part of their sort."""
        terms = specification(450, "Tables=00000001000001", "Arrange=N").replace("Models=?,?", "Models=?B,?B")
        (self.folder / "pairs.txt").write_text(terms)
        return self.start("pairs.txt", "Batch=Y", **options)

    def test_finish_signal_ends_pairs_of_bias_terms(self):
        report_file = self.folder / "pairs.out.txt"
        for moment in ("Press Ctrl+F", "Table 14.1.1.1", "rows"):
            process = self.start_bias_pairs()
            while ("Table 14.1.1.1" if moment == "rows" else moment) not in process.stdout.readline():
                pass
            while moment == "rows" and process.poll() is None and report_file.stat().st_size < 1 << 20:
                time.sleep(0.01)
            process.send_signal(signal.SIGUSR1)
            _, errors = process.communicate(timeout=60)
            self.assertEqual(process.returncode, 0)
            self.assertEqual(errors.split("\n")[0], "< Cancelled")
            report = report_file.read_text().split("\n")
            self.assertEqual(report[-3:], ["< Cancelled", VERDICT, ""])
            self.assertEqual(sum(line.startswith("+--") for line in report) % 2, 0, "a box is open")
            self.assert_nothing_left()

    def test_full_disk_under_pairs_of_bias_terms(self):
        limit = 4 << 20
        process = self.start_bias_pairs(preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
        _, errors = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 1)
        self.assertIn("Error F50", errors)
        report = (self.folder / "pairs.out.txt").read_text()
        self.assertIn("Table 8.1", report)
        self.assertIn("Error F50", report)
        self.assert_nothing_left()

    def test_unusable_temporary_folder(self):
        (self.folder / "spec.txt").write_text(specification(20))
        self.environment["TMPDIR"] = str(self.folder / "nowhere")
        status, _, errors = self.run_program("spec.txt", "Batch=Y")
        self.assertEqual(status, 1)
        self.assertIn("nowhere", errors)
        self.assertTrue(errors.endswith("Error F50: Work file problem\n"), errors)
        self.assertFalse((self.folder / "spec.out.txt").exists())

    def test_full_temporary_folder(self):
        (self.folder / "big.txt").write_text(specification(10000))
        limit = 1 << 20
        status, _, errors = self.run_program(
            "big.txt", "Batch=Y", preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
        self.assertEqual(status, 1)
        self.assertIn("File too large", errors)
        self.assertIn("Work file problem", errors)
        self.assert_nothing_left()

    def test_absurd_lines_are_told_briefly(self):
        head = "Facets=2\nModels=?,?,D\nLabels=\n1,P\n1\n*\n2,I\n1\n*\nData=\n"
        for line, message in (("1," * 40000, "Error F67 in line 11: More than 32,000 fields in the data record\n"),
                              ("1" * 50_000_000, "Error F27 in line 11: Data record does not contain 2 facet references "
                                                 "+ data. Please start comments with ;\n"),
                              ("1" * 70_000_000, "Error F44 in line 10: Invalid file format: not in DOS-Text (ASCII) "
                                                 "format.\n")):
            (self.folder / "absurd.txt").write_text(head + line)
            status, _, errors = self.run_program("absurd.txt", "Batch=Y")
            self.assertEqual(status, 1)
            self.assertTrue(errors.endswith(message), errors[-300:])
            self.assertLess(len(errors), 2000)

    def test_report_on_a_full_disk(self):
        (self.folder / "spec.txt").write_text(specification(20))
        status, _, errors = self.run_program("spec.txt", "/dev/full", "Batch=Y")
        self.assertEqual(status, 1)
        self.assertIn("Failure writing output file: /dev/full", errors)
        self.assertIn("No space left on device", errors)

    def test_standard_output_that_takes_nothing(self):
        (self.folder / "spec.txt").write_text(specification(20))
        self.assertEqual(self.run_program("spec.txt", "Batch=Y")[0], 0)
        whole = (self.folder / "spec.out.txt").read_bytes()
        for output, status in (("/dev/full", 1), (None, 0)):
            command = [PROGRAM, "spec.txt", "Batch=Y", "--request", "table5"]
            with open(output or os.devnull, "w") as stream:
                done = subprocess.run(command, cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL,
                                      stdout=stream, stderr=subprocess.PIPE, text=True, check=False,
                                      preexec_fn=None if output else lambda: os.close(1))
            self.assertEqual(done.returncode, status, done.stderr)
            told = "Standard output could not be written: No space left on device" in done.stderr
            self.assertEqual(told, status == 1)
            self.assertEqual((self.folder / "spec.out.txt").read_bytes(), whole, "status lines in the report?")
        with open("/dev/full", "w") as stream:
            done = subprocess.run([PROGRAM, "--help"], stdout=stream, stderr=subprocess.PIPE, check=False)
        self.assertEqual(done.returncode, 1)

    def test_a_pipe_that_nobody_empties_does_not_keep_the_run(self):
        (self.folder / "spec.txt").write_text(specification(3000))
        process = self.start("spec.txt", "Batch=Y", "--request", "table7")
        await_full(process.stdout)
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(timeout=30), 143)
        process.communicate()

    def test_lines_of_the_report_end_in_cr_lf(self):
        (self.folder / "spec.txt").write_text(specification(20))
        self.assertEqual(self.run_program("spec.txt", "Batch=Y")[0], 0)
        report = (self.folder / "spec.out.txt").read_bytes()
        self.assertGreater(report.count(b"\n"), 100)
        self.assertEqual(report.count(b"\n"), report.count(b"\r\n"))

    def test_started_from_anywhere(self):
        sub = self.folder / "study"
        sub.mkdir()
        (sub / "data.csv").write_text("1,1,1\n1,2,0\n2,1,0\n2,2,1\n")
        (sub / "labels.txt").write_text("Labels=\n1,P\n1-2\n*\n2,I\n1-2\n*\n")
        (sub / "spec.txt").write_text("Facets=2\n%.\\labels.txt\nData=data.csv\n")
        status, output, errors = self.run_program("study/spec.txt", "here.txt", "Batch=Y")
        self.assertEqual((status, errors), (0, VERDICT + "\n"))
        self.assertIn("Valid responses used for estimation = 4", output)

    def test_terminal_shows_colour_and_progress_and_is_asked(self):
        (self.folder / "spec.txt").write_text(specification(20))
        terminal = Terminal(self, "*")
        terminal.answer("What is the specification file name?", "spec.txt\n")
        terminal.answer("Extra specifications", "Title = Asked Iterations= 3\n")
        terminal.answer("What is the Report Output file name?", "asked.txt\n")
        terminal.answer("tessaly> ", "quit\n")
        self.assertEqual(terminal.status(), 0, terminal.shown)
        self.assertIn("\x1b[1;31m" + VERDICT + "\x1b[0m", terminal.shown)
        self.assertIn(">", terminal.shown)
        self.assertIn("Title = Asked", (self.folder / "asked.txt").read_text())
        terminal = Terminal(self, "spec.txt", "Batch=Y")
        self.assertEqual(terminal.status(), 0, terminal.shown)
        self.assertNotIn("?", terminal.shown.split("Table 1.")[0])

    def test_query_keys_show_the_next_match_and_end_the_display(self):
        (self.folder / "spec.txt").write_text(specification(20))
        terminal = Terminal(self, "spec.txt", "out.txt", "Query=Y")
        terminal.answer("Press F4", "\x1bOS")
        terminal.answer("Press F4", "\x1b[15~")
        terminal.answer("tessaly> ", "quit\n")
        self.assertEqual(terminal.status(), 0, terminal.shown)
        self.assertEqual(terminal.shown.count("Press F4"), 2)

    def test_prompt_edits_completes_remembers_and_is_interrupted(self):
        (self.folder / "spec.txt").write_text(specification(20))
        (self.folder / "config").mkdir()
        self.environment |= {"XDG_CONFIG_HOME": str(self.folder / "config"), "TERM": "xterm"}
        terminal = Terminal(self, "spec.txt", "out.txt", "Iterations=3")
        # A verb and a choice completed, a letter taken back.
        terminal.answer("tessaly> ", "table7x\x7f fac\t2 ord\tmea\t dir\tdes\t file=seve\x7f\x7f\x7f\x7ft7.txt\n")
        terminal.answer("Table 7 (2mN) = t7.txt", "")
        terminal.answer("tessaly> ", "tab\x03")
        terminal.answer("tessaly> ", "show files\n")
        terminal.answer("Table 7 (2mN) = t7.txt", "")
        terminal.answer("tessaly> ", "nonsense\n")
        terminal.answer("is no request", "\x04")
        self.assertEqual(terminal.status(), 1, terminal.shown)
        self.assertIn("Table 7.2.1", (self.folder / "t7.txt").read_text())
        terminal = Terminal(self, "spec.txt", "out.txt", "Iterations=3")
        terminal.answer("tessaly> ", "\x1b[A\x1b[A\n")
        terminal.answer("Analysis = spec.txt", "")
        terminal.answer("tessaly> ", "\x04")
        self.assertEqual(terminal.status(), 0, terminal.shown)

    def test_requests_come_from_words_files_and_pipes(self):
        (self.folder / "spec.txt").write_text(specification(20))
        (self.folder / "wanted.txt").write_text("; tables\n\ntable5 file=t5.txt\nshow nothing\n")
        status, output, errors = self.run_program("spec.txt", "--request", "table8 file=t8.txt", "Batch=Y",
                                                  "--requests=wanted.txt")
        self.assertEqual(status, 1)
        self.assertIn("Please write \"show settings\"", errors)
        self.assertTrue((self.folder / "t5.txt").exists() and (self.folder / "t8.txt").exists())
        command = [PROGRAM, "spec.txt", "out.txt", "Iterations=3"]
        piped = subprocess.run(command, cwd=self.folder, env=self.environment, text=True, capture_output=True,
                               input="\ufefftable5\r\nquit\r\nshow files\r\n", timeout=60, check=False)
        self.assertEqual(piped.returncode, 0, piped.stderr)
        self.assertIn("Data log-likelihood chi-square", piped.stdout.split("Output to out.txt")[1])
        self.assertNotIn("tessaly>", piped.stdout)
        self.assertNotIn("Analysis = ", piped.stdout)
        with open("/dev/zero", "rb") as zeros:
            endless = subprocess.run(command, cwd=self.folder, env=self.environment, stdin=zeros, capture_output=True,
                                     timeout=60, check=False)
        self.assertEqual(endless.returncode, 1)
        self.assertIn(b"which cannot be a request", endless.stderr)
        # Nobody writes into this pipe, and nobody closes it.
        idle, kept = os.pipe()
        started = time.monotonic()
        status = subprocess.run(command, cwd=self.folder, env=self.environment, stdin=idle, capture_output=True,
                                timeout=60, check=False).returncode
        os.close(idle)
        os.close(kept)
        self.assertEqual(status, 0)
        self.assertLess(time.monotonic() - started, 30)
        status, output, _ = self.run_program("--request", "table7 help")
        self.assertEqual(status, 0)
        self.assertIn("direction=", output)
        status, _, errors = self.run_program("none.txt", "Batch=Y", "--request", "tabel7")
        self.assertEqual(status, 1)
        self.assertIn("Did you mean table7?", errors)
        self.assertIn("the requests were not carried out", errors)
        self.assertEqual(self.run_program("spec.txt", "--request")[0], 1)
        self.assertEqual(self.run_program("spec.txt", "--requests", "none.txt")[0], 1)

    def test_a_pipe_gets_neither_colour_nor_progress(self):
        (self.folder / "spec.txt").write_text(specification(20))
        _, output, errors = self.run_program("spec.txt", "Batch=Y")
        self.assertEqual(errors, VERDICT + "\n")
        self.assertNotIn("\x1b", output + errors)
        self.assertNotIn(">.", output)


if __name__ == "__main__":
    unittest.main()
