#!/usr/bin/env bash
# Measures what is left of the step rate while the inputs of the program are flooded, one after the other.
# Fails when one of them costs more than a step in a hundred. bench/floods.sh [WORDS]: only those whose name
# holds the words. On a machine with one processor the sender alone takes half of it.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/packages.sh
source scripts/build.sh

need_packages "${bench_packages[@]}"
build_preset bench

build/bench/bench/twinstep_floods "$@"
