#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the Debian 12 packages that building, running and testing Lumenscribe need.
# Safe to run again: apt-get skips what is already there.
set -euo pipefail

packages=(
  # toolchain
  cmake ninja-build g++ pkg-config git
  # engine libraries
  qt6-base-dev libssl-dev libicu-dev nlohmann-json3-dev
  libvips-dev libexiv2-dev liblcms2-dev libpoppler-cpp-dev
  # the decoder worker confines itself with seccomp
  libseccomp-dev
  libavformat-dev libavcodec-dev libavutil-dev
  # whole-file health checks in the decoder: qpdf's library and the compression formats' own
  libqpdf-dev zlib1g-dev liblzma-dev libbz2-dev libzstd-dev
  # Mac property lists in extended attributes
  libplist-dev
  # window
  qt6-svg-dev libqt6svg6 libgl-dev
  fonts-noto-color-emoji fonts-dejavu-core
  # runtime: QMimeDatabase silently answers nothing without shared-mime-info
  shared-mime-info unzip
  # tests and fixtures
  libgtest-dev googletest zip qpdf libimage-exiftool-perl poppler-utils libvips-tools
  xvfb xauth
  # fuzzing: libFuzzer and the sanitizer runtimes that go with this clang
  clang-14 libclang-rt-14-dev libfuzzer-14-dev
  # benchmarks (python3 reads hyperfine's figures)
  openssl hyperfine time libjpeg-dev python3
  # health fixtures: ppmtobmp writes the BMP that no image loader we allow reads
  netpbm
  # image metadata fixtures: CMYK JPEG and animated GIF, hand-laid broken EXIF blocks; type and
  # health fixtures, and the tools the no-false-alarm walk asks for a second opinion; media
  # fixtures and the media benchmark's peer (ffmpeg, ffprobe)
  ffmpeg imagemagick python3 p7zip-full xz-utils bzip2 zstd openssh-client
  # the Debian package: manual pages, icon sizes, dependencies (dpkg-shlibdeps, file), checks
  help2man librsvg2-bin dpkg-dev file man-db desktop-file-utils lintian bash-completion
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q '^install ok installed' || missing+=("$p")
done
# The window's icons come from npm; any Node.js with npm will do.
command -v npm >/dev/null 2>&1 || missing+=(nodejs npm)

if ((${#missing[@]})); then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get update -qq
  $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
