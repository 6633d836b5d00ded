# shellcheck shell=bash
# The Debian packages that the scripts need, and how they get them. Sourced, not run.
# shellcheck disable=SC2034  # the lists are for those who source this

# To build and run the program.
program_packages=(build-essential cmake ninja-build qt6-base-dev qt6-multimedia-dev libhidapi-dev pkg-config)
# To build and run its tests.
test_packages=("${program_packages[@]}" libgtest-dev libgmock-dev umockdev libumockdev-dev locales xvfb libbenchmark-dev
    dbus-daemon libhamlib-utils gpredict xdotool)
# What CI checks beyond the tests.
check_packages=(clang-format clang-tidy shellcheck)
# The fuzz targets.
fuzz_packages=(build-essential cmake ninja-build clang libclang-rt-14-dev)
# The bridge for Windows.
bridge_packages=(build-essential cmake ninja-build g++-mingw-w64-x86-64-posix)
# The core and the adapters for Windows, whose libraries are built from Debian's sources.
windows_packages=("${bridge_packages[@]}" dpkg-dev qt6-base-dev qt6-base-dev-tools libhidapi-dev googletest nsis)
# The tests under Wine; 64 bits are enough.
wine_packages=("${test_packages[@]}" "${windows_packages[@]}" wine wine64)
# To draw the icon of the bridge anew.
icon_packages=(librsvg2-bin imagemagick)
# The benchmarks.
bench_packages=("${program_packages[@]}" libbenchmark-dev)
# What the step timers are measured beside.
step_timing_packages=(linuxcnc-uspace util-linux)
# To build the Debian package.
package_packages=("${program_packages[@]}" dpkg-dev file librsvg2-bin)
# To check it and to install it into a bare root.
package_check_packages=(appstream debootstrap desktop-file-utils lintian man-db)

# Installs those of the given packages that are missing; touches the network only then.
need_packages() {
    local package missing=()
    for package in "$@"; do
        # "install ok installed"; a package that was removed is known too, but not installed.
        if [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) != installed ]]; then
            missing+=("$package")
        fi
    done
    ((${#missing[@]})) || return 0

    local as_root=()
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            echo "$0: these packages are missing, and without root or sudo they cannot be installed:" \
                "${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}" >&2
    if ! { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -q &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -q -y --no-install-recommends "${missing[@]}"; } >&2; then
        echo "$0: installing these packages failed: ${missing[*]}" >&2
        return 1
    fi
}
