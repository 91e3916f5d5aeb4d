"""The formula console, typed as a user does: its board samples against 64-bit arithmetic done here, its help,
the result and state lines, the variables of the last result, the archive behind it, and bad input."""
import os
import tempfile

from corvane_driver import check, run_script

MASK = (1 << 64) - 1
W, E, E1 = 0x8080808080808080, 0x0101010101010101, 0x0101010101010100
H1G7, H1A8, H1H8 = 0x0002040810204081, 0x8040201008040201, 0x0102040810204081
BIT = 0x0000000000080000


def board(v):
    bits = format(v & MASK, "064b")
    return [bits[i:i + 8] for i in range(0, 64, 8)]


# The samples the console shows at its start, worked out with Python integers: "*" before "-" before the
# "#" operators, which go left to right; "/" divides whole numbers.
def samples():
    sub = lambda a, b: (a - b) & MASK
    mul = lambda a, b: (a * b) & MASK
    return [
        (sub(mul(BIT, H1G7) & W, 1) & mul(BIT, H1G7)) ^ BIT,
        (sub(mul(BIT, H1A8) & E, 1) & mul(BIT, H1A8)) ^ BIT,
        mul(BIT, H1A8) ^ mul(mul(BIT, H1A8) // 0x40000000000000, H1A8),
        mul(BIT, H1H8) ^ mul(mul(BIT, H1H8) // 0x100000000000000, H1H8),
        mul(BIT, E1),
        mul(mul(BIT, E) // 0x100000000000000, E) ^ mul(BIT, E),
        (sub(E, BIT) & sub(sub(0, E), 1)) ^ BIT,
        sub(BIT, (((sub(W, BIT) & W) ^ W) // 0x80)),
    ]


HELP = ["sample of commands", "compute             : (1 + 2) * 3 / 4",
        "set variables       : FSET('X',0x00[,'Y',0x01..-])", "display hexadecimal : FHEX(255)",
        "display binary      : FBIN(31)", "display 64 bit board: F64(0xffff00000000ffff)",
        "(return value string -> S)", "(return value 64 bit -> H)", "to exit the console : exit"]


def console(lines, cwd=None):
    """The console's output for the typed lines, up to its last line, and what came after it."""
    code, output = run_script(["xboard", "\\console", *lines, "ping 7", "quit"], cwd=cwd)
    check(code == 0, "exit code %d" % code)
    check("# back to xboard mode" in output, output[-5:])
    end = output.index("# back to xboard mode")
    return output[:end], output[end + 1:]


def answers(output):
    """The typed lines' (result, state) pairs, behind the samples and the help."""
    body = output[output.index(HELP[-1]) + 1:]
    pairs = []
    while body:
        result = []
        while not body[0].startswith("\t["):
            result.append(body.pop(0))
        state = body.pop(0)
        check(state.endswith("]"), state)
        pairs.append(("\n".join(result), state[2:-1]))
    return pairs


def start_and_results():
    value = 0x0000000000081234
    smeared = value & ~((value * 0x0101010101010101) & MASK) & MASK
    typed = {
        "(1 + 2) * 3 / 4": ("2.25", "Ok"),
        "FHEX(255)": ("00000000000000FF", "Ok"),
        "FBIN(31)": ("11111", "Ok"),
        "F64(0xffff00000000ffff)": ("\n".join(board(0xffff00000000ffff)) + "\n", "Ok"),
        "FGET('select count(*) from ZSYSFOLDERS')": ("6", "Ok"),
        "FGET('select count(*) from ZSYSOPTIONS')": ("1", "Ok"),
        "FGET('select count(*) from sqlite_master')": ("19", "Ok"),
        "FSET('X',0x%x) + 0x0" % value: (str(value), "Ok"),
        "S & '!'": ("%d!" % value, "Ok"),
        "FHEX(H) & ' ' & DP": ("%016X %d" % (value, smeared), "Ok"),  # read from the text of S
        "FSET('Y', 0x%x)" % value: (str(value), "Ok"),
        "DP": (str(smeared), "Ok"),
        "1 +": (" ", "Missing some parameter or bad )(: +"),
        "nothing": (" ", "Unknown variable: nothing"),
    }
    output, after = console(list(typed) + ["ExIt"])
    boards = [output[i * 9:i * 9 + 8] for i in range(8)]
    check(boards == [board(v) for v in samples()], output[:72])
    check(all(output[i * 9 + 8] == "" for i in range(8)), "a board ends with its own line feed")
    check(output[72:81] == HELP, output[72:81])
    got = answers(output)
    check(got == list(typed.values()), got)
    check("pong 7" in after, after)


def bad_input(folder):
    deep = "(" * 10000 + "1" + ")" * 10000
    typed = [deep, ",".join(["1"] * 600), "+".join(["1"] * 300000), "'unclosed", "\x01\x02\x7f\xff(",
             "FGET('select 1; drop table ZSYSFOLDERS')", "FGET('attach database ''x.db'' as x')",
             "FGET('vacuum into ''y.db''')", "FGET('select ''a;b''')",
             "FGET('select count(*) from ZSYSFOLDERS')", "exit"]
    output, after = console(typed, cwd=folder)
    got = answers(output)
    check([state.split(":")[0] for _, state in got] ==
          ["clsParser error", "Missing operator or too many parameters", "Ok", 'Missing last "', "Unknown function",
           "Error in Function", "Error in Function", "Error in Function", "Ok", "Ok"], got)
    check(got[2][0] == "300000" and got[8][0] == "a;b" and got[9][0] == "6", got)
    check(os.listdir(folder) == [], os.listdir(folder))
    check("pong 7" in after, after)


def end_of_input():
    code, output = run_script(["xboard", "\\console", "1+1"])
    check(code == 0 and output[-4:] == ["2", "\t[Ok]", "# back to xboard mode", "# end"], output[-4:])


if __name__ == "__main__":
    start_and_results()
    with tempfile.TemporaryDirectory() as folder:
        bad_input(folder)
    end_of_input()
    print("formula console: all checks passed")
