#!/usr/bin/env bash
# scripts/run without a display says so at once: it installs and builds nothing first.
# The tools it would use for that are stand-ins here that leave a mark when called.
set -u
root="$1"
fake=$(mktemp -d)
trap 'rm -rf "$fake"' EXIT
for tool in cmake ninja sudo apt-get dpkg dpkg-query; do
  printf '#!/bin/sh\ntouch "%s/called-%s"\nexit 1\n' "$fake" "$tool" >"$fake/$tool"
  chmod +x "$fake/$tool"
done
output=$(env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM PATH="$fake:/usr/bin:/bin" \
  "$root/scripts/run" --sealed 2>&1)
status=$?
fail=0
[ "$status" -eq 2 ] || { echo "exit status $status, expected 2"; fail=1; }
grep -q "there is no display" <<<"$output" || { echo "no word about the display"; fail=1; }
grep -q "xvfb-run -a ./scripts/run --sealed" <<<"$output" || { echo "no virtual-display hint"; fail=1; }
if ls "$fake"/called-* >/dev/null 2>&1; then
  echo "called before the check: $(cd "$fake" && ls called-*)"
  fail=1
fi
[ "$fail" -eq 0 ] || printf '%s\n' "$output"
exit "$fail"
