#!/usr/bin/env bash
# ./play without a display: the game plays level 1 by itself in a virtual one, on throw-away data, and a picture of
# the board in play is kept in build/play.png. Arguments go to the program.
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
sleep 12 # the deal has flown in and half of it is taken
if ! kill -0 "$game" 2>/dev/null; then # --help and the like, or a failure
  wait "$game"
  exit
fi
maim -u build/play.png
echo "Picture: $PWD/build/play.png"
sleep 13 # the other half goes
kill -TERM "$game"
wait "$game"
