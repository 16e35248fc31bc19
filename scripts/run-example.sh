#!/usr/bin/env bash
# Sets up the machine, builds the release configuration and runs the main job:
# qel roundtrip on the bundled example (examples/session.json), which prints
# what the simulated PDM side's answer changes in the session. Arguments are
# passed on to qel roundtrip (a session file, --format json, --keep DIR, ...).
# Only the table goes to standard output; setting up and building report on
# standard error.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

bash scripts/setup.sh >&2
cmake --preset release >/dev/null
cmake --build --preset release >&2
exec build/release/tools/qel roundtrip "$@"
