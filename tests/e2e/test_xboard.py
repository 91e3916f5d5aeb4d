"""The XBoard front end, spoken to as a GUI speaks to it: transcripts against the real program."""
import re
import time

from corvane_driver import check, run_script, Session

START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
FEATURES = ('feature ping=1 setboard=1 usermove=1 time=1 draw=1 reuse=1 myname="%s" ics=1 name=1 debug=1 '
            'memory=1 smp=1 nps=0 san=0 sigint=0 sigterm=0 analyze=0 colors=0 done=1')
# "moves n/m - time t/clock ms", the line every search starts with.
THINKING = re.compile(r"^# moves (-?\d+)/(-?\d+) - time (-?\d+)/(-?\d+) ms$")


def xboard(lines, args=(), timeout=60):
    """Runs the lines in XBoard mode, which the UCI word "xboard" enters silently, and returns the output."""
    code, output = run_script(["xboard", *lines, "quit"], args, timeout)
    check(code == 0, "exit code %d: %r" % (code, output))
    return output


def shown_position(lines):
    """The FEN of the last board that "\\" printed."""
    shown = [l for l in lines if re.match(r"^# (white|black) \[", l)]
    check(shown, "no board shown: %r" % lines)
    return shown[-1].split("[", 1)[1].rstrip("]")


def xboard_session(args=()):
    session = Session(args)
    session.send("xboard")
    return session


def finish(session):
    session.send("quit")
    check(session.close() == 0, "exit code")


def thinking_figures(line):
    moves, control, allowance, clock = (int(x) for x in THINKING.match(line).groups())
    return moves, control, allowance, clock


def handshake():
    # In UCI mode "xboard" only switches; in XBoard mode it answers with one empty line.
    check(xboard([]) == ["# end"], "xboard in UCI mode")
    check(xboard(["xboard"]) == ["", "# end"], "xboard in XBoard mode")
    for engine, name in ((None, "Vesko"), ("corvane", "Corvane")):
        args = ("-engine=" + engine,) if engine else ()
        output = xboard(["protover 2", "protover 2"], args)
        features = [l for l in output if l.startswith("feature ")]
        check(features == [FEATURES % name] * 2, "feature lines for %s: %r" % (name, output))
    # A refused feature flips in the list, but a name feature is never refused; neither answers anything.
    output = xboard(["protover 2", "rejected ping", "rejected myname", "accepted usermove"])
    check(output == [FEATURES % "Vesko", "# end"], output)
    # "uci" answers as the UCI front end does, and the next line is UCI again.
    output = xboard(["uci", "isready"])
    check(output[:3] == ["id name Vesko", "uciok", "readyok"], output)


def plain_answers():
    output = xboard(["time 12345", "otim 100", "name someone", "rating 2000 1800", "computer",
                     "result 1-0 {White mates}", "draw", "edit", "hint", "remove", "analyze", "variant normal",
                     "ics freechess.org", "easy", "hard", "post", "nopost", "option a=b", "cores 2"])
    check(output == ["# engine time set to 123450 ms", "# opponent time set to 1000 ms", "Vesko", "1350 1350",
                     "# hello my peer!", "# result 1-0 {White mates}", "# end"], output)
    output = xboard(["time abc", "otim -20"])
    check(output[:2] == ["# engine time set to 0 ms", "# opponent time set to -200 ms"], output)


def level_and_clock():
    # 40 moves in 5 minutes: the allowance divides the clock by the moves still to play, plus 2.
    session = xboard_session()
    session.send("level 40 5 0")
    session.send("go")
    moves, control, allowance, clock = thinking_figures(session.read_until(THINKING.match))
    check((control, clock) == (40, 300000), session.seen)
    check(allowance == (clock - 50) // (control - moves + 2), session.seen)
    finish(session)

    # Half a minute and one second a move: the second search sees the first one's time and the increment.
    session = xboard_session()
    session.send("level 0 0:30 1")
    session.send("go")
    moves, control, allowance, clock = thinking_figures(session.read_until(THINKING.match))
    check((control, allowance, clock) == (0, (30000 - 50) // 40, 30000), session.seen)
    session.read_until(lambda l: l.startswith("move "))
    session.send("go")
    clock = thinking_figures(session.read_until(THINKING.match))[3]
    # The delivery takes the time used, at least the allowance plus 1 ms, and adds 1000 ms.
    check(30000 + 1000 - allowance - 1500 < clock <= 30000 + 1000 - allowance - 1, (allowance, clock))
    finish(session)

    # new puts both clocks back to five minutes but keeps the control.
    session = xboard_session()
    session.send("level 0 0:30 1")
    session.send("new")
    session.send("go")
    moves, control, allowance, clock = thinking_figures(session.read_until(THINKING.match))
    check((control, clock) == (0, 300000), session.seen)
    finish(session)


def ping_and_pong():
    output = xboard(["ping 7"])
    check(output[0] == "pong 7", output)
    # During a search the answer comes right behind the move of that search.
    session = xboard_session()
    session.send("time 1000")
    session.send("go")
    session.read_until(THINKING.match)
    session.send("ping 8")
    session.read_until(lambda l: l.startswith("move "))
    check(session.read_until(lambda l: True) == "pong 8", session.seen)
    finish(session)


def new_game_and_user_moves():
    # new gives the engine black, so white's first move starts a search at once.
    session = xboard_session()
    session.send("new")
    session.send("time 1000")
    session.send("e2e4")
    session.read_until(THINKING.match)
    reply = session.read_until(lambda l: l.startswith("move "))
    check(re.match(r"^move [a-h][1-8][a-h][1-8][qrbn]?$", reply), reply)
    check(not any(l.startswith("Illegal move") for l in session.seen), session.seen)
    finish(session)

    # usermove and a bare move are the same command.
    after_e2e4 = shown_position(xboard(["force", "e2e4", "\\"]))
    check(shown_position(xboard(["force", "usermove e2e4", "\\"])) == after_e2e4, "usermove differs")
    check(after_e2e4 != START_FEN and after_e2e4.split()[1] == "b", after_e2e4)
    output = xboard(["force", "e2e4"])
    check(output[0] == "# I'm not thinking", output)

    # Force mode: two moves and one undo leave the position after the first.
    check(shown_position(xboard(["force", "e2e4", "e7e5", "undo", "\\"])) == after_e2e4, "undo")
    # Each undo takes back one move, and an empty history gives the start position.
    check(shown_position(xboard(["force", "e2e4", "e7e5", "undo", "undo", "\\"])).startswith(START_FEN[:44]),
          "undo twice")
    check(shown_position(xboard(["undo", "undo", "\\"])).startswith(START_FEN[:44]), "undo on nothing")

    # "e2-e4" is taken for a move by its second character, and the board decides.
    output = xboard(["force", "e2-e4", "a7a8q", "e2e5"])
    check(output[:3] == ["Illegal move: e2-e4", "Illegal move: a7a8q", "Illegal move: e2e5"], output)


def stop_leaves_no_side():
    session = xboard_session()
    session.send("new")
    session.send("time 500")
    session.send("stop")
    session.send("e2e4")
    session.send("ping 1")
    session.read_until(lambda l: l == "pong 1")
    time.sleep(1.5)
    session.send("ping 2")
    session.read_until(lambda l: l == "pong 2")
    check(not any(l.startswith("move ") or THINKING.match(l) for l in session.seen), session.seen)
    # go gives the engine the side to move again.
    session.send("go")
    session.read_until(lambda l: l.startswith("move "))
    finish(session)


def search_depth():
    # "sd" alone limits Vesko's search to two plies: the move comes long before the 7.5 s allowance ends.
    # (Corvane keeps the limit and searches to the deadline.)
    session = xboard_session()
    session.send("sd")
    started = time.monotonic()
    session.send("go")
    session.read_until(lambda l: l.startswith("move "), timeout=30)
    check(time.monotonic() - started < 5, "sd gave no depth limit")
    finish(session)


def counting():
    output = xboard(["perft 1"])
    check(any(l.startswith("Nodes: 20, Time: ") and ", Nodes/s: " in l for l in output), output)
    output = xboard(["perft 3 more words"])
    check(any(l.startswith("Nodes: 8902, Time: ") for l in output), output)
    # A lone king in the corner has three moves.
    for engine in ((), ("-engine=corvane",)):
        output = xboard(["setboard K7/8/8/8/8/8/8/7k w - - 0 1", "perft 1"], engine)
        check(any(l.startswith("Nodes: 3, Time: ") for l in output), output)


def hostile_lines():
    junk = [
        "x" * 200000,
        "e" + "2" * 100000,
        "usermove " + "z" * 50000,
        "\x01\x02\x7f\xff\xfe binary",
        "level -5 -3 -1",
        "level 99999999999999999999 99999999999999999999:99999999999999999999 99999999999999999999",
        "level 0 abc:def xyz",
        "level",
        "time lots",
        "time -99999999999999999999",
        "otim 99999999999999999999",
        "setboard garbage",
        "setboard 9/9/9/9 w KQkq z 0 -1",
        "setboard " + "p" * 100000,
        "setboard",
        "undo", "undo", "undo",
        "sd -5", "sd 99999999999999999999",
        # (A huge "memory" is no malformed line: the table takes what the system gives.)
        "memory -3", "memory abc",
        "rejected", "rejected done", "rejected \x00",
        "ping", "option", "option =", "cores x",
        "bk", "divide 0", "perft -3", "perft", "perft abc",
        "\\moves ::::", "\\moves " + "e2e4 zz:zz \x01 " * 20, "\\loadsoul", "\\loadbook", "\\listbook", "\\ m",
        "go", "?", "force", "new", "quit_not",
    ]
    for engine in ((), ("-engine=corvane",)):
        code, output = run_script(["xboard", *junk, "ping 99", "quit"], engine, timeout=120)
        check(code == 0, "exit code %d with %r" % (code, engine))
        check("pong 99" in output, "no answer after the junk with %r: %r" % (engine, output[-5:]))


def divisor_of_zero():
    # A negative number of moves per control makes moves-to-go + 2 reach 0 or less; the search still gets a
    # sensible share of the clock, and the move comes.
    for level in ("level -2 0:10 0", "level -1 0:10 0", "level -40 0:10 0"):
        session = xboard_session()
        session.send("setboard rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1")
        session.send(level)
        started = time.monotonic()
        session.send("go")
        moves, control, allowance, clock = thinking_figures(session.read_until(THINKING.match))
        check(0 <= allowance <= clock, "allowance %d of %d for %s" % (allowance, clock, level))
        session.read_until(lambda l: l.startswith("move "), timeout=20)
        check(time.monotonic() - started < 12, "search too long for %s" % level)
        finish(session)


def command_log(folder):
    import os
    log = os.path.join(folder, "xboard.log")
    xboard(["protover 2", "ping 3"], ("-log=" + log,))
    with open(log, "rb") as f:
        text = f.read()
    check(text == b"protover\t2ping\t3quit\t", text)


if __name__ == "__main__":
    import tempfile
    handshake()
    plain_answers()
    level_and_clock()
    ping_and_pong()
    new_game_and_user_moves()
    stop_leaves_no_side()
    search_depth()
    counting()
    hostile_lines()
    divisor_of_zero()
    with tempfile.TemporaryDirectory() as folder:
        command_log(folder)
    print("xboard: all checks passed")
