#!/usr/bin/env bash
# Makes the seed corpus of the harnesses (fuzz/corpus/<harness>/) with qel and
# qel_fuzz_compose of a build (build/release by default):
#
#   fuzz/make-seeds.sh [BUILD_DIR]
#
#   execute, options  header + answer: the sessions of the recipes whose
#                     descriptions hold the most kinds of element, and the
#                     bundled example session (the recipe that begins with
#                     four 0xFF bytes), described for several commands,
#                     processes and phases and answered by qel answer; some
#                     answers extended with the blocks of fuzz/seeds/ that no
#                     simulated answer carries (into every entry, whatever
#                     component it designates; documents.xml as entries of
#                     their own)
#   session           the bundled example, the tests' session files,
#                     generated sessions and composed ones
#   check, answer     the golden descriptions, the tests' frames, generated
#                     descriptions and answers
#   writer, roundtrip the recipes, after the bytes that pick command and phase
#
# The scanner's corpus is kept as it is. Existing seeds of the other harnesses
# named seed_* and bundled_* are replaced; what a long run merged in stays
# (the answers there designate components by handle: when the bundled
# example gains a component, merge the corpus anew, -merge=1, from these).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build="${1:-build/release}"
qel="$build/tools/qel"
compose="$build/fuzz/qel_fuzz_compose"
for program in "$qel" "$compose"; do
    [[ -x "$program" ]] || { echo "make-seeds.sh: build $program first" >&2; exit 2; }
done
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

# The choice tables of QELFuzzSessionComposer.cpp, in the same order.
commands=(none save save-as save-selected import create-spreadsheet synchronize-active-shapes update-status
          state-details-update)
processes=(none state-details state-details-factory state-details-update life-cycle-factory brr-save checkout
           state-details,state-details-factory)

recipe() { printf 'recipe %s' "$1" | sha512sum | cut -c1-96; }
byte() { printf "\\x$(printf %02x "$1")"; }

# Recipes whose sessions load, chosen greedily so that their descriptions
# together hold every kind of element any of them holds: each one chosen
# adds the most kinds not yet held, under every command the writer knows.
for n in $(seq 1 400); do
    r="$(recipe "$n")"
    "$compose" --reader "$r" >"$work/s.json"
    tags=""
    for command in save synchronize-active-shapes import; do
        "$qel" describe "$work/s.json" -o "$work/d.xml" --command "$command" 2>/dev/null || continue
        tags+=" $(grep -E '^<[A-Za-z_]+>' "$work/d.xml" | tr -d '\r' | sed "s/^/$command:/" | sort -u | tr '\n' ' ')"
    done
    [[ -n "$tags" ]] && echo "$r $tags"
done | awk '{ recipe[NR] = $1; for (i = 2; i <= NF; ++i) has[NR, $i] = 1; tags[NR] = NF - 1; line[NR] = $0 }
    END {
        for (chosen = 0; chosen < 8; ++chosen) {
            best = 0; gain = 0
            for (n = 1; n <= NR; ++n) {
                if (used[n]) continue
                split(line[n], f, " "); g = 0
                for (i = 2; i in f; ++i) if (!held[f[i]]) ++g
                if (g > gain) { gain = g; best = n }
            }
            if (!best) break
            used[best] = 1; print recipe[best]
            split(line[best], f, " "); for (i = 2; i in f; ++i) held[f[i]] = 1
        }
    }' >"$work/recipes"

for harness in execute options session check answer writer roundtrip; do
    mkdir -p "fuzz/corpus/$harness"
    rm -f "fuzz/corpus/$harness"/seed_* "fuzz/corpus/$harness"/bundled_*
done

# The bundled example session's recipe: four 0xFF bytes, then anything.
bundled="ffffffff$(printf '%088d' 0)"

# seed HARNESS NAME RECIPE COMMAND PROCESS PHASE SWITCHES HOST [FRAGMENT...]
seed() {
    local harness="$1" name="$2" r="$3" command="$4" process="$5" phase="$6" switches="$7" host="$8"
    shift 8
    if [[ "$r" == "$bundled" ]]; then
        cp examples/session.json "$work/s.json"
    else
        "$compose" --reader "$r" >"$work/s.json"
    fi
    "$qel" describe "$work/s.json" -o "$work/d.xml" --command "${commands[command]}" \
        --process "${processes[process]}" --phase "$phase" 2>/dev/null || return 0
    "$qel" answer "$work/d.xml" -o "$work/a.xml"
    for fragment in "$@"; do
        case "$fragment" in
        flags) awk -v f=fuzz/seeds/flags.xml '/^<\/Item_Info>\r?$/ { while ((getline l < f) > 0) print l; close(f) } { print }' \
                   "$work/a.xml" >"$work/x.xml" ;;
        documents) awk -v f=fuzz/seeds/documents.xml '/^<\/DESCFILE>\r?$/ { while ((getline l < f) > 0) print l } { print }' \
                       "$work/a.xml" >"$work/x.xml" ;;
        *) awk -v f="fuzz/seeds/$fragment.xml" '/^<\/Item_Info>\r?$/ { while ((getline l < f) > 0) print l; close(f) } { print }' \
               "$work/a.xml" >"$work/x.xml" ;;
        esac
        mv "$work/x.xml" "$work/a.xml"
    done
    local selector=$((command + 9 * process + 72 * (phase - 1)))
    { byte "$selector"; byte "$switches"; byte "$host"; printf "$(sed 's/../\\x&/g' <<<"$r")"; cat "$work/a.xml"; } \
        >"fuzz/corpus/$harness/$name"
}

i=0
while read -r r; do
    i=$((i + 1))
    #                                          command process phase switches host
    seed execute "seed_${i}_save" "$r"                     1 0 1 0 1
    seed execute "seed_${i}_save_phase2_checkout" "$r"     1 6 2 0 0
    seed execute "seed_${i}_synchronize" "$r"              6 0 1 0 1
    seed execute "seed_${i}_import_switches" "$r"          4 0 1 255 0
    seed execute "seed_${i}_state-details" "$r"            0 1 1 64 0
    seed execute "seed_${i}_save-as_factory" "$r"          2 7 1 128 1
    seed options "seed_${i}_save" "$r"                     1 0 1 0 0
    seed options "seed_${i}_import" "$r"                   4 5 2 63 0
    if ((i <= 3)); then
        seed execute "seed_${i}_save_blocks" "$r"          1 0 1 0 1 blocks
        seed execute "seed_${i}_synchronize_blocks" "$r"   6 0 1 0 1 blocks
        seed execute "seed_${i}_save_keys" "$r"            1 0 1 0 1 keys secondaries
        seed execute "seed_${i}_synchronize_keys" "$r"     6 0 1 0 1 keys
        seed execute "seed_${i}_save_composites" "$r"      1 0 1 32 0 composites
        seed execute "seed_${i}_save_documents" "$r"       1 0 1 0 0 documents
        seed execute "seed_${i}_checkout_blocks" "$r"      1 6 1 0 1 blocks
        seed options "seed_${i}_save_flags" "$r"           1 0 1 0 0 flags
    fi
    printf '\x01\x00' >"fuzz/corpus/writer/seed_$i"
    printf "$(sed 's/../\\x&/g' <<<"$r")" >>"fuzz/corpus/writer/seed_$i"
    printf '\x01' >"fuzz/corpus/roundtrip/seed_$i"
    printf "$(sed 's/../\\x&/g' <<<"$r")" >>"fuzz/corpus/roundtrip/seed_$i"
    "$compose" "$r" >"fuzz/corpus/session/seed_composed_$i.json"
done <"$work/recipes"

# The bundled session: its seventeen entries of every document type, with
# the host states the harness adds to it (QELFuzzSession.cpp).
#                                                            command process phase switches host
seed execute bundled_save_none "$bundled"                          1 0 1 0 0
seed execute bundled_save_none_empty-session "$bundled"            1 0 1 1 0
seed execute bundled_save_none_savable-status "$bundled"           1 0 1 2 0
seed execute bundled_save_none_no-files-foreign-staging "$bundled" 1 0 1 60 0
seed execute bundled_save_phase2_none "$bundled"                   1 0 2 0 0
seed execute bundled_save-as_none "$bundled"                       2 0 1 0 0
seed execute bundled_save-selected_none "$bundled"                 3 0 1 0 0
seed execute bundled_import_none "$bundled"                        4 0 1 0 0
seed execute bundled_create-spreadsheet_none "$bundled"            5 0 1 0 0
seed execute bundled_synchronize_none "$bundled"                   6 0 1 0 0
seed execute bundled_update-status_none "$bundled"                 7 0 1 0 0
seed execute bundled_state-details-update_none "$bundled"          8 0 1 0 0
seed execute bundled_save_state-details-factory "$bundled"         1 2 1 0 0
seed execute bundled_save_state-details-factory_active "$bundled"  1 2 1 66 0
seed execute bundled_save_brr-save "$bundled"                      1 5 1 0 0
seed execute bundled_save_checkout "$bundled"                      1 6 1 0 0
seed execute bundled_save_checkout_savable-status "$bundled"       1 6 1 2 0
seed execute bundled_save_blocks "$bundled"                        1 0 1 0 0 blocks
seed execute bundled_checkout_blocks "$bundled"                    1 6 1 0 0 blocks
seed execute bundled_synchronize_blocks "$bundled"                 6 0 1 0 0 blocks
seed execute bundled_save_keys "$bundled"                          1 0 1 0 0 keys secondaries
seed execute bundled_synchronize_keys "$bundled"                   6 0 1 0 0 keys
seed execute bundled_save_composites "$bundled"                    1 0 1 32 0 composites
seed execute bundled_save_documents "$bundled"                     1 0 1 0 0 documents
seed options bundled_save_none "$bundled"                          1 0 1 0 0
seed options bundled_save_checkout "$bundled"                      1 6 1 0 0
seed options bundled_import_none "$bundled"                        4 0 1 0 0
seed options bundled_save_flags "$bundled"                         1 0 1 0 0 flags

cp examples/session.json fuzz/corpus/session/seed_example.json
for file in tests/data/sessions/*.json; do cp "$file" "fuzz/corpus/session/seed_test_$(basename "$file")"; done
"$qel" generate --occurrences 20 --depth 3 --seed 1 -o fuzz/corpus/session/seed_generated_20.json
"$qel" generate --occurrences 60 --depth 5 --seed 2 -o fuzz/corpus/session/seed_generated_60.json

for file in tests/data/golden/*.xml tests/data/frames/*.xml; do
    cp "$file" "fuzz/corpus/check/seed_$(basename "$file")"
    cp "$file" "fuzz/corpus/answer/seed_$(basename "$file")"
done
"$qel" describe examples/session.json -o fuzz/corpus/answer/seed_example_description.xml
"$qel" answer fuzz/corpus/answer/seed_example_description.xml -o fuzz/corpus/check/seed_example_answer.xml
"$qel" describe fuzz/corpus/session/seed_generated_20.json -o fuzz/corpus/answer/seed_generated_description.xml
cp fuzz/corpus/answer/seed_example_description.xml fuzz/corpus/check/seed_example_description.xml
echo "make-seeds.sh: $(ls fuzz/corpus/*/seed_* fuzz/corpus/*/bundled_* | wc -l) seeds"
