// The values of a colour adjustment as users set them, and their limits. One value for everybody: the engine,
// the contrast dialog, the floating selection and the buttons of its frame.
//
// They follow vertical scroll bars, whose top is their minimum, and moving a bar up brightens, steepens and
// saturates:
//   contrast     negative is steeper
//   brightness   negative is brighter
//   saturation   0 doubles, 100 removes it
//   hue          in 1/252 of a turn
//   lift         passes that pull bright pixels towards white; floating selections only
#pragma once

struct ColourValues {
    int contrast, brightness, saturation, hue, lift;
};

// What is true of one of the values.
struct ColourParameter {
    int ColourValues::*value;
    int neutral;
    int lowest, highest;
    int step;  // of a button on the frame
};

// A new parameter is a member above, a row in the table, and a kernel that acts on it: on floating selections a row
// of color/kernels/adjust_selection.cpp names that.
extern const ColourParameter COLOUR_PARAMETERS[];
extern const int COLOUR_PARAMETER_COUNT;

const ColourParameter& parameterOf(int ColourValues::*value);

ColourValues neutralColourValues();
bool withinLimits(const ColourValues& values);
bool areNeutral(const ColourValues& values);

// One step up (direction 1) or down (-1), at most to the limit.
void stepColourValue(ColourValues& values, int ColourValues::*value, int direction);
