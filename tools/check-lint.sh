#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# clang-tidy over the product's sources. check-lint.sh BUILD_FOLDER (with compile_commands.json)
set -u
cd "$(dirname "$0")/.." || exit 1
build=${1:?name the build folder}
[ -f "$build/compile_commands.json" ] || { echo "no compile_commands.json in $build"; exit 1; }
find src -name '*.cpp' ! -name '*_test.cpp' -print0 |
  xargs -0 -P "$(nproc)" -n 4 clang-tidy-14 -p "$build" --quiet --extra-arg=-Wno-unknown-warning-option
