"""UCI transcripts against the real program, for both of its engines, whole games against Debian's stockfish as a
GUI plays them, with stockfish judging the moves, and hostile lines (very long, binary, a FEN of garbage, ten
thousand moves), after which the program answers on."""
import os
import random
import re
import time

from corvane_driver import (ENGINES, NO_MOVES, Referee, Session, answered_move, bestmove_of, check, progress_session,
                            run_ok, search, searched_move, shows_a_move, sync)

START_LINE = {"Vesko": "info string moves 0/0 - time 7498/300000 ms",
              # Corvane takes the move number from the FEN.
              "Corvane": "info string moves 1/0 - time 7498/300000 ms"}
MATE_IN_ONE = "6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1"
FULL_MOVES, THINK_SECONDS, STOCKFISH_MS = 30, 0.05, 10
LONE_KINGS = "8/8/8/8/8/8/8/K1k5 w - - 0 1"  # a1a2 is the only legal move
POSITIONS = [("POSITION STARTPOS MOVES e2e4", ["e2e4"], None),
             ("position moves e2e4", ["e2e4"], None),
             ("position startpos", [], None),
             # A move that fails is skipped and the next one is tried.
             ("position startpos moves e2e4 e2e4 e7e5", ["e2e4", "e7e5"], None),
             ("position startpos   moves   g1f3    g8f6  ", ["g1f3", "g8f6"], None),
             ("position fen " + LONE_KINGS, [], LONE_KINGS),
             ("position " + LONE_KINGS, [], LONE_KINGS),
             ("position FEN " + LONE_KINGS + " moves", [], LONE_KINGS)]


def think(session, seconds=0.1):
    """go, and stop when the search has run at least seconds: its clock runs from the answer to isready."""
    return [l for l in search(session, stop_after=lambda: (sync(session), time.sleep(seconds))) if l != "readyok"]


def identity():
    for args, name in (([], "Vesko"), (["-engine=CORVANE"], "Corvane"), (["-engine=foo"], "Vesko"),
                       (["-engine=corvane", "-engine=vesko"], "Corvane"), (["-protocol=xboard"], "Vesko")):
        # No author line, no options: the name and uciok, and the closing remark.
        check(run_ok(["uci", "quit"], args) == ["id name " + name, "uciok", "info string end"], args)


def position_forms(name, session, referee):
    for line, moves, fen in POSITIONS:
        session.send(line)
        move = bestmove_of(searched_move(session)[-1])
        check(move in referee.legal_moves(moves, fen), "%s: %s answers %r to %r" % (name, move, line, moves))


def go_and_stop(name, args):
    session = Session(args)
    # stop with nothing running prints nothing.
    session.send("stop")
    check(sync(session) == [], "%s: stop while idle: %r" % (name, session.seen))
    session.send("position startpos")
    lines = think(session, 0.2)
    # The allowance, the statistics, the move: nothing else in plain UCI.
    check(len(lines) == 3 and lines[0] == START_LINE[name] and lines[1].startswith("info string ")
          and lines[2].startswith("bestmove "), "%s: %r" % (name, lines))
    elapsed = int(re.search(r"(\d+) ms", lines[1]).group(1))
    check(150 <= elapsed < 5000, "%s: elapsed %d ms" % (name, elapsed))
    # A second stop delivers nothing more.
    session.send("stop")
    check(sync(session) == [], "%s: second stop: %r" % (name, session.seen[-5:]))
    # The clock has lost what the first search used; the next one gets a fortieth of the rest less 50 ms.
    lines = think(session)
    left = 300000 - elapsed
    number = START_LINE[name].split()[3]
    check(lines[0] == "info string moves %s - time %d/%d ms" % (number, (left - 50) // 40, left),
          "%s: second allowance %r after %d ms" % (name, lines[0], elapsed))
    # The program answers during a search, which goes on.
    start = len(session.seen)
    session.send("go")
    session.until("info string moves")
    # Both answers come before the move: the search is still running when they are given.
    sync(session, timeout=5)
    session.send("uci")
    session.read_until(lambda l: l == "uciok", timeout=5)
    check(not any(l.startswith("bestmove") for l in session.seen[start:]), "%s: search ended early" % name)
    session.send("stop")
    session.until("bestmove")
    # A mate in one comes well before the deadline of 7498 ms, and without a stop; with no move at all the GUI
    # still gets its one answer at once.
    for fen, move in ((MATE_IN_ONE, "a1a8"),) + tuple((fen, "0000") for fen in NO_MOVES):
        lines = search(session, position="position fen " + fen, timeout=6)
        check(lines[-1] == "bestmove " + move, "%s: %r" % (name, lines[-5:]))
    session.quit()


def words(referee):
    session = Session()
    for line in ("debug off", "register later", "ponderhit", "setoption name Soul value Simple5",
                 "setoption name Clear Hash", "setoption", "debug"):
        session.send(line)
        check(sync(session) == [], "%r printed %r" % (line, session.seen[-3:]))
    session.send("ucinewgame")
    banner = sync(session)
    check(len(banner) == 1 and banner[0].startswith("info string Vesko")
          and re.search(r"PopCount (en|dis)abled$", banner[0]), banner)
    # Vesko keeps the depth limit, which switches the deadline off: depth 3 means one iteration of 2.
    lines = search(session, "go depth 3 movetime 100", "position startpos", timeout=6)
    check(bestmove_of(lines[-1]) in referee.legal_moves([]), lines)
    # The limit stays for later searches; a ponder search is a normal one and its move comes unasked.
    line = search(session, "go ponder", timeout=6)[-1]
    check(not line.split()[2:], "no ponder word: %r" % line)
    # Infinite lasts until stop; the clock words of go do not change the allowance.
    session.send("go infinite wtime 1000 btime 1000 winc 5 binc 5 movestogo 3 nodes 10 mate 2 bogus")
    numbers = re.match(r"info string moves 0/0 - time (-?\d+)/(-?\d+) ms$", session.until("info string moves"))
    check(numbers and int(numbers.group(1)) == (int(numbers.group(2)) - 50) // 40, session.seen[-1])
    check(int(numbers.group(2)) > 299000, session.seen[-1])
    time.sleep(0.3)
    check(not any(l.startswith("bestmove") for l in sync(session)), "infinite ended by itself")
    session.send("stop")
    session.until("bestmove")
    session.quit()


def progress_with_post(referee):
    # Only XBoard's post sets Post; back in UCI a search then shows its best move once a second, and once more
    # when it is delivered: the move, then the statistics, then the move itself.
    session = progress_session()
    lines = search(session, position="position startpos moves e2e4",
                   stop_after=lambda: [session.read_until(shows_a_move) for _ in range(2)])
    best = bestmove_of(lines[-1])
    shown = [l.split()[1] for l in lines if l.startswith("currmove ")]
    check(len(shown) >= 3 and shown[-1] == best and set(shown) <= referee.legal_moves(["e2e4"]), lines)
    check(lines[-3] == "currmove " + best and lines[-2].startswith("info string "), lines)
    session.quit()


def end_of_input():
    # The input ends with a search running: it ends at its deadline and delivers its move, then the program.
    started = time.monotonic()
    lines = run_ok(["position startpos moves e2e4", "go"], timeout=60)
    took = time.monotonic() - started
    check(lines[-1] == "info string end" and sum(1 for l in lines if l.startswith("bestmove")) == 1, lines)
    check(7.4 < took < 30, "took %.1f s" % took)
    # quit during a search ends at once, without a move.
    started = time.monotonic()
    lines = run_ok(["position startpos", "go", "quit"], timeout=60)
    check(not any(l.startswith("bestmove") for l in lines), lines)
    check(time.monotonic() - started < 5, "quit during a search took too long")


def games(name, session, referee):
    """Whole games with either colour as a GUI plays them against stockfish, every move corvane sends judged."""
    for corvane_white in (True, False):
        session.send("ucinewgame")
        moves = []
        for ply in range(2 * FULL_MOVES):
            legal = referee.legal_moves(moves)
            if not legal:
                break  # mate or stalemate
            if (ply % 2 == 0) == corvane_white:
                # What a GUI sends for one move: the game so far, go, and stop after a short think. However busy the
                # machine, and also when the stop comes before the search has found a move, the answer is legal.
                session.send("position startpos moves " + " ".join(moves))
                move = answered_move(session, THINK_SECONDS)
                check(move in legal, "%s played %r after %s; legal: %s" % (name, move, " ".join(moves), sorted(legal)))
            else:
                move = referee.best_move(moves, STOCKFISH_MS)
            moves.append(move)
        print("%s as %s: %d plies" % (name, "white" if corvane_white else "black", len(moves)))


def hostile_lines(name, session, referee):
    rng = random.Random(6)
    # A line of a megabyte, as a command, as a FEN and as a move list.
    for line in ("x" * 1000000, "position fen " + "rnbqkbnr/" * 100000, "position startpos moves " + "e2" * 500000,
                 "go " + "depth " * 100000, "setoption name " + "'" * 100000 + " value x"):
        session.send(line)
        sync(session)
    session.send("go" + " infinite" * 100)
    session.send("stop")
    session.until("bestmove")
    # Binary lines, NUL and control bytes included.
    for _ in range(50):
        line = bytes(rng.randrange(256) for _ in range(rng.randrange(1, 300)))
        # Not a console command: some of those are tools that take over the input.
        session.send_bytes(line.lstrip(b"\\") + b"\n")
    session.send_bytes(b"position fen \x00\xff\x01 moves \x00e2e4\n")
    sync(session)
    # FENs of garbage: whatever position the engine makes of them, a search still ends with one answer.
    for fen in ("zz//??/ 9 q KQkqKQ e9 -1 x", "8/8/8/8/8/8/8/8 w - - 0 1", "kkkkkkkk/8/8/8/8/8/8/KKKKKKKK b",
                "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR/8/8/8 w KQkq - 0 1", "9/9/9/9/9/9/9/9 w",
                "p7/8/8/8/8/8/8/P7 w - - 99999999999 -5", " ", "fen fen fen"):
        session.send("position fen " + fen)
        answered_move(session)
    # Ten thousand moves: a knight shuffle that comes back to the start, and one move that never fits.
    session.send("position startpos moves " + " ".join(["g1f3 g8f6 f3g1 f6g8"] * 2500))
    move = bestmove_of(searched_move(session, 120)[-1])
    check(move in referee.legal_moves([]), "%s after the shuffle: %s" % (name, move))
    session.send("position startpos moves " + " ".join(["a1a1"] * 10000) + " e2e4")
    move = bestmove_of(searched_move(session, 120)[-1])
    check(move in referee.legal_moves(["e2e4"]), "%s after the failed moves: %s" % (name, move))


def binary_at_the_end():
    # Input that ends inside a line of binary bytes ends the program cleanly.
    session = Session()
    session.send_bytes(os.urandom(5000).replace(b"\n", b" "))
    check(session.close() == 0, "exit code")


def peak_memory_kib(session):
    with open("/proc/%d/status" % session.process.pid) as status:
        return next(int(l.split()[1]) for l in status if l.startswith("VmHWM:"))


def endless_line():
    # 100 MiB without a line end: the line keeps its first MiB, the rest is dropped, the next line is read as
    # ever, and the program's memory stays near that of one fed nothing.
    mib, unknown = 1 << 20, "Error (unknown command): "
    plain = Session()
    sync(plain)
    baseline = peak_memory_kib(plain)
    plain.quit()
    session = Session()
    for _ in range(100):
        session.send_bytes(b"x" * mib)
    session.send_bytes(b"\nuci\n")
    session.read_until(lambda l: l == "uciok", timeout=120)
    check(unknown + "x" * mib in session.seen and session.seen[-2:] == ["id name Vesko", "uciok"],
          [l[:80] for l in session.seen])
    grown = peak_memory_kib(session) - baseline
    check(grown < 32 * 1024, "memory grew by %d KiB" % grown)
    session.quit()


if __name__ == "__main__":
    referee = Referee()
    identity()
    for name, args in ENGINES.items():
        go_and_stop(name, args)
        session = progress_session(args)
        position_forms(name, session, referee)
        games(name, session, referee)
        hostile_lines(name, session, referee)
        session.quit()
    words(referee)
    progress_with_post(referee)
    end_of_input()
    binary_at_the_end()
    endless_line()
    referee.close()
    print("uci: all checks passed")
