#!/usr/bin/env bash
# Fails where a committed source is not as clang-format lays it out. Run it from anywhere.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format-19 --dry-run -Werror
