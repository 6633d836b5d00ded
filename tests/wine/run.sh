#!/usr/bin/env bash
# Station programs, the bridge and the window together, under Wine. Arguments are GoogleTest's, such as
# --gtest_filter='Latency.*'. Installs what is missing; where Wine cannot start, that is a failure.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/packages.sh
source scripts/build.sh

need_packages "${wine_packages[@]}"
scripts/build_bridge.sh
build_preset bridge --target station_programs
build_preset tests --target twinstep_wine_tests

tests() { QT_QPA_PLATFORM=offscreen build/tests/tests/wine/twinstep_wine_tests build/bridge/bridge "$@"; }

tests "$@" | tee build/wine-tests.log && exit
# Once in a hundred starts and ends or so Wine itself holds a program up or loses a message: what failed is run once
# more, and must pass then.
failed=$(sed -n 's/^\[  FAILED  \] \([[:alnum:]_.\/]*\)$/\1/p' build/wine-tests.log | sort -u | paste -s -d :)
[[ $failed ]] || exit 1
printf '\nOnce more: %s\n' "$failed"
tests --gtest_filter="$failed"
