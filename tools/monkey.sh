#!/usr/bin/env bash
# Lets monkeys play for as long as you like, with the sanitized program or a release build. Prints the seed; the same
# seed repeats the same acts.
# Run: tools/monkey.sh frames FRAMES [SEED]     random input without a display, four monkeys at once, sanitized
#      tools/monkey.sh memory FRAMES [SEED]     one of them, release build: its memory must not grow
#      tools/monkey.sh window SECONDS [SEED]    random mouse and keys in a real window, sanitized
#      tools/monkey.sh levels LEVELS            levels solved in a row, release build
set -euo pipefail
cd "$(dirname "$0")/.."

usage() { sed -n '/^# Run:/,/^set/{/^#/p}' "$0" | cut -c3- >&2; exit 2; }
[ $# -ge 2 ] || usage
export VESKARA_MONKEY_SEED="${3:-$RANDOM}"
case "$1" in
  frames) preset=asan test='MonkeyRun\.'; export VESKARA_MONKEY_FRAMES="$2" ;;
  memory) preset=check test='MonkeyMemory\.'; export VESKARA_MONKEY_FRAMES="$2" ;;
  window) preset=asan test='WindowMonkey\.'; export VESKARA_MONKEY_SECONDS="$2" ;;
  levels) preset=check test='LongLife\.'; export VESKARA_LEVELS="$2" ;;
  *) usage ;;
esac
cmake --preset "$preset" -DVESKARA_TESTS=ON >/dev/null
cmake --build "build/$preset" --target monkey_test window_test
ctest --test-dir "build/$preset" --verbose --parallel "$(nproc)" -R "$test"
