#include "host/placement.h"

#include <algorithm>
#include <cstdint>

constexpr int GAP_BESIDE = 8;
constexpr int COMFORTABLE_SIDE = 320;
constexpr int LARGEST_FACTOR = 8;

ScreenSize clientSizeFor(ScreenSize image, ScreenSize room)
{
    room = {std::max(room.width, 1), std::max(room.height, 1)};
    if (image.width > room.width || image.height > room.height) {
        // Which side decides is told by cross-multiplying: image.width / room.width against the heights.
        const bool widthDecides = (int64_t)image.width * room.height >= (int64_t)image.height * room.width;
        if (widthDecides)
            return {room.width, (int)std::max<int64_t>((int64_t)image.height * room.width / image.width, 1)};
        return {(int)std::max<int64_t>((int64_t)image.width * room.height / image.height, 1), room.height};
    }
    int factor = std::min(LARGEST_FACTOR, COMFORTABLE_SIDE / std::max(image.width, image.height));
    factor = std::min({factor, room.width / image.width, room.height / image.height});
    factor = std::max(factor, 1);
    return {image.width * factor, image.height * factor};
}

Placement placeWindows(ScreenSize image, ScreenBox workArea, ScreenSize frame, ScreenSize palette)
{
    const int workWidth = workArea.right - workArea.left;
    const int workHeight = workArea.bottom - workArea.top;
    const int beside = palette.width + GAP_BESIDE;
    const ScreenSize room = {workWidth - beside - 2 * GAP_BESIDE - frame.width,
                             workHeight - 2 * GAP_BESIDE - frame.height};
    const ScreenSize client = clientSizeFor(image, room);
    const int width = client.width + frame.width, height = client.height + frame.height;

    Placement place;
    place.paletteLeft = workArea.left + std::max((workWidth - beside - width) / 2, 0);
    place.dialog.left = place.paletteLeft + beside;
    place.dialog.top = workArea.top + std::max((workHeight - height) / 2, 0);
    place.dialog.right = place.dialog.left + width;
    place.dialog.bottom = place.dialog.top + height;
    const int lowestTop = std::max(workArea.bottom - palette.height, workArea.top);
    place.paletteTop = std::min(place.dialog.top, lowestTop);
    return place;
}
