#!/usr/bin/env bash
# Station programs, the bridge and the window together, under Wine; tests/windows/run.sh tests the program itself there.
# Arguments are GoogleTest's, such as --gtest_filter='Latency.*'. Installs what is missing; where Wine cannot start, that is a
# failure.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/packages.sh
source scripts/build.sh
source scripts/run_tests.sh

need_packages "${wine_packages[@]}"
scripts/build_bridge.sh
build_preset bridge --target station_programs
build_preset tests --target twinstep_wine_tests

QT_QPA_PLATFORM=offscreen run_under_wine build/wine-tests.log build/tests/tests/wine/twinstep_wine_tests build/bridge/bridge \
    --gtest_filter='-WindowsProgramTest.*' "$@"
