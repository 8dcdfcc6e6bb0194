#!/usr/bin/env bash
# Draws the pictures of the installer with ImageMagick: side.bmp beside its first and last page, 164 by
# 314 pixels, and header.bmp on the others, 150 by 57. They are kept, so that no build draws them.
#
#   packaging/art/make_bitmaps.sh
set -eu
cd "$(dirname "${BASH_SOURCE[0]}")"
scale=4 # drawn larger and averaged, which smooths the edges

# gem LEFT TOP SIZE: the gem of the program's icon, whose square has 256 units, in pixels
gem() {
    local facets=(
        '#ffc440 72,40 14,102 84,110' '#ffe280 72,40 128,40 84,110' '#fff6d6 128,40 84,110 172,110'
        '#7ee2f4 128,40 184,40 172,110' '#34b0e2 184,40 172,110 242,102' '#e86e2c 14,102 84,110 128,234'
        '#ce3e5c 84,110 172,110 128,234' '#2654b2 172,110 242,102 128,234'
    )
    local facet colour
    printf 'push graphic-context translate %d,%d scale %s,%s ' $(($1 * scale)) $(($2 * scale)) \
        "$(awk "BEGIN { print $3 * $scale / 256 }")" "$(awk "BEGIN { print $3 * $scale / 256 }")"
    for facet in "${facets[@]}"; do
        colour=${facet%% *}
        printf "fill '%s' stroke '%s' stroke-width 1 polygon %s " "$colour" "$colour" "${facet#* }"
    done
    printf "fill none stroke '#181c3a' stroke-width 9 stroke-linejoin round "
    printf 'polygon 72,40 184,40 242,102 128,234 14,102 pop graphic-context '
}

# hills: facets of ground at the foot of the side picture, in pixels of it
hills() {
    local facet
    printf 'scale %d,%d ' $scale $scale
    for facet in \
        '#26386e 0,206 60,232 0,262' '#2c4480 0,206 44,190 60,232' '#233464 44,190 108,222 60,232' \
        '#31508f 108,222 164,186 164,240' '#294078 60,232 108,222 116,268' '#355a9c 108,222 164,240 116,268' \
        '#1f2d59 0,262 60,232 52,284' '#2a4682 60,232 116,268 52,284' '#3a66aa 164,240 164,290 116,268' \
        '#1b264c 0,262 52,284 0,314' '#24386e 52,284 84,314 0,314' '#2f5291 52,284 116,268 84,314' \
        '#27427c 116,268 164,290 84,314' '#1f3161 164,290 164,314 84,314'
    do
        printf "fill '%s' stroke '%s' stroke-width 0.4 polygon %s " "${facet%% *}" "${facet%% *}" "${facet#* }"
    done
}

# bitmap FILE WIDTH HEIGHT BACKGROUND DRAWING
bitmap() {
    convert -size $(($2 * scale))x$(($3 * scale)) "$4" -draw "$5" -filter box -resize "$2x$3!" \
        -type TrueColor -depth 8 +set date:create +set date:modify "BMP3:$1"
}

bitmap side.bmp 164 314 'gradient:#141830-#41609c' "push graphic-context $(hills) pop graphic-context $(gem 27 46 110)"
bitmap header.bmp 150 57 'xc:#ffffff' "$(gem 96 3 50)"
