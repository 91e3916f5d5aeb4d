#!/usr/bin/env bash
# search-rate.sh [BUILD] [MS]: the search's node rate beside the perft rates on the middlegame positions of
# middlegames.txt. For each position: perft to depth 5 as corvane-perft counts it (the last ply counted
# without being made), perft with every move made (-walk), and the search for MS milliseconds (3000) with
# the default table of 64 MB, with 1 MB and with none. Rates in nodes per second.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
build="${1:-$here/../build/release}"
ms="${2:-3000}"
rate() { awk '{ for (i = 1; i < NF; ++i) if ($(i + 1) == "nps") print $i; else if ($i == "knps") print $(i + 1) * 1000 }'; }
printf '%-4s %12s %12s %12s %12s %12s\n' pos perft perft-walk search-64MB search-1MB search-none
n=0
while read -r fen; do
    [ -n "$fen" ] || continue
    n=$((n + 1))
    # The FEN's fields go to the programs as separate words.
    # shellcheck disable=SC2086
    printf '%-4s %12s %12s %12s %12s %12s\n' "$n" \
        "$("$build/corvane-perft" 5 $fen | rate)" "$("$build/corvane-perft" -walk 5 $fen | rate)" \
        "$("$build/corvane-search" "$ms" $fen | rate)" "$("$build/corvane-search" -mb 1 "$ms" $fen | rate)" \
        "$("$build/corvane-search" -mb 0 "$ms" $fen | rate)"
done < "$here/middlegames.txt"
