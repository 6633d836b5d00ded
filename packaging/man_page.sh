#!/usr/bin/env bash
# man_page.sh PROGRAM TEMPLATE: the template with the program's own --help in the place of {{options}}, so that the
# man page tells the options that the program has.
set -euo pipefail

program=$1 template=$2
help=$("$program" --help)

options=$(awk '
    function roff(text) {
        gsub(/\\/, "\\e", text)
        gsub(/-/, "\\-", text)
        return text
    }
    function flush() {
        if (text == "") return
        # The request characters of roff mean nothing behind the zero-width \&.
        print "\\&" roff(text)
        text = ""
    }
    /^Options:/ { inside = 1; next }
    !inside { next }
    /^  -/ {
        flush()
        names = substr($0, 3)
        text = ""
        # Two blanks end the names; a long line of names has its text on the next one.
        if (match(names, /  +/)) {
            text = substr(names, RSTART + RLENGTH)
            names = substr(names, 1, RSTART - 1)
        }
        value = ""
        if (match(names, / <[^>]*>$/)) {
            value = substr(names, RSTART + 2, RLENGTH - 3)
            names = substr(names, 1, RSTART - 1)
        }
        print ".TP"
        if (value == "") print ".B " roff(names)
        else print ".BI \"" roff(names) " \" " roff(value)
        found++
        next
    }
    /^   / {
        sub(/^ +/, "")
        text = text (text == "" ? "" : " ") $0
    }
    END {
        flush()
        if (!found) exit 1
    }' <<<"$help") || {
    echo "man_page.sh: $program --help tells no options" >&2
    exit 1
}

while IFS= read -r line; do
    if [[ $line == '{{options}}' ]]; then
        printf '%s\n' "$options"
    else
        printf '%s\n' "$line"
    fi
done <"$template"
