"""Tournaments at scale: a match that its sequential test ends at the game worked out by hand, a tournament killed
twice in the middle of a game and resumed, and shards played under GNU parallel whose merged report equals the
standings of the same tournament played whole, game for game."""
import json
import os
import signal
import subprocess
import tempfile

from corvane_driver import BINARY, Session, check, debian_program, run_ok
from tourney_files import engine, play, tourney_xml, write

HERE = os.path.dirname(os.path.abspath(__file__))
FAKE = os.path.join(HERE, "fake_engine.py")
START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
OPENINGS = [START, "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2",
            "rnbqkbnr/ppp1pppp/8/3p4/3P4/8/PPP1PPPP/RNBQKBNR w KQkq - 0 2"]


def with_options(xml, options):
    return xml.replace("</options>", options + "</options>")


def pgn_games(path):
    """The games of a pgnout file by (Round, GameId): White, Black, Result, FEN and the move text."""
    with open(path) as pgn:
        blocks = pgn.read().strip().split("\n\n")
    games = {}
    for head, moves in zip(blocks[0::2], blocks[1::2]):
        tags = dict(line[1:-1].split(" ", 1) for line in head.splitlines())
        tags = {name: value.strip('"') for name, value in tags.items()}
        key = (int(tags["Round"]), int(tags["GameId"]))
        check(key not in games, "%s holds round %d game %d once" % (path, *key))
        games[key] = (tags["White"], tags["Black"], tags["Result"], tags.get("FEN", ""), " ".join(moves.split()))
    done = subprocess.run([debian_program("pgn-extract"), "-s", path], capture_output=True, timeout=60)
    check(done.returncode == 0 and not done.stderr.strip(), "pgn-extract reads %s: %r" % (path, done.stderr[-300:]))
    return games


def log_result(line):
    fields = line.split("\t")
    return len(fields) >= 7 and fields[5] == "result"


def sprt(folder):
    # The first player's pairs score 1, 0.5, 0.75, 0.75. elo0 0 expects 0.5 and elo1 400 log10(3) expects 0.75;
    # the bounds are ln(0.05/0.95) and ln(0.95/0.05) = -+2.944. After pair 3: m 0.75, v 0.125/3, LLR 3/2 0.0625 / v
    # = 2.25, go on; after pair 4: v 0.03125, LLR 4/2 0.0625 / v = 4: "H1 accepted" at game 8 of the 20.
    plan = "ww" "wl" "wd" "dw" + "l" * 12
    epd = write(os.path.join(folder, "start.epd"), START + "\n")
    engines = [engine("A", "xboard", FAKE, "--plan %s --tally %s/a.tally" % (plan, folder)),
               engine("B", "xboard", FAKE, "--plan %s --tally %s/b.tally --second" % (plan, folder))]
    xml = tourney_xml("sprt", "gauntlet", folder, engines, 20000, threads=1, rounds="10")
    options = ('<openings file="%s"/><pgnout>sprt.pgn</pgnout>'
               '<sprt elo0="0" elo1="190.84850188786497" alpha="0.05" beta="0.05"/>' % epd)
    lines = play(write(os.path.join(folder, "sprt.xml"), with_options(xml, options)), timeout=300)
    check(sum(map(log_result, lines)) == 8 and len(pgn_games(os.path.join(folder, "sprt.pgn"))) == 8,
          "the match stops at game 8: %r" % [l for l in lines if log_result(l)])
    check(any("H1 accepted" in line for line in lines), "the verdict is said")
    with open(os.path.join(folder, "sprt.results.json")) as standings:
        test = json.load(standings)["sprt"]
    check(abs(test["llr"] - 4) < 0.01 and abs(test["upper_bound"] - 2.944) < 0.001 and
          test["verdict"] == "H1 accepted", "the test in the standings: %r" % test)


def killed_in_a_game(ini, *switches):
    """Runs the tournament until a game has ended and the next has shown a move, then kills the program."""
    session = Session(["-use=tourney", "-ini=" + ini, *switches])
    resumed = session.read_until(lambda l: "resume:" in l or log_result(l), timeout=300) if switches else ""
    session.read_until(log_result, timeout=300)
    session.read_until(lambda l: l.startswith("#\tG") and "\tmove " in l, timeout=300)
    session.process.send_signal(signal.SIGKILL)
    session.process.wait()
    return resumed


def resume(folder):
    engines = [engine("A", "uci", FAKE, "--garbage"), engine("B", "uci", FAKE, "--garbage")]
    xml = tourney_xml("res", "round robin", folder, engines, 60000, threads=1, rounds="4")
    ini = write(os.path.join(folder, "res.xml"), with_options(xml, "<pgnout>res.pgn</pgnout><verbose>true</verbose>"))
    pgn = os.path.join(folder, "res.pgn")
    killed_in_a_game(ini)
    played = len(pgn_games(pgn))
    # A kill in the middle of an append leaves half a game behind.
    with open(pgn) as text:
        first = text.read().split("\n\n[")[0]
    with open(pgn, "a") as text:
        text.write(first[:len(first) * 2 // 3])
    taken = killed_in_a_game(ini, "-resume")
    check("resume: %d games taken up" % played in taken and ", 1 cut short" in taken, "resumed: %r" % taken)
    lines = run_ok([], ["-use=tourney", "-ini=" + ini, "-resume"], 300)
    games = pgn_games(pgn)
    check(sorted(games) == [(r, g) for r in range(1, 5) for g in (1, 2)], "every game once: %r" % sorted(games))
    with open(os.path.join(folder, "res.results.json")) as standings:
        players = json.load(standings)["players"]
    check([p["games"] for p in players] == [8, 8], "the standings count each game once: %r" % players)
    check(any("tournament has finished" in l for l in lines), "the last run ends the tournament")


def shards(folder):
    epd = write(os.path.join(folder, "three.epd"), "\n".join(OPENINGS) + "\n")
    engines = [engine("A", "uci", FAKE), engine("B", "uci", FAKE), engine("C", "uci", FAKE, "--line mate")]
    options = '<openings file="%s" order="random" seed="3"/><pgnout>all.pgn</pgnout>' % epd
    stores = {}
    for kind in ("whole", "shards"):
        logs = os.path.join(folder, kind)
        os.mkdir(logs)
        xml = tourney_xml("sh", "round robin", logs, engines, 60000, threads=2, rounds="5")
        stores[kind] = (logs, write(os.path.join(folder, kind + ".xml"), with_options(xml, options)))
    logs, ini = stores["whole"]
    play(ini, timeout=400)
    with open(os.path.join(logs, "sh.results.json")) as standings:
        whole = json.load(standings)
    games = pgn_games(os.path.join(logs, "all.pgn"))
    logs, ini = stores["shards"]
    done = subprocess.run([debian_program("parallel", "/usr/bin/parallel"), BINARY, "-use=tourney", "-ini=" + ini, "-shard={}/4", ":::", "1", "2", "3", "4"],
                          capture_output=True, timeout=500)
    check(done.returncode == 0, "parallel runs the shards: %r" % done.stderr[-300:])
    for name in ("sh.S2.log", "sh.S2.T1.R2.G1.pgn", "all.S2.pgn", "sh.S2.results.json", "sh.S1.T1.R5.G6.pgn"):
        check(os.path.exists(os.path.join(logs, name)), "a shard leaves %s" % name)
    pieces = {}
    for k in range(1, 5):
        part = pgn_games(os.path.join(logs, "all.S%d.pgn" % k))
        check(all((r - 1) % 4 == k - 1 for r, _ in part), "shard %d plays its rounds: %r" % (k, sorted(part)))
        pieces.update(part)
    check(pieces == games, "the shards play the games of the whole tournament")
    # A shard's file named twice counts once.
    files = ["all.S%d.pgn" % k for k in (1, 2, 3, 4, 1)]
    run_ok([], ["-use=report", *files], cwd=logs)
    with open(os.path.join(logs, "report.results.json")) as standings:
        report = json.load(standings)
        check(report == whole, "the report equals the standings of the whole tournament: %r %r" % (report, whole))
    garbage = write(os.path.join(folder, "garbage.pgn"), '[Event "x\n1. e4 {open\n\x01\x02 [[[ 1-0\n[White "A"]\n')
    out = os.path.join(folder, "bad.json")
    lines = run_ok([], ["-use=report", os.path.join(folder, "missing.pgn"), garbage, "-out=" + out], cwd=folder)
    check(any('cannot read "%s"' % os.path.join(folder, "missing.pgn") in l for l in lines) and os.path.exists(out),
          "bad input gets a message: %r" % lines)


def without_pauses(folder):
    """Three slots for two games a round: the third takes a game of round 2 at once. A UCI program that ended its
    game soundly plays its player's next one, so no more programs start than can play at once."""
    engines = [engine("A", "uci", FAKE), engine("B", "uci", FAKE)]
    xml = tourney_xml("fast", "round robin", folder, engines, 60000, threads=3, rounds="3")
    lines = play(write(os.path.join(folder, "fast.xml"), with_options(xml, "<verbose>true</verbose>")), 300)
    first = next(i for i, line in enumerate(lines) if log_result(line))
    started = sum("\tnew match: " in line for line in lines[:first])
    starts = [sum("waiting for '%s' initialization" % name in line for line in lines) for name in "AB"]
    check(started == 3 and max(starts) <= 3 and sum(map(log_result, lines)) == 6,
          "three games before the first result, at most three programs a player: %d %r" % (started, starts))


def main():
    debian_program("pgn-extract")
    debian_program("parallel", "/usr/bin/parallel")
    with tempfile.TemporaryDirectory(prefix="corvane_scale_", ignore_cleanup_errors=True) as folder:
        sprt(folder)
        without_pauses(folder)
        resume(folder)
        shards(folder)


if __name__ == "__main__":
    main()
