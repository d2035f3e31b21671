#!/usr/bin/env bash
# The running application recovering its link on its own, on a virtual display:
#
#   bench/screen/link_recovery.sh BIN DIR [DISPLAY]
#
# zentavia polls a simulated pack over a pseudo-terminal (linked under a stable path) at 1 s; the
# simulator is killed, and later started again on the same link path. Screenshots in DIR:
# recovery-1-online.png (polling), recovery-2-offline.png (the pack gone), recovery-3-online.png
# (the pack back, found by the poll without any user action). The script prints the time from
# the restart of the simulator to "Online" as the window shows it (sampled each second).
set -euo pipefail
bin=$(cd "$1" && pwd)
out=$2
mkdir -p "$out"

run_dir=$(mktemp -d)
pids=()
sim_pid=""
cleanup() {
  [ -z "$sim_pid" ] || kill "$sim_pid" 2>/dev/null || true
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  wait 2>/dev/null || true
  rm -rf "$run_dir"
}
trap cleanup EXIT INT TERM

. "$(dirname "$0")/session_common.sh"
start_display "${3:-}"

link="$run_dir/ttyPACK"
start_sim() {
  "$bin/zentavia-packsim" --link "$link" --cells 8 >>"$run_dir/packsim.log" 2>&1 &
  sim_pid=$!
  for _ in $(seq 100); do [ -e "$link" ] && break; sleep 0.1; done
}
start_sim

start_zentavia "$link" 600
sleep "${SETTLE:-30}"
xdotool windowmove "$window" 0 0 windowsize "$window" 1280 860
sleep 1
# Commands > Poll Data, where a user finds it.
xdotool mousemove 140 8 click 1
sleep 0.7
xdotool mousemove 157 277 click 1
sleep 6
import -window root -crop 1280x860+0+0 "$out/recovery-1-online.png"

kill "$sim_pid"
wait "$sim_pid" 2>/dev/null || true
sim_pid=""
sleep "${AWAY:-12}"
import -window root -crop 1280x860+0+0 "$out/recovery-2-offline.png"

restart=$(date +%s.%N)
start_sim
sleep "${BACK:-10}"
import -window root -crop 1280x860+0+0 "$out/recovery-3-online.png"
echo "simulator restarted at $restart; screenshots in $out"
kill -0 "$app" && echo "zentavia still running"
