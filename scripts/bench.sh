#!/usr/bin/env bash
# Builds qel_bench (bench preset) and prints the table of ratios: the
# library against the machine's floors and general-purpose XML parsers, on
# generated sessions. Every ratio is the median of pairs measured one after
# the other in the same run (processor time, user + system), with the lowest
# and highest pair ratios as its spread.
#
#   scripts/bench.sh            # 10 000 and 100 000 occurrences, then scaling to 1 000 000
#                               # and the linearity rows to 100 000 (QEL_BENCH_LINEAR_LARGE)
#   QEL_BENCH_PAIRS=5 QEL_BENCH_SIZES="10000" QEL_BENCH_LARGE=100000 scripts/bench.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

bash scripts/setup.sh

pairs="${QEL_BENCH_PAIRS:-11}"
sizes="${QEL_BENCH_SIZES-10000 100000}"
large="${QEL_BENCH_LARGE:-1000000}"
large_pairs="${QEL_BENCH_LARGE_PAIRS:-3}"
linear_large="${QEL_BENCH_LINEAR_LARGE:-100000}"
files="${QEL_BENCH_DIR:-build/bench/files}"

log="$(mktemp)"
if ! { cmake --preset bench && cmake --build --preset bench -j2; } >"$log" 2>&1; then
    cat "$log" >&2
    echo "bench.sh: building qel_bench failed" >&2
    exit 1
fi
rm -f "$log"
bench=build/bench/bench/qel_bench

rows="$(mktemp)"
trap 'rm -f "$rows"; rm -rf "$files"' EXIT
for size in $sizes; do
    echo "bench.sh: ${size} occurrences, ${pairs} pairs" >&2
    "$bench" ratios --occurrences "$size" --pairs "$pairs" --dir "$files" >>"$rows"
done
if [[ "$large" != 0 ]]; then
    echo "bench.sh: scaling 10000 to ${large} occurrences, ${large_pairs} pairs" >&2
    "$bench" scaling --small 10000 --large "$large" --pairs "$large_pairs" --dir "$files" >>"$rows"
fi
if [[ "$linear_large" != 0 ]]; then
    echo "bench.sh: linearity 10000 to ${linear_large}, ${large_pairs} pairs" >&2
    "$bench" linearity --small 10000 --large "$linear_large" --pairs "$large_pairs" --dir "$files" >>"$rows"
fi

# The goals hold at 100 000 occurrences (the scaling rows: at any size).
awk -F'\t' '
function goal(name) {
    if (name ~ /^W /) return "<= 1.25"
    if (name ~ /fgets$/ && name ~ /^R /) return "<= 3.5"
    if (name ~ /libxml2/) return "<= 0.6"
    if (name ~ /expat/) return "<= 1.0"
    if (name ~ /pugixml load_buffer/) return "<= 2"
    if (name ~ /^M /) return "<= 0.7"
    if (name ~ /^S /) return "<= 1.3"
    if (name ~ /^Skip/) return "<= 1.1"
    return ""
}
BEGIN {
    printf "| ratio | occurrences | pairs | median | spread (min-max) | first side | second side | goal |\n"
    printf "|---|---|---|---|---|---|---|---|\n"
}
{
    unit = ($1 ~ /^M /) ? "B/occ" : ($1 ~ /per occurrence/) ? "us/occ" : ($1 ~ /^S /) ? "us/unit" : "s"
    scale = ($1 ~ /^S /) ? 1e6 : 1
    fmt = ($1 ~ /^M /) ? "%.0f %s" : "%.3f %s"
    printf "| %s | %s | %s | %.2f | %.2f-%.2f | " fmt " | " fmt " | %s |\n", $1, $2, $3, $4, $5, $6, \
        $7 * scale, unit, $8 * scale, unit, goal($1)
}' "$rows"
