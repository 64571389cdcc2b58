#!/usr/bin/env bash
# Times the real program as a clerk meets it, on a sample company of SIZE customers (ten documents each), under
# a virtual X server: the wall clock from Enter on the sign-in window to the ready receipt window (and the CPU
# time the program spent on it, steadier than the wall clock on a shared machine), the memory
# the program holds then (VmRSS from /proc), and the wall clock from a click on the customer box to its list
# shown, opened and closed again several times, against the same for the three-item transaction-type box
# (the floor: what a click, xdotool and the X server cost). The sign-in has its floor too: the same keys and
# polling on bench/wall_floor, two windows that show the second at once on Enter. Medians of RUNS sign-ins.
# Run by hand:
#   bench/program_wall.sh SIZE [RUNS]          (RUNS default 5)
# The company is made once into BENCH_CACHE/program (default ~/.cache/tillbook-bench/program) and signed in to
# where it lies. Needs Xvfb and xdotool (scripts/install-deps).
set -euo pipefail
cd "$(dirname "$0")/.."
size="${1:?usage: bench/program_wall.sh SIZE [RUNS]}"
runs="${2:-5}"
cache="${BENCH_CACHE:-$HOME/.cache/tillbook-bench}/program"
id="WALL$size"

cmake --preset default >/dev/null
cmake --build build --target tillbook tillbook-ledger wall_floor >/dev/null
export TILLBOOK_DATA="$cache" TILLBOOK_TODAY=2025-03-14
mkdir -p "$cache"
if [[ ! -f "$cache/$id.sqlite" ]]; then
    echo "making company $id in $cache (once)" >&2
    build/tools/ledger/tillbook-ledger create "$id" --sample --customers "$size" --documents $((size * 10)) >&2
fi
# An open batch for the clerk to key into: without one the receipt window leaves the customer box disabled.
if [[ $(build/tools/ledger/tillbook-ledger browse "$id" AR0041 --fields CNTBTCH --user ADMIN --password ADMIN |
    wc -l) -lt 2 ]]; then
    build/tools/ledger/tillbook-ledger run "$id" - --stop-on-error --user ADMIN --password ADMIN >/dev/null <<'SCRIPT'
open batch AR0041
put-unverified batch CODEPYMTYP CA CNTBTCH 0
put batch BATCHDESC "Timing"
put-unverified batch IDBANK TDOPER
insert batch
SCRIPT
fi

work="$(mktemp -d)"
# A display no other X server holds (others run tests under Xvfb too): the server picks it and says which
# once it is ready.
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$work/display" >/dev/null 2>&1 &
xvfb=$!
trap 'kill "$xvfb" 2>/dev/null; rm -rf "$work"' EXIT
for _ in $(seq 100); do
    [[ -s "$work/display" ]] && break
    sleep 0.1
done
[[ -s "$work/display" ]] || { echo "Xvfb did not start within 10 s" >&2; exit 1; }
export DISPLAY=":$(head -1 "$work/display")" TILLBOOK_SETTINGS="$work/settings.ini"
(umask 077 && cat > "$TILLBOOK_SETTINGS") <<INI
[Database1]
DB1=$id
Users\User1=ADMIN
Users\Password1=ADMIN

BatchInfo\Batch=1
BatchInfo\Index=0

[ConnectInfo]
Database=1
User=1
Save=True
SavedPWD=ADMIN
INI
now() { date +%s%N; }
# The first visible window of the program whose title is exactly $2, polled as fast as xdotool answers.
window() {
    local found=""
    local state
    for _ in $(seq 20000); do
        found=$(xdotool search --all --onlyvisible --pid "$1" --name "^$2\$" 2>/dev/null | head -1) || true
        [[ -n "$found" ]] && { echo "$found"; return; }
        # A program that has ended is a zombie until waited for.
        read -r _ _ state _ <"/proc/$1/stat" || state=Z
        [[ "$state" != Z ]] || { echo "the program ended before its window \"$2\" showed:" >&2
            cat "$work/program.log" >&2; return 1; }
    done
    echo "no window \"$2\"" >&2
    return 1
}
visible() { xdotool search --onlyvisible --pid "$1" 2>/dev/null | wc -l; }
median() { sort -n | awk '{a[NR]=$1} END {print a[int((NR+1)/2)]}'; }

signins=() signin_floors=() cpus=() rss=() opens=() floors=()
ticks() { awk '{print $14 + $15}' "/proc/$1/stat"; }
tick_ms=$((1000 / $(getconf CLK_TCK)))
# The wall clock of a click at ($2, $3) in the window until a list is shown, then closed with Escape.
open_list() {
    local before start
    before=$(visible "$1")
    start=$(now)
    xdotool mousemove "$2" "$3" click 1
    local deadline=$(($(now) + 10000000000))
    while [[ $(visible "$1") -le $before ]]; do
        (($(now) < deadline)) || { echo "no list opened on the click at ($2, $3) within 10 s" >&2; exit 1; }
    done
    echo $((($(now) - start) / 1000000))
    xdotool key Escape
    while [[ $(visible "$1") -gt $before ]]; do
        (($(now) < deadline + 10000000000)) || { echo "the list did not close on Escape" >&2; exit 1; }
    done
}
# Starts $1, waits for its sign-in window, presses Enter there and sets `program`, `cpu` (its CPU ticks then)
# and `took`, the wall clock in ms from Enter to its receipt window shown.
sign_in() {
    "$1" >"$work/program.log" 2>&1 &
    program=$!
    login=$(window "$program" "Tillbook - Login")
    xdotool windowfocus --sync "$login"
    sleep 0.5
    start=$(now)
    cpu=$(ticks "$program")
    xdotool key Return
    window "$program" "Tillbook - Receipt Entry" >/dev/null
    took=$((($(now) - start) / 1000000))
}
for run in $(seq "$runs"); do
    sign_in build/bench/wall_floor
    signin_floors+=("$took")
    kill "$program"
    wait "$program" 2>/dev/null || true
    sign_in build/src/tillbook
    signins+=("$took")
    cpus+=($((($(ticks "$program") - cpu) * tick_ms)))
    sleep 1
    # Looked for again: the window first shown may have been replaced by Qt since.
    receipts=$(window "$program" "Tillbook - Receipt Entry")
    rss+=($(awk '/VmRSS/ {print int($2 / 1024)}' "/proc/$program/status"))
    # The customer box lies 160 pixels right and 165 down of the window's corner, the transaction type's 85
    # and 60.
    eval "$(xdotool getwindowgeometry --shell "$receipts" | grep -E "^[XY]=")"
    # A new entry in the open batch (the button 137 right and 113 down) enables the customer box.
    xdotool mousemove $((X + 137)) $((Y + 113)) click 1
    sleep 0.5
    for _ in 1 2 3; do
        opens+=($(open_list "$program" $((X + 160)) $((Y + 165))))
        floors+=($(open_list "$program" $((X + 85)) $((Y + 60))))
    done
    kill "$program"
    wait "$program" 2>/dev/null || true
done
opened=$(printf '%s\n' "${opens[@]}" | median)
floor=$(printf '%s\n' "${floors[@]}" | median)
signin=$(printf '%s\n' "${signins[@]}" | median)
signin_floor=$(printf '%s\n' "${signin_floors[@]}" | median)
printf '%-10s %11s %9s %8s %10s %17s %9s %6s\n' customers "sign-in ms" "floor ms" "CPU ms" "memory MB" \
    "drop-down ms" "floor ms" ratio
printf '%-10s %11s %9s %8s %10s %17s %9s %6s\n' "$size" "$signin" "$signin_floor" \
    "$(printf '%s\n' "${cpus[@]}" | median)" \
    "$(printf '%s\n' "${rss[@]}" | median)" "$opened (max $(printf '%s\n' "${opens[@]}" | sort -n | tail -1))" \
    "$floor" "$(awk -v a="$opened" -v b="$floor" 'BEGIN {printf "%.2f", a / b}')"
echo "sign-ins: ${signins[*]} (floors ${signin_floors[*]}); drop-downs: ${opens[*]}; floors: ${floors[*]}" >&2
