# SPDX-License-Identifier: GPL-3.0-or-later
# The Debian 12 packages that Sonarith needs, and a function that installs them. Sourced by ./run,
# ./package and ./test.

build_packages=(
  cmake ninja-build g++ pkg-config python3
  qt6-base-dev libfontconfig-dev libcdio-dev libcdio-cdda-dev libcdio-paranoia-dev libsndfile1-dev libasound2-dev
  libasound2-plugins libutf8proc-dev libmpg123-dev libspeexdsp-dev libxcb1-dev
  libsystemd-dev
)
# Also needed to build the Debian package: to draw the icon in all sizes, and to find the libraries
# that the program needs.
package_packages=(librsvg2-bin dpkg-dev binutils)
# For the demonstration without a display, and for the e2e tests: a virtual display, and tools that
# simulate user input and take screenshots.
demo_packages=(
  xvfb openbox xdotool imagemagick x11-utils dbus at-spi2-core python3-gi
  gir1.2-atspi-2.0 fonts-dejavu-core
)
test_packages=(
  libgtest-dev libgmock-dev ccache clang clang-format clang-tidy
  libclang-rt-14-dev pulseaudio pulseaudio-utils lame mpg123 trayer sway grim qt6-wayland
)

# Tools that check the Debian package.
package_test_packages=(mmdebstrap lintian desktop-file-utils appstream man-db)

# install_missing PACKAGE... : prints the names of the missing packages and installs them. Prints
# nothing if all are installed.
install_missing() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing what is missing: ${missing[*]}"
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "Cannot install packages: not root, and there is no sudo." >&2
      return 1
    fi
    as_root=(sudo)
  fi
  "${as_root[@]}" apt-get update -qq &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}
