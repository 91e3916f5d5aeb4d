#!/usr/bin/env bash
# epd-wac.sh [BUILD] [COUNT] [SECONDS] [SUITE]: how many of the first COUNT (20) positions of the WAC suite
# (SUITE, by default the one of tests/data) each embedded engine solves through \epd at
# SECONDS (1) per position, beside Debian's stockfish scored the same way. Prints the result line of each.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
build="$(cd "${1:-$here/../build/release}" && pwd)"
count="${2:-20}"
seconds="${3:-1}"
suite="${4:-$here/../tests/data/epd/wac.epd}"
[ -f "$suite" ] || { echo "no $suite"; exit 1; }
. "$here/debian-program.sh"
debian_program stockfish > /dev/null
debian_program pgn-extract > /dev/null
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
head -n "$count" "$suite" > "$work/wac.epd"
for engine in corvane vesko; do
    result="$(cd "$work" && printf '\\epd 0:%02d wac.epd\n' "$seconds" | "$build/corvane" -engine="$engine" |
        grep 'test results' || true)"
    printf '%-8s %s\n' "$engine" "${result#info string }"
done
printf '%-8s %s\n' stockfish "$(python3 "$here/epd_reference.py" "$suite" "$count" "$seconds")"
