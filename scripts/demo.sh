#!/usr/bin/env bash
# Installs what is missing, builds convsch, starts a throwaway PostgreSQL cluster
# in a temporary directory, loads the working and target schemas, and runs the
# migration on the shipped example (examples/store into examples/target), then
# the clean-up. Shows the status files and logs; removes everything at the end.
set -euo pipefail
cd "$(dirname "$0")/.."
repo=$(pwd)
scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j "$(nproc 2>/dev/null || echo 2)" --target convsch

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
echo "-- conv/sch.sts"; cat "$root/conv/sch.sts"
echo "-- conv/log/sch.log"; cat "$root/conv/log/sch.log"
echo "-- conv/log/sch_trace.log, decoded"; scripts/decode-trace "$root/conv/log/sch_trace.log"
echo "-- rows in the working database"
"${psql[@]}" -d convent -At -c "SELECT relname || ': ' || n_live_tup FROM pg_stat_user_tables WHERE n_live_tup > 0 ORDER BY relname"

run clean
echo "-- conv/sch_clean.sts"; cat "$root/conv/sch_clean.sts"
