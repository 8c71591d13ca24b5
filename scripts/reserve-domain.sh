# Sourced, by bash. Sets `domain` to a DDS domain that nobody else on this machine uses as long as this shell
# or a child of it lives. Tests reserve theirs in the same way.
reserve_domain() {
    local offset
    for offset in $(seq 0 98); do
        domain=$((1 + ($$ + offset) % 99))
        if { exec {domain_lock}>"/tmp/zuv-test-domain-$domain.lock"; } 2>/dev/null; then
            flock -n "$domain_lock" && return 0
            exec {domain_lock}>&-
        fi
    done
    echo "No free DDS domain: all are reserved by others." >&2
    return 1
}
