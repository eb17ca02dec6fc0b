#!/usr/bin/env bash
# Makes the Debian package of the current commit: always the same bytes, wherever and whenever it runs.
# Run: tools/package_deb.sh [BUILD_DIRECTORY [OUTPUT_DIRECTORY]]    by default build/release, and packages/ there
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

build=${1:-build/release}
out=${2:-$build/packages}
build_for_packages "$build"
umask 022
export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}
cpack --config "$build/CPackConfig.cmake" -G DEB -B "$out"
