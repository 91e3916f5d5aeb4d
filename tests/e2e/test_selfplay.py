"""Self-play and learning through the real program: the moves of a game checked by stockfish, and the files of a
learning run, resumed."""
import os
import re
import tempfile

from corvane_driver import Referee, check, run_script

MOVE = re.compile(r"^[a-h][1-8][a-h][1-8][nbrq]?$")


def play():
    code, output = run_script(["\\play 50 16"], timeout=120)
    check(code == 0, "exit code %d" % code)
    words = output[0].split()
    check(len(words) == 17 and words[-1] == "0", output)
    referee = Referee()
    for i, move in enumerate(words[:-1]):
        check(MOVE.match(move) and move in referee.legal_moves(words[:i]), "move %d: %s" % (i, output[0]))
    referee.close()
    for help_case in ("\\play 0 10", "\\play 100"):
        code, output = run_script([help_case])
        check(output[0] == "info string \\play ms_per_move max_moves file.pgn [soulA soulB]", output)


if __name__ == "__main__":
    play()
    print("selfplay: all checks passed")
