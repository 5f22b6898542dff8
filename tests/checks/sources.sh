#!/usr/bin/env bash
# usage: sources.sh ROOT
# Rules a compiler cannot check, over the text files of the tree.
set -euo pipefail
cd "$1"

faults=0

# Tracked and new files; where there is no repository, all files but what is built.
files() {
    git ls-files -z --cached --others --exclude-standard 2>/dev/null ||
        find . -name .git -prune -o -path ./build -prune -o -type f -print0
}

# forbid MESSAGE EXTENDED_REGEX EXCEPTIONS_REGEX PATH_REGEX
forbid() {
    local message=$1 regex=$2 exceptions=$3 paths=$4 found
    found=$(files | { grep -zE "$paths" || true; } | { xargs -0 -r grep -HnIE -- "$regex" || true; } |
        { grep -vE -- "$exceptions" || true; })
    [ -n "$found" ] || return 0
    printf '%s\n' "$message"
    sed 's/^/  /; s/\(.\{200\}\).*/\1…/' <<<"$found"
    faults=$((faults + 1))
}

none='^$'
anywhere='.'
library='^(\./)?(logic|presenter|plugin|widgets)/.*\.(h|cpp)$'
numbers_of_library='^(\./)?(logic|presenter|plugin)/.*\.(h|cpp)$'
product='^(\./)?(logic|presenter|plugin|widgets|host|gateway|console|desk)/.*\.(h|cpp)$'

# QVariant's own conversions round, wrap silently and read "150.0" as 0.
forbid 'Number conversions outside logic/Quantity.h:' \
    '\.(toInt|toUInt|toLongLong|toULongLong|toDouble|toFloat)\(' '(^|/)logic/Quantity\.h:' "$numbers_of_library"

# A second arg() substitutes inside what the first has just inserted.
forbid 'Chained arg() calls (use one call with all texts):' \
    '\.arg\(.*\)\.arg\(|^ *\.arg\(.*\)$' "$none" "$library"

# A class on one line silently gets no meta-object.
forbid 'Q_OBJECT does not stand on a line of its own:' '[^ ].*\bQ_OBJECT\b|\bQ_OBJECT\b.*[^ ]' '(//|\*|#)' '\.(h|cpp)$'

# Rows are read and written with the platform's constants; a field spelled out is a field spelled wrong one day.
fields=$(grep -ohE 'TEXT_OF_ITS_NAME\([A-Za-z_0-9:]+, [A-Za-z0-9_]+\)' host/wire/Fields.cpp 2>/dev/null |
    sed -E 's/.*, ([A-Za-z0-9_]+)\)/\1/' | sort -u | paste -sd '|' || true)
[ -z "$fields" ] || forbid 'Field names written as literals (use the constants of host/include):' \
    "\"($fields)\"" "$none" "$library"

# Comments and documents give reasons. A pointer to a paper that the reader does not have is none.
s='[Ss]pec'
forbid 'A document that readers do not have is named (say the reason instead):' \
    "${s}ification|\\b${s}\\b|${s}\\.md|\\bParts? [0-9]+\\.[0-9]+|shared/(design|style|${s})" 'openspec|inspec' "$anywhere"
forbid 'Numbered items of a list that readers do not have:' \
    '//.*\b([CTNE][1-9][0-9]|S[1-9]\.[0-9]+)\b' "$none" "$product"

forbid 'Paths of one machine:' '/(work|farm|tmp)/[A-Za-z.]' 'mktemp|QDir::temp|TMPDIR' "$anywhere"

[ "$faults" -eq 0 ]
