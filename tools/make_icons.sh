#!/usr/bin/env bash
# Makes the icon's PNG files from its drawings; all are committed. Look at the small ones after a change.
# Run: tools/make_icons.sh [DIRECTORY]    (Debian package librsvg2-bin)
set -euo pipefail
icons=$(dirname "$(readlink -f "$0")")/../packaging/icons
out=${1:-$icons}

# paint SIZE DRAWING OPTION...
paint() {
  local size=$1 drawing=$2
  shift 2
  rsvg-convert "$@" --output "$out/$size.png" "$icons/$drawing.svg"
}

paint 16 small-16
paint 22 small-22
paint 24 small-22 --page-width 24 --page-height 24 --left 1 --top 1
for size in 32 48 64 128 256 512; do
  paint "$size" example.quenlock.Veskara --width "$size" --height "$size"
done
