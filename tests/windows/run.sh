#!/usr/bin/env bash
# The core and the adapters to Windows as Windows programs, under Wine.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/packages.sh
source scripts/build.sh
source scripts/run_tests.sh

need_packages "${wine_packages[@]}"
scripts/build_windows.sh
build_preset tests --target emulated_board

# A prefix of its own, without a display. A crash opens no debugger, which would keep the process alive.
WINEPREFIX=$(mktemp -d)
export WINEPREFIX WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY WAYLAND_DISPLAY
board=
end() {
    wineserver --kill || true
    wineserver --wait || true
    [[ -z $board ]] || kill "$board"
    rm -rf "$WINEPREFIX"
}
trap end EXIT
wine wineboot --init 2>/dev/null
wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /d none /f >/dev/null 2>&1

echo "The core's tests as a Windows program"
run_under_wine build/windows-core.log wine build/windows/tests/twinstep_tests.exe --gtest_brief=1
echo "The adapters' tests, with the step clock's figures, and with a board on COM5"
export TWINSTEP_BOARD_LOG=Z:$WINEPREFIX/board
exec 3<> <(:) # its orders: none
build/tests/tests/emulated_board "$WINEPREFIX/dosdevices/com5" <&3 >"$WINEPREFIX/board" &
board=$!
run_under_wine build/windows-adapters.log wine build/windows/tests/adapters/twinstep_windows_tests.exe --gtest_brief=1
