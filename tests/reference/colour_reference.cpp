#include "tests/reference/colour_reference.h"

#include <stddef.h>

namespace reference {

int toneValue(int input, int a, int b)
{
    int v = input * (a + 64) / 191 + (b - a);
    if (v < 0) v = 0;
    if (v > 255) v = 255;
    return v;
}

Hls hlsFromRgb(Colour c)
{
    int max = c.red;
    if (c.green > max) max = c.green;
    if (c.blue > max) max = c.blue;
    int min = c.red;
    if (c.green < min) min = c.green;
    if (c.blue < min) min = c.blue;

    const int sum = max + min;
    const int d = max - min;
    const int L = (sum * 252 + 255) / 510;
    if (max == min) return Hls{168, L, 0};

    int S;
    if (L <= 126) {
        S = (d * 252 + sum / 2) / sum;
    } else {
        S = (d * 252 + (510 - sum) / 2) / (510 - sum);
    }
    const int Rd = ((max - c.red) * 42 + d / 2) / d;
    const int Gd = ((max - c.green) * 42 + d / 2) / d;
    const int Bd = ((max - c.blue) * 42 + d / 2) / d;
    int H;
    if (c.red == max) {
        H = Bd - Gd;
    } else if (c.green == max) {
        H = 84 + Rd - Bd;
    } else {
        H = 168 + Gd - Rd;
    }
    while (H < 0)
        H += 252;
    while (H > 252)
        H -= 252;
    if (S < 0) S = 0;
    if (S > 252) S = 252;
    return Hls{H, L, S};
}

static int hueValue(int m1, int m2, int h)
{
    if (h < 0) h += 252;
    if (h > 252) h -= 252;
    if (h < 42) return (uint16_t)(m1 + ((m2 - m1) * h + 21) / 42);
    if (h < 126) return m2;
    if (h < 168) return (uint16_t)(m1 + ((m2 - m1) * (168 - h) + 21) / 42);
    return m1;
}

Colour rgbFromHls(Hls in)
{
    const int H = in.hue, L = in.lightness, S = in.saturation;
    if (S == 0) {
        const int gray = L * 255 / 252;
        return Colour{gray, gray, gray};
    }
    uint16_t m2;
    if (L <= 126) {
        m2 = (uint16_t)((L * (S + 252) + 126) / 252);
    } else {
        m2 = (uint16_t)(L + S - (L * S + 126) / 252);
    }
    const uint16_t m1 = (uint16_t)(2 * L - m2);
    return Colour{(uint8_t)((hueValue(m1, m2, H + 84) * 255 + 126) / 252),
                  (uint8_t)((hueValue(m1, m2, H) * 255 + 126) / 252),
                  (uint8_t)((hueValue(m1, m2, H - 84) * 255 + 126) / 252)};
}

static Colour colourPath(Colour in, int a, int b, int k, int saturation, int hue)
{
    const Colour toned = {toneValue(in.red, a, b), toneValue(in.green, a, b), toneValue(in.blue, a, b)};
    if (saturation == 50 && hue == 0) return toned;
    Hls hls = hlsFromRgb(toned);
    hls.saturation = (hls.saturation * k) >> 7;
    if (hls.saturation > 252) hls.saturation = 252;
    hls.hue += hue;
    if (hls.hue < 0) {
        hls.hue += 252;
    } else if (hls.hue > 252) {
        hls.hue -= 252;
    }
    return rgbFromHls(hls);
}

Colour adjustedForImage(Colour colour, const Values& v)
{
    const int a = ((100 - v.contrast) * 256) / 200;
    const int b = ((100 - v.brightness) * 256) / 200;
    const int k = ((100 - v.saturation) * 256) / 100;
    return colourPath(colour, a, b, k, v.saturation, v.hue);
}

Colour adjustedForSelection(Colour colour, const Values& v)
{
    const int a = (100 - v.contrast) * 255 / 200;
    const int b = (100 - v.brightness) * 255 / 200;
    const int k = (100 - v.saturation) * 255 / 100;
    Colour out = colourPath(colour, a, b, k, v.saturation, v.hue);
    if (v.lift > 0) {
        const int gray = (int)((out.red + out.green + out.blue) / 3.0);
        const double f = (gray / 255.0) * (gray / 255.0);
        for (int i = 0; i < v.lift; ++i) {
            out.green = (int)((1 - 0.6 * f) * out.green + 0.6 * f * 255);
            out.blue = (int)((1 - f) * out.blue + f * 255);
        }
    }
    return out;
}

static Colour colourAt(const StoredPicture& image, int x, int storedRow)
{
    const uint8_t* p = &image.bytes[(size_t)storedRow * strideOf(image.width) + (size_t)x * 3];
    return Colour{p[2], p[1], p[0]};
}

static void setColour(StoredPicture& image, int x, int storedRow, Colour c)
{
    uint8_t* p = &image.bytes[(size_t)storedRow * strideOf(image.width) + (size_t)x * 3];
    p[0] = (uint8_t)c.blue;
    p[1] = (uint8_t)c.green;
    p[2] = (uint8_t)c.red;
}

StoredPicture adjustImage(const StoredPicture& image, const Values& values)
{
    // A fresh row buffer holds zeros behind its pixels.
    StoredPicture out = {image.width, image.height, std::vector<uint8_t>(image.bytes.size(), 0)};
    for (int row = 0; row < image.height; ++row) {
        for (int x = 0; x < image.width; ++x) {
            setColour(out, x, row, adjustedForImage(colourAt(image, x, row), values));
        }
    }
    return out;
}

void adjustSelection(const StoredPicture& source, const StoredPicture& sourceMask, StoredPicture& target,
                     StoredPicture& targetMask, const Values& values)
{
    for (int y = 0; y < target.height; ++y) {
        const int sy = y * source.height / target.height;
        for (int x = 0; x < target.width; ++x) {
            const int sx = x * source.width / target.width;
            const Colour mask = colourAt(sourceMask, sx, sy);
            setColour(targetMask, x, y, mask);
            if (mask.red == 0) {
                setColour(target, x, y, adjustedForSelection(colourAt(source, sx, sy), values));
            }
        }
    }
}

void reshapeSpans(const StoredPicture& source, const StoredPicture& sourceMask, StoredPicture& target,
                  StoredPicture& targetMask, const Crossings& sourceCrossings, Rect sourceRect,
                  const Crossings& targetCrossings, Rect targetRect)
{
    const int SW = sourceRect.right - sourceRect.left, TW = targetRect.right - targetRect.left;
    const int SH = sourceRect.bottom - sourceRect.top, TH = targetRect.bottom - targetRect.top;
    const int stride = strideOf(target.width);
    for (int y = target.height - 1; y >= 0; --y) {
        const int row = targetRect.bottom - 1 - y;
        int sr = (int)((double)(sourceRect.top + 1) + (double)(row - (targetRect.top + 1)) * SH / TH);
        if (sr > sourceRect.bottom - 1) sr = sourceRect.bottom - 1;
        if (sr < sourceRect.top) sr = sourceRect.top;
        const int sy = sourceRect.bottom - 1 - sr;
        for (int i = 0; i < stride; ++i)
            targetMask.bytes[(size_t)y * stride + i] = 255;
        if (row < 0 || row >= (int)targetCrossings.size()) continue;
        const std::vector<int>& spans = targetCrossings[row];
        for (size_t s = 0; s + 1 < spans.size(); s += 2) {
            const int x0 = spans[s], x1 = spans[s + 1];
            bool found = false;
            int a0 = sourceRect.left + (x0 - targetRect.left) * SW / TW;
            int a1 = sourceRect.left + (x1 - targetRect.left) * SW / TW;
            if (sr >= 0 && sr < (int)sourceCrossings.size()) {
                const std::vector<int>& from = sourceCrossings[sr];
                std::vector<size_t> order;  // the span's own pair first, when the rows match
                if (from.size() / 2 == spans.size() / 2) order.push_back(s);
                for (size_t p = 0; p + 1 < from.size(); p += 2)
                    order.push_back(p);
                for (size_t p : order) {
                    if (found) break;
                    if (from[p] != 0 && from[p] < 32766 && from[p + 1] != 0 && from[p + 1] < 32766) {
                        a0 = from[p];
                        a1 = from[p + 1];
                        found = true;
                    }
                }
            }
            for (int x = x0; x < x1; ++x) {
                int sx;
                if (x1 - 1 == x0) {
                    sx = (int)(a0 + (x - x0) * ((double)(a1 - a0) / (x1 - x0)));
                } else {
                    sx = (int)(a0 + (x - x0) * ((double)(a1 - 1 - a0) / (x1 - 1 - x0)));
                }
                const int sourceColumn = sx - sourceRect.left;
                const int targetColumn = x - targetRect.left;
                if (!found || sourceColumn >= source.width) continue;
                // What lies outside an image cannot be read or written.
                if (sourceColumn < 0 || sy < 0 || sy >= source.height) continue;
                if (targetColumn < 0 || targetColumn >= target.width) continue;
                setColour(targetMask, targetColumn, y, colourAt(sourceMask, sourceColumn, sy));
                setColour(target, targetColumn, y, colourAt(source, sourceColumn, sy));
            }
        }
    }
}

}  // namespace reference
