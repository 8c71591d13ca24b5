#!/bin/sh
# Fails when a tracked C or C++ file is not as clang-format-14 writes it; with --fix, writes it so.
set -eu
cd "$(dirname "$0")/.."

mode='--dry-run -Werror'
[ "${1:-}" = --fix ] && mode=-i
files=$(git ls-files -- '*.h' '*.hpp' '*.c' '*.cpp')
# No name has a blank in it.
# shellcheck disable=SC2086
clang-format-14 $mode $files
