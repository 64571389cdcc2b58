#!/usr/bin/env bash
# Several tills under fire, run by hand (not in CI; it takes minutes):
#   TILLS tills key RECEIPTS receipts each into one batch, in scripts of CHUNK receipts, while two full
#   batches are posted; KILLS times a till or a posting is killed (SIGKILL) at a random moment and the
#   posting started again; then `tillbook-ledger check` verifies the ledger, before and after the tills'
#   batch is posted as well.
#
#   tests/soak/several-tills.sh              # SQLite in a temporary folder
#   tests/soak/several-tills.sh --postgres   # a throwaway PostgreSQL server (or TILLBOOK_LEDGER_URL)
#
# Settings from the environment: TILLS (8) RECEIPTS (500) CHUNK (25) KILLS (200) POSTED (1500 entries per
# posted batch) BUILD (build). Prints its figures at the end; exit status 1 when the ledger does not hold.
set -u
cd "$(dirname "$0")/../.."

TILLS=${TILLS:-8} RECEIPTS=${RECEIPTS:-500} CHUNK=${CHUNK:-25} KILLS=${KILLS:-200} POSTED=${POSTED:-1500}
L=$PWD/${BUILD:-build}/tools/ledger/tillbook-ledger
[ -x "$L" ] || { echo "build tillbook-ledger first ($L)" >&2; exit 2; }

WORK=$(mktemp -d)
chmod 777 "$WORK"
export TILLBOOK_TODAY=2025-03-15 TILLBOOK_DATA=$WORK/data
ID=SOAK
PGBIN=
stop_server() { [ -n "$PGBIN" ] && as_pg "$PGBIN/pg_ctl" -D "$WORK/pg" -m immediate -w stop >/dev/null; }
as_pg() { if [ "$(id -u)" = 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi; }
trap 'stop_server; rm -rf "$WORK"' EXIT

if [ "${1:-}" = --postgres ] && [ -z "${TILLBOOK_LEDGER_URL:-}" ]; then
    PGBIN=$(ls -d /usr/lib/postgresql/*/bin | sort -V | tail -1)
    PORT=$((20000 + RANDOM % 20000))
    as_pg "$PGBIN/initdb" -D "$WORK/pg" -U postgres -A trust -E UTF8 --no-sync >/dev/null || exit 2
    # The owner (postgres) trusted on loopback; the clerks' logins sign in with their passwords (SCRAM).
    printf 'local all all trust\nhost all postgres 127.0.0.1/32 trust\nhost all all 127.0.0.1/32 scram-sha-256\n' \
        >"$WORK/pg/pg_hba.conf"
    as_pg "$PGBIN/pg_ctl" -D "$WORK/pg" -l "$WORK/pg.log" -w start \
        -o "-p $PORT -c listen_addresses=127.0.0.1 -k $WORK -c max_connections=100" >/dev/null || exit 2
    export TILLBOOK_LEDGER_URL="postgresql://postgres@127.0.0.1:$PORT/tillbook_{id}"
fi
STORE=${TILLBOOK_LEDGER_URL:+PostgreSQL}
STORE=${STORE:-SQLite}

"$L" create $ID --sample --customers 40 --documents 400 --force >/dev/null || exit 2
# The tills and postings work as a clerk (on PostgreSQL the clerk's own login), not as the owner.
"$L" user $ID CLERK soak-Pw1 >/dev/null || exit 2
export TILLBOOK_USER=CLERK TILLBOOK_PASSWORD=soak-Pw1
mapfile -t CUSTOMERS < <("$L" browse $ID AR0024 'CNTOPENINV>0' --fields IDCUST | tail -n +2 | tr -d '"\r')

HEAD='open nb AR0041
open batch AR0041
open header AR0042
open detail AR0044
open misc AR0043
open post AR0061
compose batch header
compose header batch misc detail
compose detail header
compose misc header
compose post batch header misc detail'

# receipts BATCH N SEED: N receipts into batch BATCH; most applied to a customer's first open document.
receipts() {
    local batch=$1 n=$2 seed=$3 i customer amount
    echo "$HEAD"
    echo "put-unverified batch CODEPYMTYP CA CNTBTCH $batch"
    echo "read batch"
    for ((i = 0; i < n; i++)); do
        customer=${CUSTOMERS[$(((seed + i * 7) % ${#CUSTOMERS[@]}))]}
        amount=$((1 + (seed + i) % 9)).$(((seed * 31 + i) % 100))
        echo "init header"
        echo "put header IDCUST $customer AMTRMIT $amount"
        if ((i % 10 != 9)); then
            echo "put-unverified post PAYMTYPE CA CNTBTCH $batch CNTITEM 0 IDCUST $customer AMTRMIT $amount"
            echo "process post"
            echo "put-unverified post CNTKEY 1"
            echo "read post"
            echo "put post APPLY Y"
            echo "update post"
        fi
        echo "insert header"
    done
}

# Batch 1 for the tills; batches 2 and 3 filled and left to be posted while the tills work.
{
    echo "$HEAD"
    for b in 1 2 3; do printf 'put-unverified nb CODEPYMTYP CA CNTBTCH 0\ninsert nb\n'; done
} | "$L" run $ID - >/dev/null || exit 2
for b in 2 3; do receipts $b "$POSTED" $b | "$L" run $ID - >/dev/null; done

START=$(date +%s.%N)
mkdir -p "$WORK/pids" "$WORK/scripts"

till() { # till T: RECEIPTS receipts in scripts of CHUNK; a killed script is keyed again (what it saved stays)
    local t=$1 c=0 done=0
    while ((done < RECEIPTS / CHUNK)); do
        receipts 1 "$CHUNK" $((t * 1000 + c)) >"$WORK/scripts/$t"
        "$L" run $ID "$WORK/scripts/$t" >/dev/null 2>>"$WORK/till-errors" &
        echo $! >"$WORK/pids/till$t"
        wait $!
        [ $? = 137 ] || done=$((done + 1))
        c=$((c + 1))
    done
    rm -f "$WORK/pids/till$t"
}

poster() { # poster B: posts batch B until it is posted, started again after each kill
    local b=$1 status
    while :; do
        "$L" post-batch $ID "$b" >/dev/null 2>>"$WORK/post-errors" &
        echo $! >"$WORK/pids/post$b"
        wait $!
        status=$("$L" browse $ID AR0041 "CNTBTCH = $b" --fields BATCHSTAT | tail -1 | tr -d '\r')
        [ "$status" = 3 ] && break
        sleep 0.2
    done
    rm -f "$WORK/pids/post$b"
    echo "posting of batch $b done at $(date +%s.%N)" >>"$WORK/events"
}

WORKERS=()
for ((t = 1; t <= TILLS; t++)); do till $t & WORKERS+=($!); done
for b in 2 3; do poster $b & WORKERS+=($!); done

# The killer: a random running till or posting, at a random moment, until KILLS kills are done.
KILLED=0 KILLED_POSTINGS=0
while ((KILLED < KILLS)); do
    sleep "$(printf '0.%03d' $((10 + RANDOM % 100)))"
    PIDS=("$WORK"/pids/*)
    [ -e "${PIDS[0]}" ] || break
    VICTIM=${PIDS[$((RANDOM % ${#PIDS[@]}))]}
    if kill -9 "$(cat "$VICTIM" 2>/dev/null)" 2>/dev/null; then
        KILLED=$((KILLED + 1))
        case $VICTIM in *post*) KILLED_POSTINGS=$((KILLED_POSTINGS + 1)) ;; esac
    fi
done
wait "${WORKERS[@]}"
ELAPSED=$(echo "$(date +%s.%N) - $START" | bc)

ENTRIES=$("$L" browse $ID AR0041 "CNTBTCH = 1" --fields CNTENTER | tail -1 | tr -d '\r')
BUSY=$(grep -c "The company is busy" "$WORK/till-errors" "$WORK/post-errors" 2>/dev/null | awk -F: '{s += $2} END {print s + 0}')
echo "== $STORE: $TILLS tills x $RECEIPTS receipts (scripts of $CHUNK), 2 batches of $POSTED entries posted meanwhile"
echo "   $ELAPSED s, $KILLED kills ($KILLED_POSTINGS of postings), $ENTRIES entries in the tills' batch, $BUSY busy errors"
echo "== check while the tills' batch is open"
"$L" check $ID | tail -20
FIRST=${PIPESTATUS[0]}
"$L" post-batch $ID 1 >/dev/null
echo "== check after the tills' batch is posted too"
"$L" check $ID | tail -20
SECOND=${PIPESTATUS[0]}
[ "$FIRST" = 0 ] && [ "$SECOND" = 0 ]
