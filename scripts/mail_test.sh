#!/usr/bin/env bash
# Runs postfix with amavis, with SpamAssassin and with rspamd on the loopback interface, sends messages through them,
# lets the program list what they have blocked, releases that, and looks for every message. Ends with a table, and with
# an error when anything differs from what has to be. Needs root, because the servers change to users of their own.
#   mail_test.sh servers   leaves the program out, and builds nothing
# KEEP=1 leaves the folder with all messages and logs behind, and says where it is.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-packages.sh mail

program=()
if [ "${1:-}" != servers ]; then
  # As "make test" has built it, if it has: a build of another kind would take all of it anew.
  cmake --preset dev
  cmake --build --preset dev -j "${JOBS:-$(nproc)}" --target quellbox_mail_tests
  program=(--program "$PWD/build/dev/quellbox_mail_tests")
fi

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "Please run this as root." >&2; exit 1; }
  as_root=(sudo --preserve-env=KEEP)
fi
# Debian's own Python is the one that sees Debian's modules.
exec "${as_root[@]}" /usr/bin/python3 tests/servers/mail_test.py "${program[@]}"
