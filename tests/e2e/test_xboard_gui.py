"""Whole games in a real GUI: Debian's xboard, on a virtual screen, plays the program against phalanx, once with each
of the program's engines: Corvane with white, Vesko with black. Every game must end by the rules of chess, and every
move the program made must be legal: xboard referees the moves as they come, and pgn-extract replays the saved game."""
import os
import re
import signal
import subprocess
import tempfile

from corvane_driver import BINARY, check, debian_program

GAMES = 1  # a match; xboard's first engine has white in the first game
BASE_SECONDS, INCREMENT_SECONDS = 20, 1  # short, but clean for both engines
MATCH_SECONDS = 400  # far more than the games take, with their clocks called by xboard
# How a game may end: by the board, by a draw rule, by resignation, or by the opponent's clock.
BOARD_ENDINGS = re.compile(r"checkmate|mates|stalemate|repetition|50.move|insufficient material|resigns|draw", re.I)
LOST_ON_TIME = re.compile(r"(White|Black) wins on time", re.I)


def play_match(folder, engine_arguments, engine_first):
    """Runs the match under a virtual X server and returns (xboard's output, games, debug log)."""
    home, games, debug = (os.path.join(folder, name) for name in ("home", "games.pgn", "xboard.debug"))
    os.makedirs(home)
    engine = " ".join([os.path.abspath(BINARY), *engine_arguments])
    opponent = debian_program("phalanx")
    first, second = (engine, opponent) if engine_first else (opponent, engine)
    command = [debian_program("xvfb", "/usr/bin/xvfb-run"), "-a", "-s", "-screen 0 1280x1024x24",
               debian_program("xboard"), "-fcp", first, "-fd", folder, "-scp", second,
               "-sd", folder, "-mg", str(GAMES), "-tc", "0:%02d" % BASE_SECONDS, "-inc", str(INCREMENT_SECONDS),
               "-autoCallFlag", "true", "-saveGameFile", games, "-popupExitMessage", "false", "-debug",
               "-nameOfDebugFile", debug]
    # xboard keeps its settings in the home folder; a private one keeps runs apart. The virtual server, xboard and
    # the engines share a process group of their own, so that a stuck match goes as a whole.
    run = subprocess.Popen(command, env=dict(os.environ, HOME=home), stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                           start_new_session=True)
    try:
        output = run.communicate(timeout=MATCH_SECONDS)[0]
    except subprocess.TimeoutExpired:
        os.killpg(run.pid, signal.SIGKILL)
        run.communicate()
        with open(debug, errors="replace") as f:
            tail = f.read()[-3000:]
        raise AssertionError("the match did not end within %d s; xboard's log ends with:\n%s" % (MATCH_SECONDS, tail))
    with open(games, errors="replace") as f, open(debug, errors="replace") as log:
        return output.decode(errors="replace"), f.read(), log.read()


def split_games(pgn):
    """Each game as (tags, moves in SAN, the comment that ends it, result)."""
    games = []
    for block in re.split(r"\n(?=\[Event )", pgn.strip()):
        tags = dict(re.findall(r'^\[(\w+) "(.*)"\]$', block, re.MULTILINE))
        body = "\n".join(l for l in block.splitlines() if not l.startswith("["))
        comments = re.findall(r"\{([^}]*)\}", body)
        words = re.sub(r"\{[^}]*\}", " ", body).split()
        moves = [w for w in words[:-1] if not re.match(r"^\d+\.+$", w)]
        games.append((tags, moves, comments[-1] if comments else "", words[-1] if words else ""))
    return games


def check_game(tags, moves, ending, result, name):
    """The engine's number of moves, and whether it lost on time."""
    engine_white = tags.get("White") == name
    check(engine_white or tags.get("Black") == name, "%s did not play: %r" % (name, tags))
    check(result in ("1-0", "0-1", "1/2-1/2"), "game without a result: %r %r" % (ending, result))
    check(tags.get("Result") == result, "result tag %r, game %r" % (tags.get("Result"), result))
    on_time = LOST_ON_TIME.search(ending)
    if not on_time:
        check(BOARD_ENDINGS.search(ending) and "illegal" not in ending.lower(), "abnormal ending: %r" % ending)
    lost_on_time = bool(on_time) and (on_time.group(1) == "White") != engine_white
    return len(moves[0::2] if engine_white else moves[1::2]), lost_on_time


def planned_within_clock(log, side):
    """Every search of the engine was planned well inside the clock that xboard had just sent it."""
    sent = re.compile(r"^\d+ >%s time (\d+)$" % re.escape(side))
    planned = re.compile(r"^\d+ <%s # moves -?\d+/-?\d+ - time (-?\d+)/(-?\d+) ms$" % re.escape(side))
    given, searches = None, 0
    for line in log.splitlines():
        time_sent, search = sent.match(line), planned.match(line)
        if time_sent:
            given = int(time_sent.group(1)) * 10  # centiseconds
        if search:
            searches += 1
            allowance, clock = int(search.group(1)), int(search.group(2))
            if clock != given or not 0 <= 4 * allowance <= clock:
                return False
    return searches > 0


def match(engine_arguments, name, engine_first):
    with tempfile.TemporaryDirectory() as folder:
        output, pgn, log = play_match(folder, engine_arguments, engine_first)
        final = re.search(r"Match .* vs\. .*: final score (\d+)-(\d+)-(\d+)", output)
        check(final and sum(int(x) for x in final.groups()) == GAMES, "no match result: %s" % output[-2000:])
        games = split_games(pgn)
        check(len(games) == GAMES, "%d games saved: %s" % (len(games), pgn[-2000:]))
        checked = [check_game(*game, name) for game in games]
        side = "first :" if engine_first else "second:"
        if any(lost for _, lost in checked):
            # Only the opponent should run out of time; on a machine too busy to keep a GUI's clock the engine may
            # too, but only with every search planned well inside the clock it was given.
            check(planned_within_clock(log, side), "%s lost on time, its searches not within its clock" % name)
            print("xboard gui: %s lost on time, with every search planned within its clock" % name)
        # Every move the engine announced reached the game record, and it never refused one of the GUI's.
        announced = re.findall("<" + side + r" move (\S+)", log)
        engine_moves = sum(moves for moves, _ in checked)
        check(len(announced) == engine_moves, "%d moves sent, %d recorded" % (len(announced), engine_moves))
        check("<" + side + " Illegal move" not in log, "%s refused a move of the GUI" % name)
        replay = subprocess.run([debian_program("pgn-extract"), "-r", os.path.join(folder, "games.pgn")],
                                capture_output=True, timeout=60)
        report = replay.stdout.decode(errors="replace") + replay.stderr.decode(errors="replace")
        matched = re.search(r"(\d+) games? matched out of (\d+)", report)
        check("Failed to make move" not in report and matched and matched.groups() == (str(GAMES),) * 2, report)
        return final.groups()


if __name__ == "__main__":
    for arguments, name, first in ((["-engine=corvane"], "Corvane", True), ([], "Vesko", False)):
        score = match(arguments, name, first)
        print("xboard gui: %s against phalanx, score of the first engine %s-%s-%s, every game ended cleanly"
              % (name, *score))
