#!/usr/bin/env bash
# Wall time of one zentavia-cli command on a known pack: zentavia-packsim --pty --wire-pacing, the
# command run RUNS times (default 5) with the directory cache and RUNS times with --no-cache; prints
# each time and the medians in milliseconds.
#
#   bench/cli/cli_wall.sh BIN [COMMAND ARGS...]      default: get Voltage --node 3
#
# BIN is a build's bin folder (Release for figures). The cache lives in a throwaway
# XDG_CACHE_HOME, filled by one run before the timed ones; the settings are a throwaway file.
set -euo pipefail
bin=$(cd "$1" && pwd)
shift
command=("$@")
[ ${#command[@]} -gt 0 ] || command=(get Voltage --node 3)
runs=${RUNS:-5}

run_dir=$(mktemp -d)
sim_pid=
cleanup() {
  [ -n "$sim_pid" ] && kill "$sim_pid" 2>/dev/null || true
  wait 2>/dev/null || true
  rm -rf "$run_dir"
}
trap cleanup EXIT INT TERM

"$bin/zentavia-packsim" --pty --wire-pacing --link "$run_dir/ttyPACK" >"$run_dir/sim.log" 2>&1 &
sim_pid=$!
for _ in $(seq 100); do [ -e "$run_dir/ttyPACK" ] && break; sleep 0.05; done
export XDG_CACHE_HOME="$run_dir/cache" ZENTAVIA_SETTINGS="$run_dir/Zentavia.conf"

cli() { "$bin/zentavia-cli" --port "$run_dir/ttyPACK" "${command[@]}" "$@" >"$run_dir/out" 2>&1; }
median() { sort -n | awk '{ a[NR] = $1 } END { print a[int((NR + 1) / 2)] }'; }
timed() {
  local start end
  start=$(date +%s%N)
  cli "$@" || { cat "$run_dir/out" >&2; exit 1; }
  end=$(date +%s%N)
  echo $(((end - start) / 1000000))
}

cli || { cat "$run_dir/out" >&2; exit 1; } # the first run fills the cache
echo "zentavia-cli ${command[*]}: $(cat "$run_dir/out")"
cached=()
fresh=()
for _ in $(seq "$runs"); do
  cached+=("$(timed)")
  fresh+=("$(timed --no-cache)")
done
echo "with the cache:    ${cached[*]} ms, median $(printf '%s\n' "${cached[@]}" | median) ms"
echo "with --no-cache:   ${fresh[*]} ms, median $(printf '%s\n' "${fresh[@]}" | median) ms"
echo "load average: $(cut -d' ' -f1-3 /proc/loadavg)"
