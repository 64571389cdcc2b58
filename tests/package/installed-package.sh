#!/usr/bin/env bash
# The Debian package as a till gets it: built from this build folder, checked by lintian and the desktop and
# AppStream validators, unpacked with dpkg-deb -x into a temporary root, and used from there.
#   installed-package.sh BUILD_DIR DRIVER_MODULE
set -euo pipefail
build="$1"
driver="$2"
here="$(cd "$(dirname "$0")" && pwd)"
source="$(cd "$here/../.." && pwd)"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

deb="$("$source/scripts/package" "$build" | tail -n 1)"
version="$(dpkg-deb -f "$deb" Version)"
[[ "$(basename "$deb")" == "tillbook_${version}_amd64.deb" ]] || { echo "package named $deb" >&2; exit 1; }
dpkg-deb -f "$deb" Depends | grep -q 'libqt6widgets6' || { echo "no Qt in Depends" >&2; exit 1; }

lintian --fail-on error "$deb"

root="$work/root"
dpkg-deb -x "$deb" "$root"
desktop-file-validate "$root/usr/share/applications/com.orva.tillbook.desktop"
appstreamcli validate --no-net "$root/usr/share/metainfo/com.orva.tillbook.metainfo.xml"

# The ledger tool's manual page names every command the installed tool offers.
manual="$(zcat "$root/usr/share/man/man1/tillbook-ledger.1.gz")"
for command in $("$root/usr/bin/tillbook-ledger" --help | sed -n 's/^  \([a-z-]*\)  .*/\1/p'); do
  grep -q "^\.B ${command//-/\\\\-} " <<<"$manual" || { echo "manual page lacks command $command" >&2; exit 1; }
done

# A sample company made with the installed tool, and a receipt saved into its batch 1. The company goes to the
# user's data folder, where the program looks for it too.
unset TILLBOOK_DATA TILLBOOK_LEDGER_URL XDG_DATA_HOME XDG_CONFIG_HOME
export HOME="$work/home" TILLBOOK_TODAY=2025-03-15 TILLBOOK_PDF_DIR="$work/pdf"
"$root/usr/bin/tillbook-ledger" create PKGINC --sample --customers 20 --documents 120 >/dev/null
"$root/usr/bin/tillbook-ledger" run PKGINC "$here/receipt.script" --date 2025-03-15 --stop-on-error >/dev/null

# The installed program shows its about box, signs in, opens its guide (a stand-in opener records the path) and prints entry 1.
export TILLBOOK_SETTINGS="$work/settings.ini"
cat >"$TILLBOOK_SETTINGS" <<'INI'
[Database1]
DB1=PKGINC
Users\User1=ADMIN
Users\Password1=ADMIN

[ConnectInfo]
Database=1
User=1
Save=False
SavedPWD=
INI
mkdir -p "$work/bin"
printf '#!/bin/sh\nprintf "%%s\\n" "$@" > "%s/opened"\n' "$work" >"$work/bin/xdg-open"
chmod +x "$work/bin/xdg-open"
shown="$(PATH="$work/bin:$PATH" LD_PRELOAD="$driver" timeout 120 "$root/usr/bin/tillbook")"

# The sign-in window and the about box show the package's version.
[[ "$shown" == "Version  $version"$'\n'"Version  $version" ]] ||
  { echo "sign-in window and about box show \"$shown\", package is $version" >&2; exit 1; }
[[ "$(cat "$work/opened")" == "$root/usr/share/tillbook/help/index.html" ]] ||
  { echo "guide opened: $(cat "$work/opened")" >&2; exit 1; }
pdf="$(ls "$TILLBOOK_PDF_DIR"/*.pdf)"
text="$(pdftotext -layout "$pdf" -)"
for expected in CHQ-1001 "Packaged Payer" "March 15, 2025"; do
  grep -q "$expected" <<<"$text" || { echo "receipt lacks \"$expected\":" >&2; echo "$text" >&2; exit 1; }
done
echo "package $(basename "$deb"): $(stat -c %s "$deb") bytes, printed $(basename "$pdf")"
