#!/bin/sh
# Runs a command in a network of its own that has nothing but lo, and with shared memory of its own, where the
# system permits that; otherwise runs it as it is. The network is a second guard: participants here stay on
# loopback by their profile in any case. The shared memory keeps what processes leave that tests kill, up to
# the end of the run and no longer.
prepare='ip link set lo up && mount -t tmpfs shm /dev/shm && exec "$@"'
for namespaces in -nm -rnm; do
    if unshare $namespaces sh -c "$prepare" sh true 2>/dev/null; then
        exec unshare $namespaces sh -c "$prepare" sh "$@"
    fi
done
exec "$@"
