#!/usr/bin/env bash
# usage: complete.sh LUPDATE ROOT TS
# Every text of the window is translated, and the translation holds no other.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
fresh=$(mktemp --suffix=.ts)
trap 'rm -f "$fresh"' EXIT
cp "$3" "$fresh"
"$here/collect.sh" "$1" "$2" "$fresh"
faults=0
if grep -B2 'type="unfinished"' "$fresh" | grep '<source>'; then
    echo "these texts are not translated: ./t0 translations, then translate them in $(basename "$3")"
    faults=1
fi
cmp -s "$fresh" "$3" || { echo "$(basename "$3") is not up to date: ./t0 translations"; faults=1; }
exit $faults
