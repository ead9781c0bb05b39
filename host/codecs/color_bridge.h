// Colours of a photo's own profile on the screen, and back. The editor works in sRGB.
#pragma once

#include <cstdint>
#include <vector>

struct ColorBridge {
    void* toScreen = nullptr;  // null: the values are shown as they are
    void* fromScreen = nullptr;
    int inks = 0;  // 4 for CMYK, else 0
};

// profile: ICC, may be empty. inks: 4 for CMYK (inverted as in JPEG files when `inverted`), else 0. A profile
// that is missing, broken, or as good as sRGB gives a bridge that changes nothing.
ColorBridge openBridge(const std::vector<uint8_t>& profile, int inks, bool inverted);
void closeBridge(ColorBridge* bridge);

// One row. With inks source holds 4 bytes a pixel, and what has no profile is converted plainly; else bgra is
// changed in place.
void showInks(const ColorBridge& bridge, const uint8_t* source, bool inverted, uint8_t* bgra, int width);
void showColors(const ColorBridge& bridge, uint8_t* bgra, int width);

// The way back for edited pixels, blue, green, red: into inks, or in place.
void storeInks(const ColorBridge& bridge, const uint8_t* bgr, bool inverted, uint8_t* inks, int width);
void storeColors(const ColorBridge& bridge, uint8_t* bgr, int width);
