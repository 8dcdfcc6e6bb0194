#!/usr/bin/env bash
# Makes the pictures in the folder pictures with ImageMagick, and beside each the pixels that
# ImageMagick itself reads from it: red, green, blue and alpha, two bytes each, the high one first.
# They are kept, so that no test needs the program.
set -eu
cd "$(dirname "${BASH_SOURCE[0]}")/pictures"
rm -f ./*.bmp ./*.png ./*.tga ./*.jpg ./*.gif ./*.tif ./*.rgba
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# make NAME SOURCE OPTION...: a picture and what it shows. Where a TGA begins is a mere note to
# ImageMagick, which has to be asked to go by it.
make() {
    convert "$work/$2.miff" "${@:3}" "$1"
    convert "$1" -auto-orient -strip -alpha set -depth 16 -endian MSB "RGBA:${1##*:}.rgba"
}

# 16 x 8 pixels: near-black in the first row, then ramps of the components by themselves and
# together. `cut` has opaque, transparent and half transparent rows.
convert -size 16x8 xc:black -channel R -fx 'j==0 ? (i%5)*2/255 : j<5 ? i/15 : 1-i*j/105' \
    -channel G -fx 'j==0 ? (i%4)*3/255 : j%2 ? i*17/255 : j/7' \
    -channel B -fx 'j==0 ? (i%3)*4/255 : j<3 ? i/31 : 1-j/7' -depth 8 "$work/full.miff"
convert "$work/full.miff" -alpha set -channel A \
    -fx 'j<2 ? 1 : j<4 ? 0 : (112+i*2)/255' "$work/cut.miff"
convert "$work/full.miff" -colorspace Gray "$work/grey.miff"
convert "$work/full.miff" +dither -colors 13 "$work/few.miff"
convert "$work/full.miff" +dither -posterize 5 "$work/many.miff"
convert "$work/grey.miff" -threshold 50% "$work/two.miff"
convert "$work/few.miff" -alpha set -channel A -fx 'i<5 ? 0 : 1' "$work/holes.miff"
for size in 12x8 264x8 8x300; do
    convert -size "$size" gradient:navy-yellow "$work/$size.miff"
done
convert "$work/full.miff" -crop 15x7+0+0 +repage "$work/odd.miff"

for bits in 4 8; do
    make BMP3:bmp$bits.bmp "$([ $bits = 4 ] && echo few || echo many)" -type Palette -compress none
    make BMP3:odd$bits.bmp odd $([ $bits = 4 ] && echo +dither -colors 16) -type Palette -compress none
done
make BMP2:core8.bmp many -type Palette -compress none
make BMP3:rle8.bmp many -type Palette -compress RLE
make bmp555.bmp full -define bmp:subtype=RGB555
make bmp565.bmp full -define bmp:subtype=RGB565
make BMP3:odd24.bmp odd -type TrueColor
make BMP3:bmp24.bmp full -type TrueColor
make BMP2:core24.bmp full -type TrueColor
make bmp32.bmp cut -type TrueColorAlpha
make BMP3:bmp1.bmp two -type Bilevel -monochrome
make PNG8:palette.png few
make PNG8:palette-cut.png holes
make PNG24:rgb.png full
make PNG32:rgba.png cut
make PNG48:rgb48.png full
make PNG64:rgba64.png cut
make PNG24:interlaced.png full -interlace PNG
make grey.png grey -type Grayscale
make two.png two -type Bilevel
make rgb.tga full -orient TopLeft -type TrueColor -compress none
make rgb-rle.tga full -type TrueColor -compress RLE -flip -orient BottomLeft
make rgba.tga cut -orient TopLeft -type TrueColorAlpha -compress none
make rgba-rle.tga cut -orient TopLeft -type TrueColorAlpha -compress RLE
make palette.tga few -orient TopLeft -type Palette -compress none
make palette-rle.tga few -orient TopLeft -type Palette -compress RLE
make grey.tga grey -orient TopLeft -type Grayscale -compress none
make rgb.jpg full -sampling-factor 1x1 -quality 95
make grey.jpg grey -quality 95
make holes.gif holes
make full.gif few
make rgb.tif full -compress none
make lzw.tif full -compress LZW
make cut.tif cut -compress Zip
for size in 12x8 264x8 8x300; do
    for type in bmp png tga jpg; do convert "$work/$size.miff" "$size.$type"; done
done
rm -f ./[0-9]*.rgba

# Something like a photograph, to be sliced: a house before hills, with clouds, grain and noise.
convert -size 256x192 -seed 7 gradient:'#3a6ea8'-'#e8c89a' \( -size 256x192 xc:'#fdf3e2' \) \
    \( plasma:white-black -blur 0x3 -level 45%,75% \) -composite "$work/photo.miff"
hill() { # COLOURS PATH
    convert "$work/photo.miff" \( -size 256x192 -seed 7 plasma:"$1" -blur 0x1 \
        \( xc:black -fill white -draw "path '$2'" -blur 0x0.7 \) \
        -alpha off -compose CopyOpacity -composite \) -compose Over -composite "$work/photo.miff"
}
hill '#5b6f86-#7f93a6' 'M 0,110 L 30,80 52,96 90,58 128,100 160,76 200,104 230,84 256,100 256,192 0,192 Z'
hill '#2f5a34-#6f9a4a' 'M 0,140 C 60,110 110,150 160,126 C 200,110 230,130 256,122 L 256,192 0,192 Z'
hill '#6a5230-#a8905c' 'M 96,192 C 120,160 150,150 150,134 L 158,134 C 166,152 176,166 190,192 Z'
convert "$work/photo.miff" -fill '#c8b8a0' -draw 'rectangle 40,128 84,160' \
    -fill '#7a2f22' -draw 'polygon 34,130 62,104 90,130' \
    -fill '#3a2a20' -draw 'rectangle 56,140 66,160' \
    -fill '#9cc4e0' -draw 'rectangle 44,134 52,142 rectangle 72,134 80,142' \
    -seed 7 -attenuate 0.25 +noise Gaussian -strip -quality 88 photo.jpg
