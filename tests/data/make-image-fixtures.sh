#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Regenerates tests/data/image: small photos with camera, exposure, GPS, creator, IPTC and
# XMP metadata in every format the image pass reads, the broken EXIF blocks of
# make_exif_block.py, and exiftool.json, what `exiftool -n -j -G1` reads from each of them
# (the oracle the image property tests compare with). Needs vips (libvips-tools), exiftool
# (libimage-exiftool-perl), ImageMagick and python3.
# Usage: tests/data/make-image-fixtures.sh
set -euo pipefail
cd "$(dirname "$0")"
out=image
rm -rf "$out"
mkdir -p "$out"
work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-fixtures-XXXXXX")
trap 'rm -rf "$work"' EXIT

tag() { exiftool -q -overwrite_original -n "$@"; }

# A small gradient with some detail, so every encoder has something to encode.
vips xyz "$work/xy.v" 96 64
vips extract_band "$work/xy.v" "$work/x.v" 0
vips extract_band "$work/xy.v" "$work/y.v" 1
vips linear "$work/x.v" "$work/r.v" 2.5 10
vips linear "$work/y.v" "$work/g.v" 3 20
vips add "$work/x.v" "$work/y.v" "$work/xy_sum.v"
vips bandjoin "$work/r.v $work/g.v $work/xy_sum.v" "$work/rgb.v"
vips cast "$work/rgb.v" "$work/rgb8.v" uchar
vips copy "$work/rgb8.v" "$work/srgb.v" --interpretation srgb
vips copy "$work/srgb.v" "$work/clean.jpg[Q=85,strip]"

# Every EXIF tag the camera section formats, GPS in the southern and western hemispheres
# with altitude, an empty artist, serial numbers, orientation 6, IPTC and XMP creators.
cp "$work/clean.jpg" "$out/camera_gps_south_west.jpg"
tag -Make="Fixture Optics" -Model="FX-100 Mark II" -Software="Lumenscribe Fixture Maker 2.1" \
  -Artist^= -Copyright="(c) 2024 Test Photographer" -Orientation=6 \
  -XResolution=300 -YResolution=300 -ResolutionUnit=2 -ModifyDate="2024:06:02 08:00:00" \
  -ImageDescription="Harbour at dusk" -XPAuthor="Test Photographer" \
  -ExposureTime=0.008 -FNumber=2.8 -ISO=200 -FocalLength=4.25 \
  -DateTimeOriginal="2024:06:01 19:42:10" -CreateDate="2024:06:01 19:42:10" \
  -SubSecTimeOriginal=25 -OffsetTimeOriginal="-03:00" \
  -LensModel="FX 4.25mm F2.8" -LensMake="Fixture Optics" -LensSerialNumber="LS-0042" \
  -SerialNumber="BODY-778899" -ImageUniqueID="0123456789abcdef0123456789abcdef" \
  -ExposureProgram=3 -ExposureMode=2 -ExposureCompensation=-0.3333 -MeteringMode=5 \
  -WhiteBalance=1 -EXIF:Flash=25 -FocalLengthIn35mmFormat=26 -DigitalZoomRatio=2 \
  -SceneCaptureType=3 -ColorSpace=65535 -ExifImageWidth=96 -ExifImageHeight=64 \
  -UserComment="Taken from the pier" -ExifVersion=0232 -ShutterSpeedValue=0.008 \
  -ApertureValue=2.8 -MaxApertureValue=2.8 -BrightnessValue=5.2 -SubjectDistance=3.5 \
  -LensInfo="4.25 4.25 2.8 2.8" -OwnerName="Test Owner" -GPSProcessingMethod=GPS \
  -GPSLatitude=22.951916 -GPSLatitudeRef=S -GPSLongitude=43.210487 -GPSLongitudeRef=W \
  -GPSAltitude=700.5 -GPSAltitudeRef=0 -GPSDateStamp=2024:06:01 -GPSTimeStamp=22:42:10.5 \
  -GPSSpeed=3.5 -GPSSpeedRef=K -GPSImgDirection=271.25 -GPSImgDirectionRef=T \
  -GPSMapDatum=WGS-84 -GPSVersionID="2 3 0 0" \
  -IPTC:By-line="Test Photographer" -IPTC:Keywords=harbour -IPTC:Keywords=dusk \
  -IPTC:City="Rio de Janeiro" -IPTC:DateCreated=2024:06:01 -IPTC:TimeCreated=19:42:10-03:00 \
  -IPTC:CopyrightNotice="(c) 2024 Test Photographer" \
  -XMP-dc:Creator="Test Photographer" -XMP-xmp:CreatorTool="Lumenscribe Fixture Maker 2.1" \
  "$out/camera_gps_south_west.jpg"

# GPS alone: no camera, no creator.
cp "$work/clean.jpg" "$out/gps_only.jpg"
tag -GPSLatitude=48.8584 -GPSLatitudeRef=N -GPSLongitude=2.2945 -GPSLongitudeRef=E \
  "$out/gps_only.jpg"

# Nothing but pixels.
vips copy "$work/srgb.v" "$out/pixels_only.png"

# An embedded ICC profile (libvips' Display P3, described "sP3C") and a resolution.
vips copy "$work/srgb.v" "$out/icc_profile.jpg[Q=85,profile=p3]"

# A PNG with EXIF (an eXIf chunk) and text chunks; the same bytes named .jpg.
cp "$out/pixels_only.png" "$out/png_with_exif.png"
tag -Make="Fixture Optics" -Model="FX-PNG" -DateTimeOriginal="2023:01:02 03:04:05" \
  -PNG:Title="Screenshot of a map" -PNG:Author="Test Author" -PNG:Software="Lumenscribe" \
  "$out/png_with_exif.png"
cp "$out/png_with_exif.png" "$out/png_named.jpg"

# 16 bits per sample, grayscale and CMYK.
vips cast "$work/srgb.v" "$work/wide.v" ushort
vips linear "$work/wide.v" "$work/wide256.v" 256 0 --uchar=false
vips cast "$work/wide256.v" "$work/rgb16.v" ushort
vips copy "$work/rgb16.v" "$out/depth16.png" --interpretation rgb16
vips colourspace "$work/srgb.v" "$work/gray.v" b-w
vips copy "$work/gray.v" "$out/grayscale.jpg[Q=85,strip]"
convert "$out/pixels_only.png" -colorspace CMYK -quality 85 "$out/cmyk.jpg"

# Three frames that loop forever, with a comment.
convert -delay 20 -loop 0 -size 32x24 xc:red xc:green xc:blue -comment "three frames" \
  "$out/animated.gif"

# WebP, TIFF, HEIC and AVIF with camera tags.
for file in photo.webp photo.tif photo.heic photo.avif; do
  vips copy "$work/srgb.v" "$out/$file"
  tag -Make="Fixture Optics" -Model="FX-${file#photo.}" -Artist="Test Photographer" \
    -ExposureTime=0.5 -FNumber=4 -ISO=800 -DateTimeOriginal="2024:02:03 04:05:06" \
    -GPSLatitude=33.8568 -GPSLatitudeRef=S -GPSLongitude=151.2153 -GPSLongitudeRef=E \
    "$out/$file"
done

# A HEIF picture saved without metadata, its EXIF added afterwards: Exiv2 finds none of it
# (libvips does).
vips copy "$work/srgb.v" "$out/exif_added_later.heic[strip]"
tag -Make="Fixture Optics" -Model="FX-heic-later" -GPSLatitude=10.5 -GPSLatitudeRef=S \
  "$out/exif_added_later.heic"

# An ImageDescription far longer than anyone writes (TIFF has no segment limit).
vips copy "$work/srgb.v" "$out/huge_description.tif"
head -c 100000 /dev/zero | tr '\0' 'a' > "$work/description.txt"
tag "-ImageDescription<=$work/description.txt" "$out/huge_description.tif"

# EXIF that no tool writes: truncated, pointing past its end, short or zero-denominator
# GPS and values of the wrong type.
python3 ./make_exif_block.py "$work/clean.jpg" "$out"

exiftool -n -j -G1 -a -struct "$out" | sed "s#\"$out/#\"#" > "$work/exiftool.json"
mv "$work/exiftool.json" "$out/exiftool.json"
