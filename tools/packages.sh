# Sourced by ./play, ./check and the scripts that make packages, to provide what they need. Installs Debian packages;
# without apt-get it prints what is missing, under the names of the system's own package manager.

# What the game needs to build and to run.
game_packages="g++ cmake ninja-build pkg-config libsdl2-dev libsdl2-mixer-dev libcairo2-dev libpango1.0-dev
  libfontconfig-dev fonts-dejavu-core fonts-noto-cjk libgl1-mesa-dri"
# What ./play needs on a machine without a display.
headless_packages="xvfb maim xdotool"
# What the tests and benchmarks need beside these. clang-format and clang-tidy have a fixed version, because each
# version formats differently and finds other faults; Debian 12 and 13 both have version 19.
check_packages="git locales python3 python3-pil strace clang libclang-rt-dev clang-format-19 clang-tidy-19 cppcheck
  libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev libvorbis-dev xvfb openbox weston x11-xkb-utils
  libx11-dev libxtst-dev"
# What is needed to make packages of the game, and to test these.
package_packages="dpkg-dev file patchelf"
check_packages+=" $package_packages appstream desktop-file-utils fakeroot flatpak-builder librsvg2-bin lintian
  x11-utils"

# How to detect each package without dpkg, and its name in other package managers. "-" means that there is no way to
# detect it, or no such package. Tools for Debian packages are not listed, because other systems do not need them.
package_table="
  Debian             sign                          dnf                        pacman             zypper                     apk
  g++                compiler:c++                  gcc-c++                    gcc                gcc-c++                    g++
  cmake              command:cmake                 cmake                      cmake              cmake                      cmake
  ninja-build        command:ninja                 ninja-build                ninja              ninja                      samurai
  pkg-config         command:pkg-config            pkgconf-pkg-config         pkgconf            pkgconf-pkg-config         pkgconf
  libsdl2-dev        module:sdl2                   SDL2-devel                 sdl2-compat        sdl2-compat-devel          sdl2-dev
  libsdl2-mixer-dev  module:SDL2_mixer             SDL2_mixer-devel           sdl2_mixer         SDL2_mixer-devel           sdl2_mixer-dev
  libcairo2-dev      module:cairo                  cairo-devel                cairo              cairo-devel                cairo-dev
  libpango1.0-dev    module:pangocairo             pango-devel                pango              pango-devel                pango-dev
  libfontconfig-dev  module:fontconfig             fontconfig-devel           fontconfig         fontconfig-devel           fontconfig-dev
  fonts-dejavu-core  font:DejaVuSans.ttf           dejavu-sans-fonts          ttf-dejavu         dejavu-fonts               ttf-dejavu
  fonts-noto-cjk     font:CJK                      google-noto-sans-cjk-fonts noto-fonts-cjk     google-noto-sans-cjk-fonts font-noto-cjk
  libgl1-mesa-dri    -                             mesa-dri-drivers           mesa               Mesa-dri                   mesa-dri-gallium
  xvfb               command:Xvfb                  xorg-x11-server-Xvfb       xorg-server-xvfb   xorg-x11-server-Xvfb       xvfb
  maim               command:maim                  maim                       maim               maim                       maim
  xdotool            command:xdotool               xdotool                    xdotool            xdotool                    xdotool
  git                command:git                   git                        git                git                        git
  locales            command:localedef             glibc-locale-source        glibc              glibc-i18ndata             -
  python3            command:python3               python3                    python             python3                    python3
  strace             command:strace                strace                     strace             strace                     strace
  clang              compiler:clang++              clang                      clang              clang                      clang
  libclang-rt-dev    fuzzer:clang++                compiler-rt                compiler-rt        clang                      compiler-rt
  clang-format-19    command:clang-format-19       clang19-tools-extra        clang19            clang19                    clang19-extra-tools
  clang-tidy-19      command:clang-tidy-19         clang19-tools-extra        clang19            clang19                    clang19-extra-tools
  cppcheck           command:cppcheck              cppcheck                   cppcheck           cppcheck                   cppcheck
  libgtest-dev       module:gtest                  gtest-devel                gtest              gtest                      gtest-dev
  libgmock-dev       module:gmock                  gmock-devel                gtest              gmock                      gtest-dev
  libbenchmark-dev   module:benchmark              google-benchmark-devel     benchmark          benchmark-devel            benchmark-dev
  nlohmann-json3-dev module:nlohmann_json          json-devel                 nlohmann-json      nlohmann_json-devel        nlohmann-json
  libvorbis-dev      module:vorbisfile             libvorbis-devel            libvorbis          libvorbis-devel            libvorbis-dev
  openbox            command:openbox               openbox                    openbox            openbox                    openbox
  weston             command:weston                weston                     weston             weston                     weston
  x11-xkb-utils      command:setxkbmap             setxkbmap                  xorg-setxkbmap     setxkbmap                  setxkbmap
  libx11-dev         module:x11                    libX11-devel               libx11             libX11-devel               libx11-dev
  libxtst-dev        module:xtst                   libXtst-devel              libxtst            libXtst-devel              libxtst-dev
  file               command:file                  file                       file               file                       file
  patchelf           command:patchelf              patchelf                   patchelf           patchelf                   patchelf
  appstream          command:appstreamcli          appstream                  appstream          AppStream                  appstream
  desktop-file-utils command:desktop-file-validate desktop-file-utils         desktop-file-utils desktop-file-utils         desktop-file-utils
  librsvg2-bin       command:rsvg-convert          librsvg2-tools             librsvg            rsvg-convert               rsvg-convert
  x11-utils          command:xprop                 xprop                      xorg-xprop         xprop                      xprop"

has() { command -v "$1" >/dev/null; }

# compiles COMPILER FLAG...: succeeds if the compiler knows C++20.
compiles() { has "$1" && "$@" -std=c++20 -x c++ - -o /dev/null <<<'#include <version>' 2>/dev/null; }

# is_there SIGN: succeeds if this system has the sign of a package.
is_there() {
  local what=${1#*:}
  case "$1" in
    command:*) has "$what" ;;
    module:*) has pkg-config && pkg-config --exists "$what" ;;
    compiler:*) compiles "$what" -c ;;
    fuzzer:*) compiles "$what" -fsanitize=fuzzer -shared ;;
    font:*) ! has fc-list || grep -q "$what" <<<"$(fc-list)" ;;
    *) true ;;
  esac
}

# named PACKAGE COLUMN: prints the package's entry in the column of this heading.
named() {
  awk -v package="$1" -v heading="$2" '
    $1 == "Debian" { for (i = 1; i <= NF; ++i) if ($i == heading) column = i }
    $1 == package { print $column }' <<<"$package_table"
}

# name_missing NAME...: for systems without apt-get. If a package is missing, prints its name and exits.
name_missing() {
  local manager install name missing=() names=()
  for manager in dnf pacman zypper apk ""; do
    [ -z "$manager" ] || has "$manager" && break
  done
  for name in "$@"; do
    is_there "$(named "$name" sign)" && continue
    missing+=("$name")
    [ -z "$manager" ] || names+=("$(named "$name" "$manager" | sed 's/^-$//')")
  done
  [ ${#missing[@]} -eq 0 ] && return
  case "$manager" in
    pacman) install="pacman -S" ;;
    apk) install="apk add" ;;
    *) install="$manager install" ;;
  esac
  echo "Missing, as Debian calls it: ${missing[*]}" >&2
  [ -z "$manager" ] || echo "This should install it: $install" $(printf '%s\n' "${names[@]}" | sort -u) >&2
  exit 1
}

# install_packages NAME...: installs the missing packages and prints their names. Exits if it cannot.
install_packages() {
  if ! has apt-get || ! has dpkg-query; then
    name_missing "$@"
    return
  fi
  local missing=() name root=()
  for name in "$@"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null)" = installed ] || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return
  [ "$(id -u)" -eq 0 ] || root=(sudo)
  if [ ${#root[@]} -gt 0 ] && ! { has sudo && sudo true; }; then
    echo "Missing, and this user may not install it. As root:" >&2
    echo "  apt-get install --no-install-recommends ${missing[*]}" >&2
    exit 1
  fi
  echo "Installing: ${missing[*]}"
  "${root[@]}" apt-get update -qq
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >/dev/null
}

# build_for_packages DIRECTORY: builds the program and all that is installed with it, in a release build's directory.
build_for_packages() {
  install_packages $game_packages $package_packages
  [ -f "$1/build.ninja" ] || cmake --preset release -B "$1" -DVESKARA_TESTS=OFF >/dev/null
  cmake --build "$1" --target veskara packaging_files
}
