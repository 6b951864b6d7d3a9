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
