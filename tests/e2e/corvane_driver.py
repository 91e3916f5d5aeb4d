"""Runs the real corvane program the way a GUI or a script does, and reads what it answers."""
import os
import re
import subprocess
import sys
import time

# Absolute, so that a test may run the program in a folder of its own.
BINARY = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.environ.get("CORVANE", "build/release/corvane"))


def run_ok(lines, args=(), timeout=60, cwd=None):
    """Feeds all lines at once and closes the input; returns the output lines of a run that ends with status 0."""
    text = "".join(line + "\n" for line in lines)
    done = subprocess.run([BINARY, *args], input=text.encode(), capture_output=True, timeout=timeout, cwd=cwd)
    output = done.stdout.decode(errors="replace").splitlines()
    no_sanitizer_report(output + done.stderr.decode(errors="replace").splitlines())
    check(ended_by_itself(done.returncode) == 0, "exit code %d with %r: %r" % (done.returncode, args, output[-5:]))
    return output


def remarks(lines):
    """The program's remarks without the protocol's mark ("info string " in UCI, "# " in XBoard)."""
    return [re.sub(r"^(info string |# )", "", l) for l in lines]


def ended_by_itself(code):
    """The exit code; a program ended by a signal (a crash, or a sanitizer's abort) fails the test."""
    if code < 0:
        raise AssertionError("corvane ended by signal %d" % -code)
    return code


SANITIZER_REPORT = re.compile(r"^==\d+==ERROR: |^SUMMARY: \w+Sanitizer|: runtime error: ")


def no_sanitizer_report(lines):
    found = [l for l in lines if SANITIZER_REPORT.search(l)]
    if found:
        raise AssertionError("sanitizer report: %r" % found[:5])


class Session:
    """A running corvane spoken to line by line, as a GUI does over pipes."""

    def __init__(self, args=(), executable=None, cwd=None):
        self.process = subprocess.Popen([executable or BINARY, *args], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, bufsize=0, cwd=cwd)
        os.set_blocking(self.process.stdout.fileno(), False)
        self.pending = b""
        self.seen = []

    def send(self, *lines):
        self.send_bytes("".join(line + "\n" for line in lines).encode())

    def send_bytes(self, data):
        self.process.stdin.write(data)
        self.process.stdin.flush()

    def read_until(self, predicate, timeout=30):
        """Returns the first line for which predicate holds; every line read is kept in self.seen."""
        deadline = time.monotonic() + timeout
        while time.monotonic() < deadline:
            while b"\n" in self.pending:
                raw, self.pending = self.pending.split(b"\n", 1)
                line = raw.decode(errors="replace").rstrip("\r")
                self.seen.append(line)
                if predicate(line):
                    return line
            try:
                chunk = self.process.stdout.read(65536)
            except BlockingIOError:
                chunk = None
            if chunk:
                self.pending += chunk
            elif chunk == b"":
                raise AssertionError("corvane closed its output; seen: %r" % self.seen[-20:])
            else:
                time.sleep(0.005)
        raise AssertionError("no expected line within %s s; seen: %r" % (timeout, self.seen[-20:]))

    def until(self, prefix, timeout=30):
        return self.read_until(lambda l: l.startswith(prefix), timeout)

    def quit(self, timeout=30):
        self.send("quit")
        check(self.close(timeout) == 0, "exit code after quit")

    def close(self, timeout=30):
        if self.process.poll() is None:
            self.process.stdin.close()
        code = ended_by_itself(self.process.wait(timeout=timeout))
        rest = self.process.stdout.read() or b""
        self.pending += rest
        self.seen.extend(l.decode(errors="replace").rstrip("\r") for l in self.pending.split(b"\n") if l)
        self.pending = b""
        no_sanitizer_report(self.seen)
        return code


ENGINES = {"Vesko": [], "Corvane": ["-engine=corvane"]}
CORVANE = ("-engine=corvane",)
START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
NO_MOVES = ("R5k1/5ppp/8/8/8/8/5PPP/6K1 b - - 1 1", "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1")  # mated, stalemated


def xboard(lines, args=(), timeout=60, cwd=None):
    """Runs the lines in XBoard mode, which the UCI word "xboard" enters silently, and returns the output."""
    return run_ok(["xboard", *lines, "quit"], args, timeout, cwd)


def read(path, mode="r"):
    """The text of a file, its line ends as they are, or with mode "rb" its bytes."""
    with open(path, mode, newline=None if "b" in mode else "") as data:
        return data.read()


def write(path, data):
    """Writes text or bytes, making the folders on the way."""
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb" if isinstance(data, bytes) else "w") as out:
        out.write(data)
    return path


def check(condition, message):
    if not condition:
        raise AssertionError(message)


def debian_program(package, path=None):
    """The path of a Debian program a test speaks to (/usr/games/PACKAGE unless given); a missing one fails the
    test with the package to install."""
    path = path or "/usr/games/" + package
    check(os.access(path, os.X_OK),
          "%s is missing: run scripts/setup, or install the Debian package %s" % (path, package))
    return path


def sync(session, timeout=30):
    """Sends isready and returns every line that came before the readyok."""
    start = len(session.seen)
    session.send("isready")
    session.read_until(lambda l: l == "readyok", timeout)
    return session.seen[start:-1]


def progress_session(args=(), cwd=None):
    """A UCI session whose searches show their best move so far once a second: XBoard's post carries over."""
    session = Session(args, cwd=cwd)
    session.send("xboard", "post", "uci")
    session.read_until(lambda l: l == "uciok")
    return session


def shows_a_move(line):
    """A progress line of a search that has a move to deliver."""
    return line.startswith("currmove ") and len(line.split()) == 2


def search(session, go="go", position=None, stop_after=None, timeout=30):
    """The lines of one search, the bestmove line last: stopped once stop_after() returns, else ended by itself.
    Checks that no second bestmove follows."""
    if position:
        session.send(position)
    sync(session, timeout)  # the position is set before the search's time runs
    start = len(session.seen)
    session.send(go)
    if stop_after:
        stop_after()
        session.send("stop")
    session.until("bestmove", timeout)
    lines = session.seen[start:]
    check(not any(l.startswith("bestmove") for l in sync(session, timeout)), "a second bestmove after %r" % go)
    return lines


def searched_move(session, timeout=120):
    """go on a progress session, and stop once the search has shown a move; returns the search's lines. However
    busy the machine, the move delivered is one the search has found."""
    return search(session, stop_after=lambda: session.read_until(shows_a_move, timeout), timeout=timeout)


def answered_move(session, think_seconds=0, timeout=30):
    """go on the position set, and stop after think_seconds; the one move delivered, even when the stop comes right
    behind the go."""
    return bestmove_of(search(session, stop_after=lambda: time.sleep(think_seconds), timeout=timeout)[-1])


def bestmove_of(line):
    return line.split()[1] if line.startswith("bestmove ") and len(line.split()) > 1 else ""


class Referee:
    """Debian's stockfish as the judge of legal moves: "go perft 1" lists every legal move of a position."""

    def __init__(self):
        self.session = Session(executable=debian_program("stockfish"))
        self.session.send("uci")
        self.session.read_until(lambda l: l == "uciok")

    def position(self, moves, fen=None):
        start = "fen " + fen if fen else "startpos"
        self.session.send("position %s moves %s" % (start, " ".join(moves)))

    def legal_moves(self, moves, fen=None):
        """The legal moves, in coordinates, of the position reached by moves."""
        self.position(moves, fen)
        start = len(self.session.seen)
        self.session.send("go perft 1")
        self.session.until("Nodes searched")
        return {l.split(":")[0] for l in self.session.seen[start:] if l.endswith(": 1")}

    def shown(self, field, moves, fen=None):
        """A field of stockfish's display of the position reached by moves, Checkers the last one it shows."""
        self.position(moves, fen)
        sync(self.session)  # nothing of an earlier display is left to read
        start = len(self.session.seen)
        self.session.send("d")
        self.session.until("Checkers:")
        return next(l for l in self.session.seen[start:] if l.startswith(field + ":")).split(":", 1)[1].strip()

    def best_move(self, moves, think_ms):
        self.position(moves)
        self.session.send("go movetime %d" % think_ms)
        return bestmove_of(self.session.until("bestmove"))

    def close(self):
        self.session.send("quit")
        self.session.close()
