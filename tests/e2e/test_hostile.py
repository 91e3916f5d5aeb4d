"""Hostile UCI lines: very long, binary, a FEN of garbage, ten thousand moves. The program answers on."""
import os
import random
import time

from corvane_driver import (ENGINES, Referee, Session, answered_move, bestmove_of, check, progress_session,
                            searched_move, sync)


def hostile_lines(name, args, referee):
    session = progress_session(args)
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
    session.quit()


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
    started = time.monotonic()
    for name, args in ENGINES.items():
        hostile_lines(name, args, referee)
    binary_at_the_end()
    endless_line()
    referee.close()
    print("hostile: all checks passed in %.1f s" % (time.monotonic() - started))
