#include "color/kernels/adjustment.h"

#include "color/kernels/tone_table.h"

// `full` is what the whole range of a value from 0 to 100 is stretched to.
static ColourAdjustment makeAdjustment(const ColourValues& values, int full)
{
    const int a = (100 - values.contrast) * full / 200, b = (100 - values.brightness) * full / 200;
    ColourAdjustment adjustment;
    buildToneTable(adjustment.tone, a, b);
    adjustment.slope = a + 64;
    adjustment.offset = b - a;
    adjustment.saturationFactor = (100 - values.saturation) * full / 100;
    adjustment.hueShift = values.hue;
    adjustment.toneOnly = values.saturation == parameterOf(&ColourValues::saturation).neutral && values.hue == 0;
    adjustment.inRange = withinLimits(values);
    adjustment.values = values;
    return adjustment;
}

ColourAdjustment imageAdjustment(const ColourValues& values)
{
    return makeAdjustment(values, 256);
}

ColourAdjustment selectionAdjustment(const ColourValues& values)
{
    return makeAdjustment(values, 255);
}
