#!/usr/bin/env bash
# Kills the real program at random moments of its start and of play, and checks each time that it lost at most five
# seconds of play and no record. Then kills it around a win, which must leave the win or the saved game. Two programs
# run side by side. A kill in play takes some ten seconds, one around a win two.
# Run: tools/kills.sh [KILLS]    of each kind; 200 by default
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset check -DVESKARA_TESTS=ON >/dev/null
cmake --build build/check --target window_test

export VESKARA_TEST_KILLS="${1:-200}" FONTCONFIG_FILE="$PWD/tests/support/fonts.conf"
kill_player() { build/check/tests/window/window_test --gtest_brief=1 --gtest_filter="Player/Killed.*/$1"; }
kill_player 0 &
first=$!
status=0
kill_player 1 || status=$?
wait "$first" || status=$?
exit "$status"
