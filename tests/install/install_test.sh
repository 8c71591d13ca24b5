#!/usr/bin/env bash
# install_test.sh BUILD TREE ARCHIVE...: installs BUILD into TREE/prefix and uses what is there: headers, both ways to
# find the library, the shell, its man page and its completion. The archives hold what the library is to export.
# CC, CXX and CMAKE are the tools.
set -euo pipefail

build=$1 tree=$2
shift 2
consumer=$(dirname "$0")/consumer
prefix=$tree/prefix
failed=0

# check NAME COMMAND...: run it, show its output only when it fails.
check() {
    local name=$1
    shift
    if ! "$@" >"$tree/log" 2>&1; then
        echo "FAILED: $name"
        sed 's/^/    /' "$tree/log"
        failed=1
    fi
}

# prints TEXT COMMAND...: the command succeeds and prints the text.
prints() {
    local text=$1 output
    shift
    output=$("$@") && [[ $output = "$text" ]] || {
        printf '%s\nbut should print\n%s\n' "$output" "$text"
        return 1
    }
}

rm -rf "$tree"
mkdir -p "$tree/headers" "$tree/by-pkg-config"
check "install" "$CMAKE" --install "$build" --prefix "$tree/first"
# The tree may be moved: nothing in it names the place that it was installed to.
check "move" mv "$tree/first" "$prefix"
nothing_names_the_place() {
    ! grep -r -l -I -F -e "$tree" -e "$build" "$prefix"
}
check "the tree tells no place" nothing_names_the_place
libdir=$(dirname "$(find "$prefix" -name libzuvbrelservice.so)")

# ---- Headers: each alone, twice, in both languages ----

headers=$(cd "$prefix/include/zuvbrelservice" && find . -name '*.h' -printf '%P\n' | sort)
[[ $(wc -l <<<"$headers") -gt 50 ]] || { echo "FAILED: too few headers"; failed=1; }
for header in $headers; do
    printf '#include "%s"\n#include "%s"\n' "$header" "$header" >"$tree/headers/${header//\//_}.c"
done
strict=(-Wall -Wextra -Wpedantic -Werror -fsyntax-only -I "$prefix/include/zuvbrelservice")
check "headers in C11" "$CC" -std=c11 "${strict[@]}" "$tree"/headers/*.c
check "headers in C++11" "$CXX" -std=c++11 "${strict[@]}" -x c++ "$tree"/headers/*.c

# ---- The library exports the whole interface in C, and nothing else ----

# Global symbols without those that C++ mangles.
symbols() {
    nm --format=posix --defined-only "$@" | awk '$2 ~ /^[A-Z]$/ && $1 !~ /^_|[.]/ { sub(/@.*/, "", $1); print $1 }' |
        grep -v '^ZUVBRELSERVICE_' | sort -u
}
symbols -g "$@" | grep -v '\[.*\]:$' >"$tree/in-archives"
symbols -D "$libdir/libzuvbrelservice.so" >"$tree/exported"
check "exports" diff "$tree/in-archives" "$tree/exported"
check "exports something" grep -q '^ZUV_BrelServiceProperties_add$' "$tree/exported"
nothing_mangled() {
    ! nm -D --defined-only "$libdir/libzuvbrelservice.so" | grep ' _Z'
}
check "nothing of C++ is exported" nothing_mangled

# ---- Programs outside of this repository ----

reader_output='ZUV Brel Service 7.7.0.0: 2 properties, colour=red, Colour=blue, versions -1'
engine_output='Square: the stream has gone; names are shared'

# run_consumers FOLDER
run_consumers() {
    prints "$reader_output" "$1/reader" && prints "$engine_output" "$1/engine" "$1/plugin.so"
}

by_cmake() {
    "$CMAKE" -S "$consumer" -B "$tree/by-cmake" -DCMAKE_PREFIX_PATH="$prefix" \
        -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" &&
        "$CMAKE" --build "$tree/by-cmake" && run_consumers "$tree/by-cmake"
}
check "the CMake package" by_cmake

by_pkg_config() {
    local flags libraries out=$tree/by-pkg-config
    export PKG_CONFIG_PATH=$libdir/pkgconfig LD_LIBRARY_PATH=$libdir
    read -ra flags < <(pkg-config --cflags 'zuvbrelservice >= 7.7')
    read -ra libraries < <(pkg-config --libs zuvbrelservice)
    "$CC" -std=c11 "${flags[@]}" "$consumer/reader.c" -o "$out/reader" "${libraries[@]}" &&
        "$CC" -std=c11 -shared -fPIC "${flags[@]}" "$consumer/plugin.c" -o "$out/plugin.so" "${libraries[@]}" &&
        "$CXX" -std=c++11 "${flags[@]}" "$consumer/engine.cpp" -o "$out/engine" "${libraries[@]}" -ldl &&
        run_consumers "$out"
}
# In a shell of its own, which keeps the variables to itself.
check "pkg-config" bash -c "$(declare -f prints run_consumers by_pkg_config)
    libdir='$libdir' tree='$tree' consumer='$consumer' CC='$CC' CXX='$CXX'
    reader_output='$reader_output' engine_output='$engine_output'
    by_pkg_config"

# ---- The schemas ----

check "schemas" xmllint --noout --nonet --schema "$prefix/share/zuvbrelservice/schemas/zuv_brel_service.xsd" \
    "$(dirname "$0")/../../examples/configurations/complete.xml"

# ---- The shell, its page and its completion ----

options=$({ "$prefix/bin/zuvbsh" -help || true; } | sed -n 's/^ *\(-[A-Za-z]*\).*/\1/p')
[[ $(wc -w <<<"$options") -eq 4 ]] || { echo "FAILED: zuvbsh -help: $options"; failed=1; }
page=$prefix/share/man/man1/zuvbsh.1
for option in $options; do
    check "the man page tells of $option" grep -q -F -e "\\$option" "$page"
done
commands=$(sed -n 's/^\([a-z_]*\) *- .*/\1/p' "$(dirname "$0")/../service/tour_transcript.txt")
[[ $(wc -w <<<"$commands") -eq 14 ]] || { echo "FAILED: commands of the help: $commands"; failed=1; }
for command in $commands; do
    check "the man page tells of $command" grep -q -E "^\.BI? .*\b$command\b|^\.BR .*\b$command\b" "$page"
done

# completes EXPECTED WORD...: the last word is the one at the cursor.
completes() {
    local expected=$1
    shift
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
    _zuvbsh
    [[ ${COMPREPLY[*]} = "$expected" ]] || { echo "got '${COMPREPLY[*]}'"; return 1; }
}
# shellcheck disable=SC1091
. "$prefix/share/bash-completion/completions/zuvbsh"
cd "$tree/headers"
touch 'a command file.txt'
check "completion: all" completes "$(xargs <<<"$options")" zuvbsh ''
check "completion: one" completes '-timeout' zuvbsh -t
check "completion: behind a value" completes '-help' zuvbsh -domainId 7 -h
check "completion: a number is not completed" completes '' zuvbsh -domainId ''
check "completion: a value that looks like an option" completes '-cmdFile' zuvbsh -timeout -1 -c
check "completion: a file" completes 'a command file.txt' zuvbsh -cmdFile a\ com
check "completion: a file behind a short option" completes 'a command file.txt' zuvbsh -C 'a c'

exit "$failed"
