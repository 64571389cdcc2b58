#!/usr/bin/env bash
# A monkey on the real program, run by hand (not in CI): Tillbook under Xvfb is fed random but
# plausible clicks and keys for a while, every box that comes up is answered (clicked or keyed like any
# window), then the program is closed and `tillbook-ledger check` verifies the ledger.
#
#   tests/soak/monkey.sh [SEED]              # SEED (default 1) makes the same run again
#
# Settings from the environment: MINUTES (10) BUILD (build). Prints actions, sign-ins, boxes, crashes
# and hangs at the end; exit status 1 when the program crashed or hung, or the ledger does not hold.
# A hang: the program's window does not answer for 30 s (xdotool cannot read its name) or the
# program keeps a core busy for 30 s on end. A crash: the program ended by a signal; it is started again.
set -u
cd "$(dirname "$0")/../.."

SEED=${1:-1} MINUTES=${MINUTES:-10}
PROGRAM=$PWD/${BUILD:-build}/src/tillbook
L=$PWD/${BUILD:-build}/tools/ledger/tillbook-ledger
for tool in "$PROGRAM" "$L"; do [ -x "$tool" ] || { echo "build $tool first" >&2; exit 2; }; done
for tool in Xvfb xdotool; do command -v $tool >/dev/null || { echo "$tool is needed" >&2; exit 2; }; done

WORK=$(mktemp -d)
export TILLBOOK_DATA=$WORK/data TILLBOOK_SETTINGS=$WORK/settings.ini TILLBOOK_PDF_DIR=$WORK/pdf
export TILLBOOK_TODAY=2025-03-15 TILLBOOK_SHORT_DATE=MM/dd/yyyy QT_QPA_PLATFORM=xcb
mkdir -p "$TILLBOOK_DATA" "$TILLBOOK_PDF_DIR"
(umask 077 && cat >"$TILLBOOK_SETTINGS") <<'INI'
[Database1]
DB1=MONKEY
Users\User1=ADMIN
Users\Password1=ADMIN
Users\User2=CLERK
Users\Password2=Clerk1

[ConnectInfo]
Database=1
User=1
Save=False
SavedPWD=
INI
"$L" create MONKEY --sample --customers 40 --documents 400 >/dev/null || exit 2
"$L" user MONKEY CLERK Clerk1 >/dev/null || exit 2

DISPLAY_NUMBER=$((90 + RANDOM % 100))
Xvfb ":$DISPLAY_NUMBER" -screen 0 1280x1024x24 -nolisten tcp >/dev/null 2>&1 &
XVFB=$!
export DISPLAY=":$DISPLAY_NUMBER"
PID=
trap '[ -n "$PID" ] && kill -9 $PID 2>/dev/null; kill $XVFB 2>/dev/null; rm -rf "$WORK"' EXIT
sleep 1

RANDOM=$SEED
actions=0 signins=0 boxes=0 crashes=0 hangs=0 busy=0 last_ticks=0 next_measure=0
declare -A seen

start() {
    "$PROGRAM" >>"$WORK/program.log" 2>&1 &
    PID=$!
    sleep 2
}

# The program's CPU time in clock ticks (user + system).
ticks() { awk '{print $14 + $15}' "/proc/$PID/stat" 2>/dev/null || echo 0; }

pick() { local -a words=("$@"); echo "${words[RANDOM % ${#words[@]}]}"; }

# One random action on the window that has the focus, or on one of the program's windows.
act() {
    local window name geometry w h
    window=$(xdotool getactivewindow 2>/dev/null || xdotool search --pid "$PID" 2>/dev/null | tail -1)
    [ -n "$window" ] || return
    if ! name=$(timeout 30 xdotool getwindowname "$window" 2>/dev/null); then
        hangs=$((hangs + 1)); kill -9 "$PID"; return
    fi
    if [ -z "${seen[$window]:-}" ]; then
        seen[$window]=1
        case "$name" in
        *Login*) signins=$((signins + 1)) ;;
        *"Receipt Entry"*) ;;
        *) boxes=$((boxes + 1)) ;;
        esac
    fi
    geometry=$(xdotool getwindowgeometry --shell "$window" 2>/dev/null) || return
    w=$(sed -n 's/^WIDTH=//p' <<<"$geometry") h=$(sed -n 's/^HEIGHT=//p' <<<"$geometry")
    case $((RANDOM % 10)) in
    0 | 1 | 2 | 3) xdotool mousemove --window "$window" $((RANDOM % w)) $((RANDOM % h)) click 1 ;;
    4) xdotool mousemove --window "$window" $((RANDOM % w)) $((RANDOM % h)) click --repeat 2 1 ;;
    5 | 6) xdotool type --delay 20 "$(pick 0001 0002 100 250.50 1,234.56 03152025 12 ADMIN Clerk1 RETAIL 4100-100 x)" ;;
    7) xdotool key "$(pick Tab Tab Return Escape BackSpace Left Right Down Up space)" ;;
    8) xdotool key "$(pick Return Return Escape alt+f alt+n alt+s ctrl+s ctrl+p)" ;;
    9) [ "$name" != "Tillbook - Receipt Entry" ] && xdotool key Return ;; # answer a box
    esac
    actions=$((actions + 1))
}

start
end=$((SECONDS + MINUTES * 60))
while [ $SECONDS -lt $end ]; do
    if ! kill -0 "$PID" 2>/dev/null; then
        wait "$PID"
        [ $? -gt 128 ] && crashes=$((crashes + 1))
        seen=() last_ticks=0
        start
        continue
    fi
    act
    sleep 0.0$((RANDOM % 5))
    # Measured every 10 s: nearly a whole core (100 ticks a second) three times on end is a hang.
    if [ $SECONDS -ge $next_measure ]; then
        now=$(ticks)
        if [ $((now - last_ticks)) -gt 900 ]; then busy=$((busy + 1)); else busy=0; fi
        last_ticks=$now next_measure=$((SECONDS + 10))
        if [ $busy -ge 3 ]; then hangs=$((hangs + 1)); busy=0; kill -9 "$PID"; fi
    fi
done

# Closed as a clerk would close it; killed only if it will not go.
for window in $(xdotool search --pid "$PID" 2>/dev/null); do xdotool windowclose "$window" 2>/dev/null; done
for _ in 1 2 3 4 5; do kill -0 "$PID" 2>/dev/null || break; xdotool key Return 2>/dev/null; sleep 1; done
kill -0 "$PID" 2>/dev/null && { kill -9 "$PID"; echo "the program did not close"; }
PID=

"$L" check MONKEY >"$WORK/check.txt"
holds=$?
tail -1 "$WORK/check.txt"
echo "seed $SEED, $MINUTES min: $actions actions, $signins sign-ins, $boxes boxes, $crashes crashes, $hangs hangs"
[ $crashes -eq 0 ] && [ $hangs -eq 0 ] && [ $holds -eq 0 ]
