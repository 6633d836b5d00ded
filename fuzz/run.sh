#!/usr/bin/env bash
# Builds the fuzz targets with clang and runs each for SECONDS_EACH seconds (20 unless set).
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/packages.sh
source scripts/build.sh

need_packages "${fuzz_packages[@]}"
build_preset fuzz

for target in datagram tracking record_file bridge_client bridge_session rotctld rigctld firmata; do
    echo "--- $target"
    corpus=build/fuzz/corpus/$target
    mkdir -p "$corpus"
    # A whole record file, and more than the longest tracking line.
    "build/fuzz/fuzz/${target}_fuzz" -max_total_time="${SECONDS_EACH:-20}" -max_len=140000 -print_final_stats=0 \
        -verbosity=0 -artifact_prefix=build/fuzz/ "$corpus"
done
echo "No target failed."
