"""EPD test runs through the real program: a suite of known answers scored to the exact result line, and files
that hold no usable positions."""
import os
import tempfile

from corvane_driver import Session, check, run_script

CORVANE = ("-engine=corvane",)
RESULTS = "info string test results: "

# (line, passes): mates in one that any search finds, and avoided moves.
SUITE = [
    ("6k1/5ppp/8/8/8/8/8/R5K1 w - - bm Ra8#; id \"white mates\";", True),
    ("r5k1/8/8/8/8/8/5PPP/6K1 b - - bm Ra1+; id \"black mates\";", True),
    ("6k1/5ppp/8/8/8/8/8/R5K1 w - - am Ra8#;", False),
    ("3qk3/8/8/8/8/8/8/3RK3 w - - am Rd2;", True),
    ("6k1/5ppp/8/8/8/8/8/R5K1 w - - id \"no operation\";", False),
    ("6k1/5ppp/8/8/8/8/8/R5K1 w - - bm Qz9;", False),
]

# Lines that give no position or no move to search; none may stop the run.
BROKEN = ["xyz", "8/8/8/8 w - - bm Qa1;", "8/8/8/8/8/8/8/8 w - - bm Ke2;", "kkkkkkkk/KKKKKKKK/8/8/8/8/8/8 w - - bm e4",
          "7k/6Q1/6K1/8/8/8/8/8 b - - bm Kxg7;", ";;; bm ; am"]


def epd_run(folder, name, lines, args=()):
    path = os.path.join(folder, name)
    with open(path, "w", newline="") as f:
        f.write("\r\n".join(lines) + "\r\n\r\n")
    code, output = run_script(["\\epd 0:01 " + name], args, timeout=120, cwd=folder)
    check(code == 0, "exit code %d" % code)
    return output


def suite(folder):
    output = epd_run(folder, "suite.epd", [line for line, _ in SUITE], CORVANE)
    check(output[0] == "info string time 1000 ms - file suite.epd", output)
    verdicts = [l for l in output if l.startswith("info string move ")]
    check([" ok ---> score : " in v for v in verdicts] == [passes for _, passes in SUITE], verdicts)
    check(verdicts[0] == "info string move a1a8 ok ---> score : 1", verdicts)
    check(verdicts[1] == "info string move a8a1 ok ---> score : 2", verdicts)
    check(verdicts[2] == "info string move a1a8 bad!", verdicts)
    check(output[-2:] == [RESULTS + "3/6 50%", "info string end"], output)


def broken(folder):
    # Whatever the lines hold, every one is tried and the result has two digits.
    output = epd_run(folder, "broken.epd", BROKEN)
    check(output[-2] == RESULTS + "0/%d 00%%" % len(BROKEN), output)
    check(sum(l.startswith("info string testing: ") for l in output) == len(BROKEN), output)
    for missing in ("none.epd", "empty.epd"):
        open(os.path.join(folder, "empty.epd"), "w").close()
        code, output = run_script(["\\epd 0:01 " + missing, "isready"], cwd=folder)
        check(output == ["info string no positions to test in '%s'" % missing, "readyok", "info string end"], output)


def long_file(folder):
    # A file of 100000 positions is read at once; the program keeps answering and quits at once.
    with open(os.path.join(folder, "long.epd"), "w") as f:
        f.write("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - bm e4;\n" * 100000)
    session = Session(cwd=folder)
    session.send("\\epd 0:01 long.epd")
    session.read_until(lambda l: l.startswith("info string testing: "), 120)
    session.send("isready")
    session.read_until(lambda l: l == "readyok", 60)
    session.send("quit")
    check(session.close(60) == 0, "exit code")


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as folder:
        suite(folder)
        broken(folder)
        long_file(folder)
    print("epd: all checks passed")
