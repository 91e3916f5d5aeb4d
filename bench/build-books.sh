#!/usr/bin/env bash
# build-books.sh [BUILD] [COPIES] [RUNS] [SAMPLE]: \buildbooks type 2 beside polyglot make-book on the same PGN file,
# in the same run, alternating; both write a polyglot book of the whole games, and the two files must be the same.
# The file is COPIES (21) copies of the lichess sample (984 games each). Prints the wall time, processor time and
# peak memory of every run, the medians of both programs, and the ratios corvane / make-book.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
build="$(cd "${1:-$here/../build/release}" && pwd)"
copies="${2:-21}"
runs="${3:-3}"
sample="${4:-$here/../tests/data/pgn/lichess-sample.pgn}"
[ -f "$sample" ] || { echo "no sample games at $sample"; exit 1; }
. "$here/debian-program.sh"
time_program="$(debian_program time /usr/bin/time)"
polyglot="$(debian_program polyglot)"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
mkdir "$work/games"
for _ in $(seq "$copies"); do cat "$sample"; done > "$work/games/games.pgn"
echo "games: $(grep -c '^\[Event ' "$work/games/games.pgn")"
# "elapsed seconds, processor seconds, peak KB" of one command
measure() {
    "$time_program" -f '%e %U %S %M' -o "$work/time" "$@" > /dev/null 2>&1
    awk '{ printf "%s %.2f %s\n", $1, $2 + $3, $4 }' "$work/time"
}
: > "$work/corvane" && : > "$work/polyglot"
for run in $(seq "$runs"); do
    (cd "$work" && measure sh -c "printf '\\\\buildbooks games 0 2\\nquit\\n' | '$build/corvane' -engine=corvane") \
        | tee -a "$work/corvane" | sed "s/^/run $run corvane  /"
    (cd "$work" && measure "$polyglot" make-book -pgn games/games.pgn -bin polyglot.bin) \
        | tee -a "$work/polyglot" | sed "s/^/run $run polyglot /"
done
cmp -s "$work/games/games.bin" "$work/polyglot.bin" && echo "books: the same bytes" || echo "books: DIFFERENT"
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
for program in corvane polyglot; do
    for field in 1 2 3; do eval "${program}_$field=$(cut -d' ' -f$field "$work/$program" | median)"; done
    eval "echo \"median $program: \${${program}_1} s, \${${program}_2} s processor, \${${program}_3} KB\""
done
awk -v a="$corvane_1" -v b="$polyglot_1" -v c="$corvane_2" -v d="$polyglot_2" -v e="$corvane_3" -v f="$polyglot_3" \
    'BEGIN { printf "corvane / make-book: time %.2f, processor time %.2f, peak memory %.2f\n", a / b, c / d, e / f }'
