#!/usr/bin/env bash
# Builds all and runs all tests without a display. The last line is "N passed, N failed", in test cases.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"
source scripts/packages.sh
source scripts/build.sh
source scripts/run_tests.sh

need_packages "${test_packages[@]}"
build_preset tests
run_tests tests
