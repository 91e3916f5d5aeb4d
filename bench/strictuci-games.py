#!/usr/bin/env python3
"""strictuci-games.py [CORVANE] [GAMES] [BASE_MS] [INCREMENT_MS]: timed games of corvane -strictuci against
stockfish at skill level 0, 20 at 5 s + 0.1 s by default. The games take turns over four ways of playing (Vesko
and Corvane, each over UCI and through polyglot over XBoard) and over the colours. Reports the results, illegal
moves and losses on time, and how far each move overran the allowance that corvane announced for it."""
import os
import statistics
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "../tests/e2e"))
if len(sys.argv) < 2:
    sys.argv.append(os.path.join(HERE, "../build/release/corvane"))

from clock_games import PolyglotPlayer, UciPlayer, play, stockfish  # noqa: E402
from corvane_driver import BINARY, Referee  # noqa: E402

GAMES = int(sys.argv[2]) if len(sys.argv) > 2 else 20
BASE_MS = int(sys.argv[3]) if len(sys.argv) > 3 else 5000
INCREMENT_MS = int(sys.argv[4]) if len(sys.argv) > 4 else 100
MAX_PLIES = 400  # a game this long is cut, and counted as unfinished
WAYS = [("Vesko/UCI", ["-strictuci"]), ("Corvane/UCI", ["-strictuci", "-engine=corvane"]),
        ("Vesko/polyglot", ["-strictuci"]), ("Corvane/polyglot", ["-strictuci", "-engine=corvane"])]


def main():
    print("load average before: %.2f %.2f %.2f" % os.getloadavg())
    referee, opponent = Referee(), stockfish()
    folder = tempfile.TemporaryDirectory()
    players = {name: PolyglotPlayer(folder.name, args) if "polyglot" in name else UciPlayer([BINARY, *args])
               for name, args in WAYS}
    score = {"win": 0, "draw": 0, "loss": 0, "unfinished": 0}
    overruns, faults = [], []
    for game in range(GAMES):
        name = WAYS[game % len(WAYS)][0]
        side = (game // len(WAYS)) % 2
        result = play(players[name], side, BASE_MS, INCREMENT_MS, MAX_PLIES, referee, opponent)
        outcome = {"1-0": ("win", "loss"), "0-1": ("loss", "win")}.get(result["result"])
        word = outcome[side] if outcome else "draw" if result["result"] == "1/2-1/2" else "unfinished"
        score[word] += 1
        overruns += result["overruns"]
        faults += result["faults"]
        print("game %2d %-17s as %s: %-7s %3d plies, %s" % (game + 1, name, "white" if side == 0 else "black",
              result["result"], len(result["moves"]), "; ".join(result["faults"]) or "no fault"), flush=True)
    for player in players.values():
        player.close()
    opponent.close()
    referee.close()
    folder.cleanup()
    print("corvane: %(win)d won, %(draw)d drawn, %(loss)d lost, %(unfinished)d unfinished" % score)
    print("illegal moves and time losses: %d" % len(faults))
    if overruns:
        print("moves: %d; time beyond the allowance: median %.0f ms, max %d ms; beyond it by more than 50 ms: %d"
              % (len(overruns), statistics.median(overruns), max(overruns), sum(o > 50 for o in overruns)))
    print("load average after: %.2f %.2f %.2f" % os.getloadavg())


if __name__ == "__main__":
    main()
