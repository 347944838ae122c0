#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# The video analysis of a 1 GB MP4 against `ffprobe -show_streams -show_format` on the same
# file, in the same run (limit: no slower than ffprobe; both read the headers, never the whole
# file). Twice: with the movie header at the end, as cameras write it, and at the start, as
# files made for the web have it. Our side runs as an inspection does: a fresh process that
# starts its decoder worker (most of its time: the worker loads every decoding library), and
# one analysis on a warm worker, as the window has one.
# Builds its own optimised copy of the engine in build/engine-bench.
# Usage: bench/media_bench.sh   (needs cmake, ninja, ffmpeg, hyperfine, python3)
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/engine_build.sh
build_engine_bench media_timing
timing="$build/media_timing"

work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-media-bench-XXXXXX")
trap 'rm -rf "$work"' EXIT

# Four seconds of 1080p noise (which no encoder shrinks) with stereo sound, then the same
# packets over and over to past 1 GiB: a long recording's header, with its sample tables.
ff() { ffmpeg -hide_banner -loglevel error -nostdin -y "$@"; }
ff -f lavfi -i "testsrc2=size=1920x1080:rate=30000/1001,noise=alls=40:allf=t" \
  -f lavfi -i "sine=frequency=440:sample_rate=48000" -t 4 \
  -c:v libx264 -preset ultrafast -qp 12 -pix_fmt yuv420p -c:a aac -ac 2 -b:a 128k \
  "$work/clip.mp4"
clip=$(stat -c %s "$work/clip.mp4")
loops=$(((1073741824 + clip - 1) / clip))
ff -stream_loop $((loops - 1)) -i "$work/clip.mp4" -map 0 -c copy "$work/moov_at_end.mp4"
ff -i "$work/moov_at_end.mp4" -map 0 -c copy -movflags +faststart "$work/moov_at_start.mp4"
rm "$work/clip.mp4"

for name in moov_at_end moov_at_start; do
  file="$work/$name.mp4"
  echo "== $name.mp4: $(stat -c %s "$file") bytes"
  warm=$("$timing" "$file" 20 | sed -n 's/.*median \([0-9.]*\) ms.*/\1/p')
  hyperfine -N --warmup 2 --runs 20 --export-json "$work/$name.json" \
    "ffprobe -v error -show_streams -show_format $file" "$timing $file" > /dev/null
  python3 - "$work/$name.json" "$warm" <<'PY'
import json, sys
runs = json.load(open(sys.argv[1]))["results"]
warm = float(sys.argv[2])
ffprobe, ours = (r["median"] * 1000 for r in runs)
ffprobeCpu, oursCpu = ((r["user"] + r["system"]) * 1000 for r in runs)
print(f"ffprobe -show_streams -show_format: median {ffprobe:7.1f} ms ({ffprobeCpu:.1f} ms processor)")
print(f"video analysis, warm worker:        median {warm:7.1f} ms, ratio {warm / ffprobe:.2f} (limit 1.0)")
print(f"video analysis, process + worker:   median {ours:7.1f} ms ({oursCpu:.1f} ms processor), "
      f"ratio {ours / ffprobe:.2f}, processor ratio {oursCpu / ffprobeCpu:.2f}")
PY
done
