#!/usr/bin/env bash
# Runs for ./play on a machine without a display. In a virtual display it clicks through the game's menu, lets the game
# play level 1 by itself on throw-away data, and saves a picture of the board to build/play.png. Fails if the level is
# not solved. Arguments go to the program.
set -euo pipefail
cd "$(dirname "$0")/.."

echo "No display: playing level 1 in a virtual one."
scratch=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; wait; rm -rf "$scratch"' EXIT

Xvfb -displayfd 3 -screen 0 1120x820x24 3>"$scratch/display" 2>/dev/null &
for _ in $(seq 100); do
  [ -s "$scratch/display" ] && break
  sleep 0.1
done
export DISPLAY=":$(cat "$scratch/display")"
export XDG_DATA_HOME="$scratch/data" XDG_CACHE_HOME="$scratch/cache"
export VESKARA_AUTOPLAY=0.1

build/release/veskara "$@" &
game=$!
window_shown() { xdotool search --onlyvisible --name "Quenlock's Mahjong" >/dev/null 2>&1; }
level_solved() { grep -q '"currentLevel":2' "$XDG_DATA_HOME/veskara/progress.json" 2>/dev/null; }
until window_shown; do
  if ! kill -0 "$game" 2>/dev/null; then # after --help and the like, or a failure
    wait "$game"
    exit
  fi
  sleep 0.1
done

game_saved() { [ -e "$XDG_DATA_HOME/veskara/save.json" ] || level_solved; }
sleep 3 # the splash screen closes by itself, later on a busy machine
for _ in $(seq 20); do
  xdotool mousemove 560 400 click 1 # "Continue", in the middle of the menu
  sleep 6                           # a game is saved after five seconds
  game_saved && break
done
sleep 6 # until half of the deal is taken
maim -u build/play.png
echo "Picture: $PWD/build/play.png"

solved=no
for _ in $(seq 240); do # until the other half is taken, too
  if level_solved; then
    solved=yes
    break
  fi
  sleep 0.5
done
kill -TERM "$game"
wait "$game"
echo "Level 1 solved: $solved"
[ "$solved" = yes ]
