#!/usr/bin/env bash
# Kills the real program at random moments of its start and of play, and checks each time that no more than five seconds
# of play are lost, and no record is; then about the time of a win, which must leave the win or the game. Two players are
# killed side by side; a kill in play takes some ten seconds, one about a win two.
# Run: tools/kills.sh [KILLS]; 200 of each kind if it is not said how many.
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
