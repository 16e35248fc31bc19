#!/usr/bin/env bash
# Sets up the machine, then configures, builds and tests the release and the
# sanitizer builds. Exits non-zero if either fails.
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

if ((${#failed[@]} != 0)); then
    echo "test.sh: failed: ${failed[*]}" >&2
    exit 1
fi
echo "test.sh: release and sanitize passed"
