#!/usr/bin/env bash
# Fails if a committed source is not formatted as clang-format would format it. Run it from anywhere.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format-19 --dry-run -Werror
