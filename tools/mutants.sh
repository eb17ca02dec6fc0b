#!/usr/bin/env bash
# Breaks the current commit in many small ways, one at a time, and prints those that no test notices.
# Run: tools/mutants.sh COUNT SEED [FOLDER...]    folders of src/; all by default
#
# The same command continues an interrupted run; a higher count starts from the known results. build/mutants keeps a
# clone and a build for each processor, and a file of results for each seed.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

[ $# -ge 2 ] || { sed -n 's/^# Run/Run/p' "$0" >&2; exit 2; }
install_packages $game_packages $check_packages python3-clang-19
exec /usr/bin/python3 -B tools/mutants.py "$@"
