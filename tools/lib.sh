# Functions that the project's commands share; sourced, not run. The caller sets projectRoot.

# What the compiler cache keeps serves every checkout of the project, wherever it lies.
export CCACHE_BASEDIR=$projectRoot
export CCACHE_NOHASHDIR=1

say() {
    printf '%s: %s\n' "$(basename "$0")" "$*"
}

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# build_preset PRESET [TARGET...]: configures when there is need, then builds. Two commands at a time do not get in
# each other's way. On failure the compiler's words stand above; the result is non-zero.
build_preset() {
    local preset=$1
    shift
    mkdir -p "$projectRoot/build"
    (
        flock 9
        cd "$projectRoot"
        if [ ! "build/$preset/build.ninja" -nt CMakePresets.json ]; then
            cmake --preset "$preset" -Wno-dev >"build/configure-$preset.log" 2>&1 9>&- || {
                cat "build/configure-$preset.log" >&2
                exit 1
            }
        fi
        cmake --build --preset "$preset" ${1:+--target "$@"} 9>&-
    ) 9>"$projectRoot/build/$preset.lock"
}

# Starts a private X server when no display is there, for what opens windows. stop_display ends it.
displayServer=
start_display() {
    [ -z "${DISPLAY:-}" ] || return 0
    command -v Xvfb >/dev/null || fail "there is no display, and Xvfb, which stands in for one, is not installed"
    local channel number
    channel=$(mktemp -u "${TMPDIR:-/tmp}/corvanta-display.XXXXXX")
    mkfifo "$channel"
    Xvfb -displayfd 8 -screen 0 1920x1200x24 -nolisten tcp -noreset 8<>"$channel" >/dev/null 2>&1 </dev/null &
    displayServer=$!
    if ! read -r -t 20 number <>"$channel" || [ -z "$number" ]; then
        rm -f "$channel"
        fail "there is no display, and Xvfb did not start"
    fi
    rm -f "$channel"
    export DISPLAY=":$number"
    say "no display, so windows open on a private one, $DISPLAY"
}

stop_display() {
    [ -n "$displayServer" ] || return 0
    kill "$displayServer" 2>/dev/null || true
    wait "$displayServer" 2>/dev/null || true
    displayServer=
}
