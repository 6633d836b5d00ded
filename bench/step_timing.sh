#!/usr/bin/env bash
# Measures how evenly the step timers tick, beside other timers in the same run. Prints the tables of
# docs/performance.md and draws docs/images/step-timing.svg. Fails when a step came too early, was lost or the mean
# rate was wrong. bench/step_timing.sh [ROUNDS [SECONDS]]: of each subject, 6 rounds of 10 seconds unless said.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/packages.sh
source scripts/build.sh

need_packages "${bench_packages[@]}" "${step_timing_packages[@]}"
build_preset bench

build/bench/bench/twinstep_step_timing "${1:-6}" "${2:-10}" docs/images/step-timing.svg
