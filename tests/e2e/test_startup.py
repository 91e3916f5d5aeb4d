"""Start-up options of the command line: -load, -use=tourney with -ini, and the options that change nothing."""
import time

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
    # With -use=tourney (any case) the program runs the tournament of -ini and reads no commands.
    session = Session(["-use=TOURNEY", "-ini=no-such-tourney.xml"])
    session.send("uci")
    time.sleep(1.5)
    session.send("quit")
    time.sleep(0.5)
    check(session.process.poll() is None, "the program ended although it reads no commands")
    session.process.kill()
    session.process.wait(timeout=30)
    rest = session.process.stdout.read() or b""
    lines = rest.decode(errors="replace").splitlines()
    check(lines and "tourney" in lines[0].lower(), lines)
    check(not any(l.startswith("id name") for l in lines), lines)
    # Without -use=tourney, -ini changes nothing; neither does -protocol, nor an unknown -use.
    for args in (["-ini=x.xml"], ["-use=games", "-ini=x.xml"], ["-protocol=xboard"], ["memory=abc"], ["memory="]):
        code, lines = run_script(["uci", "quit"], args)
        check(code == 0 and lines == ["id name Vesko", "uciok", "info string end"], (args, lines))


if __name__ == "__main__":
    soul_file_before_input()
    tourney_reads_no_commands()
    print("startup: all checks passed")
