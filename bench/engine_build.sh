# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Sourced by the benchmarks: builds the named programs of bench/engine (an optimised engine
# with its decoder worker) in build/engine-bench, quietly unless the build fails.
build=build/engine-bench
build_engine_bench() {
  mkdir -p "$build"
  cmake -S bench/engine -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release > "$build.log" 2>&1 &&
    cmake --build "$build" --target "$@" lumenscribe-decoder -j2 >> "$build.log" 2>&1 ||
    { cat "$build.log" >&2; exit 1; }
}
