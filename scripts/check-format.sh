#!/bin/sh
# Fails when a tracked C or C++ file is not as clang-format-14 writes it; with --fix, writes it so.
set -eu
cd "$(dirname "$0")/.."

mode='--dry-run -Werror'
[ "${1:-}" = --fix ] && mode=-i
git ls-files -z -- '*.h' '*.hpp' '*.c' '*.cpp' | xargs -0 -r clang-format-14 $mode
