# shellcheck shell=bash
# What Debian has for Windows as source alone, kept in a cache outside the tree: hidapi, and Qt, which takes long to
# build. Sourced, not run, from the project's root.

windows_cache=${XDG_CACHE_HOME:-$HOME/.cache}/twinstep

# What the window does not use stays out. Static: the program is one file.
windows_qt_options=(
    -DCMAKE_BUILD_TYPE=MinSizeRel -DBUILD_SHARED_LIBS=OFF
    -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF -DFEATURE_pkg_config=OFF
    -DFEATURE_sql=OFF -DFEATURE_dbus=OFF -DFEATURE_printsupport=OFF -DFEATURE_concurrent=OFF -DFEATURE_xml=OFF
    -DINPUT_opengl=no -DFEATURE_vulkan=OFF -DFEATURE_zstd=OFF -DFEATURE_tabletevent=OFF
    -DFEATURE_direct2d=OFF -DFEATURE_directwrite=OFF
    -DINPUT_openssl=no -DFEATURE_ssl=OFF -DFEATURE_schannel=OFF -DFEATURE_jpeg=OFF -DFEATURE_gif=OFF
    -DFEATURE_system_png=OFF -DFEATURE_system_freetype=OFF -DFEATURE_system_harfbuzz=OFF
    -DFEATURE_system_pcre2=OFF -DFEATURE_system_zlib=OFF)

# The version of Qt on this machine: its tools build the one for Windows, which must be the same.
windows_qt_version() { dpkg-query -W -f='${source:Version}' qt6-base-dev; }

# Where Qt for Windows is kept. It is complete where the file "complete" stands in it.
windows_qt_folder() {
    local key
    key=$({
        printf '%s\n' "${windows_qt_options[@]}"
        cat cmake/mingw.cmake
        x86_64-w64-mingw32-g++-posix -dumpfullversion
    } | sha256sum | cut -c 1-12)
    echo "$windows_cache/qt-$(windows_qt_version)-$key"
}

have_windows_qt() { [[ -f $(windows_qt_folder)/complete ]]; }

# fetch_source PACKAGE=VERSION FOLDER: unpacks a Debian source package into FOLDER, with Debian's patches. The system's
# own lists need not name sources.
fetch_source() {
    local lists=$2.apt
    mkdir -p "$lists/lists/partial" "$lists/unpack"
    # shellcheck disable=SC2016  # apt fills in the fields
    apt-get indextargets 'Created-By: Packages' 'Identifier: Packages' 'Origin: Debian' \
        --format 'deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $(REPO_URI) $(RELEASE) $(COMPONENT)' |
        sort -u >"$lists/sources.list"
    local apt=(apt-get -q -o "Dir::Etc::sourcelist=$lists/sources.list" -o Dir::Etc::sourceparts=-
        -o "Dir::State::lists=$lists/lists")
    "${apt[@]}" update >&2
    (cd "$lists/unpack" && "${apt[@]}" source "$1" >&2)
    mv "$lists"/unpack/*/ "$2"
    rm -rf "$lists"
}

# The source of hidapi in the version of this machine's, which is one file for Windows.
windows_hidapi_folder() {
    local version folder
    version=$(dpkg-query -W -f='${source:Version}' libhidapi-dev)
    folder=$windows_cache/hidapi-$version
    mkdir -p "$windows_cache"
    [[ -d $folder ]] || fetch_source "hidapi=$version" "$folder"
    echo "$folder"
}

# Some 20 minutes on two cores, and 3 GB of room meanwhile. Goes on where an earlier build was interrupted.
build_windows_qt() {
    local folder source build
    folder=$(windows_qt_folder)
    [[ ! -f $folder/complete ]] || return 0
    source=$folder.source
    build=$folder.build
    mkdir -p "${folder%/*}"
    [[ -d $source ]] || fetch_source "qt6-base=$(windows_qt_version)" "$source"
    cp cmake/mingw.cmake "$source/twinstep-mingw.cmake" # a build that goes on later may do so from another folder
    cmake -S "$source" -B "$build" -G Ninja --log-level=WARNING \
        -DCMAKE_TOOLCHAIN_FILE="$source/twinstep-mingw.cmake" -DCMAKE_INSTALL_PREFIX="$folder" -DQT_HOST_PATH=/usr \
        -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/cmake" \
        "${windows_qt_options[@]}" >&2
    cmake --build "$build" --parallel "$(nproc)" >&2
    cmake --install "$build" >/dev/null
    cp -r "$source/LICENSES" "$folder/licences"
    touch "$folder/complete"
    rm -rf "$source" "$build"
}
