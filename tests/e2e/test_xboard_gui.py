"""Whole games in a real GUI: Debian's xboard, on a virtual screen, plays the program against phalanx, once with each
of the program's engines: Corvane with white, Vesko with black. Every game must end by the rules of chess, and every
move the program made must be legal: xboard referees the moves as they come, and pgn-extract replays the saved game."""
import os
import re
import signal
import subprocess
import tempfile

from corvane_driver import BINARY, check, debian_program

BASE_SECONDS, INCREMENT_SECONDS = 20, 1  # short, but clean for both engines
MATCH_SECONDS = 400  # far more than the games take, with their clocks called by xboard
# How a game may end: by the board, by a draw rule, by resignation, or by the opponent's clock.
BOARD_ENDINGS = re.compile(r"checkmate|mates|stalemate|repetition|50.move|insufficient material|resigns|draw", re.I)
LOST_ON_TIME = re.compile(r"(White|Black) wins on time", re.I)


def play_match(folder, engine_arguments, engine_first):
    """Runs a match of one game, the first engine with white, under a virtual X server; returns (xboard's output,
    the game file, the debug log)."""
    home, games, debug = (os.path.join(folder, name) for name in ("home", "games.pgn", "xboard.debug"))
    os.makedirs(home)
    engine = " ".join([os.path.abspath(BINARY), *engine_arguments])
    opponent = debian_program("phalanx")
    first, second = (engine, opponent) if engine_first else (opponent, engine)
    command = [debian_program("xvfb", "/usr/bin/xvfb-run"), "-a", "-s", "-screen 0 1280x1024x24",
               debian_program("xboard"), "-fcp", first, "-fd", folder, "-scp", second,
               "-sd", folder, "-mg", "1", "-tc", "0:%02d" % BASE_SECONDS, "-inc", str(INCREMENT_SECONDS),
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


def the_game(pgn):
    """The one game saved: (tags, moves in SAN, the comment that ends it, result)."""
    check(pgn.count("[Event ") == 1, "one game saved: %s" % pgn[-2000:])
    tags = dict(re.findall(r'^\[(\w+) "(.*)"\]$', pgn, re.MULTILINE))
    body = "\n".join(l for l in pgn.splitlines() if not l.startswith("["))
    comments = re.findall(r"\{([^}]*)\}", body)
    words = re.sub(r"\{[^}]*\}", " ", body).split()
    moves = [w for w in words[:-1] if not re.match(r"^\d+\.+$", w)]
    return tags, moves, comments[-1] if comments else "", words[-1] if words else ""


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
        check(final and sum(int(x) for x in final.groups()) == 1, "no match result: %s" % output[-2000:])
        tags, moves, ending, result = the_game(pgn)
        engine_white = tags.get("White") == name
        check(engine_white or tags.get("Black") == name, "%s did not play: %r" % (name, tags))
        check(result in ("1-0", "0-1", "1/2-1/2") and tags.get("Result") == result, (tags, ending, result))
        on_time = LOST_ON_TIME.search(ending)
        check(on_time or BOARD_ENDINGS.search(ending) and "illegal" not in ending.lower(), "ending: %r" % ending)
        side = "first :" if engine_first else "second:"
        if on_time and (on_time.group(1) == "White") != engine_white:
            # Only the opponent should run out of time; on a machine too busy to keep a GUI's clock the engine may
            # too, but only with every search planned well inside the clock it was given.
            check(planned_within_clock(log, side), "%s lost on time, its searches not within its clock" % name)
            print("xboard gui: %s lost on time, with every search planned within its clock" % name)
        # Every move the engine announced reached the game record, and it never refused one of the GUI's.
        announced = re.findall("<" + side + r" move (\S+)", log)
        check(len(announced) == len(moves[0::2] if engine_white else moves[1::2]), "moves sent and recorded differ")
        check("<" + side + " Illegal move" not in log, "%s refused a move of the GUI" % name)
        replay = subprocess.run([debian_program("pgn-extract"), "-r", os.path.join(folder, "games.pgn")],
                                capture_output=True, timeout=60)
        report = replay.stdout.decode(errors="replace") + replay.stderr.decode(errors="replace")
        check("Failed to make move" not in report and re.search(r"\b1 game matched out of 1\b", report), report)
        return final.groups()


if __name__ == "__main__":
    for arguments, name, first in ((["-engine=corvane"], "Corvane", True), ([], "Vesko", False)):
        score = match(arguments, name, first)
        print("xboard gui: %s against phalanx, score of the first engine %s-%s-%s, every game ended cleanly"
              % (name, *score))
