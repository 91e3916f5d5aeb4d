"""The program's shell (start-up options, unknown words, quit and the end of the input), the console commands typed
in either protocol, and the formula console: its board samples against 64-bit arithmetic done here, its help, the
result and state lines, the archive behind it, and bad input."""
import os
import re
import tempfile

from corvane_driver import CORVANE, Session, check, progress_session, read, run_ok, searched_move, write, xboard

START_BOARD = ["rnbqkbnr", "pppppppp", "--------", "--------", "--------", "--------", "PPPPPPPP", "RNBQKBNR"]
AFTER_E2E4 = START_BOARD[:4] + ["----P---", "--------", "PPPP-PPP", "RNBQKBNR"]
BOARD_LINES = 10  # eight ranks, the side with the FEN, an empty remark
UNKNOWN = "Error (unknown command): "
PLAIN_UCI = ["id name Vesko", "uciok", "info string end"]


def console(lines, args=()):
    """Runs the lines in XBoard mode, where remarks begin with "# ", and returns the remarks without it."""
    output = xboard(lines, args)
    check(output[-1:] == ["# end"], output)
    return [l[2:] if l.startswith("# ") else l for l in output[:-1]]


def boards(lines):
    """The boards printed, each as its eight ranks."""
    return [lines[i - 8:i] for i, line in enumerate(lines) if re.match(r"^(white|black) \[", line)]


def show_board():
    # "\" prints the board now; "\ m" lists Corvane's root records too (Vesko has none), as they stand, without
    # generating: none on a position just set, the moves searched with their values after a search.
    output = console(["\\", "\\ m", "\\corvane", "\\ m", "\\ M"])
    check(boards(output) == [START_BOARD] * 4 and output[9] == "" and output[4 * BOARD_LINES - 10:] ==
          ["__moves__", " ^^^"] + output[2 * BOARD_LINES:3 * BOARD_LINES] and len(output) == 4 * BOARD_LINES + 2,
          "only Corvane, and only with a lower-case m, lists the moves: %r" % output)
    session = progress_session(CORVANE)
    session.send("position startpos moves e2e4")
    searched_move(session)
    session.send("\\ m")
    session.read_until(lambda l: l == "__moves__")
    start = len(session.seen)
    session.read_until(lambda l: l == " ^^^")
    rows = session.seen[start:-1]
    session.quit()
    record = re.compile(r"^[PNK]([a-h][1-8])-([a-h][1-8]) a\(-?\d+\.\d\d\) v\(-?\d+\.\d\d\)( [*?#\\])*$")
    listed = [record.match(l) for l in rows]
    replies = {f + "7" + f + r for f in "abcdefgh" for r in "65"} | {"b8a6", "b8c6", "g8f6", "g8h6"}
    check(all(listed) and len(listed) == 20 and {m.group(1) + m.group(2) for m in listed} == replies, rows)

    # "\" also toggles a board after each delivered move: twice is off again.
    for toggles in (1, 2):
        session = Session()
        session.send("xboard", "time 200", *(["\\"] * toggles), "go", "ping 1")
        session.until("move ")
        following = session.read_until(lambda l: True)
        session.quit()
        check(re.match(r"^# [rnbqkpRNBQKP-]{8}$", following) if toggles == 1 else following == "pong 1",
              (toggles, following))


def moves():
    # Every form of the command, a word that is no legal move leaving the board as it was, one board per word;
    # the moves do not enter the game: undo goes back to the start, not to the move before.
    forms = ["\\moves e2e4", "\\moves e2:e4", "\\MOVES e2e4", "\\moves :e2::e4:"]
    output = console([line for form in forms for line in (form, "new", "\\moves")] +
                     ["\\moves e2e4 e2e4 e7e5", "undo", "\\"])
    shown = boards(output)
    check(shown[:-4] == [AFTER_E2E4, START_BOARD] * len(forms) and shown[-4:-2] == [AFTER_E2E4] * 2
          and shown[-2] != AFTER_E2E4 and shown[-1] == START_BOARD, output)


def quiet_and_unknown():
    # \help shows the list of the README, one line a command; the quiet words answer nothing.
    readme = read(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "README.md"))
    listed = [l[2:] for l in readme.split("`\\help` lists the commands")[1].split("```")[1].splitlines() if l.strip()]
    check(console(["\\help", "\\soul", "\\testsouls", "\\SOUL", "foo", "\\foo", "\\epdx"]) ==
          listed + [UNKNOWN + "foo", UNKNOWN + "\\foo", UNKNOWN + "\\epdx"], "README and \\help differ, or unknown")
    # In UCI mode: an empty line reaches no handler, a line of blanks is an empty command, and nothing after quit is
    # read; the end of the input ends the program at once.
    check(run_ok(["", "   ", "foo", "\\soul", "quit", "bar"]) == [UNKNOWN, UNKNOWN + "foo", "info string end"], "UCI")
    check(run_ok(["foo"], timeout=20) == [UNKNOWN + "foo", "info string end"], "end of input")


def start_up_options():
    # With -use=tourney (any case) the program runs the tournament of -ini, reads no commands and ends by itself
    # once the tournament has ended: at once for a file that does not exist. -load is in books_and_souls.
    lines = run_ok(["uci", "quit"], ["-use=TOURNEY", "-ini=no-such-tourney.xml"])
    check("# file not found: no-such-tourney.xml" in lines and not any(l.startswith("id name") for l in lines), lines)
    for args in (["-load="], ["-ini=x.xml"], ["-use=games", "-ini=x.xml"], ["memory=abc"]):
        check(run_ok(["uci", "quit"], args) == PLAIN_UCI, args)
    # memory: text that is no number means no table, an empty value the default 64 MB, and the first of doubled
    # names counts; -strictuci shows the size in use as Hash's default.
    for args, megabytes in ((["memory=abc"], 0), (["memory=2"], 2), (["MEMORY=", "memory=1"], 64)):
        check("option name Hash type spin default %d min 0 max 65536" % megabytes in
              run_ok(["uci", "quit"], ["-strictuci", *args]), args)


def books_and_souls(folder):
    # An empty book saved and loaded again, quoted for the blank in its folder, with '\' typed as the separator.
    folder = os.path.join(folder, "my files")
    os.makedirs(folder)
    missing, saved = os.path.join(folder, "x.cbk"), os.path.join(folder, "empty.cbk")
    typed = saved.replace("/", "\\")
    unwritable = os.path.join(folder, "no", "such", "folder.cbk")
    output = console(["\\savebook", '\\loadbook "%s"' % missing, '\\savebook "%s" 3' % typed,
                      '\\loadbook "%s"' % typed, '\\savebook "%s"' % unwritable])
    check(output == ["savebook book [limit]", "book: filename.cbk",
                     "limit: save only positions played more than 'limit' times", "wait...", "error loading " + missing,
                     "wait...", "book " + typed + " saved", "wait...", "book " + typed + " loaded with 0 positions",
                     "wait...", "error saving " + unwritable], output)
    check(os.path.getsize(saved) > 0, "nothing written")
    # The default book lies in the working folder.
    output = xboard(["\\loadbook"])
    check("# error loading corvane.cbk" in output or any(l.startswith("# book corvane.cbk loaded") for l in output),
          output)
    soul = write(os.path.join(folder, "soul.txt"), "pawn=105")
    check(console(['\\loadsoul "%s"' % soul, '\\loadsoul "%s"' % os.path.join(folder, "none.txt")]) ==
          ["new soul: pawn=105", "new soul: "], "loadsoul")
    # -load runs its command before the first input line is read: its answer comes first.
    check(run_ok(["uci", "quit"], ("-load=" + soul,)) == ["info string new soul: pawn=105"] + PLAIN_UCI, "-load")


def engines_and_scenario():
    # The engine switches, and the protocol is XBoard afterwards, even from UCI mode.
    output = run_ok(["\\corvane", "protover 2", "\\vesko", "protover 2", "quit"])
    features = [l for l in output if l.startswith("feature ")]
    check(len(features) == 2 and 'myname="Corvane"' in features[0] and 'myname="Vesko"' in features[1], output)
    check(output[-1] == "# end", output)
    output = console(["\\dbg", "ping 1"])
    fed = [l for l in output if l.startswith("XBoard_Command: ")]
    check(fed == ["XBoard_Command: \\vesko\t", "XBoard_Command: setboard\t6k1/6pP/6KP/8/8/8/8/8 b",
                  "XBoard_Command: level\t0 1000 0", "XBoard_Command: go\t"], output)


def json_file(folder):
    path = write(os.path.join(folder, "my engines.json"),
                 '{"engines": [{"name": "Vesko & co", "depth": 3, "book": null}]}\n')
    output = xboard(['\\json "%s"' % path])
    # The ampersand is encoded by the JSON reader and again on output, as every text the XML tree holds.
    check(output[:-1] == ["<_object_>", "\t<_object_>", "\t\t<engines>", "\t\t\t<_object_>",
                          "\t\t\t\t<name>Vesko &amp;amp; co</name>", "\t\t\t\t<depth>3</depth>", "\t\t\t\t<book/>",
                          "\t\t\t</_object_>", "\t\t</engines>", "\t</_object_>", "</_object_>"], output)


MASK = (1 << 64) - 1
W, E, E1 = 0x8080808080808080, 0x0101010101010101, 0x0101010101010100
H1G7, H1A8, H1H8 = 0x0002040810204081, 0x8040201008040201, 0x0102040810204081
BIT = 0x0000000000080000


def board(v):
    bits = format(v & MASK, "064b")
    return [bits[i:i + 8] for i in range(0, 64, 8)]


# The samples the console shows at its start, worked out with Python integers: "*" before "-" before the
# "#" operators, which go left to right; "/" divides whole numbers.
def samples():
    sub = lambda a, b: (a - b) & MASK
    mul = lambda a, b: (a * b) & MASK
    return [
        (sub(mul(BIT, H1G7) & W, 1) & mul(BIT, H1G7)) ^ BIT,
        (sub(mul(BIT, H1A8) & E, 1) & mul(BIT, H1A8)) ^ BIT,
        mul(BIT, H1A8) ^ mul(mul(BIT, H1A8) // 0x40000000000000, H1A8),
        mul(BIT, H1H8) ^ mul(mul(BIT, H1H8) // 0x100000000000000, H1H8),
        mul(BIT, E1),
        mul(mul(BIT, E) // 0x100000000000000, E) ^ mul(BIT, E),
        (sub(E, BIT) & sub(sub(0, E), 1)) ^ BIT,
        sub(BIT, (((sub(W, BIT) & W) ^ W) // 0x80)),
    ]


HELP = ["sample of commands", "compute             : (1 + 2) * 3 / 4",
        "set variables       : FSET('X',0x00[,'Y',0x01..-])", "display hexadecimal : FHEX(255)",
        "display binary      : FBIN(31)", "display 64 bit board: F64(0xffff00000000ffff)",
        "(return value string -> S)", "(return value 64 bit -> H)", "to exit the console : exit"]


def formula_lines(folder):
    value = 0x0000000000081234
    smeared = value & ~((value * 0x0101010101010101) & MASK) & MASK
    # (typed, result, state); the errors of hostile lines, whose result is None, are known by the state's start.
    typed = [
        ("F64(0xffff00000000ffff)", "\n".join(board(0xffff00000000ffff)) + "\n", "Ok"),
        ("FGET('select count(*) from ZSYSOPTIONS')", "1", "Ok"),
        ("FSET('X',0x%x) + 0x0" % value, str(value), "Ok"),
        ("S & '!'", "%d!" % value, "Ok"),
        ("FHEX(H) & ' ' & DP", "%016X %d" % (value, smeared), "Ok"),  # read from the text of S
        ("FSET('Y', 0x%x)" % value, str(value), "Ok"),
        ("DP", str(smeared), "Ok"),
        ("nothing", " ", "Unknown variable: nothing"),
        ("(" * 10000 + "1" + ")" * 10000, None, "clsParser error"),
        ("+".join(["1"] * 300000), "300000", "Ok"),
        ("\x01\x02\x7f\xff(", None, "Unknown function"),
        # No file comes of the archive; the formula and archive tests hold the other hostile statements.
        ("FGET('attach database ''x.db'' as x')", None, "Error in Function"),
    ]
    output = xboard(["\\console", *[line for line, _, _ in typed], "ExIt", "ping 7"], cwd=folder)
    check("# back to xboard mode" in output, output[-5:])
    end = output.index("# back to xboard mode")
    check("pong 7" in output[end:], output[end:])
    check([output[i * 9:i * 9 + 8] for i in range(8)] == [board(v) for v in samples()], output[:72])
    check(all(output[i * 9 + 8] == "" for i in range(8)), "a board ends with its own line feed")
    check(output[72:81] == HELP, output[72:81])
    # Each typed line's result, then its state between "\t[" and "]".
    body = output[81:end]
    for line, result, state in typed:
        close = next(i for i, l in enumerate(body) if l.startswith("\t["))
        got, got_state, body = "\n".join(body[:close]), body[close], body[close + 1:]
        check(got_state.endswith("]"), got_state)
        if result is None:
            check(got_state[2:-1].split(":")[0] == state, (line[:40], got_state))
        else:
            check((got, got_state[2:-1]) == (result, state), (line[:40], got, got_state))
    check(body == [] and os.listdir(folder) == [], (body, os.listdir(folder)))
    # The end of the input ends the console too.
    output = run_ok(["xboard", "\\console", "1+1"])
    check(output[-4:] == ["2", "\t[Ok]", "# back to xboard mode", "# end"], output[-4:])


if __name__ == "__main__":
    show_board()
    moves()
    quiet_and_unknown()
    start_up_options()
    engines_and_scenario()
    with tempfile.TemporaryDirectory() as folder:
        formula_lines(folder)
    with tempfile.TemporaryDirectory() as folder:
        books_and_souls(folder)
        json_file(folder)
    print("console: all checks passed")
