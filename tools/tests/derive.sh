#!/bin/sh
# Derives a test input from a file another test wrote: an answer whose
# tokens were tampered with, or a session file with one text replaced.
#
#   derive.sh IN OUT swap I J        the I-th and J-th POINTER_ADDRESS values trade places
#   derive.sh IN OUT set I VALUE     the I-th POINTER_ADDRESS value becomes VALUE
#   derive.sh IN OUT replace REGEX [TEXT] sed's s|REGEX|TEXT| on every line (TEXT empty by default)
#
# Tokens are counted from 0 in file order; line ends are kept as they are.
set -eu
in=$1 out=$2 action=$3
shift 3
case "$action" in
swap | set)
    awk -v action="$action" -v i="$1" -v arg="$2" '
        function value(line) { sub(/\r$/, "", line); return line }
        { lines[NR] = $0 }
        prev ~ /^<POINTER_ADDRESS>\r?$/ { at[count++] = NR }
        { prev = $0 }
        END {
            if (action == "swap") {
                a = lines[at[i]]; lines[at[i]] = lines[at[arg]]; lines[at[arg]] = a
            } else {
                cr = lines[at[i]] ~ /\r$/ ? "\r" : ""
                lines[at[i]] = arg cr
            }
            for (n = 1; n <= NR; ++n) print lines[n]
        }' "$in" >"$out"
    ;;
replace)
    sed "s|$1|${2-}|" "$in" >"$out"
    ;;
*)
    echo "derive.sh: unknown action $action" >&2
    exit 2
    ;;
esac
