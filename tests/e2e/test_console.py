"""The console commands, typed in either protocol."""
import os
import re
import tempfile

from corvane_driver import check, progress_session, run_script, searched_move, Session

START_BOARD = ["rnbqkbnr", "pppppppp", "--------", "--------", "--------", "--------", "PPPPPPPP", "RNBQKBNR"]
AFTER_E2E4 = START_BOARD[:4] + ["----P---", "--------", "PPPP-PPP", "RNBQKBNR"]


def console(lines, args=()):
    """Runs the lines in XBoard mode, where remarks begin with "# ", and returns the remarks without it."""
    code, output = run_script(["xboard", *lines, "quit"], args)
    check(code == 0, "exit code %d" % code)
    check(output[-1:] == ["# end"], output)
    return [l[2:] if l.startswith("# ") else l for l in output[:-1]]


def boards(lines):
    """The boards printed, each as its eight ranks, from the lines that follow one another."""
    found = []
    for i, line in enumerate(lines):
        if re.match(r"^(white|black) \[", line):
            found.append(lines[i - 8:i])
    return found


def show_board():
    # "\" toggles the board after every move and prints the board now; "\ m" lists the moves too.
    output = console(["\\"])
    check(boards(output) == [START_BOARD], output)
    check(len(output) == 10 and output[9] == "", output)
    # Corvane lists the records of its root as they stand, without generating: none on a position just set, the
    # moves searched with their values after a search. Vesko has no list to show.
    with_moves = console(["\\ m"], ("-engine=corvane",))
    check(boards(with_moves) == [START_BOARD] and with_moves[10:] == ["__moves__", " ^^^"], with_moves)
    check(len(console(["\\ M"], ("-engine=corvane",))) == 10, "only a lower-case m lists the moves")
    check(len(console(["\\ m"])) == 10, "Vesko lists no moves")
    session = progress_session(("-engine=corvane",))
    session.send("position startpos moves e2e4")
    searched_move(session)
    session.send("\\ m")
    session.read_until(lambda l: l == "__moves__")
    start = len(session.seen)
    session.read_until(lambda l: l == " ^^^")
    rows = session.seen[start:-1]
    session.send("quit")
    check(session.close() == 0, "exit code")
    record = re.compile(r"^[PNK]([a-h][1-8])-([a-h][1-8]) a\(-?\d+\.\d\d\) v\(-?\d+\.\d\d\)( [*?#\\])*$")
    listed = [record.match(l) for l in rows]
    replies = {f + "7" + f + r for f in "abcdefgh" for r in "65"} | {"b8a6", "b8c6", "g8f6", "g8h6"}
    check(all(listed) and len(listed) == 20 and {m.group(1) + m.group(2) for m in listed} == replies, rows)

    # Shown after each delivered move while on; twice is off again.
    def line_after_move(toggles):
        session = Session()
        for line in ["xboard", "time 200", *(["\\"] * toggles), "go", "ping 1"]:
            session.send(line)
        session.read_until(lambda l: l.startswith("move "))
        following = session.read_until(lambda l: True)
        session.send("quit")
        check(session.close() == 0, "exit code")
        return following
    check(re.match(r"^# [rnbqkpRNBQKP-]{8}$", line_after_move(1)), "no board after the move")
    check(line_after_move(2) == "pong 1", "a board after the move")


def moves():
    for command in ("\\moves e2e4", "\\moves e2:e4", "\\MOVES e2e4", "\\moves :e2::e4:"):
        check(boards(console([command, "\\"]))[-1] == AFTER_E2E4, command)
    # One board per word; a word that is no legal move leaves the board as it was.
    output = console(["\\moves e2e4 e2e4 e7e5"])
    shown = boards(output)
    check(len(shown) == 3 and shown[0] == shown[1] == AFTER_E2E4 and shown[2] != AFTER_E2E4, output)
    check(boards(console(["\\moves"])) == [START_BOARD], "moves alone prints one board")
    # The moves do not enter the game: undo goes back to the start, not to the move before.
    check(boards(console(["\\moves e2e4 e7e5", "undo", "\\"]))[-1] == START_BOARD, "undo after moves")


def quiet_and_unknown():
    check(console(["\\soul", "\\testsouls", "\\SOUL"]) == [], "soul commands print nothing")
    check(console(["foo", "\\foo", "\\epdx"]) == ["Error (unknown command): foo", "Error (unknown command): \\foo",
                                                   "Error (unknown command): \\epdx"], "unknown words")
    # The same line in UCI mode.
    code, output = run_script(["foo", "\\soul", "quit"])
    check(output == ["Error (unknown command): foo", "info string end"], output)


def books(folder):
    check(console(["\\savebook"]) == ["savebook book [limit]", "book: filename.cbk",
                                      "limit: save only positions played more than 'limit' times"], "help")
    missing = os.path.join(folder, "x.cbk")
    check(console(["\\loadbook " + missing]) == ["wait...", "error loading " + missing], "missing book")
    # The default book lies in the working folder.
    code, output = run_script(["xboard", "\\loadbook", "quit"])
    check("# error loading corvane.cbk" in output or any(l.startswith("# book corvane.cbk loaded") for l in output),
          output)
    # An empty book saved and loaded again, with '\' typed as the separator.
    saved = os.path.join(folder, "empty.cbk")
    typed = saved.replace("/", "\\")
    output = console(["\\savebook " + typed + " 3", "\\loadbook " + typed])
    check(output == ["wait...", "book " + typed + " saved", "wait...", "book " + typed + " loaded with 0 positions"],
          output)
    check(os.path.getsize(saved) > 0, "nothing written")
    unwritable = os.path.join(folder, "no", "such", "folder.cbk")
    check(console(["\\savebook " + unwritable]) == ["wait...", "error saving " + unwritable], "unwritable")


def souls(folder):
    soul = os.path.join(folder, "soul.txt")
    with open(soul, "w") as f:
        f.write("pawn=105")
    check(console(["\\loadsoul " + soul]) == ["new soul: pawn=105"], "loadsoul")
    check(console(["\\loadsoul " + os.path.join(folder, "none.txt")]) == ["new soul: "], "missing soul")
    code, output = run_script(["quit"], ("-load=" + soul,))
    check("info string new soul: pawn=105" in output, output)


def engines():
    # The engine switches, and the protocol is XBoard afterwards, even from UCI mode.
    code, output = run_script(["\\corvane", "protover 2", "\\vesko", "protover 2", "quit"])
    features = [l for l in output if l.startswith("feature ")]
    check(len(features) == 2 and 'myname="Corvane"' in features[0] and 'myname="Vesko"' in features[1], output)
    check(output[-1] == "# end", output)


def debug_scenario():
    output = console(["\\dbg", "ping 1"])
    fed = [l for l in output if l.startswith("XBoard_Command: ")]
    check(fed == ["XBoard_Command: \\vesko\t", "XBoard_Command: setboard\t6k1/6pP/6KP/8/8/8/8/8 b",
                  "XBoard_Command: level\t0 1000 0", "XBoard_Command: go\t"], output)


if __name__ == "__main__":
    show_board()
    moves()
    quiet_and_unknown()
    with tempfile.TemporaryDirectory() as folder:
        books(folder)
        souls(folder)
    engines()
    debug_scenario()
    print("console: all checks passed")
