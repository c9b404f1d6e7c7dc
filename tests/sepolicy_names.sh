#!/usr/bin/env bash
# Fails when sepolicy/ labels a path or a camera property that the tool does not use, or leaves
# one that it uses unlabelled, or when a domain's rights on the camera directory and what is in
# it differ from the README's table of them.   sepolicy_names.sh <top of the tree>
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

# The README's table and the policy's allow rules, each as "domain class: sorted permissions".
granted=$(sed 's/#.*//' sepolicy/*.te | tr '\n;' ' \n' |
    sed -nE 's/^ *allow ([a-z_]+) vendor_camera_calibration_file:(\{ ([a-z_ ]+) \}|([a-z_]+)) +(\{ ([a-z_ ]+) \}|([a-z_]+)) *$/\1|\3\4|\6\7/p' |
    while IFS='|' read -r domain classes perms; do
        for class in $classes; do
            echo "$domain $class: $(tr ' ' '\n' <<<"$perms" | sort | xargs)"
        done
    done | sort)
listed=$(sed -n '/^| domain | camera directory |/,/^$/p' README.md |
    sed -nE 's/^\| `([a-z_]+)` \| (.*) \|$/\1|\2/p' |
    while IFS='|' read -r domain dir file lnk special; do
        for pair in "dir:$dir" "file:$file" "lnk_file:$lnk" "fifo_file:$special" \
            "sock_file:$special"; do
            perms=$(tr ' ' '\n' <<<"${pair#*:}" | sed '/^$/d' | sort | xargs)
            [[ -n $perms ]] && echo "$domain ${pair%%:*}: $perms"
        done
    done | sort)
[[ -n $listed ]] || { echo "README: no table of the domains' rights"; status=1; }
compare "rights on the camera directory" "$granted" "$listed"
exit $status
