#!/usr/bin/env bash
# Makes a directory with the game and the libraries that a desktop may lack. It runs from anywhere.
# Run: tools/package_appdir.sh [BUILD_DIRECTORY [APPDIR]]    by default build/release, and packages/Veskara.AppDir there
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

build=${1:-build/release}
appdir=${2:-$build/packages/Veskara.AppDir}
id=example.quenlock.Veskara
# Libraries that the system must provide; docs/packaging.md lists them: the C and C++ runtime, those that talk to the
# graphics and sound drivers, and those of the fonts, which read the system's configuration and caches. Also those that
# the graphics driver loads: a program has only one version of a library, and an older one could lack what the driver
# needs.
of_the_system='^(ld-linux|lib(c|m|pthread|gcc_s|stdc\+\+|GL|EGL|gbm|drm|X11|Xau|Xdmcp|Xext|Xfixes|xcb|wayland-[a-z]+'
of_the_system+='|asound|fontconfig|freetype|harfbuzz|fribidi|expat|ffi|lzma|tinfo|z|zstd))[-.]'

declare -A place # path of each library that the game loads, by name
files=()         # paths of the libraries that are included

# gather FILE: copies the libraries that it needs, and those that they need in turn.
gather() {
  local name real
  for name in $(objdump -p "$1" | awk '$1 == "NEEDED" { print $2 }'); do
    [[ $name =~ $of_the_system || -e $appdir/usr/lib/$name ]] && continue
    real=$(realpath "${place[$name]}")
    cp "$real" "$appdir/usr/lib/$name"
    files+=("$real" "${real#/usr}") # dpkg knows one of these paths
    gather "$real"
  done
}

if [ -e "$appdir" ] && [ ! -e "$appdir/AppRun" ]; then
  echo "$appdir is there, and is no AppDir" >&2
  exit 1
fi
build_for_packages "$build"
rm -rf "$appdir"
cmake --install "$build" --prefix "$appdir/usr" --strip >/dev/null
mkdir "$appdir/usr/lib"
while read -r name _ library _; do place[$name]=$library; done < <(ldd "$build/veskara")
gather "$build/veskara"
{ dpkg-query --search "${files[@]}" 2>/dev/null || true; } | sed 's/:.*//' | sort --unique | while read -r package; do
  install -D -m 644 "/usr/share/doc/$package/copyright" "$appdir/usr/share/doc/$package/copyright"
done
# Include the licence texts that these files refer to, because other systems lack Debian's directory. Some files write
# GPL-2 as GPL-2.0.
cp --recursive --dereference /usr/share/common-licenses "$appdir/usr/share/"
sed --in-place --expression 's,/usr/share/common-licenses,../../common-licenses,g' \
  --expression 's,common-licenses/GPL-\([123]\)\.0,common-licenses/GPL-\1,g' "$appdir"/usr/share/doc/*/copyright
# Set the path in the files: an environment variable would also affect the browser that the game may open.
patchelf --set-rpath '$ORIGIN/../lib' "$appdir/usr/bin/veskara"
for library in "$appdir"/usr/lib/*; do patchelf --set-rpath '$ORIGIN' "$library"; done

install -m 755 packaging/AppRun "$appdir/AppRun"
ln -s "usr/share/applications/$id.desktop" "$appdir/"
ln -s "usr/share/icons/hicolor/256x256/apps/$id.png" "$appdir/"
ln -s "$id.png" "$appdir/.DirIcon"
echo "$appdir"
