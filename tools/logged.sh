# logged LOG COMMAND [ARGS...]: runs a command, which ends at its first failure, with its output in LOG.
# If it fails, shows the end of LOG and leaves the script. For scripts that have set -e.
logged() {
    local log=$1 status=0
    shift
    # Not in a condition: there the shell would go on behind a failure.
    set +e
    (set -e; "$@") > "$log" 2>&1
    status=$?
    set -e
    [ "$status" = 0 ] && return
    echo "Failed; the end of the log:" >&2
    tail -n 20 "$log" >&2
    exit "$status"
}
