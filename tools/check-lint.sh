#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# clang-tidy over the product's sources, each for itself, with the commands of preset "lint".
set -u
cd "$(dirname "$0")/.." || exit 1
cmake --preset lint >/dev/null || exit 1
find src -name '*.cpp' ! -name '*_test.cpp' -print0 |
  xargs -0 -P "$(nproc)" -n 4 clang-tidy-14 -p build/lint --quiet --extra-arg=-Wno-unknown-warning-option
