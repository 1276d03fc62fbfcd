#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# make_package.sh BUILD_FOLDER PACKAGE_FOLDER: builds in BUILD_FOLDER, and replaces the packages in
# PACKAGE_FOLDER. Both paths are relative to the project's folder.
set -euo pipefail
cd "$(dirname "$0")/.."
build=$1 packages=$PWD/$2

# All times in the package are the commit's time or, without a repository, the changelog's.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null ||
  dpkg-parsechangelog -l share/debian/changelog -S Timestamp)
export SOURCE_DATE_EPOCH
umask 022
# The compiler cache rewrites paths, which are part of the debug symbols.
export CCACHE_DISABLE=1

echo "Building the package ..."
# Two packages of one commit are equal byte for byte only if both builds combine the sources in the
# same way and use no compiler cache. So these options replace those of the build folder.
cmake --preset release -B "$build" -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=8 \
  -DCMAKE_CXX_COMPILER_LAUNCHER= >/dev/null
cmake --build "$build" --parallel "$(nproc)"
mkdir -p "$packages"
rm -f "$packages"/*.deb "$packages"/*.ddeb
if grep -q 'unknown-package-of' "$build/CPackConfig.cmake"; then
  echo "The program loads these libraries at run time, but no package on this machine contains them:" >&2
  grep -o 'unknown-package-of-[^", ]*' "$build/CPackConfig.cmake" | sort -u >&2
  exit 1
fi
(cd "$build" && cpack -B "$packages" >"$packages/cpack.log" 2>&1) || { cat "$packages/cpack.log"; exit 1; }
rm -rf "$packages/_CPack_Packages" "$packages/cpack.log"
# CPack writes paths of this machine into the checksum file of the debug symbols.
for symbols in "$packages"/*.ddeb; do
  unpacked=$(mktemp -d)
  dpkg-deb --raw-extract "$symbols" "$unpacked"
  chmod 755 "$unpacked"
  sed -i 's|  .*/usr/lib/debug/|  usr/lib/debug/|' "$unpacked/DEBIAN/md5sums"
  dpkg-deb --root-owner-group --build "$unpacked" "$symbols" >/dev/null
  rm -rf "$unpacked"
done
ls "$packages"/*.deb "$packages"/*.ddeb
