#include "host/codecs/color_bridge.h"

#include <algorithm>
#include <cstdlib>
#include <lcms2.h>

constexpr int UNNOTICED = 2;  // a difference from sRGB that nobody sees

// Whether a profile's colours are shown right without it.
static bool isLikeSrgb(cmsHTRANSFORM toScreen)
{
    for (int color = 0; color < 125; ++color) {
        uint8_t pixel[4] = {(uint8_t)(color % 5 * 63), (uint8_t)(color / 5 % 5 * 63), (uint8_t)(color / 25 * 63), 255};
        const uint8_t before[3] = {pixel[0], pixel[1], pixel[2]};
        cmsDoTransform(toScreen, pixel, pixel, 1);
        for (int channel = 0; channel < 3; ++channel)
            if (abs(pixel[channel] - before[channel]) > UNNOTICED) return false;
    }
    return true;
}

ColorBridge openBridge(const std::vector<uint8_t>& profile, int inks, bool inverted)
{
    ColorBridge bridge;
    bridge.inks = inks;
    cmsHPROFILE own =
        profile.empty() ? nullptr : cmsOpenProfileFromMem(profile.data(), (cmsUInt32Number)profile.size());
    if (!own) return bridge;
    cmsHPROFILE screen = cmsCreate_sRGBProfile();
    const bool fits = cmsGetColorSpace(own) == (inks ? cmsSigCmykData : cmsSigRgbData);
    if (fits && screen) {
        const cmsUInt32Number there = !inks ? TYPE_BGRA_8 : inverted ? TYPE_CMYK_8_REV : TYPE_CMYK_8;
        const cmsUInt32Number back = inks ? there : TYPE_BGR_8;
        const cmsUInt32Number intent = INTENT_RELATIVE_COLORIMETRIC;
        bridge.toScreen = cmsCreateTransform(own, there, screen, TYPE_BGRA_8, intent,
                                             cmsFLAGS_BLACKPOINTCOMPENSATION | (inks ? 0 : cmsFLAGS_COPY_ALPHA));
        bridge.fromScreen = cmsCreateTransform(screen, TYPE_BGR_8, own, back, intent, cmsFLAGS_BLACKPOINTCOMPENSATION);
        if (!bridge.toScreen || !bridge.fromScreen || (!inks && isLikeSrgb(bridge.toScreen))) closeBridge(&bridge);
    }
    if (screen) cmsCloseProfile(screen);
    cmsCloseProfile(own);
    return bridge;
}

void closeBridge(ColorBridge* bridge)
{
    if (bridge->toScreen) cmsDeleteTransform(bridge->toScreen);
    if (bridge->fromScreen) cmsDeleteTransform(bridge->fromScreen);
    bridge->toScreen = bridge->fromScreen = nullptr;
}

void showInks(const ColorBridge& bridge, const uint8_t* source, bool inverted, uint8_t* bgra, int width)
{
    if (bridge.toScreen) cmsDoTransform(bridge.toScreen, source, bgra, (cmsUInt32Number)width);
    for (int x = 0; x < width; ++x, source += 4, bgra += 4) {
        bgra[3] = 255;
        for (int ink = 0; ink < 3 && !bridge.toScreen; ++ink) {
            const int paper = inverted ? source[ink] : 255 - source[ink];
            const int light = inverted ? source[3] : 255 - source[3];
            bgra[2 - ink] = (uint8_t)((paper * light + 127) / 255);
        }
    }
}

void showColors(const ColorBridge& bridge, uint8_t* bgra, int width)
{
    if (bridge.toScreen) cmsDoTransform(bridge.toScreen, bgra, bgra, (cmsUInt32Number)width);
}

void storeInks(const ColorBridge& bridge, const uint8_t* bgr, bool inverted, uint8_t* inks, int width)
{
    if (bridge.fromScreen) {
        cmsDoTransform(bridge.fromScreen, bgr, inks, (cmsUInt32Number)width);
        return;
    }
    for (int x = 0; x < width; ++x, bgr += 3, inks += 4) {
        const int light = std::max({bgr[0], bgr[1], bgr[2]});
        for (int ink = 0; ink < 4; ++ink) {
            const int paper = ink == 3 ? light : light ? (bgr[2 - ink] * 255 + light / 2) / light : 255;
            inks[ink] = (uint8_t)(inverted ? paper : 255 - paper);
        }
    }
}

void storeColors(const ColorBridge& bridge, uint8_t* bgr, int width)
{
    if (bridge.fromScreen) cmsDoTransform(bridge.fromScreen, bgr, bgr, (cmsUInt32Number)width);
}
