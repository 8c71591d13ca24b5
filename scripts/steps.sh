# Sourced, by bash: long steps that say one line and keep their output for the case that they fail.

# quietly LOG TITLE COMMAND...: run the command with its output in LOG, and show that when it fails.
quietly() {
    local log=$1 title=$2
    shift 2
    mkdir -p "$(dirname "$log")"
    echo "$title ..." >&2
    if ! "$@" >"$log" 2>&1; then
        tail -n 60 "$log" >&2
        echo "Failed: $*  (whole output: $log)" >&2
        return 1
    fi
}
