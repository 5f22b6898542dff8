#!/usr/bin/env bash
# usage: includes.sh ROOT
# Who may include what. Arrows point downwards only: the library knows the platform's interfaces and nothing
# behind them, the host knows nothing of the library, the gateway knows only what it shares with the host.
set -euo pipefail
cd "$1"

faults=0
fault() {
    printf '%s\n' "$1"
    faults=$((faults + 1))
}

# Quoted names are looked up by their file name; these are the folders they may be found in.
library_headers=(logic plugin presenter widgets host/include)
library_modules='QtCore QtGui QtWidgets'
constants='(Fields|Values|MsgType|Keys|Constants|VariantRecord|HostExport)\.h$'
facade='^(ManualT0Logic|SymbolListType|OrderQueuePanel|ManualT0DoubleSpinbox|ManualT0TraderCombo)\.h$'

# The folders that hold a file of a name, each between blanks.
declare -A folders_of
while IFS= read -r path; do
    path=${path#./}
    folders_of[${path##*/}]+=" ${path%/*} "
done < <(find . -name .git -prune -o -path ./build -prune -o -type f \( -name '*.h' -o -name '*.cpp' \) -print)

# is_in NAME FOLDER…: a file of that name lies in one of the folders or below
is_in() {
    local name=$1 folder
    shift
    for folder in "$@"; do
        [[ ${folders_of[$name]:-} == *" $folder"[\ /]* ]] && return 0
    done
    return 1
}

# may_quote AREA NAME
may_quote() {
    local area=$1 name=$2
    case $area in
    library) is_in "$name" "${library_headers[@]}" ;;
    wire) is_in "$name" host/wire || { is_in "$name" host/include && [[ $name =~ $constants ]]; } ;;
    host) is_in "$name" host ;;
    gateway) is_in "$name" gateway host/wire || { is_in "$name" host/include && [[ $name =~ $constants ]]; } ;;
    program) is_in "$name" console desk gateway host || [[ $name =~ $facade ]] ;;
    esac
}

# may_bracket AREA NAME
may_bracket() {
    local area=$1 name=$2 modules others=''
    case $area in
    library) modules=$library_modules ;;
    wire) modules='QtCore' ;;
    host) modules='QtCore QtGui QtWidgets QtNetwork' others='*.h' ;;
    gateway) modules='QtCore QtNetwork QtSql' others='*.h' ;;
    program) modules='QtCore QtGui QtWidgets QtNetwork QtSql QtTest' others='*.h' ;;
    esac
    case $name in
    Qt*/*) [[ " $modules " == *" ${name%%/*} "* ]] ;;
    Q*) return 1 ;;                        # without its module nobody can tell what is linked
    *.h | */*) [[ -n $others ]] ;;         # of the system or of another library
    *) return 0 ;;                         # of the standard library
    esac
}

# check AREA FOLDER…
check() {
    local area=$1 line file number name folder
    shift
    for folder in "$@"; do
        [ -d "$folder" ] || continue
        while IFS= read -r line; do
            file=${line%%:*} number=${line#*:} number=${number%%:*}
            [[ $line =~ [\<\"]([^\>\"]*)[\>\"] ]] && name=${BASH_REMATCH[1]}
            case $line in
            *'<'*) may_bracket "$area" "$name" && continue ;;
            *.moc\"* | *\"moc_*) continue ;;
            *) may_quote "$area" "${name##*/}" && continue ;;
            esac
            fault "$file:$number: $area must not include $name"
        done < <(grep -rnE '^ *# *include' --include='*.h' --include='*.cpp' "$folder" |
            if [ "$folder" = host ]; then grep -v '^host/wire/' || true; else cat; fi)
    done
}

check library logic plugin presenter widgets
check wire host/wire
check host host
check gateway gateway
check program console desk
[ "$faults" -eq 0 ] || printf '%d includes point the wrong way\n' "$faults"
[ "$faults" -eq 0 ]
