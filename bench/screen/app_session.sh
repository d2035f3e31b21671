#!/usr/bin/env bash
# The running application polling a simulated pack over a pseudo-terminal, on a virtual display.
#
#   bench/screen/app_session.sh BIN cpu [SECONDS]     CPU share of zentavia polling at 1 s
#   bench/screen/app_session.sh BIN shots DIR         screenshots while polling: the status bar at
#                                                     800 and 1280 px
#
# BIN is a build's bin folder (Release for figures). The pack is zentavia-packsim --wire-pacing
# with 16 cells; the poll is started from the Commands menu as a user does, at a rate of 1 s.
# SETTLE (seconds, default 30) is the wait for start-up; SHOT=FILE keeps a screenshot of the cpu
# run, to see that the poll ran ("Polling Active").
set -euo pipefail
bin=$(cd "$1" && pwd)
mode=$2
arg=${3:-}

run_dir=$(mktemp -d)
pids=()
cleanup() {
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  wait 2>/dev/null || true
  rm -rf "$run_dir"
}
trap cleanup EXIT INT TERM

. "$(dirname "$0")/session_common.sh"
start_display

link="$run_dir/ttyPACK"
"$bin/zentavia-packsim" --link "$link" --wire-pacing --cells 16 >"$run_dir/packsim.log" 2>&1 &
pids+=($!)
for _ in $(seq 100); do [ -e "$link" ] && break; sleep 0.1; done

start_zentavia "$link" 300
# Start-up reads every parameter of the pack before the poll entry is available.
sleep "${SETTLE:-30}"

# The window at the top left of the display, then Commands > Poll Data with the mouse, where a
# user finds them (the menu bar's third title; the entry's row of the open menu).
place() {
  xdotool windowmove "$window" 0 0 windowsize "$window" "$1" 860
  sleep 1
}
start_poll() {
  xdotool mousemove 140 8 click 1
  sleep 0.7
  xdotool mousemove 157 277 click 1
  sleep 2
}

case "$mode" in
  cpu)
    seconds=${arg:-60}
    place 1280
    start_poll
    read -r -a before < <(cut -d' ' -f14,15 "/proc/$app/stat")
    start=$(date +%s.%N)
    sleep "$seconds"
    read -r -a after < <(cut -d' ' -f14,15 "/proc/$app/stat")
    end=$(date +%s.%N)
    awk -v u0="${before[0]}" -v s0="${before[1]}" -v u1="${after[0]}" -v s1="${after[1]}" \
      -v t0="$start" -v t1="$end" -v hz="$(getconf CLK_TCK)" -v load="$(cut -d' ' -f1-3 /proc/loadavg)" 'BEGIN {
        cpu = (u1 - u0 + s1 - s0) / hz; wall = t1 - t0
        printf "zentavia polling 16 cells at 1 s over a pty: %.2f s CPU in %.1f s wall, %.1f %% (load average %s)\n", cpu, wall, 100 * cpu / wall, load
      }'
    [ -z "${SHOT:-}" ] || import -window root "$SHOT"
    ;;
  shots)
    mkdir -p "$arg"
    place 1280
    start_poll
    for width in 800 1280; do
      place "$width"
      sleep 2
      import -window root -crop "${width}x860+0+0" "$arg/statusbar-$width.png"
    done
    ;;
  *)
    echo "unknown mode $mode" >&2
    exit 2
    ;;
esac
