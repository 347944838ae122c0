#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Writes an ASCII server log of about MEGABYTES MB (default 100) to OUT, the same every time:
# request lines with timestamps, paths, status codes and durations, and a realistic
# sprinkling of client IPv4 addresses (every line), e-mail addresses (1 line in 25), web links
# (1 in 8) and phone numbers (1 in 200).
# Usage: bench/make_log.sh OUT [MEGABYTES]
set -euo pipefail
out=$1
megabytes=${2:-100}
LC_ALL=C awk -v target=$((megabytes * 1000 * 1000)) 'BEGIN {
  srand(20260518)
  split("GET POST PUT DELETE GET GET", methods, " ")
  split("api/v1/items api/v1/users static/app.js health login api/v2/search", paths, " ")
  split("INFO INFO INFO WARN ERROR DEBUG", levels, " ")
  split("ann.lee bob carol+news d.smith eve_ops", users, " ")
  split("example.org mail.example.co.uk corp.example.com", domains, " ")
  bytes = 0
  for (n = 0; bytes < target; n++) {
    s = n % 86400
    line = sprintf("2026-05-18T%02d:%02d:%02d.%03dZ %-5s [worker-%d] client=%d.%d.%d.%d %s /%s/%d %d %dms",
      int(s / 3600), int(s / 60) % 60, s % 60, int(rand() * 1000), levels[int(rand() * 6) + 1],
      int(rand() * 16), int(rand() * 223) + 1, int(rand() * 256), int(rand() * 256),
      int(rand() * 256), methods[int(rand() * 6) + 1], paths[int(rand() * 6) + 1],
      int(rand() * 100000), (rand() < 0.9 ? 200 : 404), int(rand() * 900) + 1)
    if (n % 25 == 0) line = line sprintf(" user=%s@%s", users[int(rand() * 5) + 1], domains[int(rand() * 3) + 1])
    if (n % 8 == 0) line = line sprintf(" ref=https://%s/page?id=%d", domains[int(rand() * 3) + 1], int(rand() * 1000))
    if (n % 200 == 0) line = line sprintf(" callback (555) %03d-%04d", int(rand() * 1000), int(rand() * 10000))
    print line
    bytes += length(line) + 1
  }
}' > "$out"
