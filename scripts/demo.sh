#!/usr/bin/env bash
# Installs what is missing, builds convsch, starts a throwaway PostgreSQL cluster
# in a temporary directory, loads the working and target schemas, and migrates
# the shipped example (examples/store into a copy of examples/target). Then it
# shows what the run did: the status file, the run's account and the
# reconciliation of store, working and target database (convsch-report
# --reconcile), and the rows of every target table. It exits non-zero when the
# reconciliation finds a difference that no report of the run explains.
#
#   scripts/demo.sh           run, show, remove the cluster
#   scripts/demo.sh --keep    leave the cluster running to look at it with psql
#   scripts/demo.sh --clean   also run the clean mode afterwards
set -euo pipefail
cd "$(dirname "$0")/.."
repo=$(pwd)
keep=0
clean=0
for arg in "$@"; do
  case $arg in
    --keep) keep=1 ;;
    --clean) clean=1 ;;
    *) echo "usage: $0 [--keep] [--clean]" >&2; exit 2 ;;
  esac
done
scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j "$(nproc 2>/dev/null || echo 2)" --target convsch convsch-report

bindir=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)
[ -x "$bindir/initdb" ] || { echo "initdb not found under /usr/lib/postgresql" >&2; exit 1; }
work=$(mktemp -d /tmp/convsch-demo.XXXXXX)
as_pg=()
if [ "$(id -u)" -eq 0 ]; then
  chown postgres "$work"
  as_pg=(runuser -u postgres --)
fi
port=$(python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])')
cleanup() {
  if [ "$keep" -eq 1 ]; then return; fi
  "${as_pg[@]}" "$bindir/pg_ctl" -D "$work/pgdata" -m fast -w stop >/dev/null 2>&1 || true
  rm -rf "$work"
}
trap cleanup EXIT

echo "== PostgreSQL on 127.0.0.1:$port (in $work)"
"${as_pg[@]}" "$bindir/initdb" -D "$work/pgdata" -U demo -E UTF8 --locale=C --auth=trust -N >/dev/null
"${as_pg[@]}" "$bindir/pg_ctl" -D "$work/pgdata" -l "$work/pgdata/server.log" -w \
  -o "-p $port -k $work -c listen_addresses=127.0.0.1" start >/dev/null
psql=(psql -h 127.0.0.1 -p "$port" -U demo -v ON_ERROR_STOP=1 -q)
"${psql[@]}" -d postgres -c "CREATE DATABASE convent" -c "CREATE DATABASE convkiv"
"${psql[@]}" -d convent -f schema/ent.sql
"${psql[@]}" -d convkiv -f schema/kiv.sql

# The work root holds the SQL scripts, the status files and the logs; the target
# installation is a copy, since the migration writes attached files into it.
root="$work/root"
mkdir -p "$root/conv/log" "$root/sql"
cp -r sql/sch "$root/sql/"
cp -r examples/target "$work/target"
chmod -R a+rwX "$work/target" "$root"

run() {
  local mode=$1
  echo
  echo "== convsch $mode"
  set +e
  "$repo/build/convsch" "$root" 1 "$mode" "$repo/examples/store" 127.0.0.1 "$port" demo "" \
    "$work/target" 127.0.0.1 "$port" demo "" convent convkiv
  local rc=$?
  set -e
  echo "exit status: $rc"
}

run create
echo
echo "-- conv/sch.sts"
cat "$root/conv/sch.sts"
echo
echo "-- build/convsch-report --reconcile $root ... (the run's own arguments)"
set +e
build/convsch-report --reconcile "$root" 1 create "$repo/examples/store" 127.0.0.1 "$port" demo "" \
  "$work/target" 127.0.0.1 "$port" demo "" convent convkiv
report=$?
set -e
[ "$report" -eq 0 ] || echo "(convsch-report exited with $report)"

# Exact row counts of every table of the target database, in one statement.
count_sql="SELECT rpad(table_name, 28) || (xpath('/row/n/text()',
    query_to_xml(format('SELECT count(*) AS n FROM %I', table_name), false, true, '')))[1]::text
  FROM information_schema.tables WHERE table_schema = 'public' AND table_type = 'BASE TABLE'
  ORDER BY lower(table_name)"
echo
echo "-- rows in every table of the target database (convkiv)"
"${psql[@]}" -d convkiv -At -c "$count_sql"

if [ "$clean" -eq 1 ]; then
  run clean
  echo "-- conv/sch_clean.sts"; cat "$root/conv/sch_clean.sts"
fi

echo
if [ "$keep" -eq 1 ]; then
  echo "The cluster keeps running. Look at the target with"
  echo "  psql -h 127.0.0.1 -p $port -U demo convkiv"
  echo "(the working database is convent; the work root is $root;"
  echo "the trace log for engineers: scripts/decode-trace $root/conv/log/sch_trace.log)."
  echo "Stop it and remove everything with"
  echo "  ${as_pg[*]}${as_pg[*]:+ }$bindir/pg_ctl -D $work/pgdata -m fast stop && rm -rf $work"
else
  echo "The cluster and its files are removed now; run scripts/demo.sh --keep to look"
  echo "at the target yourself with psql -h 127.0.0.1 -p PORT -U demo convkiv."
fi
exit "$report"
