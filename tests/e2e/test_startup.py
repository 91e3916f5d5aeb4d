"""Start-up options of the command line: -load, -use=tourney with -ini, and the options that change nothing."""
from corvane_driver import Session, check, run_script


def soul_file_before_input():
    # -load runs its command before the first input line is read: its answer comes first.
    code, plain = run_script(["uci", "quit"])
    code, lines = run_script(["uci", "quit"], ["-load=no-such-soul.txt"])
    check(code == 0, "exit code %d" % code)
    check(len(lines) == len(plain) + 1 and "soul" in lines[0].lower(), lines)
    check(lines[1:] == plain, (lines, plain))
    # An empty -load does nothing.
    code, lines = run_script(["uci", "quit"], ["-load="])
    check(lines == plain, lines)


def tourney_reads_no_commands():
    # With -use=tourney (any case) the program runs the tournament of -ini, reads no commands and ends by
    # itself, with status 0, once the tournament has ended: at once for a file that does not exist.
    code, lines = run_script(["uci", "quit"], ["-use=TOURNEY", "-ini=no-such-tourney.xml"])
    check(code == 0, "exit code %d" % code)
    check(lines and "tourney" in lines[0].lower(), lines)
    check("# file not found: no-such-tourney.xml" in lines, lines)
    check(not any(l.startswith("id name") for l in lines), lines)
    # Without -use=tourney, -ini changes nothing; neither does -protocol, nor an unknown -use.
    for args in (["-ini=x.xml"], ["-use=games", "-ini=x.xml"], ["-protocol=xboard"], ["memory=abc"], ["memory="]):
        code, lines = run_script(["uci", "quit"], args)
        check(code == 0 and lines == ["id name Vesko", "uciok", "info string end"], (args, lines))


if __name__ == "__main__":
    soul_file_before_input()
    tourney_reads_no_commands()
    print("startup: all checks passed")
