#!/bin/sh
# Remakes the recordings and pictures in Host/Site/Samples from ffmpeg's test patterns. Needs ffmpeg with libx264.
set -eu

out=$(cd "$(dirname "$0")/../Host/Site/Samples" && pwd)

# clip NAME PATTERN SECONDS X264-QUALITY [MUXER OPTIONS]: no metadata, no encoder name, the same bytes each time.
clip() {
    name=$1 pattern=$2 seconds=$3 quality=$4
    shift 4
    ffmpeg -hide_banner -loglevel error -y -f lavfi -i "$pattern" -t "$seconds" -an -c:v libx264 -threads 1 \
        -preset veryslow -crf "$quality" -pix_fmt yuv420p -bsf:v filter_units=remove_types=6 -map_metadata -1 \
        -fflags +bitexact -flags:v +bitexact "$@" "$out/$name.mp4"
}

# picture CLIP SECOND: one frame of a clip, its cover and thumbnail, in the size in which a row shows it whole.
picture() {
    ffmpeg -hide_banner -loglevel error -y -ss "$2" -i "$out/$1.mp4" -frames:v 1 -vf scale=120:68:flags=lanczos -q:v 3 \
        -map_metadata -1 -fflags +bitexact -flags:v +bitexact "$out/$1.jpg"
}

clip bars "smptehdbars=size=640x360:rate=15" 6 30 -movflags +faststart
clip clock "testsrc2=size=480x272:rate=12" 4 36
clip zoom "mandelbrot=size=320x180:rate=10" 5 36 -movflags +faststart

picture bars 1
picture clock 2
picture zoom 4
ls -l "$out"
