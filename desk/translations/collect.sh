#!/usr/bin/env bash
# usage: collect.sh LUPDATE ROOT TS
# Brings a translation up to the texts in the sources: new ones are unfinished, texts that are gone go.
set -euo pipefail
"$1" -silent -no-obsolete -locations none -source-language zh_CN -target-language en_US "$2/desk" -ts "$3"
