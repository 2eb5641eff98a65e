#!/bin/sh
# A CUPS backend for tests: device URI record:/FOLDER. Writes the job's options
# argument to FOLDER/<job id>, whole or not at all, and swallows the document.
# record:auth is a printer that wants credentials: the job is held for them.
if [ $# -eq 0 ]; then
    echo 'direct record "Unknown" "Test recording backend"'
    exit 0
fi
folder=${DEVICE_URI#record:}
cat >/dev/null
[ "$folder" = auth ] && exit 2 # CUPS_BACKEND_AUTH_REQUIRED
printf '%s\n' "$5" >"$folder/.$1" && mv "$folder/.$1" "$folder/$1"
