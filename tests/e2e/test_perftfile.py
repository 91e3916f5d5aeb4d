"""Perft over a file of positions with both engines, and a JSON file shown as the XML it is read into."""
import os
import shutil
import sys
import tempfile

from corvane_driver import check, run_script

PERFT_FILE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..", "shared", "data",
                          "perft", "standard-d3.txt")


def perft_file(folder):
    """Every position of the depth-3 file counts as expected, with either engine."""
    with open(PERFT_FILE) as source:
        fens = [line.split(",")[0] for line in source if line.strip()]
    for engine in ("\\vesko", "\\corvane"):
        path = os.path.join(folder, engine[1:] + ".txt")
        shutil.copy(PERFT_FILE, path)
        code, output = run_script([engine, "\\perftfile " + path + " 3", "quit"], timeout=300)
        check(code == 0, "exit code %d" % code)
        check("starting perft from perft line 0" in output, output[:5])
        with open(os.path.join(folder, engine[1:] + ".out.txt"), newline="") as result:
            lines = result.read().split("\r\n")
        check(lines[-1] == "" and len(lines) == len(fens) + 1, (engine, len(lines)))
        for fen, line in zip(fens, lines):
            check(line.startswith(fen + "\t[TIME_MS=") and line.endswith("]\t[STATUS=OK]"), (engine, line))


def json_file(folder):
    path = os.path.join(folder, "engines.json")
    with open(path, "w") as out:
        out.write('{"engines": [{"name": "Vesko & co", "depth": 3, "book": null}]}\n')
    code, output = run_script(["xboard", "\\json " + path, "quit"])
    check(code == 0, "exit code %d" % code)
    # The ampersand is encoded by the JSON reader and again on output, as every text the XML tree holds.
    check(output[:-1] == ["<_object_>", "\t<_object_>", "\t\t<engines>", "\t\t\t<_object_>",
                          "\t\t\t\t<name>Vesko &amp;amp; co</name>", "\t\t\t\t<depth>3</depth>", "\t\t\t\t<book/>",
                          "\t\t\t</_object_>", "\t\t</engines>", "\t</_object_>", "</_object_>"], output)


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as folder:
        json_file(folder)
        if not os.path.exists(PERFT_FILE):
            print("perftfile: skipped, no shared perft data at " + PERFT_FILE)
            sys.exit(0)
        perft_file(folder)
    print("perftfile: all checks passed")
