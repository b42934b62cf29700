#!/usr/bin/env bash
# Runs every benchmark of the build and prints their figures; writes them to docs/benchmarks.txt.
set -euo pipefail
build=${1:-build}
out=docs/benchmarks.txt
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
{
  echo "# Benchmark figures ($(date -u +%Y-%m-%d), $(nproc) cores, $(uname -m))"
  for b in "$build"/bench/bench_*; do
    [ -f "$b" ] && [ -x "$b" ] || continue
    echo
    echo "## $(basename "$b")"
    "$b"
  done
} | tee "$out"
