"""Tournament files for the end-to-end tests, and readers of what a tournament leaves behind."""
import json
import os
import re
import subprocess

from corvane_driver import check, debian_program, read, run_ok


def engine(name, protocol, filename="", parameters="", active="true"):
    return ('<engine name="%s" protocol="%s" active="%s"><filename>%s</filename>'
            '<parameters>%s</parameters></engine>' % (name, protocol, active, filename, parameters))


def tourney_xml(name, kind, folder, engines, game_ms, increment_ms=0, threads=2, pace_ms=0, rounds="1", options=""):
    """options: further elements of the options element."""
    return ('<?xml version="1.0"?>\n<tourney name="%s" type="%s">\n'
            '<options><rounds>%s</rounds><logfolder>%s</logfolder><threads>%d</threads><pace_ms>%d</pace_ms>'
            '<clock game_ms="%d" increment_ms="%d"/>%s</options>\n<engines>\n%s\n</engines>\n'
            '<pgn><header><Annotator>tests</Annotator><NuvoEvent>ignored</NuvoEvent></header></pgn>\n'
            '</tourney>\n' % (name, kind, rounds, folder, threads, pace_ms, game_ms, increment_ms, options,
                              "\n".join(engines)))


def play(ini, timeout):
    """Runs a tournament the way a script does, which ends the program with status 0; returns the output lines."""
    return run_ok([], ["-use=tourney", "-ini=" + ini], timeout)


def log_result(line):
    fields = line.split("\t")
    return len(fields) >= 11 and fields[5] == "result"


def results(lines):
    """The result lines of the log: (round, game id) -> (result, reason, white, black, pgn path)."""
    rows = [line.split("\t") for line in lines if log_result(line)]
    return {(int(f[2]), int(f[3])): tuple(f[6:11]) for f in rows}


def standings(folder, name):
    return json.loads(read(os.path.join(folder, name + ".results.json")))


def pgn_games(path):
    """The games of a pgnout file by (Round, GameId): White, Black, Result, FEN and the move text; pgn-extract
    reads each of them without a complaint."""
    blocks = read(path).strip().split("\n\n")
    games = {}
    for head, moves in zip(blocks[0::2], blocks[1::2]):
        tags = dict(line[1:-1].split(" ", 1) for line in head.splitlines())
        tags = {name: value.strip('"') for name, value in tags.items()}
        key = (int(tags["Round"]), int(tags["GameId"]))
        check(key not in games, "%s holds round %d game %d once" % (path, *key))
        games[key] = (tags["White"], tags["Black"], tags["Result"], tags.get("FEN", ""), " ".join(moves.split()))
    done = subprocess.run([debian_program("pgn-extract"), "-s", path], capture_output=True, timeout=60)
    check(done.returncode == 0 and not done.stderr.strip() and done.stdout.count(b"[Event ") == len(games),
          "pgn-extract reads the %d games of %s: %r" % (len(games), path, done.stderr[-300:]))
    return games


def read_game(path):
    """The tags, the words of the move text other than move numbers, and the last of those words."""
    text = read(path)
    head, _, moves = text.partition("\r\n\r\n")
    tags = dict(line[1:-1].split(" ", 1) for line in head.split("\r\n") if line.startswith("["))
    words = moves.split()
    plies = [word for word in words if not word.endswith(".")]
    return {name: value.strip('"') for name, value in tags.items()}, plies, plies[-1] if plies else ""


def extracted_plies(path, *options):
    """The plies pgn-extract reads from a game file, or None when it finds no game there."""
    # A game file keeps its result in the Result tag alone; pgn-extract wants the move text closed by it.
    text = read(path, "rb")
    match = re.search(rb'\[Result "([^"]*)"\]', text)
    closing = match.group(1) if match and match.group(1) in (b"1-0", b"0-1", b"1/2-1/2") else b"*"
    done = subprocess.run([debian_program("pgn-extract"), "--quiet", "--plycount", *options],
                          input=text + b" " + closing + b"\r\n", capture_output=True, timeout=60)
    for line in done.stdout.decode(errors="replace").splitlines():
        if line.startswith("[PlyCount "):
            return int(line.split('"')[1])
    return None

