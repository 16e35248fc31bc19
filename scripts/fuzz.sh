#!/usr/bin/env bash
# Builds the libFuzzer harnesses (the fuzz preset) and runs each on a scratch
# copy of its seed corpus, so that the committed corpus never grows; two
# harnesses at a time, one per CPU.
#
#   scripts/fuzz.sh [SECONDS] [HARNESS...]
#
# SECONDS per harness (30 by default); every harness of fuzz/ by default.
# QEL_FUZZ_SEED fixes libFuzzer's random seed (the CI run uses 1, so that the
# gate walks the same mutations every time; 0, the default, draws one).
# Exits non-zero when a harness fails; the failing input is kept under
# build/fuzz/findings/<harness>/ (add it to fuzz/crashes/<harness>/ once
# fixed, so that CTest replays it for good).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds="${1:-30}"
shift || true
all=(execute options scanner session check answer writer roundtrip)
harnesses=("$@")
((${#harnesses[@]} != 0)) || harnesses=("${all[@]}")

# Each harness's dictionary and the input size it takes (the harness refuses
# more; telling libFuzzer spares it the attempts).
declare -A dictionary=([execute]=answer [options]=answer [scanner]=answer [session]=session
                       [check]=answer [answer]=answer [writer]=composer [roundtrip]=composer)
declare -A max_len=([execute]=65587 [options]=65587 [scanner]=65548 [session]=65536
                    [check]=262144 [answer]=262144 [writer]=4096 [roundtrip]=4096)
for harness in "${harnesses[@]}"; do
    [[ -n "${dictionary[$harness]:-}" ]] || { echo "fuzz.sh: no harness $harness (${all[*]})" >&2; exit 2; }
done

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

# A smaller quarantine keeps the process well under the memory limit; the
# input files go to memory when it can.
export ASAN_OPTIONS="${ASAN_OPTIONS:-quarantine_size_mb=64:detect_leaks=1}"
[[ -n "${TMPDIR:-}" || ! -w /dev/shm ]] || export TMPDIR=/dev/shm
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT

# Every input must finish within a second of CPU and 512 MB; libFuzzer's
# timeout counts wall-clock time, which a shared machine stretches, so the
# run stops at five and the slowest input is reported.
run() {
    local harness="$1" findings="build/fuzz/findings/$1"
    mkdir -p "$scratch/$harness" "$findings"
    cp fuzz/corpus/"$harness"/* "$scratch/$harness/" 2>/dev/null || true
    build/fuzz/fuzz/qel_fuzz_"$harness" -dict=fuzz/"${dictionary[$harness]}".dict -max_len="${max_len[$harness]}" \
        -max_total_time="$seconds" -rss_limit_mb=512 -timeout=5 -report_slow_units=1 -print_final_stats=1 \
        -seed="${QEL_FUZZ_SEED:-0}" -artifact_prefix="$findings/" "$scratch/$harness" >"$scratch/$harness.log" 2>&1
}

failed=()
for ((i = 0; i < ${#harnesses[@]}; i += 2)); do
    pair=("${harnesses[@]:i:2}")
    pids=()
    for harness in "${pair[@]}"; do
        echo "=== fuzz ${harness}: ${seconds} s ==="
        run "$harness" &
        pids+=($!)
    done
    for j in "${!pair[@]}"; do
        harness="${pair[j]}"
        if ! wait "${pids[j]}"; then
            echo "--- ${harness} failed:" >&2
            tail -n 60 "$scratch/$harness.log" >&2
            failed+=("$harness")
            continue
        fi
        grep -E '^stat::(number_of_executed_units|average_exec_per_sec|slowest_unit_time_sec|peak_rss_mb)' \
            "$scratch/$harness.log" | sed "s/^/${harness} /" || true
    done
done

if ((${#failed[@]} != 0)); then
    echo "fuzz.sh: failed: ${failed[*]} (inputs in build/fuzz/findings/)" >&2
    exit 1
fi
echo "fuzz.sh: ${harnesses[*]} ran ${seconds} s each without failure"
