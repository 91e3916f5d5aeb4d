#!/usr/bin/env python3
"""epd_reference.py SUITE COUNT SECONDS: the reference line of epd-wac.sh. Debian's stockfish searches the first
COUNT positions of SUITE for SECONDS each; its move passes as corvane's \\epd scores it (the bm move, or any move
but the am move), with pgn-extract turning the SAN of the suite into coordinates."""
import subprocess
import sys
import tempfile

STOCKFISH, PGN_EXTRACT = "/usr/games/stockfish", "/usr/games/pgn-extract"


def coordinates(fen, san):
    """The coordinate text of a SAN move of the position, as pgn-extract reads it; empty when it reads none."""
    with tempfile.NamedTemporaryFile("w", suffix=".pgn") as pgn:
        pgn.write('[SetUp "1"]\n[FEN "%s 0 1"]\n\n1%s %s *\n' % (fen, "..." if " b " in fen + " " else ".", san))
        pgn.flush()
        out = subprocess.run([PGN_EXTRACT, "-Wuci", "--quiet", pgn.name], capture_output=True, text=True).stdout
    words = " ".join(l for l in out.splitlines() if not l.startswith("[")).split()
    return words[0] if words and words[0] != "*" else ""


def operation(line, key):
    for piece in line.split(";"):
        words = piece.strip().split(" ", 1)
        if words[0] == key and len(words) > 1:
            return words[1].strip()
    return ""


def main():
    suite, count, seconds = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
    lines = [l.strip() for l in open(suite) if l.strip()][:count]
    engine = subprocess.Popen([STOCKFISH], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
    solved = 0
    for line in lines:
        fen = " ".join(line.split()[:4])
        engine.stdin.write("position fen %s 0 1\ngo movetime %d\n" % (fen, seconds * 1000))
        best = ""
        while not best:
            reply = engine.stdout.readline().split()
            if reply and reply[0] == "bestmove":
                best = reply[1]
        bm, am = operation(line[len(fen):], "bm"), operation(line[len(fen):], "am")
        avoided = coordinates(fen, am) if am else ""
        if (bm and best == coordinates(fen, bm)) or (avoided and best != avoided):
            solved += 1
    engine.stdin.write("quit\n")
    engine.wait()
    print("test results: %d/%d %02d%%" % (solved, len(lines), solved * 100 // len(lines)))


if __name__ == "__main__":
    main()
