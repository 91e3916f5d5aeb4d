"""The program's shell: start-up options, unknown words, quit and the end of the input."""
from corvane_driver import Session, check, run_ok

UNKNOWN = "Error (unknown command): "
PLAIN_UCI = ["id name Vesko", "uciok", "info string end"]


def start_up_options():
    # -load runs its command before the first input line is read: its answer comes first.
    lines = run_ok(["uci", "quit"], ["-load=no-such-soul.txt"])
    check(len(lines) == 4 and "soul" in lines[0].lower() and lines[1:] == PLAIN_UCI, lines)
    # With -use=tourney (any case) the program runs the tournament of -ini, reads no commands and ends by
    # itself once the tournament has ended: at once for a file that does not exist.
    lines = run_ok(["uci", "quit"], ["-use=TOURNEY", "-ini=no-such-tourney.xml"])
    check(lines and "tourney" in lines[0].lower() and "# file not found: no-such-tourney.xml" in lines
          and not any(l.startswith("id name") for l in lines), lines)
    for args in (["-load="], ["-ini=x.xml"], ["-use=games", "-ini=x.xml"], ["memory=abc"], ["memory="]):
        check(run_ok(["uci", "quit"], args) == PLAIN_UCI, args)


def words_and_end_of_input():
    # An empty line never reaches a handler, a line of blanks does, with an empty command; nothing after quit
    # is read.
    lines = run_ok(["", "   ", "foo", "quit", "bar"])
    check([l for l in lines if l.startswith(UNKNOWN)] == [UNKNOWN, UNKNOWN + "foo"], lines)
    check(not any("bar" in l for l in lines), lines)
    # The end of the input ends the program, at once.
    run_ok([], timeout=20)
    check(UNKNOWN + "foo" in run_ok(["foo"], timeout=20), "no answer before the end of the input")
    session = Session()
    for word in ("hello", "again"):
        session.send(word)
        session.read_until(lambda l: l == UNKNOWN + word)
    session.quit()


if __name__ == "__main__":
    start_up_options()
    words_and_end_of_input()
    print("spine: all checks passed")
