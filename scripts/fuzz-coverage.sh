#!/usr/bin/env bash
# Line and branch coverage reached by replaying corpora, measured with clang's
# source coverage: for each harness, of the code it targets, and for the
# reader harnesses together (execute, options, scanner), of reader/ (the
# frame scanner included) and the line file.
#
#   scripts/fuzz-coverage.sh [CORPUS_ROOT] [HARNESS...]
#
# CORPUS_ROOT holds one folder per harness; fuzz/corpus by default.
# fuzz/crashes is replayed too. Every harness by default.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

root="${1:-fuzz/corpus}"
shift || true
harnesses=("$@")
((${#harnesses[@]} != 0)) || harnesses=(execute options scanner session check answer writer roundtrip)

# The sources each harness targets (a regular expression on their paths).
declare -A target=(
    [execute]='reader/|services/UTILLineFile\.'
    [options]='reader/QELXMLToDM(Options|Scanner)\.'
    [scanner]='reader/(QELXMLToDMScanner|CV5CAAToolsDesc)\.|services/UTILLineFile\.'
    [session]='tools/qel/QELSession(File|Generate)'
    [check]='tools/qel/(QELFrameCheck|QELFrameLine)\.|services/UTILLineFile\.'
    [answer]='tools/qel/(QELAnswerSimulator|QELDescriptionScanner|QELAnswerNames|QELFrameWriter)\.'
    [writer]='writer/'
    [roundtrip]='writer/|reader/'
)

build=build/coverage
flags="-fprofile-instr-generate -fcoverage-mapping"
cmake -S . -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Debug \
    -DQEL_BUILD_TESTS=OFF -DQEL_BUILD_EXAMPLES=OFF \
    -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="-fprofile-instr-generate" >/dev/null
cmake --build "$build" --target $(printf 'qel_fuzz_%s_replay ' "${harnesses[@]}")

# Sums the rows of llvm-cov's report whose file matches $1.
summarise() {
    awk -v pattern="$1" -v label="$2" '$1 ~ pattern {
             lines += $8; lmiss += $9; branches += $11; bmiss += $12
         }
         END {
             printf "%-10s lines %d/%d (%.1f%%), branches %d/%d (%.1f%%)\n", label, lines - lmiss, lines,
                    lines ? 100 * (lines - lmiss) / lines : 0, branches - bmiss, branches,
                    branches ? 100 * (branches - bmiss) / branches : 0
         }'
}

reader=()
for harness in "${harnesses[@]}"; do
    program="$build/fuzz/qel_fuzz_${harness}_replay"
    rm -f "$build/${harness}.profraw"
    LLVM_PROFILE_FILE="$build/${harness}.profraw" "$program" "$root/$harness" "fuzz/crashes/$harness" >/dev/null 2>&1
    llvm-profdata-14 merge -sparse "$build/${harness}.profraw" -o "$build/${harness}.profdata"
    llvm-cov-14 report -instr-profile="$build/${harness}.profdata" "$program" |
        summarise "(^|/)(${target[$harness]})" "$harness"
    case "$harness" in execute | options | scanner) reader+=("$harness") ;; esac
done

# The reader as a whole, as the answer reader's harnesses reach it together.
if ((${#reader[@]} != 0)); then
    profiles=() objects=()
    for harness in "${reader[@]}"; do
        profiles+=("$build/${harness}.profraw")
        objects+=(-object "$build/fuzz/qel_fuzz_${harness}_replay")
    done
    llvm-profdata-14 merge -sparse "${profiles[@]}" -o "$build/reader.profdata"
    llvm-cov-14 report -instr-profile="$build/reader.profdata" "${objects[@]:1}" |
        summarise '(^|/)(reader/|services/UTILLineFile\.)' "reader"
fi
