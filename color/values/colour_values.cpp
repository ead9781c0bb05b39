#include "color/values/colour_values.h"

#include <climits>

const ColourParameter COLOUR_PARAMETERS[] = {
    {&ColourValues::contrast, 0, -100, 100, 5}, {&ColourValues::brightness, 0, -100, 100, 5},
    {&ColourValues::saturation, 50, 0, 100, 5}, {&ColourValues::hue, 0, -127, 127, 3},
    {&ColourValues::lift, 0, 0, INT_MAX, 1},
};
const int COLOUR_PARAMETER_COUNT = (int)(sizeof COLOUR_PARAMETERS / sizeof COLOUR_PARAMETERS[0]);
static_assert(sizeof COLOUR_PARAMETERS / sizeof COLOUR_PARAMETERS[0] == sizeof(ColourValues) / sizeof(int),
              "one row a value");

const ColourParameter& parameterOf(int ColourValues::*value)
{
    const ColourParameter* parameter = COLOUR_PARAMETERS;
    while (parameter->value != value)
        ++parameter;
    return *parameter;
}

ColourValues neutralColourValues()
{
    ColourValues values;
    for (const ColourParameter& parameter : COLOUR_PARAMETERS)
        values.*parameter.value = parameter.neutral;
    return values;
}

bool withinLimits(const ColourValues& values)
{
    for (const ColourParameter& parameter : COLOUR_PARAMETERS) {
        const int value = values.*parameter.value;
        if (value < parameter.lowest || value > parameter.highest) return false;
    }
    return true;
}

bool areNeutral(const ColourValues& values)
{
    for (const ColourParameter& parameter : COLOUR_PARAMETERS)
        if (values.*parameter.value != parameter.neutral) return false;
    return true;
}

void stepColourValue(ColourValues& values, int ColourValues::*value, int direction)
{
    const ColourParameter& parameter = parameterOf(value);
    int& stepped = values.*value;
    if (direction > 0) {
        stepped = stepped > parameter.highest - parameter.step ? parameter.highest : stepped + parameter.step;
    } else {
        stepped = stepped < parameter.lowest + parameter.step ? parameter.lowest : stepped - parameter.step;
    }
}
