"""-strictuci: the program as a UCI engine for GUIs with clocks, for both of its engines, with stockfish judging
the moves; timed games against stockfish over UCI and, through polyglot, over XBoard."""
import os
import re
import tempfile

from clock_games import PolyglotPlayer, UciPlayer, play, stockfish
from corvane_driver import BINARY, NO_MOVES, Referee, Session, bestmove_of, check, run_ok, search, sync, write
from test_book import book_bytes, listing

ENGINES = {"Vesko": ["-strictuci"], "Corvane": ["-StrictUCI=yes", "-engine=corvane"]}
PROMOTION = "8/4P3/8/8/8/8/k7/7K w - - 0 1"  # e7e8q wins at once
MATE_IN_TWO = "r5k1/5ppp/8/8/8/8/3R1PPP/3R2K1 w - - 0 1"  # d2d8, then d1d8 mate
INFO = re.compile(r"info depth (\d+) score (cp|mate) (-?\d+) nodes (\d+) nps (\d+) time (\d+) pv ([a-h][1-8]){2}[qrbn]?$")
START = "position startpos"
SOULS = ["Simple5", "GEN_26_12_1", "GEN_26_12_2", "GEN_26_12_3", "GEN_28_18_1"]


def depth_lines(lines):
    """The finished depths shown: each an INFO match, in order."""
    shown = [INFO.match(l) for l in lines if l.startswith("info depth")]
    check(all(shown), "not in UCI's form: %r" % [l for l in lines if l.startswith("info depth")])
    depths = [int(m.group(1)) for m in shown]
    # Every finished depth once: 2, 4, 6, ... without a gap.
    check(depths == list(range(2, 2 * len(depths) + 1, 2)), depths)
    return shown


def identity():
    for name, args in ENGINES.items():
        lines = run_ok(["uci", "setoption name Hash value 3", "setoption name Soul value GEN_26_12_2", "uci", "quit"],
                       args)
        check(lines[:2] == ["id name " + name, "id author the Corvane developers"], lines)
        first = lines[:lines.index("uciok") + 1]
        again = lines[len(first):len(first) * 2]
        check(first[2] == "option name Hash type spin default 64 min 0 max 65536", first)
        # setoption takes effect: the defaults shown are the values now in use.
        check(again[2] == "option name Hash type spin default 3 min 0 max 65536", again)
        if name == "Corvane":
            check(first[3] == "option name Soul type combo default Simple5 " + " ".join("var " + s for s in SOULS), first)
            check(again[3].startswith("option name Soul type combo default GEN_26_12_2 var"), again)
            check(first[4] == "option name Book type string default corvane.cbk" and len(first) == 6, first)
        else:
            check(len(first) == 4, first)


def limits(name, session, referee):
    white_clock = search(session, "go wtime 10050 btime 1 winc 100 binc 100 movestogo 8", START)
    black_clock = search(session, "go wtime 1 btime 4050 winc 0 binc 0", "position startpos moves e2e4")
    # The mover's clock over the moves to go, plus two, or over 40; 50 ms kept for the reply.
    check("info string time 1000 ms" in white_clock and "info string time 100 ms" in black_clock,
          (white_clock, black_clock))
    check("info string time 250 ms" in search(session, "go movetime 250", START), "movetime")
    # A depth or a node count bounds this search alone; a go with no limit runs until stop.
    shallow = depth_lines(search(session, "go depth 4", START))
    check(int(shallow[-1].group(1)) == 4, "%s: depth 4 ended at %s" % (name, shallow[-1].group(0)))
    counted = depth_lines(search(session, "go nodes 3000", START))
    check(all(int(m.group(4)) <= 3000 for m in counted), "%s: beyond the nodes asked" % name)
    for go in ("go infinite", "go", "go ponder wtime 9000 btime 9000"):
        session.send("position startpos moves e2e4 e7e5")
        start = len(session.seen)
        session.send(go)
        # Deeper than the depth limit before, and no answer until stop.
        session.until("info depth 6 ", timeout=60)
        check(not any(l.startswith("bestmove") for l in sync(session)), "%s: %r ended by itself" % (name, go))
        session.send("stop")
        move = bestmove_of(session.until("bestmove"))
        check(move in referee.legal_moves(["e2e4", "e7e5"]), "%s: %r" % (name, move))
        depth_lines(session.seen[start:])
    # A ponder search answers after ponderhit, by its own clock: (2050 - 50) / 40 = 50 ms.
    session.send("position startpos")
    session.send("go ponder wtime 2050 btime 2050")
    session.until("info depth 2 ")
    check(not any(l.startswith("bestmove") for l in sync(session)), "ponder ended by itself")
    session.send("ponderhit")
    check(bestmove_of(session.until("bestmove")) in referee.legal_moves([]), "ponderhit")


def answers(name, session, referee):
    # A stop right behind the go still gets one legal move, in UCI's form; so does a search that finds one at once.
    cases = [("go infinite\nstop", "position startpos moves e2e4", ["e2e4"]),
             ("go infinite\nstop", "position fen " + PROMOTION, None),
             ("go movetime 0", "position startpos moves g1f3 d7d5", ["g1f3", "d7d5"]),
             ("go depth 1", "position fen " + PROMOTION, None),
             ("go nodes 1", "position fen " + MATE_IN_TWO, None)]
    for go, position, moves in cases:
        lines = search(session, go, position)
        move = bestmove_of(lines[-1])
        fen = position.split("fen ", 1)[1] if moves is None else None
        check(move in referee.legal_moves(moves or [], fen), "%s: %r after %r: %r" % (name, move, position, lines))
    check(bestmove_of(search(session, "go depth 2", "position fen " + PROMOTION)[-1]) == "e7e8q", "promotion")
    # A forced result shows as a mate, and an infinite search that found it still waits for stop.
    session.send("position fen " + MATE_IN_TWO)
    session.send("go infinite")
    mate = INFO.match(session.read_until(lambda l: l.startswith("info depth") and " mate " in l, timeout=60))
    check(mate and mate.group(3) == "2", "%s: %r" % (name, mate and mate.group(0)))
    check(not any(l.startswith("bestmove") for l in sync(session)), "infinite ended by itself")
    session.send("stop")
    check(session.until("bestmove") == "bestmove d2d8", "mate in two")
    # Mated or stalemated: "0000", once, for every kind of go.
    for fen in NO_MOVES:
        for go in ("go movetime 100", "go infinite\nstop", "go depth 3"):
            check(search(session, go, "position fen " + fen)[-1] == "bestmove 0000", (name, fen, go))


def new_game_clears_table():
    # The same search three times: the second finds the first one's work in the table, the third, after
    # ucinewgame, finds what the first found.
    session = Session(ENGINES["Corvane"])
    hits = []
    for line in ("", "", "ucinewgame"):
        if line:
            session.send(line)
        statistics = search(session, "go depth 6", "position startpos moves d2d4 d7d5")[-2]
        hits.append(re.search(r"TT hits: (\d+)", statistics).group(1))
    check(hits[0] == hits[2] != hits[1], hits)
    session.quit()


def book_option():
    # A book that knows only d2d4 answers without a search; a file that is no book leaves the engine without one.
    keys, _ = listing(())
    with tempfile.TemporaryDirectory() as folder:
        path = write(os.path.join(folder, "d4.cbk"), book_bytes({keys["Pd2-d4"]: (5, 0, 0)}))
        session = Session(ENGINES["Corvane"], cwd=folder)
        for book, from_book in ((path, True), ("none.cbk", False), (path, True)):
            session.send("setoption name Book value " + book)
            lines = search(session, "go depth 2", START)
            searched = any(l.startswith("info depth") for l in lines)
            check(searched != from_book and (lines[-1] == "bestmove d2d4" or not from_book), (book, lines))
        session.quit()


def games(referee):
    """Short timed games against stockfish at its lowest skill: no illegal move, no loss on time."""
    opponent = stockfish()
    players = [(name, UciPlayer([BINARY, *args])) for name, args in ENGINES.items()]
    folder = tempfile.TemporaryDirectory()
    players.append(("polyglot", PolyglotPlayer(folder.name, ENGINES["Corvane"])))
    for side, (name, player) in enumerate(players):
        game = play(player, side % 2, 10000, 100, 60, referee, opponent)
        check(not game["faults"], "%s: %r" % (name, game["faults"]))
        # Every move was the engine's own, none put in its place for want of a legal one.
        check(not any("no legal move from the engine" in l for l in player.session.seen), name)
        check(game["result"] != "*" or len(game["moves"]) == 60, "%s: %r" % (name, game))
        check(player.close() == 0, "%s: exit code" % name)
    opponent.close()
    folder.cleanup()


if __name__ == "__main__":
    referee = Referee()
    identity()
    for name, args in ENGINES.items():
        session = Session(args)
        limits(name, session, referee)
        answers(name, session, referee)
        session.quit()
    new_game_clears_table()
    book_option()
    games(referee)
    referee.close()
    print("strictuci: all checks passed")
