#!/usr/bin/env bash
# same_hash.sh T0_SIM: a seed is the same in every process, whatever the environment.
set -euo pipefail

hashes() { "$@" --seeds 20 --hashes | grep '^seed '; }

program=$(realpath "$1")
first=$(hashes "$program")
second=$(cd / && SOME_LONG_VARIABLE=$(printf '%0999d' 0) LC_ALL=C TZ=Asia/Shanghai QT_HASH_SEED=7 hashes "$program" --jobs 2 | sort)
[ "$(sort <<<"$first")" = "$second" ] || { diff <(sort <<<"$first") <(printf '%s\n' "$second"); exit 1; }
printf 'same hash: %s seeds\n' "$(wc -l <<<"$first")"
