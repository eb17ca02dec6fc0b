# Sourced by ./play, ./check and what makes packages: installs Debian packages that are missing.

# What the game is built from and what it runs with.
game_packages="g++ cmake ninja-build pkg-config libsdl2-dev libsdl2-mixer-dev libcairo2-dev libpango1.0-dev
  libfontconfig-dev fonts-dejavu-core fonts-noto-cjk libgl1-mesa-dri"
# What a machine without a display needs to show it all the same.
headless_packages="xvfb maim xdotool"
# What the tests and benchmarks need beside these.
check_packages="git locales python3 strace clang libclang-rt-dev clang-format clang-tidy cppcheck libgtest-dev
  libgmock-dev libbenchmark-dev nlohmann-json3-dev libvorbis-dev xvfb openbox x11-xkb-utils libx11-dev libxtst-dev"
# What makes packages of the game, and what the tests of these need beside it.
package_packages="dpkg-dev file patchelf"
check_packages+=" $package_packages appstream desktop-file-utils fakeroot flatpak-builder librsvg2-bin lintian
  x11-utils"

# install_packages NAME...: says what it installs; does nothing when all are there.
install_packages() {
  local missing=() name
  for name in "$@"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null)" = installed ] || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "Installing: ${missing[*]}"
  local root=()
  [ "$(id -u)" -eq 0 ] || root=(sudo)
  "${root[@]}" apt-get update -qq
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >/dev/null
}

# build_for_packages DIRECTORY: the program and what is installed beside it, in a release build's directory.
build_for_packages() {
  install_packages $game_packages $package_packages
  [ -f "$1/build.ninja" ] || cmake --preset release -B "$1" -DVESKARA_TESTS=OFF >/dev/null
  cmake --build "$1" --target veskara packaging_files
}
