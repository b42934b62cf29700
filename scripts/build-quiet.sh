#!/usr/bin/env bash
# Builds quietly: the compiler's chatter goes to a log that is shown only when the build fails.
# Usage: build-quiet.sh BUILD_DIR JOBS [TARGET...]
set -uo pipefail
build=$1; jobs=$2; shift 2
targets=()
for t in "$@"; do targets+=(--target "$t"); done
log="$build/build.log"
if ! cmake --build "$build" -j "$jobs" "${targets[@]}" >"$log" 2>&1; then
  cat "$log" >&2
  echo "Build failed (full log: $log)." >&2
  exit 1
fi
