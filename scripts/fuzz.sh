#!/usr/bin/env bash
# Builds the libFuzzer harnesses (the fuzz preset) and runs each on a scratch
# copy of its seed corpus, so that the committed corpus never grows.
#
#   scripts/fuzz.sh [SECONDS] [HARNESS...]
#
# SECONDS per harness (60 by default); every harness of fuzz/ by default.
# Exits non-zero when a harness fails; the failing input is kept under
# build/fuzz/findings/<harness>/ (add it to fuzz/crashes/<harness>/ once
# fixed, so that CTest replays it for good).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds="${1:-60}"
shift || true
harnesses=("$@")
((${#harnesses[@]} != 0)) || harnesses=(execute options scanner)

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

# A smaller quarantine keeps the process well under the memory limit.
export ASAN_OPTIONS="${ASAN_OPTIONS:-quarantine_size_mb=64:detect_leaks=1}"
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT

failed=()
for harness in "${harnesses[@]}"; do
    echo "=== fuzz ${harness}: ${seconds} s ==="
    findings="build/fuzz/findings/${harness}"
    mkdir -p "$scratch/$harness" "$findings"
    cp fuzz/corpus/"$harness"/* "$scratch/$harness/"
    if ! build/fuzz/fuzz/qel_fuzz_"$harness" -dict=fuzz/answer.dict -max_total_time="$seconds" \
            -rss_limit_mb=512 -timeout=5 -print_final_stats=1 -artifact_prefix="$findings/" \
            "$scratch/$harness" 2>"$scratch/$harness.log"; then
        tail -n 60 "$scratch/$harness.log" >&2
        failed+=("$harness")
        continue
    fi
    grep -E '^stat::number_of_executed_units|^stat::peak_rss_mb' "$scratch/$harness.log" || true
done

if ((${#failed[@]} != 0)); then
    echo "fuzz.sh: failed: ${failed[*]} (inputs in build/fuzz/findings/)" >&2
    exit 1
fi
echo "fuzz.sh: ${harnesses[*]} ran ${seconds} s each without failure"
