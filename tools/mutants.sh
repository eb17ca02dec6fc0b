#!/usr/bin/env bash
# Breaks the commit that is checked out in many small ways, one at a time, and says which of them no test notices.
# Run: tools/mutants.sh COUNT SEED [FOLDER...]    of all of src/ if no folder of it is named
#
# A run that was ended goes on where it was; one of the same seed with a higher count begins with what is known. In
# build/mutants stay a clone and a build for each processor, and a file of results for each seed.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

[ $# -ge 2 ] || { sed -n 's/^# Run/Run/p' "$0" >&2; exit 2; }
install_packages $game_packages $check_packages python3-clang-19
exec /usr/bin/python3 -B tools/mutants.py "$@"
