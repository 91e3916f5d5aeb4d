"""A tournament of misbehaving fake engines, run as a script runs it: every fault ends its game with the
right result and reason, every game leaves files that pgn-extract reads, the faultless side scores, and no
engine process outlives the program. Bad tournament files get a clear line and leave the console working."""
import os
import shutil
import tempfile

from corvane_driver import Session, check, sync
from tourney_files import engine, extracted_plies, play, processes_of, read_game, results, tourney_xml, write

FAKE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "fake_engine.py")

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
    check(sorted(found) == list(range(1, 2 * faults + 1)), "each game reported once: %r" % sorted(found))
    for index, (name, _, _, (result, reason)) in enumerate(FAULTS):
        check(found[index + 1][:4] == (result, reason, "Good", name), "%s with black: %r" % (name, found[index + 1]))
        check(found[index + 1 + faults][:4] == (SWAPPED[result], reason, name, "Good"),
              "%s with white: %r" % (name, found[index + 1 + faults]))
    standings = {line.split("\t")[5].rsplit(": ", 1)[0]: line.split(": ")[-1] for line in lines
                 if line.count("\t") == 5 and ": " in line.split("\t")[5]}
    check(standings.get("Good") == "24" and standings.get("SlowStart") == "2" and standings.get("Hang") == "0",
          "standings %r" % standings)
    for game_id, (result, reason, white, black, pgn) in found.items():
        tags, plies, last_word = read_game(pgn)
        check((tags["Result"], tags["Reason"], tags["White"], tags["Black"]) == (result, reason, white, black),
              "tags of game %d: %r" % (game_id, tags))
        check(tags["TimeControl"] == "300000/20" and tags["Annotator"] == "tests" and "NuvoEvent" not in tags,
              "file tags of game %d: %r" % (game_id, tags))
        check(("Forfeit_ms" in tags) == (reason == "forfeit"), "Forfeit_ms only at a forfeit: %r" % tags)
        check(last_word not in ("1-0", "0-1", "1/2-1/2", "*"), "game %d ends with its last move" % game_id)
        check(extracted_plies(pgn) == len(plies), "pgn-extract reads game %d with its %r" % (game_id, plies))
        check(os.path.exists(pgn[:-4] + ".log"), "the log of game %d" % game_id)
    with open(os.path.join(folder, "faults.log"), newline="") as log:
        check(log.read().count("\r\n") > 20, "the tournament log, lines joined by CR LF")
    check(processes_of(folder) == [], "no engine outlives the tournament")


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


if __name__ == "__main__":
    with tempfile.TemporaryDirectory(prefix="corvane_tourney_", ignore_cleanup_errors=True) as folder:
        bad_files(folder)
        fault_tournament(folder)
