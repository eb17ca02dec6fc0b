#!/usr/bin/env bash
# Runs every fuzz target for so many seconds. Inputs that make one fail are kept in build/fuzz/tests/fuzz.
# Run: tools/fuzz.sh SECONDS
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset fuzz -DVESKARA_FUZZ_SECONDS="${1:?usage: tools/fuzz.sh SECONDS}" >/dev/null
cmake --build build/fuzz
ctest --test-dir build/fuzz --verbose --parallel "$(nproc)"
