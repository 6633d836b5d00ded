#!/usr/bin/env bash
# Builds Twinstep for 64-bit Windows: build/windows/twinstep-VERSION-portable.zip and twinstep-VERSION-setup.exe. Builds
# Qt for Windows first where it is not in the cache. With "--without-window", builds only what needs no Qt.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/packages.sh
source scripts/build.sh
source scripts/windows_libraries.sh

need_packages "${windows_packages[@]}"
settings=(-DTWINSTEP_HIDAPI="$(windows_hidapi_folder)")
if [[ ${1:-} == --without-window ]]; then
    settings+=(-DTWINSTEP_WINDOW=OFF)
else
    build_windows_qt
    settings+=(-DTWINSTEP_WINDOW=ON -DCMAKE_PREFIX_PATH="$(windows_qt_folder)")
fi
configure_preset windows "${settings[@]}"
cmake --build --preset windows >&2
[[ ${1:-} != --without-window ]] || exit 0

# What is given to users, in the places where the program looks for it.
package=build/windows/package
stage=$package/Twinstep
rm -rf "$package"
mkdir -p "$stage/assets" "$stage/licences/qt"
cp build/windows/program/{twinstep,twinstep-watchdog}.exe build/windows/bridge/twinstep-bridge.exe "$stage"
cp -r docs README.md "$stage"
cp -r assets/sounds "$stage/assets"
cp assets/twinstep.ico "$package"
cp LICENSE "$stage/LICENSE.txt"
cp packaging/windows/licences.txt "$stage/licences/README.txt"
cp "$(windows_hidapi_folder)/LICENSE.txt" "$stage/licences/hidapi.txt"
cp /usr/share/doc/mingw-w64-common/copyright "$stage/licences/mingw-w64.txt"
cp "$(windows_qt_folder)"/licences/* "$stage/licences/qt"

# All that every Windows brings along.
for program in "$stage"/*.exe; do
    foreign=$(x86_64-w64-mingw32-objdump -p "$program" | sed -n 's/^[[:space:]]*DLL Name: //p' | tr '[:upper:]' '[:lower:]' |
        grep -vxFf packaging/windows/system_libraries.txt || true)
    if [[ -n $foreign ]]; then
        echo "$program needs what not every system has: $foreign" >&2
        exit 1
    fi
done

version=$(sed -n 's/^project(twinstep VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
setup=build/windows/twinstep-$version-setup.exe
makensis -V2 -NOCD "-DVERSION=$version" "-DFOLDER=$stage" "-DOUTPUT=$setup" packaging/windows/twinstep.nsi >&2
touch "$stage/portable"
zip=build/windows/twinstep-$version-portable.zip
rm -f "$zip"
(cd "$package" && cmake -E tar cf "../${zip##*/}" --format=zip Twinstep)
rm "$stage/portable"
for file in "$setup" "$zip"; do
    size=$(stat -c %s "$file")
    if ((size > 15000000)); then
        echo "$file has $size bytes; it must stay under 15 MB." >&2
        exit 1
    fi
    echo "$file: $size bytes"
done
