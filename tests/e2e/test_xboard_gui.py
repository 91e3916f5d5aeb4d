"""Whole games in a real GUI: Debian's xboard, on a virtual screen, plays a short match between Corvane and
phalanx. Every game must end by the rules of chess, and every move Corvane made must be legal: xboard
referees the moves as they come, and pgn-extract replays the saved games once more on its own."""
import os
import re
import signal
import subprocess
import tempfile

from corvane_driver import BINARY, check

XBOARD = "/usr/games/xboard"
OPPONENT = "/usr/games/phalanx"
PGN_EXTRACT = "/usr/games/pgn-extract"
GAMES = 2
# Seconds a side, and seconds added per move: short, but clean for both engines.
BASE_SECONDS, INCREMENT_SECONDS = 20, 1
# Far more than two games at that control take, with their clocks called by xboard.
MATCH_SECONDS = 400

# How a game may end: by the board, by a draw rule, by resignation, or by the opponent's clock.
BOARD_ENDINGS = re.compile(r"checkmate|mates|stalemate|repetition|50.move|insufficient material|resigns|"
                           r"draw", re.IGNORECASE)
LOST_ON_TIME = re.compile(r"(White|Black) wins on time", re.IGNORECASE)


def play_match(folder, engine_arguments):
    """Runs the match under a virtual X server and returns (xboard's output, games, debug log)."""
    home = os.path.join(folder, "home")
    os.makedirs(home)
    games = os.path.join(folder, "games.pgn")
    debug = os.path.join(folder, "xboard.debug")
    command = ["xvfb-run", "-a", "-s", "-screen 0 1280x1024x24", XBOARD,
               "-fcp", " ".join([os.path.abspath(BINARY), *engine_arguments]), "-fd", folder,
               "-scp", OPPONENT, "-sd", folder,
               "-mg", str(GAMES), "-tc", "0:%02d" % BASE_SECONDS, "-inc", str(INCREMENT_SECONDS),
               "-autoCallFlag", "true", "-saveGameFile", games, "-popupExitMessage", "false",
               "-debug", "-nameOfDebugFile", debug]
    # xboard keeps its settings in the home folder; a private one keeps runs apart. The virtual server,
    # xboard and the engines share a process group of their own, so that a stuck match goes as a whole.
    run = subprocess.Popen(command, env=dict(os.environ, HOME=home), stdout=subprocess.PIPE,
                           stderr=subprocess.STDOUT, start_new_session=True)
    try:
        output = run.communicate(timeout=MATCH_SECONDS)[0]
    except subprocess.TimeoutExpired:
        os.killpg(run.pid, signal.SIGKILL)
        output = run.communicate()[0]
        with open(debug, errors="replace") as f:
            tail = f.read()[-3000:]
        raise AssertionError("the match did not end within %d s; xboard's log ends with:\n%s" % (MATCH_SECONDS, tail))
    with open(games, errors="replace") as f:
        pgn = f.read()
    with open(debug, errors="replace") as f:
        log = f.read()
    return output.decode(errors="replace"), pgn, log


def split_games(pgn):
    """Each game as (tags, moves in SAN, the comment that ends it, result)."""
    games = []
    for block in re.split(r"\n(?=\[Event )", pgn.strip()):
        tags = dict(re.findall(r'^\[(\w+) "(.*)"\]$', block, re.MULTILINE))
        body = "\n".join(l for l in block.splitlines() if not l.startswith("["))
        comments = re.findall(r"\{([^}]*)\}", body)
        text = re.sub(r"\{[^}]*\}", " ", body)
        words = text.split()
        result = words[-1] if words else ""
        moves = [w for w in words[:-1] if not re.match(r"^\d+\.+$", w)]
        games.append((tags, moves, comments[-1] if comments else "", result))
    return games


def check_game(tags, moves, ending, result, name):
    corvane_white = tags.get("White") == name
    check(corvane_white or tags.get("Black") == name, "Corvane did not play: %r" % tags)
    check(result in ("1-0", "0-1", "1/2-1/2"), "game without a result: %r %r" % (ending, result))
    check(tags.get("Result") == result, "result tag %r, game %r" % (tags.get("Result"), result))
    on_time = LOST_ON_TIME.search(ending)
    if on_time:
        # Only the opponent may run out of time.
        check((on_time.group(1) == "White") == corvane_white, "Corvane lost on time: %r" % ending)
    else:
        check(BOARD_ENDINGS.search(ending) and "illegal" not in ending.lower(), "abnormal ending: %r" % ending)
    return len(moves[0::2] if corvane_white else moves[1::2])


def match(engine_arguments, name):
    with tempfile.TemporaryDirectory() as folder:
        output, pgn, log = play_match(folder, engine_arguments)
        final = re.search(r"Match %s vs\. .*: final score (\d+)-(\d+)-(\d+)" % re.escape(name), output)
        check(final and sum(int(x) for x in final.groups()) == GAMES, "no match result: %s" % output[-2000:])
        games = split_games(pgn)
        check(len(games) == GAMES, "%d games saved: %s" % (len(games), pgn[-2000:]))
        corvane_moves = sum(check_game(*game, name) for game in games)

        # Every move Corvane announced reached the game record, and it never refused one of the GUI's.
        announced = re.findall(r"<first : move (\S+)", log)
        check(len(announced) == corvane_moves, "%d moves sent, %d recorded" % (len(announced), corvane_moves))
        check("<first : Illegal move" not in log, "Corvane refused a move of the GUI")

        # An independent referee replays the record.
        saved = os.path.join(folder, "games.pgn")
        replay = subprocess.run([PGN_EXTRACT, "-r", saved], capture_output=True, timeout=60)
        report = replay.stdout.decode(errors="replace") + replay.stderr.decode(errors="replace")
        check("Failed to make move" not in report and "%d games matched out of %d" % (GAMES, GAMES) in report,
              report)
        return final.groups()


if __name__ == "__main__":
    for tool in (XBOARD, OPPONENT, PGN_EXTRACT):
        check(os.access(tool, os.X_OK), "%s is missing: scripts/setup installs it" % tool)
    score = match(["-engine=corvane"], "Corvane")
    print("xboard gui: Corvane against phalanx, %s-%s-%s, every game ended cleanly" % score)
