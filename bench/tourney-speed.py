#!/usr/bin/env python3
"""tourney-speed.py [CORVANE] [ROUNDS]: a tournament of stockfish against itself at 2 s + 0.02 s, two games a
round (10 rounds, 20 games, by default), two at a time, with no pause behind the lines sent. Reports the wall
time of the whole run, the games lost on time with the engine's own account of the lost turn, and the overhead
per move: the wall time of a turn as the game measured it, minus the search time the engine reported last in
that turn, median and 99th percentile."""
import os
import re
import statistics
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
CORVANE = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.path.join(HERE, "../build/release/corvane"))
ROUNDS = int(sys.argv[2]) if len(sys.argv) > 2 else 10
STOCKFISH = "/usr/games/stockfish"
GAME_MS, INCREMENT_MS = 2000, 20
SLOTS = 2

# A turn of a game log: side, the reply or the forfeit, its wall time, and what the engine reported.
TURN = re.compile(r"^[WB]\t(.*)\t(\d+) us(?:\tengine (\d+) ms)?$")


def tourney_xml(folder):
    engines = "".join('<engine name="%s" protocol="uci" active="true"><filename>%s</filename></engine>'
                      % (name, STOCKFISH) for name in ("a", "b"))
    return ('<tourney name="speed"><options><rounds>%d</rounds><logfolder>%s</logfolder><threads>%d</threads>'
            '<pace_ms>0</pace_ms><clock game_ms="%d" increment_ms="%d"/></options><engines>%s</engines></tourney>'
            % (ROUNDS, folder, SLOTS, GAME_MS, INCREMENT_MS, engines))


def percentile(values, fraction):
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(fraction * len(ordered)))]


def main():
    if not os.access(STOCKFISH, os.X_OK):
        sys.exit("tourney-speed needs %s: install the Debian package stockfish" % STOCKFISH)
    print("load average before: %.2f %.2f %.2f" % os.getloadavg())
    with tempfile.TemporaryDirectory(prefix="corvane_speed_") as folder:
        ini = os.path.join(folder, "speed.xml")
        with open(ini, "w") as out:
            out.write(tourney_xml(folder))
        start = time.monotonic()
        run = subprocess.run([CORVANE, "-use=tourney", "-ini=" + ini], stdin=subprocess.DEVNULL,
                             capture_output=True, text=True, cwd=folder, timeout=1800)
        wall = time.monotonic() - start
        results = [line.split("\t") for line in run.stdout.splitlines() if "\tresult\t" in line]
        overheads, forfeits, turns_us = [], [], 0
        for name in sorted(os.listdir(folder)):
            if not name.endswith(".log") or ".R" not in name:
                continue
            with open(os.path.join(folder, name)) as log:
                for line in log.read().splitlines():
                    turn = TURN.match(line)
                    if not turn:
                        continue
                    text, wall_us, reported = turn.group(1), int(turn.group(2)), turn.group(3)
                    turns_us += wall_us
                    if "forfeits on time" in text:
                        forfeits.append("%s: %s, engine reported %s ms" % (name, text, reported))
                    elif text.startswith("move ") and reported is not None:
                        overheads.append(wall_us / 1000.0 - int(reported))
    print("load average after: %.2f %.2f %.2f" % os.getloadavg())
    print("games: %d in %.1f s wall time" % (len(results), wall))
    # The slots' time outside any turn: engines starting, handshakes, ends of games, slots standing empty.
    print("slot time outside the turns: %.1f s of %.1f s" % (SLOTS * wall - turns_us / 1e6, SLOTS * wall))
    print("lost on time: %d" % len(forfeits))
    for forfeit in forfeits:
        print("  " + forfeit)
    if overheads:
        print("overhead per move over %d moves: median %.3f ms, 99th percentile %.3f ms"
              % (len(overheads), statistics.median(overheads), percentile(overheads, 0.99)))
    return 0 if len(results) == 2 * ROUNDS else 1


if __name__ == "__main__":
    sys.exit(main())
