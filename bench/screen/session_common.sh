# Shared by the screen scripts (sourced): a virtual display, and zentavia started on it against
# the simulator's link. Needs bin, run_dir and the array pids (killed by the caller's cleanup).

# start_display [DISPLAY]: Xvfb on DISPLAY (a random one when not given), exported; waits for its
# socket.
start_display() {
  display=${1:-":$((90 + RANDOM % 100))"}
  Xvfb "$display" -screen 0 1280x900x24 -nolisten tcp >"$run_dir/xvfb.log" 2>&1 &
  pids+=($!)
  export DISPLAY=$display
  for _ in $(seq 100); do [ -e "/tmp/.X11-unix/X${display#:}" ] && break; sleep 0.1; done
}

# start_zentavia LINK TRIES: zentavia with a throwaway settings file (COM1 on LINK, a poll rate of
# 1 s); sets app and window, the latter once the main window shows (TRIES x 0.2 s at most).
start_zentavia() {
  cat >"$run_dir/settings.ini" <<INI
[Ports]
COM1=$1
[Software\\Norvale Systems\\Zentavia 3\\Settings]
PollingInterval=1
INI
  ZENTAVIA_HOME="$bin" ZENTAVIA_SETTINGS="$run_dir/settings.ini" "$bin/zentavia" >"$run_dir/app.log" 2>&1 &
  app=$!
  pids+=($app)
  window=""
  for _ in $(seq "$2"); do
    window=$(xdotool search --onlyvisible --name "Norvale Systems - Zentavia" 2>/dev/null | head -n 1 || true)
    [ -n "$window" ] && break
    sleep 0.2
  done
  [ -n "$window" ] || { echo "the main window did not appear" >&2; cat "$run_dir/app.log" >&2; exit 1; }
}
