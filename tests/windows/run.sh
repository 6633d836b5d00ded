#!/usr/bin/env bash
# The programs for Windows, under Wine. Builds with the window where Qt for Windows is in the cache; else without it, and
# says so. scripts/build_windows.sh fills the cache.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/packages.sh
source scripts/build.sh
source scripts/run_tests.sh
source scripts/windows_libraries.sh

need_packages "${windows_packages[@]}" "${wine_packages[@]}"
with_window=
if have_windows_qt; then
    echo "With the window: Qt for Windows is in $(windows_qt_folder)."
    scripts/build_windows.sh
    with_window=yes
else
    echo "Without the window: Qt for Windows is not in the cache, which scripts/build_windows.sh fills."
    scripts/build_windows.sh --without-window
fi

build_preset tests --target emulated_board

# A prefix of its own. A crash opens no debugger, which would keep the process alive.
WINEPREFIX=$(mktemp -d)
export WINEPREFIX WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY WAYLAND_DISPLAY
helpers=() # processes beside the tests
end() {
    wineserver --kill || true
    wineserver --wait || true
    kill "${helpers[@]}" 2>/dev/null || true
    rm -rf "$WINEPREFIX"
}
trap end EXIT
if [[ $with_window ]]; then
    exec 4<> <(:)
    Xvfb -displayfd 4 -screen 0 1400x1000x24 -nolisten tcp 2>/dev/null &
    helpers+=($!)
    read -r number <&4
    export DISPLAY=:$number
fi
wine wineboot --init 2>/dev/null
# A desktop of Wine's own, which gives the focus to windows as Windows does.
wine reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Default /f >/dev/null 2>&1
wine reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Default /d 1400x1000 /f >/dev/null 2>&1
# The font of the tests on Linux, DejaVu Sans of 12 pixels: a bare prefix has none that a Windows has.
font=F4FFFFFF$(printf '%024d' 0)90010000$(printf '%014d' 0)22$(printf '%s%084d' 440065006A006100560075002000530061006E007300 0)
wine reg add 'HKCU\Control Panel\Desktop\WindowMetrics' /v MessageFont /t REG_BINARY /d "$font" /f >/dev/null 2>&1
wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /d none /f >/dev/null 2>&1

echo "The core's tests as a Windows program"
run_under_wine build/windows-core.log wine build/windows/tests/twinstep_tests.exe --gtest_brief=1
echo "The adapters' tests, with the step clock's figures, and with a board on COM5"
export TWINSTEP_BOARD_LOG=Z:$WINEPREFIX/board
exec 3<> <(:) # its orders: none
build/tests/tests/emulated_board "$WINEPREFIX/dosdevices/com5" <&3 >"$WINEPREFIX/board" &
helpers+=($!)
run_under_wine build/windows-adapters.log wine build/windows/tests/adapters/twinstep_windows_tests.exe --gtest_brief=1
[[ $with_window ]] || exit 0

echo "The window's tests as a Windows program"
run_under_wine build/windows-window.log wine build/windows/tests/twinstep_ui_tests.exe --gtest_brief=1
tests/windows/installer.sh

echo "The program in front of station programs in its own prefix"
cmake --build --preset windows --target station_programs >&2
build_preset tests --target twinstep_wine_tests
QT_QPA_PLATFORM=offscreen run_under_wine build/windows-program.log build/tests/tests/wine/twinstep_wine_tests \
    build/windows/bridge --gtest_filter='WindowsProgramTest.*'
