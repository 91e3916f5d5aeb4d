"""Self-play, learning and the file tests through the real program: the moves of a game checked by stockfish, the
files of a learning run, resumed; an EPD suite of known answers scored to the exact result line, files that hold no
usable positions, and perft over a file with both engines, resumed, with wrong counts."""
import os
import re
import shutil
import signal
import tempfile

from corvane_driver import CORVANE, START_FEN, Referee, Session, check, read, run_ok, write

MOVE = re.compile(r"^[a-h][1-8][a-h][1-8][nbrq]?$")
OPENINGS = "ficsgamesdb_2014_standard2000_nomovetimes_1286521.txt"
BALANCED = ["rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1",
            "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2"]
SIMPLE5 = "7 20 20 5 5 8 8 10 10 20 5 1 5 15 5 10".split()
NAMES = {"'ORIGINAL'", "'The Barbarian'", "'Take a Pebble'"}
# Two embedded players with a tiny clock.
PAIR = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data", "embedded_pair.xml")


def play():
    words = run_ok(["\\play 50 16"], timeout=120)[0].split()
    check(len(words) == 17 and words[-1] == "0", words)
    referee = Referee()
    for i, move in enumerate(words[:-1]):
        check(MOVE.match(move) and move in referee.legal_moves(words[:i]), "move %d: %s" % (i, words))
    referee.close()
    for help_case in ("\\play 0 10", "\\play 100"):
        check(run_ok([help_case])[0] == "info string \\play ms_per_move max_moves file.pgn [soulA soulB]", help_case)


def write_openings(folder, fens):
    # A position table as the book builder writes it: wins, draws, losses, FEN.
    write(os.path.join(folder, OPENINGS), "".join("3\t2\t1\t%s\r\n" % fen for fen in fens))


def learn_lines(folder, command):
    """The output of a script that runs command and then asks: the question waits for the run's end."""
    output = run_ok([command, "isready", "quit"], CORVANE, timeout=300, cwd=folder)
    check(output[-2:] == ["readyok", "info string end"], output[-5:])
    return output[:-2]


def blocks(path):
    """The blocks of a result file as lists of field lists; every line ends tab CR LF, every block CR LF."""
    text = read(path)
    check(text.endswith("\r\n\r\n"), repr(text[-40:]))
    found = []
    for block in text.split("\r\n\r\n")[:-1]:
        lines = block.split("\r\n")
        check(all(l.endswith("\t") for l in lines), lines)
        found.append([l[:-1].split("\t") for l in lines])
    return found


def learn(folder):
    write_openings(folder, BALANCED)
    output = learn_lines(folder, "\\learn learn.csv 3 3 20 6")
    check(output[0] == "info string using 2 book lines", output)
    result = os.path.join(folder, "learn.csv")
    first = blocks(result)
    check(len(first) == 2, first)
    for generation, block in enumerate(first, 1):
        check([row[:2] for row in block] == [[str(generation), str(rank)] for rank in (1, 2, 3)], block)
        check({row[2] for row in block} == NAMES and all(len(row) == 20 for row in block), block)
        check(sum(int(row[3]) for row in block) == 0, block)
        check([row[4:] for row in block if row[2] == "'ORIGINAL'"] == [SIMPLE5], block)
        check(read(os.path.join(folder, "learn.%03d.csv" % generation)) ==
              "".join("\t".join(row) + "\t\r\n" for row in block) + "\r\n", generation)
    # The resumed run starts from the last block and adds one generation.
    output = learn_lines(folder, "\\learn learn.csv 4 3 20 6")
    resumed = [l.split("\t")[2:] for l in output if re.match(r"^\t\d\t'", l)]
    check(sorted(resumed) == sorted(row[2:] + [""] for row in first[1]), resumed)
    check(sum("GENERATION" in l for l in output) == 1, output)
    after = blocks(result)
    check(after[:2] == first and len(after) == 3 and after[2][0][0] == "3", after)
    check([row[4:] for row in after[2] if row[2] == "'ORIGINAL'"] == [SIMPLE5], after)
    check(os.path.exists(os.path.join(folder, "learn.003.csv")), "no file of generation 3")


def learn_input(folder):
    write_openings(folder, BALANCED)
    # One member plays nobody: its name, score and soul come back in the next block, points as commas. Damaged
    # files are said to be so, and the run goes on.
    soul = [str(n) for n in range(1, 17)]
    cases = [("4\t1\t'L.A. Nights'\t5\t" + "\t".join(soul) + "\t\r\n", 6, 1, None),
             ("2\t1\t'Clotho'\t1\t7\t20", 3, 1, "incomplete line in r.csv"),
             ("2\t1\t'Clotho'\tabc" + "\tx" * 16 + "\t", 3, 1, "text in a number field of r.csv, read as 0"),
             ("2\t1\t'Clotho'\t0" + "\t1" * 16 + "\t", 3, 2, "has 1 lines for 2 members")]
    for text, generations, members, remark in cases:
        write(os.path.join(folder, "r.csv"), text + "\r\n")
        output = learn_lines(folder, "\\learn r.csv %d %d 20 6" % (generations, members))
        check(remark is None or any(remark in l for l in output), output)
        if remark is None:
            check(blocks(os.path.join(folder, "r.csv"))[-1] == [["5", "1", "'L,A, Nights'", "5"] + soul], "dots")
            check(os.path.exists(os.path.join(folder, "r.005.csv")), "no file of generation 5")
    # An interrupt ends a long run once the generation under way is written; a line typed meanwhile is
    # answered behind it, and the same command resumes the run.
    # A child of a test run in the background of a shell would inherit interrupts ignored, and rightly keep
    # ignoring them: this process catches them instead, so that the child starts with the usual handling.
    signal.signal(signal.SIGINT, signal.default_int_handler)
    session = Session(CORVANE, cwd=folder)
    session.send("\\learn i.csv 100 2 20 4")
    session.read_until(lambda l: "GENERATION 1" in l, 120)
    session.send("isready")
    session.process.send_signal(signal.SIGINT)
    stopped = session.until("info string learning stopped before generation ", 300)
    session.read_until(lambda l: l == "readyok", 300)
    session.quit(300)
    next_generation = int(stopped.split()[-1])
    check([b[0][0] for b in blocks(os.path.join(folder, "i.csv"))] == [str(g) for g in range(1, next_generation)],
          next_generation)
    output = learn_lines(folder, "\\learn i.csv %d 2 20 4" % (next_generation + 1))
    check([l.split()[-1] for l in output if "GENERATION" in l] == [str(next_generation)], output)
    write_openings(folder, ["4k3/8/8/8/8/8/8/QQQQK3 w - - 0 1"])
    output = learn_lines(folder, "\\learn u.csv 3 2 20 6")
    check(any("no opening within a pawn" in l for l in output), output)
    os.remove(os.path.join(folder, OPENINGS))
    output = learn_lines(folder, "\\learn u.csv 3 2 20 6")
    check(output[0] == "info string can't load book file: " + OPENINGS, output)
    for line, count in (("\\learn a 1 1 0 1", 2), ("\\learn u.csv 2 82 20 6", 1)):
        check(len(learn_lines(folder, line)) == count, line)


def soul_trials(folder):
    # Ten random souls, each through a gauntlet of two games from the default tourney.xml: 0 to 4 points.
    write(os.path.join(folder, "tourney.xml"), read(PAIR).replace('type="learning"', 'type="gauntlet"'))
    output = learn_lines(folder, "\\learnt")
    trials = [re.match(r"^info string =================> (\d+) = (\d+)$", l) for l in output if "=====>" in l]
    check([int(t.group(1)) for t in trials if t] == list(range(10)), output)
    check(all(0 <= int(t.group(2)) <= 4 for t in trials), trials)
    # The current engine's soul text has sixteen tabs: the last soul tried has seventeen numbers.
    soul = read(os.path.join(folder, "soul.txt"))
    check(soul.startswith("9=") and len(soul[2:].split("\t")) == 17, soul)


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
    write(os.path.join(folder, name), "\r\n".join(lines) + "\r\n\r\n")
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
    write(os.path.join(folder, "long.epd"), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - bm e4;\n" * 100000)
    session = Session(cwd=folder)
    session.send("\\epd 0:01 long.epd")
    session.until("info string testing: ", 120)
    session.send("isready")
    session.read_until(lambda l: l == "readyok", 60)
    session.quit(60)


def perft_file(folder):
    """Every position of the depth-3 file counts as expected, with either engine; the file's name is quoted."""
    fens = [line.split(",")[0] for line in read(PERFT_FILE).splitlines() if line.strip()]
    for engine in ("vesko", "corvane"):
        path = shutil.copy(PERFT_FILE, os.path.join(folder, engine + " d3.txt"))
        output = run_ok(["\\" + engine, '\\perftfile "%s" 3' % path, "quit"], timeout=300)
        check("starting perft from perft line 0" in output, output[:5])
        lines = read(os.path.join(folder, engine + " d3.out.txt")).split("\r\n")
        check(lines[-1] == "" and len(lines) == len(fens) + 1, (engine, len(lines)))
        for fen, line in zip(fens, lines):
            check(line.startswith(fen + "\t[TIME_MS=") and line.endswith("]\t[STATUS=OK]"), (engine, line))


START, MATED = START_FEN, "R5k1/5ppp/8/8/8/8/5PPP/6K1 b - - 1 1"
# A perft file at depth 1: (line, nodes, status). The count stands behind the last comma, and 0 or text always
# passes; a line without a comma counts its FEN's leading number, 8 here; a position without moves keeps its FEN
# alone. An earlier run did the first line; a line of blanks is no line.
PERFT_LINES = [(START + ",D1,999", 20, None), (START + ",D1,20", 20, "OK"), (START + ",D1,21", 20, "ERROR"),
               ("  ", 0, None), (START + ",x", 20, "OK"), (MATED + ",D1,0", 0, ""),
               ("8/8/8/8/8/8/8/K1k5 w - - 0 1", 1, "ERROR")]


def perft_file_counts(folder):
    write(os.path.join(folder, "p.txt"), "\n".join(line for line, _, _ in PERFT_LINES) + "\n")
    out = write(os.path.join(folder, "p.out.txt"), "old\r\n")
    # Without a file, the current position is counted and its line said.
    said = run_ok(["\\perftfile 2", "\\perftfile p.txt 1", "\\perftfile missing.txt 1"], cwd=folder)
    check(re.match(START.split()[0] + r" w [^\t]*\t\[TIME_MS=\d+\]\t\[NPS=\d+\]\t\[STATUS=OK\]$", said[3])
          and said[4] == "starting perft from perft line 1" and said[5].startswith("2/6\t" + START), said)
    check(said[-2:] == ["starting perft from perft line 0", "info string end"], said)
    written = read(out).split("\r\n")
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
    play()
    for scenario in (learn, learn_input, soul_trials):
        with tempfile.TemporaryDirectory() as folder:
            scenario(folder)
    with tempfile.TemporaryDirectory() as folder:
        suite(folder)
        broken(folder)
        perft_file(folder)
        perft_file_counts(folder)
    print("selfplay: all checks passed")
