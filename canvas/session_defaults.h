#pragma once

// Writes what every session starts from: a round brush of 16 by 16 in 0x00C0C0FF at full strength, the
// ten tools' settings, "Arial" 20 high and bold, no current tool.
void writeSessionDefaults();
