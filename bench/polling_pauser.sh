#!/usr/bin/env bash
# What people run instead: looks at the front window twice a second, and every five seconds stops
# each browser that is not in front. The peer of bench/applications.
set -euo pipefail
stopped=""

front() { xdotool getactivewindow getwindowpid 2>/dev/null || true; }

# The browser and its children; the grandchildren run on.
# shellcheck disable=SC2046 # each process id is a word
send() { kill "$1" "$2" $(pgrep -P "$2" || true) 2>/dev/null || true; }

oldest() { pgrep -o -x "$1" || true; }

resume_all() {
  for pid in $stopped; do
    send -CONT "$pid"
  done
}

trap 'resume_all; exit 0' TERM

for ((turn = 0; ; turn++)); do
  pid=$(front)
  if [[ -n $pid && " $stopped " == *" $pid "* ]]; then
    send -CONT "$pid"
    stopped=${stopped//$pid/}
  fi
  if ((turn % 10 == 0)); then
    for browser in $(oldest chromium) $(oldest firefox-esr); do
      if [[ $browser != "$pid" && " $stopped " != *" $browser "* ]]; then
        send -STOP "$browser"
        stopped+=" $browser"
      fi
    done
  fi
  sleep 0.5
done
