#!/usr/bin/env python3
"""A chess engine for tests that speaks UCI or XBoard (whichever the first line asks for) and misbehaves
on request. It plays a fixed line, so two of them play a game whose end is known:
  cycle  knights out and back until the start position stands for the fourth time (a draw),
  mate   the fool's mate, black mates on its second move.
Faults, each at the engine's own move N (from 1): --crash N, --hang N, --illegal N, --resign N,
--draw N, --claim-win N (claims a win, then moves), --flood N (5 MB of info lines, then the move),
--garbage (junk lines before every move),
--ponder (a ponder move behind every bestmove), --no-handshake (reads and never answers),
--slow-start SECONDS, --exit (ends at once). --score CP reports that score with every move (UCI info, XBoard
thinking line); an XBoard fake writes its moves as --notation san, or old (both older forms for one move).
--plan LETTERS --tally FILE (XBoard): the first player's result of each game, w, d or l, counted in FILE at each
"new"; the fake resigns the games it is to lose and, as the first player (no --second), claims the draws.
"""
import argparse
import sys
import time

LINES = {
    "cycle": ["g1f3", "g8f6", "f3g1", "f6g8"] * 8,
    "mate": ["f2f3", "e7e5", "g2g4", "d8h4"],
}
SAN = {"g1f3": "Nf3", "g8f6": "Nf6", "f3g1": "Ng1", "f6g8": "Ng8", "f2f3": "f3", "e7e5": "e5", "g2g4": "g4",
       "d8h4": "Qh4#"}


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--line", default="cycle", choices=sorted(LINES))
    for fault in ("crash", "hang", "illegal", "resign", "draw", "claim-win", "flood"):
        parser.add_argument("--" + fault, type=int, default=0)
    for switch in ("garbage", "ponder", "no-handshake", "exit"):
        parser.add_argument("--" + switch, action="store_true")
    parser.add_argument("--slow-start", type=float, default=0)
    parser.add_argument("--score", type=int, default=0)
    parser.add_argument("--notation", default="coordinates", choices=["coordinates", "san", "old"])
    parser.add_argument("--plan", default="")
    parser.add_argument("--tally", default="")
    parser.add_argument("--second", action="store_true")
    options = parser.parse_args()
    if options.exit:
        return 0
    if options.no_handshake:
        for _ in sys.stdin:
            pass
        return 0
    if options.slow_start:
        time.sleep(options.slow_start)
    line, moves, own_moves, uci = LINES[options.line], [], 0, False

    def say(text):
        sys.stdout.write(text + "\n")
        sys.stdout.flush()

    def take_plan():
        try:
            with open(options.tally) as tally:
                game = int(tally.read())
        except OSError:
            game = 0
        with open(options.tally, "w") as tally:
            tally.write(str(game + 1))
        outcome = options.plan[game] if game < len(options.plan) else "d"
        options.resign = 1 if outcome == ("w" if options.second else "l") else 0
        options.draw = 1 if outcome == "d" and not options.second else 0

    def play():
        nonlocal own_moves
        own_moves += 1
        if options.garbage:
            say("\x01\x02 some garbage ~~ 12 nonsense")
            say("12 3 4")
            sys.stdout.write("info string a line in ")
            sys.stdout.flush()
            time.sleep(0.05)
            say("two pieces")
        if own_moves == options.flood:
            # More than the receiver keeps unread: the move behind the flood must still be read.
            sys.stdout.write(("info string %s\n" % ("flood " * 16)) * (5 * 2 ** 20 // 110))
        if own_moves == options.crash:
            sys.exit(3)
        if own_moves == options.hang:
            while True:
                time.sleep(60)
        if own_moves == options.resign:
            say("resign")
            return
        if own_moves == options.draw:
            say("1/2-1/2 {draw claimed}")
            return
        if own_moves == options.claim_win:
            say("0-1 {I win}" if len(moves) % 2 else "1-0 {I win}")
        move = "e2e5" if own_moves == options.illegal else line[len(moves) % len(line)]
        if uci:
            ponder = " ponder " + line[(len(moves) + 1) % len(line)] if options.ponder else ""
            say("info depth 1 score cp %d pv %s" % (options.score, move))
            say("bestmove " + move + ponder)
        else:
            moves.append(move)
            say("1 %d 0 1 %s" % (options.score, move))
            if options.notation == "old":
                say("%d. ... %s" % ((len(moves) + 1) // 2, move))
                say("My move is : " + move)
            else:
                say("move " + SAN.get(move, move) if options.notation == "san" else "move " + move)

    for text in sys.stdin:
        words = text.split()
        if not words:
            continue
        command = words[0]
        if command == "quit":
            return 0
        if command == "uci":
            uci = True
            say("id name Fake")
            say("uciok")
        elif command == "isready":
            say("readyok")
        elif command == "protover":
            say("feature ping=1 setboard=1 done=1")
        elif command == "ping":
            say("pong " + (words[1] if len(words) > 1 else ""))
        elif command in ("new", "ucinewgame"):
            moves, own_moves = [], 0
            if options.plan:
                take_plan()
        elif command == "position":
            moves = words[words.index("moves") + 1:] if "moves" in words else []
        elif command == "go":
            play()
        elif len(command) >= 4 and command[0] in "abcdefgh" and command[1] in "12345678":
            moves.append(command)
            play()
    return 0


if __name__ == "__main__":
    sys.exit(main())
