// The two tables of tools agree: who is a tool and works on the canvas has something to do at a press.
#include "canvas/tool_input.h"

#include <gtest/gtest.h>

#include "session/ground/tool_table.h"

TEST(ToolInput, EveryToolButContrastHasItsRow)
{
    for (uint32_t id = 0; id < 300; ++id) {
        const bool works = findTool(id) && id != TOOL_CONTRAST;
        EXPECT_EQ(works, inputOf(id).press != nullptr) << id;
        EXPECT_EQ(works ? id : 0u, inputOf(id).tool) << id;
    }
}

TEST(ToolInput, SlotsAreInTheOrderOfTheSettings)
{
    const uint32_t order[TOOL_COUNT] = {116, 117, 121, 119, 120, 122, 118, 114, 123, 115};
    for (int slot = 0; slot < TOOL_COUNT; ++slot) {
        EXPECT_EQ(order[slot], (uint32_t)toolInSlot(slot).id);
        EXPECT_EQ(order[slot], toolInSlot(slot).start.toolId);
        EXPECT_EQ(slot, findTool(order[slot])->slot);
    }
    EXPECT_EQ(NO_SLOT, findTool(TOOL_COLORS)->slot);
}
