# shellcheck shell=bash
# Configures and builds a preset. Sourced, not run, from the project's root.

# build_preset PRESET [--target NAME]: quiet while all is well. Compiles through ccache where it is installed.
build_preset() {
    local launcher=()
    if command -v ccache >/dev/null; then
        launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    fi
    cmake --preset "$1" --log-level=WARNING "${launcher[@]}" >&2 && cmake --build --preset "$@" >&2
}
