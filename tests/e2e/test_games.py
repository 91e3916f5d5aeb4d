"""Whole games as a GUI plays them: corvane over pipes against Debian's stockfish, every move it sends judged."""
import time

from corvane_driver import ENGINES, Referee, answered_move, check, progress_session, sync

FULL_MOVES = 30
THINK_SECONDS = 0.05
STOCKFISH_MS = 10


def play(name, args, corvane_white, referee):
    session = progress_session(args)
    session.send("ucinewgame")
    sync(session)
    moves = []
    for ply in range(2 * FULL_MOVES):
        legal = referee.legal_moves(moves)
        if not legal:
            break  # mate or stalemate
        if (ply % 2 == 0) == corvane_white:
            # What a GUI sends for one move: the game so far, go, and stop after a short think.
            session.send("position startpos moves " + " ".join(moves))
            move = answered_move(session, THINK_SECONDS)
            if move == "0000":
                # A stop that comes before the first iteration has ended leaves the engine without a move: on a busy
                # machine the search may not have run at all. A search that has shown a move must deliver one.
                print("no move after %d ms at ply %d; searching until a move is shown" % (THINK_SECONDS * 1000, ply))
                move = answered_move(session, until_found=True, timeout=120)
            check(move in legal, "%s played %r after %s; legal: %s" % (name, move, " ".join(moves), sorted(legal)))
        else:
            move = referee.best_move(moves, STOCKFISH_MS)
        moves.append(move)
    session.quit()
    return len(moves)


if __name__ == "__main__":
    referee = Referee()
    started = time.monotonic()
    for name, args in ENGINES.items():
        for corvane_white in (True, False):
            plies = play(name, args, corvane_white, referee)
            print("%s as %s: %d plies" % (name, "white" if corvane_white else "black", plies))
    referee.close()
    print("games: all checks passed in %.1f s" % (time.monotonic() - started))
