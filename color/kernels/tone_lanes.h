// The tone curve over rows and large blocks, told once for vectors of any width; see image/pixels/vector_words.h.
//
// No ordinary header: included by one source a width, behind image/pixels/past_caches_lanes.h and what says
// toneOf(adjustment), a type of its own, and changed(tone, bytes).
#pragma once

VECTOR_FUNCTION void toneBytes(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target,
                               size_t byteCount)
{
    const Tone tone = toneOf(adjustment);
    size_t i = 0;
    for (; i + VECTOR_SIZE <= byteCount; i += VECTOR_SIZE)
        store(target + i, changed(tone, load(source + i)));
    COLOUR_PLAIN.toneBytes(adjustment, source + i, target + i, byteCount - i);
}

VECTOR_FUNCTION void toneLarge(const ColourAdjustment& adjustment, const uint8_t* source, uint8_t* target,
                               size_t byteCount)
{
    const PagesInside pages = streamPagesInside(target, source, byteCount, toneOf(adjustment));
    toneBytes(adjustment, source, target, pages.head);
    toneBytes(adjustment, source + pages.end, target + pages.end, byteCount - pages.end);
}
