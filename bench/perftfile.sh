#!/usr/bin/env bash
# perftfile.sh [BUILD] [FILE] [RUNS]: \perftfile over FILE (tests/data's depth-4 perft file) with Vesko and with
# Corvane, beside stockfish's "go perft" over the same positions in one stockfish process. The depth is the
# one the file's lines name ("FEN,D4,count"). Each program runs RUNS times (3); the table shows the medians
# of the wall time and of the processor time (user + system) of a whole run, the positions whose count was
# right, and for corvane the sum of the times in its result file. "stockfish-start" is stockfish starting
# and quitting, which its run includes.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
build="${1:-$here/../build/release}"
file="${2:-$here/../tests/data/perft/standard-d4.txt}"
runs="${3:-3}"
depth=$(head -n 1 "$file" | cut -d, -f2 | tr -dc 0-9)
. "$here/debian-program.sh"
stockfish="$(debian_program stockfish)"
time_program="$(debian_program time /usr/bin/time)"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
positions=$(grep -c , "$file")

median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
# timed INPUT OUTPUT COMMAND...: runs the command and appends "wall-ms cpu-ms" to $work/times.
timed() {
    local input=$1 output=$2
    shift 2
    "$time_program" -f '%e %U %S' -o "$work/time" "$@" < "$input" > "$output"
    awk '{ printf "%d %d\n", $1 * 1000, ($2 + $3) * 1000 }' "$work/time" >> "$work/times"
}
row() { # name right sum
    printf '%-16s %10s %10s %10s %14s\n' "$1" "$(cut -d' ' -f1 "$work/times" | median)" \
        "$(cut -d' ' -f2 "$work/times" | median)" "$2" "$3"
    rm -f "$work/times"
}

corvane() { # engine
    local sum=0
    printf '\\%s\n\\perftfile %s %d\nquit\n' "$1" "$work/p.txt" "$depth" > "$work/corvane.in"
    for ((run = 0; run < runs; run++)); do
        cp "$file" "$work/p.txt"
        rm -f "$work/p.out.txt"
        timed "$work/corvane.in" /dev/null "$build/corvane"
    done
    sum=$(sed -n 's/.*TIME_MS=\([0-9]*\).*/\1/p' "$work/p.out.txt" | awk '{ s += $1 } END { print s }')
    row "$1" "$(grep -c 'STATUS=OK' "$work/p.out.txt" || true)/$positions" "$sum"
}

stockfish_run() {
    while IFS=, read -r fen _; do
        [ -n "$fen" ] && printf 'position fen %s\ngo perft %d\n' "$fen" "$depth"
    done < "$file" > "$work/sf.in"
    echo quit >> "$work/sf.in"
    echo quit > "$work/quit.in"
    for ((run = 0; run < runs; run++)); do timed "$work/sf.in" "$work/sf.out" "$stockfish"; done
    local right
    right=$(paste -d' ' <(sed -n 's/^Nodes searched: //p' "$work/sf.out") <(cut -d, -f3 "$file" | tr -d '\r') |
            awk '$1 == $2 { n++ } END { print n + 0 }')
    row stockfish "$right/$positions" -
    for ((run = 0; run < runs; run++)); do timed "$work/quit.in" /dev/null "$stockfish"; done
    row stockfish-start - -
}

printf '%-16s %10s %10s %10s %14s\n' program wall-ms cpu-ms right sum-TIME_MS
corvane vesko
corvane corvane
if [ -x "$stockfish" ]; then stockfish_run; else echo "stockfish: not installed at $stockfish"; fi
