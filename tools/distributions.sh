#!/usr/bin/env bash
# Tries the game as a newcomer would on releases of Debian: on a bare system with nothing but git, in a clone of the
# commit checked out, with an empty home, ./play; on trixie and sid ./check too. Sid moves: what fails of its ./check is
# told, and fails nothing. Run: tools/distributions.sh [SUITE...]    as root; bookworm, trixie and sid if none is named.
#
# In build/distributions stay each suite's picture and its output, and, to be taken again, the bare system and the
# packages. The suite runs in mount and process namespaces of its own: its mounts and processes go with it, however
# this script ends.
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

# bare_system SUITE: unpacked where the suite runs; made only if no run before has made it.
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
  # A mirror may lag behind, and a package is worth keeping for the next run.
  printf '%s\n' 'Acquire::Check-Valid-Until "false";' 'APT::Keep-Downloaded-Packages "true";' \
    >"$scratch/$1/etc/apt/apt.conf.d/90veskara"
}

# inside SUITE COMMAND: runs the command in the suite's clone, as its root.
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

# try SUITE COMMAND: into the suite's output; says how it ended and how long it took.
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
    bookworm) ;; # where ./check is at home
    sid) try "$suite" ./check || true ;;
    *) try "$suite" ./check || status=1 ;;
  esac
  { grep -aE 'tests passed|\((Failed|Timeout|SEGFAULT|Subprocess aborted)\)$' "$kept/$suite.log" || true; } | sed 's/^/  /'
  rm -rf --one-file-system "${scratch:?}/$suite"
done
exit "$status"
