# shellcheck shell=bash
# Configures and builds a preset. Sourced, not run, from the project's root.

# configure_preset PRESET [OPTION...]: quiet while all is well. Compiles through ccache where it is installed.
configure_preset() {
    local launcher=()
    if command -v ccache >/dev/null; then
        launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    fi
    cmake --preset "$@" --log-level=WARNING "${launcher[@]}" >&2
}

# build_preset PRESET [--target NAME]
build_preset() {
    configure_preset "$1" && cmake --build --preset "$@" >&2
}
