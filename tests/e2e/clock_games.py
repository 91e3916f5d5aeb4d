"""Timed games between corvane -strictuci and stockfish at its lowest skill, refereed by stockfish's list of legal
moves. Corvane plays either over UCI, spoken to by this module, or over XBoard through polyglot, which then
speaks UCI to it. Shared by the end-to-end test and the benchmark of many games."""
import os
import re
import time

from corvane_driver import BINARY, Session, bestmove_of, debian_program, write

ALLOWANCE = re.compile(r"info string time (\d+) ms$")
RESULTS = ("1-0", "0-1", "1/2-1/2")


class Clock:
    """Both sides' clocks in milliseconds, charged with the time from the request to the move."""

    def __init__(self, base_ms, increment_ms):
        self.left = [base_ms, base_ms]
        self.increment_ms = increment_ms

    def charge(self, side, elapsed_ms):
        self.left[side] += self.increment_ms - elapsed_ms
        return self.left[side] > 0

    def go_words(self):
        return "wtime %d btime %d winc %d binc %d" % (self.left[0], self.left[1], self.increment_ms, self.increment_ms)


class Player:
    def close(self):
        self.session.send("quit")
        return self.session.close()


class UciPlayer(Player):
    """A UCI engine that plays from the whole game's moves on each turn."""

    def __init__(self, argv, options=()):
        self.session = Session(argv[1:], executable=argv[0])
        self.session.send("uci")
        self.session.read_until(lambda l: l == "uciok")
        for option in options:
            self.session.send("setoption " + option)

    def new_game(self, clock, side):
        self.session.send("ucinewgame")
        self.session.send("isready")
        self.session.read_until(lambda l: l == "readyok", timeout=60)

    def move(self, moves, clock, timeout):
        """(move, lines of the search) for the position after moves."""
        self.session.send("position startpos moves " + " ".join(moves))
        start = len(self.session.seen)
        self.session.send("go " + clock.go_words())
        line = self.session.until("bestmove", timeout)
        return bestmove_of(line), self.session.seen[start:]


class PolyglotPlayer(Player):
    """corvane -strictuci behind polyglot, spoken to as an XBoard engine."""

    def __init__(self, folder, args):
        ini = os.path.join(folder, "corvane.ini")
        write(ini, "[PolyGlot]\nEngineDir = %s\nEngineCommand = %s %s\nLog = false\nBook = false\n[Engine]\n"
              % (folder, BINARY, " ".join(args)))
        self.session = Session([ini], executable=debian_program("polyglot"), cwd=folder)
        self.session.send("xboard")
        self.session.send("protover 2")
        self.session.read_until(lambda l: l == "feature done=1", timeout=60)

    def new_game(self, clock, side):
        base = clock.left[side] // 1000
        self.side = side
        self.session.send("new", "level 0 %d:%02d %g" % (base // 60, base % 60, clock.increment_ms / 1000), "ping 1")
        # What the last game left unread, such as its result, goes before the pong.
        self.session.read_until(lambda l: l == "pong 1", timeout=60)

    def move(self, moves, clock, timeout):
        """The answer to the opponent's last move, or the first move; clocks in centiseconds, as XBoard has them."""
        self.session.send("time %d" % (clock.left[self.side] // 10))
        self.session.send("otim %d" % (clock.left[1 - self.side] // 10))
        start = len(self.session.seen)
        self.session.send("usermove " + moves[-1] if moves else "go")
        # polyglot may end the game itself, by a draw that it claims: its result then stands for the move.
        line = self.session.read_until(lambda l: l.split(" ")[0] in ("move", "Illegal") + RESULTS, timeout)
        return line.split()[1] if line.startswith("move ") else line.split(" ")[0], self.session.seen[start:]


def stockfish():
    # A generous overhead: its time is measured here, with all the delays of a busy machine.
    return UciPlayer([debian_program("stockfish")], ["name Skill Level value 0", "name Threads value 1",
                                                     "name Hash value 16", "name Move Overhead value 300"])


def is_drawn(fen, seen):
    """A draw that a GUI claims: the third time a position comes, fifty moves without a capture or a pawn's move,
    or men that cannot mate. seen counts the positions of the game so far."""
    board, side, castling, en_passant, halfmoves = fen.split()[:5]
    key = " ".join((board, side, castling, en_passant))
    seen[key] = seen.get(key, 0) + 1
    men = sorted(c for c in board if c.isalpha() and c not in "kK")
    return seen[key] >= 3 or int(halfmoves) >= 100 or men in ([], ["b"], ["n"], ["B"], ["N"])


def play(corvane, corvane_side, base_ms, increment_ms, max_plies, referee, opponent):
    """One game; returns a dict: result ("1-0", "0-1", "1/2-1/2", "*" when cut at max_plies or by an illegal move),
    moves, faults (corvane's illegal moves and time losses) and overruns (corvane's time beyond its announced
    allowance, ms)."""
    clock = Clock(base_ms, increment_ms)
    game = dict(result="*", moves=[], faults=[], overruns=[])
    moves, faults = game["moves"], game["faults"]
    corvane.new_game(clock, corvane_side)
    opponent.new_game(clock, 1 - corvane_side)
    seen = {}
    while len(moves) < max_plies:
        side = len(moves) % 2
        lost = "0-1" if side == 0 else "1-0"
        if is_drawn(referee.shown("Fen", moves), seen):
            return dict(game, result="1/2-1/2")
        legal = referee.legal_moves(moves)
        if not legal:
            return dict(game, result=lost if referee.shown("Checkers", moves) else "1/2-1/2")
        player = corvane if side == corvane_side else opponent
        started = time.monotonic()
        # Generous: a move that does not come is a fault of its own, not a hang of the test.
        move, lines = player.move(moves, clock, timeout=clock.left[side] / 1000 + 60)
        elapsed = int((time.monotonic() - started) * 1000)
        if move in RESULTS:
            # Only a draw can be claimed here: a mate ends the game before the mated side is asked.
            if move != "1/2-1/2":
                faults.append("result %s announced at ply %d" % (move, len(moves)))
            return dict(game, result=move)
        allowed = [int(m.group(1)) for m in map(ALLOWANCE.match, lines) if m]
        if player is corvane and allowed:
            game["overruns"].append(elapsed - allowed[-1])
        if move not in legal:
            faults.append("illegal %r after %s" % (move, " ".join(moves)))
            break
        if not clock.charge(side, elapsed):
            # Only corvane's losses are faults; on a busy machine stockfish may lose on time as well.
            if player is corvane:
                faults.append("time lost at ply %d" % len(moves))
            return dict(game, result=lost)
        moves.append(move)
    return game
