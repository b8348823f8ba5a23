# Sourced by the root scripts: steps that say what they do and how long it took, their noise kept in build/logs.
# The sourcing script stands in the root of the source tree.

mkdir -p build/logs

# step "What is done" name command...: one line; on failure also the last 40 lines of build/logs/name.log.
# Returns the command's exit status.
step() {
    step_title=$1 step_log=build/logs/$2.log
    shift 2
    printf '%-58s ' "$step_title"
    step_start=$(date +%s)
    step_status=0
    "$@" > "$step_log" 2>&1 < /dev/null || step_status=$?
    step_time=$(($(date +%s) - step_start))
    if [ $step_status -eq 0 ]; then
        printf 'ok      %4d s\n' $step_time
        return 0
    fi
    printf 'FAILED  %4d s\n' $step_time
    echo "--- the last lines of $step_log:"
    tail -n 40 "$step_log"
    echo "---"
    return $step_status
}

# build_preset preset [target...]: configures and builds, with ccache where there is one; goes on after a failure, so
# that the log holds all of them.
build_preset() {
    build_launcher=
    ! command -v ccache > /dev/null || build_launcher=-DCMAKE_CXX_COMPILER_LAUNCHER=ccache
    cmake --preset "$1" $build_launcher || return
    build_preset=$1
    shift
    cmake --build --preset "$build_preset" -j "$(nproc)" ${1:+--target "$@"} -- -k 0
}
