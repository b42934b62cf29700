#!/usr/bin/env bash
# Starts the workbench. Without a display it runs under a virtual X server
# and says so, so `make run` also works on a headless machine.
set -euo pipefail
build=${1:-build}; shift || true
bin="$build/bin/ptz-workbench"
if [ ! -x "$bin" ]; then
  echo "The workbench is not built yet ($bin missing)." >&2
  exit 1
fi
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo "No display found: starting the workbench under Xvfb (invisible). Set DISPLAY to see it." >&2
  exec xvfb-run -a -s "-screen 0 1600x1000x24" "$bin" "$@"
fi
exec "$bin" "$@"
