# shellcheck shell=bash
# Runs tests. Sourced, not run, from the project's root.

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

# run_under_wine LOG COMMAND...: runs a GoogleTest program that is, or uses, programs for Windows. Once in a hundred
# starts and ends or so Wine itself holds a program up or loses a message: what failed is run once more, and must pass.
run_under_wine() {
    local log=$1 failed
    shift
    "$@" 2>&1 | tee "$log" && return
    failed=$(sed -n 's/^\[  FAILED  \] \([[:alnum:]_/]*\.[[:alnum:]_/]*\).*/\1/p' "$log" | sort -u | paste -s -d :)
    [[ $failed ]] || return 1
    printf '\nOnce more: %s\n' "$failed"
    "$@" --gtest_filter="$failed"
}
