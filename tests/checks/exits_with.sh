#!/bin/sh
# usage: exits_with.sh STATUS COMMAND…: succeeds when the command ends with that status.
wanted=$1
shift
"$@"
status=$?
[ "$status" -eq "$wanted" ] || { echo "exit status $status, expected $wanted"; exit 1; }
