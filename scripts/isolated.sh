#!/bin/sh
# Runs a command in a network of its own that has nothing but lo, where the system permits that; otherwise
# runs it as it is. A second guard: participants here stay on loopback by their profile in any case.
bring_up='ip link set lo up && exec "$@"'
if unshare -n true 2>/dev/null; then
    exec unshare -n sh -c "$bring_up" sh "$@"
elif unshare -rn true 2>/dev/null; then
    exec unshare -rn sh -c "$bring_up" sh "$@"
fi
exec "$@"
