"""The opening book through the real program: a .cbk file written here, byte by byte from the file format,
is what Corvane plays from, lists and saves again; damaged files never stop it."""
import os
import re
import struct
import tempfile

from corvane_driver import Referee, Session, bestmove_of, check, progress_session, run_script, searched_move

CORVANE = ("-engine=corvane",)


def varint(number):
    out = bytearray()
    while True:
        low, number = number & 0x7F, number >> 7
        out.append(low | (0x80 if number else 0))
        if not number:
            return bytes(out)


def book_bytes(entries):
    """entries: {key: (wins, losses, draws)}, written in ascending key order."""
    body = b"".join(varint(w) + varint(l) + varint(d) + struct.pack("<Q", key)
                    for key, (w, l, d) in sorted(entries.items()))
    return b"NVOBK\0" + struct.pack("<II", 1, len(entries)) + bytes(32) + body + b"*END*\0"


def remarks(lines):
    """The program's remarks without the protocol's prefix ("info string " at start, as for UCI)."""
    return [l[len("info string "):] if l.startswith("info string ") else l for l in lines]


def listing(args, moves=""):
    """The keys the program gives the positions after each legal move, and the listing's lines."""
    code, lines = run_script(["uci", "position startpos" + (" moves " + moves if moves else ""), "\\listbook", "quit"],
                             CORVANE + args)
    check(code == 0, "exit code %d" % code)
    rows = [l for l in remarks(lines) if re.match(r"^[0-9A-F]{16} ", l)]
    keys = {row.split()[1]: int(row.split()[0], 16) for row in rows if not row.endswith("best entry")}
    return keys, rows


THINKING = re.compile(r"^(\d+) (-?\d+) +(\d+) (\d+) ")


def engine_move(session, timeout=60):
    """The next "move" line's move and the nodes of the thinking lines (post) before it."""
    start = len(session.seen)
    line = session.read_until(lambda l: l.startswith("move "), timeout)
    nodes = [int(m.group(4)) for m in map(THINKING.match, session.seen[start:]) if m]
    return line.split()[1], nodes


def plays_and_lists(folder, keys):
    # e4 alone is a book move: d4's one game against e4's 9000 is too rare to count (a share of the square
    # roots below 0.02).
    path = os.path.join(folder, "open.cbk")
    with open(path, "wb") as f:
        f.write(book_bytes({keys["Pe2-e4"]: (3000, 1000, 5000), keys["Pd2-d4"]: (0, 0, 1)}))
    args = ("book=" + path,)
    session = Session(CORVANE + args)
    for line in ("xboard", "post", "new", "bk"):
        session.send(line)
    session.read_until(lambda l: l.strip() == "best book move: Pe2-e4")
    # The book answers at once: a move without a search (0 nodes).
    session.send("go")
    move, nodes = engine_move(session)
    check(move == "e2e4" and nodes and not any(nodes), "book move expected: %s %r" % (move, nodes))
    # Out of the book the engine searches; moved at once by "?", its move is legal.
    session.send("bk")
    session.read_until(lambda l: l.strip() == "no book moves found")
    session.send("e7e5")
    session.read_until(THINKING.match)  # a move found, shown by post
    session.send("?")
    move, nodes = engine_move(session)
    referee = Referee()
    check(nodes and max(nodes) > 0 and move in referee.legal_moves(["e2e4", "e7e5"]),
          "search expected after 1.e4 e5: %s %r" % (move, nodes))
    referee.close()
    session.send("quit")
    check(session.close() == 0, "exit code")

    _, rows = listing(args)
    # Wins, draws, losses; 1.e4 scores (5000 + 2 * 3000) * 500 / 9000 = 611, shown as 61.10 %.
    check("Pe2-e4 3000 5000 1000 61.10%" in [r.split(" ", 1)[1] for r in rows], rows)
    check(rows[-1].endswith("Pe2-e4 3000 5000 1000 61.10% <--- best entry"), rows)
    check(sum(r.endswith("???") for r in rows) == 18, rows)

    # Loaded and saved by the console, the book comes back as the same bytes.
    copy = os.path.join(folder, "copy.cbk")
    code, lines = run_script(["\\loadbook " + path, "\\savebook " + copy, "quit"], CORVANE)
    lines = remarks(lines)
    check(code == 0 and "book %s loaded with 2 positions" % path in lines and "book %s saved" % copy in lines, lines)
    with open(path, "rb") as a, open(copy, "rb") as b:
        check(a.read() == b.read(), "saved book differs from the loaded one")
    # The limit keeps positions of at least that weight: 1.d4's one game has weight 0.
    code, lines = run_script(["\\loadbook %s 1" % path, "quit"], CORVANE)
    check(code == 0 and "book %s loaded with 1 positions" % path in remarks(lines), lines)


STATISTICS = re.compile(r"^info string (\d+) ms \d+ Knps(, TT hits: .*)?$")


def uci_move(session, moves, until_found=False):
    """Plays "go" on the position after moves, stopped once a move is found if until_found; returns the best move,
    the ms and whether any node was searched."""
    session.send("position startpos" + (" moves " + " ".join(moves) if moves else ""))
    start = len(session.seen)
    if until_found:
        line = searched_move(session)[-1]
    else:
        session.send("go")
        line = session.read_until(lambda l: l.startswith("bestmove "))
    move = bestmove_of(line)
    statistics = [m for m in map(STATISTICS.match, session.seen[start:]) if m]
    check(len(statistics) == 1, session.seen[start:])
    return move, int(statistics[0].group(1)), statistics[0].group(2) is not None


def default_book_over_uci(folder, keys):
    # "corvane.cbk" in the working folder is the book when none is named: 1.e4 for White, 1...e5 against it.
    black_keys, _ = listing((), "e2e4")
    with open(os.path.join(folder, "corvane.cbk"), "wb") as f:
        f.write(book_bytes({keys["Pe2-e4"]: (5, 1, 2), black_keys["Pe7-e5"]: (1, 5, 2)}))
    session = progress_session(CORVANE, cwd=folder)
    # A book move comes without a node searched, long before the search's allowance of over 7 s is used.
    for moves, expected in (([], "e2e4"), (["e2e4"], "e7e5")):
        move, ms, searched = uci_move(session, moves)
        check(move == expected and not searched and ms < 5000, "book move expected: %s %d %s" % (move, ms, searched))
    # Out of the book the engine searches, and "stop" brings its move.
    move, _, searched = uci_move(session, ["a2a3"], until_found=True)
    referee = Referee()
    check(searched and move in referee.legal_moves(["a2a3"]), "search expected after 1.a3: %s" % move)
    referee.close()
    session.send("quit")
    check(session.close() == 0, "exit code")
    # The option "book" names another book, and the default one is then not read.
    for args, listed in (((), 1), (("book=none.cbk",), 0)):
        code, lines = run_script(["\\listbook", "quit"], CORVANE + args, cwd=folder)
        check(code == 0 and sum(not l.endswith("???") and " Pe2-e4 " in l for l in lines) == 2 * listed, lines)


def damaged_books(folder, keys):
    # The highest key is the last entry: of no position here, it is the one cut.
    whole = book_bytes({keys["Pe2-e4"]: (3, 1, 5), keys["Ng1-f3"]: (7, 0, 0), 2**64 - 1: (1, 1, 1)})
    damaged = {
        "cut.cbk": whole[:-10],                                     # cut inside the key of the last entry
        "header.cbk": whole[:20],                                   # cut in the header
        "version.cbk": whole[:6] + struct.pack("<I", 2) + whole[10:],
        "magic.cbk": b"XXXXX" + whole[5:],
        "empty.cbk": b"",
        "huge-count.cbk": whole[:10] + struct.pack("<I", 0xFFFFFFFF) + whole[14:],
        "noise.cbk": bytes((i * 97 + 13) & 0xFF for i in range(5000)),
    }
    for name, data in damaged.items():
        path = os.path.join(folder, name)
        with open(path, "wb") as f:
            f.write(data)
        # The engine loads it at start, the console once more; the program plays on either way.
        session = Session(CORVANE + ("book=" + path,))
        for line in ("\\loadbook " + path, "xboard", "post", "new", "go"):
            session.send(line)
        # A book move comes at once; a search is moved at once ("?") when it has shown a move found.
        line = session.read_until(lambda l: THINKING.match(l) or l.startswith("move "))
        if line.startswith("move "):
            move = line.split()[1]
        else:
            session.send("?")
            move, _ = engine_move(session)
        session.send("quit")
        check(session.close() == 0 and len(move) >= 4, "%s: %r" % (name, session.seen))
        # The load fails; a cut file keeps the complete entries before the cut.
        check([l for l in remarks(session.seen) if l.startswith("book ") or l.startswith("error loading")] ==
              ["error loading " + path], "%s: %r" % (name, session.seen))
    _, rows = listing(("book=" + os.path.join(folder, "cut.cbk"),))
    # The complete entries are kept and found (the cut one stays behind them with key 0).
    listed = sorted(r.split(" ", 1)[1] for r in rows if not r.endswith("???") and not r.endswith("best entry"))
    check(len(listed) == 2 and listed[0].startswith("Ng1-f3 7 0 0") and listed[1].startswith("Pe2-e4 3 5 1"), rows)


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as folder:
        keys, _ = listing(())
        check(len(keys) == 20 and keys["Pe2-e4"] != keys["Pd2-d4"], keys)
        plays_and_lists(folder, keys)
        default_book_over_uci(folder, keys)
        damaged_books(folder, keys)
    print("book: all checks passed")
