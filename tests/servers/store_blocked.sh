#!/bin/sh
# What postfix runs for each recipient of a message that rspamd has marked: writes the message into a folder, as a file
# that has its name only when it is whole. Called with the folder and the identity of the message in the queue.
set -e
hidden=$(mktemp "$1/.$2.XXXXXX") || exit 75
cat >"$hidden" || { rm -f "$hidden"; exit 75; }
chmod 644 "$hidden"
mv "$hidden" "$1/$2.${hidden##*.}.eml" || exit 75
