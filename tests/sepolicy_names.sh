#!/usr/bin/env bash
# Fails when sepolicy/ labels a path or a camera property that the tool does not use, or leaves
# one that it uses unlabelled.   sepolicy_names.sh <top of the tree>
set -uo pipefail
cd "$1" || exit 2
status=0
# The literals of the tool's own sources (the programs, the library, the device's platform side).
literals() {
    grep -rhoE --include='*.cpp' --include='*.h' --exclude-dir=tests --exclude-dir=tools \
        --exclude-dir='build*' --exclude-dir=host "\"$1\"?" . | tr -d '"' | sort -u
}
compare() {  # what, labelled, used
    diff <(echo "$2") <(echo "$3") >/dev/null ||
        { echo "$1: labelled (<) and used (>) differ:"; diff <(echo "$2") <(echo "$3"); status=1; }
}

labelled=$(grep -vE '^(#|$)' sepolicy/file_contexts | awk '{print $1}' | sed 's|(/\.\*)?$||' |
    sort)
binaries=$(grep -A1 '^cc_binary {$' Android.bp | sed -n 's|^    name: "\(.*\)",$|/vendor/bin/\1|p')
directories=$(literals '/mnt/[^"]*' | sed 's/\/$//')
compare file_contexts "$labelled" "$(printf '%s\n' $binaries $directories | sort)"

labelled=$(grep -vE '^(#|$)' sepolicy/property_contexts | awk '{print $1}' | sort)
compare property_contexts "$labelled" "$(literals '(persist\.)?vendor\.camera\.[^"]*')"
exit $status
