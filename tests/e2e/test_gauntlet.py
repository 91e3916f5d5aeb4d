"""The embedded Corvane against real chess programs, with white and black: stockfish over UCI, phalanx and the
corvane program itself over XBoard. Every game ends on the board or by a fault of the other program, never
by a forfeit or an illegal move of the embedded player; pgn-extract reads every game file and confirms every mate."""
import os
import sys
import tempfile

from corvane_driver import BINARY, check, debian_program
from tourney_files import engine, extracted_plies, play, read_game, results, tourney_xml, write

OPPONENTS = [("Stockfish", "uci", debian_program("stockfish"), ""),
             ("Phalanx", "xboard", debian_program("phalanx"), "-l- -b-"),
             ("CorvaneX", "xboard", BINARY, "")]
OURS = ("Corvane",)
FAULTS_OF_A_SIDE = ("forfeit", "illegal move", "engine crashed")


def main():
    debian_program("pgn-extract")  # reads the games at the end: its absence fails before they are played
    with tempfile.TemporaryDirectory(prefix="corvane_gauntlet_", ignore_cleanup_errors=True) as folder:
        engines = [engine("Corvane", "embedded")] + [engine(*opponent) for opponent in OPPONENTS]
        ini = write(os.path.join(folder, "gauntlet.xml"),
                    tourney_xml("gauntlet", "gauntlet", folder, engines, 6000, increment_ms=200))
        lines = play(ini, timeout=580)
        found = results(lines)
        check(sorted(found) == list(range(1, 7)), "six games: %r" % found)
        for game_id, (result, reason, white, black, pgn) in sorted(found.items()):
            print(game_id, white, black, result, reason)
            check(result in ("1-0", "0-1", "1/2-1/2"), "game %d has a result" % game_id)
            loser = {"1-0": black, "0-1": white}.get(result)
            check(not (loser in OURS and reason in FAULTS_OF_A_SIDE),
                  "game %d lost by our fault: %s %r" % (game_id, reason, [l for l in lines if "forfeits" in l]))
            _, plies, _ = read_game(pgn)
            check(extracted_plies(pgn) == len(plies), "pgn-extract reads all %d plies of game %d" % (len(plies), game_id))
            if reason == "mate":
                check(extracted_plies(pgn, "-M") == len(plies), "pgn-extract finds the mate of game %d" % game_id)


if __name__ == "__main__":
    sys.exit(main())
