// The Colors tool: the pixel under the pointer becomes the paint colour. Points are image pixels.
#pragma once

#include <windows.h>

void pickColourAtPress(POINT at);  // keeps the former colour in previousColour
void pickColourAtMove(POINT at);   // off the image, previousColour comes back
