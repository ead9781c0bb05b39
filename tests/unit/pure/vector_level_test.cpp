#include "image/pixels/vector_level.h"

#include "tests/unit/vector_levels.h"

class VectorLevelTest : public VectorLevels {};

TEST_P(VectorLevelTest, CanBeForced)
{
    EXPECT_EQ(GetParam(), (int)vectorLevel());
    EXPECT_TRUE(vectorLevelSupported(vectorLevel()));
}
FOR_EACH_VECTOR_LEVEL(VectorLevelTest);

TEST(VectorLevel, IsNeverOneThatTheProcessorLacks)
{
    const VectorLevel before = vectorLevel();
    EXPECT_TRUE(vectorLevelSupported(before));
    EXPECT_FALSE(forceVectorLevel(VECTOR_LEVEL_COUNT));
    for (int level = VECTOR_PLAIN; level < VECTOR_LEVEL_COUNT; ++level) {
        const bool supported = vectorLevelSupported((VectorLevel)level);
        EXPECT_EQ(supported, LevelInUse(level).present);
        EXPECT_EQ(before, vectorLevel());
    }
}

TEST(VectorLevel, EveryLowerOneIsThereToo)
{
    for (int level = VECTOR_PLAIN; level < (int)vectorLevel(); ++level)
        EXPECT_TRUE(vectorLevelSupported((VectorLevel)level)) << vectorLevelName((VectorLevel)level);
}
