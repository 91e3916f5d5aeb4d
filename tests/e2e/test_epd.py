"""Files of positions run through the real program: an EPD suite of known answers scored to the exact result line,
files that hold no usable positions, and perft over a file with both engines, resumed, with wrong counts."""
import os
import re
import shutil
import tempfile

from corvane_driver import CORVANE, Session, check, run_ok

RESULTS = "info string test results: "
PERFT_FILE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data", "perft", "standard-d3.txt")

# (line, verdict): mates in one that any search finds, and avoided moves. A verdict that starts with a blank
# follows whatever move was found; None is a failed test.
SUITE = [
    ("6k1/5ppp/8/8/8/8/8/R5K1 w - - bm Ra8#; id \"white mates\";", "a1a8 ok ---> score : 1"),
    ("r5k1/8/8/8/8/8/5PPP/6K1 b - - bm Ra1+; id \"black mates\";", "a8a1 ok ---> score : 2"),
    ("6k1/5ppp/8/8/8/8/8/R5K1 w - - am Ra8#;", "a1a8 bad!"),
    ("3qk3/8/8/8/8/8/8/3RK3 w - - am Rd2;", " ok ---> score : 3"),
    ("6k1/5ppp/8/8/8/8/8/R5K1 w - - id \"no operation\";", None),
    ("6k1/5ppp/8/8/8/8/8/R5K1 w - - bm Qz9;", None),
]

# Lines that give no position or no move to search; none may stop the run.
BROKEN = ["xyz", "8/8/8/8 w - - bm Qa1;", "8/8/8/8/8/8/8/8 w - - bm Ke2;", "kkkkkkkk/KKKKKKKK/8/8/8/8/8/8 w - - bm e4",
          "7k/6Q1/6K1/8/8/8/8/8 b - - bm Kxg7;", ";;; bm ; am"]


def epd_run(folder, name, lines, args=()):
    with open(os.path.join(folder, name), "w", newline="") as f:
        f.write("\r\n".join(lines) + "\r\n\r\n")
    return run_ok(['\\epd 0:01 "%s"' % name], args, timeout=120, cwd=folder)


def suite(folder):
    output = epd_run(folder, "my suite.epd", [line for line, _ in SUITE], CORVANE)
    check(output[0] == "info string time 1000 ms - file my suite.epd", output)
    verdicts = [l[len("info string move "):] for l in output if l.startswith("info string move ")]
    check(len(verdicts) == len(SUITE), verdicts)
    for verdict, (line, expected) in zip(verdicts, SUITE):
        if expected is None:
            check(" ok ---> score : " not in verdict, (line, verdict))
        else:
            check(verdict.endswith(expected) if expected[0] == " " else verdict == expected, (line, verdict))
    check(output[-2:] == [RESULTS + "3/6 50%", "info string end"], output)


def broken(folder):
    # Whatever the lines hold, every one is tried and the result has two digits.
    output = epd_run(folder, "broken.epd", BROKEN)
    check(output[-2] == RESULTS + "0/%d 00%%" % len(BROKEN), output)
    check(sum(l.startswith("info string testing: ") for l in output) == len(BROKEN), output)
    open(os.path.join(folder, "empty.epd"), "w").close()
    for missing in ("none.epd", "empty.epd"):
        output = run_ok(["\\epd 0:01 " + missing, "isready"], cwd=folder)
        check(output == ["info string no positions to test in '%s'" % missing, "readyok", "info string end"], output)
    # A file of 100000 positions is read at once; the program keeps answering and quits at once.
    with open(os.path.join(folder, "long.epd"), "w") as f:
        f.write("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - bm e4;\n" * 100000)
    session = Session(cwd=folder)
    session.send("\\epd 0:01 long.epd")
    session.until("info string testing: ", 120)
    session.send("isready")
    session.read_until(lambda l: l == "readyok", 60)
    session.quit(60)


def perft_file(folder):
    """Every position of the depth-3 file counts as expected, with either engine; the file's name is quoted."""
    with open(PERFT_FILE) as source:
        fens = [line.split(",")[0] for line in source if line.strip()]
    for engine in ("vesko", "corvane"):
        path = shutil.copy(PERFT_FILE, os.path.join(folder, engine + " d3.txt"))
        output = run_ok(["\\" + engine, '\\perftfile "%s" 3' % path, "quit"], timeout=300)
        check("starting perft from perft line 0" in output, output[:5])
        with open(os.path.join(folder, engine + " d3.out.txt"), newline="") as result:
            lines = result.read().split("\r\n")
        check(lines[-1] == "" and len(lines) == len(fens) + 1, (engine, len(lines)))
        for fen, line in zip(fens, lines):
            check(line.startswith(fen + "\t[TIME_MS=") and line.endswith("]\t[STATUS=OK]"), (engine, line))


START, MATED = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", "R5k1/5ppp/8/8/8/8/5PPP/6K1 b - - 1 1"
# A perft file at depth 1: (line, nodes, status). The count stands behind the last comma, and 0 or text always
# passes; a line without a comma counts its FEN's leading number, 8 here; a position without moves keeps its FEN
# alone. An earlier run did the first line; a line of blanks is no line.
PERFT_LINES = [(START + ",D1,999", 20, None), (START + ",D1,20", 20, "OK"), (START + ",D1,21", 20, "ERROR"),
               ("  ", 0, None), (START + ",x", 20, "OK"), (MATED + ",D1,0", 0, ""),
               ("8/8/8/8/8/8/8/K1k5 w - - 0 1", 1, "ERROR")]


def perft_file_counts(folder):
    with open(os.path.join(folder, "p.txt"), "w") as f:
        f.write("\n".join(line for line, _, _ in PERFT_LINES) + "\n")
    out = os.path.join(folder, "p.out.txt")
    with open(out, "w") as f:
        f.write("old\r\n")
    # Without a file, the current position is counted and its line said.
    said = run_ok(["\\perftfile 2", "\\perftfile p.txt 1", "\\perftfile missing.txt 1"], cwd=folder)
    check(re.match(START.split()[0] + r" w [^\t]*\t\[TIME_MS=\d+\]\t\[NPS=\d+\]\t\[STATUS=OK\]$", said[3])
          and said[4] == "starting perft from perft line 1" and said[5].startswith("2/6\t" + START), said)
    check(said[-2:] == ["starting perft from perft line 0", "info string end"], said)
    with open(out, newline="") as f:
        written = f.read().split("\r\n")
    check(written[0] == "old" and written[-1] == "" and len(written) == 7, written)
    for text, (line, nodes, status) in zip(written[1:], [row for row in PERFT_LINES if row[2] is not None]):
        fen = line.split(",")[0]
        timed = re.match(re.escape(fen) + r"\t\[TIME_MS=(\d+)\]\t\[NPS=(\d+)\]\t\[STATUS=(\w+)\]$", text)
        check(text == fen if not status else timed and timed.group(3) == status
              and int(timed.group(2)) == nodes * 1000 // int(timed.group(1)), (line, text))
    # A result file that cannot be written: every line still runs, and that is said once.
    os.remove(out)
    os.mkdir(out)
    said = run_ok(["\\perftfile p.txt 1"], cwd=folder)
    check(said.count("info string cannot write p.out.txt") == 1 and said[-3].startswith("6/6\t8/8/"), said)


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as folder:
        suite(folder)
        broken(folder)
        perft_file(folder)
        perft_file_counts(folder)
    print("epd: all checks passed")
