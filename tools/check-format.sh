#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Checks that every C++ source is formatted according to .clang-format.
set -u
cd "$(dirname "$0")/.." || exit 1
mapfile -t sources < <(find src tests bench -name '*.h' -o -name '*.cpp')
[ ${#sources[@]} -gt 0 ] || { echo "no sources found"; exit 1; }
clang-format-14 --dry-run -Werror "${sources[@]}" && echo "${#sources[@]} files are well formatted"
