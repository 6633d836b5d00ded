# shellcheck shell=bash
# What Debian has for Windows as source alone, kept in a cache outside the tree. Sourced, not run, from the project's root.

windows_cache=${XDG_CACHE_HOME:-$HOME/.cache}/twinstep

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
