#!/usr/bin/env bash
# Sets up the machine, builds the release configuration of the example and
# runs it. Arguments are passed on to the example.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

bash scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release --target qel_example
exec build/release/examples/qel_example "$@"
