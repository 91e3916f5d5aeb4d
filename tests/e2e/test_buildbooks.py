"""Building, merging and rewriting books through the real program: the folders it walks, the files it
leaves and the words it says."""
import os
import struct
import tempfile

from corvane_driver import check, run_script

GAME = '[Event "x"]\n[Result "1-0"]\n\n1. e4 e5 2. Nf3 Nc6 1-0\n'


def remarks(lines):
    return [l[len("info string "):] if l.startswith("info string ") else l for l in lines]


def console(folder, commands, args=()):
    code, lines = run_script(list(commands) + ["quit"], args, cwd=folder)
    check(code == 0, "exit code %d" % code)
    return [l for l in remarks(lines) if l != "end"]


def entries(path):
    """(key, wins, losses, draws) of a .cbk file, as far as it reads."""
    data = open(path, "rb").read()
    count = struct.unpack_from("<I", data, 10)[0]
    at, found = 46, []

    def number():
        nonlocal at
        value = shift = 0
        while True:
            byte = data[at]
            at += 1
            value |= (byte & 0x7F) << shift
            shift += 7
            if byte < 0x80:
                return value

    for _ in range(count):
        wins, losses, draws = number(), number(), number()
        found.append((struct.unpack_from("<Q", data, at)[0], wins, losses, draws))
        at += 8
    return found


def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w") as out:
        out.write(text)


def help_lines(folder):
    check(console(folder, ["\\buildbooks"]) == [
        "buildbooks path_of_pgn_files moves_count [type]", "buildbooks d:\\games d:\\corvane\\corvane.cbk 10",
        "type: 0=book, 1=extract FEN", 'NB: use "path" if you want to use path with embedded spaces'], "help")
    check(console(folder, ["\\mergebooks books"]) == [
        "mergebooks books_path new_book.cbk [limit]", "merge .cbk book files into new_book.cbk file"], "help")


def build_in_folders(folder):
    """Sub-folders are walked, hidden names skipped, a quoted path may hold blanks; Vesko lends a Corvane."""
    games = os.path.join(folder, "my games")
    write(os.path.join(games, "a.b.pgn"), GAME)
    write(os.path.join(games, "deep", "c.pgn"), GAME + GAME.replace("1-0", "0-1"))
    write(os.path.join(games, ".hidden.pgn"), GAME)
    write(os.path.join(games, ".old", "d.pgn"), GAME)
    said = console(folder, ['\\buildbooks "my games" 3 1'])
    check(said[-1] == "3 games parsed!", said)
    check(sorted(l for l in said if l.startswith("saving book")) == [
        "saving book 'my games/a.b.cbk' with 3 positions",
        "saving book 'my games/deep/c.cbk' with 3 positions"], said)
    check(any(l.startswith("reading file 1 of 2 : my games/") for l in said), said)
    check(not os.path.exists(os.path.join(games, ".hidden.cbk")), "hidden file read")
    check(os.path.exists(os.path.join(games, "a.b.txt")), "no table")
    # white won once and black once: the three positions stand at one win and one loss each
    check([e[1:] for e in entries(os.path.join(games, "deep", "c.cbk"))] == [(1, 1, 0)] * 3, "counters")


def merge_twice(folder):
    """Shared positions fold; the new book is left out of a second run; a cut book merges as far as it reads."""
    games, books = os.path.join(folder, "my games"), os.path.join(folder, "books")
    os.makedirs(os.path.join(books, "sub"))
    built = open(os.path.join(games, "a.b.cbk"), "rb").read()
    for name, data in (("a.cbk", built), ("sub/c.cbk", open(os.path.join(games, "deep", "c.cbk"), "rb").read()),
                       ("cut.cbk", built[:46 + 11 + 5])):
        with open(os.path.join(books, name), "wb") as out:
            out.write(data)
    for _ in range(2):
        said = console(folder, ["\\mergebooks books books\\all.cbk"])
    merged = entries(os.path.join(books, "all.cbk"))
    whole_keys = sorted(e[0] for e in entries(os.path.join(books, "a.cbk")))
    check(len(merged) == 4 and sorted(e[0] for e in merged if e[0]) == whole_keys, merged)
    # two whole books and, from the cut one, the entry before the damage (one key counted once more) and the
    # entry whose key the cut fell in, kept under key 0 with the counters read before it
    check(sorted(e[1] + e[2] + e[3] for e in merged) == [1, 3, 3, 4], merged)
    check(said[-1] == "done" and "saving 4 positions in books\\all.cbk" in said, said)


def convert(folder):
    os.makedirs(os.path.join(folder, "pgn"), exist_ok=True)
    with open(os.path.join(folder, "my games", "a.b.cbk"), "rb") as src, \
            open(os.path.join(folder, "pgn", "x.cbk"), "wb") as out:
        out.write(src.read())
    said = console(folder, ["\\cvbooks"])
    check(said[-1] == "ok" and os.path.exists(os.path.join(folder, "pgn", "x.cb3")), said)


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as folder:
        help_lines(folder)
        build_in_folders(folder)
        merge_twice(folder)
        convert(folder)
    print("buildbooks: all checks passed")
