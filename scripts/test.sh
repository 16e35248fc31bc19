#!/usr/bin/env bash
# Sets up the machine, then configures, builds and tests the release and the
# sanitizer builds, then runs every fuzz harness for 10 seconds, two at a time
# (the fuzz stage, its build included, stays within six minutes on two CPUs).
# Exits non-zero if any of them fails.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

bash scripts/setup.sh

failed=()
for preset in release sanitize; do
    echo "=== ${preset} ==="
    if ! cmake --workflow --preset "$preset"; then
        failed+=("$preset")
    fi
done

echo "=== fuzz ==="
# A fixed seed: the gate repeats what was run before it landed; new findings
# come from the long runs.
if ! QEL_FUZZ_SEED=1 bash scripts/fuzz.sh 10; then
    failed+=(fuzz)
fi

if ((${#failed[@]} != 0)); then
    echo "test.sh: failed: ${failed[*]}" >&2
    exit 1
fi
echo "test.sh: release, sanitize and fuzz passed"
