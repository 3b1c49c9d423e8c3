#!/bin/sh
# Writes the golden files anew: Update.sh <path of schemagen>. Look at the difference before you
# commit it.
cd "$(dirname "$0")" || exit 1
exec "$1" --vocabulary vocabulary --members members --object ../../../include/zorvex_api/Object.h \
    --out golden --reference golden/reference
