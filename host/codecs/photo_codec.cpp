#include "host/codecs/photo_codec.h"

UprightTarget editedInFile(const EditedPhoto& photo, int orientation)
{
    const bool swapped = orientationSwapsSides(orientation);
    return {const_cast<uint8_t*>(photo.bits), swapped ? photo.height : photo.width,
            swapped ? photo.width : photo.height, orientation, photo.rowsGathered};
}
