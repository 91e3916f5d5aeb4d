"""Self-play and learning through the real program: the moves of a game checked by stockfish, and the files of a
learning run, resumed."""
import os
import re
import signal
import tempfile

from corvane_driver import CORVANE, Referee, Session, check, run_ok

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
    with open(os.path.join(folder, OPENINGS), "w", newline="") as f:
        f.write("".join("3\t2\t1\t%s\r\n" % fen for fen in fens))


def learn_lines(folder, command):
    """The output of a script that runs command and then asks: the question waits for the run's end."""
    output = run_ok([command, "isready", "quit"], CORVANE, timeout=300, cwd=folder)
    check(output[-2:] == ["readyok", "info string end"], output[-5:])
    return output[:-2]


def blocks(path):
    """The blocks of a result file as lists of field lists; every line ends tab CR LF, every block CR LF."""
    text = open(path, newline="").read()
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
        with open(os.path.join(folder, "learn.%03d.csv" % generation), newline="") as f:
            check(f.read() == "".join("\t".join(row) + "\t\r\n" for row in block) + "\r\n", generation)
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
        with open(os.path.join(folder, "r.csv"), "w", newline="") as f:
            f.write(text + "\r\n")
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
    with open(PAIR) as pair, open(os.path.join(folder, "tourney.xml"), "w") as f:
        f.write(pair.read().replace('type="learning"', 'type="gauntlet"'))
    output = learn_lines(folder, "\\learnt")
    trials = [re.match(r"^info string =================> (\d+) = (\d+)$", l) for l in output if "=====>" in l]
    check([int(t.group(1)) for t in trials if t] == list(range(10)), output)
    check(all(0 <= int(t.group(2)) <= 4 for t in trials), trials)
    # The current engine's soul text has sixteen tabs: the last soul tried has seventeen numbers.
    soul = open(os.path.join(folder, "soul.txt")).read()
    check(soul.startswith("9=") and len(soul[2:].split("\t")) == 17, soul)


if __name__ == "__main__":
    play()
    for scenario in (learn, learn_input, soul_trials):
        with tempfile.TemporaryDirectory() as folder:
            scenario(folder)
    print("selfplay: all checks passed")
