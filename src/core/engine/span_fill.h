#pragma once

#include "engine/fill_path.h"
#include "engine/pixel_operation.h"
#include "engine/triangle_planes.h"
#include "engine/vector_pixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace facetor {

// One span of a textured or Gouraud triangle: each of its pixels asks a Source for its colour by
// its coordinates.
//
//   static constexpr std::size_t coordinates;   2 or 4
//   std::array<float, coordinates> limit;       each coordinate is clamped to 0 .. limit - 1
//   void pixel<mode>(std::array<std::int32_t, coordinates> at, Rgb555& d) const;
//                                               writes the surface pixel, or leaves it
//   static constexpr FillPath path;
//   __m128i pixels<mode>(at, __m128i d) const;
//                                               only with FillPath::vector: the same for eight,
//                                               `at` an array of FixedLanes or of WholeLanes
//
// Of eight pixels some may not be drawn; their coordinates lie inside the limits all the same.
// Source::pixel and pixels are inlined; mode and mesh are fixed at compile time, a columnStep of 2
// is mesh.

/// One pixel, wherever its coordinates lie.
template <PixelMode mode, typename Source>
void putClampedPixel(Rgb555& d, const SpanCoordinates<Source::coordinates>& span, std::int32_t i,
                     const Source& source)
{
    std::array<std::int32_t, Source::coordinates> at;
    for (std::size_t c = 0; c < at.size(); ++c) {
        const float value = span.at(c, i);
        const float atLeast = value > 0.0f ? value : 0.0f; // also for what is no number
        at[c] = static_cast<std::int32_t>(std::min(atLeast, source.limit[c] - 1.0f));
    }
    source.template pixel<mode>(at, d);
}

/// Pixels `from` to `end` - 1, whose coordinates are known to lie inside the limits: fixed-point
/// steps, and nothing is clamped.
template <PixelMode mode, std::int32_t columnStep, typename Source>
void putInsidePixels(Rgb555* start, const SpanCoordinates<Source::coordinates>& span,
                     std::int32_t from, std::int32_t end, const Source& source)
{
    constexpr std::size_t coordinates = Source::coordinates;
    constexpr float one = 1 << coordinateBits;
    std::array<std::uint32_t, coordinates> at, step; // unsigned: the step behind the last pixel may
    for (std::size_t c = 0; c < coordinates; ++c) {  // leave the 32 bits
        at[c] = static_cast<std::uint32_t>(static_cast<std::int32_t>(span.at(c, from) * one));
        step[c] = static_cast<std::uint32_t>(static_cast<std::int32_t>(span.step[c] * one));
    }
    for (std::int32_t i = from; i < end; ++i) {
        std::array<std::int32_t, coordinates> whole;
        for (std::size_t c = 0; c < coordinates; ++c) {
            whole[c] = static_cast<std::int32_t>(at[c] >> coordinateBits);
            at[c] += step[c];
        }
        source.template pixel<mode>(whole, start[i * columnStep]);
    }
}

/// What a coordinate must lie inside its limits by: what the steps' truncation and the rounding of
/// at() can add up to. A coordinate begins anew at the first pixel inside, and may have been
/// rounded where it lay far outside.
template <std::size_t Coordinates>
std::array<float, Coordinates> edgeSlack(const SpanCoordinates<Coordinates>& span)
{
    const auto count = static_cast<float>(span.count);
    std::array<float, Coordinates> slack;
    for (std::size_t c = 0; c < Coordinates; ++c)
        slack[c] =
            count * (1.0f / (1 << coordinateBits)) +
            (std::fabs(span.first[c]) + std::fabs(span.step[c]) * count) * (1.0f / (1 << 21));
    return slack;
}

/// A span some of whose coordinates may lie outside the limits. They are monotone along the span,
/// so between its first and last pixel inside none needs clamping: these go to putInside(from,
/// end).
template <PixelMode mode, std::int32_t columnStep, typename Source, typename PutInside>
void fillEdgeSpan(Rgb555* start, const SpanCoordinates<Source::coordinates>& span,
                  const Source& source, bool fixedFits, PutInside&& putInside)
{
    const auto slack = edgeSlack(span);
    const auto isInside = [&](std::int32_t i) {
        for (std::size_t c = 0; c < slack.size(); ++c)
            if (!(span.at(c, i) >= slack[c] && span.at(c, i) < source.limit[c] - slack[c]))
                return false;
        return true;
    };
    std::int32_t i = 0;
    if (fixedFits) {
        while (i < span.count && !isInside(i))
            putClampedPixel<mode>(start[columnStep * i], span, i, source), ++i;
        std::int32_t end = span.count;
        while (end > i && !isInside(end - 1)) --end;
        if (i < end) putInside(i, end);
        i = std::max(i, end);
    }
    for (; i < span.count; ++i) putClampedPixel<mode>(start[columnStep * i], span, i, source);
}

/// Whether a whole span lies inside the limits, as its ends tell. What the steps' rounding can add
/// up to is allowed for at the end that it moves.
template <std::size_t Coordinates>
bool liesInside(const SpanCoordinates<Coordinates>& span,
                const std::array<float, Coordinates>& limits)
{
    const float slack = static_cast<float>(span.count) * (1.0f / (1 << coordinateBits));
    bool inside = true;
    for (std::size_t c = 0; c < Coordinates; ++c) {
        const float last = span.at(c, span.count - 1), limit = limits[c];
        inside = inside && span.first[c] >= 0.0f && span.first[c] < limit && last >= slack &&
                 last < limit - slack;
    }
    return inside;
}

#if FACETOR_VECTOR_FILLS

/// Up to eight pixels of a span, from `start` on; what lies behind `count` is written back as it
/// was. `at` must hold coordinates inside the limits in every lane.
template <PixelMode mode, std::int32_t columnStep, typename Source, typename Lanes>
void putEightPixels(Rgb555* start, std::int32_t count,
                    const std::array<Lanes, Source::coordinates>& at, const Source& source)
{
    const __m128i lanes = firstLanes(count);
    if constexpr (columnStep == 1) {
        const __m128i d = loadPixels(start);
        storePixels(start, select(lanes, source.template pixels<mode>(at, d), d));
    } else {
        const __m128i low = loadPixels(start), high = loadPixels(start + 8);
        const auto evenLanes = [](__m128i pair) {
            return _mm_srai_epi32(_mm_slli_epi32(pair, 16), 16);
        };
        const __m128i d = _mm_packs_epi32(evenLanes(low), evenLanes(high));
        const __m128i s = source.template pixels<mode>(at, d), zero = _mm_setzero_si128();
        storePixels(start,
                    select(_mm_unpacklo_epi16(lanes, zero), _mm_unpacklo_epi16(s, zero), low));
        if (count > 4)
            storePixels(start + 8,
                        select(_mm_unpackhi_epi16(lanes, zero), _mm_unpackhi_epi16(s, zero), high));
    }
}

/// putInsidePixels() eight at a time, from the fixed-point coordinates of the first.
template <PixelMode mode, std::int32_t columnStep, typename Source>
void putInsideVectors(Rgb555* start, std::int32_t count,
                      const std::array<std::int32_t, Source::coordinates>& first,
                      const std::array<Ramp, Source::coordinates>& ramp, const Source& source)
{
    constexpr std::size_t coordinates = Source::coordinates;
    std::array<FixedLanes, coordinates> at;
    for (std::size_t c = 0; c < coordinates; ++c) {
        const __m128i from = _mm_set1_epi32(first[c]);
        at[c] = {_mm_add_epi32(from, ramp[c].low), _mm_add_epi32(from, ramp[c].high)};
    }
    for (; count >= 8; count -= 8, start += 8 * columnStep) {
        if constexpr (columnStep == 1)
            storePixels(start, source.template pixels<mode>(at, loadPixels(start)));
        else
            putEightPixels<mode, columnStep>(start, 8, at, source);
        for (std::size_t c = 0; c < coordinates; ++c) {
            at[c].low = _mm_add_epi32(at[c].low, ramp[c].eight);
            at[c].high = _mm_add_epi32(at[c].high, ramp[c].eight);
        }
    }
    if (count <= 0) return;
    const __m128i lanes = firstLanes(count);
    std::array<WholeLanes, coordinates> rest;
    for (std::size_t c = 0; c < coordinates; ++c)
        rest[c].lanes = _mm_and_si128(wholeLanes(at[c]).lanes, lanes);
    putEightPixels<mode, columnStep>(start, count, rest, source);
}

#endif

} // namespace facetor
