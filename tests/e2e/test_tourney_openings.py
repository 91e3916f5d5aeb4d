"""Tournaments that test engines: the embedded Corvane against real chess programs (stockfish over UCI, phalanx and
the corvane program itself over XBoard) from openings of an EPD file in a seeded random order, never losing by a
fault of its own; adjudication by the scores that fake engines report, XBoard moves in SAN and in the older forms,
standard PGN in one file that pgn-extract reads with the results of the game files and their mates. (The file
after the program was killed in the middle of a game is read by the test of resumed tournaments.)"""
import json
import os
import re
import shutil
import struct
import subprocess
import tempfile

from corvane_driver import BINARY, check, debian_program, run_ok
from tourney_files import engine, extracted_plies, play, read_game, results, tourney_xml, write

HERE = os.path.dirname(os.path.abspath(__file__))
FAKE = os.path.join(HERE, "fake_engine.py")
EPD = os.path.join(HERE, "..", "data", "wac8.epd")
# The embedded Corvane's opponents in the two runs of the same openings.
OPPONENTS = [[("Stockfish", "uci", "/usr/games/stockfish"), ("CorvaneX", "xboard", BINARY)],
             [("Phalanx", "xboard", "/usr/games/phalanx", "-l- -b-")]]
FAULTS_OF_A_SIDE = ("forfeit", "illegal move", "engine crashed")

# White's and black's fake, the adjudicate element, and the result, reason and Reason tag that end the game.
ADJUDICATED = [
    ("--score 0", "--score 5", '<adjudicate draw_movenumber="3" draw_movecount="2" draw_score="10"/>',
     ("1/2-1/2", "adjudication", "adjudication: draw by score")),
    ("--score 800", "--score -750", '<adjudicate resign_movecount="3" resign_score="700"/>',
     ("1-0", "adjudication", "adjudication: resign by score")),
    ("--score -900", "--score 900", '<adjudicate resign_movecount="2" resign_score="700" maxmoves="40"/>',
     ("0-1", "adjudication", "adjudication: resign by score")),
    ("--score 0", "--score 0", '<adjudicate maxmoves="7"/>', ("1/2-1/2", "adjudication", "adjudication: maxmoves")),
    # Moves in SAN and in both older forms at once are read once each: the cycle ends by repetition.
    ("--notation san", "--notation old", "", ("1/2-1/2", "triple repetition", "")),
]


def with_options(xml, options):
    return xml.replace("</options>", options + "</options>")


def extracted(path):
    """The games pgn-extract reads from a file: (White, Black, Round, Result) each; its complaints fail the test."""
    done = subprocess.run([debian_program("pgn-extract"), "-s", "--plycount", path], capture_output=True, timeout=60)
    check(done.returncode == 0 and not done.stderr.strip(), "pgn-extract reads %s: %r" % (path, done.stderr[-300:]))
    text = done.stdout.decode()
    games = []
    for block in text.split("[Event ")[1:]:
        tags = dict(re.findall(r'\[(\w+) "([^"]*)"\]', block))
        games.append((tags["White"], tags["Black"], tags["Round"], tags["Result"], tags.get("FEN", "")))
    return games


def adjudications(folder):
    for index, (white, black, options, expected) in enumerate(ADJUDICATED):
        protocols = ("uci", "xboard") if index < 4 else ("xboard", "xboard")
        engines = [engine("White", protocols[0], FAKE, white), engine("Black", protocols[1], FAKE, black)]
        xml = tourney_xml("adj%d" % index, "gauntlet", folder, engines, 20000)
        lines = play(write(os.path.join(folder, "adj%d.xml" % index), with_options(xml, options)), timeout=200)
        result, reason, _, _, pgn = results(lines)[1]
        tags, _, _ = read_game(pgn)
        check((result, reason, tags["Reason"] if expected[2] else "") == expected,
              "adjudication %d: %r %r" % (index, (result, reason), tags.get("Reason")))


def openings_gauntlet(folder, run):
    epd = os.path.join(folder, "openings.epd")
    shutil.copy(EPD, epd)
    with open(epd, "a") as out:
        out.write("8/8/8/8/8/8/8/8 w - - id \"no kings\";\n")
    engines = [engine("Corvane", "embedded")] + [engine(*opponent) for opponent in OPPONENTS[run - 1]]
    logs = os.path.join(folder, "run%d" % run)
    os.mkdir(logs)
    xml = tourney_xml("open", "gauntlet", logs, engines, 3000, increment_ms=50, rounds="3")
    options = ('<openings file="%s" order="random" seed="7"/><pgnout>all.pgn</pgnout>'
               '<adjudicate resign_movecount="3" resign_score="600" maxmoves="120"/>' % epd)
    lines = play(write(os.path.join(folder, "open%d.xml" % run), with_options(xml, options)), timeout=500)
    check(any("no kings" not in l and "line 9" in l and "skipped" in l for l in lines), "the bad opening is skipped")
    with open(EPD) as source:
        positions = [" ".join(line.split()[:4]) for line in source if line.strip()]
    # Game ids repeat in every round: the results are keyed by round and id.
    found = {(int(f[2]), int(f[3])): tuple(f[6:11]) for f in (line.split("\t") for line in lines)
             if len(f) >= 11 and f[5] == "result"}
    check(len(found) == 3 * 2 * (len(engines) - 1), "both colours in three rounds: %r" % sorted(found))
    by_round = {}
    for game_id, (result, reason, white, black, pgn) in found.items():
        tags, plies, _ = read_game(pgn)
        check({"1-0": black, "0-1": white}.get(result) != "Corvane" or reason not in FAULTS_OF_A_SIDE,
              "game %r lost by a fault of the embedded player: %s" % (game_id, reason))
        check(extracted_plies(pgn) == len(plies) and (reason != "mate" or extracted_plies(pgn, "-M") == len(plies)),
              "pgn-extract reads the %d plies of game %r and confirms a mate" % (len(plies), game_id))
        fen = tags.get("FEN", "")
        check(tags.get("SetUp") == "1" and " ".join(fen.split()[:4]) in positions,
              "game %r starts from an opening: %r" % (game_id, fen))
        by_round.setdefault(tags["Round"], set()).add(fen)
    check(all(len(fens) == 1 for fens in by_round.values()), "one opening a round: %r" % by_round)
    order = [next(iter(by_round[r])) for r in sorted(by_round)]
    check(len(set(order)) == 3, "three rounds, three openings: %r" % order)
    # Each opening is played by each pairing with both colours.
    pairings = sorted((w, b) for _, _, w, b, _ in found.values())
    check(all((b, w) in pairings for w, b in pairings), "colours reversed: %r" % pairings)
    games = extracted(os.path.join(logs, "all.pgn"))
    from_files = sorted((w, b, read_game(p)[0]["Round"], r, read_game(p)[0]["FEN"]) for r, _, w, b, p in found.values())
    check(sorted(games) == from_files, "pgnout has the games of the game files: %r %r" % (games, from_files))
    with open(os.path.join(logs, "open.results.json")) as standings:
        players = {p["name"]: p for p in json.load(standings)["players"]}
    for name, player in players.items():
        own = [r for r, _, w, b, _ in found.values() if name in (w, b)]
        wins = sum(1 for r, _, w, b, _ in found.values() if (r, w) == ("1-0", name) or (r, b) == ("0-1", name))
        draws = own.count("1/2-1/2")
        check((player["games"], player["wins"], player["draws"], player["points"]) ==
              (len(own), wins, draws, 2 * wins + draws), "standings of %s: %r" % (name, player))
    return order


# A hand-made polyglot book: 1.e4 of weight 3 and 1.d4 of weight 0; after 1.e4, 1...e5 of weight 1 and 1...c5 of 2.
START, AFTER_E4 = 0x463B96181691FC9C, 0x823C9B50FD114196
BOOK = b"".join(struct.pack(">QHHI", key, move, weight, 0)
                for key, move, weight in [(START, 796, 3), (START, 731, 0), (AFTER_E4, 3364, 1), (AFTER_E4, 3234, 2)])


def book_openings(folder, book=BOOK):
    """The first two plies of each round's games of a round robin with openings drawn from a book."""
    with open(os.path.join(folder, "book.bin"), "wb") as out:
        out.write(book)
    engines = [engine("A", "embedded"), engine("B", "embedded")]
    xml = tourney_xml("book", "roundrobin", folder, engines, 2000, rounds="6")
    options = '<openings file="book.bin" plies="8" seed="7"/><adjudicate maxmoves="4"/>'
    lines = run_ok([], ["-use=tourney", "-ini=" + write(os.path.join(folder, "book.xml"), with_options(xml, options))],
                   200, cwd=folder)
    by_round = {}
    for f in (line.split("\t") for line in lines):
        if len(f) >= 11 and f[5] == "result":
            tags, plies, _ = read_game(f[10])
            check("FEN" not in tags, "a book opening starts from the start position: %r" % tags)
            by_round.setdefault(int(f[2]), set()).add(" ".join(plies[:2]))
    return lines, [by_round[r] for r in sorted(by_round)]


def book_walks(folder):
    lines, rounds = book_openings(folder)
    check(len(rounds) == 6 and all(len(r) == 1 and r <= {"e2e4 e7e5", "e2e4 c7c5"} for r in rounds),
          "each round plays one walk of book moves, both colours: %r" % rounds)
    check(len(set.union(*rounds)) == 2, "both replies are drawn: %r" % rounds)
    check(book_openings(folder)[1] == rounds, "the same seed draws the same openings")
    lines, _ = book_openings(folder, BOOK[:-1])
    check(any("size 63 is no multiple of 16" in l for l in lines) and any("the tournament stops" in l for l in lines),
          "a damaged book stops the tournament: %r" % lines[-3:])


def main():
    for program in ("stockfish", "phalanx", "pgn-extract"):
        debian_program(program)
    with tempfile.TemporaryDirectory(prefix="corvane_openings_", ignore_cleanup_errors=True) as folder:
        book_walks(folder)
        adjudications(folder)
        first = openings_gauntlet(folder, 1)
        check(openings_gauntlet(folder, 2) == first, "the same seed plays the same openings in the same order")


if __name__ == "__main__":
    main()
