#!/usr/bin/env bash
# Line and branch coverage of the answer reader's code (reader/ and the line
# file) reached by replaying corpora, measured with clang's source coverage.
#
#   scripts/fuzz-coverage.sh [CORPUS_ROOT]
#
# CORPUS_ROOT holds one folder per harness (execute, options, scanner);
# fuzz/corpus by default. fuzz/crashes is replayed too.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

root="${1:-fuzz/corpus}"
build=build/coverage
flags="-fprofile-instr-generate -fcoverage-mapping"
cmake -S . -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Debug \
    -DQEL_BUILD_TESTS=OFF -DQEL_BUILD_EXAMPLES=OFF \
    -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="-fprofile-instr-generate" >/dev/null
harnesses=(execute options scanner)
cmake --build "$build" --target qel_fuzz_execute_replay qel_fuzz_options_replay qel_fuzz_scanner_replay

rm -f "$build"/*.profraw
objects=()
for harness in "${harnesses[@]}"; do
    program="$build/fuzz/qel_fuzz_${harness}_replay"
    LLVM_PROFILE_FILE="$build/${harness}.profraw" "$program" "$root/$harness" "fuzz/crashes/$harness" 2>/dev/null
    objects+=(-object "$program")
done
llvm-profdata-14 merge -sparse "$build"/*.profraw -o "$build/replay.profdata"
# Only the reading code: reader/ (the tag scanner included) and the line file.
llvm-cov-14 report -instr-profile="$build/replay.profdata" "${objects[@]:1}" |
    awk '$1 ~ /(^|\/)(reader\/|services\/UTILLineFile\.)/ {
             print; lines += $8; lmiss += $9; branches += $11; bmiss += $12
         }
         END {
             printf "lines %d/%d (%.1f%%), branches %d/%d (%.1f%%)\n", lines - lmiss, lines,
                    100 * (lines - lmiss) / lines, branches - bmiss, branches, 100 * (branches - bmiss) / branches
         }'
