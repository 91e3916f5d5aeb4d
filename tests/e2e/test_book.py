"""The opening book through the real program: a .cbk file written here, byte by byte from the file format, is what
Corvane plays from, lists and saves again; damaged files never stop it. Books built from PGN folders, merged and
converted, with the files left and the words said."""
import os
import re
import struct
import tempfile

from corvane_driver import (CORVANE, Referee, Session, bestmove_of, check, progress_session, read, remarks, run_ok,
                            search, searched_move, write)

HEADER = struct.Struct("<6sII32x")  # magic, version, count
THINKING = re.compile(r"^(\d+) (-?\d+) +(\d+) (\d+) ")
STATISTICS = re.compile(r"^info string (\d+) ms \d+ Knps(, TT hits: .*)?$")
GAME = '[Event "x"]\n[Result "1-0"]\n\n1. e4 e5 2. Nf3 Nc6 1-0\n'


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
    return HEADER.pack(b"NVOBK\0", 1, len(entries)) + body + b"*END*\0"


def entries(path):
    """(key, wins, losses, draws) of a .cbk file."""
    data = read(path, "rb")
    at, found = HEADER.size, []

    def number():
        nonlocal at
        value = shift = 0
        while True:
            at, byte = at + 1, data[at]
            value, shift = value | (byte & 0x7F) << shift, shift + 7
            if byte < 0x80:
                return value

    for _ in range(HEADER.unpack_from(data)[2]):
        counters = (number(), number(), number())
        found.append(struct.unpack_from("<Q", data, at) + counters)
        at += 8
    return found


def listing(args, moves=""):
    """The keys the program gives the positions after each legal move, and the listing's lines."""
    lines = run_ok(["uci", "position startpos" + (" moves " + moves if moves else ""), "\\listbook", "quit"],
                   CORVANE + args)
    rows = [l for l in remarks(lines) if re.match(r"^[0-9A-F]{16} ", l)]
    keys = {row.split()[1]: int(row.split()[0], 16) for row in rows if not row.endswith("best entry")}
    return keys, rows


def engine_move(session, timeout=60):
    """The next "move" line's move and the nodes of the thinking lines (post) before it."""
    start = len(session.seen)
    line = session.until("move ", timeout)
    return line.split()[1], [int(m.group(4)) for m in map(THINKING.match, session.seen[start:]) if m]


def plays_and_lists(folder, keys, referee):
    # e4 alone is a book move: d4's one game against e4's 9000 is too rare to count (a share of the square
    # roots below 0.02).
    path = write(os.path.join(folder, "open.cbk"), book_bytes({keys["Pe2-e4"]: (3000, 1000, 5000),
                                                               keys["Pd2-d4"]: (0, 0, 1)}))
    args = ("book=" + path,)
    session = Session(CORVANE + args)
    session.send("xboard", "post", "new", "bk")
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
    check(nodes and max(nodes) > 0 and move in referee.legal_moves(["e2e4", "e7e5"]),
          "search expected after 1.e4 e5: %s %r" % (move, nodes))
    session.quit()

    _, rows = listing(args)
    # Wins, draws, losses; 1.e4 scores (5000 + 2 * 3000) * 500 / 9000 = 611, shown as 61.10 %.
    check("Pe2-e4 3000 5000 1000 61.10%" in [r.split(" ", 1)[1] for r in rows], rows)
    check(rows[-1].endswith("Pe2-e4 3000 5000 1000 61.10% <--- best entry"), rows)
    check(sum(r.endswith("???") for r in rows) == 18, rows)
    # Loaded and saved by the console, the book comes back as the same bytes. A limit keeps positions of at least
    # that weight, half their games: 1.e4's 4500, and not 1.d4's 0.
    copy, limited = os.path.join(folder, "copy.cbk"), os.path.join(folder, "limited.cbk")
    lines = remarks(run_ok(["\\loadbook " + path, "\\savebook " + copy, "\\savebook %s 4500" % limited,
                            "\\loadbook " + limited, "\\loadbook %s 1" % path, "quit"], CORVANE))
    check(["book %s loaded with 2 positions" % path, "book %s saved" % copy, "book %s saved" % limited,
           "book %s loaded with 1 positions" % limited, "book %s loaded with 1 positions" % path]
          == [l for l in lines if l.startswith("book ")], lines)
    check(read(path, "rb") == read(copy, "rb"), "saved book differs from the loaded one")


def default_book_over_uci(folder, keys, referee):
    # "corvane.cbk" in the working folder is the book when none is named: 1.e4 for White, 1...e5 against it.
    black_keys, _ = listing((), "e2e4")
    write(os.path.join(folder, "corvane.cbk"), book_bytes({keys["Pe2-e4"]: (5, 1, 2), black_keys["Pe7-e5"]: (1, 5, 2)}))
    session = progress_session(CORVANE, cwd=folder)
    # A book move comes without a node searched, long before the search's allowance of over 7 s is used; out of the
    # book the engine searches, and "stop" brings its move.
    for moves, expected in (([], "e2e4"), (["e2e4"], "e7e5"), (["a2a3"], None)):
        session.send("position startpos moves " + " ".join(moves))
        lines = search(session) if expected else searched_move(session)
        move = bestmove_of(lines[-1])
        statistics = [m for m in map(STATISTICS.match, lines) if m]
        check(len(statistics) == 1, lines)
        ms, searched = int(statistics[0].group(1)), statistics[0].group(2) is not None
        if expected:
            check(move == expected and not searched and ms < 5000, "book move expected: %s %d %s" % (move, ms, searched))
        else:
            check(searched and move in referee.legal_moves(moves), "search expected after 1.a3: %s" % move)
    session.quit()
    # The option "book" names another book, and the default one is then not read.
    for args, listed in (((), 1), (("book=none.cbk",), 0)):
        lines = run_ok(["\\listbook", "quit"], CORVANE + args, cwd=folder)
        check(sum(not l.endswith("???") and " Pe2-e4 " in l for l in lines) == 2 * listed, lines)


def damaged_books(folder, keys):
    # The highest key is the last entry: of no position here, it is the one cut. (Every kind of damage is read by
    # the book's own tests; here the program meets one of each family.)
    whole = book_bytes({keys["Pe2-e4"]: (3, 1, 5), keys["Ng1-f3"]: (7, 0, 0), 2**64 - 1: (1, 1, 1)})
    damaged = {
        "cut.cbk": whole[:-10],  # cut inside the key of the last entry
        "version.cbk": whole[:6] + struct.pack("<I", 2) + whole[10:],
        "huge-count.cbk": whole[:10] + struct.pack("<I", 0xFFFFFFFF) + whole[14:],
        "noise.cbk": bytes((i * 97 + 13) & 0xFF for i in range(5000)),
    }
    paths = [write(os.path.join(folder, name), data) for name, data in damaged.items()]
    # The engine loads each at start without a word, the console once more, and the load fails; the program plays
    # on: a book move comes at once, a search is moved at once ("?") when it has shown a move found.
    for path in paths:
        check(run_ok(["quit"], CORVANE + ("book=" + path,)) == ["info string end"], path)
    session = Session(CORVANE)
    session.send(*["\\loadbook " + path for path in paths] + ["xboard", "post", "new", "go"])
    if not session.read_until(lambda l: THINKING.match(l) or l.startswith("move ")).startswith("move "):
        session.send("?")
        engine_move(session)
    session.quit()
    check([l for l in remarks(session.seen) if l.startswith("book ") or l.startswith("error loading")] ==
          ["error loading " + path for path in paths], session.seen)
    _, rows = listing(("book=" + os.path.join(folder, "cut.cbk"),))
    # A cut file keeps and finds the complete entries before the cut (the cut one stays behind them with key 0).
    listed = sorted(r.split(" ", 1)[1] for r in rows if not r.endswith("???") and not r.endswith("best entry"))
    check(len(listed) == 2 and listed[0].startswith("Ng1-f3 7 0 0") and listed[1].startswith("Pe2-e4 3 5 1"), rows)


def console(folder, commands):
    return [l for l in remarks(run_ok(list(commands) + ["quit"], cwd=folder)) if l != "end"]


def build_merge_convert(folder):
    check(console(folder, ["\\buildbooks", "\\mergebooks books"]) == [
        "buildbooks path_of_pgn_files moves_count [type]", "buildbooks d:\\games d:\\corvane\\corvane.cbk 10",
        "type: 0=book, 1=extract FEN", 'NB: use "path" if you want to use path with embedded spaces',
        "type 2 [min_games]: polyglot book .bin of the moves played in min_games games (3)",
        "mergebooks books_path new_book.cbk [limit]", "merge .cbk book files into new_book.cbk file"], "help")
    # Sub-folders are walked, hidden names skipped, a quoted path may hold blanks; Vesko lends a Corvane.
    games = os.path.join(folder, "my games")
    write(os.path.join(games, "a.b.pgn"), GAME)
    write(os.path.join(games, "deep", "c.pgn"), GAME + GAME.replace("1-0", "0-1"))
    write(os.path.join(games, ".hidden.pgn"), GAME)
    write(os.path.join(games, ".old", "d.pgn"), GAME)
    said = console(folder, ['\\buildbooks "my games" 3 1'])
    check(said[-1] == "3 games parsed!", said)
    check(sorted(l for l in said if l.startswith("saving book")) == [
        "saving book 'my games/a.b.cbk' with 3 positions", "saving book 'my games/deep/c.cbk' with 3 positions"], said)
    check(any(l.startswith("reading file 1 of 2 : my games/") for l in said), said)
    check(not os.path.exists(os.path.join(games, ".hidden.cbk")), "hidden file read")
    check(os.path.exists(os.path.join(games, "a.b.txt")), "no table")
    # White won once and black once: the three positions stand at one win and one loss each.
    check([e[1:] for e in entries(os.path.join(games, "deep", "c.cbk"))] == [(1, 1, 0)] * 3, "counters")

    # Shared positions fold; the new book is left out of a second run; a cut book merges as far as it reads.
    # Quoted paths may hold blanks, and '\' separates folders as '/' does.
    books = os.path.join(folder, "my books")
    built = read(os.path.join(games, "a.b.cbk"), "rb")
    for name, data in (("a.cbk", built), ("sub/c.cbk", read(os.path.join(games, "deep", "c.cbk"), "rb")),
                       ("cut.cbk", built[:HEADER.size + 11 + 5])):
        write(os.path.join(books, name), data)
    for _ in range(2):
        said = console(folder, ['\\mergebooks "my books" "my books\\all.cbk"'])
    merged = entries(os.path.join(books, "all.cbk"))
    whole_keys = sorted(e[0] for e in entries(os.path.join(books, "a.cbk")))
    check(len(merged) == 4 and sorted(e[0] for e in merged if e[0]) == whole_keys, merged)
    # Two whole books and, from the cut one, the entry before the damage (one key counted once more) and the
    # entry whose key the cut fell in, kept under key 0 with the counters read before it.
    check(sorted(e[1] + e[2] + e[3] for e in merged) == [1, 3, 3, 4], merged)
    check(said[-1] == "done" and "saving 4 positions in my books\\all.cbk" in said, said)

    write(os.path.join(folder, "pgn", "x.cbk"), built)
    said = console(folder, ["\\cvbooks"])
    check(said[-1] == "ok" and os.path.exists(os.path.join(folder, "pgn", "x.cb3")), said)


START, AFTER_E4 = 0x463B96181691FC9C, 0x823C9B50FD114196  # polyglot keys of the start and of 1.e4
E2E4, D2D4, E2E5, E7E5, C7C5 = 796, 731, 804, 3364, 3234  # polyglot move codes


def polyglot_bytes(entries):
    return b"".join(struct.pack(">QHHI", key, move, weight, 0) for key, move, weight in entries)


def polyglot_book(folder, referee):
    # 1.e4 of weight 3 and 1.d4 of weight 0, never played; 1...e5 after 1.e4.
    whole = polyglot_bytes([(START, E2E4, 3), (START, D2D4, 0), (AFTER_E4, E7E5, 1)])
    books = {"open.bin": whole, "cut.bin": whole[:-1], "order.bin": whole[16:] + whole[:16],
             "illegal.bin": polyglot_bytes([(START, E2E5, 1)])}
    for name, data in books.items():
        write(os.path.join(folder, name), data)
    # Damaged books are refused with the reason.
    lines = run_ok(["xboard", "\\loadbook open.bin", "\\listbook", "\\moves e2e4", "\\listbook", "\\loadbook cut.bin",
                    "\\loadbook order.bin", "quit"], CORVANE, cwd=folder)
    check(["# book open.bin loaded with 3 moves", "# 463B96181691FC9C e2e4 3 100.00%",
           "# 463B96181691FC9C d2d4 0 0.00%"] == lines[1:4] and "# 823C9B50FD114196 e7e5 1 100.00%" in lines and
          "# error loading cut.bin: size 47 is no multiple of 16" in lines and
          "# error loading order.bin: keys out of order at entry 3" in lines, lines)
    session = Session(CORVANE + ("book=open.bin",), cwd=folder)
    session.send("xboard", "post", "new", "go")
    move, nodes = engine_move(session)
    check(move == "e2e4" and not any(nodes), "book move expected: %s %r" % (move, nodes))
    # A move the position does not allow keeps the book from playing.
    session.send("\\loadbook illegal.bin", "new", "go")
    session.until("# book move e2e5 is not legal here: the book is not used")
    check(session.until("move ").split()[1] in referee.legal_moves([]), session.seen[-3:])
    session.quit()
    # Built from a game that White won: White's moves with 2 points each, Black's of weight 0 left out.
    write(os.path.join(folder, "poly", "a.pgn"), GAME)
    said = console(folder, ["\\buildbooks poly 0 2 1"])
    check("saved book 'poly/a.bin' with 2 moves" in said, said)
    data = read(os.path.join(folder, "poly", "a.bin"), "rb")
    check(len(data) == 32 and polyglot_bytes([(START, E2E4, 2)]) in (data[:16], data[16:]), data)


if __name__ == "__main__":
    referee = Referee()
    with tempfile.TemporaryDirectory() as folder:
        keys, _ = listing(())
        check(len(keys) == 20 and keys["Pe2-e4"] != keys["Pd2-d4"], keys)
        plays_and_lists(folder, keys, referee)
        default_book_over_uci(folder, keys, referee)
        damaged_books(folder, keys)
        polyglot_book(folder, referee)
    with tempfile.TemporaryDirectory() as folder:
        build_merge_convert(folder)
    referee.close()
    print("book: all checks passed")
