#!/usr/bin/env bash
# Measures the game while nobody touches it: its processor time on each screen as a share of one core, with
# the sound threads listed separately, and its memory in play, after the screens of the menu were shown. Runs
# on a virtual display with a window manager, once for each of SDL's two renderers.
# Usage: bench/rest.sh PROGRAM [WIDTH HEIGHT [SECONDS]]
set -euo pipefail
program=$(realpath "$1") w=${2:-1100} h=${3:-760} seconds=${4:-20}
scratch=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; wait; rm -rf "$scratch"' EXIT

Xvfb -displayfd 3 -screen 0 "$((w + 100))x$((h + 100))x24" 3>"$scratch/display" 2>/dev/null &
until [ -s "$scratch/display" ]; do sleep 0.1; done
export DISPLAY=":$(cat "$scratch/display")" SDL_AUDIODRIVER=dummy XDG_CACHE_HOME="$scratch/cache"
openbox --config-file "$(dirname "$0")/../tests/window/openbox.xml" >/dev/null 2>&1 &

# ticks THREADS...: the processor time of these threads, in hundredths of a second.
ticks() { cat "${@/%//stat}" 2>/dev/null | sed 's/.*) //' | awk '{ sum += $12 + $13 } END { print sum + 0 }'; }
sound_threads() { grep -lE '^(SDLAudio|audio)' /proc/"$game"/task/*/comm 2>/dev/null | xargs -rn1 dirname; }
measure() {
  local sound before after sound_before sound_after
  sleep 3
  sound=$(sound_threads)
  before=$(ticks /proc/"$game") sound_before=$(ticks ${sound:-/none})
  sleep "$seconds"
  after=$(ticks /proc/"$game") sound_after=$(ticks ${sound:-/none})
  awk -v name="$1" -v all=$((after - before)) -v sound=$((sound_after - sound_before)) -v s="$seconds" \
    'BEGIN { printf "  %-24s %6.2f %%   sound %5.2f %%\n", name, (all - sound) / s, sound / s }'
}
memory() {
  awk '/^Pss:/ { pss = $2 } /^Pss_Anon:/ { anon = $2 }
       END { printf "  memory: PSS %.1f MiB, anonymous %.1f MiB\n", pss / 1024, anon / 1024 }' \
    /proc/"$game"/smaps_rollup
}
window() { xdotool search --onlyvisible --name "Quenlock's Mahjong" "$@"; }
# click X Y: clicks at this offset from the middle of the window.
click() {
  local WINDOW X Y WIDTH HEIGHT SCREEN
  eval "$(window getwindowgeometry --shell)"
  xdotool mousemove $((X + WIDTH / 2 + $1)) $((Y + HEIGHT / 2 + $2)) click 1
  sleep 2
}
key() { xdotool key "$1"; sleep 2; }

for renderer in opengl software; do
  echo "$renderer, $w x $h"
  export XDG_DATA_HOME="$scratch/$renderer"
  mkdir -p "$XDG_DATA_HOME/veskara"
  echo "{\"windowW\":$w,\"windowH\":$h}" >"$XDG_DATA_HOME/veskara/settings.json"
  SDL_RENDER_DRIVER=$renderer "$program" >/dev/null 2>&1 &
  game=$!
  sleep 6
  measure "menu"
  click -107 143; measure "level select"; key Escape
  click 133 143; measure "gallery"; key Escape
  click -107 213; measure "settings"; key Escape
  click 133 213; measure "about"; key Escape
  click 0 0
  sleep 8
  measure "playing"
  memory
  key space
  measure "pause"
  key Escape
  xdotool mousemove 0 0
  xdotool windowfocus "$(xdotool getmouselocation --shell | sed -n 's/^WINDOW=//p')"
  measure "menu, unwatched"
  window windowminimize
  measure "menu, minimised"
  kill "$game"
  wait "$game" || true
done
