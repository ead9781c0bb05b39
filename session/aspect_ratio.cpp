#include "session/aspect_ratio.h"

static uint32_t widthTerm(const AspectRatio& r)
{
    return r.width && r.height ? r.width : 640;
}

static uint32_t heightTerm(const AspectRatio& r)
{
    return r.width && r.height ? r.height : 480;
}

uint32_t heightForWidth(const AspectRatio& r, uint32_t windowWidth)
{
    return heightTerm(r) * (windowWidth - r.frameWidth) / widthTerm(r) + r.frameHeight;
}

uint32_t widthForHeight(const AspectRatio& r, uint32_t windowHeight)
{
    return widthTerm(r) * (windowHeight - r.frameHeight) / heightTerm(r) + r.frameWidth;
}

WindowSize keepAspect(const AspectRatio& r, WindowSize current, WindowSize proposed, bool heightDrives)
{
    const bool widthChanged = proposed.width != current.width;
    const bool heightChanged = proposed.height != current.height;
    if (heightChanged && (!widthChanged || heightDrives)) {
        proposed.width = widthForHeight(r, proposed.height);
    } else if (widthChanged) {
        proposed.height = heightForWidth(r, proposed.width);
    }
    return proposed;
}

WindowSize cutToScreen(const AspectRatio& r, WindowSize size, uint32_t screenWidth, uint32_t screenHeight)
{
    if (size.width > screenWidth) {
        size.width = screenWidth;
        size.height = heightForWidth(r, size.width);
    }
    if (size.height > screenHeight) {
        size.height = screenHeight;
        size.width = widthForHeight(r, size.height);
    }
    return size;
}
