"""The program's shell: unknown words, quit, and the end of the input."""
import time

from corvane_driver import check, run_script, Session


def unknown_words_and_quit():
    code, lines = run_script(["foo", "quit"])
    check(code == 0, "exit code %d" % code)
    check("Error (unknown command): foo" in lines, lines)
    # Nothing after quit is read.
    code, lines = run_script(["quit", "bar"])
    check(code == 0 and not any("bar" in l for l in lines), lines)


def blank_lines():
    # An empty line never reaches a handler; a line of blanks does, with an empty command.
    code, lines = run_script(["", "   ", "quit"])
    check(code == 0, "exit code %d" % code)
    errors = [l for l in lines if l.startswith("Error (unknown command):")]
    check(errors == ["Error (unknown command): "], lines)


def end_of_input():
    started = time.monotonic()
    code, lines = run_script([], timeout=20)
    check(code == 0, "exit code %d at once on empty input" % code)
    code, lines = run_script(["foo"], timeout=20)
    check(code == 0 and "Error (unknown command): foo" in lines, lines)
    check(time.monotonic() - started < 15, "end of input took too long")


def answers_while_input_stays_open():
    session = Session()
    session.send("hello")
    session.read_until(lambda l: l == "Error (unknown command): hello")
    session.send("again")
    session.read_until(lambda l: l == "Error (unknown command): again")
    session.send("quit")
    check(session.close() == 0, "exit code after quit")


if __name__ == "__main__":
    unknown_words_and_quit()
    blank_lines()
    end_of_input()
    answers_while_input_stays_open()
    print("spine: all checks passed")
