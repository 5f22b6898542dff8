#!/usr/bin/env bash
# usage: rules_find_faults.sh FOLDER_OF_THE_CHECKS
# A rule that finds nothing may be a rule that cannot find: plants one fault of each kind in an empty tree.
set -euo pipefail
checks=$1
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failed=0

# plant CHECK EXPECTED FILE LINE: the check names the fault, and is silent once it is gone
plant() {
    local check=$1 expected=$2 file=$tree/$3 output
    mkdir -p "$(dirname "$file")"
    printf '%s\n' "$4" >"$file"
    if output=$("$checks/$check" "$tree" 2>&1); then
        printf '%s accepts %s: %s\n' "$check" "$3" "$4"
        failed=1
    elif ! grep -qF -- "$expected" <<<"$output"; then
        printf '%s on %s: expected "%s", got:\n%s\n' "$check" "$3" "$expected" "$output"
        failed=1
    fi
    rm "$file"
    output=$("$checks/$check" "$tree" 2>&1) || { printf '%s fails on an empty tree:\n%s\n' "$check" "$output"; failed=1; }
}

# accept CHECK FILE LINE
accept() {
    local check=$1 file=$tree/$2 output
    mkdir -p "$(dirname "$file")"
    printf '%s\n' "$3" >"$file"
    output=$("$checks/$check" "$tree" 2>&1) || { printf '%s on %s: %s\n%s\n' "$check" "$2" "$3" "$output"; failed=1; }
    rm "$file"
}

mkdir -p "$tree"/{host/{include,framework,wire},logic,gateway,console}
touch "$tree"/host/include/{MasterUtils,MasterFields}.h "$tree"/host/framework/Loader.h "$tree"/host/wire/Envelope.h \
    "$tree"/logic/{ManualT0Logic,ManualT0LogicPrivate}.h "$tree"/gateway/Ledger.h

plant includes.sh 'logic/a.cpp:1' logic/a.cpp '#include <QtNetwork/QLocalSocket>'
plant includes.sh 'logic/a.cpp:1' logic/a.cpp '#include "Loader.h"'
plant includes.sh 'logic/a.cpp:1' logic/a.cpp '#include "../host/wire/Envelope.h"'
plant includes.sh 'logic/a.cpp:1' logic/a.cpp '#include <QString>'
plant includes.sh 'host/framework/a.cpp:1' host/framework/a.cpp '#include "ManualT0Logic.h"'
plant includes.sh 'gateway/a.cpp:1' gateway/a.cpp '#include "MasterUtils.h"'
plant includes.sh 'gateway/a.cpp:1' gateway/a.cpp '#include <QtGui/QColor>'
plant includes.sh 'console/a.cpp:1' console/a.cpp '#include "ManualT0LogicPrivate.h"'
accept includes.sh logic/a.cpp '#include "MasterUtils.h"'
accept includes.sh gateway/a.cpp '#include "MasterFields.h"'
accept includes.sh console/a.cpp '#include "ManualT0Logic.h"'
accept includes.sh gateway/a.cpp '#include <csv.h>'

printf 'TEXT_OF_ITS_NAME(Orvane_Fields::Security, securityID);\n' >"$tree/host/wire/Fields.cpp"
plant sources.sh 'Number conversions' logic/a.cpp 'int n = row.value(key).toInt();'
plant sources.sh 'Chained arg()' logic/a.cpp 'text.arg(a).arg(b(c));'
plant sources.sh 'Q_OBJECT' host/a.h 'class A : public QObject { Q_OBJECT };'
plant sources.sh 'Field names' logic/a.cpp 'row.value(QStringLiteral("securityID"));'
word=Spe
plant sources.sh 'is named' docs/a.md "see the ${word}cification"
plant sources.sh 'is named' gateway/a.cpp "// Part""s 3.1"
plant sources.sh 'Numbered items' gateway/a.cpp '// decided in C'"58"
plant sources.sh 'Paths of one machine' README.md "cd /wo""rk/main"
accept sources.sh logic/Quantity.h 'return value.toDouble();'
accept sources.sh host/a.cpp '    Q_OBJECT'
accept sources.sh logic/a.cpp 'text.arg(a, b); // "T0" and T0TraderId'

exit $failed
