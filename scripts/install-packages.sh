#!/bin/sh
# Installs the packages of packages.txt that are missing. Says nothing and touches no network when none is.
# Works as root, or through sudo.
set -eu

list=$(dirname "$0")/packages.txt
wanted=$(sed 's/#.*//' "$list" | tr -s '[:space:]' '\n' | sed '/^$/d')

is_installed() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

missing=
for package in $wanted; do
    is_installed "$package" || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

as_root=
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "Missing packages:$missing" >&2
        echo "Install them as root, or install sudo, and start again." >&2
        exit 1
    fi
    as_root=sudo
fi

echo "Installing:$missing" >&2
log=$(mktemp)
trap 'rm -f "$log"' EXIT
install() {
    $as_root apt-get update -qq &&
        $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing
}
if ! install >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi
