#!/usr/bin/env python3
"""uci-movetime.py [CORVANE] [SEARCHES]: the time from "go movetime N" to "bestmove" for N of 10, 100 and 1000 ms,
median and maximum over SEARCHES searches (50), for both engines of corvane -strictuci and, beside them, for
stockfish. The searches rotate over the middlegame positions of middlegames.txt, in a folder without a book."""
import os
import select
import statistics
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
CORVANE = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.path.join(HERE, "../build/release/corvane"))
SEARCHES = int(sys.argv[2]) if len(sys.argv) > 2 else 50
PROGRAMS = {"Vesko": [CORVANE, "-strictuci"], "Corvane": [CORVANE, "-strictuci", "-engine=corvane"],
            "stockfish": ["/usr/games/stockfish"]}


class Engine:
    """A UCI engine read with blocking waits, so that a line is seen the moment it comes."""

    def __init__(self, argv, folder):
        self.process = subprocess.Popen(argv, stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0, cwd=folder)
        self.pending = b""

    def send(self, line):
        self.process.stdin.write((line + "\n").encode())

    def wait_for(self, prefix):
        while True:
            while b"\n" in self.pending:
                line, self.pending = self.pending.split(b"\n", 1)
                if line.startswith(prefix.encode()):
                    return
            select.select([self.process.stdout], [], [])
            chunk = os.read(self.process.stdout.fileno(), 65536)
            if not chunk:
                raise SystemExit("the engine ended")
            self.pending += chunk


def main():
    with open(os.path.join(HERE, "middlegames.txt")) as f:
        fens = [line.strip() for line in f if line.strip()]
    print("load average before: %.2f %.2f %.2f" % os.getloadavg())
    print("%-10s %6s %10s %10s" % ("engine", "N ms", "median ms", "max ms"))
    with tempfile.TemporaryDirectory() as folder:
        for name, argv in PROGRAMS.items():
            engine = Engine(argv, folder)
            engine.send("uci")
            engine.wait_for("uciok")
            for movetime in (10, 100, 1000):
                took = []
                for i in range(SEARCHES):
                    engine.send("position fen " + fens[i % len(fens)])
                    engine.send("isready")
                    engine.wait_for("readyok")
                    started = time.monotonic()
                    engine.send("go movetime %d" % movetime)
                    engine.wait_for("bestmove")
                    took.append((time.monotonic() - started) * 1000)
                print("%-10s %6d %10.1f %10.1f" % (name, movetime, statistics.median(took), max(took)), flush=True)
            engine.send("quit")
            engine.process.wait()
    print("load average after: %.2f %.2f %.2f" % os.getloadavg())


if __name__ == "__main__":
    main()
