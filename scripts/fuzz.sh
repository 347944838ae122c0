#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Builds the fuzz targets (preset `fuzz`: clang-14, libFuzzer, ASan and UBSan) and runs one of
# them, or each in turn, for SECONDS (default 30). For every target: its regression inputs in
# tests/data/fuzz/TARGET run first, once each; then a fresh corpus in build/fuzz/corpus/TARGET
# is merged from its seed folders (named in fuzz/CMakeLists.txt) and the fuzzer runs on it.
# Crash inputs are kept in build/fuzz/artifacts/TARGET/, logs in build/fuzz/logs/.
# Exits non-zero when any target crashes.
# Usage: scripts/fuzz.sh TARGET|all [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."

usage() {
  echo "usage: scripts/fuzz.sh TARGET|all [SECONDS]" >&2
  exit 2
}
(($# == 1 || $# == 2)) || usage
seconds=${2:-30}
[[ $seconds =~ ^[1-9][0-9]*$ ]] || usage

scripts/setup.sh
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc)"

build=build/fuzz
if [ "$1" = all ]; then
  targets=()
  for source in fuzz/*_fuzz.cpp; do targets+=("$(basename "$source" .cpp)"); done
elif [ -x "$build/fuzz/$1" ]; then
  targets=("$1")
else
  echo "fuzz.sh: no fuzz target named $1" >&2
  usage
fi

export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1}
# fontconfig and the like keep a few allocations for the life of the process; see the file.
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$PWD/tests/lsan.supp}
limits=(-timeout=25 -rss_limit_mb=4096)
mkdir -p "$build/logs"

# Runs the fuzzer of target $1 with the given arguments, its chatter into the target's log;
# prints the end of the log, more of it when the run fails.
fuzzer() {
  local name=$1 log=$build/logs/$1.log unit
  shift
  mkdir -p "$build/artifacts/$name"
  if "$build/fuzz/$name" "${limits[@]}" -artifact_prefix="$build/artifacts/$name/" "$@" \
    >"$log" 2>&1; then
    tail -n 5 "$log"
    return 0
  fi
  # A shared machine can stall every process for half a minute: a timeout whose input then
  # runs in time was the machine's, not the target's.
  unit=$(sed -n 's/.*Test unit written to \(.*timeout-[0-9a-f]*\)$/\1/p' "$log" | tail -n 1)
  if [ -n "$unit" ] && "$build/fuzz/$name" "${limits[@]}" "$unit" >/dev/null 2>&1; then
    echo "fuzz.sh: $name: $unit timed out once, then ran in time; the machine stalled"
    return 0
  fi
  tail -n 150 "$log"
  echo "fuzz.sh: $name failed; its log is $log, crash inputs are in $build/artifacts/$name/" >&2
  return 1
}

run() {
  local name=$1 regressions=tests/data/fuzz/$1 corpus=$build/corpus/$1
  local inputs=() seeds=()
  if [ -d "$regressions" ]; then
    mapfile -t inputs < <(find "$regressions" -type f | sort)
  fi
  if ((${#inputs[@]})); then
    echo "== $name: ${#inputs[@]} regression inputs"
    fuzzer "$name" "${inputs[@]}" || return 1
    seeds+=("$regressions")
  fi

  while IFS= read -r folder; do
    if [ -n "$folder" ] && [ -d "$folder" ]; then seeds+=("$folder"); fi
  done <"$build/fuzz/$name.seeds"
  rm -rf "$corpus"
  mkdir -p "$corpus"
  if ((${#seeds[@]})); then
    echo "== $name: merging seeds from ${seeds[*]}"
    fuzzer "$name" -merge=1 "$corpus" "${seeds[@]}" || return 1
  fi

  # The merge passes over a seed that crashes, so the run reads the seeds again: there a
  # crash counts.
  echo "== $name: fuzzing for ${seconds}s"
  fuzzer "$name" -max_total_time="$seconds" -print_final_stats=1 "$corpus" "${seeds[@]}"
}

failed=()
for name in "${targets[@]}"; do
  run "$name" || failed+=("$name")
done
echo "fuzz: $((${#targets[@]} - ${#failed[@]})) passed, ${#failed[@]} failed"
if ((${#failed[@]})); then
  echo "fuzz.sh: failed: ${failed[*]}" >&2
  exit 1
fi
