# shellcheck shell=bash
# To be sourced. quiet LOG COMMAND...: runs the command with its output in LOG, and shows the end of LOG when it fails.
quiet() {
    local log=$1 status=0
    shift
    mkdir -p "$(dirname "$log")"
    "$@" >"$log" 2>&1 </dev/null || status=$?
    if ((status)); then
        echo "failed with status $status: $*" >&2
        tail -n "${KX_LOG_TAIL:-60}" "$log" >&2
    fi
    return "$status"
}
