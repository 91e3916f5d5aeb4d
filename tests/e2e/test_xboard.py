"""The XBoard front end, spoken to as a GUI speaks to it: transcripts against the real program."""
import os
import re
import tempfile
import time

from corvane_driver import CORVANE, START_FEN, Session, check, read, xboard
FEATURES = ('feature ping=1 setboard=1 usermove=1 time=1 draw=1 reuse=1 myname="%s" ics=1 name=1 debug=1 '
            'memory=1 smp=1 nps=0 san=0 sigint=0 sigterm=0 analyze=0 colors=0 done=1')
# "moves n/m - time t/clock ms", the line every search starts with.
THINKING = re.compile(r"^# moves (-?\d+)/(-?\d+) - time (-?\d+)/(-?\d+) ms$")


def thinking_figures(session):
    """moves, control, allowance and clock of the next search."""
    return tuple(int(x) for x in THINKING.match(session.read_until(THINKING.match)).groups())


def handshake():
    # In UCI mode "xboard" only switches; in XBoard mode it answers with one empty line.
    check(xboard([]) == ["# end"], "xboard in UCI mode")
    for name, args in (("Vesko", ()), ("Corvane", CORVANE)):
        features = [l for l in xboard(["protover 2", "protover 2"], args) if l.startswith("feature ")]
        check(features == [FEATURES % name] * 2, "feature lines for %s: %r" % (name, features))
    # A refused feature flips in the list, but a name feature is never refused; neither answers anything, nor do
    # the words that only inform.
    output = xboard(["xboard", "protover 2", "rejected ping", "rejected myname", "accepted usermove", "time 12345",
                     "otim 100", "name someone", "rating 2000 1800", "computer", "result 1-0 {White mates}", "draw",
                     "edit", "hint", "remove", "analyze", "variant normal", "ics freechess.org", "easy", "hard", "post",
                     "nopost", "option a=b", "cores 2", "time abc", "otim -20", "ping 7"])
    check(output == ["", FEATURES % "Vesko", "# engine time set to 123450 ms", "# opponent time set to 1000 ms", "Vesko",
                     "1350 1350", "# hello my peer!", "# result 1-0 {White mates}", "# engine time set to 0 ms",
                     "# opponent time set to -200 ms", "pong 7", "# end"], output)
    # "uci" answers as the UCI front end does, and the next line is UCI again.
    check(xboard(["uci", "isready"])[:3] == ["id name Vesko", "uciok", "readyok"], "uci from XBoard mode")


def clocks_and_searches():
    # 40 moves in 5 minutes: the allowance divides the clock by the moves still to play, plus 2.
    session = Session()
    session.send("xboard", "level 40 5 0", "go")
    moves, control, allowance, clock = thinking_figures(session)
    check((control, clock) == (40, 300000) and allowance == (clock - 50) // (control - moves + 2), session.seen)
    # Half a minute and one second a move: the second search sees the first one's time and the increment.
    session.send("new", "level 0 0:30 1", "go")
    allowance = (30000 - 50) // 40
    check(thinking_figures(session)[1:] == (0, allowance, 30000), session.seen)
    session.until("move ")
    session.send("go")
    clock = thinking_figures(session)[3]
    # The delivery takes the time used, at least the allowance plus 1 ms, and adds 1000 ms.
    check(30000 + 1000 - allowance - 1500 < clock <= 30000 + 1000 - allowance - 1, (allowance, clock))
    # new puts both clocks back to five minutes but keeps the control.
    session.send("new", "go")
    check(thinking_figures(session)[1::2] == (0, 300000), session.seen)
    # A negative number of moves per control makes moves-to-go + 2 reach 0 or less; the search still gets a
    # sensible share of the clock, and the move comes.
    for level in ("level -2 0:10 0", "level -1 0:10 0", "level -40 0:10 0"):
        session.send("new", level, "go")
        started = time.monotonic()
        _, _, allowance, clock = thinking_figures(session)
        check(0 <= allowance <= clock, "allowance %d of %d for %s" % (allowance, clock, level))
        session.until("move ", timeout=20)
        check(time.monotonic() - started < 12, "search too long for %s" % level)
    # During a search the answer to ping comes right behind the move of that search.
    session.send("new", "time 1000", "go")
    session.read_until(THINKING.match)
    session.send("ping 8")
    session.until("move ")
    check(session.read_until(lambda l: True) == "pong 8", session.seen)
    # new gives the engine black, so white's first move starts a search at once.
    session.send("new", "time 1000", "e2e4")
    session.read_until(THINKING.match)
    check(re.match(r"^move [a-h][1-8][a-h][1-8][qrbn]?$", session.until("move ")), session.seen)
    check(not any(l.startswith("Illegal move") for l in session.seen), session.seen)
    # "sd" alone limits Vesko's search to two plies: the move comes long before the 7.5 s allowance ends.
    # (Corvane keeps the limit and searches to the deadline.)
    session.send("new", "sd")
    started = time.monotonic()
    session.send("go")
    session.until("move ")
    check(time.monotonic() - started < 5, "sd gave no depth limit")
    session.quit()


def user_moves():
    # usermove and a bare move are the same command, each answered by a remark in force mode; undo takes back one
    # move, and on nothing gives the start, whatever the board held.
    output = xboard(["force", "e2e4", "\\", "new", "force", "usermove e2e4", "\\", "e7e5", "undo", "\\", "new",
                     "undo", "undo", "\\", "setboard K7/8/8/8/8/8/8/7k w - - 0 1", "undo", "\\"])
    shown = [l.split("[", 1)[1].rstrip("]") for l in output if re.match(r"^# (white|black) \[", l)]
    check(len(shown) == 5 and shown[0] == shown[1] == shown[2] != START_FEN and shown[0].split()[1] == "b"
          and shown[3] == shown[4] and shown[3].startswith(START_FEN[:44]) and output.count("# I'm not thinking") == 3
          and not any(l.startswith("Illegal move") for l in output), output)
    # "e2-e4" is taken for a move by its second character, and the board decides.
    output = xboard(["force", "e2-e4", "a7a8q", "e2e5"])
    check(output[:3] == ["Illegal move: e2-e4", "Illegal move: a7a8q", "Illegal move: e2e5"], output)
    # A lone king in the corner has three moves, whichever engine counts.
    for engine in ((), CORVANE):
        output = xboard(["setboard K7/8/8/8/8/8/8/7k w - - 0 1", "perft 1"], engine)
        check(any(l.startswith("Nodes: 3, Time: ") for l in output), output)


def hostile_lines():
    junk = [
        "x" * 200000, "e" + "2" * 100000, "usermove " + "z" * 50000, "\x01\x02\x7f\xff\xfe binary",
        "level -5 -3 -1", "level 99999999999999999999 99999999999999999999:99999999999999999999 99999999999999999999",
        "level 0 abc:def xyz", "level", "time lots", "time -99999999999999999999", "otim 99999999999999999999",
        "setboard garbage", "setboard 9/9/9/9 w KQkq z 0 -1", "setboard " + "p" * 100000, "setboard",
        "undo", "undo", "undo", "sd -5", "sd 99999999999999999999",
        # (A huge "memory" is no malformed line: the table takes what the system gives.)
        "memory -3", "memory abc", "rejected", "rejected done", "rejected \x00", "ping", "option", "option =",
        "cores x", "bk", "divide 0", "perft -3", "perft", "perft abc",
        "\\moves ::::", "\\moves " + "e2e4 zz:zz \x01 " * 20, "\\loadsoul", "\\loadbook", "\\listbook", "\\ m",
        "go", "?", "force", "new", "quit_not",
    ]
    for engine in ((), CORVANE):
        output = xboard([*junk, "ping 99"], engine, timeout=120)
        check("pong 99" in output, "no answer after the junk with %r: %r" % (engine, output[-5:]))


def command_log():
    with tempfile.TemporaryDirectory() as folder:
        log = os.path.join(folder, "xboard.log")
        xboard(["protover 2", "ping 3"], ("-log=" + log,))
        text = read(log, "rb")
    check(text == b"protover\t2ping\t3quit\t", text)


if __name__ == "__main__":
    handshake()
    clocks_and_searches()
    user_moves()
    hostile_lines()
    command_log()
    print("xboard: all checks passed")
