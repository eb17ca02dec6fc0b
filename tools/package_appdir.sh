#!/usr/bin/env bash
# Makes a folder that holds the game with the libraries that a desktop may lack, and runs wherever it is put.
# Run: tools/package_appdir.sh [BUILD_DIRECTORY [APPDIR]]    (build/release, and packages/Veskara.AppDir below it)
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

build=${1:-build/release}
appdir=${2:-$build/packages/Veskara.AppDir}
id=example.quenlock.Veskara
# What must be the system's own; docs/packaging.md names each. The C and C++ runtime, what talks to its graphics and
# sound drivers, and the fonts' libraries, which read its configuration and caches. Also what its graphics driver loads
# beside these: of two versions of a library a program has only the first, and the driver would lack what is new in the
# other.
of_the_system='^(ld-linux|lib(c|m|pthread|gcc_s|stdc\+\+|GL|EGL|gbm|drm|X11|Xau|Xdmcp|Xext|Xfixes|xcb|wayland-[a-z]+'
of_the_system+='|asound|fontconfig|freetype|harfbuzz|fribidi|expat|ffi|lzma|tinfo|z|zstd))[-.]'

declare -A place # of each library that the game loads, by its name
files=()         # those that are taken

# gather FILE: takes the libraries that it asks for by itself, and in turn what these ask for.
gather() {
  local name real
  for name in $(objdump -p "$1" | awk '$1 == "NEEDED" { print $2 }'); do
    [[ $name =~ $of_the_system || -e $appdir/usr/lib/$name ]] && continue
    real=$(realpath "${place[$name]}")
    cp "$real" "$appdir/usr/lib/$name"
    files+=("$real" "${real#/usr}") # dpkg knows it by one of them
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
# The texts that these point to: only Debian has them where they say. Some write GPL-2 as GPL-2.0.
cp --recursive --dereference /usr/share/common-licenses "$appdir/usr/share/"
sed --in-place --expression 's,/usr/share/common-licenses,../../common-licenses,g' \
  --expression 's,common-licenses/GPL-\([123]\)\.0,common-licenses/GPL-\1,g' "$appdir"/usr/share/doc/*/copyright
# In the files themselves, as a variable of the environment would reach the browser that the game may open.
patchelf --set-rpath '$ORIGIN/../lib' "$appdir/usr/bin/veskara"
for library in "$appdir"/usr/lib/*; do patchelf --set-rpath '$ORIGIN' "$library"; done

install -m 755 packaging/AppRun "$appdir/AppRun"
ln -s "usr/share/applications/$id.desktop" "$appdir/"
ln -s "usr/share/icons/hicolor/256x256/apps/$id.png" "$appdir/"
ln -s "$id.png" "$appdir/.DirIcon"
echo "$appdir"
