"""Tournament files for the end-to-end tests, and readers of what a tournament leaves behind."""
import os
import re
import subprocess

from corvane_driver import debian_program, run_ok


def engine(name, protocol, filename="", parameters="", active="true"):
    return ('<engine name="%s" protocol="%s" active="%s"><filename>%s</filename>'
            '<parameters>%s</parameters></engine>' % (name, protocol, active, filename, parameters))


def tourney_xml(name, kind, folder, engines, game_ms, increment_ms=0, threads=2, pace_ms=0, rounds="1"):
    return ('<?xml version="1.0"?>\n<tourney name="%s" type="%s">\n'
            '<options><rounds>%s</rounds><logfolder>%s</logfolder><threads>%d</threads><pace_ms>%d</pace_ms>'
            '<clock game_ms="%d" increment_ms="%d"/></options>\n<engines>\n%s\n</engines>\n'
            '<pgn><header><Annotator>tests</Annotator><NuvoEvent>ignored</NuvoEvent></header></pgn>\n'
            '</tourney>\n' % (name, kind, rounds, folder, threads, pace_ms, game_ms, increment_ms,
                              "\n".join(engines)))


def write(path, text):
    with open(path, "w") as out:
        out.write(text)
    return path


def play(ini, timeout):
    """Runs a tournament the way a script does, which ends the program with status 0; returns the output lines."""
    return run_ok([], ["-use=tourney", "-ini=" + ini], timeout)


def results(lines):
    """The result lines of the log: game id -> (result, reason, white, black, pgn path)."""
    found = {}
    for line in lines:
        fields = line.split("\t")
        if len(fields) >= 11 and fields[5] == "result":
            found[int(fields[3])] = tuple(fields[6:11])
    return found


def read_game(path):
    """The tags, the words of the move text other than move numbers, and the last of those words."""
    with open(path, newline="") as pgn:
        text = pgn.read()
    head, _, moves = text.partition("\r\n\r\n")
    tags = dict(line[1:-1].split(" ", 1) for line in head.split("\r\n") if line.startswith("["))
    words = moves.split()
    plies = [word for word in words if not word.endswith(".")]
    return {name: value.strip('"') for name, value in tags.items()}, plies, plies[-1] if plies else ""


def extracted_plies(path, *options):
    """The plies pgn-extract reads from a game file, or None when it finds no game there."""
    # A game file keeps its result in the Result tag alone; pgn-extract wants the move text closed by it.
    with open(path, "rb") as game:
        text = game.read()
    match = re.search(rb'\[Result "([^"]*)"\]', text)
    closing = match.group(1) if match and match.group(1) in (b"1-0", b"0-1", b"1/2-1/2") else b"*"
    done = subprocess.run([debian_program("pgn-extract"), "--quiet", "--plycount", *options],
                          input=text + b" " + closing + b"\r\n", capture_output=True, timeout=60)
    for line in done.stdout.decode(errors="replace").splitlines():
        if line.startswith("[PlyCount "):
            return int(line.split('"')[1])
    return None


def processes_of(folder):
    """Ids of running processes whose command line names something in folder."""
    found = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open("/proc/%s/cmdline" % pid, "rb") as cmdline:
                if folder.encode() in cmdline.read():
                    found.append(int(pid))
        except OSError:
            pass
    return found
