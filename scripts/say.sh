# Steps with their number and time, for run, test and bench. Set steps=N first.
step_number=0
step() {
    step_number=$((step_number + 1))
    echo "[$step_number/$steps $(date +%H:%M:%S)] $*"
}
# Runs a command; shows what it printed only when it fails.
quietly() {
    local log
    log=$(mktemp)
    if ! "$@" >"$log" 2>&1; then
        cat "$log"
        rm -f "$log"
        echo "Failed: $*"
        return 1
    fi
    rm -f "$log"
}
