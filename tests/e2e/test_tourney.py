"""Tournaments run as a script runs them. Misbehaving fake engines: every fault ends its game with the right result
and reason, every game leaves files that pgn-extract reads, the faultless side scores, and no engine process
outlives the program; bad tournament files get a clear line and leave the console working. The embedded Corvane
against real chess programs (stockfish over UCI, phalanx and the corvane program itself over XBoard) from openings
of an EPD file in a seeded random order, never losing by a fault of its own; adjudication by the scores that fake
engines report, XBoard moves in SAN and in the older forms, standard PGN in one file that pgn-extract reads with
the results of the game files and their mates. (The file after the program was killed in the middle of a game is
read by the test of resumed tournaments.)"""
import os
import shutil
import tempfile

from corvane_driver import BINARY, Session, check, debian_program, read, run_ok, sync, write
from test_book import AFTER_E4, C7C5, D2D4, E2E4, E7E5, START, polyglot_bytes
from tourney_files import engine, extracted_plies, pgn_games, play, read_game, results, standings, tourney_xml

HERE = os.path.dirname(os.path.abspath(__file__))
FAKE = os.path.join(HERE, "fake_engine.py")

# Player, protocol, parameters of the fake (None: no such program file), and what becomes of its games
# against the faultless player: (result when it has black, reason).
FAULTS = [
    ("NoHandshake", "uci", "--no-handshake", ("1-0", "forfeit")),
    ("SlowStart", "uci", "--slow-start 3", ("1/2-1/2", "triple repetition")),
    ("Blank Path", "xboard", "--crash 3", ("1-0", "engine crashed")),
    ("Missing", "xboard", None, ("1-0", "engine crashed")),
    ("ExitsAtOnce", "uci", "--exit", ("1-0", "engine crashed")),
    ("Hang", "xboard", "--hang 2", ("1-0", "forfeit")),
    ("Flood", "uci", "--flood 2", ("1/2-1/2", "triple repetition")),
]
SWAPPED = {"1-0": "0-1", "0-1": "1-0", "1/2-1/2": "1/2-1/2"}


def fault_tournament(folder):
    fake = shutil.copy(FAKE, os.path.join(folder, "fake.py"))
    # A program in a folder whose name has a blank, given in quotes as a user writes it.
    os.mkdir(os.path.join(folder, "with blank"))
    blank = shutil.copy(FAKE, os.path.join(folder, "with blank", "fake engine.py"))
    engines = [engine("Good", "uci", fake)]
    for name, protocol, parameters, _ in FAULTS:
        program = {None: os.path.join(folder, "nothing here"), "--crash 3": '"%s"' % blank}.get(parameters, fake)
        engines.append(engine(name, protocol, program, parameters or ""))
        if name == "SlowStart":
            engines.append(engine("Off", "uci", fake, active="yes"))
    ini = write(os.path.join(folder, "faults.xml"), tourney_xml("faults", "gauntlet", folder, engines, 20000,
                                                                threads=4))
    lines = play(ini, timeout=500)
    check(lines.count("# end") == 1, "one # end")
    numbered = [line.split("\t")[5:7] for line in lines if line.split("\t")[5:6] != ["result"] and "\tengine " in line]
    check([n for n, _ in numbered] == ["engine 1", "engine 2", "engine 3", "engine 5", "engine 6", "engine 7",
                                       "engine 8", "engine 9"], "an inactive engine still counts: %r" % numbered)
    found = results(lines)
    faults = len(FAULTS)
    check(sorted(found) == [(1, g) for g in range(1, 2 * faults + 1)], "each game reported once: %r" % sorted(found))
    for index, (name, _, _, (result, reason)) in enumerate(FAULTS):
        black, white = found[1, index + 1], found[1, index + 1 + faults]
        check(black[:4] == (result, reason, "Good", name), "%s with black: %r" % (name, black))
        check(white[:4] == (SWAPPED[result], reason, name, "Good"), "%s with white: %r" % (name, white))
    standings = {line.split("\t")[5].rsplit(": ", 1)[0]: line.split(": ")[-1] for line in lines
                 if line.count("\t") == 5 and ": " in line.split("\t")[5]}
    check(standings.get("Good") == "24" and standings.get("SlowStart") == "2" and standings.get("Hang") == "0",
          "standings %r" % standings)
    for (_, game_id), (result, reason, white, black, pgn) in found.items():
        tags, plies, last_word = read_game(pgn)
        check((tags["Result"], tags["Reason"], tags["White"], tags["Black"]) == (result, reason, white, black),
              "tags of game %d: %r" % (game_id, tags))
        check(tags["TimeControl"] == "300000/20" and tags["Annotator"] == "tests" and "NuvoEvent" not in tags,
              "file tags of game %d: %r" % (game_id, tags))
        check(("Forfeit_ms" in tags) == (reason == "forfeit"), "Forfeit_ms only at a forfeit: %r" % tags)
        check(last_word not in ("1-0", "0-1", "1/2-1/2", "*"), "game %d ends with its last move" % game_id)
        check(extracted_plies(pgn) == len(plies), "pgn-extract reads game %d with its %r" % (game_id, plies))
        check(os.path.exists(pgn[:-4] + ".log"), "the log of game %d" % game_id)
    check(read(os.path.join(folder, "faults.log")).count("\r\n") > 20, "the tournament log, lines joined by CR LF")
    left = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            if folder.encode() in read("/proc/%s/cmdline" % pid, "rb"):
                left.append(pid)
        except OSError:
            pass  # ended meanwhile
    check(left == [], "no engine outlives the tournament: %r" % left)


def bad_files(folder):
    missing = os.path.join(folder, "nothing.xml")
    pair = [engine("A", "uci", missing), engine("B", "uci", missing)]
    xboard_pair = [engine("A", "xboard", missing), engine("B", "xboard", missing)]
    # (file, its text, the start of the line that the program answers with)
    cases = [("empty.xml", "", "# file not found: "),
             ("text.xml", "just some words < and > no tags", "# tourney: the file has no tourney element"),
             ("noengines.xml", '<tourney name="x"><options/></tourney>', "# tourney: the file has no engines element"),
             ("one.xml", tourney_xml("one", "", folder, pair[:1], 1000), "# tourney: fewer than two active engines"),
             ("rounds.xml", tourney_xml("rounds", "", folder, pair, 1000, rounds="many"), "# end"),
             ("name.xml", tourney_xml("no/such/folder", "", folder, xboard_pair, 1000), "# cannot write the files of game 1"),
             ("many.xml", tourney_xml("many", "", folder, [engine("E%d" % n, "xboard", missing) for n in range(200)],
                                      1000, threads=1), "# ROUND 1/1 - GAMES PLAYING 1/39800")]
    session = Session(cwd=folder)
    session.send("\\tourney " + missing)
    session.read_until(lambda line: line == "# file not found: " + missing)
    for name, text, expected in cases:
        session.send("\\tourney " + write(os.path.join(folder, name), text))
        session.until(expected, timeout=60)
        sync(session)
    check(not any("\tresult\t" in line for line in session.seen if line.startswith("6\t")),
          "rounds that are no number play nothing")
    session.quit(timeout=120)  # while a tournament runs


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


def adjudications(folder):
    for index, (white, black, options, expected) in enumerate(ADJUDICATED):
        protocols = ("uci", "xboard") if index < 4 else ("xboard", "xboard")
        engines = [engine("White", protocols[0], FAKE, white), engine("Black", protocols[1], FAKE, black)]
        xml = tourney_xml("adj%d" % index, "gauntlet", folder, engines, 20000, options=options)
        lines = play(write(os.path.join(folder, "adj%d.xml" % index), xml), timeout=200)
        result, reason, _, _, pgn = results(lines)[1, 1]
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
    options = ('<openings file="%s" order="random" seed="7"/><pgnout>all.pgn</pgnout>'
               '<adjudicate resign_movecount="3" resign_score="600" maxmoves="120"/>' % epd)
    xml = tourney_xml("open", "gauntlet", logs, engines, 3000, increment_ms=50, rounds="3", options=options)
    lines = play(write(os.path.join(folder, "open%d.xml" % run), xml), timeout=500)
    check(any("no kings" not in l and "line 9" in l and "skipped" in l for l in lines), "the bad opening is skipped")
    positions = [" ".join(line.split()[:4]) for line in read(EPD).splitlines() if line.strip()]
    found = results(lines)
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
    games = sorted((r, *game[:4]) for (r, _), game in pgn_games(os.path.join(logs, "all.pgn")).items())
    from_files = sorted((int(read_game(p)[0]["Round"]), w, b, r, read_game(p)[0]["FEN"])
                        for r, _, w, b, p in found.values())
    check(games == from_files, "pgnout has the games of the game files: %r %r" % (games, from_files))
    players = {p["name"]: p for p in standings(logs, "open")["players"]}
    for name, player in players.items():
        own = [r for r, _, w, b, _ in found.values() if name in (w, b)]
        wins = sum(1 for r, _, w, b, _ in found.values() if (r, w) == ("1-0", name) or (r, b) == ("0-1", name))
        draws = own.count("1/2-1/2")
        check((player["games"], player["wins"], player["draws"], player["points"]) ==
              (len(own), wins, draws, 2 * wins + draws), "standings of %s: %r" % (name, player))
    return order


BOOK = polyglot_bytes([(START, E2E4, 3), (START, D2D4, 0), (AFTER_E4, E7E5, 1), (AFTER_E4, C7C5, 2)])


def book_openings(folder, book=BOOK):
    """The first two plies of each round's games of a round robin with openings drawn from a book."""
    write(os.path.join(folder, "book.bin"), book)
    engines = [engine("A", "embedded"), engine("B", "embedded")]
    xml = tourney_xml("book", "roundrobin", folder, engines, 2000, rounds="6",
                      options='<openings file="book.bin" plies="8" seed="7"/><adjudicate maxmoves="4"/>')
    lines = run_ok([], ["-use=tourney", "-ini=" + write(os.path.join(folder, "book.xml"), xml)], 200, cwd=folder)
    by_round = {}
    for (round_number, _), (_, _, _, _, pgn) in results(lines).items():
        tags, plies, _ = read_game(pgn)
        check("FEN" not in tags, "a book opening starts from the start position: %r" % tags)
        by_round.setdefault(round_number, set()).add(" ".join(plies[:2]))
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
    with tempfile.TemporaryDirectory(prefix="corvane_tourney_", ignore_cleanup_errors=True) as folder:
        bad_files(folder)
        fault_tournament(folder)
    with tempfile.TemporaryDirectory(prefix="corvane_openings_", ignore_cleanup_errors=True) as folder:
        book_walks(folder)
        adjudications(folder)
        first = openings_gauntlet(folder, 1)
        check(openings_gauntlet(folder, 2) == first, "the same seed plays the same openings in the same order")


if __name__ == "__main__":
    main()
