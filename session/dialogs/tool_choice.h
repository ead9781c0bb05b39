// Choosing a tool from below the palette.
#pragma once

#include "session/ground/tool_table.h"

// Makes a tool current as a click on its button does, and checks the button. Nothing without a palette.
void selectTool(ToolId tool);
