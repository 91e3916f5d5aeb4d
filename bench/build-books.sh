#!/usr/bin/env bash
# build-books.sh [BUILD] [COPIES] [RUNS] [SAMPLE]: \buildbooks beside polyglot make-book on the same PGN file, in the
# same run, alternating. The file is COPIES (21) copies of the lichess sample of tests/data (984 games each).
# Prints the wall time and peak memory of every run and the medians of both programs.
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
# "elapsed seconds peak KB" of one command
measure() {
    "$time_program" -f '%e %M' -o "$work/time" "$@" > /dev/null 2>&1
    cat "$work/time"
}
: > "$work/corvane" && : > "$work/polyglot"
for run in $(seq "$runs"); do
    (cd "$work" && measure sh -c "printf '\\\\buildbooks games 0\\nquit\\n' | '$build/corvane' -engine=corvane") \
        | tee -a "$work/corvane" | sed "s/^/run $run corvane  /"
    (cd "$work" && measure "$polyglot" make-book -pgn games/games.pgn -bin games/polyglot.bin) \
        | tee -a "$work/polyglot" | sed "s/^/run $run polyglot /"
done
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
for program in corvane polyglot; do
    echo "median $program: $(cut -d' ' -f1 "$work/$program" | median) s, $(cut -d' ' -f2 "$work/$program" | median) KB"
done
