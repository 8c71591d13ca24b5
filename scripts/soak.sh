#!/usr/bin/env bash
# Services and shells at once for some minutes, on this machine alone; fails when a command is lost, something grows, or
# shared memory stays behind.
set -euo pipefail

usage() {
    cat <<'TEXT'
Usage: scripts/soak.sh [--short] [--build FOLDER] [--seconds N] [--shells N] [--services N]

  --short      a quarter of a minute with few shells, as the tests run it; longer when a slow machine needs it to have
               commands enough
  --build      what was built: build/release without this
  --seconds    how long, 300 without this
  --shells     how many shells at once, 50 without this
  --services   how many services, 3 without this
TEXT
}

root=$(cd "$(dirname "$0")/.." && pwd)
build=$root/build/release
seconds=300 shells=50 services=3
while [[ $# -gt 0 ]]; do
    case $1 in
        --short) seconds=12 shells=8 ;;
        --build) build=$2; shift ;;
        --seconds) seconds=$2; shift ;;
        --shells) shells=$2; shift ;;
        --services) services=$2; shift ;;
        -h | --help) usage; exit 0 ;;
        *) usage >&2; exit 2 ;;
    esac
    shift
done

export FASTRTPS_DEFAULT_PROFILES_FILE=$root/examples/profiles/loopback.xml
# Sanitizers end what they find something in with a status of failure.
export TSAN_OPTIONS=${TSAN_OPTIONS:-suppressions=$root/tests/support/tsan.supp}
export ASAN_OPTIONS=${ASAN_OPTIONS:-new_delete_type_mismatch=0}

# Shared memory of its own is empty at the beginning; other people's says nothing about this run.
run='
before=$(ls -A /dev/shm)
"$@" || exit
left=$(ls -A /dev/shm)
if [ -n "$before" ]; then
    echo "Shared memory was in use before, so that what is left does not count."
elif [ -n "$left" ]; then
    echo "Left in shared memory:" $left
    exit 1
else
    echo "Nothing is left in shared memory."
fi'
exec "$root/scripts/isolated.sh" sh -c "$run" sh "$build/bin/soak" "$seconds" "$shells" "$services"
