#!/usr/bin/env bash
# Builds and runs all benchmarks. Each line shows a figure beside its reference from the same run.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/packages.sh
source scripts/build.sh

need_packages "${bench_packages[@]}"
build_preset bench

# The reporter writes: "name",iterations,real_time,cpu_time,unit,...
for program in twinstep_bench twinstep_plot_bench; do
    "build/bench/bench/$program" --benchmark_format=csv 2>/dev/null
done | awk '
    /^"[^"]*: (ours|bare)"/ {
        # The name may hold commas; the figures are counted from its closing quote.
        match($0, /^"[^"]*"/)
        name = substr($0, 2, RLENGTH - 2)
        split(substr($0, RLENGTH + 2), field, ",")
        kind = name
        sub(/.*: /, "", kind)
        sub(/: [^:]*$/, "", name)
        time[kind, name] = field[2]
        unit[name] = field[4]
        if (field[2] == "") {
            print name ": failed"
            exit 1
        }
        if (kind == "bare")
            printf "%-44s %10.1f %-4s bare reference %6.1f %-4s ratio %5.2f\n", name, time["ours", name], unit[name],
                time["bare", name], unit[name], time["ours", name] / time["bare", name]
    }'
build/bench/bench/twinstep_start_up_bench build/bench/twinstep build/bench/bench/twinstep_empty_window
build/bench/bench/twinstep_passes
build/bench/bench/twinstep_ramp_spacing
