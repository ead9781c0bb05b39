#include "host/codecs/photo_codec.h"

UprightTarget editedInFile(const EditedPhoto& photo, int orientation)
{
    const bool swapped = orientationSwapsSides(orientation);
    return {const_cast<uint8_t*>(photo.bits), swapped ? photo.height : photo.width,
            swapped ? photo.width : photo.height, orientation, photo.rowsGathered};
}

LargeBytes allocateLarge(uint64_t size)
{
    return LargeBytes(size <= SIZE_MAX ? (uint8_t*)malloc((size_t)size) : nullptr);
}
