#!/usr/bin/env bash
# usage: needed.sh LIBRARY
# What the library is linked with: Qt and the host's libraries, all of them needed, and the compiler's runtime.
set -euo pipefail

allowed='^(libQt5(Core|Gui|Widgets)\.so\.5|libt0(host|wire)\.so.*|libstdc\+\+\.so\.6|libm\.so\.6|libgcc_s\.so\.1|libc\.so\.6|ld-linux.*)$'
needed=$(readelf -d "$1" | sed -nE 's/.*\(NEEDED\).*\[(.*)\].*/\1/p')
[ -n "$needed" ] || { echo "$1 has no NEEDED entry"; exit 1; }
if others=$(grep -vE "$allowed" <<<"$needed"); then
    printf '%s is linked with:\n%s\n' "$1" "$others"
    exit 1
fi
for library in libQt5Core libQt5Gui libQt5Widgets libt0host; do
    grep -q "^$library\.so" <<<"$needed" || { echo "$1 is not linked with $library"; exit 1; }
done
