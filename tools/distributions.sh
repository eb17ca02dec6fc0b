#!/usr/bin/env bash
# Tries the game on releases of Debian as a newcomer would: on a bare system with nothing but git and an empty home, it
# runs ./play in a clone of the current commit, and on trixie and sid also ./check. Because sid changes, a failure of
# its ./check is printed but does not fail the script.
# Run: tools/distributions.sh [SUITE...]    as root; bookworm, trixie and sid by default
#
# build/distributions keeps each suite's picture and output, and its bare system and packages for the next run. Each
# suite runs in its own mount and process namespaces, so its mounts and processes end with it, however this script ends.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

install_packages debootstrap util-linux
[ $# -gt 0 ] || set -- bookworm trixie sid
kept=$PWD/build/distributions
mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Origin: Debian' | head -n 1)
scratch=$(mktemp -d -p "${TMPDIR:-/var/tmp}")
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$kept"

# bare_system SUITE: unpacks the bare system, and makes it first if no earlier run has.
bare_system() {
  local archive=$kept/$1.tar
  if [ ! -f "$archive" ]; then
    debootstrap --variant=minbase --include=git,ca-certificates "$1" "$scratch/$1" "$mirror" >"$kept/$1.bootstrap.log"
    tar -C "$scratch/$1" --one-file-system -cf "$archive.part" .
    mv "$archive.part" "$archive"
  else
    mkdir "$scratch/$1"
    tar -C "$scratch/$1" -xf "$archive"
  fi
  # The mirror may lag behind; packages are kept for the next run.
  printf '%s\n' 'Acquire::Check-Valid-Until "false";' 'APT::Keep-Downloaded-Packages "true";' \
    >"$scratch/$1/etc/apt/apt.conf.d/90veskara"
}

# inside SUITE COMMAND: runs the command as root in the suite's clone.
inside() {
  mkdir -p "$kept/packages/$1"
  unshare --mount --pid --fork --kill-child bash -euc '
    mount --bind "$1" "$1"
    cd "$1"
    mount -t proc proc proc
    mount --rbind /sys sys
    mount --rbind /dev dev
    mount --bind "$2" var/cache/apt/archives
    mkdir -p var/cache/apt/archives/partial host
    pivot_root . host
    umount -l /host
    cd /root/veskara
    exec env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin ${http_proxy:+http_proxy="$http_proxy"} bash -c "$3"
  ' inside "$scratch/$1" "$kept/packages/$1" "$2"
}

# try SUITE COMMAND: runs the command, appends its output to the suite's log, and prints its status and time.
try() {
  local status=0 begun=$SECONDS
  inside "$1" "$2" </dev/null >>"$kept/$1.log" 2>&1 || status=$?
  echo "$1: $2 ended with $status after $(((SECONDS - begun) / 60)) min $(((SECONDS - begun) % 60)) s"
  return "$status"
}

status=0
for suite in "$@"; do
  bare_system "$suite"
  git clone --quiet --no-hardlinks . "$scratch/$suite/root/veskara"
  : >"$kept/$suite.log"
  try "$suite" ./play || status=1
  cp "$scratch/$suite/root/veskara/build/play.png" "$kept/$suite.png" || status=1
  inside "$suite" '. /etc/os-release; echo "  $PRETTY_NAME, gcc $(gcc -dumpfullversion), cmake $(cmake --version |
    head -n 1 | cut -c15-)"; for module in sdl2 cairo pango; do echo "  $module $(pkg-config --modversion $module)"; done'
  case "$suite" in
    bookworm) ;; # ./check runs here at every change
    sid) try "$suite" ./check || true ;;
    *) try "$suite" ./check || status=1 ;;
  esac
  { grep -aE 'tests passed|\((Failed|Timeout|SEGFAULT|Subprocess aborted)\)$' "$kept/$suite.log" || true; } | sed 's/^/  /'
  rm -rf --one-file-system "${scratch:?}/$suite"
done
exit "$status"
