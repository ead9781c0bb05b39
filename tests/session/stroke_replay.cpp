#include "tests/session/stroke_replay.h"

#include <cmath>
#include <gtest/gtest.h>
#include <windowsx.h>

#include <cstring>

static size_t pixelOffset(const reference::Picture& picture, int x, int y)
{
    return sizeof(BITMAPINFOHEADER) + (size_t)reference::strideOf(picture.width) * (size_t)(picture.height - 1 - y) +
           (size_t)x * 3;
}

void takeCanvasSize(StrokeReplay* replay, const Host& host)
{
    RECT client;
    GetClientRect(host.canvas, &client);
    replay->client = {client.right, client.bottom};
}

StrokeReplay beginReplay(const Host& host, const HostImage& image)
{
    StrokeReplay replay;
    replay.before = snapshot(image);
    replay.scene.image = reference::fromStoredRows(&replay.before[sizeof(BITMAPINFOHEADER)], image.width, image.height);
    takeCanvasSize(&replay, host);
    return replay;
}

// Client to image pixels, with the system's own rounding.
static POINT toImage(const StrokeReplay& replay, LPARAM lp)
{
    POINT point = {GET_X_LPARAM(lp), GET_Y_LPARAM(lp)};
    if (replay.zoom) {
        const double x = point.x - replay.zoomOrigin.x, y = point.y - replay.zoomOrigin.y;
        return {(LONG)floor(x / replay.zoom), (LONG)floor(y / replay.zoom)};
    }
    const HDC dc = CreateCompatibleDC(nullptr);
    SetMapMode(dc, MM_ANISOTROPIC);
    SetWindowExtEx(dc, replay.scene.image.width, replay.scene.image.height, nullptr);
    SetViewportExtEx(dc, replay.client.cx, replay.client.cy, nullptr);
    DPtoLP(dc, &point, 1);
    DeleteDC(dc);
    return point;
}

static void beginStroke(StrokeReplay* replay)
{
    const reference::Picture& image = replay->scene.image;
    replay->scene.strokeStart = image;
    replay->scene.coverage = {image.width, image.height, std::vector<int>(image.pixels.size(), 0)};
    replay->hasCoverage = true;
}

static void paintSegment(StrokeReplay* replay, POINT from, POINT to)
{
    if (!replay->brush.chosen || !replay->hasCoverage) return;
    const BrushSettings& brush = replay->brush;
    const reference::Grid mask = reference::brushGrid(brush.width, brush.height, brush.shape);
    for (const auto& point : reference::linePoints(from.x, from.y, to.x, to.y))
        reference::layDab(replay->scene,
                          {reference::BRUSH, brush.soft, point.first - brush.width / 2, point.second - brush.height / 2,
                           brush.colour, brush.opacity},
                          mask);
}

static void onPress(StrokeReplay* replay, LPARAM lp)
{
    if (!replay->pointerInside) return;
    replay->strokePoint = toImage(*replay, lp);
    if (replay->brush.chosen) beginStroke(replay);
    paintSegment(replay, replay->strokePoint, replay->strokePoint);
}

static void onMove(StrokeReplay* replay, WPARAM wp, LPARAM lp)
{
    if (replay->pointerInside && (wp & MK_LBUTTON)) {
        const POINT previous = replay->strokePoint;
        replay->strokePoint = toImage(*replay, lp);
        paintSegment(replay, replay->strokePoint, previous);
    }
    replay->pointerInside = true;  // counts from the next message on
}

static void replayMessage(StrokeReplay* replay, const SeenMessage& seen)
{
    switch (seen.message) {
    case WM_LBUTTONDOWN: onPress(replay, seen.lParam); break;
    case WM_MOUSEMOVE: onMove(replay, seen.wParam, seen.lParam); break;
    case WM_LBUTTONUP: replay->strokePoint = toImage(*replay, seen.lParam); break;
    case POINTER_LEFT: replay->pointerInside = false; break;
    }
}

void replayNew(StrokeReplay* replay, const Host& host)
{
    const std::vector<SeenMessage> messages = seenSince(replay->nextMessage);
    replay->nextMessage += messages.size();
    for (const SeenMessage& seen : messages)
        if (!seen.sent && seen.window == host.canvas) replayMessage(replay, seen);
}

std::vector<uint8_t> expectedBlock(const StrokeReplay& replay)
{
    std::vector<uint8_t> block = replay.before;
    const reference::Picture& image = replay.scene.image;
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) {
            uint8_t* pixel = &block[pixelOffset(image, x, y)];
            pixel[0] = (uint8_t)image.at(x, y).blue;
            pixel[1] = (uint8_t)image.at(x, y).green;
            pixel[2] = (uint8_t)image.at(x, y).red;
        }
    return block;
}

static void reportDifference(const StrokeReplay& replay, const std::vector<uint8_t>& expected,
                             const std::vector<uint8_t>& actual)
{
    const reference::Picture& image = replay.scene.image;
    int wrong = 0;
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) {
            const size_t at = pixelOffset(image, x, y);
            if (memcmp(&expected[at], &actual[at], 3) == 0) continue;
            if (++wrong <= 8)
                ADD_FAILURE() << "pixel (" << x << ", " << y << ") was " << (int)replay.before[at] << ' '
                              << (int)replay.before[at + 1] << ' ' << (int)replay.before[at + 2] << ", should be "
                              << (int)expected[at] << ' ' << (int)expected[at + 1] << ' ' << (int)expected[at + 2]
                              << ", is " << (int)actual[at] << ' ' << (int)actual[at + 1] << ' ' << (int)actual[at + 2];
        }
    ADD_FAILURE() << wrong << " pixels differ (0: header, padding or guard)";
    for (const SeenMessage& seen : seenSince(0))
        if (seen.message == WM_LBUTTONDOWN || seen.message == WM_LBUTTONUP || seen.message == WM_MOUSEMOVE ||
            seen.message == POINTER_ENTERED || seen.message == POINTER_LEFT)
            printf("  window %p message %u at (%d, %d) keys %u\n", (void*)seen.window, seen.message,
                   GET_X_LPARAM(seen.lParam), GET_Y_LPARAM(seen.lParam), (unsigned)seen.wParam);
}

void expectPainted(StrokeReplay* replay, const Host& host, const HostImage& image)
{
    replayNew(replay, host);
    const std::vector<uint8_t> expected = expectedBlock(*replay), actual = snapshot(image);
    if (expected != actual) reportDifference(*replay, expected, actual);
}

int changedPixels(const StrokeReplay& replay)
{
    const std::vector<uint8_t> after = expectedBlock(replay);
    const reference::Picture& image = replay.scene.image;
    int changed = 0;
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) {
            const size_t at = pixelOffset(image, x, y);
            if (memcmp(&replay.before[at], &after[at], 3) != 0) ++changed;
        }
    return changed;
}
