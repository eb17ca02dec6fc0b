#!/usr/bin/env bash
# Builds the current commit twice, under different paths, time zones, locales and umasks, and compares the programs and
# the Debian packages byte by byte. Takes some minutes.
# Run: tools/reproducible.sh
set -euo pipefail
cd "$(dirname "$0")/.."

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
unset SOURCE_DATE_EPOCH CMAKE_CXX_COMPILER_LAUNCHER
export CCACHE_DISABLE=1

# package REPOSITORY DIRECTORY: clones the repository there and makes the package.
package() {
  git clone --quiet --local "$1" "$2"
  "$2/tools/package_deb.sh" >/dev/null
}

(umask 022; TZ=UTC LC_ALL=C.UTF-8 package . "$scratch/one")
# Clone the first clone, so that a commit made meanwhile changes nothing.
(umask 077; TZ=Asia/Tokyo LC_ALL=C package "$scratch/one" "$scratch/another place/with a longer name")
cd "$scratch/one/build/release"
for file in veskara packages/*.deb; do
  cmp "$file" "$scratch/another place/with a longer name/build/release/$file"
  sha256sum "$file"
done
