#!/usr/bin/env bash
# usage: needed.sh LIBRARY
# What the library is linked with: Qt, the host's libraries, the compiler's runtime.
set -euo pipefail

allowed='^(libQt5(Core|Gui|Widgets)\.so\.5|libt0(host|wire)\.so.*|libstdc\+\+\.so\.6|libm\.so\.6|libgcc_s\.so\.1|libc\.so\.6|ld-linux.*)$'
needed=$(readelf -d "$1" | sed -nE 's/.*\(NEEDED\).*\[(.*)\].*/\1/p')
[ -n "$needed" ] || { echo "$1 has no NEEDED entry"; exit 1; }
if others=$(grep -vE "$allowed" <<<"$needed"); then
    printf '%s is linked with:\n%s\n' "$1" "$others"
    exit 1
fi
