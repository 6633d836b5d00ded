# shellcheck shell=bash
# Runs the tests of a built preset. Sourced, not run, from the project's root.

# run_tests PRESET: ends with the line "N passed, N failed"; fails when a test did.
run_tests() {
    local report result=0
    report=$PWD/build/$1/test-report.xml
    rm -f "$report"
    ctest --preset "$1" --parallel "$(nproc)" --output-junit "$report" || result=$?

    count() { sed -n "s/^[[:space:]]*$1=\"\([0-9]*\)\"\$/\1/p" "$report" | head -n 1; }
    local all failed not_run
    all=$(count tests)
    failed=$(count failures)
    not_run=$(($(count skipped) + $(count disabled)))
    ((not_run == 0)) || echo "$not_run not run"
    echo "$((all - failed - not_run)) passed, $failed failed"
    return "$result"
}
