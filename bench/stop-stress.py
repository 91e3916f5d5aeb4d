#!/usr/bin/env python3
"""stop-stress.py [CORVANE] [CYCLES] [LOAD] [WAY]: sends a search's stop at every moment of it, CYCLES times (2000)
for each way of playing, and checks every answer. The ways: both engines over plain UCI (with XBoard's post, so
that the search shows its move once a second) and over -strictuci (a line per finished depth), each a go and a stop
at a random delay from a microsecond to 50 ms, the next position right behind the stop; and both engines over
XBoard, a new and at once a go, then the move asked for with ? at such a delay and a ping behind it. LOAD (2)
stockfish processes search meanwhile, so that the threads wait for a processor. WAY runs only the ways whose
names contain it.

An answer fails when it is not a legal move of the position while the position has one ("bestmove 0000", or no
"move" before the pong) or comes with a sanitizer's report; the report counts apart those that came after the
search had shown a move."""
import math
import os
import random
import select
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
CORVANE = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.path.join(HERE, "../build/release/corvane"))
CYCLES = int(sys.argv[2]) if len(sys.argv) > 2 else 2000
LOAD = int(sys.argv[3]) if len(sys.argv) > 3 else 2
ONLY = sys.argv[4] if len(sys.argv) > 4 else ""
STOCKFISH = "/usr/games/stockfish"
START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
SHORTEST_DELAY, LONGEST_DELAY = 1e-6, 0.05
ANSWER_TIMEOUT = 60
WAYS = [("Vesko/UCI", [], "uci"), ("Corvane/UCI", ["-engine=corvane"], "uci"),
        ("Vesko/strict", ["-strictuci"], "strict"), ("Corvane/strict", ["-strictuci", "-engine=corvane"], "strict"),
        ("Vesko/XBoard", [], "xboard"), ("Corvane/XBoard", ["-engine=corvane"], "xboard")]


class Program:
    """A UCI or XBoard program on pipes, read with blocking waits."""

    def __init__(self, argv, folder=None):
        self.process = subprocess.Popen(argv, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                        bufsize=0, cwd=folder)
        self.pending = b""

    def send(self, *lines):
        self.process.stdin.write("".join(line + "\n" for line in lines).encode())

    def lines_until(self, predicate):
        """Every line up to the first for which predicate holds, that one last."""
        lines, deadline = [], time.monotonic() + ANSWER_TIMEOUT
        while True:
            while b"\n" in self.pending:
                raw, self.pending = self.pending.split(b"\n", 1)
                lines.append(raw.decode(errors="replace").rstrip("\r"))
                if predicate(lines[-1]):
                    return lines
            left = deadline - time.monotonic()
            if left <= 0 or not select.select([self.process.stdout], [], [], left)[0]:
                raise SystemExit("no answer within %d s; last lines: %r" % (ANSWER_TIMEOUT, lines[-10:]))
            chunk = os.read(self.process.stdout.fileno(), 65536)
            if not chunk:
                raise SystemExit("the program ended; last lines: %r" % lines[-10:])
            self.pending += chunk

    def close(self):
        self.process.stdin.close()
        self.process.wait(timeout=ANSWER_TIMEOUT)


def legal_moves(fens):
    """The legal moves of each position, as stockfish's "go perft 1" lists them."""
    judge = Program([STOCKFISH])
    moves = {}
    for fen in fens:
        judge.send("position fen " + fen, "go perft 1")
        moves[fen] = {l.split(":")[0] for l in judge.lines_until(lambda l: l.startswith("Nodes searched"))
                      if l.endswith(": 1")}
    judge.close()
    return moves


def pause():
    """A delay spread evenly over the orders of magnitude from SHORTEST_DELAY to LONGEST_DELAY."""
    delay = math.exp(random.uniform(math.log(SHORTEST_DELAY), math.log(LONGEST_DELAY)))
    end = time.perf_counter() + delay
    if delay > 0.001:
        time.sleep(delay)
    while time.perf_counter() < end:
        pass


def shown_move(line):
    """The move that a progress line shows, or None: "currmove X" of plain UCI, a depth line's pv, XBoard's
    thinking line "depth score time nodes move"."""
    words = line.split()
    if line.startswith("currmove ") and len(words) == 2:
        return words[1]
    if line.startswith("info depth ") and "pv" in words[:-1]:
        return words[words.index("pv") + 1]
    if len(words) == 5 and all(w.lstrip("-").isdigit() for w in words[:4]):
        return words[4]
    return None


def uci_cycle(program, fen):
    program.send("position fen " + fen, "go")
    pause()
    # A GUI may send the next position right behind the stop, before the answer has come.
    program.send("stop", "position fen " + fen)
    return program.lines_until(lambda l: l.startswith("bestmove"))


def xboard_cycle(program, serial):
    program.send("new", "go")
    pause()
    program.send("?", "ping %d" % serial)
    return program.lines_until(lambda l: l == "pong %d" % serial)


def answer_of(lines, way):
    prefix = "move " if way == "xboard" else "bestmove "
    answers = [l.split()[1] for l in lines if l.startswith(prefix) and len(l.split()) > 1]
    return answers[0] if len(answers) == 1 else "none" if not answers else "several: " + " ".join(answers)


def run_way(name, args, way, fens, legal, folder):
    program = Program([CORVANE, *args], folder)
    program.send(*{"uci": ["xboard", "post", "uci"], "strict": ["uci"], "xboard": ["xboard", "protover 2", "post"]}[way])
    program.send("ping 0" if way == "xboard" else "isready")
    program.lines_until(lambda l: l in ("readyok", "pong 0"))
    failures, after_shown, shown_count, started = [], 0, 0, time.monotonic()
    for cycle in range(1, CYCLES + 1):
        fen = START_FEN if way == "xboard" else fens[cycle % len(fens)]
        lines = xboard_cycle(program, cycle) if way == "xboard" else uci_cycle(program, fen)
        shown = any(shown_move(l) for l in lines)
        shown_count += shown
        answer = answer_of(lines, way)
        if answer not in legal[fen] or any("Sanitizer" in l for l in lines):
            failures.append((cycle, answer, shown, lines))
            after_shown += shown
    program.send("quit")
    program.close()
    took = time.monotonic() - started
    print("%-15s %6d cycles in %5.1f s, %5d showed a move first; %4d answers not a legal move, %4d of them after a "
          "shown move" % (name, CYCLES, took, shown_count, len(failures), after_shown), flush=True)
    # Those after a shown move first: they are the ones a GUI would least forgive.
    for cycle, answer, shown, lines in sorted(failures, key=lambda f: not f[2])[:3]:
        print("    cycle %d answered %r%s: %r" % (cycle, answer, " after a shown move" if shown else "", lines[-8:]))
    return len(failures)


def main():
    with open(os.path.join(HERE, "middlegames.txt")) as f:
        fens = [line.strip() for line in f if line.strip()] + [START_FEN]
    legal = legal_moves(fens)
    load = [Program([STOCKFISH]) for _ in range(LOAD)]
    for searcher in load:
        searcher.send("go infinite")
    print("load average before: %.2f %.2f %.2f" % os.getloadavg(), flush=True)
    failed = 0
    try:
        with tempfile.TemporaryDirectory() as folder:  # no book: every move comes from a search
            for name, args, way in (w for w in WAYS if ONLY in w[0]):
                failed += run_way(name, args, way, fens, legal, folder)
    finally:
        for searcher in load:
            searcher.send("quit")
            searcher.close()
    print("load average after: %.2f %.2f %.2f" % os.getloadavg())
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
