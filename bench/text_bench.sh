#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# The text and PDF analyses against the peer tools they stand beside, in the same run:
#  - a 100 MB ASCII server log: our text analysis (encoding, lines, words, characters, line
#    endings and the four contact counts) against `wc -lwm` (limit: 4 times wc, and at least
#    100 MB/s), its peak memory against the file's size (limit 3), and its counts against
#    the naive way with ICU's RegexMatcher and break iterator (which must give the same);
#  - a 300-page text PDF: our PDF analysis against `pdftotext` of the same file (limit 1),
#    with the decoder worker already running as the window has it, and also as a process
#    of its own that first starts the worker and loads the MIME database.
# Builds its own optimised copy of the engine in build/text-bench.
# Usage: bench/text_bench.sh   (needs cmake, ninja, hyperfine, poppler-utils, python3)
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/engine_build.sh
build_engine_bench text_analyze make_text_pdf
analyze="$build/text_analyze"

work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-text-bench-XXXXXX")
trap 'rm -rf "$work"' EXIT

bench/make_log.sh "$work/server.log" 100
QT_QPA_PLATFORM=offscreen "$build/make_text_pdf" 300 "$work/report.pdf"
cat "$work/server.log" "$work/report.pdf" > /dev/null  # into the page cache
ls -l "$work/server.log" "$work/report.pdf" | awk '{print $5, $9}'
pdfinfo "$work/report.pdf" | grep -E '^(Pages|Producer)'

echo "== counts: ours, then ICU's"
"$analyze" text "$work/server.log" | tee "$work/ours.txt"
wc -lwm "$work/server.log"
start=$(date +%s.%N)
"$analyze" icu "$work/server.log" > "$work/icu.txt"
echo "ICU, the naive way: $(python3 -c "print(f'{$(date +%s.%N) - $start:.1f}')") s"
for key in "Text Characters" "Text Email Addresses" "Text IP Addresses" \
  "Text Phone-like Numbers" "Text URLs"; do
  ours=$(grep "^$key:" "$work/ours.txt")
  icu=$(grep "^$key:" "$work/icu.txt")
  if [ "$ours" != "$icu" ]; then
    echo "text_bench: counts differ: ours '$ours', ICU '$icu'" >&2
    exit 1
  fi
done
echo "ICU gives the same counts"

echo "== 100 MB log: text analysis against wc -lwm"
hyperfine -N --warmup 1 --runs 10 --export-json "$work/text.json" \
  "wc -lwm $work/server.log" "$analyze text $work/server.log"
python3 - "$work/text.json" "$(stat -c %s "$work/server.log")" <<'PY'
import json, sys
wc, ours = (r["median"] for r in json.load(open(sys.argv[1]))["results"])
size = int(sys.argv[2])
print(f"median wc {wc:.3f} s, text analysis {ours:.3f} s ({size / ours / 1e6:.0f} MB/s), "
      f"ratio {ours / wc:.2f} (limit 4; at least 100 MB/s)")
PY
peak=$(/usr/bin/time -f %M "$analyze" text "$work/server.log" 2>&1 >/dev/null | tail -1)
python3 -c "print(f'peak memory {$peak / 1024:.0f} MiB, {$peak * 1024 / $(stat -c %s "$work/server.log"):.2f} times the file (limit 3)')"

echo "== 300-page PDF: PDF analysis against pdftotext"
"$analyze" pdf "$work/report.pdf" | grep -E 'Page Count|Text-bearing|Content'
hyperfine -N --warmup 1 --runs 10 --export-json "$work/pdf.json" \
  "pdftotext $work/report.pdf $work/report.txt" "$analyze pdf $work/report.pdf"
warm=$("$analyze" pdf-warm "$work/report.pdf" 10)
python3 - "$work/pdf.json" "$warm" <<'PY'
import json, sys
peer, cold = (r["median"] for r in json.load(open(sys.argv[1]))["results"])
warm = float(sys.argv[2])
print(f"median pdftotext {peer:.3f} s, PDF analysis {warm:.3f} s with the worker running, "
      f"ratio {warm / peer:.2f} (limit 1); as a process that starts it, {cold:.3f} s, "
      f"ratio {cold / peer:.2f}")
PY
