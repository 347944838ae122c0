#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Regenerates tests/data/media: short audio and video files made by ffmpeg, with tags, for
# the audio and video tests, and a few that no demuxer should make sense of. Writes
# media/ffprobe.txt beside them: what ffprobe says of each, for the tests to check against.
# Needs ffmpeg (with libx264, libvpx, libmp3lame).
# Usage: tests/data/make-media-fixtures.sh
set -euo pipefail
cd "$(dirname "$0")"
out=media
rm -rf "$out"
mkdir -p "$out"
work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-fixtures-XXXXXX")
trap 'rm -rf "$work"' EXIT

# Bit-exact output: no library versions in the files, so a rerun gives the same bytes.
ff() { ffmpeg -hide_banner -loglevel error -nostdin -y "$@"; }
exact=(-fflags +bitexact -flags:v +bitexact -flags:a +bitexact)
tone() { echo "sine=frequency=$1:sample_rate=$2:duration=$3"; }

# 3:05 of stereo at 44.1 kHz. Linear PCM would take 32 MB; FLAC in the WAV keeps the
# silence to a few KB, and its decoder delivers the same 16-bit samples.
ff -f lavfi -i "anullsrc=r=44100:cl=stereo" -t 185 -c:a flac "${exact[@]}" \
  "$out/silence_185s.wav"
# 8-bit mono linear PCM at 22.05 kHz: decoded as it is stored.
ff -f lavfi -i "$(tone 440 22050 1)" -c:a pcm_u8 "${exact[@]}" "$out/tone_8bit_mono.wav"

# MP3 with ID3v2.3 tags, one of them padded with spaces. Not bit-exact, so that the muxer
# writes its name in a TSSE frame.
ff -f lavfi -i "$(tone 440 44100 2)" -ac 2 -c:a libmp3lame -b:a 64k -id3v2_version 3 \
  -metadata title="  Song  " -metadata artist="The Artist" -metadata album="The Album" \
  -metadata genre="Ambient" -metadata date="2024" -metadata comment="Recorded at home" \
  -metadata composer="A. Composer" -metadata copyright="2024 Someone" \
  -metadata lyricist="A. Lyricist" "$out/tagged.mp3"
# AAC in M4A with the iTunes tags; the album artist's key holds "artist" and "album".
ff -f lavfi -i "$(tone 660 44100 1)" -ac 2 -c:a aac -b:a 64k \
  -metadata title="M4A Title" -metadata artist="M4A Artist" -metadata album_artist="Band" \
  -metadata album="M4A Album" -metadata genre="Jazz" -metadata date="2023" \
  -metadata comment="Tagged" -metadata composer="M4A Composer" \
  -metadata copyright="2023 Label" "${exact[@]}" "$out/tagged.m4a"
# FLAC whose only tag is the encoder's.
ff -f lavfi -i "$(tone 330 48000 1)" -c:a flac "$out/encoder_only.flac"
# Matroska audio whose title is Latin-1, not UTF-8: Matroska keeps tag bytes as given.
ff -f lavfi -i "$(tone 440 48000 1)" -c:a libopus -b:a 32k \
  -metadata title="$(printf 'Caf\xe9 au lait')" -metadata artist="$(printf '\xff\xfe')" \
  "${exact[@]}" "$out/latin1_tags.mka"

# A phone's portrait recording: 1920 x 1080 H.264 at 29.97 fps stored sideways with a
# 90-degree display matrix, BT.709 colour, and 48 kHz stereo AAC. The rotation is set on a
# stream copy, where this ffmpeg writes it into the track header.
ff -f lavfi -i "color=c=0x3050a0:size=1920x1080:rate=30000/1001:duration=1" \
  -f lavfi -i "$(tone 440 48000 1)" -map 0:v -map 1:a \
  -c:v libx264 -preset ultrafast -crf 40 -pix_fmt yuv420p \
  -color_primaries bt709 -color_trc bt709 -colorspace bt709 \
  -c:a aac -ac 2 -b:a 96k -metadata title="Portrait clip" -metadata artist="A Phone" \
  -metadata location="+48.8584+002.2945/" "${exact[@]}" "$work/portrait.mp4"
ff -i "$work/portrait.mp4" -map 0 -c copy -metadata:s:v:0 rotate=90 -movflags +faststart \
  "${exact[@]}" "$out/portrait.mp4"
# Film rate with mono audio.
ff -f lavfi -i "testsrc2=size=640x360:rate=24000/1001:duration=1" \
  -f lavfi -i "$(tone 440 44100 1)" -map 0:v -map 1:a \
  -c:v libx264 -preset ultrafast -crf 45 -pix_fmt yuv420p -c:a aac -ac 1 -b:a 48k \
  "${exact[@]}" "$out/film_23976.mp4"
# Matroska without sound: VP9, which Matroska stores without a codec tag or bitrate.
ff -f lavfi -i "testsrc2=size=320x240:rate=25:duration=1" -c:v libvpx-vp9 -b:v 100k \
  -metadata title="Silent" "$out/silent.mkv"
# QuickTime: Motion JPEG and 16-bit linear PCM.
ff -f lavfi -i "testsrc2=size=160x90:rate=30:duration=0.4" \
  -f lavfi -i "$(tone 440 22050 0.4)" -map 0:v -map 1:a -c:v mjpeg -q:v 31 \
  -c:a pcm_s16le -ac 2 "${exact[@]}" "$out/clip.mov"

# What no demuxer should take for media.
printf 'This is plain text with the name of a song.\nNothing here is audio.\n' \
  > "$out/text_named.mp3"
printf 'This is plain text with the name of a film.\nNothing here is video.\n' \
  > "$out/text_named.mp4"
# An MP4 whose movie header was never written: the media data comes first and the cut
# falls before the moov box at the end.
ff -i "$work/portrait.mp4" -map 0 -c copy "${exact[@]}" "$work/moov_at_end.mp4"
head -c "$(($(stat -c %s "$work/moov_at_end.mp4") * 3 / 4))" "$work/moov_at_end.mp4" \
  > "$out/moov_missing.mp4"

for file in "$out"/*; do
  echo "== $(basename "$file")"
  ffprobe -hide_banner -loglevel error -show_format -show_streams "$file" 2>&1 || true
done > "$work/ffprobe.txt"
mv "$work/ffprobe.txt" "$out/ffprobe.txt"
ls -l "$out"
